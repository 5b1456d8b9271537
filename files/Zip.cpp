#include "files/Zip.h"

#include "files/FileKinds.h"
#include "files/FilePath.h"
#include "files/zip/ZipNames.h"
#include "files/zip/ZipState.h"

#include <limits>
#include <map>
#include <new>
#include <set>
#include <vector>

namespace {

constexpr std::size_t kNamedIndexes = std::size_t{std::numeric_limits<WORD>::max()} + 1;
constexpr unsigned int kZipClass = 'ZIP ';
/// An archive's extension with its dot, in a path that runs through the archive.
constexpr int kExtension = 4;

/// The name's directory, in the form in which names are compared.
CString DirectoryOf(const CString& name)
{
    return name.Left(name.ReverseFind(L'\\') + 1);
}

} // namespace

CZip::CZip() = default;

CZip::~CZip() = default;

void CZip::Open(LPCWSTR path, int mode, int volumeSize)
{
    CZipArchive::Open(path, mode, volumeSize > 0 ? static_cast<ULONGLONG>(volumeSize) : 0);
}

void CZip::Close(int mode, bool setTime)
{
    CZipArchive::Close(mode, setTime);
}

bool CZip::IsClosed() const
{
    return CZipArchive::IsClosed();
}

bool CZip::IsReadOnly() const
{
    return CZipArchive::IsReadOnly();
}

CString CZip::GetArchivePath() const
{
    return CZipArchive::GetArchivePath();
}

void CZip::CheckIndexes() const
{
    if (GetEntryCount() > kNamedIndexes)
        vak::detail::ThrowZip(CZipException::tooManyEntries, GetArchivePath());
}

int CZip::GetCount(bool filesOnly) const
{
    CheckIndexes();
    const std::size_t count = GetEntryCount();
    int files = 0;
    for (std::size_t i = 0; i < count; ++i)
        files += filesOnly && IsEntryDirectory(i) ? 0 : 1;
    return files;
}

bool CZip::GetFileInfo(CZipHeader& header, WORD index) const
{
    return GetEntry(index, header);
}

int CZip::FindFile(LPCWSTR name, int mode, bool fileNameOnly) const
{
    CheckIndexes();
    const std::size_t index = Find(name, mode, fileNameOnly);
    return index == kNotFound ? -1 : static_cast<int>(index);
}

int CZip::FindMatchingFiles(CArray<WORD>& indexes, LPCWSTR pattern, bool fullPath) const
try {
    indexes.RemoveAll();
    CheckIndexes();
    std::vector<std::size_t> found;
    FindMatching(pattern, fullPath, found);
    for (const std::size_t index : found)
        indexes.Add(static_cast<WORD>(index));
    return static_cast<int>(found.size());
} catch (const std::bad_alloc&) {
    vak::detail::ThrowMemory();
}

bool CZip::ExtractFile(WORD index, LPCWSTR path, bool fullPath, LPCWSTR newName, DWORD bufferSize)
{
    try {
        Extract(index, path, fullPath, newName, static_cast<UINT>(bufferSize));
    } catch (...) {
        CZipArchive::Close(zipCloseAfterError);
        throw;
    }
    return true;
}

bool CZip::AddNewFile(LPCWSTR path, BOOL fullPath, int level)
{
    CString name = vak::detail::zip::WithBackslashes(path);
    if (fullPath != 0)
        name = vak::detail::zip::WithoutRoot(name);
    else
        name = name.Mid(DirectoryOf(name).GetLength());
    return AddNewFile(path, name.GetString(), level);
}

bool CZip::AddNewFile(LPCWSTR path, LPCWSTR name, int level)
{
    constexpr int kAllChecks = 7;
    constexpr UINT kAddBuffer = 65536;
    Add(path, name, level, kAllChecks, kAddBuffer);
    return true;
}

void CZip::DeleteFiles(const CStringArray& names)
try {
    std::set<std::size_t> named;
    for (INT_PTR i = 0; i < names.GetSize(); ++i)
        named.insert(Find(names[i]));
    // An archive of another tool may have a name twice.
    const vak::detail::ZipDirectory& directory = State().OpenDirectory();
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < directory.Count(); ++i) {
        const std::size_t first = directory.FindFirst(directory.At(i));
        if (first != kNotFound && named.count(first) != 0)
            found.push_back(i);
    }
    if (!found.empty())
        Delete(found);
} catch (const std::bad_alloc&) {
    vak::detail::ThrowMemory();
}

/// Where the names stand while pairs are looked at one by one: a later pair sees what the earlier ones will
/// have done, although everything is renamed at once.
class CZip::RenamePlan
{
public:
    explicit RenamePlan(const CZip& zip) : m_zip(zip) {}

    /// Plans the pair unless it may not be renamed.
    bool Add(const CString& oldName, const CString& newName)
    {
        const CString from = vak::detail::zip::WithBackslashes(oldName);
        const CString to = vak::detail::zip::WithBackslashes(newName);
        const std::size_t index = Find(from);
        const bool isName = to.GetLength() > DirectoryOf(to).GetLength();
        if (!isName || DirectoryOf(from) != DirectoryOf(to) || index == kNotFound || Find(to) != kNotFound)
            return false;
        m_taken.erase(from);
        m_taken[to] = index;
        m_names[index] = to;
        return true;
    }

    const std::map<std::size_t, CString>& Names() const { return m_names; }

private:
    std::size_t Find(const CString& name) const
    {
        if (const auto taken = m_taken.find(name); taken != m_taken.end())
            return taken->second;
        const std::size_t index = m_zip.Find(name);
        return index != kNotFound && m_names.count(index) != 0 ? kNotFound : index;
    }

    const CZip& m_zip;
    std::map<CString, std::size_t> m_taken;
    std::map<std::size_t, CString> m_names;
};

int CZip::RenameFiles(CStringArray& oldNames, CStringArray& newNames)
{
    if (oldNames.IsEmpty() || oldNames.GetSize() != newNames.GetSize())
        return 0;
    try {
        RenamePlan plan(*this);
        CStringArray oldKept;
        CStringArray newKept;
        for (INT_PTR i = 0; i < oldNames.GetSize(); ++i) {
            if (!plan.Add(oldNames[i], newNames[i]))
                continue;
            oldKept.Add(oldNames[i]);
            newKept.Add(newNames[i]);
        }
        std::vector<std::size_t> indexes;
        CStringArray names;
        for (const auto& [index, name] : plan.Names()) {
            indexes.push_back(index);
            names.Add(name);
        }
        if (!indexes.empty())
            Rename(indexes, names);
        oldNames.Copy(oldKept);
        newNames.Copy(newKept);
        return indexes.empty() ? 0 : 1;
    } catch (const std::bad_alloc&) {
        CZipArchive::Close(zipCloseAfterError);
        vak::detail::ThrowMemory();
    } catch (...) {
        CZipArchive::Close(zipCloseAfterError);
        throw;
    }
}

bool CZip::ExtractDirInfo(CString& path, CString& inner, bool slashTerminate)
{
    CStringArray extensions;
    fileGetExtensionArray(kZipClass, extensions);
    const CString lower = CString(path).MakeLower();
    int found = -1;
    for (INT_PTR i = 0; i < extensions.GetSize() && found < 0; ++i)
        found = lower.Find(CString(extensions[i]).MakeLower());
    if (found < 0)
        return false;
    const CString rest = path.Mid(found + kExtension);
    if (!rest.IsEmpty() && rest[0] != L'\\')
        return false;
    inner = rest.Mid(1);
    path = path.Left(found + kExtension);
    if (slashTerminate)
        fileSlashTerminate(path);
    return true;
}
