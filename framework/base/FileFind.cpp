#include "framework/base/FileFind.h"

#include "framework/base/SystemFile.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/SystemText.h"

#include <algorithm>
#include <vector>

IMPLEMENT_DYNAMIC(CFileFind, CObject)

namespace vak::detail {

/// What a search has found, and how far it is read.
class FileSearch
{
public:
    const system::FileEntry* Current() const { return m_next == 0 ? nullptr : &m_entries[m_next - 1]; }

    CString m_root;   ///< as the pattern has it
    CString m_folder; ///< complete, with its backslash
    std::vector<system::FileEntry> m_entries;
    size_t m_next = 0;
};

} // namespace vak::detail

namespace {

using vak::system::FileEntry;

/// Whether the pattern, from one of its characters on, matches the name from one of its own; both upper case.
bool Matches(LPCWSTR name, LPCWSTR pattern)
{
    LPCWSTR star = nullptr;
    LPCWSTR retry = nullptr;
    while (*name != 0) {
        if (*pattern == L'*') {
            star = ++pattern;
            retry = name;
        } else if (*pattern == L'?' || *pattern == *name) {
            ++pattern;
            ++name;
        } else if (star != nullptr) {
            pattern = star;
            name = ++retry;
        } else {
            return false;
        }
    }
    while (*pattern == L'*')
        ++pattern;
    return *pattern == 0;
}

/// The patterns that stand for one of the platform: ".*" at the end also means no extension, and "." there
/// means that there is none.
class Pattern
{
public:
    explicit Pattern(const CString& text) : m_text(text)
    {
        m_text.MakeUpper();
        if (m_text.Right(2) == L".*")
            m_bare = m_text.Left(m_text.GetLength() - 2);
        else if (m_text.Right(1) == L".")
            m_bare = m_text.Left(m_text.GetLength() - 1);
    }

    bool Has(CString name) const
    {
        name.MakeUpper();
        if (Matches(name, m_text))
            return true;
        const bool extends = m_text.Right(1) == L"*" || name.Find(L'.') < 0;
        return !m_bare.IsEmpty() && extends && Matches(name, m_bare);
    }

private:
    CString m_text;
    CString m_bare;
};

CString CompleteFolder(const CString& root)
{
    CString folder;
    if (!vak::system::FullPath(root.IsEmpty() ? CString(L".") : root, folder))
        folder = root;
    if (folder.Right(1) != L"\\")
        folder += L'\\';
    return folder;
}

} // namespace

CFileFind::CFileFind() = default;

CFileFind::~CFileFind() = default;

BOOL CFileFind::FindFile(LPCTSTR pstrName, DWORD)
{
    Close();
    const CString pattern(pstrName == nullptr ? L"*.*" : pstrName);
    const int slash = std::max(pattern.ReverseFind(L'\\'), pattern.ReverseFind(L'/'));
    const int nameAt = std::max(slash, pattern.Find(L':')) + 1;
    auto search = std::make_unique<vak::detail::FileSearch>();
    search->m_root = pattern.Left(nameAt);
    search->m_folder = CompleteFolder(search->m_root);
    const Pattern wanted(pattern.Mid(nameAt));
    if (!vak::system::ListFolder(search->m_folder, search->m_entries))
        return FALSE;
    std::erase_if(search->m_entries, [&](const FileEntry& entry) { return !wanted.Has(entry.name); });
    if (search->m_entries.empty())
        return FALSE;
    m_search = std::move(search);
    return TRUE;
}

BOOL CFileFind::FindNextFile()
{
    if (m_search == nullptr || m_search->m_next == m_search->m_entries.size())
        return FALSE;
    ++m_search->m_next;
    return m_search->m_next < m_search->m_entries.size();
}

void CFileFind::Close()
{
    m_search.reset();
}

const vak::system::FileEntry* CFileFind::Current() const
{
    return m_search == nullptr ? nullptr : m_search->Current();
}

ULONGLONG CFileFind::GetLength() const
{
    const FileEntry* const entry = Current();
    return entry == nullptr ? 0 : entry->size;
}

CString CFileFind::GetFileName() const
{
    const FileEntry* const entry = Current();
    return entry == nullptr ? CString() : entry->name;
}

CString CFileFind::GetFileTitle() const
{
    const CString name = GetFileName();
    const int dot = name.ReverseFind(L'.');
    return dot < 0 ? name : name.Left(dot);
}

CString CFileFind::GetFilePath() const
{
    return Current() == nullptr ? CString() : m_search->m_folder + GetFileName();
}

CString CFileFind::GetRoot() const
{
    return m_search == nullptr ? CString() : m_search->m_root;
}

BOOL CFileFind::GetLastWriteTime(CTime& refTime) const
{
    const FileEntry* const entry = Current();
    refTime = entry == nullptr ? CTime() : CTime(entry->written);
    return entry != nullptr;
}

BOOL CFileFind::GetCreationTime(CTime& refTime) const
{
    const FileEntry* const entry = Current();
    refTime = entry == nullptr ? CTime() : CTime(entry->created);
    return entry != nullptr;
}

BOOL CFileFind::GetLastAccessTime(CTime& refTime) const
{
    const FileEntry* const entry = Current();
    refTime = entry == nullptr ? CTime() : CTime(entry->accessed);
    return entry != nullptr;
}

BOOL CFileFind::MatchesMask(DWORD dwMask) const
{
    const FileEntry* const entry = Current();
    return entry != nullptr && (entry->attributes & dwMask) != 0;
}

BOOL CFileFind::IsDots() const
{
    const CString name = GetFileName();
    return IsDirectory() && (name == L"." || name == L"..");
}

BOOL CFileFind::IsReadOnly() const
{
    return MatchesMask(vak::system::kAttributeReadOnly);
}

BOOL CFileFind::IsDirectory() const
{
    return MatchesMask(vak::system::kAttributeDirectory);
}

BOOL CFileFind::IsHidden() const
{
    return MatchesMask(vak::system::kAttributeHidden);
}
