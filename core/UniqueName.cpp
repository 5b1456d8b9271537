#include "core/UniqueName.h"

#include <algorithm>

CString GetUniqueName(CHashTable<CString>& taken, const CString& base, int maxLength)
{
    CString suffix;
    for (int counter = 0;; ++counter) {
        CString candidate = base;
        if (maxLength >= 1)
            candidate = base.Left(std::max(0, maxLength - suffix.GetLength()));
        candidate += suffix;
        if (!candidate.IsEmpty() && !taken.IsFound(candidate)) {
            taken.Insert(candidate);
            return candidate;
        }
        suffix.Format(L"#%d", counter);
    }
}
