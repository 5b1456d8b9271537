#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

/// Small readers and writers that the formats share.
namespace mesh {

/// Walks over blank-separated words of a text, line by line where the caller wants lines.
class TextScanner
{
public:
    explicit TextScanner(std::string_view text) : m_rest(text) {}

    /// The next word, or an empty one at the end.
    std::string_view Word()
    {
        Skip(kBlanks);
        const std::size_t end = std::min(m_rest.find_first_of(kBlanks), m_rest.size());
        return Take(end);
    }

    /// The rest of the current line without its line end, which is passed over.
    std::string_view Line()
    {
        const std::size_t end = std::min(m_rest.find('\n'), m_rest.size());
        std::string_view line = Take(end);
        if (!m_rest.empty())
            m_rest.remove_prefix(1);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        return line;
    }

    /// Reads a finite number; false when the next word is none.
    bool Number(float& value) { return ParseFinite(Word(), value); }

    template <std::integral T>
    bool Number(T& value)
    {
        const std::string_view word = Word();
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        return error == std::errc() && end == word.data() + word.size() && !word.empty();
    }

    bool AtEnd() const { return m_rest.empty(); }
    std::string_view Rest() const { return m_rest; }

    static bool ParseFinite(std::string_view word, float& value)
    {
        if (!word.empty() && word.front() == '+')
            word.remove_prefix(1);
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (error == std::errc::result_out_of_range)
            value = 0.0f; // too small to tell from zero, or too large to be a coordinate: refused below
        else if (error != std::errc())
            return false;
        return end == word.data() + word.size() && !word.empty() && std::isfinite(value);
    }

private:
    static constexpr std::string_view kBlanks = " \t\r\n\f\v";

    void Skip(std::string_view characters)
    {
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(characters), m_rest.size()));
    }

    std::string_view Take(std::size_t count)
    {
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(count);
        return taken;
    }

    std::string_view m_rest;
};

/// Appends the shortest text that reads back as the same number.
template <typename T>
void AppendNumber(std::string& out, T value)
{
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof(text), value);
    out.append(text, error == std::errc() ? end : text);
}

template <typename T>
void AppendLittleEndian(std::string& out, T value)
{
    std::uint64_t bits = 0;
    if constexpr (std::is_floating_point_v<T>) {
        static_assert(sizeof(T) == 4);
        std::uint32_t word;
        std::memcpy(&word, &value, sizeof(word));
        bits = word;
    } else {
        bits = static_cast<std::uint64_t>(value);
    }
    for (std::size_t i = 0; i < sizeof(T); ++i)
        out += static_cast<char>(bits >> (8 * i) & 0xFF);
}

} // namespace mesh
