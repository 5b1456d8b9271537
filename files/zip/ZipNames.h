#pragma once

#include "files/zip/ZipSource.h"
#include "framework/base/Platform.h"
#include "framework/base/String.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// Entry names: from stored bytes to text and back, and whether they may become names on the disk.
namespace vak::detail::zip {

/// Appends what the stored bytes mean, slashes as backslashes, to `text`. Bytes that mean nothing in UTF-8 or
/// in the code page become its replacement character; an unknown code page is read as 437.
void AppendText(std::span<const std::uint8_t> bytes, UINT codePage, ZipVector<wchar_t>& text);

/// The same for a comment, whose slashes stay.
CString CommentText(std::span<const std::uint8_t> bytes, UINT codePage);

/// The other way: false when the code page lacks a character of the text.
bool CommentBytes(const CString& text, UINT codePage, ZipVector<std::uint8_t>& bytes);

/// What a name is stored as.
struct StoredName
{
    CStringA bytes;
    bool isUtf8 = false; ///< set when the name has anything beyond ASCII
};
/// The bytes for a name, backslashes as slashes.
StoredName StoredFrom(const CString& name);

/// The name with backslashes for slashes, as look-ups want it.
CString WithBackslashes(LPCWSTR name);
/// The name without drive, server and separators at its beginning.
CString WithoutRoot(const CString& name);
/// What stands behind the last separator; empty for a directory.
std::span<const wchar_t> FileNameOf(std::span<const wchar_t> name);

/// Makes a name fit for the disk: relative, with single backslashes, without "." and without ".."; a
/// directory's keeps its backslash at the end. Returns 0, or the code of CZipException (nameEmpty ...
/// nameCharacter) that says why it may not be used; `safe` is then empty.
VAK_INTERNAL_API int MakeSafe(const CString& name, CString& safe);

} // namespace vak::detail::zip
