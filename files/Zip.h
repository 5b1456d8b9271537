#pragma once

#include "files/ZipArchive.h"
#include "framework/base/Array.h"

/// An archive for those who address its entries by 16-bit indexes: the engine's operations under their
/// established names. See CZipArchive for its contract.
///
/// What 16 bits cannot name is refused: where an archive holds more than 65,536 entries, counting and finding
/// throw CZipException* (tooManyEntries). When extracting or renaming fails, the archive is closed as after
/// an error and the exception passed on.
class VAK_API CZip : public CZipArchive
{
public:
    CZip();
    ~CZip() override;

    /// As CZipArchive::Open; `mode` is an OpenMode, `volumeSize` in bytes.
    void Open(LPCWSTR path, int mode = zipOpen, int volumeSize = 0);
    /// `mode` is a CloseMode; both go to CZipArchive::Close.
    void Close(int mode = zipCloseNormal, bool setTime = false);
    bool IsClosed() const;
    bool IsReadOnly() const;
    CString GetArchivePath() const;

    /// The number of entries, of those that are no directories with `filesOnly`.
    int GetCount(bool filesOnly = false) const;
    /// Fills `header`; false when there is no such entry.
    bool GetFileInfo(CZipHeader& header, WORD index) const;
    /// The index of the entry of that name, or -1. `mode` is a CompareMode; with `fileNameOnly` only what
    /// stands behind the last separator is compared.
    int FindFile(LPCWSTR name, int mode = zipCompareExact, bool fileNameOnly = false) const;
    /// Replaces `indexes` by those of the entries that match the pattern, in the archive's order, and returns
    /// their number. With `fullPath` the whole stored name is matched, else what stands behind its last
    /// separator.
    int FindMatchingFiles(CArray<WORD>& indexes, LPCWSTR pattern, bool fullPath = true) const;

    /// As CZipArchive::Extract. Always returns true.
    bool ExtractFile(WORD index, LPCWSTR path, bool fullPath = true, LPCWSTR newName = nullptr,
                     DWORD bufferSize = kBufferSize);

    /// Adds a file under its own path, without drive or server, or with `fullPath` 0 under its name.
    bool AddNewFile(LPCWSTR path, BOOL fullPath = TRUE, int level = -1);
    /// Adds a file under a chosen name.
    bool AddNewFile(LPCWSTR path, LPCWSTR name, int level = -1);
    /// Deletes the entries of these names, all of them where a name occurs twice; a name that is not there is
    /// passed over.
    void DeleteFiles(const CStringArray& names);
    /// Renames entries pairwise. A pair is dropped from both arrays when it would move the entry to another
    /// directory, when the old name is not there, or when the new one is; the rest are renamed. Returns
    /// non-zero when any was. Arrays of different lengths are left alone.
    int RenameFiles(CStringArray& oldNames, CStringArray& newNames);

    /// Splits a path that runs through an archive: "C:\pack.zip\models\car" becomes the archive "C:\pack.zip"
    /// (with `slashTerminate` with a backslash at its end) and `inner` "models\car". False, and both as they
    /// were, when there is no archive's extension in it or something other than a backslash behind.
    static bool ExtractDirInfo(CString& path, CString& inner, bool slashTerminate = false);

private:
    class RenamePlan;

    /// Throws tooManyEntries when 16 bits do not name them all.
    void CheckIndexes() const;
};
