#pragma once

/// The parameters that refine the value of a tag. The table is constant, the look-up is built on first use
/// and never destroyed; any thread may ask.

#include "framework/base/String.h"
#include "tags/TagData.h"

#include <span>

namespace vak::detail {

struct TagParameter
{
    const wchar_t* name; ///< lower case, without parentheses
    _TAGDATA_INFO appliesTo;
    unsigned int yieldWord; ///< the kind that results and, above it, the flags of a tag that ends so
    UINT friendlyNameId;
    UINT exampleId; ///< 0 for none

    constexpr _TAGDATA_INFO Yields() const { return TagKind(yieldWord); }
    constexpr bool IsComparable() const { return (yieldWord & kTagNotComparable) == 0; }
};

/// All parameters, in the order in which a menu lists them.
VAK_INTERNAL_API std::span<const TagParameter> TagParameters();

/// Returns the parameter of exactly that name, or null.
VAK_INTERNAL_API const TagParameter* FindTagParameter(const CString& name);

} // namespace vak::detail
