#include "examples/vakconvert/Conversion.h"

#include "examples/vakconvert/ContentIo.h"
#include "examples/vakconvert/WorkFolder.h"
#include "files/FileIo.h"
#include "files/FilePath.h"
#include "files/IoPlugins.h"

#include <chrono>
#include <utility>
#include <vector>

namespace {

CString Counted(std::size_t count, const wchar_t* one, const wchar_t* many)
{
    CString text;
    text.Format(L"%I64u %s", static_cast<ULONGLONG>(count), count == 1 ? one : many);
    return text;
}

CString Describe(const Content& content)
{
    CString text;
    if (!content.isMesh) {
        if (!content.image.IsConsistent())
            return L"no picture";
        static constexpr const wchar_t* kChannels[] = {L"grey", L"grey+alpha", L"RGB", L"RGBA"};
        text.Format(L"%u x %u %s", content.image.width, content.image.height,
                    kChannels[content.image.channels - 1]);
        return text;
    }
    text = Counted(content.mesh.positions.size(), L"vertex", L"vertices") + L", " +
           Counted(content.mesh.faceSizes.size(), L"face", L"faces");
    if (content.mesh.groups.size() > 1)
        text += L", " + Counted(content.mesh.groups.size(), L"group", L"groups");
    if (!content.mesh.materials.empty())
        text += L", " + Counted(content.mesh.materials.size(), L"material", L"materials");
    return text;
}

/// Makes the result as `path`. Returns the name of a file of it, which is not made then, whose place is
/// taken; else an empty text.
CString MakeAs(const CString& path, const Source& source, Target& target, Content& content,
               ResultNames& names, Outcome& outcome)
{
    const int nameStart = path.ReverseFind(L'\\') + 1;
    const CString folder = path.Left(nameStart);
    WorkFolder work(folder);
    if (!work.IsReady()) {
        outcome.failure = L"nothing can be written in " + folder;
        return {};
    }
    CFileIo output(CFileNameSpec(work.Path() + path.Mid(nameStart), target.fileClass),
                   (target.asks ? 0u : FILE_PARSER_SILENT) | FILE_PARSER_NO_PREFERENCES, nullptr);
    output.GetCustomData() = target.parameters;
    outcome.failure = RunParser(output, content);
    if (std::exchange(target.asks, false)) {
        target.parameters = output.GetCustomData();
        target.isGivenUp = output.GetIoError() == IO_FILE_ABORTED;
    }
    if (!outcome.failure.IsEmpty())
        return {};
    output.CloseParser();
    const std::vector<CString> files = work.Files(path.Mid(nameStart));
    for (const CString& file : files) {
        if (!names.IsTaken(folder + file, source.path))
            continue;
        outcome.failure = file + L" is in the way";
        return file;
    }
    outcome.bytes = work.MoveOut(files, names.MayReplace(), outcome.failure);
    if (!outcome.failure.IsEmpty())
        return {};
    for (const CString& file : files)
        names.Take(folder + file);
    outcome.result = path;
    return {};
}

void ConvertInto(const Source& source, Target& target, const CString& destination, NameTemplate& stems,
                 ResultNames& names, Outcome& outcome)
{
    Content content;
    outcome.failure = LoadContent(source.path, content);
    if (!outcome.failure.IsEmpty())
        return;
    outcome.contents = Describe(content);
    outcome.family = target.family;
    outcome.vertices = content.mesh.positions.size();
    outcome.faces = content.mesh.faceSizes.size();

    const CString wanted = destination + stems.Stem(source, target, content) + target.extension;
    CString before;
    for (;;) {
        const CString path = names.FreePath(wanted, source.path);
        const CString taken = MakeAs(path, source, target, content, names, outcome);
        // A file that has the same name in every attempt does not get another one by the next.
        if (taken.IsEmpty() || taken == before)
            return;
        before = taken;
        names.Take(path);
    }
}

} // namespace

CString LoadModel(const CString& path, Mesh& mesh)
{
    Content content;
    CFileIo input(CFileNameSpec(path, 0), FILE_PARSER_LOADING | FILE_PARSER_SILENT, nullptr);
    content.isMesh = (input.GetKindOf() & kIoPlugin3D) != 0;
    const CString failure = content.isMesh ? RunParser(input, content) : CString(L"no model");
    mesh = failure.IsEmpty() ? std::move(content.mesh) : Mesh();
    return failure;
}

Outcome Convert(const Source& source, Target& target, const CString& destination, NameTemplate& stems,
                ResultNames& names)
{
    const auto start = std::chrono::steady_clock::now();
    Outcome outcome;
    outcome.source = ShownName(source);
    ConvertInto(source, target, destination, stems, names, outcome);
    outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return outcome;
}
