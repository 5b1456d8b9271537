#pragma once

#include "examples/vakconvert/Content.h"
#include "framework/base/String.h"

class CFileIo;

/// Makes the parser and lets it read or write. Returns an empty text, or why that failed; exceptions of a
/// plug-in end here. What the content says that it is goes with the kind of the file.
CString RunParser(CFileIo& io, Content& content);

/// Reads a file of either family. Returns an empty text, or why that failed.
CString LoadContent(const CString& path, Content& content);
