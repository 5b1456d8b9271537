#include "files/zip/ZipNameIndex.h"

#include "framework/base/ByteOrder.h"
#include "framework/base/SystemText.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <exception>
#include <random>

namespace vak::detail {

namespace {

std::uint64_t RandomKey()
{
    try {
        std::random_device device;
        return std::uint64_t{device()} << 32 | device();
    } catch (const std::exception&) {
        // No source of randomness: a name table needs no better key than the clock then.
        return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
}

/// SipHash with one round a word and three at the end, by its published definition.
class SipHash
{
public:
    explicit SipHash(const std::array<std::uint64_t, 2>& key)
        : m_v{key[0] ^ 0x736F6D6570736575, key[1] ^ 0x646F72616E646F6D, key[0] ^ 0x6C7967656E657261,
              key[1] ^ 0x7465646279746573}
    {
    }

    void Word(std::uint64_t word)
    {
        m_v[3] ^= word;
        Round();
        m_v[0] ^= word;
    }

    std::uint64_t End()
    {
        m_v[2] ^= 0xFF;
        for (int i = 0; i < 3; ++i)
            Round();
        return m_v[0] ^ m_v[1] ^ m_v[2] ^ m_v[3];
    }

private:
    void Round()
    {
        m_v[0] += m_v[1];
        m_v[2] += m_v[3];
        m_v[1] = std::rotl(m_v[1], 13) ^ m_v[0];
        m_v[3] = std::rotl(m_v[3], 16) ^ m_v[2];
        m_v[0] = std::rotl(m_v[0], 32);
        m_v[2] += m_v[1];
        m_v[0] += m_v[3];
        m_v[1] = std::rotl(m_v[1], 17) ^ m_v[2];
        m_v[3] = std::rotl(m_v[3], 21) ^ m_v[0];
        m_v[2] = std::rotl(m_v[2], 32);
    }

    std::uint64_t m_v[4];
};

} // namespace

void ZipNameIndex::Begin(std::size_t count, bool ignoreCase)
{
    m_ignoreCase = ignoreCase;
    m_key = {RandomKey(), RandomKey()};
    m_slots.clear();
    m_slots.resize(std::bit_ceil(count * 2 + 2));
}

std::uint64_t ZipNameIndex::Hash(Text text) const
{
    constexpr std::size_t kUnits = 4;
    if (m_ignoreCase) {
        m_folded.assign(text.begin(), text.end());
        system::MakeUpper(m_folded.data(), m_folded.size());
        text = m_folded;
    }
    SipHash hash(m_key);
    std::size_t at = 0;
    for (; text.size() - at >= kUnits; at += kUnits)
        hash.Word(LoadLittleEndian<std::uint64_t>(text.data() + at));
    std::uint64_t last = static_cast<std::uint64_t>(text.size()) << 56;
    for (std::size_t i = 0; at + i < text.size(); ++i)
        last |= static_cast<std::uint64_t>(text[at + i]) << (16 * i);
    hash.Word(last);
    return hash.End();
}

bool ZipNameIndex::IsSame(Text a, Text b) const
{
    if (m_ignoreCase)
        return system::CompareOrdinalIgnoreCase(a.data(), a.size(), b.data(), b.size()) == 0;
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

} // namespace vak::detail
