#include "files/zip/ZipOutput.h"

#include "files/ZipException.h"
#include "framework/base/FileException.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vak::detail {

namespace {

constexpr std::size_t kBuffer = 1 << 18;
/// More cannot be numbered.
constexpr std::size_t kMostParts = 0xFFFE;

/// The end of a file that is open on its own.
class OpenedFile
{
public:
    explicit OpenedFile(const CString& path)
    {
        system::OpenOptions options;
        options.write = options.shareRead = options.shareDelete = true;
        m_file = system::OpenFile(path, options);
    }
    ~OpenedFile()
    {
        if (m_file != system::kNoFile)
            system::CloseFile(m_file);
    }
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;

    HANDLE Get() const { return m_file; }

private:
    HANDLE m_file;
};

} // namespace

/// Turns the file exceptions of what the act calls into the archive's.
template <class Act>
void ZipOutput::Guarded(Act act)
{
    DWORD error = 0;
    try {
        act();
    } catch (CFileException* exception) {
        error = static_cast<DWORD>(exception->m_lOsError);
        exception->Delete();
        Fail(error);
    }
}

ZipOutput::ZipOutput(const CString& path, const CString& name, std::uint64_t partSize)
    : m_path(path), m_name(name), m_partSize(partSize)
{
    m_buffer.resize(kBuffer);
    if (IsSplit() && system::FileAttributes(ZipPartPath(m_path, 1)) != system::kInvalidAttributes)
        ThrowZip(CZipException::nameTaken, m_name, ZipPartPath(m_path, 1));
    Begin();
}

ZipOutput::~ZipOutput()
{
    if (m_committed)
        return;
    if (m_file != nullptr)
        m_file->Discard();
    for (const Finished& part : m_finished)
        system::RemoveFile(part.path);
}

void ZipOutput::Fail(DWORD error)
{
    m_error = error == 0 ? system::kErrorGenFailure : error;
    ThrowZip(CZipException::systemError, m_name, nullptr, static_cast<LONG>(m_error));
}

void ZipOutput::CheckUsable() const
{
    if (m_error != 0)
        ThrowZip(CZipException::systemError, m_name, nullptr, static_cast<LONG>(m_error));
}

void ZipOutput::Begin()
{
    m_file.reset();
    m_written = 0;
    Guarded([this] { m_file = std::make_unique<ReplacementFile>(m_path); });
}

std::uint64_t ZipOutput::Room() const
{
    return IsSplit() ? m_partSize - Within() : ~std::uint64_t{0};
}

void ZipOutput::FinishPart()
{
    Flush();
    Finished part = {ZipPartPath(m_path, Part() + 1), Position()};
    if (m_finished.size() >= kMostParts)
        ThrowZip(CZipException::volumeTooSmall, m_name);
    if (system::FileAttributes(part.path) != system::kInvalidAttributes)
        ThrowZip(CZipException::nameTaken, m_name, part.path);
    m_finished.reserve(m_finished.size() + 1);
    Guarded([&] { m_file->CommitAs(part.path); });
    m_partStart = part.end;
    m_finished.push_back(std::move(part));
    Begin();
}

void ZipOutput::Reserve(std::size_t size)
{
    CheckUsable();
    if (IsSplit() && size > m_partSize)
        ThrowZip(CZipException::volumeTooSmall, m_name);
    if (size > Room())
        FinishPart();
}

void ZipOutput::WriteToFile(const std::uint8_t* bytes, std::size_t size)
{
    UINT done = 0;
    const bool written = system::WriteFile(m_file->File(), bytes, static_cast<UINT>(size), done);
    if (!written || done != size)
        Fail(written ? system::kErrorDiskFull : system::LastFileError());
    m_written += size;
}

void ZipOutput::Flush()
{
    CheckUsable();
    // What fails stays buffered: earlier entries' bytes among it are still wanted after Return.
    if (m_buffered != 0)
        WriteToFile(m_buffer.data(), m_buffered);
    m_buffered = 0;
}

void ZipOutput::Write(Bytes bytes)
{
    CheckUsable();
    while (!bytes.empty()) {
        if (Room() == 0)
            FinishPart();
        if (m_buffered == m_buffer.size())
            Flush();
        const auto count = static_cast<std::size_t>(
            std::min<std::uint64_t>({bytes.size(), m_buffer.size() - m_buffered, Room()}));
        std::memcpy(m_buffer.data() + m_buffered, bytes.data(), count);
        m_buffered += count;
        bytes = bytes.subspan(count);
    }
}

void ZipOutput::Copy(ZipVolumes& from, std::uint64_t offset, std::uint64_t size)
{
    while (size > 0) {
        if (Room() == 0)
            FinishPart();
        Flush();
        std::uint64_t within = 0;
        std::uint64_t left = 0;
        const HANDLE file = from.Locate(offset, within, left);
        const std::uint64_t wanted = std::min({size, left, Room()});
        ULONGLONG done = 0;
        if (!system::CopyBytes(file, within, m_file->File(), wanted, done))
            Fail(system::LastFileError());
        m_written += done;
        if (done == 0)
            ThrowZip(CZipException::dataDamaged, m_name); // the file became shorter
        offset += done;
        size -= done;
    }
}

void ZipOutput::PatchFile(HANDLE file, std::uint64_t within, Bytes bytes)
{
    UINT done = 0;
    ULONGLONG reached = 0;
    const auto size = static_cast<UINT>(bytes.size());
    if (!system::SeekFile(file, static_cast<LONGLONG>(within), 0, reached) ||
        !system::WriteFile(file, bytes.data(), size, done))
        Fail(system::LastFileError());
    if (done != size)
        Fail(system::kErrorDiskFull);
}

void ZipOutput::PatchFinished(std::uint64_t position, Bytes bytes)
{
    std::size_t part = 0;
    while (m_finished[part].end <= position)
        ++part;
    const std::uint64_t start = part == 0 ? 0 : m_finished[part - 1].end;
    const OpenedFile file(m_finished[part].path);
    if (file.Get() == system::kNoFile)
        Fail(system::LastFileError());
    PatchFile(file.Get(), position - start, bytes);
    if (!system::FlushFile(file.Get()))
        Fail(system::LastFileError());
}

void ZipOutput::Patch(std::uint64_t position, Bytes bytes)
{
    CheckUsable();
    if (position < m_partStart)
        return PatchFinished(position, bytes);
    const std::uint64_t within = position - m_partStart;
    if (within >= m_written) {
        std::memcpy(m_buffer.data() + (within - m_written), bytes.data(), bytes.size());
        return;
    }
    Flush();
    PatchFile(m_file->File(), within, bytes);
    ULONGLONG reached = 0;
    if (!system::SeekFile(m_file->File(), static_cast<LONGLONG>(m_written), 0, reached))
        Fail(system::LastFileError());
}

void ZipOutput::Return(std::uint64_t position)
{
    const std::uint64_t within = position - m_partStart;
    const std::uint64_t kept = std::min(within, m_written);
    ULONGLONG reached = 0;
    if ((m_error != 0 || kept != m_written) &&
        (m_file == nullptr || !system::SetFileLength(m_file->File(), kept) ||
         !system::SeekFile(m_file->File(), static_cast<LONGLONG>(kept), 0, reached)))
        Fail(system::LastFileError());
    m_written = kept;
    m_buffered = static_cast<std::size_t>(within - kept);
    m_error = 0;
}

void ZipOutput::Commit()
{
    Flush();
    Guarded([this] { m_file->Commit(); });
    m_committed = true;
}

} // namespace vak::detail
