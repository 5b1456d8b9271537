#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// One body serves fuzzing and replay: a target's source file registers its function once at start-up, and
/// the program it is linked into decides where the inputs come from.
namespace vak::fuzz {

using Run = void (*)(const std::uint8_t* data, std::size_t size);

/// A registered target; `name` is also the name of its folder below fuzz/corpus. Targets form a list that
/// lives as long as the program.
struct Target
{
    Target(const char* targetName, Run body) : name(targetName), run(body), next(first) { first = this; }

    const char* name;
    Run run;
    Target* next;

    static inline Target* first = nullptr;
};

/// Ends the run as a finding when `holds` is false.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace vak::fuzz
