#include "files/FilePath.h"

#include "framework/base/SystemFolder.h"
#include "framework/ui/Wnd.h"

CString fileCompactPath(const CString& path, CWnd* window, int width)
{
    return vak::system::CompactPath(window != nullptr ? window->GetSafeHwnd() : nullptr, path, width);
}
