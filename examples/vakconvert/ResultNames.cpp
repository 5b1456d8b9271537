#include "examples/vakconvert/ResultNames.h"

#include "files/FileKinds.h"
#include "files/FileNames.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"

#include <algorithm>
#include <utility>

namespace {

CString Key(CString path)
{
    return path.MakeLower();
}

CString Numbered(const CString& path, ULONGLONG number)
{
    CString name = fileRemoveExtension(path);
    name.AppendFormat(L" (%I64u)", number);
    return name + fileGetExtension(path);
}

/// The path without the number that a result gets when its name is taken; unchanged when it has none.
CString WithoutNumber(const CString& path)
{
    const CString stem = fileRemoveExtension(path);
    const int open = stem.ReverseFind(L'(');
    const CString number = stem.Mid(open + 1, stem.GetLength() - open - 2);
    const bool isOne = open > 1 && stem[open - 1] == L' ' && stem.Right(1) == L")" && !number.IsEmpty() &&
                       number.SpanIncluding(L"0123456789") == number;
    return isOne ? stem.Left(open - 1) + fileGetExtension(path) : path;
}

/// What the run will make, lower-case.
struct Planned
{
    CHashTable<CString> anew;    ///< from a source of another place or name
    CHashTable<CString> inPlace; ///< from the very file

    /// A result whose name is not known yet, and its source.
    struct Guess
    {
        CString result;
        CString source;
    };
    std::vector<Guess> guesses;

    bool IsGuessed(const CString& path, const CString& bare) const
    {
        return std::any_of(guesses.begin(), guesses.end(), [&](const Guess& guess) {
            return guess.source != path &&
                   (NameMatches(guess.result, path) || (bare != path && NameMatches(guess.result, bare)));
        });
    }
};

Planned Plan(const std::vector<Source>& sources, const std::vector<Target>& targets, Batch& batch,
             NameTemplate& stems)
{
    Planned planned;
    for (const Source& source : sources) {
        const Target* target = TargetOf(source, targets);
        if (target == nullptr)
            continue;
        const CString own = Key(source.path);
        const CString result =
            Key(batch.FolderFor(source) + stems.Guess(source, *target) + target->extension);
        if (IsOpenGuess(result))
            planned.guesses.push_back({result, own});
        else
            (result == own ? planned.inPlace : planned.anew).Insert(result);
    }
    return planned;
}

} // namespace

ResultNames::ResultNames(const std::vector<Source>& sources, bool overwrite) : m_overwrite(overwrite)
{
    for (const Source& source : sources)
        m_sources.Insert(Key(source.path));
}

CString ResultNames::FreePath(const CString& path, const CString& source)
{
    const CString key = Key(path);
    ULONGLONG number = 0;
    // Only a source may have its own path; all others go on behind the last number.
    if (key != Key(source))
        m_numbers.Find(key, number);
    CString free = number == 0 ? path : Numbered(path, number);
    while (IsTaken(free, source))
        free = Numbered(path, ++number);
    m_numbers.Insert(key, number);
    return free;
}

void ResultNames::Take(const CString& path)
{
    m_results.Insert(Key(path));
}

bool ResultNames::IsTaken(const CString& path, const CString& source) const
{
    const CString key = Key(path);
    const bool isForeign = m_sources.IsFound(key) && key != Key(source);
    return isForeign || m_results.IsFound(key) || (!m_overwrite && fileExists(path));
}

const Target* TargetOf(const Source& source, const std::vector<Target>& targets)
{
    const unsigned int family = fileGetKindOf(source.path);
    for (const Target& target : targets) {
        if ((target.family & family) != 0)
            return &target;
    }
    return nullptr;
}

Target* TargetOf(const Source& source, std::vector<Target>& targets)
{
    return const_cast<Target*>(TargetOf(source, std::as_const(targets)));
}

std::size_t PassOverResults(std::vector<Source>& sources, const std::vector<Target>& targets, Batch& batch,
                            NameTemplate& stems, bool overwrite)
{
    const Planned planned = Plan(sources, targets, batch, stems);
    const auto isResult = [&](const Source& source) {
        const CString path = Key(source.path);
        const CString bare = WithoutNumber(path);
        if (source.named || TargetOf(source, targets) == nullptr)
            return false;
        return planned.anew.IsFound(path) || planned.anew.IsFound(bare) || planned.IsGuessed(path, bare) ||
               (!overwrite && bare != path && planned.inPlace.IsFound(bare));
    };
    return std::erase_if(sources, isResult);
}
