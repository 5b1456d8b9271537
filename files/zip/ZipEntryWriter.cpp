#include "files/zip/ZipEntryWriter.h"

#include "files/ZipArchive.h"
#include "files/ZipException.h"
#include "framework/base/SystemFile.h"
#include "framework/base/Time.h"

#include <algorithm>

namespace vak::detail {

namespace {

/// Files up to this are compressed in memory: a little, so that all buffers stay within a megabyte.
constexpr std::uint64_t kSmall = 1 << 17;
/// Below this deflating saves nothing that counts.
constexpr std::uint64_t kTiny = 16;
/// Of files from this on samples are looked at.
constexpr std::uint64_t kSampled = 1 << 20;
constexpr std::size_t kSample = 1 << 13;
constexpr std::uint64_t kSamples = 16;
constexpr std::size_t kSmallestBuffer = kSample;
constexpr std::size_t kLargestBuffer = 1 << 20;

/// The platform's attributes that the format knows under the same bits.
constexpr DWORD kKeptAttributes = system::kAttributeReadOnly | system::kAttributeHidden |
                                  system::kAttributeSystem | system::kAttributeDirectory |
                                  system::kAttributeArchive;

/// What levels say of themselves in the flags.
std::uint16_t LevelFlags(int level)
{
    constexpr std::uint16_t flags[] = {0, 6, 4, 0, 0, 0, 0, 0, 2, 2};
    return flags[level];
}

/// A size that the data of that many bytes do not exceed, however badly they deflate.
std::uint64_t LargestPacked(std::uint64_t size)
{
    return size + size / 1000 + 1024;
}

} // namespace

/// The file that is added, read up to the length that it had at first.
class ZipEntryWriter::Source
{
public:
    Source(const CString& path, const CString& archive) : m_path(path), m_archive(archive)
    {
        system::OpenOptions options;
        options.read = options.sequentialScan = true;
        // A file that somebody is writing is added as it is.
        options.shareRead = options.shareWrite = options.shareDelete = true;
        m_file = system::OpenFile(path, options);
        if (m_file == system::kNoFile)
            Throw();
        ULONGLONG length = 0;
        if (!system::GetFileLength(m_file, length)) {
            const DWORD error = system::LastFileError();
            system::CloseFile(m_file);
            Throw(error);
        }
        m_length = m_left = length;
    }
    ~Source() { system::CloseFile(m_file); }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    std::uint64_t Length() const { return m_length; }
    void Seek(std::uint64_t position)
    {
        ULONGLONG reached = 0;
        if (!system::SeekFile(m_file, static_cast<LONGLONG>(position), 0, reached))
            Throw();
        m_left = m_length - position;
    }
    /// Fills the front of `buffer`; less than the whole only at the end.
    zip::Bytes Read(std::span<std::uint8_t> buffer)
    {
        const auto wanted = static_cast<UINT>(std::min<std::uint64_t>(buffer.size(), m_left));
        UINT got = 0;
        if (wanted != 0 && !system::ReadFile(m_file, buffer.data(), wanted, got))
            Throw();
        m_left = got < wanted ? 0 : m_left - got;
        return buffer.first(got);
    }
    bool IsAtEnd() const { return m_left == 0; }

private:
    [[noreturn]] void Throw(DWORD error = system::LastFileError()) const
    {
        ThrowZip(CZipException::targetError, m_archive, m_path, static_cast<LONG>(error));
    }

    const CString& m_path;
    const CString& m_archive;
    HANDLE m_file;
    std::uint64_t m_length = 0;
    std::uint64_t m_left = 0;
};

ZipEntryWriter::ZipEntryWriter(ZipOutput& output, const zip::Zip64Start& start, const CString& archive)
    : m_output(output), m_start(start), m_archive(archive)
{
}

void ZipEntryWriter::Add(const ZipAddition& what, zip::Buffer& record)
{
    system::FileEntry found;
    if (!system::QueryFile(what.path, found))
        ThrowZip(CZipException::targetError, m_archive, what.path,
                 static_cast<LONG>(system::LastFileError()));
    m_entry = {};
    m_entry.name = zip::StoredFrom(what.name);
    m_entry.written = CTime::IsValidFILETIME(found.written) ? CTime(found.written).GetTime() : 0;
    m_entry.dosTime = zip::DosFromTime(m_entry.written);
    m_entry.attributes = found.attributes & kKeptAttributes;
    if ((found.attributes & system::kAttributeDirectory) != 0) {
        Begin();
    } else {
        Source source(what.path, m_archive);
        if (source.Length() <= kSmall)
            AddSmall(source, what);
        else
            AddLarge(source, what);
    }
    AppendCentral(record, m_entry, m_start);
}

/// Writes the local header, with what is known of the entry.
void ZipEntryWriter::Begin()
{
    m_header.clear();
    AppendLocal(m_header, m_entry);
    m_output.Reserve(m_header.size());
    m_position = m_output.Position();
    m_entry.part = m_output.Part();
    m_entry.offset = m_output.Within();
    m_output.Write(m_header);
}

/// Completes the local header of data that were written behind it.
void ZipEntryWriter::End()
{
    m_entry.compressed = m_output.Position() - m_position - m_header.size();
    m_header.clear();
    AppendLocal(m_header, m_entry);
    m_output.Patch(m_position, m_header);
}

void ZipEntryWriter::AddSmall(Source& source, const ZipAddition& what)
{
    m_in.resize(std::max(m_in.size(), static_cast<std::size_t>(source.Length())));
    zip::Bytes data = source.Read(m_in);
    m_entry.crc = ZipCrc(0, data);
    m_entry.uncompressed = data.size();
    const std::size_t packed = CompressSmall(data, what);
    if (packed != 0) {
        m_entry.method = zip::kMethodDeflated;
        m_entry.flags = LevelFlags(what.level);
        data = zip::Bytes(m_out).first(packed);
    }
    m_entry.compressed = data.size();
    m_entry.isWide = std::max(m_entry.compressed, m_entry.uncompressed) >= m_start.value;
    Begin();
    m_output.Write(data);
}

/// The size of the compressed data in m_out; 0 when they are to be stored.
std::size_t ZipEntryWriter::CompressSmall(zip::Bytes data, const ZipAddition& what)
{
    const bool isTiny = (what.smartness & CZipArchive::zipStoreSmall) != 0 && data.size() <= kTiny;
    if (what.level == 0 || data.empty() || isTiny)
        return 0;
    const bool mayStore = (what.smartness & CZipArchive::zipStoreIncompressible) != 0;
    const std::size_t room =
        mayStore ? data.size() - 1 : static_cast<std::size_t>(LargestPacked(data.size()));
    m_out.resize(std::max(m_out.size(), room));
    m_deflater.Reset(what.level);
    std::span<std::uint8_t> output = std::span(m_out).first(room);
    return m_deflater.Compress(data, output, true) ? room - output.size() : 0;
}

void ZipEntryWriter::AddLarge(Source& source, const ZipAddition& what)
{
    const std::size_t buffer = std::clamp(what.bufferSize, kSmallestBuffer, kLargestBuffer);
    const bool mayStore = (what.smartness & CZipArchive::zipStoreIncompressible) != 0;
    m_entry.isWide = LargestPacked(source.Length()) >= m_start.value;
    m_in.resize(std::max(m_in.size(), buffer));
    m_out.resize(std::max(m_out.size(), buffer));
    const bool isStored = what.level == 0 || (mayStore && LooksIncompressible(source));
    if (isStored || (!AddDeflated(source, what) && mayStore && m_output.CanReturn(m_position))) {
        if (!isStored)
            m_output.Return(m_position);
        source.Seek(0);
        AddStored(source);
    }
    End();
}

/// False when the data are no smaller than before.
bool ZipEntryWriter::AddDeflated(Source& source, const ZipAddition& what)
{
    m_entry.method = zip::kMethodDeflated;
    m_entry.flags = LevelFlags(what.level);
    Begin();
    m_deflater.Reset(what.level);
    const std::uint64_t begin = m_output.Position();
    bool ended = false;
    while (!ended) {
        zip::Bytes data = source.Read(m_in);
        m_entry.crc = ZipCrc(m_entry.crc, data);
        m_entry.uncompressed += data.size();
        std::span<std::uint8_t> output;
        do {
            output = m_out;
            ended = m_deflater.Compress(data, output, source.IsAtEnd());
            m_output.Write(zip::Bytes(m_out).first(m_out.size() - output.size()));
        } while (!ended && output.empty());
    }
    return m_output.Position() - begin < m_entry.uncompressed;
}

void ZipEntryWriter::AddStored(Source& source)
{
    m_entry.method = zip::kMethodStored;
    m_entry.flags = 0;
    m_entry.crc = 0;
    m_entry.uncompressed = 0;
    Begin();
    while (!source.IsAtEnd()) {
        const zip::Bytes data = source.Read(m_in);
        m_entry.crc = ZipCrc(m_entry.crc, data);
        m_entry.uncompressed += data.size();
        m_output.Write(data);
    }
}

/// Whether none of the samples taken all over the file deflates. Leaves the source at its beginning.
bool ZipEntryWriter::LooksIncompressible(Source& source)
{
    if (source.Length() < kSampled)
        return false;
    bool isDense = true;
    for (std::uint64_t i = 0; i < kSamples && isDense; ++i) {
        source.Seek((source.Length() - kSample) / (kSamples - 1) * i);
        zip::Bytes data = source.Read(std::span(m_in).first(kSample));
        // It has to gain a few per cent, which deflate finds by chance in no data.
        const std::size_t room = data.size() - data.size() / 32;
        std::span<std::uint8_t> output = std::span(m_out).first(room);
        m_sampler.Reset(1);
        isDense = !m_sampler.Compress(data, output, true);
    }
    source.Seek(0);
    return isDense;
}

} // namespace vak::detail
