#pragma once

#include "files/zip/ZipSource.h"
#include "framework/base/String.h"
#include "framework/base/SystemFile.h"

namespace vak::detail {

bool HasZipExtension(const CString& path);
/// The path of a part in front of the last one: "name.zip" and 2 give "name.z02", with the letter as the
/// extension writes it.
CString ZipPartPath(const CString& path, std::uint32_t number);

/// The file of an archive, or the files of a split one, as one space of bytes.
///
/// One file is open at a time, shared for reading; which one follows the reads. Positions are kept, so that
/// reading on costs no seek. Failures are thrown as CZipException*.
class ZipVolumes final : public ZipSource
{
public:
    ZipVolumes() = default;
    ~ZipVolumes() override { Release(); }
    ZipVolumes(const ZipVolumes&) = delete;
    ZipVolumes& operator=(const ZipVolumes&) = delete;

    /// Opens one file; "name.zip.001" brings all the pieces that follow it.
    void Open(const CString& path);
    /// Makes the space that of one file of `size` bytes, which is not opened before the first read;
    /// `isWritten`: it is held open for writing meanwhile.
    void Follow(const CString& path, std::uint64_t size, bool isWritten);
    /// Closes the handle and keeps the files' names: the next read opens them again. Before the archive's
    /// file is replaced this is needed where the system lets no open file go.
    void Release();
    /// Closes the handle and forgets the files.
    void Close();
    /// Whether every file still has the size and the time that it had when it was opened.
    bool IsUnchanged() const;

    /// True when there are several files.
    bool IsSplit() const { return m_parts.size() > 1; }
    std::uint32_t PartCount() const { return static_cast<std::uint32_t>(m_parts.size()); }
    const CString& Path() const { return m_path; }
    bool IsHeld() const { return m_file != system::kNoFile; }

    std::uint64_t Size() const override { return m_size; }
    Bytes View(std::uint64_t offset, std::size_t least) override;
    /// Long reads go past the window.
    bool Read(std::uint64_t offset, void* buffer, std::size_t size) override;
    std::uint64_t PartStart(std::uint32_t part) const override;
    /// Puts the parts name.z01 ... in front of the open name.zip. Throws volumeMissing.
    bool BringParts(std::uint32_t parts) override;
    bool HasParts(std::uint32_t parts) const override;

    /// The handle of the part that holds `offset`, the offset in it, and how many bytes it has from there on;
    /// for copying in the kernel. The handle's position is the caller's until the next View.
    HANDLE Locate(std::uint64_t offset, std::uint64_t& within, std::uint64_t& left);

private:
    struct Part
    {
        CString path;
        std::uint64_t start = 0;
        std::uint64_t size = 0;
        FILETIME written{};
    };

    static bool Describe(const CString& path, Part& part);
    void Number();
    void AddPieces();
    bool IsSetOf(std::uint32_t parts) const;
    std::size_t PartOf(std::uint64_t offset) const;
    void Hold(std::size_t part);
    std::size_t ReadAt(std::uint64_t offset, std::uint8_t* buffer, std::size_t size);
    [[noreturn]] void ThrowSystem(const CString& path) const;

    CString m_path;
    ZipVector<Part> m_parts;
    bool m_isWritten = false;
    bool m_isPieces = false; ///< cut anywhere: offsets do not count by parts
    std::uint64_t m_size = 0;
    HANDLE m_file = system::kNoFile;
    std::size_t m_held = 0;
    std::uint64_t m_position = 0; ///< of the handle, within its part
    ZipVector<std::uint8_t> m_window;
    std::uint64_t m_windowStart = 0;
    std::size_t m_windowSize = 0;
};

} // namespace vak::detail
