#include "files/FileNames.h"
#include "files/FileSystem.h"
#include "files/Zip.h"
#include "framework/base/File.h"
#include "framework/base/MemFile.h"
#include "fuzz/support/Target.h"

#include <random>
#include <string>

using vak::fuzz::Require;

/// The whole input is an archive that is opened and extracted, under low limits, into a folder whose
/// neighbour must stay as it is.

namespace {

constexpr std::size_t kMostEntries = 50;
constexpr ULONGLONG kMostBytes = 1 << 20;

const CString& Base()
{
    static const CString base =
        fileCreateTmpFolder(CString(("vakfuzz-zip-" + std::to_string(std::random_device()())).c_str()), 0);
    return base;
}

/// False for a refusal, which is the archive's exception and no other.
template <class Act>
bool Try(Act act)
{
    try {
        act();
        return true;
    } catch (CZipException* e) {
        Require(e->m_cause > CZipException::noError && e->m_cause <= CZipException::lastCause);
        e->Delete();
        return false;
    }
}

/// Reads the entry into memory and to the disk; `total` is what came of it since the archive was opened.
void ExtractBoth(CZip& zip, WORD index, ULONGLONG& total)
{
    CZipHeader header;
    Require(zip.GetFileInfo(header, index));
    CMemFile memory;
    if (Try([&] { zip.ExtractTo(index, memory, 100); })) {
        Require(memory.GetLength() == header.GetLength());
        total += header.GetLength();
    }
    if (!Try([&] { zip.ExtractFile(index, Base() + L"out"); })) {
        Require(zip.IsClosed());
        zip.Open(zip.GetArchivePath(), CZip::zipOpenReadOnly);
        total = 0;
    } else if (!header.IsDirectory()) {
        total += header.GetLength();
    }
    Require(total <= kMostBytes);
}

void Run(const std::uint8_t* data, std::size_t size)
{
    fileCreateDirectory(Base() + L"out", 1);
    const CString archive = Base() + L"a.zip";
    {
        CFile file(archive, CFile::modeCreate | CFile::modeWrite);
        file.Write(data, static_cast<UINT>(size));
    }
    CZip zip;
    CZipLimits limits;
    limits.maxTotal = kMostBytes;
    limits.ratioFloor = 1 << 16;
    zip.SetLimits(limits);
    ULONGLONG total = 0;
    if (Try([&] { zip.Open(archive, CZip::zipOpenReadOnly); })) {
        const std::size_t count = zip.GetEntryCount();
        for (std::size_t i = 0; i < count && i < kMostEntries; ++i)
            ExtractBoth(zip, static_cast<WORD>(i), total);
        zip.Close();
    }
    CFile::Remove(archive);
    Require(fileRemoveDirectory(Base() + L"out", 1) != 0);
    // Only when nothing else was written beside the destination is the base empty.
    Require(fileRemoveDirectory(Base(), 0) != 0);
}

const vak::fuzz::Target target("ZipExtract", Run);

} // namespace
