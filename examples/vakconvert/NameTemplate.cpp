#include "examples/vakconvert/NameTemplate.h"

#include "examples/vakconvert/Expansion.h"
#include "files/FilePath.h"
#include "files/IoPlugins.h"

#include <algorithm>

namespace {

/// A path has 260 units at most; the extension and a number need some.
constexpr int kLongestStem = 200;

bool IsDigit(wchar_t unit)
{
    return unit >= L'0' && unit <= L'9';
}

/// The units of a device's name that the stem begins with, whatever follows its dot ("lpt1.old"); 0 for none.
int DeviceLength(const CString& stem)
{
    const int dot = stem.Find(L'.');
    CString name = dot < 0 ? stem : stem.Left(dot);
    name.MakeLower().TrimRight(L' ');
    const bool isPort = (name.Left(3) == L"com" || name.Left(3) == L"lpt") && name.GetLength() == 4;
    bool isDevice = isPort && IsDigit(name[3]);
    for (const wchar_t* device : {L"con", L"prn", L"aux", L"nul"})
        isDevice = isDevice || name == device;
    return isDevice ? name.GetLength() : 0;
}

CString AsFileName(CString text)
{
    for (int at = 0; at < text.GetLength(); ++at) {
        if (text[at] < L' ' || CString(L"\\/:*?\"<>|").Find(text[at]) >= 0)
            text.SetAt(at, L'-');
    }
    text = text.Left(kLongestStem);
    // Half of a pair is no character.
    if (!text.IsEmpty() && (text[text.GetLength() - 1] & 0xFC00) == 0xD800)
        text.Delete(text.GetLength() - 1);
    text.Trim(L' ');
    text.TrimRight(L". ");
    if (const int length = DeviceLength(text))
        text.Insert(length, L'_');
    return text;
}

bool IsOpen(wchar_t unit)
{
    return unit == kSomeDigits || unit == kSomeText;
}

/// Whether the name has what a guess begins and ends with, up to the first and from the last open place.
bool EndsAgree(const CString& guess, const CString& name)
{
    const int shorter = std::min(guess.GetLength(), name.GetLength());
    for (int at = 0; at < shorter && !IsOpen(guess[at]); ++at) {
        if (guess[at] != name[at])
            return false;
    }
    for (int at = 1; at <= shorter && !IsOpen(guess[guess.GetLength() - at]); ++at) {
        if (guess[guess.GetLength() - at] != name[name.GetLength() - at])
            return false;
    }
    return true;
}

} // namespace

NameTemplate::NameTemplate(const CString& text, CTime date) : m_text(text)
{
    m_facts.date = date;
    RegisterNameTags(m_tags, m_facts);
}

CString NameTemplate::Stem(const Source& source, const Target& target, const Content& content)
{
    m_facts.content = &content;
    m_facts.index = ++m_made;
    CString stem = Expand(source, target);
    m_facts.content = nullptr;
    return stem;
}

CString NameTemplate::Guess(const Source& source, const Target& target)
{
    m_facts.content = nullptr;
    return Expand(source, target);
}

CString NameTemplate::Expand(const Source& source, const Target& target)
{
    m_facts.path = source.path;
    m_facts.kind = target.extension.Mid(1);
    m_facts.isMesh = (target.family & kIoPlugin3D) != 0;
    const CString stem = AsFileName(ExpandText(m_tags, m_text));
    return stem.IsEmpty() ? fileStripPath(source.path, 1) : stem;
}

bool NameMatches(const CString& guess, const CString& name)
{
    // Of a folder's files, each is compared with the guesses of all others: most differ here.
    if (!EndsAgree(guess, name))
        return false;
    const auto length = static_cast<std::size_t>(name.GetLength());
    // The beginnings of the name, by their lengths, that the guess up to `at` could have become.
    std::vector<char> reached(length + 1);
    reached[0] = 1;
    for (int at = 0; at < guess.GetLength(); ++at) {
        std::vector<char> next(length + 1);
        for (std::size_t i = 0; i <= length; ++i) {
            const wchar_t unit = i > 0 ? name[static_cast<int>(i) - 1] : L'\0';
            if (guess[at] == kSomeText)
                next[i] = reached[i] || (i > 0 && next[i - 1]);
            else if (guess[at] == kSomeDigits)
                next[i] = i > 0 && IsDigit(unit) && (reached[i - 1] || next[i - 1]);
            else
                next[i] = i > 0 && unit == guess[at] && reached[i - 1];
        }
        if (std::find(next.begin(), next.end(), 1) == next.end())
            return false;
        reached.swap(next);
    }
    return reached[length] != 0;
}

bool IsOpenGuess(const CString& guess)
{
    return guess.Find(kSomeDigits) >= 0 || guess.Find(kSomeText) >= 0;
}
