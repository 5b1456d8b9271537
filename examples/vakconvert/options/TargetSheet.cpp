#include "examples/vakconvert/options/TargetSheet.h"

#include "examples/vakconvert/options/Names.h"
#include "examples/vakconvert/options/NamesIds.h"
#include "files/FileIo.h"
#include "framework/base/Application.h"

using vak::FieldKind;

NamesPage::NamesPage() : CCustomPropertyPage(IDD_NAMES)
{
    GetDialogPart().AddFields(
        {{.control = IDC_NAME, .property = kNameTemplate, .kind = FieldKind::Text},
         {.control = IDC_PLACE, .property = kNamePlace, .kind = FieldKind::RadioIndex, .minimum = 0},
         {.control = IDC_SUBFOLDER, .property = kNameSubfolder, .kind = FieldKind::Text},
         {.control = IDC_DESTINATION, .property = kNameDestination, .kind = FieldKind::Text},
         {.control = IDC_OVERWRITE, .property = kNameOverwrite, .kind = FieldKind::Bool}});
    for (const int control : {IDC_NAME, IDC_NAME_HINT, IDC_PLACES, IDC_SUBFOLDER, IDC_DESTINATION})
        GetDialogPart().AddAnchor(control, vak::AnchorLeft | vak::AnchorTop | vak::AnchorRight);
}

TargetSheet::TargetSheet(const Target& target)
    : OptionsSheet(target.fileClass, target.extension, target.options, nullptr)
{
    AddPage(&m_names);
    GetData() = target.parameters;
    const CCustomData names = LoadNames();
    constexpr int kReplace = 2;
    GetData().Copy(&names, kReplace);
}

int TargetSheet::SaveDataFromPages(CCustomData& data)
{
    if (OptionsSheet::SaveDataFromPages(data) == 0)
        return 0;
    const CString problem = CheckNames(data);
    if (problem.IsEmpty())
        return 1;
    SetActivePage(&m_names);
    AfxMessageBox(problem);
    return 0;
}

int TargetSheet::OnApplyOrOK(int)
{
    const CString problem =
        SaveTo(CFileIo(0u, FILE_PARSER_SILENT, nullptr).GetPreferencesFilePath(), GetData());
    if (problem.IsEmpty())
        return 1;
    AfxMessageBox(problem);
    return 0;
}

void TargetSheet::SetDefaults(CCustomData& data) const
{
    data = NamesOf({});
    OptionsSheet::SetDefaults(data);
}

CString TargetSheet::SaveTo(const CString& path, const CCustomData& data) const
{
    CCustomData parameters(data);
    for (const unsigned int id :
         {kNameTemplate, kNamePlace, kNameSubfolder, kNameDestination, kNameOverwrite})
        parameters.RemoveCustom(id);
    CString problem = OptionsSheet::SaveTo(path, parameters);
    if (problem.IsEmpty() && !KeepNames(data, path))
        problem = L"Impossible d'écrire le fichier " + path;
    return problem;
}
