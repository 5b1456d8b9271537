#include "files/ZipArchive.h"

#include "files/zip/ZipNames.h"
#include "files/zip/ZipState.h"
#include "framework/base/SystemFolder.h"

#include <new>

using namespace vak;
using vak::detail::ThrowZip;

CZipArchive::CZipArchive() : m_state(std::make_unique<detail::ZipState>()) {}

CZipArchive::~CZipArchive() = default;

void CZipArchive::Open(LPCWSTR path, int mode, ULONGLONG volumeSize)
{
    Close(zipCloseAfterError);
    detail::ZipState& state = State();
    if (mode < zipOpen || mode > zipOpenReadOnlySplit)
        ThrowZip(CZipException::badArgument, path);
    if (!state.IsKeptFor(path))
        state.Forget();
    state.path = path;
    state.mode = mode;
    state.extracted = 0;
    state.bytesBeyondRatio.reset();
    state.isNew = false;
    if (mode == zipCreate || mode == zipCreateSplit)
        return Create(mode == zipCreateSplit ? volumeSize : 0);
    if (!state.isKept)
        state.ReadArchive();
    state.isKept = false;
    state.isOpen = true;
}

void CZipArchive::Close(int mode, bool setTime)
{
    detail::ZipState& state = State();
    if (!state.isOpen)
        return;
    state.isOpen = false;
    state.isKept = mode != zipCloseNormal && state.writer == nullptr;
    state.volumes.Release();
    try {
        if (mode == zipCloseNormal)
            Complete(setTime);
    } catch (...) {
        state.writer.reset();
        state.Forget();
        throw;
    }
    state.writer.reset();
    if (!state.isKept)
        state.Forget();
}

bool CZipArchive::IsClosed() const
{
    return !State().isOpen;
}

bool CZipArchive::IsReadOnly() const
{
    const detail::ZipState& state = State();
    return state.mode == zipOpenReadOnly || state.mode == zipOpenReadOnlySplit || state.volumes.IsSplit();
}

bool CZipArchive::IsSplit() const
{
    return State().volumes.IsSplit();
}

const CString& CZipArchive::GetArchivePath() const
{
    return State().path;
}

CString CZipArchive::GetComment() const
{
    return State().directory.Comment();
}

void CZipArchive::SetCodePage(UINT codePage)
{
    State().codePage = codePage;
}

void CZipArchive::SetLimits(const CZipLimits& limits)
{
    State().limits = limits;
    State().bytesBeyondRatio.reset();
}

const CZipLimits& CZipArchive::GetLimits() const
{
    return State().limits;
}

std::size_t CZipArchive::GetEntryCount() const
{
    return State().OpenDirectory().Count();
}

bool CZipArchive::GetEntry(std::size_t index, CZipHeader& header) const
{
    const detail::ZipDirectory& directory = State().OpenDirectory();
    if (index >= directory.Count())
        return false;
    directory.Describe(directory.At(index), header);
    return true;
}

bool CZipArchive::IsEntryDirectory(std::size_t index) const
{
    return State().directory.IsFolder(Checked(index));
}

std::size_t CZipArchive::Find(LPCWSTR name, int mode, bool fileNameOnly) const
{
    return State().OpenDirectory().Find(name, mode != zipCompareExact, fileNameOnly);
}

void CZipArchive::FindMatching(LPCWSTR pattern, bool fullPath, std::vector<std::size_t>& indexes) const
try {
    State().OpenDirectory().FindMatching(pattern, fullPath, indexes);
} catch (const std::bad_alloc&) {
    vak::detail::ThrowMemory();
}

const detail::ZipEntry& CZipArchive::Checked(std::size_t index) const
{
    const detail::ZipDirectory& directory = State().OpenDirectory();
    if (index >= directory.Count())
        ThrowZip(CZipException::badArgument, State().path);
    return directory.At(index);
}

namespace vak::detail {

namespace {

/// The current folder may be another one when the archive is opened again.
CString FullPathOf(LPCWSTR path)
{
    CString full;
    return system::FullPath(path, full) ? full : CString(path);
}

} // namespace

const ZipDirectory& ZipState::OpenDirectory() const
{
    if (!isOpen)
        ThrowZip(CZipException::isClosed, path);
    return directory;
}

bool ZipState::IsKeptFor(LPCWSTR wanted) const
{
    return isKept && codePage == keptCodePage && volumes.Path() == FullPathOf(wanted) &&
           volumes.IsUnchanged();
}

void ZipState::Forget()
{
    isKept = false;
    replaced.reset();
    volumes.Close();
    directory.Clear();
}

void ZipState::ReadArchive()
{
    full = FullPathOf(path);
    try {
        volumes.Open(full);
        directory.Read(volumes, codePage, limits.maxDirectory, path);
    } catch (...) {
        Forget();
        throw;
    }
    keptCodePage = codePage;
}

} // namespace vak::detail
