#include "files/zip/ZipEnd.h"

#include "files/ZipException.h"

#include <algorithm>
#include <optional>

namespace vak::detail {

namespace {

using zip::Bytes;

/// How far from the end of the file the end record is looked for: the longest comment, and a megabyte of data
/// that belong to somebody else.
constexpr std::uint64_t kSearched = zip::kMostComment + zip::kEndSize + (std::uint64_t{1} << 20);
/// Signatures that turn out not to be end records, after which the search is given up.
constexpr int kMostTries = 64;
constexpr std::uint64_t kNowhere = ~std::uint64_t{0};

/// The last end signature that begins before `before` and not before `first`.
std::uint64_t LastSignature(ZipSource& source, std::uint64_t first, std::uint64_t before)
{
    constexpr std::size_t kOverlap = 3;
    while (before > first) {
        const std::uint64_t from =
            before - std::min<std::uint64_t>(before - first, ZipSource::kWindow - kOverlap);
        const Bytes bytes = source.View(from, static_cast<std::size_t>(before - from) + kOverlap);
        for (std::size_t at = std::min(bytes.size(), static_cast<std::size_t>(before - from)); at-- > 0;) {
            if (bytes[at] == 'P' && zip::SignatureOf(bytes.subspan(at)) == zip::kEndSignature)
                return from + at;
        }
        before = from;
    }
    return kNowhere;
}

/// One end record, tried for being the archive's.
class Candidate
{
public:
    Candidate(ZipSource& source, std::uint64_t at) : m_source(source) { m_end.record = at; }

    /// 0 when everything that it says can be; else the code of what cannot.
    int Try();
    /// Whether it is the archive's end record although it was refused: nothing follows it, or it leads to a
    /// directory. A record further in front would then be that of another archive.
    bool IsCertain() const { return m_isCertain; }
    /// Whether its comment ends with the file.
    bool EndsFile() const { return m_endsFile; }
    /// Whether it is one of no entries, or just bytes in a comment that look like it.
    bool IsDoubtful() const { return !m_endsFile && m_end.size == 0; }
    /// The number of parts that it speaks of.
    std::uint32_t Parts() const { return m_parts; }
    const ZipEnd& End() const { return m_end; }

private:
    int ReadEnd();
    int ReadLocator();
    int ReadEnd64();
    int Merge();
    int BringParts(std::uint32_t parts);
    int Place();
    bool IsDirectoryAt(std::uint64_t at);
    bool IsWrapped(std::uint64_t prefix);
    template <class Record>
    bool ReadRecord(std::uint64_t at, std::size_t size, Record& record)
    {
        return zip::Parse(m_source.View(at, size), record);
    }

    ZipSource& m_source;
    ZipEnd m_end;
    zip::EndRecord m_record;
    zip::Locator64 m_locator;
    zip::End64Record m_record64;
    bool m_has64 = false;
    bool m_isCertain = false;
    bool m_endsFile = false;
    std::uint32_t m_parts = 1;
    std::uint64_t m_directoryEnd = 0;
    std::uint64_t m_declaredOffset = 0;
    std::uint32_t m_directoryDisk = 0;
};

int Candidate::Try()
{
    for (const auto step : {&Candidate::ReadEnd, &Candidate::ReadLocator, &Candidate::ReadEnd64,
                            &Candidate::Merge, &Candidate::Place}) {
        if (const int cause = (this->*step)(); cause != 0)
            return cause;
    }
    return 0;
}

int Candidate::ReadEnd()
{
    if (!ReadRecord(m_end.record, zip::kEndSize, m_record))
        return CZipException::endMissing;
    m_end.commentLength = m_record.commentLength;
    const std::uint64_t behind = m_source.Size() - m_end.record - zip::kEndSize;
    m_isCertain = m_endsFile = m_record.commentLength == behind;
    return m_record.commentLength <= behind ? 0 : int(CZipException::endDamaged);
}

int Candidate::ReadLocator()
{
    const bool wants64 = m_record.disk == zip::kSee64Short || m_record.entries == zip::kSee64Short ||
                         m_record.entriesOnDisk == zip::kSee64Short ||
                         m_record.directorySize == zip::kSee64 || m_record.directoryOffset == zip::kSee64;
    m_has64 = wants64 && m_end.record >= zip::kLocator64Size &&
              ReadRecord(m_end.record - zip::kLocator64Size, zip::kLocator64Size, m_locator);
    if (!m_has64)
        return BringParts(m_record.disk + 1u);
    return BringParts(std::max<std::uint32_t>(m_locator.disks, 1));
}

int Candidate::BringParts(std::uint32_t parts)
{
    constexpr std::uint32_t kMostParts = 65536;
    const std::uint64_t fromEnd = m_source.Size() - m_end.record;
    m_parts = parts;
    // What only looks like an end record names parts that never were.
    if (parts <= kMostParts && !m_endsFile && !m_source.HasParts(parts))
        return CZipException::volumeMissing;
    if (parts > kMostParts || !m_source.BringParts(parts))
        return CZipException::endDamaged;
    m_end.record = m_source.Size() - fromEnd;
    return 0;
}

int Candidate::ReadEnd64()
{
    m_directoryEnd = m_end.record;
    if (!m_has64)
        return 0;
    const std::uint64_t locator = m_end.record - zip::kLocator64Size;
    const std::uint64_t part = m_source.PartStart(m_locator.end64Disk);
    std::uint64_t at = part + std::min(m_locator.end64Offset, m_source.Size() - part);
    // With something in front of the archive the offset is too low; then the record stands before the
    // locator.
    if (!ReadRecord(at, zip::kEnd64Size, m_record64) && locator >= zip::kEnd64Size) {
        at = locator - zip::kEnd64Size;
        ReadRecord(at, zip::kEnd64Size, m_record64);
    }
    constexpr std::uint64_t kUncounted = 12; // the signature and the size itself
    const bool isWhole = m_record64.recordSize >= zip::kEnd64Size - kUncounted &&
                         at <= locator - kUncounted && m_record64.recordSize <= locator - at - kUncounted;
    if (locator < kUncounted || !isWhole)
        return CZipException::zip64Damaged;
    m_directoryEnd = at;
    return 0;
}

/// Takes the wide value where the narrow one says so; false when both speak and disagree.
template <class Narrow, class Wide>
bool MergeValue(Narrow narrow, Narrow marker, Wide wide, bool has64, Wide& value)
{
    const bool useWide = has64 && narrow == marker;
    value = useWide ? wide : Wide{narrow};
    return useWide || !has64 || wide == narrow;
}

int Candidate::Merge()
{
    const auto& wide = m_record64;
    const bool agree =
        MergeValue(m_record.entries, zip::kSee64Short, wide.entries, m_has64, m_end.entries) &&
        MergeValue(m_record.directorySize, zip::kSee64, wide.directorySize, m_has64, m_end.size) &&
        MergeValue(m_record.directoryOffset, zip::kSee64, wide.directoryOffset, m_has64, m_declaredOffset) &&
        MergeValue(m_record.directoryDisk, zip::kSee64Short, wide.directoryDisk, m_has64, m_directoryDisk);
    m_end.isExact = m_has64;
    return agree ? 0 : int(CZipException::zip64Damaged);
}

bool Candidate::IsDirectoryAt(std::uint64_t at)
{
    return zip::SignatureOf(m_source.View(at, 4)) == zip::kCentralSignature;
}

/// Whether what seems to stand in front is so many times the space of 32 bits, and the archive begins there.
bool Candidate::IsWrapped(std::uint64_t prefix)
{
    return !m_has64 && prefix % zip::kLap == 0 && prefix <= m_source.Size() &&
           zip::SignatureOf(m_source.View(0, 4)) == zip::kLocalSignature &&
           zip::SignatureOf(m_source.View(prefix, 4)) != zip::kLocalSignature;
}

int Candidate::Place()
{
    const std::uint64_t part = m_source.PartStart(m_directoryDisk);
    if (m_end.size > m_directoryEnd || part == m_source.Size() || m_declaredOffset > m_directoryEnd - part)
        return CZipException::directoryOffset;
    const std::uint64_t declared = part + m_declaredOffset;
    const std::uint64_t last = m_directoryEnd - m_end.size;
    m_end.start = last;
    if (declared > last)
        return CZipException::directoryOffset;
    if (declared == last || m_end.size == 0)
        return m_end.size == 0 || IsDirectoryAt(last) ? 0 : int(CZipException::directoryOffset);
    // Something stands in front of the archive, or between the directory and the end. Were both true there
    // would be two directories, of which other tools might show the other one.
    const bool isLast = IsDirectoryAt(last);
    const bool isDeclared = IsDirectoryAt(declared);
    m_isCertain = m_isCertain || isLast || isDeclared;
    if (isLast == isDeclared)
        return CZipException::directoryOffset;
    m_end.isWrapped = isLast && IsWrapped(last - declared);
    m_end.prefix = isLast && !m_end.isWrapped ? last - declared : 0;
    m_end.start = isLast ? last : declared;
    return 0;
}

bool BeginsLikeArchive(ZipSource& source)
{
    const std::uint32_t first = zip::SignatureOf(source.View(0, 4));
    return first == zip::kLocalSignature || first == zip::kDescriptorSignature ||
           first == zip::kSinglePartSignature;
}

} // namespace

ZipEnd FindZipEnd(ZipSource& source, const CString& archive)
{
    const std::uint64_t size = source.Size();
    const std::uint64_t first = size - std::min(size, kSearched);
    int cause = 0;
    std::uint32_t parts = 1;
    std::optional<ZipEnd> doubtful;
    std::uint64_t before = size;
    for (int tries = 0; tries < kMostTries; ++tries) {
        before = LastSignature(source, first, before);
        if (before == kNowhere)
            break;
        Candidate candidate(source, before);
        const int refused = candidate.Try();
        if (source.Size() != size)
            doubtful.reset();
        if (refused == 0 && !candidate.IsDoubtful())
            return doubtful && !candidate.EndsFile() ? *doubtful : candidate.End();
        if (refused == 0 && !doubtful)
            doubtful = candidate.End();
        // The last record of the file is the likeliest, so what it is refused for is the answer.
        if (cause == 0)
            parts = candidate.Parts();
        cause = cause == 0 ? refused : cause;
        if ((refused != 0 && candidate.IsCertain()) || source.Size() != size)
            break;
    }
    if (doubtful)
        return *doubtful;
    if (cause == CZipException::volumeMissing)
        source.BringParts(parts);
    if (cause == 0)
        cause = BeginsLikeArchive(source) ? CZipException::endMissing : CZipException::notArchive;
    ThrowZip(cause, archive);
}

} // namespace vak::detail
