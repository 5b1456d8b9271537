#pragma once

#include "examples/sdk/FormatOptions.h"
#include "examples/sdk/Mesh.h"
#include "files/FileParser.h"
#include "files/IoResult.h"

/// What the host asks of a parser for kinds of the 3-D family (property bit 0x4000): a plug-in that declares
/// such a kind creates a parser derived from this class.
///
/// A parser serves the one file of the `CFileIo` that it was created for and reads its options from that
/// object's parameters.
class CMeshParser : public CFileParser
{
public:
    using CFileParser::CFileParser;

    /// Reads the file. On success `mesh` is consistent; on failure it is empty and the result tells why.
    virtual IO_FILE_RESULT Load(Mesh& mesh) = 0;
    /// Writes the consistent `mesh`, and files that belong to it beside it. A failure may leave part of a
    /// file.
    virtual IO_FILE_RESULT Save(const Mesh& mesh) = 0;
    /// The options of this format in this direction.
    virtual FormatOptions GetOptions() const { return {}; }
};
