#include "tags/detail/TagParameterTable.h"

#include "core/HashMap.h"
#include "resources/Ids.h"
#include "tags/detail/TagBuffer.h"

#include <memory>

namespace vak::detail {

namespace {

constexpr unsigned int kPath = TAGDATA_FILENAME | kTagNoParameters;
constexpr unsigned int kText = TAGDATA_TEXT | kTagNoParameters;
constexpr unsigned int kKindOfFile = kText | kTagNotComparable;
constexpr unsigned int kSize = TAGDATA_FILESIZE | kTagNoParameters;
// A date is refined further, though not in a restricted menu.
constexpr unsigned int kDate = TAGDATA_DATE | kTagNoParametersRestricted;

constexpr UINT Name(UINT row)
{
    return IDS_TAG_PARAMETER + row;
}

constexpr UINT Example(UINT row)
{
    return IDS_TAG_EXAMPLE + row;
}

constexpr TagParameter kParameters[] = {
    {L"fullpath", TAGDATA_FILENAME, kPath, Name(0), Example(0)},
    {L"ext", TAGDATA_FILENAME, kPath, Name(1), Example(1)},
    {L"kind", TAGDATA_FILENAME, kKindOfFile, Name(2), Example(2)},
    {L"path", TAGDATA_FILENAME, kPath, Name(3), Example(3)},
    {L"size", TAGDATA_FILENAME, kSize, Name(4), 0},
    {L"shortname", TAGDATA_FILENAME, kPath, Name(5), Example(5)},
    {L"name", TAGDATA_FILENAME, kPath, Name(6), Example(6)},
    {L"topdir", TAGDATA_FILENAME, kPath, Name(7), Example(7)},
    {L"root", TAGDATA_FILENAME, kPath, Name(8), Example(8)},
    {L"createdate", TAGDATA_FILENAME, kDate, Name(9), 0},
    {L"lastwritedate", TAGDATA_FILENAME, kDate, Name(10), 0},
    {L"d", TAGDATA_DATE, kText, Name(11), 0},
    {L"h", TAGDATA_DATE, kText, Name(12), 0},
    {L"d+h", TAGDATA_DATE, kText, Name(13), 0},
    {L"d+t", TAGDATA_DATE, kText, Name(14), 0},
    {L"d+h+t", TAGDATA_DATE, kText, Name(15), 0},
};

using ParameterMap = CHashMap<CString, const TagParameter*, const CString&>;

const ParameterMap& TheParameters()
{
    // Never destroyed: hosts ask until the very end.
    static const ParameterMap* const parameters = [] {
        std::unique_ptr<ParameterMap> map;
        for (const TagParameter& row : kParameters) {
            // One that lacks a row for want of memory would lack it for ever; the next call makes another.
            if (Made(map).Insert(row.name, &row) == 0)
                ThrowMemory();
        }
        return map.release();
    }();
    return *parameters;
}

} // namespace

std::span<const TagParameter> TagParameters()
{
    return kParameters;
}

const TagParameter* FindTagParameter(const CString& name)
{
    const TagParameter* row = nullptr;
    TheParameters().Find(name, row);
    return row;
}

} // namespace vak::detail
