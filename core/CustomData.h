#pragma once

#include "core/CustomDataClass.h"
#include "core/detail/EntryBlock.h"
#include "framework/base/Platform.h"
#include "framework/base/String.h"

class CArchive;
class CFile;
class CObject;
class CStringArray;
class CStringList;

/// Kind codes of stored values. The first character is the most significant byte.
namespace vak::kind {
constexpr unsigned int Int = ' INT';
constexpr unsigned int UInt = 'UINT';
constexpr unsigned int Long = 'LONG';
constexpr unsigned int ULong = 'ULON';
constexpr unsigned int LongLong = 'LLON';
constexpr unsigned int ULongLong = 'ULLO';
constexpr unsigned int Bool = 'BOOL';
constexpr unsigned int Float = 'FLOA';
constexpr unsigned int Double = 'DOUB';
constexpr unsigned int Pointer = 'PTR6';
constexpr unsigned int Binary = ' BIN';
constexpr unsigned int WideText = 'UNIC';
constexpr unsigned int NarrowText = 'ANSI';
constexpr unsigned int WideTexts = 'USTR';
constexpr unsigned int NarrowTexts = 'ASTR';
constexpr unsigned int Store = 'CDAT';
/// A value of an older form, whose strings are read by the store's string mode.
constexpr unsigned int Untyped = '    ';
/// A value that is there but that typed getters do not report.
constexpr unsigned int Invalid = 0;
} // namespace vak::kind

/// An entry of the image that GetData and SetData exchange. Entries lie back to back, at any alignment, each
/// 20 + size bytes: read the fields bytewise.
struct CustomPrivateData
{
    CustomPrivateData* next; ///< the following entry in the same image, null in the last
    unsigned int id;
    unsigned int size; ///< bytes of the value
    unsigned int kind;
    unsigned char value[1];
};
static_assert(sizeof(void*) != 8 || offsetof(CustomPrivateData, value) == 20);

/// A record of the oldest stored form, as a 32-bit build laid it out: the value begins at byte 12, the next
/// record size + 15 bytes behind this one.
struct CustomPrivateDataOld
{
    unsigned int id;
    unsigned int size;
    unsigned int next; ///< non-zero when a record follows
    unsigned char value[1];
};
static_assert(offsetof(CustomPrivateDataOld, value) == 12 && sizeof(CustomPrivateDataOld) == 16);

/// A bag of values, each filed under a caller's 32-bit identifier with a kind code and its bytes.
///
/// The store owns copies of everything put into it. Entries keep the order of their insertion; look-ups take
/// the first entry with the identifier. Pointers that GetCustomPtr and GetData give are valid until the next
/// change to the store. One thread at a time, readers included: a look-up may build the index that the next
/// ones use.
///
/// When memory runs out a setter returns without storing; what was under the identifier is then gone. Stored
/// bytes are described in docs/formats/property-store.md, the preferences file in
/// docs/formats/preferences.md.
class VAK_API CCustomData
{
public:
    CCustomData();
    CCustomData(const CCustomData& other);
    /// Copies entries and string mode; assigning a store to itself changes nothing.
    CCustomData& operator=(const CCustomData& other);
    virtual ~CCustomData();

    /// Returns a new store equal to this one, which the caller deletes, or null when this one is empty.
    CCustomData* Copy() const;

    /// @name Queries
    /// @{
    int HasData() const;
    int HasData(unsigned int id) const;
    /// The kind, or the number of value bytes, of the first entry with the id; 0 when there is none.
    unsigned int GetDataKindOf(unsigned int id) const;
    /// Callers may ask a store that they do not have: 0 for a null pointer.
    unsigned int GetDataSize(unsigned int id) const;
    /// The value bytes, at any alignment, of the first entry with the id, or null.
    void* GetCustomPtr(unsigned int id);
    const void* GetCustomPtr(unsigned int id) const;
    /// Returns the image of all entries (CustomPrivateData) and its size in bytes; null and 0 for an empty
    /// store.
    const void* GetData(unsigned int& size) const;
    /// Non-zero when every id that both stores hold has the same bytes in both, and the number of different
    /// ids here is the number of entries there. Kinds, string modes and the ids that only one holds do not
    /// count.
    int IsEqual(const CCustomData& other) const;
    /// @}

    /// @name Whole store
    /// @{
    void RemoveAll();
    /// Replaces everything by the entries of an image; a null link marks the last, other links are not looked
    /// at. An image whose entries run past `size` leaves the store empty.
    void SetData(const void* image, unsigned int size);
    /// Removes the first entry with the id.
    void RemoveCustom(unsigned int id);
    /// Removes any entry under `newId`, then renames the first one under `oldId`; returns 1 if there was one.
    /// The order is part of the contract: ChangeID(x, x) removes x and returns 0.
    int ChangeID(unsigned int oldId, unsigned int newId);
    /// Merges the entries of `src`, in their order. Bit 0 of `flags` leaves ids alone that are here already;
    /// bit 1 alone replaces them; with neither, or with a null `src`, nothing happens. An untyped entry takes
    /// the kind of the entry that it replaces. Where there is none it is copied as invalid, so that the value
    /// travels without being reported, and only between stores of one string mode.
    void Copy(const CCustomData* src, int flags);
    /// Copies single entries of `src`; the list of ids, all `unsigned int`, ends with a 0.
    void CopyID(const CCustomData* src, unsigned int id, ...);
    /// @}

    /// @name Setters
    /// A value of the size that is stored under the id replaces it in place; otherwise the first entry with
    /// the id is removed and a new one is appended, unless its size is 0.
    /// @{
    void SetInt(unsigned int id, int value);
    void SetUInt(unsigned int id, unsigned int value);
    void SetLong(unsigned int id, LONG value);
    void SetULong(unsigned int id, ULONG value);
    void SetLongLong(unsigned int id, LONGLONG value);
    void SetULongLong(unsigned int id, ULONGLONG value);
    /// Stores the int as it is given.
    void SetBool(unsigned int id, int value);
    void SetFloat(unsigned int id, float value);
    void SetDouble(unsigned int id, double value);
    void SetPtr(unsigned int id, void* value);
    /// A null `data` counts as size 0.
    void SetBinary(unsigned int id, const void* data, unsigned int size);
    void SetString(unsigned int id, const CString& text);
    void SetStringW(unsigned int id, const CStringW& text);
    void SetStringA(unsigned int id, const CStringA& text);
    void SetStringList(unsigned int id, const CStringList& texts);
    void SetStringArray(unsigned int id, const CStringArray& texts);
    void SetCustomData(unsigned int id, const CCustomData& nested);
    void SetCustomClass(unsigned int id, const CCustomDataClass& object);
    /// Merges `src` into the store nested under the id; with `keepExisting` values that are there win.
    void AddToCustomData(unsigned int id, const CCustomData& src, int keepExisting);
    /// @}

    /// @name Getters
    /// The typed ones take the first entry with the id and the width of the type, whatever its kind: an int
    /// read of a float gives the float's bits. They return 1, or 0 and the default when there is no such
    /// entry or its kind is invalid.
    /// @{
    int GetInt(unsigned int id, int& out, int def) const;
    int GetUInt(unsigned int id, unsigned int& out, unsigned int def) const;
    int GetLong(unsigned int id, LONG& out, LONG def) const;
    int GetULong(unsigned int id, ULONG& out, ULONG def) const;
    int GetLongLong(unsigned int id, LONGLONG& out, LONGLONG def) const;
    int GetULongLong(unsigned int id, ULONGLONG& out, ULONGLONG def) const;
    int GetBool(unsigned int id, int& out, int def) const;
    int GetFloat(unsigned int id, float& out, float def) const;
    int GetDouble(unsigned int id, double& out, double def) const;
    /// The default is null.
    int GetPtr(unsigned int id, void*& out) const;
    /// Copies the first entry with the id and exactly `size` bytes, if there is one; 1 if its kind is valid.
    int GetBinary(unsigned int id, void* out, unsigned int size) const;
    /// Return 0 and the default when there is nothing under the id, else 1: with the text up to its first
    /// terminator, converted by the ANSI code page where the width differs, or with the default for a value
    /// that is no text.
    int GetString(unsigned int id, CString& out, const CString& def) const;
    int GetStringW(unsigned int id, CStringW& out, const CStringW& def) const;
    int GetStringA(unsigned int id, CStringA& out, const CStringA& def) const;
    /// Replace the contents by the terminated strings of a list value and return their number, 0 when there
    /// is none.
    int GetStringList(unsigned int id, CStringList& out) const;
    int GetStringArray(unsigned int id, CStringArray& out) const;
    /// Replaces `out` by the nested store; 0 and an empty store when there is none, its kind is invalid or it
    /// is damaged.
    int GetCustomData(unsigned int id, CCustomData& out) const;
    /// Returns what `object` returns for the nested store; 0, with the object at its defaults, when there is
    /// none.
    int GetCustomClass(unsigned int id, CCustomDataClass& object) const;
    /// @}

    /// @name Storage
    /// @{
    /// Writes the store or reads it back, older forms included. Reading throws CFileException* (generic, OS
    /// error -1) for bytes that are no store, and whatever the archive throws; the store is then empty.
    void Serialize(CArchive& archive);
    /// Puts the store into the preferences file under a pair of keys, in place of the one that was there, and
    /// returns how many stores the file holds then. Returns 0 when the file is not written: the old one stays
    /// if the new one cannot be created or put in its place, or the old one cannot be opened; it is moved to
    /// `path` +
    /// ".bad" if its contents are damaged or writing fails.
    int SaveToPrefs(const CString& path, unsigned int key1, unsigned int key2) const;
    /// Replaces everything by the first store under the keys and returns 1; 0, with an empty store, if there
    /// is none or the file is damaged before it.
    int LoadFromPrefs(CString path, unsigned int key1, unsigned int key2);
    /// @}

protected:
    /// The rule of the setters. `data` may lie in this store.
    void SetCustom(unsigned int id, const void* data, unsigned int size, unsigned int kind);
    /// For a CStringList or a CStringArray; another class removes the id, or gives 0.
    void SetStrings(unsigned int id, const CObject& texts);
    int GetStrings(unsigned int id, CObject& out) const;

    /// Returns the raw form, which the caller frees with free(), and its size; null and 0 for an empty store.
    unsigned char* RawFromCustomData(const CCustomData& data, unsigned int& size) const;
    /// Replaces `out` by a raw form, whose length is trusted to be what its header says.
    void CustomDataFromRaw(CCustomData& out, const unsigned char* raw) const;
    /// Reads the length and the records of the oldest form into this store. Throws as Serialize.
    void ReadPreviousVersion(CArchive& archive);
    /// Sets each record of a chain, which is trusted to be complete, in `out`.
    void ConvertPreviousData(CCustomData& out, const CustomPrivateDataOld* chain) const;
    /// Rebuilds the image that GetData gives and returns its last entry, null for an empty store.
    CustomPrivateData* UpdateDataPointers();

    // The order of the string mode, the block and its size is part of the interface.
    /// 0 for data of the current form; untyped strings are UTF-16 in mode 1 and 8-bit in mode 2.
    unsigned int m_stringMode = 0;
    vak::detail::EntryBlock m_entries;

private:
    CCustomData& operator=(const CCustomData* other);

    vak::detail::StoredEntry Reserve(unsigned int id, unsigned int size, unsigned int kind);
    void Remove(vak::detail::StoredEntry entry);
    bool ReadRaw(const unsigned char* raw, std::size_t length);
    bool ReadChain(const unsigned char* chain, std::size_t length);
    unsigned int GetRawSize() const;
    void WriteRawHeader(unsigned char* raw) const;
    void WriteRaw(unsigned char* raw) const;
    void WriteArchiveForm(CArchive& archive) const;
    void ReadArchiveForm(CArchive& archive);
    void ReadCurrentForm(CArchive& archive);
    int WritePrefs(CFile& file, CFile* old, unsigned int key1, unsigned int key2) const;
    unsigned char* BuildImage(unsigned char*& last) const;
    template <class T>
    void SetValue(unsigned int id, T value, unsigned int kind);
    template <class T>
    int GetValue(unsigned int id, T& out, T def) const;
    template <class TEXT>
    int GetText(unsigned int id, TEXT& out, const TEXT& def) const;

    mutable unsigned char* m_image = nullptr;
    mutable unsigned int m_imageSize = 0;
};
