#pragma once

/// The kinds of value that tags stand for.
///
/// A kind is 24 bits: the low twelve, its storage class, say where a value keeps its data, the higher ones
/// what the data means. Kinds of one storage class convert into each other by being relabelled. In a flags
/// word and in a parameter's yield word the kind shares 32 bits with the flags below.

#include "framework/base/Platform.h"

enum _TAGDATA_INFO : unsigned int
{
    TAGDATA_NONE = 0,
    TAGDATA_TEXT = 0x1,
    TAGDATA_FILENAME = 0x1001, ///< a path; the file parameters apply to it
    TAGDATA_UINT = 0x2,
    TAGDATA_INT = 0x2002,
    TAGDATA_BOOL = 0x4002,     ///< zero or not
    TAGDATA_FILESIZE = 0x8002, ///< bytes, 64 bits
    TAGDATA_COLOR = 0x10002,   ///< red in the low byte, then green, then blue
    TAGDATA_FLOAT = 0x4,
    TAGDATA_DURATION = 0x20004,   ///< seconds
    TAGDATA_LENGTH = 0x40004,     ///< millimetres
    TAGDATA_RESOLUTION = 0x80004, ///< dots per inch
    TAGDATA_DATE = 0x8,
    TAGDATA_CUSTOMDATA = 0x10,     ///< a whole property store
    TAGDATA_CUSTOMINFO = 0x100010, ///< a block of bytes
    TAGDATA_STRINGARRAY = 0x100,
    TAGDATA_UINTARRAY = 0x200,
    TAGDATA_FLOATARRAY = 0x400,
};

namespace vak {

constexpr unsigned int kTagStorageMask = 0xFFF;
constexpr unsigned int kTagKindMask = 0xFFFFFF;

/// Flags above the kind.
constexpr unsigned int kTagNotComparable = 0x1000000;          ///< left out of a restricted menu too
constexpr unsigned int kTagNoParameters = 0x2000000;           ///< the menu offers no parameters for the tag
constexpr unsigned int kTagNoParametersRestricted = 0x4000000; ///< nor does a restricted menu

/// Returns the kind in a word that may carry flags.
constexpr _TAGDATA_INFO TagKind(unsigned int word)
{
    return static_cast<_TAGDATA_INFO>(word & kTagKindMask);
}

/// Returns the storage class of a kind: the plain kind that keeps its data in the same place.
constexpr _TAGDATA_INFO TagStorage(unsigned int kind)
{
    return static_cast<_TAGDATA_INFO>(kind & kTagStorageMask);
}

} // namespace vak
