#pragma once

/// How one load or save ended.
enum IO_FILE_RESULT : int
{
    IO_FILE_SUCCESS = 1,
    IO_FILE_OPEN_ERROR = -1,
    IO_FILE_UNKNOWN_TYPE = -2,
    IO_FILE_BAD_FORMAT = -3,
    IO_FILE_NO_MEMORY = -4,
    IO_FILE_DISK_FULL = -5,
    IO_FILE_ACCESS_DENIED = -6,
    IO_FILE_NOTHING_TO_SAVE = -7,
    IO_FILE_UNSUPPORTED_OPTIONS = -8,
    IO_FILE_EMPTY = -9,
    IO_FILE_ABORTED = -10,
};
