#include "examples/vakconvert/Archives.h"

#include "core/HashTable.h"
#include "examples/vakconvert/Failure.h"
#include "files/FileKinds.h"
#include "files/FileNames.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/Wildcards.h"
#include "files/Zip.h"

#include <algorithm>
#include <utility>

namespace {

/// What is asked of an archive.
struct Wanted
{
    CString folder; ///< in the archive, slash-terminated; empty: the archive itself
    CString pattern;
    bool recurse = false;
    bool named = false; ///< the pattern is the name of one file

    bool Matches(const CString& entry) const
    {
        if (entry.Left(folder.GetLength()).CompareNoCase(folder) != 0)
            return false;
        const CString below = entry.Mid(folder.GetLength());
        const int slash = below.ReverseFind(L'\\');
        if (slash >= 0 && !recurse)
            return false;
        const CString name = below.Mid(slash + 1);
        return named ? name.CompareNoCase(pattern) == 0 : fileMatchWilcards(name, pattern, 0) != 0;
    }
};

CString FolderOf(const CString& entry)
{
    return entry.Left(entry.ReverseFind(L'\\') + 1);
}

bool IsArchive(const CString& path)
{
    // Of an archive in plain pieces, pack.zip.001 and so on, the first one stands for all.
    const bool isPiece = path.Right(4) == L".001";
    CString extension = fileGetExtension(isPiece ? path.Left(path.GetLength() - 4) : path);
    CString inner;
    return CZip::ExtractDirInfo(extension, inner) && inner.IsEmpty() && fileExists(path) &&
           !fileDirectoryExists(path);
}

} // namespace

/// An archive that is open, with its folder among the extracted files.
class Archives::Opened
{
public:
    Opened(CString path, CString folder) : m_path(std::move(path)), m_folder(std::move(folder))
    {
        m_zip.Open(m_path, CZip::zipOpenReadOnly);
        CZipHeader header;
        for (std::size_t i = 0; m_zip.GetEntry(i, header); ++i) {
            if (!header.IsDirectory())
                m_entries.push_back({i, PathOf(header.GetFileName()), header.GetFileName(), {}, false});
        }
        for (Entry& entry : m_entries) {
            if (IsInside(entry.path))
                entry.name = entry.path.Mid(m_folder.GetLength());
        }
    }

    const CString& Path() const { return m_path; }

    void Find(const CString& inner, bool recurse, std::vector<Source>& found)
    {
        const Wanted wanted = Understand(inner, recurse);
        CHashTable<CString> folders; // lower-case, with something in them that may be converted
        for (const Entry& entry : m_entries) {
            if (wanted.Matches(entry.name) && fileGetKindOf(entry.name) != 0)
                folders.Insert(FolderOf(entry.name).MakeLower());
        }
        for (Entry& entry : m_entries) {
            if (folders.IsFound(FolderOf(entry.name).MakeLower()))
                Extract(entry);
            if (wanted.Matches(entry.name) || !entry.failure.IsEmpty())
                found.push_back(SourceOf(entry, wanted));
        }
    }

private:
    struct Entry
    {
        std::size_t index;
        CString path; ///< where it is extracted to
        CString name; ///< below the archive
        CString failure;
        bool isDone;
    };

    CString PathOf(const CString& name) const { return fileMakeAbsolutePath(m_folder, name); }
    bool IsInside(const CString& path) const { return path.Left(m_folder.GetLength()) == m_folder; }

    Wanted Understand(CString inner, bool recurse) const
    {
        fileRemoveSlashTermination(inner);
        const int slash = inner.ReverseFind(L'\\');
        Wanted wanted{inner.Left(slash + 1), inner.Mid(slash + 1), recurse, false};
        if (inner.IsEmpty())
            wanted.pattern = L"*";
        if (wanted.pattern.FindOneOf(L"*?") >= 0)
            return wanted;
        wanted.named = std::any_of(m_entries.begin(), m_entries.end(),
                                   [&](const Entry& entry) { return entry.name.CompareNoCase(inner) == 0; });
        if (wanted.named)
            wanted.recurse = false;
        else
            wanted = {inner + L"\\", L"*", recurse, false};
        return wanted;
    }

    void Extract(Entry& entry)
    {
        if (std::exchange(entry.isDone, true))
            return;
        // Names that differ on other systems, in their case, are one here.
        if (IsInside(entry.path) && fileExists(entry.path)) {
            entry.failure = L"another entry has this name";
            return;
        }
        try {
            m_zip.Extract(entry.index, m_folder);
        } catch (CException* failure) {
            entry.failure = TakeText(failure, L"it cannot be extracted");
        }
    }

    Source SourceOf(const Entry& entry, const Wanted& wanted) const
    {
        Source source;
        source.archive = m_path;
        source.entry = entry.name;
        source.failure = entry.failure;
        source.named = wanted.named && wanted.Matches(entry.name);
        source.path = entry.path;
        if (!entry.failure.IsEmpty()) // there is no such file; several may want one path
            source.path.Format(L"%s%u", m_folder.GetString(), static_cast<unsigned int>(entry.index));
        source.root = m_folder;
        if (entry.failure.IsEmpty()) {
            source.root += entry.name.Left(wanted.folder.GetLength());
            source.folder = FolderOf(entry.name.Mid(wanted.folder.GetLength()));
        }
        return source;
    }

    CString m_path;
    CString m_folder; ///< slash-terminated
    CZipArchive m_zip;
    std::vector<Entry> m_entries;
};

Archives::Archives() = default;
Archives::~Archives() = default;

bool Archives::Split(CString& path, CString& inner)
{
    for (int end = path.Find(L'\\'); end != path.GetLength();) {
        const int next = path.Find(L'\\', end + 1);
        end = next < 0 ? path.GetLength() : next;
        const CString part = path.Left(end);
        if (!IsArchive(part))
            continue;
        inner = path.Mid(end + 1);
        path = part;
        return true;
    }
    return false;
}

CString Archives::Find(const CString& archive, const CString& inner, bool recurse, std::vector<Source>& found)
{
    if (!m_work)
        m_work.emplace(TemporaryFolder());
    if (!m_work->IsReady())
        return L"nothing can be extracted to " + m_work->Path();
    try {
        Open(archive).Find(inner, recurse, found);
    } catch (CException* failure) {
        return TakeText(failure, L"it cannot be read");
    }
    return {};
}

Archives::Opened& Archives::Open(const CString& path)
{
    for (const auto& opened : m_opened) {
        if (opened->Path().CompareNoCase(path) == 0)
            return *opened;
    }
    CString folder;
    folder.Format(L"%s%u\\%s\\", m_work->Path().GetString(), static_cast<unsigned int>(m_opened.size()),
                  fileStripPath(path).GetString());
    m_opened.push_back(std::make_unique<Opened>(path, folder));
    return *m_opened.back();
}

CString TemporaryFolder()
{
    const CString file = fileCreateTmpName(L"vakconvert");
    return file.Left(file.ReverseFind(L'\\') + 1);
}
