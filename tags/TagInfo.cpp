#include "tags/TagInfo.h"

#include "framework/base/StringTable.h"

CTagInfo::CTagInfo(unsigned int tagClass, unsigned int tagId) : m_tagId(tagId), m_tagClass(tagClass) {}

CString CTagInfo::GetTagFriendlyName() const
{
    return m_friendlyName.IsEmpty() ? LoadName(m_friendlyNameId) : m_friendlyName;
}

CString CTagInfo::GetClassName() const
{
    return LoadName(m_classNameId);
}

void CTagInfo::Init()
{
    *this = CTagInfo();
}

void CTagInfo::SetFriendlyName(const CString& name)
{
    m_friendlyNameId = 0;
    m_friendlyName = name;
}

CString CTagInfo::LoadName(unsigned int id) const
{
    CString name;
    if (id != 0)
        vak::LoadTextNear(name, id, reinterpret_cast<const void*>(m_callback));
    return name;
}
