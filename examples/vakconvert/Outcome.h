#pragma once

#include "framework/base/String.h"

#include <cstddef>

/// How one file fared.
struct Outcome
{
    CString source;   ///< as the user knows it: the path below the source folder
    CString result;   ///< the file made; empty after a failure
    CString contents; ///< what the source holds, in words; empty when it could not be read
    ULONGLONG bytes = 0;
    double seconds = 0;
    CString failure;         ///< why it failed; empty for success
    unsigned int family = 0; ///< the bit of the kinds it belongs to; 0 when it could not be read
    std::size_t vertices = 0;
    std::size_t faces = 0;
};
