#include "files/zip/ZipVolumes.h"

#include "files/ZipException.h"
#include "framework/base/SystemFolder.h"

#include <algorithm>

namespace vak::detail {

namespace {

constexpr LPCWSTR kFirstPiece = L".001";
constexpr int kExtension = 4; ///< units of ".zip" and ".001"

} // namespace

bool HasZipExtension(const CString& path)
{
    return path.Right(kExtension).CompareNoCase(L".zip") == 0;
}

CString ZipPartPath(const CString& path, std::uint32_t number)
{
    CString front = path.Left(path.GetLength() - kExtension + 2);
    front.AppendFormat(L"%02u", number);
    return front;
}

void ZipVolumes::ThrowSystem(const CString& path) const
{
    ThrowZip(CZipException::systemError, path, nullptr, static_cast<LONG>(system::LastFileError()));
}

bool ZipVolumes::Describe(const CString& path, Part& part)
{
    system::FileEntry entry;
    if (!system::QueryFile(path, entry))
        return false;
    part.path = path;
    part.size = entry.size;
    part.written = entry.written;
    return true;
}

void ZipVolumes::Open(const CString& path)
{
    Release();
    m_parts.clear();
    m_path = path;
    m_isWritten = false;
    Part part;
    if (!Describe(path, part))
        ThrowSystem(path);
    m_parts.push_back(part);
    m_isPieces = path.Right(kExtension) == kFirstPiece;
    if (m_isPieces)
        AddPieces();
    Number();
    Hold(0);
}

void ZipVolumes::Follow(const CString& path, std::uint64_t size, bool isWritten)
{
    ZipVector<Part> parts(1);
    Describe(path, parts[0]);
    parts[0].path = path;
    parts[0].size = size;
    Release();
    m_parts.swap(parts);
    m_path = path;
    m_isPieces = false;
    m_isWritten = isWritten;
    Number();
}

void ZipVolumes::AddPieces()
{
    Part part;
    for (UINT number = 2;; ++number) {
        CString path = m_path.Left(m_path.GetLength() - kExtension);
        path.AppendFormat(L".%03u", number);
        if (!Describe(path, part))
            return;
        m_parts.push_back(part);
    }
}

/// Whether a last part is open that can stand behind others.
bool ZipVolumes::IsSetOf(std::uint32_t parts) const
{
    return parts != m_parts.size() && !m_isPieces && m_parts.size() == 1 && HasZipExtension(m_path);
}

bool ZipVolumes::HasParts(std::uint32_t parts) const
{
    Part part;
    bool isThere = true;
    for (std::uint32_t number = 1; IsSetOf(parts) && number < parts && isThere; ++number)
        isThere = Describe(ZipPartPath(m_path, number), part);
    return isThere;
}

bool ZipVolumes::BringParts(std::uint32_t parts)
{
    if (parts == m_parts.size()) {
        // Pieces whose records number them are a set under other names.
        m_isPieces = m_isPieces && parts == 1;
        return true;
    }
    if (!IsSetOf(parts))
        return parts == 1;
    ZipVector<Part> all(parts);
    for (std::uint32_t number = 1; number < parts; ++number) {
        const CString path = ZipPartPath(m_path, number);
        if (!Describe(path, all[number - 1]))
            ThrowZip(CZipException::volumeMissing, path, nullptr, static_cast<LONG>(system::LastFileError()));
    }
    all.back() = m_parts.front();
    Release();
    m_parts.swap(all);
    Number();
    return true;
}

void ZipVolumes::Number()
{
    m_size = 0;
    m_windowSize = 0;
    for (Part& part : m_parts) {
        part.start = m_size;
        m_size += part.size;
    }
}

void ZipVolumes::Release()
{
    if (m_file != system::kNoFile)
        system::CloseFile(m_file);
    m_file = system::kNoFile;
    m_windowSize = 0;
}

void ZipVolumes::Close()
{
    Release();
    m_path.Empty();
    m_parts.clear();
    m_window = {};
    Number();
}

bool ZipVolumes::IsUnchanged() const
{
    return !m_parts.empty() && std::all_of(m_parts.begin(), m_parts.end(), [](const Part& part) {
        Part now;
        return Describe(part.path, now) && now.size == part.size &&
               now.written.dwLowDateTime == part.written.dwLowDateTime &&
               now.written.dwHighDateTime == part.written.dwHighDateTime;
    });
}

std::uint64_t ZipVolumes::PartStart(std::uint32_t part) const
{
    const std::size_t parts = m_isPieces ? 1 : m_parts.size();
    return part < parts ? m_parts[part].start : m_size;
}

std::size_t ZipVolumes::PartOf(std::uint64_t offset) const
{
    const auto behind = std::upper_bound(m_parts.begin(), m_parts.end(), offset,
                                         [](std::uint64_t at, const Part& part) { return at < part.start; });
    return static_cast<std::size_t>(behind - m_parts.begin()) - 1;
}

void ZipVolumes::Hold(std::size_t part)
{
    if (m_file != system::kNoFile && m_held == part)
        return;
    if (m_file != system::kNoFile)
        system::CloseFile(m_file);
    system::OpenOptions options;
    options.read = options.shareRead = options.shareDelete = true;
    options.shareWrite = m_isWritten;
    m_file = system::OpenFile(m_parts[part].path, options);
    if (m_file == system::kNoFile)
        ThrowSystem(m_parts[part].path);
    m_held = part;
    m_position = 0;
}

std::size_t ZipVolumes::ReadAt(std::uint64_t offset, std::uint8_t* buffer, std::size_t size)
{
    const std::size_t index = PartOf(offset);
    const Part& part = m_parts[index];
    const std::uint64_t within = offset - part.start;
    Hold(index);
    ULONGLONG reached = 0;
    if (within != m_position && !system::SeekFile(m_file, static_cast<LONGLONG>(within), 0, reached))
        ThrowSystem(part.path);
    const auto wanted = static_cast<UINT>(std::min<std::uint64_t>(size, part.size - within));
    UINT done = 0;
    // What a failed read leaves of the position is not known.
    m_position = ~std::uint64_t{0};
    if (!system::ReadFile(m_file, buffer, wanted, done))
        ThrowSystem(part.path);
    m_position = within + done;
    return done;
}

ZipSource::Bytes ZipVolumes::View(std::uint64_t offset, std::size_t least)
{
    if (offset >= m_size)
        return {};
    const std::size_t wanted = std::min<std::uint64_t>(std::min(least, kWindow), m_size - offset);
    const std::uint64_t skip = offset - m_windowStart;
    if (offset >= m_windowStart && skip < m_windowSize && m_windowSize - skip >= wanted)
        return Bytes(m_window).subspan(static_cast<std::size_t>(skip),
                                       m_windowSize - static_cast<std::size_t>(skip));
    m_window.resize(kWindow);
    m_windowSize = 0;
    const std::size_t room = std::min<std::uint64_t>(kWindow, m_size - offset);
    std::size_t filled = 0;
    while (filled < room) {
        const std::size_t got = ReadAt(offset + filled, m_window.data() + filled, room - filled);
        if (got == 0)
            break; // the file became shorter
        filled += got;
    }
    m_windowStart = offset;
    m_windowSize = filled;
    return Bytes(m_window).first(filled);
}

bool ZipVolumes::Read(std::uint64_t offset, void* buffer, std::size_t size)
{
    auto* to = static_cast<std::uint8_t*>(buffer);
    while (size >= kWindow) {
        const std::size_t got = offset < m_size ? ReadAt(offset, to, size) : 0;
        if (got == 0)
            return false;
        to += got;
        offset += got;
        size -= got;
    }
    return ZipSource::Read(offset, to, size);
}

HANDLE ZipVolumes::Locate(std::uint64_t offset, std::uint64_t& within, std::uint64_t& left)
{
    const std::size_t index = PartOf(offset);
    Hold(index);
    m_position = ~std::uint64_t{0};
    within = offset - m_parts[index].start;
    left = m_parts[index].size - within;
    return m_file;
}

} // namespace vak::detail
