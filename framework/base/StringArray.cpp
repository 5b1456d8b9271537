#include "framework/base/StringArray.h"

#include "framework/base/Archive.h"

IMPLEMENT_SERIAL(CStringArray, CObject, 0)

void CStringArray::Serialize(CArchive& archive)
{
    if (archive.IsStoring()) {
        archive.WriteCount(static_cast<DWORD_PTR>(GetSize()));
        for (INT_PTR i = 0; i < GetSize(); ++i)
            archive << GetAt(i);
        return;
    }
    RemoveAll();
    // Grown string by string: the count is the file's word.
    for (DWORD_PTR left = archive.ReadCount(); left != 0; --left) {
        CString text;
        archive >> text;
        Add(text);
    }
}
