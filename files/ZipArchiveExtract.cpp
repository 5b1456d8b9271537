#include "files/FileSystem.h"
#include "files/ZipArchive.h"
#include "files/zip/ZipDates.h"
#include "files/zip/ZipNames.h"
#include "files/zip/ZipState.h"
#include "files/zip/ZipTarget.h"

#include <algorithm>

using namespace vak;
using detail::ThrowZip;
using detail::ZipEntry;
using detail::ZipState;

namespace {

constexpr UINT kSmallestBuffer = 4096;
constexpr UINT kLargestBuffer = 1 << 20;

CString ListedName(const ZipState& state, const ZipEntry& entry)
{
    const auto name = state.directory.NameOf(entry);
    return {name.data(), static_cast<int>(name.size())};
}

bool IsBeyondRatio(const CZipLimits& limits, const ZipEntry& entry)
{
    return entry.uncompressed != 0 &&
           entry.uncompressed / std::max<ULONGLONG>(limits.maxRatio, 1) >= entry.compressed;
}

/// What all entries beyond the ratio expand to: a bomb may be made of many that are small.
std::uint64_t BytesBeyondRatio(ZipState& state)
{
    if (state.bytesBeyondRatio)
        return *state.bytesBeyondRatio;
    std::uint64_t bytes = 0;
    for (const ZipEntry& entry : state.directory.Entries()) {
        if (IsBeyondRatio(state.limits, entry))
            bytes += std::min(entry.uncompressed, ~bytes);
    }
    state.bytesBeyondRatio = bytes;
    return bytes;
}

/// 0, or the code of the limit that the entry goes beyond by what the directory says of it; that it says the
/// truth is seen to while the data are read.
int CheckLimits(ZipState& state, const ZipEntry& entry)
{
    const CZipLimits& limits = state.limits;
    const ULONGLONG size = entry.uncompressed;
    if (size > limits.maxEntry)
        return CZipException::limitSize;
    if (state.extracted > limits.maxTotal || size > limits.maxTotal - state.extracted)
        return CZipException::limitTotal;
    if (IsBeyondRatio(limits, entry) && BytesBeyondRatio(state) > limits.ratioFloor)
        return CZipException::limitRatio;
    return 0;
}

/// Reads all the data of the entry in pieces of the buffer's size and hands each to `write(bytes)`.
template <class Write>
void ReadData(ZipState& state, const ZipEntry& entry, UINT bufferSize, Write write)
{
    state.Settle();
    detail::ZipEntryStream stream(state.volumes, state.directory, entry, state.inflater, state.path);
    if (const int cause = CheckLimits(state, entry); cause != 0)
        ThrowZip(cause, state.path, ListedName(state, entry));
    state.buffer.resize(std::clamp(bufferSize, kSmallestBuffer, kLargestBuffer));
    while (const std::size_t count = stream.Read(state.buffer)) {
        write(std::span<const std::uint8_t>(state.buffer).first(count));
        state.extracted += count;
    }
}

} // namespace

void CZipArchive::Test(std::size_t index)
{
    ReadData(State(), Checked(index), kBufferSize, [](std::span<const std::uint8_t>) {});
}

void CZipArchive::ExtractTo(std::size_t index, CFile& to, UINT bufferSize)
{
    ReadData(State(), Checked(index), bufferSize, [&to](std::span<const std::uint8_t> bytes) {
        to.Write(bytes.data(), static_cast<UINT>(bytes.size()));
    });
}

void CZipArchive::Extract(std::size_t index, LPCWSTR path, bool fullPath, LPCWSTR newName, UINT bufferSize)
{
    ZipState& state = State();
    const ZipEntry& entry = Checked(index);
    const CString listed = ListedName(state, entry);
    const bool isFolder = state.directory.IsFolder(entry);
    CString wanted = newName == nullptr || *newName == 0 ? listed : detail::zip::WithBackslashes(newName);
    if (!fullPath && isFolder)
        return;
    if (!fullPath)
        wanted = wanted.Mid(wanted.ReverseFind(L'\\') + 1);
    CString safe;
    const int cause = detail::zip::MakeSafe(wanted, safe);
    // "./" is the destination itself.
    if (cause != 0 && !(isFolder && cause == CZipException::nameEmpty && !wanted.IsEmpty()))
        ThrowZip(cause, state.path, listed);
    detail::ZipTarget target(path, state.path, listed, state.target);
    if (isFolder)
        return target.MakeFolder(safe + L'\\');
    target.Begin(safe);
    ReadData(state, entry, bufferSize,
             [&target](std::span<const std::uint8_t> bytes) { target.Write(bytes); });
    target.Finish(detail::zip::TimeFromDos(entry.date, entry.time));
}
