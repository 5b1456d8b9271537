#pragma once

/// Numbers of tag values: read from text, cut to integers.

#include "framework/base/String.h"

#include <cstdint>

namespace vak::detail {

/// Read the number that a text begins with, as the platform's scanner does: white space and a sign may come
/// before it, anything may follow. False, with `number` as it was, when there is none or it does not fit its
/// type; a float that is nearer to 0 than any other does not either. The decimal mark is the point in every
/// locale, an "e" or "E" behind the digits must be followed by an exponent, and there are no words for what
/// is infinite or no number. A negative number for an unsigned type is the one that it is congruent to.
VAK_INTERNAL_API bool ReadNumber(const CString& text, std::int32_t& number);
VAK_INTERNAL_API bool ReadNumber(const CString& text, std::int64_t& number);
VAK_INTERNAL_API bool ReadNumber(const CString& text, std::uint64_t& number);
VAK_INTERNAL_API bool ReadNumber(const CString& text, float& number);

/// Cut the fraction off. A negative number becomes the bits of a signed one; what fits neither a signed nor
/// an unsigned integer becomes the one nearest to it, and what is no number becomes 0.
VAK_INTERNAL_API std::uint64_t Truncate64(float number);
VAK_INTERNAL_API std::uint32_t Truncate32(float number);

} // namespace vak::detail
