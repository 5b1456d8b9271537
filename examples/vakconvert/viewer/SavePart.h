#pragma once

#include "examples/sdk/Image.h"
#include "framework/base/Geometry.h"
#include "framework/base/String.h"

/// Saves a part of the image, which lies in it and is not empty, in the format that the path's extension
/// tells. A file that is there is replaced once the new one is complete. Returns an empty text, or why
/// nothing was saved.
CString SavePart(const Image& image, const CRect& part, const CString& path);
