#include "files/FileKinds.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

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

CString Described(const CFileExt& ext)
{
    CString description, extensions, text;
    unsigned int codes[4];
    ext.GetContents(description, extensions, codes[0], codes[1], codes[2], codes[3]);
    text.Format(L"%s;%s;%08X;%X;%08X;%08X\n", description.GetString(), extensions.GetString(), codes[0],
                codes[1], codes[2], codes[3]);
    return text;
}

} // namespace

TEST(FileKinds, BeginWithTheLibrarysOwn)
{
    unsigned int count = 0;
    const std::unique_ptr<CFileExt[], void (*)(CFileExt*)> files(fileGetRegisteredFiles(count),
                                                                 fileFreeRegisteredFiles);
    constexpr unsigned int kOwn = 22;
    ASSERT_GE(count, kOwn);
    CString text;
    for (unsigned int i = 0; i < kOwn; ++i)
        text += Described(files[i]);
    // FNV-1a, worked out by a script from the table of the kinds, in the form in which it is shown here.
    unsigned int hash = 2166136261;
    for (int i = 0; i < text.GetLength(); ++i)
        hash = (hash ^ text[i]) * 16777619;
    EXPECT_EQ(hash, 0xB782B1C5u) << CStringA(text).GetString();
}

TEST(FileKinds, AreFoundByTheLastExtensionWhateverItsCase)
{
    EXPECT_EQ(fileGetClass(L"c:\\a.zip\\b.tar.Zip"), unsigned('ZIP '));
    EXPECT_EQ(fileGetKindOf(L"a.swf"), 0x23000u);
    EXPECT_EQ(fileGetMainExtension(L"x.mpa"), CString(L".mp3"));
    const CFileExt none;
    for (const wchar_t* name :
         {L"", L"mp3", L"c:\\a.zip\\b", L"a.", L".", L"a.none", L"a.zip\\", L"a.z ip"}) {
        CFileExt ext(L"d", L".e", 1, 2, 3, 4);
        EXPECT_EQ(fileGetFileExt(name, ext), 0) << CStringA(name).GetString();
        EXPECT_EQ(Described(ext), Described(none));
    }
    const Kind written(L".kd1", 'KD1 ', 0x4002);
    EXPECT_EQ(fileGetProperties(L"a.kd1"), 0x4082u) << "a 3-D kind that can be written offers a dialog";
}

TEST(FileKinds, BelongToWhoeverClaimedAnExtensionFirst)
{
    Kind first(L".Kx|.ky", 'KX1 ', 0x1001), second(L".kx||.kz", 'KX2 ', 0x1001);
    EXPECT_EQ(fileGetClass(L"a.kX"), unsigned('KX1 '));
    EXPECT_EQ(fileGetMainExtension('KX1 '), CString(L".Kx"));
    fileRegisterFile(first.record); // again: neither twice nor later
    EXPECT_EQ(first.Leave(), 1);
    EXPECT_EQ(fileGetClass(L"a.ky"), 0u);
    EXPECT_EQ(fileGetClass(L"a.kx"), unsigned('KX2 '));
    fileRegisterFile(first.record);
    EXPECT_EQ(fileGetClass(L"a.kx"), unsigned('KX2 '));

    EXPECT_EQ(fileUnregisterFile(L"name.KX|.none", 'KX2 '), 1);
    EXPECT_EQ(fileGetClass(L"a.kx"), unsigned('KX1 '));
    EXPECT_EQ(fileGetMainExtension('KX2 '), CString(L".kz"));
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
    EXPECT_EQ(fileRegisterFile(ext), 0);
}

TEST(FileKinds, ReturnToTheLibraryWhenAPluginThatTookThemOverLeaves)
{
    {
        const Kind plugin(L".zip|.zipx", 'ZIP ', 0x40001, [](IoPluginMode, void*) { return 1; });
        EXPECT_EQ(fileGetLoader(L"a.zip"), unsigned('PLGP'));
        EXPECT_EQ(fileGetClass(L"a.zipx"), unsigned('ZIP '));
    }
    EXPECT_EQ(fileGetLoader(L"a.zip"), unsigned('VAKP'));
    EXPECT_EQ(fileGetClass(L"a.zipx"), 0u);
}

TEST(FileKinds, ListTheirExtensionsOnceAndAsTheFilterOfADialog)
{
    const Kind kind(L".AU|.au|.kl", 'KL  ', 0x80000), empty(L"", 'KL2 ', 0x80000);
    CStringArray extensions;
    extensions.Add(L"before");
    EXPECT_EQ(fileGetExtensionArray('KL  ', extensions), 2);
    EXPECT_EQ(Joined(extensions), CString(L".AU .kl "));
    EXPECT_EQ(fileGetExtensionArrayByProperty(0xC0000, extensions, 1), 3);
    EXPECT_EQ(Joined(extensions), CString(L"*.zip *.AU *.kl "));
    EXPECT_EQ(fileGetExtensionArrayByProperty(0x22010, extensions, 0, 1), 1);
    EXPECT_EQ(Joined(extensions), CString(L".swf "));

    const CString own = L"A kind (*.AU;*.kl)|*.AU;*.kl|", everything = L"Tous les fichiers (*.*)|*.*||";
    EXPECT_EQ(fileGetDialogFilter('KL  '), own + everything);
    EXPECT_EQ(fileGetDialogFilter(0xC0000),
              L"Tous les types connus|*.zip;*.AU;*.kl|Zip files (*.zip)|*.zip|" + own + everything);
    EXPECT_EQ(fileGetDialogFilter('NONE'), everything);
    const CString all = fileGetDialogFilter('ALLF');
    EXPECT_EQ(all.Find(L"Tous les types connus|*.rla;*.rpf;*.crw;"), 0);
    EXPECT_GT(all.Find(own), all.Find(L"|Zip files (*.zip)|*.zip|"));
}
