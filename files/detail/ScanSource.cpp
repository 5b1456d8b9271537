#include "files/detail/ScanSource.h"

#include "framework/base/SystemStream.h"
#include "framework/base/SystemText.h"

#include <cstring>

namespace vak::detail {

namespace {

/// Longest character of any form, and of a line end with what decides about it.
constexpr std::size_t kLongest = 4;
constexpr unsigned char kControlZ = 0x1A;

bool IsHighSurrogate(unsigned int unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLowSurrogate(unsigned int unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

} // namespace

ScanSource::ScanSource(CStdioFile& file, const Form& form) : m_file(file), m_form(form) {}

int ScanSource::Peek()
{
    return Units() == 0 ? kEnd : m_next[0];
}

int ScanSource::Units()
{
    if (!m_loaded)
        Load();
    return m_units;
}

void ScanSource::Look(wchar_t (&units)[2])
{
    Units();
    units[0] = m_next[0];
    units[1] = m_next[1];
}

void ScanSource::Take(wchar_t (&units)[2])
{
    Look(units);
    unsigned char passed[kLongest];
    m_taken += m_units;
    for (std::size_t left = m_length; left > 0;) {
        const std::size_t read = std::fread(passed, 1, left, m_file.m_pStream);
        if (read == 0)
            break;
        left -= read;
    }
    m_loaded = false;
}

/// Copies up to `wanted` bytes that the stream is about to read and leaves it where it is.
std::size_t ScanSource::LookAhead(unsigned char* bytes, std::size_t wanted)
{
    const system::StreamBytes shown = system::PeekStream(m_file.m_pStream);
    if (shown.count >= wanted || shown.count == 0) {
        const std::size_t count = shown.count < wanted ? shown.count : wanted;
        if (count > 0)
            std::memcpy(bytes, shown.bytes, count);
        return count;
    }
    const std::size_t read = std::fread(bytes, 1, wanted, m_file.m_pStream);
    m_file.Seek(-static_cast<LONGLONG>(read), CFile::current);
    return read;
}

void ScanSource::Load()
{
    m_loaded = true;
    m_units = 0;
    m_length = 0;
    m_next[0] = m_next[1] = 0;
    unsigned char bytes[kLongest];
    std::size_t count = LookAhead(bytes, 1);
    if (count == 0)
        return;
    if (!m_form.isUnicode && bytes[0] < 0x80 && bytes[0] != '\r' && bytes[0] != kControlZ) {
        m_units = 1;
        m_length = 1;
        m_next[0] = bytes[0];
        return;
    }
    count = LookAhead(bytes, kLongest);
    if (m_form.isUnicode)
        LoadUnicode(bytes, count);
    else
        LoadAnsi(bytes, count);
}

void ScanSource::LoadUnicode(const unsigned char* bytes, std::size_t count)
{
    if (count < 2)
        return;
    m_units = 1;
    m_length = 2;
    m_next[0] = static_cast<wchar_t>(bytes[0] | bytes[1] << 8);
    if (!IsHighSurrogate(m_next[0]) || count < 4)
        return;
    const unsigned int low = static_cast<unsigned int>(bytes[2] | bytes[3] << 8);
    if (!IsLowSurrogate(low))
        return;
    m_units = 2;
    m_length = 4;
    m_next[1] = static_cast<wchar_t>(low);
}

void ScanSource::LoadAnsi(const unsigned char* bytes, std::size_t count)
{
    if (m_form.isText && bytes[0] == kControlZ)
        return;
    m_units = 1;
    m_length = 1;
    m_next[0] = bytes[0];
    if (bytes[0] < 0x80) {
        if (m_form.isText && bytes[0] == '\r' && count > 1 && bytes[1] == '\n') {
            m_length = 2;
            m_next[0] = '\n';
        }
        return;
    }
    // The shortest piece that is whole is the character, whatever it means.
    const char* text = reinterpret_cast<const char*>(bytes);
    while (m_length < count && system::IncompleteTail(m_form.codePage, text, m_length) != 0)
        ++m_length;
    CString units;
    system::ToWide(m_form.codePage, text, m_length, units);
    if (units.GetLength() > 1 && !IsHighSurrogate(units[0])) {
        // A beginning without its rest: the character behind it stays for the next time.
        m_length = 1;
        system::ToWide(m_form.codePage, text, m_length, units);
    }
    if (units.IsEmpty())
        return;
    m_units = units.GetLength() > 1 ? 2 : 1;
    m_next[0] = units[0];
    m_next[1] = m_units > 1 ? units[1] : L'\0';
}

} // namespace vak::detail
