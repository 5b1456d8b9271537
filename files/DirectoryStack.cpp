#include "files/DirectoryStack.h"

#include "files/FilePath.h"
#include "framework/base/Exception.h"
#include "framework/base/SystemFolder.h"

#include <vector>

namespace {

std::vector<CString>& Stack()
{
    static std::vector<CString> stack;
    return stack;
}

} // namespace

CString fileGetCurrentDirectory()
{
    CString directory = vak::system::CurrentFolder();
    fileRemoveSlashTermination(directory);
    if (directory.GetLength() >= MAX_PATH)
        directory.Empty();
    fileSlashTerminate(directory);
    return directory;
}

CString filePushCurrentDirectory(const CString& directory)
{
    Stack().push_back(fileGetCurrentDirectory());
    vak::system::EnterFolder(directory);
    return Stack().back();
}

CString filePopCurrentDirectory()
{
    if (Stack().empty())
        AfxThrowInvalidArgException();
    CString directory = Stack().back();
    vak::system::EnterFolder(directory);
    Stack().pop_back();
    return directory;
}
