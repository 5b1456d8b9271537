#pragma once

#include "files/IoFile.h"
#include "files/IoResult.h"
#include "framework/base/FileException.h"

#include <limits>
#include <string>
#include <string_view>

/// Reads and writes whole files through the library's file object, silently, with the failure as a result
/// code.

/// The largest file that is read whole: 1 GiB.
constexpr ULONGLONG kLargestFile = 0x40000000;

inline IO_FILE_RESULT ResultOf(const CFileException& failure)
{
    switch (failure.m_cause) {
    case CFileException::accessDenied:
    case CFileException::sharingViolation:
        return IO_FILE_ACCESS_DENIED;
    case CFileException::diskFull:
        return IO_FILE_DISK_FULL;
    default:
        return IO_FILE_OPEN_ERROR;
    }
}

/// Replaces `bytes` by the content of the file; empties it on failure.
inline IO_FILE_RESULT ReadFileBytes(const CString& path, std::string& bytes)
{
    bytes.clear();
    IoFile file(1, 0);
    if (!file.OpenFile(path, 1))
        return IO_FILE_OPEN_ERROR;
    IO_FILE_RESULT result = IO_FILE_SUCCESS;
    try {
        const ULONGLONG length = file.FileGetLength();
        if (length > kLargestFile) {
            result = IO_FILE_NO_MEMORY;
        } else if (length > 0) {
            bytes.resize(static_cast<std::size_t>(length));
            if (!file.FileRead(bytes.data(), static_cast<unsigned int>(length)))
                result = IO_FILE_BAD_FORMAT;
        }
    } catch (CFileException* failure) {
        result = ResultOf(*failure);
        failure->Delete();
    }
    file.CloseFile();
    if (result != IO_FILE_SUCCESS)
        bytes.clear();
    return result;
}

/// Creates or truncates the file and writes `bytes` to it.
inline IO_FILE_RESULT WriteFileBytes(const CString& path, std::string_view bytes)
{
    IoFile file(1, 0);
    if (!file.OpenFile(path, 0))
        return IO_FILE_OPEN_ERROR;
    IO_FILE_RESULT result = IO_FILE_SUCCESS;
    try {
        constexpr std::size_t kPiece = 0x1000000;
        for (std::size_t done = 0; done < bytes.size(); done += kPiece) {
            const std::string_view piece = bytes.substr(done, kPiece);
            file.FileWrite(const_cast<char*>(piece.data()), static_cast<unsigned int>(piece.size()));
        }
        file.Flush();
    } catch (CFileException* failure) {
        result = ResultOf(*failure);
        failure->Delete();
    }
    file.CloseFile();
    return result;
}
