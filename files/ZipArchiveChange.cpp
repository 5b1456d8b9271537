#include "files/FileSystem.h"
#include "files/ZipArchive.h"
#include "files/zip/ZipDates.h"
#include "files/zip/ZipNames.h"
#include "files/zip/ZipState.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/Time.h"

#include <algorithm>

using namespace vak;
using detail::ThrowZip;
using detail::ZipDirectory;
using detail::ZipEntry;
using detail::ZipKept;
using detail::ZipRewriter;
using detail::ZipState;
using detail::ZipVector;

namespace {

/// The smallest part of a split archive that the format allows.
constexpr ULONGLONG kSmallestVolume = 65536;
constexpr int kDefaultLevel = 6;
constexpr int kBestLevel = 9;
constexpr std::size_t kLongestName = 0xFFFF;

/// The name as it is stored, judged as names are that are read.
CString CheckedName(const ZipState& state, LPCWSTR name, bool isFolder)
{
    CString wanted = detail::zip::WithBackslashes(name);
    const bool endsAsFolder = wanted.Right(1) == L"\\";
    if (isFolder && !wanted.IsEmpty() && !endsAsFolder)
        wanted += L'\\';
    CString safe;
    int cause = detail::zip::MakeSafe(wanted, safe);
    if (cause == 0 && !isFolder && endsAsFolder)
        cause = CZipException::badArgument;
    if (cause == 0 &&
        static_cast<std::size_t>(detail::zip::StoredFrom(safe).bytes.GetLength()) > kLongestName)
        cause = CZipException::nameTooLong;
    if (cause != 0)
        ThrowZip(cause, state.path, name);
    return safe;
}

std::unique_ptr<ZipRewriter> NewWriter(const ZipState& state, ULONGLONG partSize = 0)
{
    return std::make_unique<ZipRewriter>(state.full, state.path, partSize, state.start64);
}

/// All entries, as they are.
ZipVector<ZipKept> KeepAll(const ZipDirectory& directory)
{
    ZipVector<ZipKept> kept(directory.Count());
    for (std::size_t i = 0; i < kept.size(); ++i)
        kept[i].index = i;
    return kept;
}

/// Goes on with a new archive whose directory is `made`, and lets the one before go.
void Adopt(ZipState& state, std::unique_ptr<ZipRewriter> writer, ZipDirectory& made)
{
    const bool hasDuplicates = made.HasDuplicates();
    state.volumes.Release();
    writer->Show(state.volumes);
    state.directory = std::move(made);
    state.hasDuplicates = hasDuplicates;
    state.writer = std::move(writer);
}

/// Puts the new archive in the old one's place.
void Commit(ZipState& state, std::unique_ptr<ZipRewriter> writer, ZipDirectory& made)
{
    state.volumes.Release();
    const std::uint64_t size = writer->Commit(made);
    state.writer = nullptr;
    if (&made != &state.directory)
        state.directory = std::move(made);
    state.volumes.Follow(state.full, size, false);
}

bool IsStill(const CString& path, const system::FileEntry& old)
{
    system::FileEntry now;
    return system::QueryFile(path, now) && now.size == old.size &&
           now.written.dwLowDateTime == old.written.dwLowDateTime &&
           now.written.dwHighDateTime == old.written.dwHighDateTime;
}

/// What somebody else has done to the archive since it was opened would be lost, or garbled.
void CheckUnchanged(const ZipState& state)
{
    // While there is a writer the volumes are its.
    const bool isUnchanged = state.writer == nullptr
                                 ? state.volumes.IsUnchanged()
                                 : !state.replaced || IsStill(state.full, *state.replaced);
    if (!isUnchanged)
        ThrowZip(CZipException::archiveChanged, state.path);
}

/// Builds the archive anew from those of its entries that are kept. With `comment` it gets that one.
void Rewrite(ZipState& state, const ZipVector<ZipKept>& kept, const detail::zip::Buffer* comment = nullptr)
{
    if (state.writer != nullptr && state.writer->IsSplit())
        ThrowZip(CZipException::isReadOnly, state.path);
    state.Settle();
    CheckUnchanged(state);
    auto writer = NewWriter(state);
    ZipDirectory made(state.directory.CodePage());
    writer->TakeOver(state.volumes, state.directory, kept, made);
    if (comment != nullptr)
        made.SetComment(*comment);
    if (state.isNew)
        Adopt(state, std::move(writer), made);
    else
        Commit(state, std::move(writer), made);
}

/// Begins to add to an existing archive: with the first file, so that data which it replaces are not copied.
void BeginAdding(ZipState& state, const detail::ZipAddition& what)
{
    system::FileEntry replaced;
    system::QueryFile(state.full, replaced);
    CheckUnchanged(state);
    const ZipDirectory& old = state.directory;
    const std::size_t sameName = old.Find(what.name, false, false);
    ZipVector<ZipKept> kept;
    for (ZipKept& entry : KeepAll(old)) {
        const bool isSame =
            sameName != CZipArchive::kNotFound && old.IsSameName(old.At(entry.index), old.At(sameName));
        entry.isPlace = entry.index == sameName;
        if (!isSame || entry.isPlace)
            kept.push_back(entry);
    }
    auto writer = NewWriter(state);
    ZipDirectory made(old.CodePage());
    writer->TakeOver(state.volumes, old, kept, made);
    writer->Add(what, made, sameName);
    Adopt(state, std::move(writer), made);
    state.replaced = replaced;
}

/// Refuses to add the archive, or what it is becoming, to itself.
void CheckForeign(const ZipState& state, LPCWSTR path)
{
    if (fileIsSameFile(path, state.full) != 0 ||
        (state.writer != nullptr && fileIsSameFile(path, state.writer->TemporaryPath()) != 0))
        ThrowZip(CZipException::badArgument, state.path, path);
}

std::int64_t NewestTime(const ZipDirectory& directory)
{
    std::int64_t newest = 0;
    for (const ZipEntry& entry : directory.Entries())
        newest = std::max(newest, detail::zip::TimeFromDos(entry.date, entry.time));
    return newest;
}

} // namespace

void CZipArchive::SetComment(const CString& comment)
{
    ZipState& state = State();
    state.CheckChangeable();
    detail::zip::Buffer bytes;
    if (!detail::zip::CommentBytes(comment, state.directory.CodePage(), bytes))
        ThrowZip(CZipException::nameCharacter, state.path);
    if (bytes.size() > detail::zip::kMostComment)
        ThrowZip(CZipException::nameTooLong, state.path);
    if (state.writer != nullptr && state.isNew)
        return state.directory.SetComment(bytes);
    Rewrite(state, KeepAll(state.directory), &bytes);
}

void CZipArchive::Add(LPCWSTR path, LPCWSTR name, int level, int smartness, UINT bufferSize)
{
    ZipState& state = State();
    state.CheckChangeable();
    if (path == nullptr || *path == 0 || level < -1 || level > kBestLevel)
        ThrowZip(CZipException::badArgument, state.path, path);
    const DWORD attributes = system::FileAttributes(path);
    if (attributes == system::kInvalidAttributes)
        ThrowZip(CZipException::targetError, state.path, path, static_cast<LONG>(system::LastFileError()));
    const bool isFolder = (attributes & system::kAttributeDirectory) != 0;
    if ((smartness & zipRefuseArchive) != 0 && !isFolder)
        CheckForeign(state, path);
    detail::ZipAddition what;
    what.path = path;
    what.name = CheckedName(state, name, isFolder);
    what.level = level < 0 ? kDefaultLevel : level;
    what.smartness = smartness;
    what.bufferSize = bufferSize;
    if (state.writer == nullptr)
        return BeginAdding(state, what);
    const std::size_t index = state.directory.Find(what.name, false, false);
    state.writer->Add(what, state.directory, index);
    if (index != kNotFound && state.hasDuplicates)
        state.directory.RemoveOthers(index);
}

void CZipArchive::Delete(const std::vector<std::size_t>& indexes)
{
    ZipState& state = State();
    state.CheckChangeable();
    ZipVector<bool> isDropped(state.directory.Count());
    for (const std::size_t index : indexes) {
        Checked(index);
        isDropped[index] = true;
    }
    ZipVector<ZipKept> kept = KeepAll(state.directory);
    kept.erase(std::remove_if(kept.begin(), kept.end(),
                              [&](const ZipKept& entry) { return isDropped[entry.index]; }),
               kept.end());
    if (!indexes.empty())
        Rewrite(state, kept);
}

void CZipArchive::Rename(const std::vector<std::size_t>& indexes, const CStringArray& names)
{
    ZipState& state = State();
    state.CheckChangeable();
    if (indexes.size() != static_cast<std::size_t>(names.GetSize()))
        ThrowZip(CZipException::badArgument, state.path);
    ZipVector<ZipKept> kept = KeepAll(state.directory);
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        const bool isFolder = state.directory.IsFolder(Checked(indexes[i]));
        kept[indexes[i]].newName = CheckedName(state, names[static_cast<INT_PTR>(i)], isFolder);
    }
    if (!indexes.empty())
        Rewrite(state, kept);
}

void CZipArchive::Create(ULONGLONG volumeSize)
{
    ZipState& state = State();
    const bool isSplit = state.mode == zipCreateSplit;
    if (!system::FullPath(state.path, state.full) || (isSplit && !detail::HasZipExtension(state.full)))
        ThrowZip(CZipException::badArgument, state.path);
    if (isSplit && volumeSize < kSmallestVolume)
        ThrowZip(CZipException::volumeTooSmall, state.path);
    const DWORD attributes = system::FileAttributes(state.full);
    if (attributes != system::kInvalidAttributes && (attributes & system::kAttributeDirectory) != 0)
        ThrowZip(CZipException::nameTaken, state.path, state.path);
    if (attributes != system::kInvalidAttributes && (attributes & system::kAttributeReadOnly) != 0)
        ThrowZip(CZipException::isReadOnly, state.path);
    state.Forget();
    state.writer = NewWriter(state, volumeSize);
    state.directory = ZipDirectory(state.codePage);
    state.hasDuplicates = false;
    state.isNew = true;
    state.isOpen = true;
}

void CZipArchive::Complete(bool setTime)
{
    ZipState& state = State();
    const bool mayTouch = state.writer != nullptr || !IsReadOnly();
    if (state.writer != nullptr && state.writer->HasDeadData() && !state.writer->IsSplit()) {
        state.isNew = false;
        Rewrite(state, KeepAll(state.directory));
    } else if (state.writer != nullptr) {
        CheckUnchanged(state);
        Commit(state, std::move(state.writer), state.directory);
    }
    const std::int64_t newest = setTime && mayTouch ? NewestTime(state.directory) : 0;
    const FILETIME time = detail::FileTimeFromTime(newest);
    if (newest != 0 && !system::SetFileTimes(state.full, nullptr, nullptr, &time))
        ThrowZip(CZipException::systemError, state.path, nullptr, static_cast<LONG>(system::LastFileError()));
}

namespace vak::detail {

void ZipState::CheckChangeable() const
{
    OpenDirectory();
    const bool wantsReading =
        mode == CZipArchive::zipOpenReadOnly || mode == CZipArchive::zipOpenReadOnlySplit;
    const DWORD attributes = writer == nullptr ? system::FileAttributes(full) : 0;
    const bool isLocked =
        attributes != system::kInvalidAttributes && (attributes & system::kAttributeReadOnly) != 0;
    if (wantsReading || volumes.IsSplit() || isLocked)
        ThrowZip(CZipException::isReadOnly, path);
}

void ZipState::Settle()
{
    if (writer != nullptr)
        writer->Show(volumes);
}

} // namespace vak::detail
