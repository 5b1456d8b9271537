#include "files/Wildcards.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <benchmark/benchmark.h>
#include <pcre2.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

/// Names matched against patterns, the case aside: ours, a regular expression compiled to machine code, and
/// the matcher that everybody writes.

namespace {

using Names = std::vector<CString>;

const Names& FileNames()
{
    static const Names names = [] {
        constexpr const char* kSubjects[] = {"chair", "Table",  "lamp",  "scene",       "WALL",
                                             "floor", "engine", "wheel", "Body_lowres", "texture"};
        constexpr const char* kDetails[] = {"", "_diffuse", "_Normal", "-copy", " (final)", "_v2", ".lod1"};
        constexpr const char* kEnds[] = {".obj", ".3ds", ".MAX", ".tga", ".jpg", ".jpeg",
                                         ".png", ".ma",  ".ply", ".STL", ".psd", ".bak"};
        std::mt19937 random(1);
        Names made;
        for (int i = 0; i < 1000000; ++i) {
            char text[80];
            std::snprintf(text, sizeof text, "%s_%05u%s%s", kSubjects[random() % 10],
                          static_cast<unsigned>(random() % 100000), kDetails[random() % 7],
                          kEnds[random() % 12]);
            made.emplace_back(text);
        }
        return made;
    }();
    return names;
}

const Names& Patterns()
{
    static const Names patterns = {
        L"*.obj",  L"*.3ds",    L"*.max",          L"*.tga",       L"*.jp*g",     L"*.p?g",      L"chair*",
        L"*_v2.*", L"*normal*", L"scene_?????.m*", L"*lowres*.*",  L"wall*.tga",  L"*copy*.psd", L"*_0????_*",
        L"*.bak",  L"t*e*.stl", L"*7.ply",         L"*(final).ma", L"engine_*.*", L"*1*2*3*"};
    return patterns;
}

/// One backtracking point, as in every collection of snippets; folds Latin letters only.
bool Greedy(const wchar_t* name, const wchar_t* pattern)
{
    const auto same = [](wchar_t a, wchar_t b) {
        const auto fold = [](wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - 32) : c; };
        return b == L'?' || fold(a) == fold(b);
    };
    const wchar_t* star = nullptr;
    const wchar_t* retry = nullptr;
    while (*name != 0) {
        if (*pattern == L'*') {
            star = ++pattern;
            retry = name + 1;
        } else if (*pattern != 0 && same(*name, *pattern)) {
            ++name;
            ++pattern;
        } else if (star != nullptr) {
            pattern = star;
            name = retry++;
        } else {
            return false;
        }
    }
    while (*pattern == L'*')
        ++pattern;
    return *pattern == 0;
}

/// A pattern as a regular expression in machine code, without the mode that folds beyond Latin-1: its
/// fastest.
class Compiled
{
public:
    explicit Compiled(const CString& pattern)
    {
        std::vector<PCRE2_UCHAR16> text;
        const auto append = [&text](const char* part) {
            text.insert(text.end(), part, part + std::char_traits<char>::length(part));
        };
        for (int i = 0; i < pattern.GetLength(); ++i) {
            const wchar_t unit = pattern[i];
            if (unit == L'*')
                append(".*");
            else if (unit == L'?')
                append(".");
            else {
                append("\\x{");
                char hex[8];
                std::snprintf(hex, sizeof hex, "%x", static_cast<unsigned>(unit));
                append(hex);
                append("}");
            }
        }
        int error = 0;
        PCRE2_SIZE offset = 0;
        m_code = pcre2_compile_16(text.data(), text.size(),
                                  PCRE2_CASELESS | PCRE2_DOTALL | PCRE2_ANCHORED | PCRE2_ENDANCHORED, &error,
                                  &offset, nullptr);
        if (m_code == nullptr || pcre2_jit_compile_16(m_code, PCRE2_JIT_COMPLETE) != 0)
            std::abort();
        m_match = pcre2_match_data_create_from_pattern_16(m_code, nullptr);
    }
    ~Compiled()
    {
        pcre2_match_data_free_16(m_match);
        pcre2_code_free_16(m_code);
    }
    Compiled(const Compiled&) = delete;
    Compiled& operator=(const Compiled&) = delete;

    bool Matches(const CString& name) const
    {
        const auto* units = reinterpret_cast<PCRE2_SPTR16>(name.GetString());
        return pcre2_jit_match_16(m_code, units, static_cast<PCRE2_SIZE>(name.GetLength()), 0, 0, m_match,
                                  nullptr) >= 0;
    }

private:
    pcre2_code_16* m_code = nullptr;
    pcre2_match_data_16* m_match = nullptr;
};

class Ours
{
public:
    explicit Ours(const CString& pattern) : m_pattern(pattern) {}
    bool Matches(const CString& name) const { return fileMatchWilcards(name, m_pattern, 0) != 0; }

private:
    const CString& m_pattern;
};

class Plain
{
public:
    explicit Plain(const CString& pattern) : m_pattern(pattern) {}
    bool Matches(const CString& name) const { return Greedy(name, m_pattern); }

private:
    const CString& m_pattern;
};

/// Every name with every pattern; the number of matches tells whether all of them did the same work.
template <class Matcher>
void AllNames(benchmark::State& state)
{
    const Names& names = FileNames();
    std::vector<std::unique_ptr<Matcher>> matchers;
    for (const CString& pattern : Patterns())
        matchers.push_back(std::make_unique<Matcher>(pattern));
    std::size_t matches = 0;
    for (auto _ : state) {
        matches = 0;
        for (const CString& name : names) {
            for (const auto& matcher : matchers)
                matches += matcher->Matches(name) ? 1 : 0;
        }
    }
    state.counters["matches"] = static_cast<double>(matches);
    state.counters["ns_each"] = benchmark::Counter(
        static_cast<double>(state.iterations() * static_cast<std::int64_t>(names.size() * matchers.size())) /
            1e9,
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

template <class Matcher>
void OneName(benchmark::State& state, const CString& name, const CString& pattern, bool matches)
{
    const Matcher matcher(pattern);
    if (matcher.Matches(name) != matches)
        state.SkipWithError("wrong result");
    for (auto _ : state)
        benchmark::DoNotOptimize(matcher.Matches(name));
}

/// Hopeless names: one differs from the pattern in its last character, one only before that.
template <class Matcher>
void EndDiffers(benchmark::State& state)
{
    OneName<Matcher>(state, CString(L'a', 100) + L"b" + CString(L'a', 99), L"a*a*a*a*b", false);
}

template <class Matcher>
void MiddleDiffers(benchmark::State& state)
{
    OneName<Matcher>(state, CString(L'a', 199) + L"b", L"a*a*a*c*b", false);
}

BENCHMARK(AllNames<Ours>)->Name("wildcards/names/1M/vak")->Unit(benchmark::kMillisecond);
BENCHMARK(AllNames<Compiled>)->Name("wildcards/names/1M/pcre2-16-jit")->Unit(benchmark::kMillisecond);
BENCHMARK(AllNames<Plain>)->Name("wildcards/names/1M/greedy")->Unit(benchmark::kMillisecond);
BENCHMARK(EndDiffers<Ours>)->Name("wildcards/end-differs/200/vak");
BENCHMARK(EndDiffers<Compiled>)->Name("wildcards/end-differs/200/pcre2-16-jit");
BENCHMARK(EndDiffers<Plain>)->Name("wildcards/end-differs/200/greedy");
BENCHMARK(MiddleDiffers<Ours>)->Name("wildcards/middle-differs/200/vak");
BENCHMARK(MiddleDiffers<Compiled>)->Name("wildcards/middle-differs/200/pcre2-16-jit");
BENCHMARK(MiddleDiffers<Plain>)->Name("wildcards/middle-differs/200/greedy");

} // namespace
