#include "examples/vakconvert/ResultArchive.h"

#include "examples/vakconvert/Archives.h"
#include "examples/vakconvert/Batch.h"
#include "examples/vakconvert/Failure.h"
#include "examples/vakconvert/Sources.h"
#include "files/FileNames.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/ZipArchive.h"

#include <algorithm>

namespace {

CString FolderOf(const CString& path)
{
    return path.Left(path.ReverseFind(L'\\') + 1);
}

/// The file, an archive perhaps, that the path runs through as if it were a folder; empty when there is none.
CString FileOnTheWay(const CString& path)
{
    for (int end = path.Find(L'\\'); end >= 0; end = path.Find(L'\\', end + 1)) {
        const CString part = path.Left(end);
        if (fileExists(part) && !fileIsDirectory(part, 1))
            return part;
    }
    return {};
}

} // namespace

ResultArchive::ResultArchive(const Settings& settings) : m_settings(settings)
{
    if (settings.zip.IsEmpty())
        return;
    m_work.emplace(TemporaryFolder());
    m_settings.destination = m_work->Path();
}

CString ResultArchive::Problem() const
{
    if (!m_work)
        return {};
    if (!m_work->IsReady())
        return L"nothing can be written in " + TemporaryFolder();
    if (fileIsDirectory(m_settings.zip))
        return m_settings.zip + L" is a folder";
    if (const CString file = FileOnTheWay(m_settings.zip); !file.IsEmpty())
        return file + L" is a file: no archive can be made below it";
    Settings there = m_settings;
    there.destination = FolderOf(m_settings.zip);
    return Batch(there).Problem();
}

CString ResultArchive::FreePath() const
{
    const bool isSource =
        std::any_of(m_settings.sources.begin(), m_settings.sources.end(), [this](CString source) {
            CString inner;
            return Archives::Split(source, inner) && fileIsSameFile(source, m_settings.zip) != 0;
        });
    return m_settings.overwrite && !isSource ? m_settings.zip : fileCreateUniqueName(m_settings.zip, 1);
}

CString ResultArchive::Make(std::vector<Outcome>& outcomes) const
{
    const auto hasResult = [](const Outcome& outcome) { return !outcome.result.IsEmpty(); };
    if (!m_work || std::none_of(outcomes.begin(), outcomes.end(), hasResult))
        return {};
    const CString path = FreePath();
    const CString failure = Write(path);
    for (Outcome& outcome : outcomes) {
        if (!hasResult(outcome))
            continue;
        outcome.failure = failure;
        const CString name = outcome.result.Mid(m_work->Path().GetLength());
        outcome.result = failure.IsEmpty() ? path + L"\\" + name : CString();
        outcome.bytes = failure.IsEmpty() ? outcome.bytes : 0;
    }
    return failure.IsEmpty() ? path : CString();
}

CString ResultArchive::Write(const CString& path) const
{
    try {
        fileCreateDirectory(FolderOf(path), 1);
        CZipArchive zip;
        zip.Open(path, CZipArchive::zipCreate);
        Add(zip, L"");
        zip.Close();
    } catch (CException* failure) {
        return TakeText(failure, L"the archive cannot be written");
    }
    return {};
}

void ResultArchive::Add(CZipArchive& zip, const CString& below) const
{
    std::vector<CString> files;
    std::vector<CString> folders;
    ListFolder(m_work->Path() + below, files, folders);
    for (const CString& name : files)
        zip.Add(m_work->Path() + below + name, below + name);
    for (const CString& name : folders)
        Add(zip, below + name + L"\\");
}
