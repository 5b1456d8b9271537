#include "framework/base/ReplacementFile.h"

#include "framework/base/FileException.h"
#include "framework/base/SystemFile.h"

namespace vak::detail {

namespace {

constexpr int kMostNames = 1000;

[[noreturn]] void ThrowError(DWORD error, const CString& path)
{
    CFileException::ThrowOsError(static_cast<LONG>(error), path);
}

system::OpenOptions HeldOptions(system::OpenOptions::Disposition disposition)
{
    system::OpenOptions options;
    options.read = options.write = true;
    // Readers may look, as long as they let the file be renamed; a second writer may not.
    options.shareRead = options.shareDelete = true;
    options.disposition = disposition;
    return options;
}

/// Creates a file beside `target` under a name that is free.
HANDLE CreateUnique(const CString& target, CString& path)
{
    for (int number = 1; number <= kMostNames; ++number) {
        path.Format(L"%s.%d.tmp", target.GetString(), number);
        const HANDLE file = system::OpenFile(path, HeldOptions(system::OpenOptions::Disposition::CreateNew));
        const DWORD error = file == system::kNoFile ? system::LastFileError() : 0;
        if (error != system::kErrorFileExists && error != system::kErrorAlreadyExists)
            return file;
    }
    return system::kNoFile;
}

} // namespace

void ReplacementFile::HeldFile::Adopt(HANDLE file, const CString& path)
{
    m_hFile = file;
    m_bCloseOnDelete = TRUE;
    m_strFileName = path;
}

ReplacementFile::ReplacementFile(LPCWSTR target, LPCWSTR temporary) : m_target(target), m_temporary(temporary)
{
    const HANDLE file =
        temporary == nullptr
            ? CreateUnique(m_target, m_temporary)
            : system::OpenFile(temporary, HeldOptions(system::OpenOptions::Disposition::CreateAlways));
    if (file == system::kNoFile)
        ThrowError(system::LastFileError(), m_temporary);
    m_file.Adopt(file, m_temporary);
    m_pending = true;
}

ReplacementFile::~ReplacementFile()
{
    Discard();
}

void ReplacementFile::Commit()
{
    CommitAs(m_target);
}

void ReplacementFile::CommitAs(LPCWSTR path)
{
    if (!m_pending)
        AfxThrowFileException(CFileException::invalidFile, -1, path);
    DWORD error = 0;
    if (!system::FlushFile(m_file) || !system::ReplaceFileBy(m_file, m_temporary, path))
        error = system::LastFileError();
    if (error != 0) {
        Discard();
        ThrowError(error, path);
    }
    // The new file has its name; nothing that closing could still say undoes that.
    m_pending = false;
    m_file.Abort();
}

void ReplacementFile::Discard()
{
    if (!m_pending)
        return;
    m_pending = false;
    m_file.Abort();
    system::RemoveFile(m_temporary);
}

} // namespace vak::detail
