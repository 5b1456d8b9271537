#include "files/zip/ZipTarget.h"

#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/ZipException.h"
#include "framework/base/Time.h"

#include <algorithm>
#include <utility>

namespace vak::detail {

namespace {

constexpr unsigned int kMostNames = 10000;

bool IsFolder(DWORD attributes)
{
    return attributes != system::kInvalidAttributes && (attributes & system::kAttributeDirectory) != 0;
}

} // namespace

ZipTarget::ZipTarget(LPCWSTR folder, const CString& archive, const CString& entry, ZipTargetMemory& memory)
    : m_archive(archive), m_entry(entry), m_memory(memory)
{
    const CString wanted(folder == nullptr || *folder == 0 ? L"." : folder);
    if (!system::FullPath(wanted, m_folder))
        ThrowSystem();
    fileSlashTerminate(m_folder);
}

ZipTarget::~ZipTarget()
{
    Discard();
}

void ZipTarget::Throw(int cause, DWORD error) const
{
    ThrowZip(cause, m_archive, m_entry, static_cast<LONG>(error));
}

void ZipTarget::ThrowSystem() const
{
    Throw(CZipException::targetError, system::LastFileError());
}

/// Makes sure that `path` is a folder and no link.
void ZipTarget::EnterFolder(const CString& path)
{
    if (system::IsLink(path))
        Throw(CZipException::linkInPath);
    const DWORD attributes = system::FileAttributes(path);
    if (IsFolder(attributes))
        return;
    if (attributes != system::kInvalidAttributes)
        Throw(CZipException::nameTaken);
    // Somebody else may have made it meanwhile.
    if (!system::MakeFolder(path) && (!IsFolder(system::FileAttributes(path)) || system::IsLink(path)))
        ThrowSystem();
}

void ZipTarget::MakeFolder(const CString& name)
{
    if (!IsFolder(system::FileAttributes(m_folder)) && fileCreateDirectory(m_folder, 1) == 0)
        ThrowSystem();
    int start = 0;
    for (int end = 0; (end = name.Find(L'\\', start)) >= 0; start = end + 1) {
        if (end > start)
            EnterFolder(m_folder + name.Left(end));
    }
}

/// Whether it is still the folder that it was when it was found to be no link's: one look, however deep.
bool ZipTarget::IsRemembered(const CString& folder) const
{
    system::FolderIdentity identity;
    return folder == m_memory.folder && system::IdentifyFolder(folder, identity) &&
           identity == m_memory.identity;
}

void ZipTarget::Begin(const CString& name)
{
    m_target = m_folder + name;
    const CString folder = m_target.Left(m_target.ReverseFind(L'\\') + 1);
    if (!IsRemembered(folder)) {
        MakeFolder(name);
        m_memory.folder = system::IdentifyFolder(folder, m_memory.identity) ? folder : CString();
    }
    CreateTemporary(folder);
}

/// A short name of its own: the entry's may be as long as names may be.
void ZipTarget::CreateTemporary(const CString& folder)
{
    system::OpenOptions options;
    options.write = options.shareRead = options.shareDelete = true;
    options.disposition = system::OpenOptions::Disposition::CreateNew;
    for (unsigned int tries = 0; tries < kMostNames; ++tries) {
        CString path = folder;
        path.AppendFormat(L"~zip%u.tmp", ++m_memory.temporary);
        m_file = system::OpenFile(path, options);
        if (m_file != system::kNoFile) {
            m_temporary = path;
            return;
        }
        const DWORD error = system::LastFileError();
        if (error != system::kErrorFileExists && error != system::kErrorAlreadyExists)
            break;
    }
    ThrowSystem();
}

void ZipTarget::Write(std::span<const std::uint8_t> bytes)
{
    UINT done = 0;
    const auto size = static_cast<UINT>(bytes.size());
    if (!system::WriteFile(m_file, bytes.data(), size, done))
        ThrowSystem();
    if (done != size)
        Throw(CZipException::targetError, system::kErrorDiskFull);
}

void ZipTarget::Finish(std::int64_t time)
{
    // Not every file system takes every time; the data are worth more than their date.
    if (time != 0)
        system::SetWrittenTime(m_file, FileTimeFromTime(time));
    Name();
    // What the system refuses only now it did not write.
    m_temporary = std::exchange(m_target, CString());
    if (!system::CloseFile(std::exchange(m_file, system::kNoFile)))
        ThrowSystem();
    m_temporary.Empty();
}

/// Through the open handle: nobody who looks at the new file can hold it up.
void ZipTarget::Name()
{
    if (system::RenameFileBy(m_file, m_temporary, m_target))
        return;
    const DWORD error = system::LastFileError();
    if (error != system::kErrorFileExists && error != system::kErrorAlreadyExists)
        Throw(CZipException::targetError, error);
    if (system::IsLink(m_target))
        Throw(CZipException::linkInPath);
    if (IsFolder(system::FileAttributes(m_target)))
        Throw(CZipException::nameTaken);
    // In one step, so that the old file is there until the new one is.
    if (!system::ReplaceFileBy(m_file, m_temporary, m_target, false))
        ThrowSystem();
}

void ZipTarget::Discard()
{
    if (m_file != system::kNoFile)
        system::CloseFile(std::exchange(m_file, system::kNoFile));
    if (!m_temporary.IsEmpty())
        system::RemoveFile(m_temporary);
    m_temporary.Empty();
}

} // namespace vak::detail
