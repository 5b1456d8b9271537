#pragma once

#include "framework/base/Array.h"
#include "framework/base/String.h"
#include "tags/TagData.h"

#include <memory>

class CCustomData;
class CStringArray;
class CTime;

/// The value that a tag stands for: data of one of the kinds of _TAGDATA_INFO.
///
/// A value owns its data. Texts, arrays, stores and dates lie in buffers that are made when they are first
/// needed and outlive a change of kind, so that one value can take the data of many tags. References and
/// pointers that getters give live until the value is next changed. One thread at a time.
///
/// Setters store and set the kind. Getters return what their place holds, whatever the kind: 0, or something
/// empty, where nothing was ever stored. A mismatch of kinds throws nothing and changes nothing; memory that
/// runs out throws CMemoryException.
///
/// The order of the members and of the virtual operations is part of the interface.
class VAK_API CTagValue
{
public:
    using UIntArray = CArray<unsigned int>;
    using FloatArray = CArray<float>;

    /// Makes an empty value: kind 0.
    CTagValue();
    /// Copies the kind and everything that is stored.
    CTagValue(const CTagValue& other);
    CTagValue& operator=(const CTagValue& other);
    virtual ~CTagValue();

    /// @name Queries
    /// @{
    _TAGDATA_INFO GetDataType() const { return m_kind; }
    /// Returns 1 when the kind is 0.
    int IsEmpty() const { return m_kind == TAGDATA_NONE ? 1 : 0; }

    const CString& GetText() const;
    /// Shares its place with the text.
    const CString& GetFilename() const;
    /// These five share one place of 64 bits; the 32-bit getters return its low half.
    unsigned int GetUInt() const;
    int GetInt() const;
    /// Returns the int that was stored; non-zero also for a number whose low half alone is 0.
    int GetBool() const;
    unsigned int GetColor() const;
    ULONGLONG GetFileSize() const { return m_integer; }
    /// These four share one place.
    float GetFloat() const { return m_float; }
    float GetDuration() const { return m_float; }   ///< seconds
    float GetLength() const { return m_float; }     ///< millimetres
    float GetResolution() const { return m_float; } ///< dots per inch
    CTime GetDate() const;
    const CStringArray& GetStringArray() const;
    const UIntArray& GetUIntArray() const;
    const FloatArray& GetFloatArray() const;
    /// Makes the store if there is none yet.
    const CCustomData& GetCustomData() const;
    /// Hands out the block of bytes and its size; null and 0 when there is none.
    void GetCustomInfo(const void*& block, unsigned int& size) const;
    const void* GetCustomPtr() const;
    unsigned int GetCustomSize() const;
    /// @}

    /// @name Setters
    /// Arguments may be parts of this value. The Add... ones append to a value of that storage class and
    /// begin anew with any other.
    /// @{
    void SetText(const CString& text);
    void SetText(LPCWSTR text);
    void AddText(const CString& text);
    void AddText(LPCWSTR text);
    void SetFilename(const CString& path);
    void SetFilename(LPCWSTR path);
    void SetUInt(unsigned int value);
    void SetInt(int value);
    void SetBool(int value);
    void SetColor(unsigned int color);
    void SetFileSize(unsigned int bytes);
    void SetFloat(float value);
    void SetDuration(float seconds);
    void SetLength(float millimetres);
    void SetResolution(float dotsPerInch);
    void SetDate(const CTime& date);
    void SetStringArray(const CStringArray& texts);
    void SetUIntArray(const UIntArray& numbers);
    void AddUInt(unsigned int number);
    /// Appends to the unsigned-integer array.
    void AddInt(int number);
    void SetFloatArray(const FloatArray& numbers);
    void AddFloat(float number);
    void SetCustomData(const CCustomData& data);
    /// Copies a block of bytes, of which it then is the only one that the value's store holds; a null block
    /// has size 0.
    void SetCustomInfo(const void* block, unsigned int size);
    /// @}

    /// Makes the value empty, with kind 0 and empty arrays.
    void Init();
    /// Sets a kind that lives in a buffer and empties the buffer, except that a date stays as it was. Any
    /// other kind, the numbers included, leaves the value with kind 0: numbers are set by their setters.
    void InitType(_TAGDATA_INFO kind);

    /// @name Property stores
    /// docs/tags.md lists what each kind is stored as.
    /// @{
    /// Reads the item `id` as a value of `kind` and returns non-zero, or leaves the value empty and returns
    /// 0: for an item that is not there, or is damaged. An item of another kind reads as the store's getters
    /// read it: one that is no text as an empty text. A date that does not exist fails too and leaves the
    /// current time in the date's place.
    int GetValueFromData(const CCustomData& data, unsigned int id, _TAGDATA_INFO kind);
    /// Writes the value as the item `id` and returns non-zero; an empty array removes the item. Returns 0,
    /// and leaves the store alone, for an empty value and for a date that has no local time.
    int SetValueToData(CCustomData& data, unsigned int id) const;
    /// @}

    /// Applies the parameters ("(lastwritedate(d))", in lower case, without blanks) from the outermost in, up
    /// to the first that is unknown, then converts to `wanted`, unless that is 0. Returns 1, or 0 when a
    /// parameter fails (the kind is then 0) or the kind that results does not convert to `wanted` (the value
    /// then stays as the parameters left it). docs/tags.md lists parameters and conversions.
    ///
    /// Takes time in proportion to the length of `parameters`, however deep they are nested.
    int HandleParametersAndConvertToType(_TAGDATA_INFO wanted, const CString& parameters);

protected:
    /// Applies one parameter and returns the kind that results, 0 when it fails; the caller stores it as the
    /// value's kind. A parameter that is unknown, or does not apply to the kind, changes nothing.
    virtual _TAGDATA_INFO HandleParameters(const CString& parameter);

    _TAGDATA_INFO m_kind = TAGDATA_NONE;
    mutable std::unique_ptr<CCustomData> m_customData;
    std::unique_ptr<CStringArray> m_stringArray;
    std::unique_ptr<UIntArray> m_uintArray;
    std::unique_ptr<FloatArray> m_floatArray;
    std::unique_ptr<CString> m_text;
    std::unique_ptr<CTime> m_date;
    ULONGLONG m_integer = 0;
    float m_float = 0;

private:
    void ApplyParameters(const CString& parameters);
    bool ConvertTo(_TAGDATA_INFO wanted);
    bool ConvertText(_TAGDATA_INFO wanted);
    bool ConvertToText();
    bool ConvertUInt(_TAGDATA_INFO wanted);
    bool ConvertFloat(_TAGDATA_INFO wanted);
    bool ReadItem(const CCustomData& data, unsigned int id, _TAGDATA_INFO kind);
    bool ReadBlock(const CCustomData& data, unsigned int id);
    bool ReadStore(const CCustomData& data, unsigned int id);
    int WriteBlock(CCustomData& data, unsigned int id) const;
    int WriteStore(CCustomData& data, unsigned int id) const;
    _TAGDATA_INFO HandleFileParameter(const CString& parameter);
    _TAGDATA_INFO TakeFileSize(const CString& path);
    _TAGDATA_INFO TakeFileDate(const CString& path, int (*read)(const CString& path, CTime& date));
};
