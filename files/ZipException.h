#pragma once

#include "framework/base/Exception.h"
#include "framework/base/String.h"

/// An operation on a zip archive failed: which check, in which archive, at which entry, and what the system
/// said.
class VAK_API CZipException : public CException
{
    DECLARE_DYNAMIC(CZipException)

public:
    /// The codes. Those of one entry leave the archive's other entries usable.
    enum Cause
    {
        noError,          ///< no error; never thrown
        genericError,     ///< something that has no code of its own
        systemError,      ///< the system refused an operation on the archive's file: see m_lOsError
        targetError,      ///< the system refused an operation on a file that is extracted or added
        isClosed,         ///< the archive is not open
        isReadOnly,       ///< a change was asked of an archive that cannot be changed
        badArgument,      ///< an open mode, an index or a name that does not exist
        notArchive,       ///< nothing in the file looks like an archive
        endMissing,       ///< it begins like an archive and has no end record: it was cut off
        endDamaged,       ///< the end record contradicts itself or the file
        zip64Damaged,     ///< a zip64 end record or locator is missing, cut off or contradicts the end record
        directoryOffset,  ///< the directory does not lie where the end record says, or not inside the file
        directoryDamaged, ///< a record of the directory is cut off or is no such record
        directoryCount,   ///< the directory holds another number of records than the end record says
        directoryTooLong, ///< the directory is longer than the limit
        volumeMissing,    ///< a part of a split archive is not there; the archive's name is the part's
        tooManyEntries,   ///< more entries than a 16-bit index names
        tooLarge,         ///< a number that does not fit 32 bits was asked for as one that does
        zip64Entry,       ///< the entry's zip64 field is missing what the directory leaves to it
        dataOffset,       ///< the entry's data lie outside the file or inside the directory
        overlap,          ///< the entry's data overlap those of another entry
        localDamaged,     ///< there is no local header where the directory says, or it is cut off
        localName,        ///< the local header has another name than the directory
        localMethod,      ///< the local header has another method or encryption than the directory
        localSize,        ///< the local header has other sizes than the directory
        localCrc,         ///< the local header has another CRC than the directory
        descriptor,       ///< the record behind the data does not say what the directory says
        encrypted,        ///< the entry is encrypted
        unknownMethod,    ///< the entry is compressed by a method other than "stored" and "deflated"
        dataDamaged,      ///< the compressed data are no deflate stream, or end too early
        sizeMismatch,     ///< the data expand to another size than the directory says, or leave a rest
        crcMismatch,      ///< the data do not have the CRC that the directory says
        limitRatio,       ///< the entry expands more than the limits allow
        limitSize,        ///< the entry is larger than the limits allow
        limitTotal,       ///< all that was extracted since opening is more than the limits allow
        nameEmpty,        ///< the entry's name names nothing
        nameRooted,       ///< the name begins with a separator, a drive or a server
        nameParent,       ///< the name leads out of the destination by ".."
        nameDevice,       ///< a component of the name is reserved for a device ("NUL", "com1.txt")
        nameStream,       ///< a component names a stream of a file (it holds a colon)
        nameTrailing,     ///< a component ends in a dot or a blank, which the system would drop
        nameCharacter,    ///< a component holds a character that no file name may hold
        linkInPath,       ///< the destination holds a link where the entry would go through it
        nameTaken,        ///< a file stands where a folder is needed, or a folder where a file is
        aborted,          ///< the caller stopped the operation
        volumeTooSmall,   ///< the volume size of a new split archive is too small
        nameTooLong,      ///< a name or a comment is longer than the format can hold
        archiveChanged,   ///< somebody else has changed the archive's file since it was opened
        lastCause = archiveChanged
    };

    explicit CZipException(int cause = noError, LPCTSTR archive = nullptr, LPCTSTR entry = nullptr,
                           LONG osError = 0);

    /// A sentence for the cause with the archive's name, then the entry's if there is one; behind it the
    /// system's own words for m_lOsError.
    BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT helpContext = nullptr) const override;

    int m_cause;
    /// The system's code when the cause is systemError, targetError or volumeMissing, else 0.
    LONG m_lOsError;
    /// The method's number in the format when the cause is unknownMethod, else 0.
    int m_method = 0;
    CString m_archive; ///< the archive's path
    CString m_entry;   ///< the entry's name as it is listed, or the file to add; empty when none is concerned
};

namespace vak::detail {

[[noreturn]] void ThrowZip(int cause, LPCTSTR archive, LPCTSTR entry = nullptr, LONG osError = 0);

} // namespace vak::detail
