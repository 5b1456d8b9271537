#pragma once

/// A buffered stream over a CFile through which objects write themselves and read themselves back. One
/// direction for its whole life. Bytes are the same on every build; docs/formats/archive.md has the grammar.
///
/// An archive belongs to one thread. Between its construction and Flush, Close or destruction the file's
/// position is the archive's, not the caller's. Everything read is taken as untrusted: nothing is allocated
/// on the word of a length that the file cannot hold, a reference never yields an object of another class
/// than the one asked for.
///
/// Errors are CArchiveException (what the bytes say, or the wrong direction) and whatever the file throws.

#include "framework/base/ArchiveException.h"
#include "framework/base/ByteOrder.h"
#include "framework/base/Object.h"
#include "framework/base/String.h"

#include <concepts>
#include <memory>
#include <vector>

class CFile;

namespace vak::detail {

/// The platform's LONG and DWORD where the language's `long` has their 32 bits. Where it has 64, `long` has
/// no place in an archive: it would not be read back on the other build.
template <class T>
concept PlatformLong = (std::same_as<T, long> || std::same_as<T, unsigned long>)&&sizeof(T) == 4;
template <class T>
concept ForeignLong = (std::same_as<T, long> || std::same_as<T, unsigned long>)&&sizeof(T) != 4;

class ArchiveAccess;
struct StoreMap;
struct LoadMap;

} // namespace vak::detail

class VAK_API CArchive
{
public:
    enum Mode
    {
        store = 0,
        load = 1,
        bNoFlushOnDelete = 2
    };
    /// How deep WriteObject and ReadObject nest, each called from the Serialize of the one before: an input
    /// must not decide how much stack is used.
    static constexpr int kMaxObjectNesting = 1024;

    /// Opens over `file`, which stays the caller's, is open in the direction of `mode` and outlives the
    /// archive. A caller's `buffer` of `bufferSize` bytes (at least 128; made so if smaller) is used and not
    /// owned. With bNoFlushOnDelete the destructor drops what was not closed.
    CArchive(CFile* file, UINT mode, int bufferSize = 4096, void* buffer = nullptr);
    /// Closes, unless bNoFlushOnDelete; an exception there is swallowed, so whoever wants to know calls
    /// Close.
    ~CArchive();
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    BOOL IsLoading() const { return (m_nMode & load) != 0; }
    BOOL IsStoring() const { return (m_nMode & load) == 0; }
    /// Non-zero when a load archive has to go to the file for the next byte.
    BOOL IsBufferEmpty() const { return m_current == m_readEnd; }
    /// The file; null after Close or Abort.
    CFile* GetFile() const { return m_file; }

    /// While an object of a versionable class is being read: the schema it was written with, once; a second
    /// call, and a call outside reading, gives UINT(-1).
    UINT GetObjectSchema();
    /// What the next GetObjectSchema gives.
    void SetObjectSchema(UINT schema);

    /// Reads up to `size` bytes and returns how many there were: fewer only at the end of the file.
    UINT Read(void* data, UINT size);
    /// Reads `size` bytes or throws endOfFile; how much of `data` is then filled is open.
    void EnsureRead(void* data, UINT size);
    void Write(const void* data, UINT size);
    /// Storing: writes the buffer to the file and flushes that. Loading: drops what was read ahead and puts
    /// the file's position back to the archive's.
    void Flush();
    /// Flushes and lets go of the file, which stays open. Nothing else is possible afterwards.
    void Close();
    /// Lets go of the file without flushing and never throws. What was buffered is lost.
    void Abort();

    /// The count forms: 16 bits, and 32 or 64 bits behind all-ones markers.
    void WriteCount(DWORD_PTR count);
    DWORD_PTR ReadCount();

    /// Writes the characters without zero, line end or length.
    void WriteString(LPCTSTR text);
    /// Reads a line of wide characters up to "\n" or "\r\n", which is taken and dropped. False only at the
    /// end of the file with nothing read; half a character there counts as the end.
    BOOL ReadString(CString& line);
    /// Reads at most `maximum` characters of a line, without its end, and adds a zero: `text` has room for
    /// one more. What is longer is left for the next call. Null at the end of the file or when `maximum` is
    /// 0.
    LPTSTR ReadString(LPTSTR text, UINT maximum);

    /// Writes the object with its class, or a reference when it was written before; null is allowed. A class
    /// that does not serialise throws CNotSupportedException.
    void WriteObject(const CObject* object);
    /// Reads an object that is of `requested` (null: any class) and returns it, or null if null was written.
    /// A new object is the caller's; a reference gives the pointer given before. When an exception leaves,
    /// the object that was being read is deleted, unless a reference to any object was given out since its
    /// reading began: then nobody can tell who frees what, and it is left alone. Objects given out before
    /// belong to whoever received them. The archive is then good for nothing more. Objects nest at most
    /// kMaxObjectNesting deep, on both sides; genericException beyond.
    CObject* ReadObject(const CRuntimeClass* requested);
    /// Gives an object outside the archive the next number, on both sides, so that references to it are
    /// stored; null takes no number. It stays its owner's, and lives as long as the archive reads or writes.
    void MapObject(const CObject* object);

    void WriteClass(const CRuntimeClass* runtimeClass);
    /// Reads a class and checks that it is `requested` or derives from it (null: any) and reads the schema
    /// stored; a `requested` that does not serialise is a CNotSupportedException. The stored schema goes to
    /// `schema`, or without one is kept for GetObjectSchema. With `objectTag` a reference to an object is
    /// allowed: its number goes there and the result is null; for a class 0 goes there.
    CRuntimeClass* ReadClass(const CRuntimeClass* requested = nullptr, UINT* schema = nullptr,
                             DWORD* objectTag = nullptr);
    /// WriteClass or ReadClass by direction; reading leaves the schema for GetObjectSchema.
    void SerializeClass(const CRuntimeClass* runtimeClass);

    CArchive& operator<<(BYTE value) { return Put(value); }
    CArchive& operator<<(char value) { return Put(value); }
    CArchive& operator<<(wchar_t value) { return Put(WORD(value)); }
    CArchive& operator<<(bool value) { return Put(BYTE(value ? 1 : 0)); }
    CArchive& operator<<(SHORT value) { return Put(value); }
    CArchive& operator<<(WORD value) { return Put(value); }
    CArchive& operator<<(int value) { return Put(value); }
    CArchive& operator<<(unsigned int value) { return Put(value); }
    CArchive& operator<<(LONGLONG value) { return Put(value); }
    CArchive& operator<<(ULONGLONG value) { return Put(value); }
    CArchive& operator<<(float value) { return Put(value); }
    CArchive& operator<<(double value) { return Put(value); }
    template <vak::detail::PlatformLong T>
    CArchive& operator<<(T value)
    {
        return Put(value);
    }
    template <vak::detail::ForeignLong T>
    CArchive& operator<<(T) = delete;
    /// A pointer to anything but an object would be stored as a bool.
    CArchive& operator<<(const void*) = delete;

    CArchive& operator>>(BYTE& value) { return Get(value); }
    CArchive& operator>>(char& value) { return Get(value); }
    CArchive& operator>>(wchar_t& value);
    /// Any byte but 0 is true.
    CArchive& operator>>(bool& value);
    CArchive& operator>>(SHORT& value) { return Get(value); }
    CArchive& operator>>(WORD& value) { return Get(value); }
    CArchive& operator>>(int& value) { return Get(value); }
    CArchive& operator>>(unsigned int& value) { return Get(value); }
    CArchive& operator>>(LONGLONG& value) { return Get(value); }
    CArchive& operator>>(ULONGLONG& value) { return Get(value); }
    CArchive& operator>>(float& value) { return Get(value); }
    CArchive& operator>>(double& value) { return Get(value); }
    template <vak::detail::PlatformLong T>
    CArchive& operator>>(T& value)
    {
        return Get(value);
    }

    /// The file's name when the archive was made, for messages.
    CString m_strFileName;

private:
    friend class vak::detail::ArchiveAccess;

    template <class T>
    CArchive& Put(T value)
    {
        vak::detail::StoreLittleEndian(Reserve(sizeof value), value);
        return *this;
    }
    template <class T>
    CArchive& Get(T& value)
    {
        value = vak::detail::LoadLittleEndian<T>(Take(sizeof value));
        return *this;
    }
    /// The place of `size` bytes in the buffer; at most 8.
    BYTE* Reserve(std::size_t size)
    {
        if (m_writeEnd - m_current < std::ptrdiff_t(size))
            MakeRoom();
        m_current += size;
        return m_current - size;
    }
    const BYTE* Take(std::size_t size)
    {
        if (m_readEnd - m_current < std::ptrdiff_t(size))
            Fetch(size);
        m_current += size;
        return m_current - size;
    }
    void MakeRoom();
    void Fetch(std::size_t size);

    [[noreturn]] void Throw(int cause) const;
    void RequireStoring() const;
    void RequireLoading() const;
    void WriteBuffer();
    bool FillBuffer(std::size_t wanted);
    UINT ReadFromFile(BYTE* data, UINT size);
    ULONGLONG BytesLeft();
    bool PeekUnit(wchar_t& unit);
    bool ReadLineUnit(wchar_t& unit);
    vak::detail::StoreMap& Stored();
    vak::detail::LoadMap& Loaded();
    void WriteTag(DWORD index, DWORD classBit);
    DWORD ReadTag(bool& newClass);
    DWORD ReadNewClass();
    CObject* ReadReference(DWORD index, const CRuntimeClass* requested);
    CObject* ReadNewObject(const CRuntimeClass* runtimeClass, UINT schema);

    UINT m_nMode;
    CFile* m_file;
    BYTE* m_begin;
    BYTE* m_limit;
    BYTE* m_current;
    /// The end of what may be read at m_current, and of what may be written: one is m_begin by direction.
    BYTE* m_readEnd;
    BYTE* m_writeEnd;
    std::unique_ptr<BYTE[]> m_ownBuffer;
    ULONGLONG m_leftInFile = 0;
    bool m_leftIsCurrent = false;
    UINT m_objectSchema = UINT(-1);
    int m_nesting = 0;
    std::unique_ptr<vak::detail::StoreMap> m_stored;
    std::unique_ptr<vak::detail::LoadMap> m_loaded;
};

/// Strings in either width carry their length and width and are converted by the ANSI code page when read
/// into the other one. A null-free copy of the stored characters, zeros inside included, is what is read
/// back.
VAK_API CArchive& operator<<(CArchive& archive, const CStringW& text);
VAK_API CArchive& operator<<(CArchive& archive, const CStringA& text);
VAK_API CArchive& operator>>(CArchive& archive, CStringW& text);
VAK_API CArchive& operator>>(CArchive& archive, CStringA& text);

VAK_API CArchive& operator<<(CArchive& archive, const CObject* object);
VAK_API CArchive& operator>>(CArchive& archive, CObject*& object);
VAK_API CArchive& operator>>(CArchive& archive, const CObject*& object);

namespace vak::detail {

/// ArchiveBytesLeft when the file cannot tell.
constexpr ULONGLONG kBytesLeftUnknown = ~ULONGLONG(0);

/// How many bytes a load archive can still give, kBytesLeftUnknown when its file does not know its length.
/// Cheap: the file is asked once for each time the archive was flushed. A reader compares a count with this
/// before it allocates; for an unknown length it reads with ReadArchiveBytes.
VAK_INTERNAL_API ULONGLONG ArchiveBytesLeft(CArchive& archive);

/// Reads exactly `size` bytes or throws endOfFile; a size that the file cannot hold is refused before
/// anything is allocated, and for an unknown length memory grows only with what really arrives.
/// CMemoryException when there is not enough.
VAK_INTERNAL_API std::vector<BYTE> ReadArchiveBytes(CArchive& archive, ULONGLONG size);

} // namespace vak::detail
