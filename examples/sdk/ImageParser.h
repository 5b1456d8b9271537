#pragma once

#include "examples/sdk/FormatOptions.h"
#include "examples/sdk/Image.h"
#include "files/FileParser.h"
#include "files/IoResult.h"

/// What the host asks of a parser for kinds of the bitmap family (property bit 0x1000); see CMeshParser.
class CImageParser : public CFileParser
{
public:
    using CFileParser::CFileParser;

    /// Reads the file. On success `image` is consistent; on failure it is empty and the result tells why.
    virtual IO_FILE_RESULT Load(Image& image) = 0;
    /// Writes the consistent `image`. A failure may leave part of a file.
    virtual IO_FILE_RESULT Save(const Image& image) = 0;
    /// The options of this format in this direction.
    virtual FormatOptions GetOptions() const { return {}; }
};
