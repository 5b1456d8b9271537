#pragma once

#include "core/HashMap.h"
#include "core/HashTable.h"
#include "framework/base/Geometry.h"
#include "framework/base/Position.h"
#include "framework/base/String.h"
#include "tags/TagData.h"
#include "tags/TagInfo.h"
#include "tags/TagValue.h"
#include "tags/detail/ScanState.h"
#include "tags/detail/TagIndex.h"

class CRichEditCtrl;

namespace vak {

/// What DoPopupMenu shows.
namespace tagmenu {
/// Only tags that can be compared.
constexpr unsigned int Restricted = 0x1;
/// "No criteria" comes first.
constexpr unsigned int NoCriteria = 0x2;
/// "Add all tags" and "Add all tags that can be reimported".
constexpr unsigned int AllTags = 0x4;

/// How it ended.
constexpr int Cancelled = 0; ///< also when nothing is to be shown, or the system cannot show it
constexpr int ChoseTag = 1;  ///< "<alltags>" and "<allwritabletags>" included
constexpr int ChoseNoCriteria = 2;
} // namespace tagmenu

namespace detail {

/// What callers know a tag by, besides its name.
struct TagKey
{
    unsigned int tagClass;
    unsigned int tagId;
};

} // namespace detail

/// The sum of class and id, spread by 16.
template <>
struct HashKey<detail::TagKey>
{
    static unsigned int Hash(const detail::TagKey& key) { return (key.tagClass + key.tagId) << 4; }
    static bool Equal(const detail::TagKey& a, const detail::TagKey& b)
    {
        return a.tagClass == b.tagClass && a.tagId == b.tagId;
    }
};

} // namespace vak

/// The tag engine: a register of named tags, and scanners that walk a template and stop at each registered
/// tag, so that the caller can put the tag's value in its place. The grammar of templates stands in
/// docs/tags.md.
///
/// Tag classes and ids are four-character codes, the first character in the high byte. Tags are known by name
/// and by (class, id). A name belongs to one tag: registering it again replaces that tag. A (class, id) may
/// have several names; asked for by its id, the tag that was registered last answers, and when that one goes,
/// one of those left.
///
/// The engine owns its tables, copies everything that it is given, and hands out copies; callback data is the
/// caller's and must outlive the registration. Any number of threads may scan, and ask, with one engine at
/// once: each has a scan of its own. A thread that wants a second scan while one is under way (a callback
/// that expands a template of its own, say) needs a second engine; a copy will do. Registering, removing,
/// assigning and copying are not synchronised and must not overlap with anything else.
class VAK_API CTags
{
public:
    CTags();
    /// Copies the tags, walked in the same order. Scans are not copied: the copy has none, and one that is
    /// under way in the engine assigned to goes on with the new tags. When memory runs out (CMemoryException)
    /// the engine assigned to is left without tags.
    CTags(const CTags& other);
    CTags& operator=(const CTags& other);
    virtual ~CTags();

    /// Puts the two conditional tags into `tags` and builds the table of parameters. Once per process: later
    /// calls, with whatever engine, do nothing. Any thread may call it; all return when the work is done.
    static void InitTags(CTags& tags);

    /// @name Registering
    /// @{

    /// Registers a tag under `name`, which has its angle brackets ("<file>") and is stored in lower case. The
    /// low 24 bits of `flags` are the kind of its value. A name with blanks is kept, but no scan finds it.
    /// The names that the menu shows are string identifiers (CTagInfo says where they are looked for).
    /// `callback` may be null: the tag then never has a value. Returns 1 when the name is new, 0 when it
    /// replaced a tag.
    int InsertTag(const CString& name, unsigned int flags, unsigned int tagClass, unsigned int tagId,
                  unsigned int friendlyNameId, unsigned int classNameId, TagCallback callback,
                  void* callbackData);
    /// The same with the text itself as the friendly name.
    int InsertTag(const CString& name, unsigned int flags, unsigned int tagClass, unsigned int tagId,
                  const CString& friendlyName, unsigned int classNameId, TagCallback callback,
                  void* callbackData);
    /// Removes the tag of that name, in whatever case; returns 1 if there was one, else 0.
    int RemoveTag(const CString& name);
    /// Removes all tags of a class and returns how many there were.
    int RemoveTagByClass(unsigned int tagClass);
    /// @}

    /// @name Enumeration
    /// @{

    /// Non-zero when tags are registered.
    int IsInit() const;
    /// Returns the position of the first tag, null when there is none. Registering and removing invalidate
    /// positions.
    POSITION GetFirstTag() const;
    /// Gives the tag at `position`, which GetFirstTag or GetNextTag gave, and moves `position` on, to null
    /// behind the last. A null position leaves everything as it is.
    void GetNextTag(POSITION& position, CString& name, CTagInfo& info) const;
    /// @}

    /// @name By class and id
    /// Unknown ids have no name and no flags.
    /// @{
    CString GetTagName(unsigned int tagClass, unsigned int tagId) const;
    CString GetTagFriendlyName(unsigned int tagClass, unsigned int tagId) const;
    unsigned int GetTagFlags(unsigned int tagClass, unsigned int tagId) const;
    /// @}

    /// @name By tag string
    /// Questions about a whole tag with its angle brackets and parameters ("<File(Ext)>"), which is split as
    /// the scanner does it. About an unknown tag the answer is 0 or an empty text.
    /// @{
    int IsTagValid(const CString& tag) const;
    /// Returns non-zero and the tag, with its parameters; an unknown tag leaves `info` empty.
    int GetTagInfo(const CString& tag, CTagInfo& info) const;
    /// Returns the id, and the class in `tagClass` (0 for an unknown tag).
    unsigned int GetTagID(const CString& tag, unsigned int& tagClass) const;
    /// The next three ask the last parameter, where there is one that is known, else the tag itself.
    CString GetTagFriendlyName(const CString& tag) const;
    /// Returns the kind of the value.
    _TAGDATA_INFO GetTagDataType(const CString& tag) const;
    int CanCompareTag(const CString& tag) const;
    /// @}

    /// Has the tag's callback fill `value`, applies the tag's parameters and converts the value to `wanted`.
    /// Returns 0 when there is no callback or it returns 0. Returns 1 otherwise, also when the parameters or
    /// the conversion failed: look at the kind of `value`, which is then not `wanted`.
    int GetDataFromTag(CTagInfo& info, CTagValue& value, _TAGDATA_INFO wanted) const;

    /// @name Plain text
    /// @{

    /// Begins a scan of `text` for the calling thread; one that was under way ends.
    void StartScan(const CString& text);
    /// Appends the text up to the next registered tag to `out` and returns 1 with the tag and its parameters
    /// in `info`: append its value to `out`, then go on. At the end of the text the rest is appended, `info`
    /// emptied and 0 returned. A thread without a scan gets 0 with everything as it was. When memory runs out
    /// (CMemoryException) the scan stays where it was.
    int Scan(CString& out, CTagInfo& info);
    /// @}

    /// @name Rich text (Windows only)
    /// The same in the text of a control, in place. Conditional tags are carried out and never returned. A
    /// thread has one scan: it does not go through a plain text meanwhile.
    ///
    /// The control's selection moves along, its list of what can be undone is emptied, and its parent is
    /// notified of each change as its event mask says. While a scan is under way nobody else changes the text
    /// before the tag at hand. Around a scan of a large text that is shown, stop its drawing (SetRedraw).
    /// @{

    /// Begins a scan for the calling thread, at the beginning of the text.
    void StartRTFScan();
    /// Selects the next registered tag in `control` and returns 1 with the tag in `info`. At the end of the
    /// text the empty lines there are deleted and 0 returned, `info` is then empty; likewise, with nothing
    /// changed, when the thread has no scan or the control has no window (any more). That the user may not
    /// change the text of a control does not keep it from being expanded.
    int RTFScan(CRichEditCtrl& control, CTagInfo& info);
    /// Replaces the tag just found, which is still selected, by `text`, in the format of the tag's first
    /// character; the scan goes on behind it. An empty text marks the conditional that the tag stands in as
    /// empty. Returns 1, or 0 and changes nothing where RTFScan would.
    int SetRTFTag(CRichEditCtrl& control, const CString& text);
    /// @}

    /// Set of tag classes.
    using TagClasses = CHashTable<unsigned int>;

    /// Shows the menu of tags at `screenPoint` (screen pixels) and returns the tag string that was chosen,
    /// empty when the menu was cancelled. `menuFlags` are of vak::tagmenu. Only classes in `listed` appear,
    /// all when it is null, less those in `leftOut`, which may be null as well. `result`, unless null, gets
    /// one of the results in vak::tagmenu: "No criteria" has no tag string either. The menu belongs to the
    /// active window of the calling thread or, where it has none, to a hidden one that comes to the
    /// foreground. Windows only.
    CString DoPopupMenu(CPoint screenPoint, unsigned int menuFlags, const TagClasses* listed,
                        const TagClasses* leftOut, int* result = nullptr) const;

protected:
    // The order of these three is part of the interface.
    /// Tags by name; they own what they point to. A tag stays where it is until its name is removed.
    CHashMap<CString, CTagInfo*, const CString&> m_byName;
    /// The same tags by class and id.
    CHashMap<vak::detail::TagKey, CTagInfo*, const vak::detail::TagKey&> m_byId;
    vak::detail::ScanStates m_scans;

private:
    /// A registered tag in a text.
    struct Found
    {
        const CTagInfo* tag = nullptr;
        const wchar_t* start = nullptr;      ///< at the "<"
        const wchar_t* parameters = nullptr; ///< at the "(", or at the end
        const wchar_t* end = nullptr;        ///< at the ">"
    };

    Found FindTag(const wchar_t* from, const wchar_t* end, CString& name) const;
    Found ReadTag(const wchar_t* start, const wchar_t* end, CString& name) const;
    CTagInfo* FindName(const CString& name) const;
    CTagInfo* FindId(unsigned int tagClass, unsigned int tagId) const;
    CTagInfo* FindOther(const CTagInfo& tag) const;
    int Register(const CTagInfo& tag);
    bool RegisterId(CTagInfo& tag);
    void UnregisterId(const CTagInfo& tag);
    void RemoveAll();
    void CopyTags(const CTags& other);

    vak::detail::TagIndex m_index;
    /// Units of the longest name that was ever registered.
    std::size_t m_longestName = 0;
};
