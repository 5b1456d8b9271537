#include "files/SwitchLocale.h"

#include "framework/base/String.h"

#include <clocale>
#include <cstdlib>
#include <cstring>

CSwitchLocale::CSwitchLocale(int category, LPCWSTR name) : m_category(category), m_previous(nullptr)
{
    // The run-time library's answer lasts only until the next call.
    if (const char* current = std::setlocale(category, nullptr)) {
        const std::size_t size = std::strlen(current) + 1;
        m_previous = static_cast<char*>(std::malloc(size));
        if (m_previous != nullptr)
            std::memcpy(m_previous, current, size);
    }
    // Without a copy there would be no way back.
    if (m_previous != nullptr && name != nullptr)
        std::setlocale(category, CStringA(name));
}

CSwitchLocale::~CSwitchLocale()
{
    if (m_previous != nullptr)
        std::setlocale(m_category, m_previous);
    std::free(m_previous);
}
