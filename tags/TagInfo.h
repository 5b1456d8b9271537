#pragma once

#include "framework/base/String.h"
#include "tags/TagData.h"

class CTagInfo;
class CTagValue;

/// Fills `value` with what the tag stands for and returns non-zero, or returns 0 when there is nothing.
///
/// `wanted` is the kind that the caller is going to convert the value to; a callback may fill another kind.
/// It runs on the thread that asks and must let no exception out.
using TagCallback = int (*)(CTagInfo& tag, CTagValue& value, _TAGDATA_INFO wanted);

/// What is known of one registered tag.
///
/// A plain value; copies share nothing but the callback's data, which stays its registrar's. Registrars and
/// their callbacks see such records, so the members and their order are part of the interface. A callback
/// must stay loaded as long as a record that names it is used.
class VAK_API CTagInfo
{
public:
    /// Makes an empty record, as `Init` leaves it.
    CTagInfo() = default;
    CTagInfo(unsigned int tagClass, unsigned int tagId);

    /// Returns the name in lower case with its angle brackets ("<tagifexist>").
    CString GetTagName() const { return m_tagName; }
    /// Returns the name that the menu shows: the literal one or, where that is empty, the text of its id:
    /// the library's own, else the one among the strings of the module that holds the callback, else the
    /// host's (vak::LoadTextNear). Empty when there is none.
    CString GetTagFriendlyName() const;
    /// Returns the name of the tag's class, found in the same way.
    CString GetClassName() const;
    /// Returns the parameters as last scanned: in lower case, without blanks and with their parentheses
    /// ("(lastwritedate(d))"); empty when there were none.
    CString GetParameters() const { return m_parameters; }
    unsigned int GetTagClass() const { return m_tagClass; }
    unsigned int GetTagID() const { return m_tagId; }
    /// Returns the flags; their low 24 bits are a kind.
    unsigned int GetTagFlags() const { return m_flags; }
    _TAGDATA_INFO GetTagDataType() const { return m_dataType; }
    void* GetCallbackData() const { return m_callbackData; }

    /// Empties the record: no texts, numbers 0, no callback.
    void Init();
    /// Gives the tag a literal friendly name in place of a string id.
    void SetFriendlyName(const CString& name);

    unsigned int m_tagId = 0;    ///< a four-character code, its first character in the high byte
    unsigned int m_tagClass = 0; ///< likewise
    CString m_tagName;
    _TAGDATA_INFO m_dataType = TAGDATA_NONE;
    unsigned int m_flags = 0;
    unsigned int m_friendlyNameId = 0; ///< 0 with a literal name
    unsigned int m_classNameId = 0;
    TagCallback m_callback = nullptr;
    void* m_callbackData = nullptr;
    CString m_parameters;

private:
    CString LoadName(unsigned int id) const;

    CString m_friendlyName;
};
