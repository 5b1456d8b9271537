#include "examples/vakconvert/Sources.h"

#include "core/HashTable.h"
#include "examples/vakconvert/Archives.h"
#include "files/FileInfo.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/IoFile.h"
#include "files/Wildcards.h"

#include <algorithm>

namespace {

class Search
{
public:
    Search(bool recurse, const Batch& batch) : m_recurse(recurse), m_batch(batch) {}

    void AddNamed(const CString& path)
    {
        Source source;
        source.path = path;
        source.root = path.Left(path.ReverseFind(L'\\') + 1);
        source.named = true;
        AddFound(source);
    }

    /// A source that was found before may be named now.
    void AddFound(const Source& source)
    {
        if (Add(source) || !source.named)
            return;
        for (Source& known : m_found)
            known.named = known.named || known.path.CompareNoCase(source.path) == 0;
    }

    /// False when nothing was found; `problem` is why, if there is a reason.
    bool AddArchived(Archives& archives, const CString& archive, const CString& inner, CString& problem)
    {
        std::vector<Source> found;
        problem = archives.Find(archive, inner, m_recurse, found);
        for (const Source& source : found)
            AddFound(source);
        return problem.IsEmpty() && !found.empty();
    }

    void AddFolder(const CString& root, const CString& below, const CString& pattern)
    {
        std::vector<CString> files;
        std::vector<CString> folders;
        ListFolder(root + below, files, folders);
        for (const CString& name : files) {
            if (fileMatchWilcards(name, pattern, 0))
                Add({root + below + name, root, below, false, {}, {}, {}});
        }
        if (!m_recurse)
            return;
        for (const CString& name : folders) {
            if (!m_batch.TakesResults(root + below + name + L"\\"))
                AddFolder(root, below + name + L"\\", pattern);
        }
    }

    std::vector<Source> Take() { return std::move(m_found); }
    std::size_t Count() const { return m_found.size(); }

private:
    bool Add(Source source)
    {
        CString key = source.path;
        if (m_seen.Insert(key.MakeLower()) == 0)
            return false;
        m_found.push_back(std::move(source));
        return true;
    }

    bool m_recurse;
    const Batch& m_batch;
    CHashTable<CString> m_seen;
    std::vector<Source> m_found;
};

/// Puts what a shortcut leads to in its place; `problem` says why that is not possible.
CString Resolved(const CString& source, CString& problem)
{
    CFileInfo info(source, FILEINFO_FILE);
    if (info.IsShortcut() == 0 || fileExists(source) == 0)
        return source;
    if (info.ResolveShortcut() == 0)
        problem = L"the shortcut is damaged or leads to no file";
    else if (fileExists(info.GetCompleteName()) == 0)
        problem = L"the shortcut leads to " + info.GetCompleteName() + L", which is not there";
    return info.GetCompleteName();
}

} // namespace

CString ShownName(const Source& source)
{
    const bool isArchived = !source.archive.IsEmpty();
    return isArchived ? fileStripPath(source.archive) + L"\\" + source.entry
                      : source.folder + fileStripPath(source.path);
}

CString FullName(const Source& source)
{
    return source.archive.IsEmpty() ? source.path : source.archive + L"\\" + source.entry;
}

void ListFolder(const CString& folder, std::vector<CString>& files, std::vector<CString>& folders)
{
    IoFile search;
    CString name;
    int matched = 0;
    for (int more = search.FindFileOpen(folder + L"*.*", L""); more;) {
        more = search.FindFileNext(name, matched, 1);
        if (!more || name.IsEmpty())
            break;
        (fileIsDirectory(folder + name, 1) ? folders : files).push_back(name);
    }
    search.FindFileClose();
    const auto before = [](const CString& a, const CString& b) { return a.CompareNoCase(b) < 0; };
    std::sort(files.begin(), files.end(), before);
    std::sort(folders.begin(), folders.end(), before);
}

std::vector<Source> FindSources(const Settings& settings, const Batch& batch, Archives& archives,
                                std::vector<CString>& problems)
{
    Search search(settings.recurse, batch);
    for (const CString& given : settings.sources) {
        const std::size_t before = search.Count();
        CString problem;
        const CString source = Resolved(given, problem);
        CString archive = source;
        CString inner;
        if (!problem.IsEmpty()) {
            problems.push_back(given + L": " + problem);
            continue;
        }
        if (Archives::Split(archive, inner)) {
            if (search.AddArchived(archives, archive, inner, problem))
                continue;
        } else if (source.FindOneOf(L"*?") >= 0) {
            const int slash = source.ReverseFind(L'\\');
            search.AddFolder(source.Left(slash + 1), L"", source.Mid(slash + 1));
        } else if (fileIsDirectory(source, 1)) {
            CString folder = source;
            fileSlashTerminate(folder);
            search.AddFolder(folder, L"", L"*");
        } else if (fileExists(source)) {
            search.AddNamed(source);
            continue; // named twice is no problem
        } else {
            problems.push_back(source + L": there is no such file or folder");
            continue;
        }
        if (search.Count() == before)
            problems.push_back(source + L": " + (problem.IsEmpty() ? CString(L"nothing found") : problem));
    }
    return search.Take();
}
