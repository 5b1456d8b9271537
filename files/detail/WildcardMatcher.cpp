#include "files/detail/WildcardMatcher.h"

#include "framework/base/SystemText.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace vak::detail {

namespace {

constexpr wchar_t kAny = L'*';
constexpr wchar_t kOne = L'?';

/// Upper case of every unit as the platform folds it: one load instead of a call for every comparison.
const wchar_t* UpperTable()
{
    static const auto table = [] {
        std::array<wchar_t, 0x10000> units;
        std::iota(units.begin(), units.end(), wchar_t{0});
        system::MakeUpper(units.data(), units.size());
        return units;
    }();
    return table.data();
}

constexpr wchar_t UpperLatin1(wchar_t unit)
{
    const bool lower = (unit >= L'a' && unit <= L'z') || (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7);
    return lower ? static_cast<wchar_t>(unit - 0x20) : unit;
}

struct Exact
{
    bool Head(wchar_t, wchar_t) const { return false; }
    bool Rest(wchar_t, wchar_t) const { return false; }
};

/// Before the first star only the first 256 characters fold, behind it all that the platform folds. Whatever
/// the former holds equal, the latter does too.
struct Folded
{
    bool Head(wchar_t a, wchar_t b) const { return UpperLatin1(a) == UpperLatin1(b); }
    bool Rest(wchar_t a, wchar_t b) const { return upper[a] == upper[b]; }

    const wchar_t* upper;
};

/// Matches one name with one pattern; `Fold` says which different units count as equal.
template <class Fold>
class Matcher
{
public:
    Matcher(Units name, Units pattern, Fold fold) : m_name(name), m_pattern(pattern), m_fold(fold) {}

    bool Matches() const
    {
        // What stands behind the last star has only one place, the end of the name, and most names that do
        // not match differ there at once. The wider folding rejects no pattern without a star wrongly.
        std::size_t nameEnd = m_name.size();
        std::size_t patternEnd = m_pattern.size();
        for (; patternEnd > 0 && m_pattern[patternEnd - 1] != kAny; --nameEnd, --patternEnd) {
            if (nameEnd == 0 || !RestEqual(m_name[nameEnd - 1], m_pattern[patternEnd - 1]))
                return false;
        }
        const bool hasStar = patternEnd > 0;
        if (!hasStar)
            return nameEnd == 0 && HeadLength(m_name) == m_pattern.size();
        const std::size_t head = HeadLength(m_name.first(nameEnd));
        if (m_pattern[head] != kAny)
            return false;
        return Between(m_name.subspan(head, nameEnd - head), m_pattern.subspan(head, patternEnd - head));
    }

private:
    bool HeadEqual(wchar_t unit, wchar_t wanted) const
    {
        return unit == wanted || wanted == kOne || m_fold.Head(unit, wanted);
    }
    bool RestEqual(wchar_t unit, wchar_t wanted) const
    {
        return unit == wanted || wanted == kOne || m_fold.Rest(unit, wanted);
    }

    /// How far name and pattern go together, up to the first star.
    std::size_t HeadLength(Units name) const
    {
        const std::size_t limit = std::min(name.size(), m_pattern.size());
        std::size_t length = 0;
        while (length < limit && m_pattern[length] != kAny && HeadEqual(name[length], m_pattern[length]))
            ++length;
        return length;
    }

    /// Matches a pattern that begins and ends in a star. Each piece between stars takes its first place: a
    /// later one leaves less for the pieces behind it.
    bool Between(Units name, Units pattern) const
    {
        while (true) {
            while (!pattern.empty() && pattern.front() == kAny)
                pattern = pattern.subspan(1);
            if (pattern.empty())
                return true;
            const auto star = std::find(pattern.begin(), pattern.end(), kAny);
            const Units piece = pattern.first(static_cast<std::size_t>(star - pattern.begin()));
            if (!SkipThrough(name, piece))
                return false;
            pattern = pattern.subspan(piece.size());
        }
    }

    /// Cuts `name` behind the first place of `piece`; false when there is none.
    bool SkipThrough(Units& name, Units piece) const
    {
        for (; name.size() >= piece.size(); name = name.subspan(1)) {
            if (!BeginsWith(name, piece))
                continue;
            name = name.subspan(piece.size());
            return true;
        }
        return false;
    }

    bool BeginsWith(Units name, Units piece) const
    {
        for (std::size_t i = 0; i < piece.size(); ++i) {
            if (!RestEqual(name[i], piece[i]))
                return false;
        }
        return true;
    }

    Units m_name;
    Units m_pattern;
    Fold m_fold;
};

} // namespace

bool MatchWildcards(Units name, Units pattern, bool caseSensitive)
{
    if (caseSensitive)
        return Matcher(name, pattern, Exact{}).Matches();
    return Matcher(name, pattern, Folded{UpperTable()}).Matches();
}

} // namespace vak::detail
