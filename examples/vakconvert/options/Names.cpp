#include "examples/vakconvert/options/Names.h"

#include "files/FileIo.h"
#include "files/FilePath.h"

namespace {

constexpr unsigned int kHostKey = 'vakc', kNamesKey = 'NAME';

CString Text(const CCustomData& data, unsigned int id)
{
    CString text;
    data.GetString(id, text, L"");
    return text;
}

int Number(const CCustomData& data, unsigned int id)
{
    int number = 0;
    data.GetInt(id, number, 0);
    return number;
}

bool Truth(const CCustomData& data, unsigned int id)
{
    int truth = 0;
    data.GetBool(id, truth, 0);
    return truth != 0;
}

bool IsAbsolute(const CString& path)
{
    return path.Mid(1, 2) == L":\\" || path.Left(2) == L"\\\\";
}

CString Folder(CString text)
{
    text.Replace(L'/', L'\\');
    fileSlashTerminate(text);
    return text;
}

} // namespace

CCustomData NamesOf(const CCustomData& data)
{
    CCustomData names;
    names.SetString(kNameTemplate, Text(data, kNameTemplate));
    names.SetInt(kNamePlace, Number(data, kNamePlace));
    names.SetString(kNameSubfolder, Text(data, kNameSubfolder));
    names.SetString(kNameDestination, Text(data, kNameDestination));
    names.SetBool(kNameOverwrite, Truth(data, kNameOverwrite) ? 1 : 0);
    return names;
}

CCustomData LoadNames()
{
    CCustomData kept;
    kept.LoadFromPrefs(CFileIo(0u, FILE_PARSER_SILENT, nullptr).GetPreferencesFilePath(), kHostKey,
                       kNamesKey);
    return NamesOf(kept);
}

bool KeepNames(const CCustomData& data, const CString& path)
{
    return NamesOf(data).SaveToPrefs(path, kHostKey, kNamesKey) != 0;
}

CString CheckNames(const CCustomData& data)
{
    switch (Number(data, kNamePlace)) {
    case kBesideSources:
        return {};
    case kInSubfolder:
        if (SubfolderName(Text(data, kNameSubfolder)).IsEmpty())
            return L"Le sous-dossier doit être un nom au-dessous du dossier de chaque source.";
        return {};
    case kInDestination:
        if (!IsAbsolute(Folder(Text(data, kNameDestination))))
            return L"Le dossier doit être un chemin complet, comme C:\\Résultats.";
        return {};
    default:
        return L"La destination n'est pas connue.";
    }
}

CString ApplyNames(Settings& settings)
{
    const CCustomData names = LoadNames();
    const CString problem = CheckNames(names);
    if (!problem.IsEmpty())
        return problem;
    if (!settings.nameGiven)
        settings.name = Text(names, kNameTemplate);
    settings.overwrite = !settings.noOverwrite && (settings.overwrite || Truth(names, kNameOverwrite));
    const bool saysWhere = settings.beside || !settings.destination.IsEmpty() || !settings.zip.IsEmpty() ||
                           !settings.subfolder.IsEmpty();
    if (!saysWhere && Number(names, kNamePlace) == kInSubfolder)
        settings.subfolder = SubfolderName(Text(names, kNameSubfolder));
    if (!saysWhere && Number(names, kNamePlace) == kInDestination)
        settings.destination = Folder(Text(names, kNameDestination));
    return {};
}
