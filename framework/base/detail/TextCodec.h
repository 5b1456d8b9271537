#pragma once

/// Conversions that need no table of the system: UTF-8 and the Western single-byte pages, alike on every
/// build, and fast on long runs of ASCII.

#include "framework/base/Platform.h"

#include <cstddef>
#include <cstdint>

namespace vak::detail {

/// Writes the UTF-16 of `count` bytes and returns how many units that is, at most `count`; `out` holds
/// `count` units. Each longest beginning of a character that leads nowhere, and each byte that begins none,
/// becomes U+FFFD.
std::size_t DecodeUtf8(const char* bytes, std::size_t count, wchar_t* out);

/// One step of it: decodes the characters that begin among the first `limit` bytes at `p`, at most a window,
/// moves `out` on and returns where the next one begins. `mask` has a bit for each byte of the window that is
/// not ASCII. Characters end at `end`; but up to the slack behind the window is read, and as many units
/// written.
constexpr std::size_t kUtf8Window = 64;
constexpr std::size_t kUtf8Slack = 72;
const unsigned char* DecodeUtf8Window(const unsigned char* p, const unsigned char* end, std::size_t limit,
                                      std::uint64_t mask, wchar_t*& out);

/// How many bytes EncodeUtf8 writes, at most three a unit.
std::size_t Utf8Length(const wchar_t* text, std::size_t count);
/// Writes the UTF-8 of `count` units; an unpaired surrogate is written as U+FFFD.
void EncodeUtf8(const wchar_t* text, std::size_t count, char* out);

/// Write one unit a byte.
void DecodeLatin1(const char* bytes, std::size_t count, wchar_t* out);
void Decode1252(const char* bytes, std::size_t count, wchar_t* out);

/// What the bytes 0x80 to 0x9F mean in code page 1252; the unassigned ones are control characters.
extern const wchar_t kUpper1252[32];

} // namespace vak::detail
