#include "tags/Tags.h"

#include "framework/base/StringTable.h"
#include "resources/Ids.h"
#include "tags/detail/ParameterChain.h"
#include "tags/detail/TagParameterTable.h"
#include "tags/detail/TagText.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

namespace detail = vak::detail;

namespace {

constexpr unsigned int kTableSize = 101;
constexpr unsigned int kNoSlot = 0xFFFFFFFF;
constexpr unsigned int kConditionalClass = 'TAGC';

using Keys = vak::HashKey<detail::TagKey>;
using OwnedTag = std::unique_ptr<CTagInfo>;

template <class T>
using List = std::vector<T, detail::Allocator<T>>;

detail::TagKey KeyOf(const CTagInfo& tag)
{
    return {tag.m_tagClass, tag.m_tagId};
}

/// What `map` holds under `key`, or null.
template <class Map, class Key>
CTagInfo* FindIn(const Map& map, const Key& key)
{
    CTagInfo* tag = nullptr;
    return map.Find(key, tag) != 0 ? tag : nullptr;
}

OwnedTag NewTag(const CTagInfo& tag)
{
    OwnedTag made(new (std::nothrow) CTagInfo(tag));
    if (made == nullptr)
        detail::ThrowMemory();
    return made;
}

/// Calls `visit` with the key and the tag of every entry, in the table's order; it may delete the tag.
template <class Map, class Visit>
void ForEach(const Map& map, Visit visit)
{
    CTagInfo* tag = nullptr;
    for (unsigned int pos = map.GetFirst(); pos != kNoSlot;) {
        const auto& key = map.GetNext(pos, tag);
        visit(key, tag);
    }
}

CString Lowered(const CString& name)
{
    CString lowered(name);
    return lowered.MakeLower();
}

CTagInfo Describe(const CString& name, unsigned int flags, unsigned int tagClass, unsigned int tagId,
                  unsigned int classNameId)
{
    CTagInfo tag(tagClass, tagId);
    tag.m_tagName = Lowered(name);
    tag.m_dataType = vak::TagKind(flags);
    tag.m_flags = flags;
    tag.m_classNameId = classNameId;
    return tag;
}

/// A slot as a position, which is null for none.
POSITION ToPosition(unsigned int slot)
{
    return reinterpret_cast<POSITION>(static_cast<std::uintptr_t>(slot == kNoSlot ? 0 : slot + 1));
}

unsigned int ToSlot(POSITION position)
{
    return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(position)) - 1;
}

/// Makes room behind `out` for a template of `length` units and values that are somewhat longer than their
/// tags.
void MakeRoom(CString& out, int length)
{
    const std::int64_t wanted = std::int64_t{out.GetLength()} + length + length / 4;
    out.Preallocate(static_cast<int>(std::min<std::int64_t>(wanted, INT_MAX)));
}

/// The parameter that the tag's chain ends in, or null when there is none or it is unknown.
const detail::TagParameter* LastParameterOf(const CTagInfo& tag)
{
    CString last;
    for (detail::ParameterChain chain(tag.m_parameters); chain.Next(last);) {
    }
    return detail::FindTagParameter(last);
}

} // namespace

CTags::CTags() : m_byName(kTableSize), m_byId(kTableSize) {}

CTags::CTags(const CTags& other) : CTags()
{
    CopyTags(other);
}

CTags& CTags::operator=(const CTags& other)
{
    if (this != &other) {
        RemoveAll();
        CopyTags(other);
    }
    return *this;
}

CTags::~CTags()
{
    RemoveAll();
}

void CTags::InitTags(CTags& tags)
{
    static const bool done = [&tags] {
        tags.InsertTag(L"<tagifexist>", vak::kTagNotComparable, kConditionalClass, 'IFNE', IDS_TAG_IF_EXIST,
                       IDS_TAG_CONDITIONALS, nullptr, nullptr);
        tags.InsertTag(L"<tagendifexist>", vak::kTagNotComparable, kConditionalClass, 'EINE',
                       IDS_TAG_END_IF_EXIST, IDS_TAG_CONDITIONALS, nullptr, nullptr);
        detail::FindTagParameter(CString()); // builds the table
        return true;
    }();
    static_cast<void>(done);
}

int CTags::InsertTag(const CString& name, unsigned int flags, unsigned int tagClass, unsigned int tagId,
                     unsigned int friendlyNameId, unsigned int classNameId, TagCallback callback,
                     void* callbackData)
{
    CTagInfo tag = Describe(name, flags, tagClass, tagId, classNameId);
    tag.m_friendlyNameId = friendlyNameId;
    tag.m_callback = callback;
    tag.m_callbackData = callbackData;
    return Register(tag);
}

int CTags::InsertTag(const CString& name, unsigned int flags, unsigned int tagClass, unsigned int tagId,
                     const CString& friendlyName, unsigned int classNameId, TagCallback callback,
                     void* callbackData)
{
    CTagInfo tag = Describe(name, flags, tagClass, tagId, classNameId);
    tag.SetFriendlyName(friendlyName);
    tag.m_callback = callback;
    tag.m_callbackData = callbackData;
    return Register(tag);
}

int CTags::RemoveTag(const CString& name)
{
    const std::unique_ptr<CTagInfo> tag(FindName(Lowered(name)));
    if (tag == nullptr)
        return 0;
    UnregisterId(*tag);
    m_index.Remove(*tag);
    m_byName.Remove(tag->m_tagName);
    return 1;
}

int CTags::RemoveTagByClass(unsigned int tagClass)
{
    List<CTagInfo*> removed;
    ForEach(m_byName, [&](const CString&, CTagInfo* tag) {
        if (tag->m_tagClass == tagClass)
            removed.push_back(tag);
    });
    for (CTagInfo* tag : removed) {
        m_byId.Remove(KeyOf(*tag));
        m_index.Remove(*tag);
        m_byName.Remove(tag->m_tagName);
        delete tag;
    }
    return static_cast<int>(removed.size());
}

int CTags::IsInit() const
{
    return m_byName.IsEmpty() == 0;
}

POSITION CTags::GetFirstTag() const
{
    return ToPosition(m_byName.GetFirst());
}

void CTags::GetNextTag(POSITION& position, CString& name, CTagInfo& info) const
{
    if (position == nullptr)
        return;
    unsigned int slot = ToSlot(position);
    CTagInfo* tag = nullptr;
    name = m_byName.GetNext(slot, tag);
    info = *tag;
    position = ToPosition(slot);
}

CString CTags::GetTagName(unsigned int tagClass, unsigned int tagId) const
{
    const CTagInfo* const tag = FindId(tagClass, tagId);
    return tag != nullptr ? tag->GetTagName() : CString();
}

CString CTags::GetTagFriendlyName(unsigned int tagClass, unsigned int tagId) const
{
    const CTagInfo* const tag = FindId(tagClass, tagId);
    return tag != nullptr ? tag->GetTagFriendlyName() : CString();
}

unsigned int CTags::GetTagFlags(unsigned int tagClass, unsigned int tagId) const
{
    const CTagInfo* const tag = FindId(tagClass, tagId);
    return tag != nullptr ? tag->m_flags : 0;
}

int CTags::IsTagValid(const CString& tag) const
{
    CTagInfo info;
    return GetTagInfo(tag, info);
}

int CTags::GetTagInfo(const CString& tag, CTagInfo& info) const
{
    CString name;
    CString parameters;
    detail::SplitTag(tag, name, parameters);
    const CTagInfo* const known = FindName(name);
    if (known == nullptr) {
        info.Init();
        return 0;
    }
    info = *known;
    info.m_parameters = parameters;
    return 1;
}

unsigned int CTags::GetTagID(const CString& tag, unsigned int& tagClass) const
{
    CTagInfo info;
    GetTagInfo(tag, info);
    tagClass = info.m_tagClass;
    return info.m_tagId;
}

CString CTags::GetTagFriendlyName(const CString& tag) const
{
    CTagInfo info;
    GetTagInfo(tag, info);
    const detail::TagParameter* const last = LastParameterOf(info);
    if (last == nullptr)
        return info.GetTagFriendlyName();
    CString name;
    vak::LoadText(name, last->friendlyNameId);
    return name;
}

_TAGDATA_INFO CTags::GetTagDataType(const CString& tag) const
{
    CTagInfo info;
    GetTagInfo(tag, info);
    const detail::TagParameter* const last = LastParameterOf(info);
    return vak::TagKind(last != nullptr ? last->yieldWord : info.m_flags);
}

int CTags::CanCompareTag(const CString& tag) const
{
    CTagInfo info;
    if (GetTagInfo(tag, info) == 0)
        return 0;
    const detail::TagParameter* const last = LastParameterOf(info);
    return ((last != nullptr ? last->yieldWord : info.m_flags) & vak::kTagNotComparable) == 0;
}

int CTags::GetDataFromTag(CTagInfo& info, CTagValue& value, _TAGDATA_INFO wanted) const
{
    if (info.m_callback == nullptr || info.m_callback(info, value, wanted) == 0)
        return 0;
    value.HandleParametersAndConvertToType(wanted, info.m_parameters);
    return 1;
}

void CTags::StartScan(const CString& text)
{
    detail::ScanState& state = m_scans.Obtain();
    state.text = text;
    state.Reset();
}

int CTags::Scan(CString& out, CTagInfo& info)
{
    detail::ScanState* const state = m_scans.Find();
    if (state == nullptr)
        return 0;
    if (state->position == 0)
        MakeRoom(out, state->text.GetLength());
    const wchar_t* const text = state->text;
    const wchar_t* const end = text + state->text.GetLength();
    // A thread that works on a rich text meanwhile moves the same position.
    const wchar_t* const from = text + std::min<std::int64_t>(state->position, end - text);
    const Found found = FindTag(from, end, state->name);
    if (found.tag == nullptr) {
        info.Init();
        out.Append(from, static_cast<int>(end - from));
        state->position = static_cast<unsigned int>(state->text.GetLength());
        return 0;
    }
    // All that can fail comes before the scan moves on.
    info = *found.tag;
    if (found.parameters != found.end)
        detail::ReadTagParameters(found.parameters, static_cast<std::size_t>(found.end - found.parameters),
                                  info.m_parameters);
    out.Append(from, static_cast<int>(found.start - from));
    state->position = static_cast<unsigned int>(found.end - text) + 1;
    return 1;
}

/// The next registered tag in a text. Every "<" is looked at once, and up to the next bracket only: the time
/// is linear in the text whatever brackets it holds.
CTags::Found CTags::FindTag(const wchar_t* from, const wchar_t* end, CString& name) const
{
    const wchar_t* start = detail::FindTagStart(from, end);
    while (start != end) {
        const Found found = ReadTag(start, end, name);
        if (found.tag != nullptr || found.end == end)
            return found;
        start = *found.end == L'<' ? found.end : detail::FindTagStart(found.end + 1, end);
    }
    return {};
}

/// The tag at a "<", if it is registered, and the bracket that ends it; without a tag, `end` is the next
/// bracket, or the end of the text.
CTags::Found CTags::ReadTag(const wchar_t* start, const wchar_t* end, CString& name) const
{
    if (end - start >= static_cast<std::ptrdiff_t>(detail::kBlockUnits)) {
        detail::ShortName shortName;
        const std::size_t length = detail::ReadShortName(start, shortName);
        const CTagInfo* const tag = length != 0 ? m_index.Find(shortName) : nullptr;
        if (tag != nullptr)
            return {tag, start, start + length - 1, start + length - 1};
    }
    const wchar_t* const bracket = detail::FindTagBracket(start + 1, end);
    if (bracket == end || *bracket == L'<')
        return {nullptr, start, bracket, bracket};
    const auto length = static_cast<std::size_t>(bracket + 1 - start);
    const std::size_t nameEnd = detail::ReadTagName(start, length, m_longestName, name);
    if (nameEnd == detail::kTagTooLong)
        return {nullptr, start, bracket, bracket};
    return {FindName(name), start, std::min(start + nameEnd, bracket), bracket};
}

CTagInfo* CTags::FindName(const CString& name) const
{
    return FindIn(m_byName, name);
}

CTagInfo* CTags::FindId(unsigned int tagClass, unsigned int tagId) const
{
    return FindIn(m_byId, detail::TagKey{tagClass, tagId});
}

int CTags::Register(const CTagInfo& tag)
{
    m_longestName = std::max(m_longestName, static_cast<std::size_t>(tag.m_tagName.GetLength()));
    if (CTagInfo* const known = FindName(tag.m_tagName)) {
        CTagInfo copy(tag);
        if (!Keys::Equal(KeyOf(*known), KeyOf(tag)))
            UnregisterId(*known);
        *known = std::move(copy);
        RegisterId(*known);
        return 0;
    }
    OwnedTag made = NewTag(tag);
    m_index.MakeRoom();
    if (m_byName.Insert(made->m_tagName, made.get()) == 0)
        detail::ThrowMemory();
    if (!RegisterId(*made)) {
        m_byName.Remove(made->m_tagName);
        detail::ThrowMemory();
    }
    m_index.Insert(*made.release());
    return 1;
}

bool CTags::RegisterId(CTagInfo& tag)
{
    m_byId.Insert(KeyOf(tag), &tag);
    return FindIn(m_byId, KeyOf(tag)) == &tag;
}

/// Gives the id of `tag` to another name that has it, where there is one.
void CTags::UnregisterId(const CTagInfo& tag)
{
    const detail::TagKey key = KeyOf(tag);
    if (FindId(tag.m_tagClass, tag.m_tagId) != &tag)
        return;
    if (CTagInfo* const other = FindOther(tag))
        m_byId.Insert(key, other);
    else
        m_byId.Remove(key);
}

/// Another tag with the class and id of `tag`, or null.
CTagInfo* CTags::FindOther(const CTagInfo& tag) const
{
    CTagInfo* found = nullptr;
    if (m_byName.GetCount() == m_byId.GetCount())
        return found; // every tag has an id of its own
    ForEach(m_byName, [&](const CString&, CTagInfo* other) {
        if (other != &tag && Keys::Equal(KeyOf(*other), KeyOf(tag)))
            found = other;
    });
    return found;
}

void CTags::RemoveAll()
{
    ForEach(m_byName, [](const CString&, CTagInfo* tag) { delete tag; });
    m_byName.Clear();
    m_byId.Clear();
    m_index.Clear();
}

/// Copies the tables, slot for slot, into this engine, which has no tags; throws CMemoryException and leaves
/// it so.
void CTags::CopyTags(const CTags& other)
{
    List<OwnedTag> copies;
    ForEach(other.m_byName, [&](const CString&, const CTagInfo* tag) { copies.push_back(NewTag(*tag)); });
    detail::TagIndex index;
    for (const OwnedTag& copy : copies) {
        index.MakeRoom();
        index.Insert(*copy);
    }
    m_byName = other.m_byName;
    m_byId = other.m_byId;
    if (m_byName.GetCount() != other.m_byName.GetCount() || m_byId.GetCount() != other.m_byId.GetCount()) {
        m_byName.Clear();
        m_byId.Clear();
        detail::ThrowMemory();
    }
    // Only values change from here on: nothing fails, and the tables own what they hold.
    for (OwnedTag& copy : copies) {
        m_byName.Insert(copy->m_tagName, copy.get());
        copy.release();
    }
    ForEach(other.m_byId, [&](const detail::TagKey& key, const CTagInfo* tag) {
        m_byId.Insert(key, FindName(tag->m_tagName));
    });
    m_index = std::move(index);
    m_longestName = other.m_longestName;
}
