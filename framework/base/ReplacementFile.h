#pragma once

#include "framework/base/File.h"

namespace vak::detail {

/// Builds the new contents of a file beside it and puts them in its place in one step.
///
/// A crash at any moment leaves the old file or the new one. Until Commit the target is untouched; without
/// Commit the destructor removes the temporary. The temporary's handle stays open, with delete sharing, until
/// it bears the target's name, so that nobody who looks at the new file can hold up the renaming.
class VAK_API ReplacementFile
{
public:
    /// Creates the temporary: `temporary`, emptied if it is there, or without one a new unique name in the
    /// target's folder. Throws CFileException*.
    explicit ReplacementFile(LPCWSTR target, LPCWSTR temporary = nullptr);
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// The open temporary, for reading and writing. Whoever closes it gives up: Commit then throws.
    CFile& File() { return m_file; }
    const CString& TemporaryPath() const { return m_temporary; }

    /// Flushes to the disk and replaces the target. Throws CFileException* and then has removed the
    /// temporary; the target is as it was.
    void Commit();
    /// The same under another name in the target's folder than was thought at first; the target is left.
    void CommitAs(LPCWSTR path);
    /// Closes and removes the temporary.
    void Discard();

private:
    class HeldFile : public CFile
    {
    public:
        void Adopt(HANDLE file, const CString& path);
    };

    CString m_target;
    CString m_temporary;
    HeldFile m_file;
    bool m_pending = false;
};

} // namespace vak::detail
