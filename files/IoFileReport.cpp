#include "files/IoFile.h"

#include "framework/base/Application.h"
#include "framework/base/ArchiveException.h"
#include "framework/base/FileException.h"
#include "framework/base/StringTable.h"
#include "resources/Ids.h"

namespace {

constexpr UINT kLongestMessage = 256;

/// The prompt for a file exception without a message of its own; `prompt` where the cause has none.
UINT PromptOf(const CFileException& failure, bool writing, UINT prompt)
{
    switch (failure.m_cause) {
    case CFileException::fileNotFound:
    case CFileException::badPath:
        return VAK_PROMPT_INVALID_PATH;
    case CFileException::accessDenied:
        return writing ? VAK_PROMPT_NO_WRITE_ACCESS : VAK_PROMPT_NO_READ_ACCESS;
    case CFileException::diskFull:
        return VAK_PROMPT_DISK_FULL;
    default:
        return prompt;
    }
}

bool IsInvalidFormat(const CArchiveException& failure)
{
    return failure.m_cause == CArchiveException::endOfFile ||
           failure.m_cause == CArchiveException::badIndex || failure.m_cause == CArchiveException::badClass ||
           failure.m_cause == CArchiveException::badSchema;
}

} // namespace

void IoFile::ReportError(CException* exception)
{
    if ((m_flags & kSilent) != 0)
        return;
    UINT prompt = IsWriting() ? VAK_PROMPT_SAVE_FAILED : VAK_PROMPT_OPEN_FAILED;
    CString message;
    if (dynamic_cast<CUserException*>(exception) != nullptr)
        return;
    if (const auto* archive = dynamic_cast<CArchiveException*>(exception)) {
        if (IsInvalidFormat(*archive))
            prompt = VAK_PROMPT_INVALID_FORMAT;
    } else if (auto* file = dynamic_cast<CFileException*>(exception)) {
        if (file->m_strFileName.IsEmpty())
            file->m_strFileName = m_fileName;
        wchar_t own[kLongestMessage];
        if (file->GetErrorMessage(own, kLongestMessage))
            message = own;
        else
            prompt = PromptOf(*file, IsWriting() != 0, prompt);
    }
    if (message.IsEmpty())
        AfxFormatString1(message, prompt, m_fileName);
    AfxMessageBox(message, MB_ICONEXCLAMATION, prompt);
}
