#include "examples/vakconvert/Tags.h"

#include "core/HashTable.h"
#include "examples/vakconvert/TagTexts.h"
#include "files/FilePath.h"
#include "files/FileText.h"
#include "files/IoPlugins.h"
#include "framework/base/Exception.h"
#include "framework/base/StringArray.h"

#include <algorithm>
#include <exception>

namespace {

constexpr unsigned int kNameClass = 'VCNM';
constexpr unsigned int kReportClass = 'VCRP';
constexpr unsigned int kList = TAGDATA_STRINGARRAY | vak::kTagNotComparable;

/// One tag. `give` fills a value; it leaves the value empty where the tag has none.
template <class Facts>
struct Row
{
    const wchar_t* name;
    unsigned int flags;
    unsigned int id;
    const wchar_t* friendlyName;
    unsigned int classNameId;
    void (*give)(const Facts& facts, CTagValue& value);
};

/// The callback of all tags of a table, whose data are the facts.
template <class Facts, const auto& Rows>
int Answer(CTagInfo& tag, CTagValue& value, _TAGDATA_INFO)
{
    const auto& facts = *static_cast<const Facts*>(tag.GetCallbackData());
    value.Init();
    try {
        for (const Row<Facts>& row : Rows) {
            if (row.id == tag.GetTagID())
                row.give(facts, value);
        }
    } catch (CException* failure) {
        failure->Delete();
        value.Init();
    } catch (const std::exception&) {
        value.Init();
    }
    return !value.IsEmpty();
}

template <class Facts, const auto& Rows>
void Register(CTags& tags, unsigned int tagClass, const Facts& facts)
{
    for (const Row<Facts>& row : Rows)
        tags.InsertTag(row.name, row.flags, tagClass, row.id, CString(row.friendlyName), row.classNameId,
                       &Answer<Facts, Rows>, const_cast<Facts*>(&facts));
}

/// @name Names
/// @{

using Count = std::size_t (*)(const Content& content);

/// Numbers of the other family have no value.
template <bool OfMesh>
void GiveCount(const FileFacts& facts, CTagValue& value, Count count)
{
    if (facts.isMesh != OfMesh)
        return;
    if (facts.content == nullptr)
        value.SetText(CString(kSomeDigits));
    else
        value.SetUInt(static_cast<unsigned int>(count(*facts.content)));
}

void GiveDate(const FileFacts& facts, CTagValue& value)
{
    if (facts.content == nullptr)
        value.SetText(CString(kSomeText));
    else
        value.SetDate(facts.date);
}

void GiveIndex(const FileFacts& facts, CTagValue& value)
{
    if (facts.content == nullptr)
        value.SetText(CString(kSomeDigits));
    else
        value.SetUInt(facts.index);
}

constexpr Row<FileFacts> kNameTags[] = {
    {L"<file>", TAGDATA_FILENAME, 'FILE', L"Source file", IDS_CLASS_FILE,
     [](const FileFacts& facts, CTagValue& value) { value.SetFilename(facts.path); }},
    {L"<kind>", TAGDATA_TEXT, 'KIND', L"Kind of the result", IDS_CLASS_FILE,
     [](const FileFacts& facts, CTagValue& value) { value.SetText(facts.kind); }},
    {L"<index>", TAGDATA_UINT, 'INDX', L"Number of the file in this run", IDS_CLASS_RUN, GiveIndex},
    {L"<date>", TAGDATA_DATE, 'DATE', L"Date of this run", IDS_CLASS_RUN, GiveDate},
    {L"<vertices>", TAGDATA_UINT, 'VERT', L"Vertices", IDS_CLASS_MODEL,
     [](const FileFacts& facts, CTagValue& value) {
         GiveCount<true>(facts, value, [](const Content& c) { return c.mesh.positions.size(); });
     }},
    {L"<faces>", TAGDATA_UINT, 'FACE', L"Faces", IDS_CLASS_MODEL,
     [](const FileFacts& facts, CTagValue& value) {
         GiveCount<true>(facts, value, [](const Content& c) { return c.mesh.faceSizes.size(); });
     }},
    {L"<groups>", TAGDATA_UINT, 'GRPS', L"Groups", IDS_CLASS_MODEL,
     [](const FileFacts& facts, CTagValue& value) {
         GiveCount<true>(facts, value, [](const Content& c) { return c.mesh.groups.size(); });
     }},
    {L"<materials>", TAGDATA_UINT, 'MATL', L"Materials", IDS_CLASS_MODEL,
     [](const FileFacts& facts, CTagValue& value) {
         GiveCount<true>(facts, value, [](const Content& c) { return c.mesh.materials.size(); });
     }},
    {L"<width>", TAGDATA_UINT, 'WDTH', L"Width in pixels", IDS_CLASS_IMAGE,
     [](const FileFacts& facts, CTagValue& value) {
         GiveCount<false>(facts, value, [](const Content& c) -> std::size_t { return c.image.width; });
     }},
    {L"<height>", TAGDATA_UINT, 'HGHT', L"Height in pixels", IDS_CLASS_IMAGE,
     [](const FileFacts& facts, CTagValue& value) {
         GiveCount<false>(facts, value, [](const Content& c) -> std::size_t { return c.image.height; });
     }},
};
/// @}

/// @name Reports
/// @{

bool IsConverted(const Outcome& outcome)
{
    return outcome.failure.IsEmpty();
}

bool HasFailed(const Outcome& outcome)
{
    return !IsConverted(outcome);
}

/// The sum of `part` over what was converted.
template <class Part>
ULONGLONG Sum(const RunFacts& facts, Part part)
{
    ULONGLONG sum = 0;
    for (const Outcome& outcome : facts.outcomes) {
        if (IsConverted(outcome))
            sum += part(outcome);
    }
    return sum;
}

void SetCount(CTagValue& value, ULONGLONG count)
{
    value.SetUInt(static_cast<unsigned int>(std::min<ULONGLONG>(count, 0xFFFFFFFF)));
}

void GiveWritten(const RunFacts& facts, CTagValue& value)
{
    const ULONGLONG bytes = Sum(facts, [](const Outcome& outcome) { return outcome.bytes; });
    // The value's setter takes 32 bits.
    if (bytes <= 0xFFFFFFFF)
        value.SetFileSize(static_cast<unsigned int>(bytes));
    else
        value.SetText(fileGetSizeText(bytes));
}

void GiveLargest(const RunFacts& facts, CTagValue& value)
{
    const auto largest =
        std::max_element(facts.outcomes.begin(), facts.outcomes.end(),
                         [](const Outcome& a, const Outcome& b) { return a.bytes < b.bytes; });
    if (largest != facts.outcomes.end() && !largest->result.IsEmpty())
        value.SetFilename(largest->result);
}

/// A list without elements is no value, so that what depends on it goes.
template <class Wanted, class Line>
void GiveList(const RunFacts& facts, CTagValue& value, Wanted isWanted, Line line)
{
    CStringArray lines;
    for (const Outcome& outcome : facts.outcomes) {
        if (isWanted(outcome))
            lines.Add(line(outcome));
    }
    if (!lines.IsEmpty())
        value.SetStringArray(lines);
}

CString ConvertedLine(const Outcome& outcome)
{
    return outcome.source + L" -> " + fileStripPath(outcome.result) + L" (" + outcome.contents + L"; " +
           fileGetSizeText(outcome.bytes) + L")";
}

CString FailedLine(const Outcome& outcome)
{
    CString why = outcome.failure;
    why.Replace(L"\r", L"");
    why.Replace(L"\n", L" ");
    return outcome.source + L": " + why;
}

constexpr Row<RunFacts> kReportTags[] = {
    {L"<date>", TAGDATA_DATE, 'DATE', L"Date", IDS_CLASS_RUN,
     [](const RunFacts& facts, CTagValue& value) { value.SetDate(facts.date); }},
    {L"<duration>", TAGDATA_DURATION, 'DURA', L"Time taken", IDS_CLASS_RUN,
     [](const RunFacts& facts, CTagValue& value) { value.SetDuration(static_cast<float>(facts.seconds)); }},
    {L"<destination>", TAGDATA_FILENAME, 'DEST', L"Destination folder", IDS_CLASS_RUN,
     [](const RunFacts& facts, CTagValue& value) {
         if (!facts.destination.IsEmpty())
             value.SetFilename(facts.destination);
     }},
    {L"<files>", TAGDATA_UINT, 'FILS', L"Number of files", IDS_CLASS_RUN,
     [](const RunFacts& facts, CTagValue& value) { SetCount(value, facts.outcomes.size()); }},
    {L"<passedover>", TAGDATA_UINT, 'PASS', L"Number of files passed over", IDS_CLASS_RUN,
     [](const RunFacts& facts, CTagValue& value) { SetCount(value, facts.passedOver); }},
    {L"<converted>", TAGDATA_UINT, 'CONV', L"Number of files converted", IDS_CLASS_RESULTS,
     [](const RunFacts& facts, CTagValue& value) {
         SetCount(value, Sum(facts, [](const Outcome&) { return 1; }));
     }},
    {L"<failed>", TAGDATA_UINT, 'FAIL', L"Number of files that failed", IDS_CLASS_RESULTS,
     [](const RunFacts& facts, CTagValue& value) {
         SetCount(value, facts.outcomes.size() - Sum(facts, [](const Outcome&) { return 1; }));
     }},
    {L"<models>", TAGDATA_UINT, 'MODL', L"Number of models converted", IDS_CLASS_RESULTS,
     [](const RunFacts& facts, CTagValue& value) {
         SetCount(value, Sum(facts, [](const Outcome& o) { return (o.family & kIoPlugin3D) != 0; }));
     }},
    {L"<images>", TAGDATA_UINT, 'IMGS', L"Number of images converted", IDS_CLASS_RESULTS,
     [](const RunFacts& facts, CTagValue& value) {
         SetCount(value, Sum(facts, [](const Outcome& o) { return (o.family & kIoPluginBitmaps) != 0; }));
     }},
    {L"<vertices>", TAGDATA_UINT, 'VERT', L"Vertices in all models", IDS_CLASS_RESULTS,
     [](const RunFacts& facts, CTagValue& value) {
         SetCount(value, Sum(facts, [](const Outcome& o) { return o.vertices; }));
     }},
    {L"<faces>", TAGDATA_UINT, 'FACE', L"Faces in all models", IDS_CLASS_RESULTS,
     [](const RunFacts& facts, CTagValue& value) {
         SetCount(value, Sum(facts, [](const Outcome& o) { return o.faces; }));
     }},
    {L"<written>", TAGDATA_FILESIZE, 'WRTN', L"Size of all results", IDS_CLASS_RESULTS, GiveWritten},
    {L"<largest>", TAGDATA_FILENAME, 'LRGS', L"Largest result", IDS_CLASS_RESULTS, GiveLargest},
    {L"<convertedlist>", kList, 'CLST', L"List of files converted", IDS_CLASS_RESULTS,
     [](const RunFacts& facts, CTagValue& value) { GiveList(facts, value, IsConverted, ConvertedLine); }},
    {L"<failedlist>", kList, 'FLST', L"List of files that failed", IDS_CLASS_RESULTS,
     [](const RunFacts& facts, CTagValue& value) { GiveList(facts, value, HasFailed, FailedLine); }},
};
/// @}

bool LooksLikeTag(const CString& text)
{
    const int open = text.Find(L'(');
    const CString name = open < 0 ? text.Mid(1, text.GetLength() - 2) : text.Mid(1, open - 1);
    const auto isLetter = [](wchar_t unit) {
        return (unit >= L'a' && unit <= L'z') || (unit >= L'A' && unit <= L'Z') || unit >= 0xC0;
    };
    const auto isPart = [&](wchar_t unit) {
        return isLetter(unit) || (unit >= L'0' && unit <= L'9') || unit == L'_' || unit == L'-';
    };
    const wchar_t* const begin = name.GetString();
    return isLetter(*begin) && std::all_of(begin, begin + name.GetLength(), isPart);
}

/// Asked about a tag whose last parameter nobody knows, the engine names the tag alone.
bool HasUnknownParameter(const CTags& tags, const CString& tag)
{
    const int open = tag.Find(L'(');
    return open >= 0 && tags.GetTagFriendlyName(tag) == tags.GetTagFriendlyName(tag.Left(open) + L">");
}

} // namespace

void RegisterNameTags(CTags& tags, const FileFacts& facts)
{
    Register<FileFacts, kNameTags>(tags, kNameClass, facts);
}

void RegisterReportTags(CTags& tags, const RunFacts& facts)
{
    Register<RunFacts, kReportTags>(tags, kReportClass, facts);
}

const CTags& ConditionalTags()
{
    static CTags tags;
    CTags::InitTags(tags);
    return tags;
}

std::vector<TagProblem> FindTagProblems(const CTags& tags, const CString& text)
{
    std::vector<TagProblem> problems;
    CHashTable<CString> told;
    int open = -1;
    int line = 1;
    int lineStart = 0;
    for (int at = 0; at < text.GetLength(); ++at) {
        const wchar_t unit = text[at];
        if (unit == L'\n' || (unit == L'\r' && text[at + 1] != L'\n')) {
            ++line;
            lineStart = at + 1;
        }
        if (unit == L'<')
            open = at;
        if (unit == L'\n' || unit == L'\r')
            open = -1;
        if (unit != L'>' || open < 0)
            continue;
        const CString tag = text.Mid(open, at + 1 - open);
        const int column = open - lineStart + 1;
        open = -1;
        const bool isKnown = tags.IsTagValid(tag) != 0;
        const bool isProblem = isKnown ? HasUnknownParameter(tags, tag) : LooksLikeTag(tag);
        if (isProblem && told.Insert(CString(tag).MakeLower()) != 0)
            problems.push_back({tag, line, column, isKnown});
    }
    return problems;
}

CString TextOf(const TagProblem& problem)
{
    CString text;
    text.Format(L"line %d, column %d: ", problem.line, problem.column);
    return text + problem.tag +
           (problem.isKnown ? L" has a parameter that is not known" : L" is not known and stays as it is");
}
