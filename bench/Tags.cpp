#include "tags/Tags.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <benchmark/benchmark.h>
#include <ctemplate/template.h>
#include <pcre2.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

/// One pass from a template to its expansion: ours, a regular expression in machine code with a table beside
/// it, and a template library, whose template is parsed before. The expression runs twice: "plain" takes the
/// values of exact names from the table; the other does what ours does, with names in whatever case,
/// parameters apart from the name and values from callbacks.

namespace {

constexpr int kTags = 20000;
constexpr int kNames = 200;
/// A megabyte of UTF-16.
constexpr std::size_t kUnits = 512 * 1024;

struct Tag
{
    std::string name;
    std::string value;
};

const std::vector<Tag>& AllTags()
{
    static const std::vector<Tag> tags = [] {
        constexpr const char* kWords[] = {"file", "title",  "author", "width", "date",
                                          "size", "camera", "note",   "lens",  "place"};
        std::vector<Tag> made;
        for (int i = 0; i < kNames; ++i) {
            const std::string number = std::to_string(i);
            made.push_back({kWords[i % 10] + number, "value of " + number});
        }
        return made;
    }();
    return tags;
}

/// The template, with `open` and `close` around the names.
std::string MakeTemplate(const char* open, const char* close)
{
    std::mt19937 random(1);
    std::string text;
    std::size_t plain = 0;
    for (int i = 0; i < kTags; ++i) {
        const Tag& tag = AllTags()[random() % kNames];
        const std::size_t end = kUnits * static_cast<std::size_t>(i + 1) / kTags;
        // Tags count as they are in "<...>", so that the text around them is the same for all.
        plain += tag.name.size() + 2;
        for (; plain < end; ++plain)
            text += static_cast<char>(random() % 6 == 0 ? ' ' : 'a' + random() % 26);
        text += open + tag.name + close;
    }
    return text;
}

int GiveValue(CTagInfo& tag, CTagValue& value, _TAGDATA_INFO)
{
    value.SetText(*static_cast<const CString*>(tag.GetCallbackData()));
    return 1;
}

void CountTags(benchmark::State& state, std::size_t length)
{
    state.counters["length"] = static_cast<double>(length);
    state.SetItemsProcessed(state.iterations() * kTags);
}

void Ours(benchmark::State& state)
{
    const CString text(MakeTemplate("<", ">").c_str());
    std::vector<CString> values;
    for (const Tag& tag : AllTags())
        values.emplace_back(tag.value.c_str());
    CTags tags;
    for (unsigned int i = 0; i < kNames; ++i)
        tags.InsertTag(CString(("<" + AllTags()[i].name + ">").c_str()), TAGDATA_TEXT, 'BNCH', i, 0, 0,
                       GiveValue, &values[i]);
    std::size_t length = 0;
    for (auto _ : state) {
        CString out;
        CTagInfo info;
        CTagValue value;
        tags.StartScan(text);
        while (tags.Scan(out, info) != 0) {
            if (tags.GetDataFromTag(info, value, TAGDATA_TEXT) != 0)
                out += value.GetText();
        }
        length = static_cast<std::size_t>(out.GetLength());
    }
    CountTags(state, length);
}

std::u16string Widen(const std::string& text)
{
    return std::u16string(text.begin(), text.end());
}

/// What a name stands for: a callback with its data.
struct Source
{
    void (*give)(const void* data, std::u16string& value);
    const void* data;
};

void GiveText(const void* data, std::u16string& value)
{
    value = *static_cast<const std::u16string*>(data);
}

class Expression
{
public:
    explicit Expression(const std::u16string& pattern)
    {
        int error = 0;
        PCRE2_SIZE offset = 0;
        m_code = pcre2_compile_16(reinterpret_cast<PCRE2_SPTR16>(pattern.data()), pattern.size(), 0, &error,
                                  &offset, nullptr);
        if (m_code == nullptr || pcre2_jit_compile_16(m_code, PCRE2_JIT_COMPLETE) != 0)
            std::abort();
        m_match = pcre2_match_data_create_from_pattern_16(m_code, nullptr);
    }
    ~Expression()
    {
        pcre2_match_data_free_16(m_match);
        pcre2_code_free_16(m_code);
    }
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    /// The starts and ends of the next match and its groups, or null.
    const PCRE2_SIZE* Next(const std::u16string& text, std::size_t from)
    {
        const auto* const units = reinterpret_cast<PCRE2_SPTR16>(text.data());
        return pcre2_jit_match_16(m_code, units, text.size(), from, 0, m_match, nullptr) > 0
                   ? pcre2_get_ovector_pointer_16(m_match)
                   : nullptr;
    }

private:
    pcre2_code_16* m_code = nullptr;
    pcre2_match_data_16* m_match = nullptr;
};

char16_t LowerAscii(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

void RegularExpression(benchmark::State& state)
{
    const std::u16string text = Widen(MakeTemplate("<", ">"));
    std::vector<std::u16string> values;
    for (const Tag& tag : AllTags())
        values.push_back(Widen(tag.value));
    std::unordered_map<std::u16string, Source> sources;
    for (std::size_t i = 0; i < values.size(); ++i)
        sources[Widen(AllTags()[i].name)] = {GiveText, &values[i]};
    Expression expression(u"<([^<>(]*)(\\([^<>]*)?>");
    std::size_t length = 0;
    for (auto _ : state) {
        std::u16string out;
        std::u16string name;
        std::u16string value;
        std::size_t done = 0;
        std::size_t from = 0;
        while (const PCRE2_SIZE* const at = expression.Next(text, from)) {
            from = at[1];
            name.assign(text, at[2], at[3] - at[2]);
            std::transform(name.begin(), name.end(), name.begin(), LowerAscii);
            const auto found = sources.find(name);
            if (found == sources.end())
                continue;
            out.append(text, done, at[0] - done);
            found->second.give(found->second.data, value);
            out.append(value);
            done = at[1];
        }
        out.append(text, done);
        length = out.size();
    }
    CountTags(state, length);
}

void PlainExpression(benchmark::State& state)
{
    const std::u16string text = Widen(MakeTemplate("<", ">"));
    std::unordered_map<std::u16string, std::u16string> values;
    for (const Tag& tag : AllTags())
        values[Widen(tag.name)] = Widen(tag.value);
    Expression expression(u"<([^<>]*)>");
    std::size_t length = 0;
    for (auto _ : state) {
        std::u16string out;
        std::u16string name;
        std::size_t done = 0;
        std::size_t from = 0;
        while (const PCRE2_SIZE* const at = expression.Next(text, from)) {
            from = at[1];
            name.assign(text, at[2], at[3] - at[2]);
            const auto found = values.find(name);
            if (found == values.end())
                continue;
            out.append(text, done, at[0] - done);
            out.append(found->second);
            done = at[1];
        }
        out.append(text, done);
        length = out.size();
    }
    CountTags(state, length);
}

void ParsedTemplate(benchmark::State& state)
{
    const std::string text = MakeTemplate("{{", "}}");
    ctemplate::Template* const parsed = ctemplate::Template::StringToTemplate(text, ctemplate::DO_NOT_STRIP);
    ctemplate::TemplateDictionary values("values");
    for (const Tag& tag : AllTags())
        values.SetValue(tag.name, tag.value);
    std::size_t length = 0;
    for (auto _ : state) {
        std::string out;
        if (!parsed->Expand(&out, &values))
            std::abort();
        length = out.size();
    }
    CountTags(state, length);
    delete parsed;
}

BENCHMARK(Ours)->Name("tags/expand/20k/vak")->Unit(benchmark::kMicrosecond);
BENCHMARK(RegularExpression)->Name("tags/expand/20k/pcre2-16-jit")->Unit(benchmark::kMicrosecond);
BENCHMARK(PlainExpression)->Name("tags/expand/20k/pcre2-16-plain")->Unit(benchmark::kMicrosecond);
BENCHMARK(ParsedTemplate)->Name("tags/expand/20k/ctemplate-parsed")->Unit(benchmark::kMicrosecond);

} // namespace
