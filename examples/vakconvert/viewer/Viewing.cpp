#include "examples/vakconvert/viewer/Viewing.h"

#include "examples/vakconvert/ContentIo.h"
#include "examples/vakconvert/viewer/ViewerWindow.h"
#include "files/FileIo.h"
#include "files/FileSystem.h"
#include "framework/base/Application.h"

#include <utility>

namespace {

constexpr int kFailed = 1;

int Fail(const Console& console, const CString& path, const CString& problem)
{
    console.PrintError(L"vakconvert: " + path + L": " + problem + L"\n");
    return kFailed;
}

} // namespace

int ViewFile(const Console& console, const CString& path)
{
    Content content;
    const CString failure = LoadContent(path, content);
    if (!failure.IsEmpty())
        return Fail(console, path, fileExists(path) ? failure : CString(L"there is no such file"));
    const Document document(std::move(content));
    if (document.Size() == CSize())
        return Fail(console, path, CFileIo::GetIoErrorTxtFromCode(TRUE, IO_FILE_EMPTY));
    // Its messages are boxes, not lines.
    CWinApp application(L"vakconvert");
    ViewerWindow window(document, path);
    if (!window.Open())
        return Fail(console, path, L"the window cannot be shown");
    application.m_pMainWnd = &window;
    window.RunModalLoop();
    return 0;
}
