#include "files/IoOptions.h"

#include "framework/base/Exception.h"
#include "framework/base/StringTable.h"

#include <algorithm>

CIoOptions::CIoOptions(int loading) : m_loading(loading) {}

CIoOptions::CIoOptions(const CIoOptions& other) : m_loading(other.m_loading)
{
    m_log.Copy(other.m_log);
}

CIoOptions& CIoOptions::operator=(const CIoOptions& other)
{
    if (this == &other)
        return *this;
    m_loading = other.m_loading;
    m_log.Copy(other.m_log);
    return *this;
}

int CIoOptions::GetLogCount() const
{
    return static_cast<int>(m_log.GetSize());
}

const IoLogInfo& CIoOptions::GetLogInfo(int index) const
{
    if (index < 0 || index >= GetLogCount())
        AfxThrowInvalidArgException();
    return m_log.GetData()[index];
}

IoLogInfo::loglevel CIoOptions::GetWorstLevel() const
{
    IoLogInfo::loglevel worst = IoLogInfo::info;
    for (int index = 0; index < GetLogCount(); ++index)
        worst = std::max(worst, GetLogInfo(index).level);
    return worst;
}

void CIoOptions::AddLogInfo(IoLogInfo::loglevel level, const CString& text)
{
    m_log.Add(IoLogInfo{level, text});
}

void CIoOptions::AddLogInfo(IoLogInfo::loglevel level, unsigned int textId)
{
    CString text;
    if (vak::LoadText(text, textId))
        AddLogInfo(level, text);
}

void CIoOptions::ClearLog()
{
    m_log.RemoveAll();
}
