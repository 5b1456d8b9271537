#include "files/zip/ZipDirectory.h"

#include "files/ZipException.h"
#include "fuzz/support/Target.h"

#include <string>

using vak::fuzz::Require;

/// The whole input is an archive. Whatever directory comes out of it must be one that can be walked,
/// described and searched, with entries that lie inside the file and not inside one another.

namespace {

using vak::detail::ZipDirectory;
using vak::detail::ZipEntry;

constexpr std::size_t kMostSearched = 200;

void CheckEntry(const ZipDirectory& directory, std::size_t index, std::size_t size)
{
    const ZipEntry& entry = directory.At(index);
    const auto units = directory.NameOf(entry);
    const CString name(units.data(), static_cast<int>(units.size()));
    CZipHeader header;
    directory.Describe(entry, header);
    header.GetTime();
    Require(header.GetFileName() == name && header.IsDirectory() == directory.IsFolder(entry));
    if (entry.defect == 0)
        Require(entry.limit <= size && entry.localOffset <= entry.limit &&
                entry.compressed <= entry.limit - entry.localOffset);
    // A zero ends what is asked for.
    if (name.IsEmpty() || name != CString(name.GetString()))
        return;
    const std::size_t exact = directory.Find(name, false, false);
    const std::size_t folded = directory.Find(CString(name).MakeLower(), true, false);
    Require(exact <= index && folded <= exact);
    directory.Find(name, true, true);
}

void Run(const std::uint8_t* data, std::size_t size)
{
    vak::detail::ZipMemory source({data, size});
    ZipDirectory directory;
    for (const UINT codePage : {437u, 932u}) {
        try {
            directory.Read(source, codePage, size, L"fuzz");
        } catch (CZipException* e) {
            Require(e->m_cause > CZipException::noError && e->m_cause <= CZipException::lastCause);
            e->Delete();
            Require(directory.Count() == 0);
            return;
        }
        Require(directory.Count() * vak::detail::zip::kCentralSize <= size && directory.End() <= size);
        for (std::size_t i = 0; i < directory.Count() && i < kMostSearched; ++i)
            CheckEntry(directory, i, size);
        std::vector<std::size_t> all;
        directory.FindMatching(L"*", true, all);
        Require(all.size() == directory.Count());
        directory.Comment();
        directory.Clear();
    }
}

const vak::fuzz::Target target("ZipDirectory", Run);

} // namespace
