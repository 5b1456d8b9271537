#pragma once

#include "files/ZipException.h"
#include "files/ZipHeader.h"
#include "framework/base/File.h"
#include "framework/base/StringArray.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace vak::detail {
struct ZipState;
struct ZipEntry;
} // namespace vak::detail

/// What an archive may ask of the machine. Every check comes before the data are written.
struct CZipLimits
{
    /// The most that one entry may expand to.
    ULONGLONG maxEntry = ULONGLONG{1} << 40;
    /// The most that everything extracted since opening may come to.
    ULONGLONG maxTotal = ULONGLONG{1} << 35;
    /// How many times its compressed size an entry may expand to, asked when all entries of the archive that
    /// expand to more come to more than `ratioFloor` bytes.
    UINT maxRatio = 250;
    ULONGLONG ratioFloor = ULONGLONG{1} << 26;
    /// The longest directory that is read into memory.
    ULONGLONG maxDirectory = ULONGLONG{1} << 28;
};

/// Reads and changes archives in the published zip format.
///
/// An object is one open archive and belongs to one thread at a time. Entries are numbered from 0 in the
/// order of the archive's directory; adding, deleting and renaming renumber them. Failures are thrown as
/// CZipException* (CMemoryException* when memory runs out) and deleted by the catcher. A failed Open leaves
/// the archive closed; any other failure leaves it open with the old entries, and the archive's file as it
/// was.
///
/// Names are given and asked for with backslashes or slashes. A change builds the new archive beside the old
/// one and puts it in its place in one step, so that at any moment the old archive or the new is there whole.
/// Deleting, renaming and a new comment do so before they return. What is added is collected, and is in the
/// archive's file after the next of these or after a normal Close; until then it is seen through this object
/// only. A new archive appears when it is closed. Data in front of the archive and everything that belongs to
/// unchanged entries stay byte for byte; data behind the archive, which belong to nobody, are dropped.
class VAK_API CZipArchive
{
public:
    enum OpenMode
    {
        zipOpen,             ///< an existing archive to read and change; a split one is read-only
        zipOpenReadOnly,     ///< an existing archive, split or not, to read
        zipCreate,           ///< a new archive; one that is there is replaced when this one is closed
        zipCreateSplit,      ///< a new archive in parts of the volume size: name.z01, name.z02 ... name.zip;
                             ///< until it is closed it can be added to, nothing else
        zipOpenReadOnlySplit ///< as zipOpenReadOnly; for callers that name the two cases apart
    };

    enum CloseMode
    {
        zipCloseNormal,    ///< what was added is completed; throws when that fails, and the file is as it was
        zipCloseAfterError ///< nothing is thrown; what is not in the archive's file yet is given up
    };

    /// How names are compared. Every value but 0 ignores case.
    enum CompareMode
    {
        zipCompareExact,
        zipCompareNoCase
    };

    /// What adding checks; bits. The facade passes all of them.
    enum Smartness
    {
        zipStoreIncompressible = 1, ///< data that deflating does not make smaller are stored
        zipStoreSmall = 2,          ///< files of a few bytes are stored without trying
        zipRefuseArchive = 4        ///< the archive itself, or its temporary, is not added to itself
    };

    /// Of the expanded data. The decoder copies 32 KB each time that a buffer is full.
    static constexpr UINT kBufferSize = 262144;
    /// The code page of names and comments that do not say that they are UTF-8.
    static constexpr UINT kDefaultCodePage = 437;

    CZipArchive();
    CZipArchive(const CZipArchive&) = delete;
    CZipArchive& operator=(const CZipArchive&) = delete;
    /// Closes as after an error: whoever wants to know that a new archive is complete closes it.
    virtual ~CZipArchive();

    /// @name The archive
    /// @{
    /// Opens or creates the archive; one that was open is closed as after an error. An existing split archive
    /// is named by its last part (name.zip, beside name.z01) or, in plain pieces, by the first
    /// (name.zip.001). `volumeSize` is the size of each part of a new split archive, in bytes, at least
    /// 65,536; such an archive is named .zip, and replaces no part of another.
    ///
    /// Opening an archive again that was closed after an error reads nothing anew unless its file changed.
    void Open(LPCWSTR path, int mode = zipOpen, ULONGLONG volumeSize = 0);
    /// With `setTime` the archive's file gets the time of its newest entry. Does nothing when closed; the
    /// archive is closed also when this throws.
    void Close(int mode = zipCloseNormal, bool setTime = false);
    bool IsClosed() const;
    /// True for an archive opened read-only and for an existing split archive.
    bool IsReadOnly() const;
    bool IsSplit() const;
    /// The path as it was given to Open; kept after Close.
    const CString& GetArchivePath() const;
    /// The archive's comment; empty when there is none.
    CString GetComment() const;
    /// In the archive's code page; throws nameCharacter when that lacks a character.
    void SetComment(const CString& comment);

    /// The code page for what Open reads from now on.
    void SetCodePage(UINT codePage);
    /// For all that follows.
    void SetLimits(const CZipLimits& limits);
    const CZipLimits& GetLimits() const;
    /// @}

    /// @name Entries
    /// @{
    std::size_t GetEntryCount() const;
    /// Fills `header`; false when there is no such entry.
    bool GetEntry(std::size_t index, CZipHeader& header) const;
    bool IsEntryDirectory(std::size_t index) const;

    /// The index of the entry, the first in the directory where several match; kNotFound when there is none.
    /// With `fileNameOnly` the text behind the last separator is compared, of the entry and of `name`;
    /// directories have none. Takes the same time whatever the number of entries.
    std::size_t Find(LPCWSTR name, int mode = zipCompareExact, bool fileNameOnly = false) const;
    static constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);
    /// Appends the indexes of the entries whose whole name, or text behind the last separator, matches the
    /// pattern ("*" any run of characters, "?" one), the case aside.
    void FindMatching(LPCWSTR pattern, bool fullPath, std::vector<std::size_t>& indexes) const;
    /// @}

    /// @name Extracting
    /// @{
    /// Extracts an entry into the folder `path` (created with its parents; empty: the current one): with
    /// `fullPath` under the entry's whole name, else under what stands behind its last separator. `newName`,
    /// unless null or empty, stands for the entry's name. The data go to a temporary file, which gets the
    /// entry's time and the name when size and CRC are right, replacing a file that is there. Of a directory
    /// the folder is made, without `fullPath` nothing. A stored link becomes a file that holds its target's
    /// name. Throws when the name is not safe, see CZipException.
    void Extract(std::size_t index, LPCWSTR path, bool fullPath = true, LPCWSTR newName = nullptr,
                 UINT bufferSize = kBufferSize);
    /// Writes the entry's data to an open file. Throws, after having written a part, when they are damaged;
    /// what the file throws passes through.
    void ExtractTo(std::size_t index, CFile& to, UINT bufferSize = kBufferSize);
    /// Reads the entry's data and checks them, as extracting does.
    void Test(std::size_t index);
    /// @}

    /// @name Changing
    /// @{
    /// Adds a file, or a directory's entry for a path that is one, in place of entries of the same name.
    /// After a failure the archive is open, with what was added before.
    /// `name` is the entry's name; `level` is deflate's, 0 (store) to 9, -1 its default; `smartness` holds
    /// Smartness bits.
    void Add(LPCWSTR path, LPCWSTR name, int level = -1,
             int smartness = zipStoreIncompressible | zipStoreSmall | zipRefuseArchive,
             UINT bufferSize = kBufferSize);
    /// Deletes entries in one rewrite. Indexes that do not exist are refused before anything is changed.
    void Delete(const std::vector<std::size_t>& indexes);
    /// Renames entries in one rewrite; `names` has a name for each index. Nothing checks for names that are
    /// taken.
    void Rename(const std::vector<std::size_t>& indexes, const CStringArray& names);
    /// @}

protected:
    /// The engine's own data, for the facade's checks.
    vak::detail::ZipState& State() const { return *m_state; }

private:
    /// Begins the new archive of the path that was set, and opens it.
    void Create(ULONGLONG volumeSize);
    /// The end of a normal close, when nothing of the archive is held open any more.
    void Complete(bool setTime);
    const vak::detail::ZipEntry& Checked(std::size_t index) const;

    std::unique_ptr<vak::detail::ZipState> m_state;
};
