#include "files/FileKinds.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>

namespace {

/// A kind that is registered for the length of a test.
class Kind
{
public:
    Kind(const wchar_t* extensions, unsigned int fileClass, unsigned int properties,
         IoInitCallback callback = nullptr)
        : record(L"A|kind", extensions, fileClass, properties, 'PLGP', 'PLGP')
    {
        record.m_initCallback = callback;
        EXPECT_EQ(fileRegisterFile(record), 1);
    }
    ~Kind() { Leave(); }
    Kind(const Kind&) = delete;
    Kind& operator=(const Kind&) = delete;

    int Leave() { return fileUnregisterFile(record.m_extension, record.m_class); }

    CFileExt record;
};

CString Joined(const CStringArray& texts)
{
    CString joined;
    for (int i = 0; i < texts.GetSize(); ++i)
        joined += texts[i] + L" ";
    return joined;
}

CString Code(unsigned int code)
{
    CString text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text.AppendChar(static_cast<wchar_t>(code >> shift & 0xFF));
    return text;
}

CString Described(const CFileExt& ext)
{
    CString description, extensions, text;
    unsigned int fileClass, properties, loader, saver;
    ext.GetContents(description, extensions, fileClass, properties, loader, saver);
    text.Format(L";%X;", properties);
    return description + L";" + extensions + L";" + Code(fileClass) + text + Code(loader) + L";" +
           Code(saver);
}

int Entry(IoPluginMode, void*)
{
    return 1;
}

} // namespace

TEST(FileKinds, BeginWithTheLibrarysOwn)
{
    const wchar_t* const rows[] = {
        L"Rla files;.rla|.rpf;RLA ;1001;VAKP;UNKN",
        L"RAW image files (Canon, Kodak, Minolta, "
        L"Leica...);.crw|.sr2|.cr2|.bay|.nef|.mrw|.orf|.raf|.dcr|.kdc|.kqp|.k25|.srf|.ptx|.pef|.x3f|.dng|."
        L"arw|.erf;RAWS;1001;VAKP;UNKN",
        L"Z-Buffer files;.vak;ZFIL;100B;VAKP;VAKP",
        L"Avi files;.avi;AVI ;10113;VAKP;VAKP",
        L"Zpic softimage files;.zpic;ZPIC;1041;VAKP;UNKN",
        L"Pic softimage files;.pic;PIC ;1001;VAKP;UNKN",
        L"Iff files;.iff;IFF ;1011;VAKP;UNKN",
        L"Photoshop files;.psd|.pdd;PHOT;1011;VAKP;UNKN",
        L"Cursor files;.cur|.ani;CURS;1011;VAKP;UNKN",
        L"HDR files;.hdr;HDR ;1001;VAKP;UNKN",
        L"3ds Max files (Dynamic Data Format Exchange);.max;3MAX;4093;VAKP;VAKP",
        L"Maya files (Dynamic Data Format Exchange);.mb|.ma;MAYA;4093;VAKP;VAKP",
        L"Windows audio files;.wav;AIWV;8011;VAKP;UNKN",
        L"Windows Media audio files;.wma;AIWM;8011;VAKP;UNKN",
        L"MPEG Audio files;.mp3|.mp2|.mpa;AIMG;8011;VAKP;UNKN",
        L"Macintosh audio files;.aif|.aifc|.aiff;AIMC;8011;VAKP;UNKN",
        L"Unix audio files;.au;AIUX;8011;VAKP;UNKN",
        L"Midi files;.mid|.rmi|.midi;MIDI;8011;VAKP;UNKN",
        L"Flash files;.swf;FLAS;23011;VAKP;UNKN",
        L"Html files;.htm|.html|.htx|.asp|.alx|.stm|.shtml|.aspx;IHTM;21011;VAKP;UNKN",
        L"QuickTime files;.mov;MOV ;10001;VAKP;UNKN",
        L"Zip files;.zip;ZIP ;40003;VAKP;VAKP",
    };
    unsigned int count = 0;
    const std::unique_ptr<CFileExt[], void (*)(CFileExt*)> files(fileGetRegisteredFiles(count),
                                                                 fileFreeRegisteredFiles);
    ASSERT_GE(count, std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i)
        EXPECT_EQ(Described(files[i]), CString(rows[i]));
}

TEST(FileKinds, AreFoundByTheLastExtensionWhateverItsCase)
{
    EXPECT_EQ(fileGetClass(L"x.MP3"), unsigned('AIMG'));
    EXPECT_EQ(fileGetClass(L"c:\\a.zip\\b.tar.Zip"), unsigned('ZIP '));
    EXPECT_EQ(fileGetKindOf(L"a.swf"), 0x23000u);
    EXPECT_EQ(fileGetProperties('MAYA'), 0x4093u);
    EXPECT_EQ(fileGetMainExtension(L"x.mpa"), CString(L".mp3"));
    EXPECT_EQ(fileGetMainExtension('IHTM'), CString(L".htm"));
    for (const wchar_t* name :
         {L"", L"mp3", L"c:\\a.zip\\b", L"a.", L".", L"a.none", L"a.zip\\", L"a.z ip"}) {
        CFileExt ext(L"d", L".e", 1, 2, 3, 4);
        EXPECT_EQ(fileGetFileExt(name, ext), 0) << CStringA(name).GetString();
        EXPECT_EQ(ext.GetClass() + ext.GetProperties(), 0u);
        EXPECT_TRUE(ext.GetDescription().IsEmpty() && ext.GetExtension().IsEmpty());
        EXPECT_EQ(fileGetLoader(name), unsigned('UNKN'));
        EXPECT_EQ(fileGetSaver(name), unsigned('UNKN'));
        EXPECT_TRUE(fileGetMainExtension(name).IsEmpty());
    }
    EXPECT_EQ(fileGetProperties(0u), 0u);
}

TEST(FileKinds, OfferADialogForEvery3dKindThatCanBeWritten)
{
    const Kind written(L".kd1", 'KD1 ', 0x4002), read(L".kd2", 'KD2 ', 0x4001), flat(L".kd3", 'KD3 ', 0x1002);
    EXPECT_EQ(written.record.GetProperties(), 0x4082u);
    EXPECT_EQ(fileGetProperties(L"a.kd1"), 0x4082u);
    EXPECT_EQ(fileGetProperties(L"a.kd2"), 0x4001u);
    EXPECT_EQ(fileGetProperties(L"a.kd3"), 0x1002u);
}

TEST(FileKinds, BelongToWhoeverClaimedAnExtensionFirst)
{
    Kind first(L".Kx|.ky", 'KX1 ', 0x1001), second(L".kx||.kz", 'KX2 ', 0x1001);
    EXPECT_EQ(fileGetClass(L"a.kX"), unsigned('KX1 '));
    EXPECT_EQ(fileGetMainExtension('KX1 '), CString(L".Kx"));
    fileRegisterFile(first.record); // again: neither twice nor later
    EXPECT_EQ(first.Leave(), 1);
    EXPECT_EQ(first.Leave(), 0);
    EXPECT_EQ(fileGetClass(L"a.ky"), 0u);
    EXPECT_EQ(fileGetClass(L"a.kx"), unsigned('KX2 '));
    fileRegisterFile(first.record);
    EXPECT_EQ(fileGetClass(L"a.kx"), unsigned('KX2 '));
    EXPECT_EQ(fileGetClass(L"a.ky"), unsigned('KX1 '));

    EXPECT_EQ(fileUnregisterFile(L"name.KX|.none", 'KX2 '), 1);
    EXPECT_EQ(fileGetClass(L"a.kx"), unsigned('KX1 '));
    EXPECT_EQ(fileGetMainExtension('KX2 '), CString(L".kz"));
    EXPECT_EQ(fileUnregisterFile(L"", 'KX2 '), 1);
    EXPECT_EQ(fileGetClass(L"a.kz"), 0u);
}

TEST(FileKinds, LeaveNoClaimBehind)
{
    Kind changed(L".kc1", 'KC1 ', 0x1001), other(L".kc1", 'KC2 ', 0x1001);
    changed.record.m_extension = L".kc3";
    fileRegisterFile(changed.record);
    EXPECT_EQ(fileGetClass(L"a.kc1"), unsigned('KC1 '));
    changed.Leave();
    EXPECT_EQ(fileGetClass(L"a.kc1"), unsigned('KC2 '));

    CFileExt ext;
    for (const wchar_t* extensions : {L"nodot", L"|||", L"", L".a b|.c"}) {
        Kind odd(extensions, 'KODD', 0x1001);
        EXPECT_EQ(odd.Leave(), 1);
        EXPECT_EQ(fileGetExtensionInfo('KODD', ext), 0);
    }
    ext.Init();
    EXPECT_EQ(fileRegisterFile(ext), 0);
}

TEST(FileKinds, ReturnToTheLibraryWhenAPluginThatTookThemOverLeaves)
{
    {
        const Kind plugin(L".zip|.zipx", 'ZIP ', 0x40001, Entry);
        EXPECT_EQ(fileGetLoader(L"a.zip"), unsigned('PLGP'));
        EXPECT_EQ(fileGetClass(L"a.zipx"), unsigned('ZIP '));
    }
    EXPECT_EQ(fileGetLoader(L"a.zip"), unsigned('VAKP'));
    EXPECT_EQ(fileGetClass(L"a.zipx"), 0u);
}

TEST(FileKinds, ListTheirExtensionsOnce)
{
    const Kind kind(L".AU|.au|.kl", 'KL  ', 0x80000);
    CStringArray extensions;
    extensions.Add(L"before");
    EXPECT_EQ(fileGetExtensionArray('KL  ', extensions), 2);
    EXPECT_EQ(Joined(extensions), CString(L".AU .kl "));
    EXPECT_EQ(fileGetExtensionArrayByProperty(0xC0000, extensions, 1), 3);
    EXPECT_EQ(Joined(extensions), CString(L"*.zip *.AU *.kl "));
    EXPECT_EQ(fileGetExtensionArrayByProperty(0x22010, extensions, 0, 1), 1);
    EXPECT_EQ(Joined(extensions), CString(L".swf "));
    EXPECT_EQ(fileGetExtensionArray('NONE', extensions), 0);
}

TEST(FileKinds, FilterTheFilesOfADialog)
{
    const CString everything = L"Tous les fichiers (*.*)|*.*||";
    EXPECT_EQ(fileGetDialogFilter('AIMG'),
              L"MPEG Audio files (*.mp3;*.mp2;*.mpa)|*.mp3;*.mp2;*.mpa|" + everything);
    const Kind kind(L".zip|.kfz", 'KF  ', 0x40000), empty(L"", 'KF2 ', 0x40000);
    EXPECT_EQ(fileGetDialogFilter(0x40000),
              L"Tous les types connus|*.zip;*.kfz|Zip files (*.zip)|*.zip|A kind (*.zip;*.kfz)|*.zip;*.kfz|" +
                  everything);
    EXPECT_EQ(fileGetDialogFilter('NONE'), everything);
    const CString all = fileGetDialogFilter('ALLF');
    EXPECT_EQ(all.Find(L"Tous les types connus|*.rla;*.rpf;*.crw;"), 0);
    EXPECT_GT(all.Find(L"|A kind (*.zip;*.kfz)|"), all.Find(L"|Zip files (*.zip)|*.zip|"));
}

TEST(FileExt, LaysItsFieldsOutInTheirOrder)
{
    static_assert(offsetof(CFileExt, m_description) == 0);
    static_assert(offsetof(CFileExt, m_extension) == sizeof(CString));
    static_assert(offsetof(CFileExt, m_class) == 2 * sizeof(CString));
    static_assert(offsetof(CFileExt, m_properties) == 2 * sizeof(CString) + 4);
    static_assert(offsetof(CFileExt, m_loader) == 2 * sizeof(CString) + 8);
    static_assert(offsetof(CFileExt, m_saver) == 2 * sizeof(CString) + 12);
    static_assert(offsetof(CFileExt, m_initCallback) == 2 * sizeof(CString) + 16);
}
