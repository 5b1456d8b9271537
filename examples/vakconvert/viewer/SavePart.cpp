#include "examples/vakconvert/viewer/SavePart.h"

#include "examples/vakconvert/ContentIo.h"
#include "examples/vakconvert/WorkFolder.h"
#include "examples/vakconvert/viewer/Pixels.h"
#include "files/FileIo.h"
#include "files/FileKinds.h"
#include "files/IoPlugins.h"

#include <new>

namespace {

/// Makes the file in a folder beside its place, then moves it there.
CString SaveContent(Content& content, const CString& path)
{
    const int nameStart = path.ReverseFind(L'\\') + 1;
    const CString folder = path.Left(nameStart);
    const CString name = path.Mid(nameStart);
    WorkFolder work(folder);
    if (!work.IsReady())
        return L"Nothing can be written in " + folder;
    CFileIo output(CFileNameSpec(work.Path() + name, 0), FILE_PARSER_SILENT, nullptr);
    CString failure = RunParser(output, content);
    output.CloseParser();
    if (failure.IsEmpty())
        work.MoveOut(work.Files(name), true, failure);
    return failure;
}

} // namespace

CString SavePart(const Image& image, const CRect& part, const CString& path)
{
    if ((fileGetKindOf(path) & kIoPluginBitmaps) == 0)
        return CFileIo::GetIoErrorTxtFromCode(FALSE, IO_FILE_UNKNOWN_TYPE);
    try {
        Content content;
        content.image = CutOut(image, part);
        return SaveContent(content, path);
    } catch (const std::bad_alloc&) {
        return CFileIo::GetIoErrorTxtFromCode(FALSE, IO_FILE_NO_MEMORY);
    }
}
