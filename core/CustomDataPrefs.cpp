#include "core/CustomData.h"

#include "framework/base/Archive.h"
#include "framework/base/File.h"
#include "framework/base/FileException.h"
#include "framework/base/ReplacementFile.h"

#include <new>
#include <optional>

using vak::detail::ReplacementFile;

namespace {

constexpr int kArchiveBuffer = 4096;

bool Move(const CString& path, const CString& aside)
{
    CFileStatus status;
    try {
        if (CFile::GetStatus(aside, status))
            CFile::Remove(aside);
        CFile::Rename(path, aside);
        return true;
    } catch (CException* e) {
        e->Delete();
        return false;
    }
}

/// A file that cannot be read on is kept, not destroyed: it may be all that the user has. Where ".bad" cannot
/// be replaced a number is put behind it, for as long as the file stays no store can be saved.
void MoveAside(const CString& path)
{
    CFileStatus status;
    CString aside = path + L".bad";
    for (int number = 1; number < 10 && CFile::GetStatus(path, status) && !Move(path, aside); ++number)
        aside.Format(L"%s.bad.%d", path.GetString(), number);
}

/// Opens the file at `path` if there is one; false when there is one that cannot be opened.
bool OpenOld(CFile& file, const CString& path)
{
    CFileException error;
    return file.Open(path, CFile::modeRead | CFile::shareDenyWrite, &error) ||
           error.m_cause == CFileException::fileNotFound;
}

/// Creates the new file beside the old one; null when that fails.
void CreateNew(std::optional<ReplacementFile>& file, const CString& path)
{
    try {
        file.emplace(path, path + L".tmp");
    } catch (CException* e) {
        e->Delete();
    }
}

int PutInPlace(ReplacementFile& file, int count)
{
    try {
        file.Commit();
        return count;
    } catch (CException* e) {
        e->Delete();
        return 0;
    }
}

} // namespace

int CCustomData::SaveToPrefs(const CString& path, unsigned int key1, unsigned int key2) const
{
    std::optional<ReplacementFile> file;
    CreateNew(file, path);
    CFile old;
    if (!file || !OpenOld(old, path))
        return 0;
    int count = 0;
    try {
        count = WritePrefs(file->File(), old.m_hFile != CFile::hFileNull ? &old : nullptr, key1, key2);
    } catch (CMemoryException* e) {
        e->Delete();
        return 0; // the old file is sound
    } catch (const std::bad_alloc&) {
        return 0;
    } catch (CException* e) {
        e->Delete();
    }
    old.Abort();
    if (count != 0)
        return PutInPlace(*file, count);
    file->Discard();
    MoveAside(path);
    return 0;
}

/// Writes the stores of the old file, if there is one, but not the one under the keys, and this one last;
/// returns their number. Throws what the archives and files throw.
int CCustomData::WritePrefs(CFile& file, CFile* old, unsigned int key1, unsigned int key2) const
{
    // What is written when an exception leaves is thrown away: not flushed on the way out.
    CArchive out(&file, CArchive::store | CArchive::bNoFlushOnDelete, kArchiveBuffer);
    out << 0u;
    unsigned int count = 0;
    if (old != nullptr) {
        CArchive in(old, CArchive::load | CArchive::bNoFlushOnDelete, kArchiveBuffer);
        unsigned int left = 0;
        for (in >> left; left > 0; --left) {
            unsigned int oldKey1 = 0;
            unsigned int oldKey2 = 0;
            CCustomData store;
            in >> oldKey1 >> oldKey2;
            store.ReadArchiveForm(in);
            if (oldKey1 == key1 && oldKey2 == key2)
                continue;
            out << oldKey1 << oldKey2;
            store.WriteArchiveForm(out);
            ++count;
        }
    }
    out << key1 << key2;
    WriteArchiveForm(out);
    out.Close();

    unsigned char stored[4];
    vak::detail::StoreLittleEndian(stored, ++count);
    file.SeekToBegin();
    file.Write(stored, sizeof stored);
    return static_cast<int>(count);
}

int CCustomData::LoadFromPrefs(CString path, unsigned int key1, unsigned int key2)
{
    RemoveAll();
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite))
        return 0;
    try {
        CArchive in(&file, CArchive::load | CArchive::bNoFlushOnDelete, kArchiveBuffer);
        unsigned int left = 0;
        for (in >> left; left > 0; --left) {
            unsigned int storedKey1 = 0;
            unsigned int storedKey2 = 0;
            in >> storedKey1 >> storedKey2;
            ReadArchiveForm(in);
            if (storedKey1 == key1 && storedKey2 == key2)
                return 1;
        }
    } catch (CException* e) {
        e->Delete();
    } catch (const std::bad_alloc&) {
        // As any other failure: there is nothing to load.
    }
    RemoveAll();
    return 0;
}
