#include "tags/detail/ParameterChain.h"

#include <algorithm>

namespace vak::detail {

ParameterChain::ParameterChain(const CString& text)
    : m_begin(text.GetString()), m_end(m_begin + text.GetLength()), m_open(std::find(m_begin, m_end, L'(')),
      m_close(m_end)
{
}

bool ParameterChain::Next(CString& name)
{
    while (m_close != m_begin && m_close[-1] != L')')
        --m_close;
    if (m_open == m_end || m_close == m_begin)
        return false;
    --m_close;
    const wchar_t* const first = m_open + 1;
    m_open = std::find(first, m_end, L'(');
    const wchar_t* const last = std::min(m_open, m_close);
    name.SetString(first, first < last ? static_cast<int>(last - first) : 0);
    return true;
}

} // namespace vak::detail
