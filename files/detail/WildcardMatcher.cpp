#include "files/detail/WildcardMatcher.h"

#include "framework/base/SystemText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>

namespace vak::detail {

namespace {

constexpr wchar_t kAny = L'*';
constexpr wchar_t kOne = L'?';
constexpr wchar_t kLastAscii = 0x7F;
constexpr unsigned int kCaseBit = 0x20;

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
    static constexpr bool kFolds = false;
    bool Head(wchar_t, wchar_t) const { return false; }
    bool Rest(wchar_t, wchar_t) const { return false; }
};

/// Before the first star only the first 256 characters fold, behind it all that the platform folds. Whatever
/// the former holds equal, the latter does too.
struct Folded
{
    static constexpr bool kFolds = true;
    bool Head(wchar_t a, wchar_t b) const { return UpperLatin1(a) == UpperLatin1(b); }
    bool Rest(wchar_t a, wchar_t b) const { return upper[a] == upper[b]; }

    const wchar_t* upper;
};

/// Tells quickly when a piece of a pattern stands nowhere in a name, by the piece's first two units and many
/// places at once. Units beyond ASCII and the bit that folding changes are left to a closer look.
class PieceSieve
{
public:
    PieceSieve(Units piece, bool folds)
        : m_first(piece.front(), folds), m_second(piece.size() > 1 ? piece[1] : piece.front(), folds),
          m_isPair(piece.size() > 1)
    {
    }

    /// False when none of the first `places` places of the name may hold the piece.
    bool MayStand(const wchar_t* name, std::size_t places) const
    {
        return m_isPair ? MayStandAs<true>(name, places) : MayStandAs<false>(name, places);
    }

private:
    struct Unit
    {
        Unit(wchar_t wanted, bool folds)
            : value(wanted), mask(wanted == kOne || (folds && wanted > kLastAscii) ? 0 : 0xFFFF & ~kCaseBit)
        {
        }
        std::uint16_t value;
        std::uint16_t mask;
    };

    template <bool Pair>
    bool MayStandAs(const wchar_t* name, std::size_t places) const
    {
        // Two blocks that overlap cover every length without a loop that ends at random. In a short name a
        // single unit is found as fast without them.
        if (places < 8 || (places <= 32 && !Pair))
            return true;
        if (places <= 16)
            return (Sieve<8, Pair>(name) | Sieve<8, Pair>(name + places - 8)) != 0;
        if (places <= 32)
            return (Sieve<16, Pair>(name) | Sieve<16, Pair>(name + places - 16)) != 0;
        for (std::size_t place = 0; place < places; place += 32) {
            if (Sieve<32, Pair>(name + std::min(place, places - 32)) != 0)
                return true;
        }
        return false;
    }

    /// Not 0 when one of `Count` places may hold the first two units. A loop of constant length without
    /// branches, which compilers turn into vector instructions.
    template <std::size_t Count, bool Pair>
    unsigned int Sieve(const wchar_t* name) const
    {
        std::uint16_t equal = 0;
        std::uint16_t all = 0;
        for (std::size_t i = 0; i < Count; ++i) {
            const wchar_t second = name[i + (Pair ? 1 : 0)];
            const int firstDiffers = (name[i] ^ m_first.value) & m_first.mask;
            const int secondDiffers = Pair ? (second ^ m_second.value) & m_second.mask : 0;
            equal |= static_cast<std::uint16_t>((firstDiffers | secondDiffers) - 1);
            all |= static_cast<std::uint16_t>(name[i] | second);
        }
        return (equal & 0x8000u) | (all & 0xFF80u);
    }

    Unit m_first;
    Unit m_second;
    bool m_isPair;
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
        if (name.size() < piece.size())
            return false;
        const std::size_t places = name.size() - piece.size() + 1;
        std::size_t place = 0;
        if (!BeginsWith(name, piece)) {
            if (!PieceSieve(piece, Fold::kFolds).MayStand(name.data(), places))
                return false;
            do
                ++place;
            while (place < places && !BeginsWith(name.subspan(place), piece));
        }
        if (place == places)
            return false;
        name = name.subspan(place + piece.size());
        return true;
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
