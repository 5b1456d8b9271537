#include "framework/base/String.h"

#include "framework/base/Exception.h"
#include "framework/base/StringTable.h"
#include "framework/base/SystemText.h"
#include "framework/base/detail/Format.h"

#include <algorithm>
#include <string_view>

namespace vak::detail {

void ThrowMemory()
{
    AfxThrowMemoryException();
}

void ThrowInvalidArgument()
{
    AfxThrowInvalidArgException();
}

namespace {

template <class C>
using View = std::basic_string_view<C, CharTraits<C>>;

template <class C>
View<C> ViewOf(const C* text)
{
    return text == nullptr ? View<C>() : View<C>(text);
}

template <class C>
int Position(std::size_t found)
{
    return found == View<C>::npos ? -1 : static_cast<int>(found);
}

/// The white space of the platform's character types.
bool IsBlank(wchar_t ch)
{
    static constexpr wchar_t kRare[] = L"\x0085\x00A0\x1680\x2028\x2029\x202F\x205F\x3000";
    return ch == L' ' || (ch >= L'\t' && ch <= L'\r') || (ch >= 0x2000 && ch <= 0x200A) ||
           (ch > 0x7F && CharTraits<wchar_t>::find(kRare, std::size(kRare) - 1, ch) != nullptr);
}

bool IsBlank(char ch)
{
    return ch == ' ' || (ch >= '\t' && ch <= '\r');
}

CStringW Convert(const char* text, std::size_t length)
{
    CStringW out;
    system::ToWide(CP_ACP, text, length, out);
    return out;
}

CStringA Convert(const wchar_t* text, std::size_t length)
{
    CStringA out;
    system::ToNarrow(CP_ACP, text, length, out);
    return out;
}

/// Folds in place; narrow text by way of the ANSI code page.
void Fold(CStringW& text, void (*fold)(wchar_t*, std::size_t))
{
    const int length = text.GetLength();
    fold(text.GetBufferSetLength(length), static_cast<std::size_t>(length));
}

void Fold(CStringA& text, void (*fold)(wchar_t*, std::size_t))
{
    CStringW wide(text);
    Fold(wide, fold);
    text = wide;
}

int CompareFolded(View<wchar_t> a, View<wchar_t> b)
{
    return system::CompareOrdinalIgnoreCase(a.data(), a.size(), b.data(), b.size());
}

int CompareFolded(View<char> a, View<char> b)
{
    const CStringW wideA = Convert(a.data(), a.size());
    const CStringW wideB = Convert(b.data(), b.size());
    return CompareFolded(View<wchar_t>(wideA), View<wchar_t>(wideB));
}

bool LoadFromTable(CStringW& out, UINT id)
{
    return LoadText(out, id);
}

bool LoadFromTable(CStringA& out, UINT id)
{
    CStringW text;
    if (!LoadText(text, id))
        return false;
    out = text;
    return true;
}

} // namespace
} // namespace vak::detail

namespace detail = vak::detail;

template <class C>
CStringT<C>::CStringT(PCYSTR text, int length)
{
    if (length < 0 || (text == nullptr && length != 0))
        detail::ThrowInvalidArgument();
    AppendOther(text, static_cast<std::size_t>(length));
}

template <class C>
CStringT<C>::CStringT(YCHAR ch, int repeat)
{
    const CStringT one(&ch, 1);
    for (int i = 0; i < repeat; ++i)
        m_text.append(one.m_text);
}

template <class C>
int CStringT<C>::Compare(PCXSTR other) const
{
    return detail::View<C>(GetString()).compare(detail::ViewOf(other));
}

template <class C>
int CStringT<C>::CompareNoCase(PCXSTR other) const
{
    return detail::CompareFolded(detail::View<C>(GetString()), detail::ViewOf(other));
}

template <class C>
int CStringT<C>::Find(PCXSTR wanted, int start) const
{
    if (wanted == nullptr || start < 0 || start > GetLength())
        return -1;
    return detail::Position<C>(detail::View<C>(m_text).find(wanted, static_cast<std::size_t>(start)));
}

template <class C>
int CStringT<C>::Find(XCHAR wanted, int start) const
{
    if (start < 0 || start >= GetLength())
        return -1;
    return detail::Position<C>(m_text.find(wanted, static_cast<std::size_t>(start)));
}

template <class C>
int CStringT<C>::ReverseFind(XCHAR wanted) const
{
    return detail::Position<C>(m_text.rfind(wanted));
}

template <class C>
int CStringT<C>::FindOneOf(PCXSTR set) const
{
    return detail::Position<C>(detail::View<C>(m_text).find_first_of(detail::ViewOf(set)));
}

template <class C>
CStringT<C> CStringT<C>::Right(int count) const
{
    const int kept = std::clamp(count, 0, GetLength());
    return Mid(GetLength() - kept, kept);
}

template <class C>
CStringT<C> CStringT<C>::Mid(int first, int count) const
{
    const int from = std::clamp(first, 0, GetLength());
    return CStringT(GetString() + from, std::clamp(count, 0, GetLength() - from));
}

template <class C>
CStringT<C> CStringT<C>::SpanIncluding(PCXSTR set) const
{
    const auto end = detail::View<C>(m_text).find_first_not_of(detail::ViewOf(set));
    return end == Text::npos ? *this : Left(static_cast<int>(end));
}

template <class C>
CStringT<C> CStringT<C>::SpanExcluding(PCXSTR set) const
{
    const int end = FindOneOf(set);
    return end < 0 ? *this : Left(end);
}

template <class C>
CStringT<C> CStringT<C>::Tokenize(PCXSTR delimiters, int& start) const
{
    if (start < 0)
        detail::ThrowInvalidArgument();
    const detail::View<C> text(m_text);
    const detail::View<C> set = detail::ViewOf(delimiters);
    const auto first = text.find_first_not_of(set, static_cast<std::size_t>(start));
    if (first == Text::npos) {
        start = -1;
        return CStringT();
    }
    const auto end = std::min(text.find_first_of(set, first), text.size());
    start = static_cast<int>(std::min(end + 1, text.size()));
    return CStringT(text.data() + first, static_cast<int>(end - first));
}

template <class C>
void CStringT<C>::SetAt(int index, XCHAR ch)
{
    if (index < 0 || index >= GetLength())
        detail::ThrowInvalidArgument();
    m_text[static_cast<std::size_t>(index)] = ch;
}

template <class C>
void CStringT<C>::SetString(PCXSTR text)
{
    m_text.assign(text == nullptr ? GetString() : text, Length(text));
}

template <class C>
void CStringT<C>::SetString(PCXSTR text, int length)
{
    if (length < 0 || (text == nullptr && length != 0))
        detail::ThrowInvalidArgument();
    m_text.assign(text == nullptr ? GetString() : text, static_cast<std::size_t>(length));
}

template <class C>
void CStringT<C>::Append(PCXSTR text, int length)
{
    if (length < 0 || (text == nullptr && length != 0))
        detail::ThrowInvalidArgument();
    if (length != 0)
        m_text.append(text, static_cast<std::size_t>(length));
}

template <class C>
void CStringT<C>::AppendOther(PCYSTR text, std::size_t length)
{
    if (length != 0)
        m_text.append(detail::Convert(text, length).m_text);
}

template <class C>
int CStringT<C>::CompareWhole(PCXSTR other, std::size_t length) const noexcept
{
    return detail::View<C>(m_text).compare(detail::View<C>(other, length));
}

template <class C>
void CStringT<C>::Preallocate(int length)
{
    if (length > 0)
        m_text.reserve(static_cast<std::size_t>(length));
}

template <class C>
typename CStringT<C>::PXSTR CStringT<C>::GetBuffer(int length)
{
    if (length > GetLength())
        m_text.resize(static_cast<std::size_t>(length));
    return m_text.data();
}

template <class C>
typename CStringT<C>::PXSTR CStringT<C>::GetBufferSetLength(int length)
{
    if (length < 0)
        detail::ThrowInvalidArgument();
    m_text.resize(static_cast<std::size_t>(length));
    return m_text.data();
}

template <class C>
void CStringT<C>::ReleaseBuffer(int length)
{
    if (length < -1 || length > GetLength())
        detail::ThrowInvalidArgument();
    m_text.resize(length == -1 ? Length(m_text.c_str()) : static_cast<std::size_t>(length));
}

template <class C>
CStringT<C>& CStringT<C>::MakeUpper()
{
    detail::Fold(*this, &vak::system::MakeUpper);
    return *this;
}

template <class C>
CStringT<C>& CStringT<C>::MakeLower()
{
    detail::Fold(*this, &vak::system::MakeLower);
    return *this;
}

template <class C>
CStringT<C>& CStringT<C>::MakeReverse()
{
    std::reverse(m_text.begin(), m_text.end());
    return *this;
}

template <class C>
CStringT<C>& CStringT<C>::Keep(std::size_t first, std::size_t end)
{
    m_text.erase(std::min(end, m_text.size()));
    m_text.erase(0, first);
    return *this;
}

template <class C>
CStringT<C>& CStringT<C>::TrimLeft()
{
    const auto kept = std::find_if(m_text.begin(), m_text.end(), [](C ch) { return !detail::IsBlank(ch); });
    return Keep(static_cast<std::size_t>(kept - m_text.begin()), Text::npos);
}

template <class C>
CStringT<C>& CStringT<C>::TrimLeft(XCHAR ch)
{
    return Keep(m_text.find_first_not_of(ch), Text::npos);
}

template <class C>
CStringT<C>& CStringT<C>::TrimLeft(PCXSTR set)
{
    return Keep(detail::View<C>(m_text).find_first_not_of(detail::ViewOf(set)), Text::npos);
}

template <class C>
CStringT<C>& CStringT<C>::TrimRight()
{
    const auto kept = std::find_if(m_text.rbegin(), m_text.rend(), [](C ch) { return !detail::IsBlank(ch); });
    return Keep(0, static_cast<std::size_t>(m_text.rend() - kept));
}

template <class C>
CStringT<C>& CStringT<C>::TrimRight(XCHAR ch)
{
    return Keep(0, m_text.find_last_not_of(ch) + 1);
}

template <class C>
CStringT<C>& CStringT<C>::TrimRight(PCXSTR set)
{
    return Keep(0, detail::View<C>(m_text).find_last_not_of(detail::ViewOf(set)) + 1);
}

template <class C>
int CStringT<C>::Replace(XCHAR from, XCHAR to)
{
    int count = 0;
    for (C& unit : m_text) {
        if (unit == from && from != to) {
            unit = to;
            ++count;
        }
    }
    return count;
}

template <class C>
int CStringT<C>::Replace(PCXSTR from, PCXSTR to)
{
    const detail::View<C> text(m_text);
    const detail::View<C> wanted = detail::ViewOf(from);
    const detail::View<C> replacement = detail::ViewOf(to);
    auto found = wanted.empty() ? Text::npos : text.find(wanted);
    if (found == Text::npos)
        return 0;
    Text result;
    int count = 0;
    std::size_t done = 0;
    for (; found != Text::npos; found = text.find(wanted, done)) {
        result.append(text, done, found - done).append(replacement);
        done = found + wanted.size();
        ++count;
    }
    result.append(text, done, Text::npos);
    m_text = std::move(result);
    return count;
}

template <class C>
int CStringT<C>::Remove(XCHAR ch)
{
    return static_cast<int>(std::erase(m_text, ch));
}

template <class C>
int CStringT<C>::Insert(int index, XCHAR ch)
{
    m_text.insert(static_cast<std::size_t>(std::clamp(index, 0, GetLength())), 1, ch);
    return GetLength();
}

template <class C>
int CStringT<C>::Insert(int index, PCXSTR text)
{
    if (text != nullptr)
        m_text.insert(static_cast<std::size_t>(std::clamp(index, 0, GetLength())), text);
    return GetLength();
}

template <class C>
int CStringT<C>::Delete(int index, int count)
{
    const int first = std::clamp(index, 0, GetLength());
    if (count > 0)
        m_text.erase(static_cast<std::size_t>(first), static_cast<std::size_t>(count));
    return GetLength();
}

template <class C>
void CStringT<C>::Format(PCXSTR format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const vak::detail::EndArguments end(arguments);
    FormatV(format, arguments);
}

template <class C>
void CStringT<C>::Format(UINT id, ...)
{
    CStringT format;
    if (!format.LoadString(id))
        detail::ThrowInvalidArgument();
    std::va_list arguments;
    va_start(arguments, id);
    const vak::detail::EndArguments end(arguments);
    FormatV(format, arguments);
}

template <class C>
void CStringT<C>::AppendFormat(PCXSTR format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const vak::detail::EndArguments end(arguments);
    AppendFormatV(format, arguments);
}

template <class C>
void CStringT<C>::AppendFormat(UINT id, ...)
{
    CStringT format;
    if (!format.LoadString(id))
        detail::ThrowInvalidArgument();
    std::va_list arguments;
    va_start(arguments, id);
    const vak::detail::EndArguments end(arguments);
    AppendFormatV(format, arguments);
}

template <class C>
void CStringT<C>::FormatV(PCXSTR format, std::va_list arguments)
{
    // Built beside the string: the arguments may point into it.
    CStringT result;
    result.AppendFormatV(format, arguments);
    *this = std::move(result);
}

template <class C>
void CStringT<C>::AppendFormatV(PCXSTR format, std::va_list arguments)
{
    if (format == nullptr)
        detail::ThrowInvalidArgument();
    CStringT result;
    vak::detail::FormatInto(result, format, arguments);
    m_text.append(result.m_text);
}

template <class C>
bool CStringT<C>::LoadString(UINT id)
{
    return detail::LoadFromTable(*this, id);
}

template class CStringT<wchar_t>;
template class CStringT<char>;
