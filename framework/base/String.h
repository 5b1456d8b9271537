#pragma once

/// The string of the whole interface: CString (UTF-16) and CStringA (bytes in the ANSI code page).
///
/// A string owns its text; copies are independent. The pointer that a string converts to ends in a zero and
/// lives until the string is changed or destroyed. Strings may hold zeros: what knows a length (copies,
/// comparison operators, Left, Mid, Replace ...) keeps them, what takes a pointer without a length stops at
/// the first. Lengths and positions count units of the string's width: UTF-16 units or bytes. Text of the
/// other width is converted through the ANSI code page. A null pointer is an empty text. An allocation that
/// fails throws CMemoryException, an argument out of its range CInvalidArgException (both by pointer). To
/// hand a string to Format's `...`, cast it to LPCWSTR (LPCSTR) or call GetString.

#include "framework/base/Platform.h"
#include "framework/base/detail/Allocator.h"
#include "framework/base/detail/CharTraits.h"

#include <compare>
#include <cstdarg>
#include <string>
#include <type_traits>

/// Exported member by member: an instantiation that is exported as a whole leaves out the inline ones, and
/// they are worth inlining. Instantiated for wchar_t and char in String.cpp.
template <class C>
class CStringT
{
public:
    using XCHAR = C;
    using PXSTR = C*;
    using PCXSTR = const C*;
    using YCHAR = std::conditional_t<std::is_same_v<C, wchar_t>, char, wchar_t>;
    using PCYSTR = const YCHAR*;

    CStringT() noexcept = default;
    CStringT(const CStringT&) = default;
    CStringT(CStringT&& from) noexcept : m_text(std::move(from.m_text)) { from.m_text.clear(); }
    CStringT(PCXSTR text) { SetString(text); }
    CStringT(PCYSTR text) { AppendOther(text, Length(text)); }
    CStringT(const CStringT<YCHAR>& text) { AppendOther(text.GetString(), text.GetLength()); }
    /// The first `length` units at `text`, zeros included.
    CStringT(PCXSTR text, int length) { SetString(text, length); }
    VAK_API CStringT(PCYSTR text, int length);
    /// `repeat` times `ch`; empty when `repeat` is not positive.
    explicit CStringT(XCHAR ch, int repeat = 1)
        : m_text(repeat > 0 ? static_cast<std::size_t>(repeat) : 0, ch)
    {
    }
    VAK_API explicit CStringT(YCHAR ch, int repeat = 1);
    ~CStringT() = default;

    CStringT& operator=(const CStringT&) = default;
    CStringT& operator=(CStringT&& from) noexcept
    {
        m_text.swap(from.m_text);
        if (this != &from)
            from.m_text.clear();
        return *this;
    }
    CStringT& operator=(PCXSTR text)
    {
        SetString(text);
        return *this;
    }
    CStringT& operator=(PCYSTR text) { return *this = CStringT(text); }
    CStringT& operator=(const CStringT<YCHAR>& text) { return *this = CStringT(text); }
    CStringT& operator=(XCHAR ch)
    {
        m_text.assign(1, ch);
        return *this;
    }
    CStringT& operator=(YCHAR ch) { return *this = CStringT(ch); }

    int GetLength() const noexcept { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const noexcept { return m_text.empty(); }
    /// The unit at `index`; the zero behind the last one may be asked for.
    XCHAR GetAt(int index) const { return (*this)[index]; }
    XCHAR operator[](int index) const
    {
        if (static_cast<std::size_t>(index) > m_text.size())
            vak::detail::ThrowInvalidArgument();
        return m_text.data()[index];
    }
    PCXSTR GetString() const noexcept { return m_text.c_str(); }
    operator PCXSTR() const noexcept { return m_text.c_str(); }

    /// Below 0, 0 or above 0 by the values of the units, up to the first zero of each.
    VAK_API int Compare(PCXSTR other) const;
    /// The same with both sides folded unit by unit.
    VAK_API int CompareNoCase(PCXSTR other) const;

    /// First position at or behind `start`, -1 when there is none or `start` is outside. An empty text is
    /// found at `start`.
    VAK_API int Find(PCXSTR wanted, int start = 0) const;
    VAK_API int Find(XCHAR wanted, int start = 0) const;
    /// Last position of `wanted`, or -1.
    VAK_API int ReverseFind(XCHAR wanted) const;
    /// First position of any unit of `set`, or -1.
    VAK_API int FindOneOf(PCXSTR set) const;

    /// Parts of the string; positions and counts are clamped to it, a negative one counts as 0.
    CStringT Left(int count) const { return Mid(0, count); }
    VAK_API CStringT Right(int count) const;
    CStringT Mid(int first) const { return Mid(first, GetLength()); }
    VAK_API CStringT Mid(int first, int count) const;
    /// The longest beginning made only of, or without, the units of `set`.
    VAK_API CStringT SpanIncluding(PCXSTR set) const;
    VAK_API CStringT SpanExcluding(PCXSTR set) const;
    /// The next non-empty token at or behind `start`, which moves behind the token's delimiter. Without a
    /// further token the result is empty and `start` -1. Without delimiters the token is all that is left.
    VAK_API CStringT Tokenize(PCXSTR delimiters, int& start) const;

    void Empty() noexcept { m_text.clear(); }
    /// Replaces the unit at `index`, which must lie inside.
    VAK_API void SetAt(int index, XCHAR ch);
    VAK_API void SetString(PCXSTR text);
    /// `text` may point into this string.
    VAK_API void SetString(PCXSTR text, int length);
    void Append(PCXSTR text) { Append(text, static_cast<int>(Length(text))); }
    VAK_API void Append(PCXSTR text, int length);
    void Append(const CStringT& text) { m_text.append(text.m_text); }
    void AppendChar(XCHAR ch) { m_text.push_back(ch); }
    CStringT& operator+=(const CStringT& text)
    {
        m_text.append(text.m_text);
        return *this;
    }
    CStringT& operator+=(PCXSTR text)
    {
        Append(text);
        return *this;
    }
    CStringT& operator+=(PCYSTR text)
    {
        AppendOther(text, Length(text));
        return *this;
    }
    CStringT& operator+=(const CStringT<YCHAR>& text) { return *this += CStringT(text); }
    CStringT& operator+=(XCHAR ch)
    {
        m_text.push_back(ch);
        return *this;
    }
    CStringT& operator+=(YCHAR ch) { return *this += CStringT(ch); }

    /// Makes room for `length` units without changing the text.
    VAK_API void Preallocate(int length);
    /// A buffer for at least `length` units and a zero, beginning with the text. No other member may be
    /// called before ReleaseBuffer.
    VAK_API PXSTR GetBuffer(int length = 0);
    /// A buffer of exactly `length` units; the text is cut or lengthened to it at once.
    VAK_API PXSTR GetBufferSetLength(int length);
    /// Ends the use of a buffer: the text is its first `length` units; -1: what stands before its first zero.
    VAK_API void ReleaseBuffer(int length = -1);

    VAK_API CStringT& MakeUpper();
    VAK_API CStringT& MakeLower();
    VAK_API CStringT& MakeReverse();
    /// Remove white space, one unit, or the units of a set, from the ends.
    CStringT& Trim() { return TrimRight().TrimLeft(); }
    CStringT& Trim(XCHAR ch) { return TrimRight(ch).TrimLeft(ch); }
    CStringT& Trim(PCXSTR set) { return TrimRight(set).TrimLeft(set); }
    VAK_API CStringT& TrimLeft();
    VAK_API CStringT& TrimLeft(XCHAR ch);
    VAK_API CStringT& TrimLeft(PCXSTR set);
    VAK_API CStringT& TrimRight();
    VAK_API CStringT& TrimRight(XCHAR ch);
    VAK_API CStringT& TrimRight(PCXSTR set);

    /// Replaces every occurrence, left to right without overlap, and returns how many there were. An empty
    /// `from` never occurs.
    VAK_API int Replace(XCHAR from, XCHAR to);
    VAK_API int Replace(PCXSTR from, PCXSTR to);
    /// Removes every `ch` and returns how many there were.
    VAK_API int Remove(XCHAR ch);
    /// Inserts before `index`, clamped to the string, and returns the new length.
    VAK_API int Insert(int index, XCHAR ch);
    VAK_API int Insert(int index, PCXSTR text);
    /// Removes `count` units from `index` on, clamped to the string, and returns the new length.
    VAK_API int Delete(int index, int count = 1);

    /// printf's formatting with the platform's meaning, alike on every build and in every locale: `%s` and
    /// `%c` take text of the string's own width, `%S` and `%C` of the other, `%hs` narrow, `%ls` wide; sizes
    /// h, l, ll, I32, I64, I, w, z, j, t. A null text prints "(null)"; `%n` throws CInvalidArgException. The
    /// arguments may point into this string.
    VAK_API void Format(PCXSTR format, ...);
    /// The format is the text `id` of the string table; CInvalidArgException when there is none.
    VAK_API void Format(UINT id, ...);
    VAK_API void AppendFormat(PCXSTR format, ...);
    VAK_API void AppendFormat(UINT id, ...);
    VAK_API void FormatV(PCXSTR format, std::va_list arguments);
    VAK_API void AppendFormatV(PCXSTR format, std::va_list arguments);

    /// Reads the text `id` of the string table; false, and the string as it was, when there is none.
    VAK_API bool LoadString(UINT id);

    friend bool operator==(const CStringT& a, const CStringT& b) noexcept
    {
        return a.IsSame(b.m_text.data(), b.m_text.size());
    }
    friend bool operator==(const CStringT& a, PCXSTR b) noexcept { return a.IsSame(b, Length(b)); }
    friend bool operator==(const CStringT& a, PCYSTR b) { return a == CStringT(b); }
    friend std::strong_ordering operator<=>(const CStringT& a, const CStringT& b) noexcept
    {
        return a.CompareWhole(b.m_text.data(), b.m_text.size()) <=> 0;
    }
    friend std::strong_ordering operator<=>(const CStringT& a, PCXSTR b) noexcept
    {
        return a.CompareWhole(b, Length(b)) <=> 0;
    }
    friend std::strong_ordering operator<=>(const CStringT& a, PCYSTR b) { return a <=> CStringT(b); }

    friend CStringT operator+(CStringT a, const CStringT& b) { return std::move(a += b); }
    friend CStringT operator+(CStringT a, PCXSTR b) { return std::move(a += b); }
    friend CStringT operator+(CStringT a, PCYSTR b) { return std::move(a += b); }
    friend CStringT operator+(CStringT a, XCHAR b) { return std::move(a += b); }
    friend CStringT operator+(CStringT a, YCHAR b) { return std::move(a += b); }
    friend CStringT operator+(PCXSTR a, const CStringT& b) { return std::move(CStringT(a) += b); }
    friend CStringT operator+(PCYSTR a, const CStringT& b) { return std::move(CStringT(a) += b); }
    friend CStringT operator+(XCHAR a, const CStringT& b) { return std::move(CStringT(a) += b); }
    friend CStringT operator+(YCHAR a, const CStringT& b) { return std::move(CStringT(a) += b); }

private:
    using Traits = vak::detail::CharTraits<C>;
    using Text = std::basic_string<C, Traits, vak::detail::Allocator<C, INT_MAX>>;

    template <class Any>
    static std::size_t Length(const Any* text) noexcept
    {
        return text == nullptr ? 0 : vak::detail::CharTraits<Any>::length(text);
    }
    bool IsSame(PCXSTR other, std::size_t length) const noexcept
    {
        return m_text.size() == length &&
               (length == 0 || std::memcmp(m_text.data(), other, length * sizeof(C)) == 0);
    }
    VAK_API int CompareWhole(PCXSTR other, std::size_t length) const noexcept;
    VAK_API void AppendOther(PCYSTR text, std::size_t length);
    CStringT& Keep(std::size_t first, std::size_t end);

    Text m_text;
};

using CStringW = CStringT<wchar_t>;
using CStringA = CStringT<char>;
using CString = CStringW;
