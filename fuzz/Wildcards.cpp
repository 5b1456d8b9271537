#include "files/Wildcards.h"
#include "fuzz/support/Target.h"
#include "tests/support/WildcardModel.h"

namespace {

/// The first byte: bit 0 for comparing exactly. Then UTF-16 units, little-endian: the pattern, a zero, the
/// name.
void Run(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return;
    const bool caseSensitive = (data[0] & 1) != 0;
    CString pattern;
    CString name;
    CString* part = &pattern;
    for (std::size_t i = 1; i + 1 < size; i += 2) {
        const auto unit = static_cast<wchar_t>(data[i] | data[i + 1] << 8);
        if (unit == 0 && part == &pattern)
            part = &name;
        else
            part->AppendChar(unit);
    }
    const bool matches = fileMatchWilcards(name, pattern, caseSensitive ? 1 : 0) != 0;
    vak::fuzz::Require(matches == vak::test::MatchesByDefinition(name, pattern, caseSensitive));
}

const vak::fuzz::Target target("Wildcards", Run);

} // namespace
