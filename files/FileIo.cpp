#include "files/FileIo.h"

#include "files/FileKinds.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/detail/PluginCall.h"
#include "framework/base/Application.h"
#include "framework/base/StringTable.h"
#include "framework/base/SystemFolder.h"
#include "resources/Ids.h"

#include <memory>

namespace {

constexpr unsigned int kPreferencesMask = 0xFFFF;
/// The second key of the preferences; the first is the class.
constexpr unsigned int kLoadParameters = 'LOAD';
constexpr unsigned int kSaveParameters = 'SAVE';
/// Where the class stands in parameters that are kept.
constexpr unsigned int kClassProperty = 'IOCL';

CString& HostPreferencesPath()
{
    static CString path;
    return path;
}

unsigned int DirectionKey(int loading)
{
    return loading ? kLoadParameters : kSaveParameters;
}

UINT TextIdOfCode(int loading, int code)
{
    switch (code) {
    case IO_FILE_SUCCESS:
        return loading ? IDS_IO_LOADED : IDS_IO_SAVED;
    case IO_FILE_OPEN_ERROR:
        return IDS_IO_OPEN_ERROR;
    case IO_FILE_UNKNOWN_TYPE:
        return IDS_IO_UNKNOWN_TYPE;
    case IO_FILE_BAD_FORMAT:
        return IDS_IO_BAD_FORMAT;
    case IO_FILE_NO_MEMORY:
        return IDS_IO_NO_MEMORY;
    case IO_FILE_DISK_FULL:
        return IDS_IO_DISK_FULL;
    case IO_FILE_ACCESS_DENIED:
        return IDS_IO_ACCESS_DENIED;
    case IO_FILE_NOTHING_TO_SAVE:
        return IDS_IO_NOTHING_TO_SAVE;
    case IO_FILE_UNSUPPORTED_OPTIONS:
        return IDS_IO_UNSUPPORTED_OPTIONS;
    case IO_FILE_EMPTY:
        return IDS_IO_EMPTY;
    case IO_FILE_ABORTED:
        return IDS_IO_ABORTED;
    default:
        return IDS_IO_UNKNOWN_ERROR;
    }
}

/// Whether a kind of that class is still made by that entry point. A CFileInfo keeps the entry point that it
/// was made with, and the plug-in may have been unloaded since.
bool IsRegistered(unsigned int fileClass, IoInitCallback entryPoint)
{
    CFileExt kind;
    return fileGetExtensionInfo(fileClass, kind) && kind.GetInitIoCallback() == entryPoint;
}

} // namespace

CFileIo::CFileIo(const CFileNameSpec& file, unsigned int flags, CWnd* parent)
    : m_flags(flags), m_parentWnd(parent)
{
    NameFile(file);
}

CFileIo::CFileIo(unsigned int fileClass, unsigned int flags, CWnd* parent)
    : m_flags(flags), m_parentWnd(parent)
{
    NameFile(CFileNameSpec(CString(), fileClass));
}

CFileIo::CFileIo(const CFileIo& other)
    : m_alternativeClass(other.m_alternativeClass), m_customData(other.m_customData),
      m_fileInfo(other.m_fileInfo), m_alternativeInfo(other.m_alternativeInfo), m_flags(other.m_flags),
      m_ioError(other.m_ioError), m_ioErrorText(other.m_ioErrorText), m_parentWnd(other.m_parentWnd)
{
}

CFileIo& CFileIo::operator=(const CFileIo& other)
{
    if (this == &other)
        return *this;
    CloseParser();
    m_alternativeClass = other.m_alternativeClass;
    m_customData = other.m_customData;
    m_fileInfo = other.m_fileInfo;
    m_alternativeInfo = other.m_alternativeInfo;
    m_flags = other.m_flags;
    m_ioError = other.m_ioError;
    m_ioErrorText = other.m_ioErrorText;
    m_parentWnd = other.m_parentWnd;
    return *this;
}

CFileIo::~CFileIo()
{
    CFileIo::CloseParser();
}

void CFileIo::CloseParser()
{
    CFileParser* const parser = m_parser;
    m_parser = nullptr;
    delete parser;
}

CFileParser* CFileIo::InitParser()
{
    CloseParser();
    m_ioErrorText.Empty();
    m_ioError = IO_FILE_SUCCESS;
    m_parser = CreateParser();
    if (!m_parser) {
        m_ioErrorText.Empty();
        m_ioError = IO_FILE_UNKNOWN_TYPE;
        return nullptr;
    }
    LoadIoParameters(IsLoading(), m_customData, GetClass());
    return m_parser;
}

CFileParser* CFileIo::CreateParser()
{
    if (GetParser() != vak::kFileCodePlugin)
        return nullptr;
    const IoInitCallback entryPoint = m_fileInfo.GetInitIoCallback();
    if (!entryPoint || !IsRegistered(m_fileInfo.GetClass(), entryPoint))
        return nullptr;
    IoParserRequest request{this, GetClass(), nullptr};
    int made = 0;
    vak::detail::CallPlugin([&] { made = entryPoint(IoPluginCreate, &request); });
    std::unique_ptr<CFileParser> parser(request.parser);
    return made ? parser.release() : nullptr;
}

const CFileInfo& CFileIo::InfoInUse() const
{
    return m_alternativeClass ? m_alternativeInfo : m_fileInfo;
}

unsigned int CFileIo::GetParser() const
{
    return IsLoading() ? InfoInUse().GetLoader() : InfoInUse().GetSaver();
}

unsigned int CFileIo::GetClass() const
{
    return InfoInUse().GetClass();
}

unsigned int CFileIo::GetKindOf() const
{
    return InfoInUse().GetKindOf();
}

unsigned int CFileIo::GetProperties() const
{
    return InfoInUse().GetProperties();
}

void CFileIo::SetAlternativeClass(unsigned int fileClass)
{
    m_alternativeClass = fileClass;
    NameAlternative();
}

void CFileIo::SetFlag(unsigned int flag, int on)
{
    m_flags = on ? m_flags | flag : m_flags & ~flag;
}

int CFileIo::IsFlagSet(unsigned int flags) const
{
    return (m_flags & flags) == flags ? 1 : 0;
}

void CFileIo::SetSilentMode(int on)
{
    SetFlag(FILE_PARSER_SILENT, on);
}

int CFileIo::IsSilentMode() const
{
    return IsFlagSet(FILE_PARSER_SILENT);
}

int CFileIo::IsLoading() const
{
    return IsFlagSet(FILE_PARSER_LOADING);
}

void CFileIo::SetPreferencesFlags(unsigned int flags)
{
    m_flags = (m_flags & ~kPreferencesMask) | (flags & kPreferencesMask);
}

unsigned int CFileIo::GetPreferencesFlags() const
{
    return m_flags & kPreferencesMask;
}

void CFileIo::NameFile(const CFileNameSpec& file)
{
    // Whether a folder of that name exists does not matter: opening it would fail.
    m_fileInfo.Init(file, FILEINFO_FILE);
    NameAlternative();
}

void CFileIo::NameAlternative()
{
    if (!m_alternativeClass) {
        m_alternativeInfo = CFileInfo();
        return;
    }
    const CString name = GetPath() + GetNameWithoutExt() + fileGetMainExtension(m_alternativeClass);
    m_alternativeInfo.Init(CFileNameSpec(name, m_alternativeClass), FILEINFO_FILE);
}

void CFileIo::SetNewFileName(const CFileNameSpec& file)
{
    NameFile(file);
}

CString CFileIo::GetCompleteName() const
{
    return m_fileInfo.GetCompleteName();
}

CString CFileIo::GetPath() const
{
    return m_fileInfo.GetPath();
}

CString CFileIo::GetNameWithoutExt() const
{
    return m_fileInfo.GetNameWithoutExt();
}

CString CFileIo::GetExtension() const
{
    return m_fileInfo.GetExtension();
}

CString CFileIo::GetCurrentCompleteFileName() const
{
    return InfoInUse().GetCompleteName();
}

CString CFileIo::GetCurrentFilePath() const
{
    return InfoInUse().GetPath();
}

CString CFileIo::GetCurrentShortFileName() const
{
    return InfoInUse().GetName();
}

int CFileIo::LoadIoParameters(int loading, CCustomData& data, unsigned int fileClass) const
{
    if (IsFlagSet(FILE_PARSER_NO_PREFERENCES))
        return 1;
    return data.LoadFromPrefs(GetPreferencesFilePath(), fileClass, DirectionKey(loading));
}

int CFileIo::SaveIoParameters(int loading, const CCustomData& data, unsigned int fileClass) const
{
    if (IsFlagSet(FILE_PARSER_NO_PREFERENCES))
        return 1;
    CCustomData kept(data);
    kept.SetUInt(kClassProperty, fileClass);
    const CString path = GetPreferencesFilePath();
    const CString folder = CFileInfo(path, FILEINFO_FILE).GetPath();
    if (!folder.IsEmpty() && !fileDirectoryExists(folder))
        fileCreateDirectory(folder, 1);
    return kept.SaveToPrefs(path, fileClass, DirectionKey(loading)) ? 1 : 0;
}

CString CFileIo::GetPreferencesFilePath() const
{
    if (!HostPreferencesPath().IsEmpty())
        return HostPreferencesPath();
    CString folder = vak::system::UserDataFolder();
    if (folder.IsEmpty())
        folder = vak::system::ApplicationFolder();
    return folder + L"Vak Tools\\IoParameters.dat";
}

void CFileIo::SetPreferencesFilePath(const CString& path)
{
    HostPreferencesPath() = path;
}

void CFileIo::SetIoError(IO_FILE_RESULT code, CIoOptions* options, IoLogInfo::loglevel level)
{
    m_ioError = code;
    m_ioErrorText.Empty();
    if (options)
        options->AddLogInfo(level, GetIoErrorTxt());
}

void CFileIo::SetIoError(const CString& text, CIoOptions* options, IoLogInfo::loglevel level)
{
    if (m_ioError == IO_FILE_SUCCESS)
        m_ioError = 0;
    m_ioErrorText = text;
    if (options)
        options->AddLogInfo(level, text);
}

CString CFileIo::GetIoErrorTxt() const
{
    return m_ioErrorText.IsEmpty() ? GetIoErrorTxtFromCode(IsLoading(), m_ioError) : m_ioErrorText;
}

CString CFileIo::GetIoErrorTxtFromCode(int loading, int code)
{
    CString text;
    vak::LoadText(text, TextIdOfCode(loading, code));
    return text;
}

void CFileIo::ReportIoError(const CString& text) const
{
    if (!IsSilentMode())
        AfxMessageBox(text.IsEmpty() ? GetIoErrorTxt() : text, MB_OK | MB_ICONEXCLAMATION);
}

IoShowDialog CFileIo::HasDialog(unsigned int fileClass, int loading)
{
    const unsigned int properties = fileGetProperties(fileClass);
    if (properties & (loading ? vak::kFileReadMustShow : vak::kFileWriteMustShow))
        return IoShowDialogAlways;
    if (properties & (loading ? vak::kFileReadDialog : vak::kFileWriteDialog))
        return IoShowDialogOptional;
    return IoShowDialogNone;
}
