#include "tests/examples/Vakconvert.h"
#include "tests/support/ZipContents.h"

#include <filesystem>
#include <utility>

using vak::test::Contents;
using vak::test::ContentsOf;
using vak::test::kTriangle;
using vak::test::Names;
using vak::test::Vakconvert;

namespace {

/// Runs beside an archive, in/pack.zip, and a temporary folder, in which nothing may stay.
class VakconvertZip : public Vakconvert
{
protected:
    void SetUp() override
    {
        GetEnvironmentVariableW(L"TEMP", m_before, MAX_PATH);
        std::filesystem::create_directory(m_folder.Host("temp"));
        SetEnvironmentVariableW(L"TEMP", m_folder.Path("temp"));
        SetEnvironmentVariableW(L"TMP", m_folder.Path("temp"));
    }

    void TearDown() override
    {
        SetEnvironmentVariableW(L"TEMP", m_before);
        SetEnvironmentVariableW(L"TMP", m_before);
        EXPECT_TRUE(std::filesystem::is_empty(m_folder.Host("temp")));
    }

    void Pack(const std::vector<std::pair<std::string, std::string>>& entries)
    {
        std::filesystem::create_directory(m_folder.Host("in"));
        CZip zip;
        zip.Open(m_folder.Path("in/pack.zip"), CZip::zipCreate);
        for (const auto& [name, bytes] : entries)
            zip.AddNewFile(m_folder.Write("member", bytes), CString(name.c_str()), 0);
        zip.Close();
        std::filesystem::remove(m_folder.Host("member"));
    }

    /// Replaces every occurrence in the archive, of the same length.
    void Patch(const std::string& from, const std::string& to)
    {
        std::string bytes = m_folder.Read("in/pack.zip");
        for (std::size_t at = 0; (at = bytes.find(from, at)) != std::string::npos;)
            bytes.replace(at, from.size(), to);
        m_folder.Write("in/pack.zip", bytes);
    }

private:
    wchar_t m_before[MAX_PATH] = {};
};

} // namespace

TEST_F(VakconvertZip, TakesFilesThroughAnArchiveAsThroughAFolder)
{
    Pack({{"a.obj", kTriangle},
          {"models/b.obj", std::string("mtllib m.mtl\nusemtl red\n") + kTriangle},
          {"models/m.mtl", "newmtl red\nKd 1 0 0\n"},
          {"models/deep/c.obj", kTriangle}});
    const std::pair<const wchar_t*, Names> rows[] = {
        {L"@in\\pack.zip", {"in/a.ply"}},
        {L"@in/pack.zip/models", {"in/b.ply"}},
        {L"-r @in\\pack.zip\\MODELS\\", {"in/b.ply", "in/c.ply"}},
        {L"-r @in\\pack.zip\\*.obj @in\\pack.zip\\a.obj", {"in/a.ply", "in/b.ply", "in/c.ply"}},
        {L"-s r @in\\pack.zip\\models\\b.obj", {"in/r/b.ply"}},
        {L"-r -d @in\\o @in\\pack.zip\\models", {"in/o/b.ply", "in/o/deep/c.ply"}},
        {L"-r --flat -d @in\\o @in\\pack.zip", {"in/o/a.ply", "in/o/b.ply", "in/o/c.ply"}},
    };
    for (const auto& [sources, made] : rows) {
        EXPECT_EQ(Run(CString(L"--to ply ") + sources), 0u) << m_output;
        EXPECT_EQ(Made(".ply"), made) << m_output;
        for (const std::string& name : made)
            std::filesystem::remove(m_folder.Host(name));
    }
    EXPECT_EQ(Run(L"--to ply @in/pack.zip/models/*.obj"), 0u);
    EXPECT_TRUE(Says("pack.zip\\models\\b.obj") && Says("1 material")) << m_output;
    for (const wchar_t* nothing : {L"*.stl", L"none", L"none\\*", L"a.obj\\b"}) {
        EXPECT_EQ(Run(CString(L"--to ply @in\\pack.zip\\") + nothing), 1u) << m_output;
        EXPECT_TRUE(Says(": nothing found")) << m_output;
    }
    EXPECT_EQ(Run(L"--tree @in\\pack.zip\\models"), 0u);
    EXPECT_TRUE(Says("pack.zip\\models\\b.obj: 3 vertices")) << m_output;
    EXPECT_EQ(Run(L"--to ply @in\\*.zip"), 0u) << m_output;
    EXPECT_TRUE(Says("1 passed over: no target")) << "a pattern names archives as files";
    const std::string bytes = m_folder.Read("in/pack.zip");
    m_folder.Write("in/p.zip.001", bytes.substr(0, 50));
    m_folder.Write("in/p.zip.002", bytes.substr(50));
    EXPECT_EQ(Run(L"--to ply @in\\p.zip.001\\models"), 0u) << m_output;
    EXPECT_TRUE(Says("p.zip.001\\models\\b.obj") && Says("1 material")) << m_output;
    m_folder.Write("in/x.zip/d.obj", kTriangle);
    EXPECT_EQ(Run(L"--to ply @in\\x.zip @in\\x.zip\\d.obj"), 0u) << m_output;
    EXPECT_TRUE(m_folder.Has("in/x.zip/d.ply")) << "a folder of that name is one";
}

TEST_F(VakconvertZip, ADamagedOrHostileEntryFailsAlone)
{
    Pack({{"good.obj", kTriangle},
          {"models/bad.obj", "v 7 7 7 to be damaged"},
          {"xx/evil.obj", kTriangle},
          {"twin.obj", kTriangle},
          {"twiN.obj", kTriangle}});
    Patch("to be damaged", "to be DAMAGED");
    Patch("xx/evil.obj", "../evil.obj");
    EXPECT_EQ(Run(L"-r --to ply -d @out @in\\pack.zip"), 1u);
    EXPECT_TRUE(Says("2 converted, 3 failed")) << m_output;
    EXPECT_TRUE(Says("pack.zip\\models\\bad.obj") && Says("pack.zip\\..\\evil.obj")) << m_output;
    EXPECT_EQ(Made(".ply"), (Names{"out/good.ply", "out/twin.ply"}));
    EXPECT_EQ(Made(".obj"), Names{}) << "nothing is extracted elsewhere";
    m_folder.Write("in/pack.zip", "no archive");
    m_folder.Write("in/a.obj", kTriangle);
    EXPECT_EQ(Run(L"--to ply @in\\pack.zip @in\\a.obj"), 1u);
    EXPECT_TRUE(Says("1 converted, 0 failed") && Says("vakconvert: ")) << m_output;
}

TEST_F(VakconvertZip, CollectsResultsInAnArchiveThatAppearsWhole)
{
    Pack({{"a.obj", kTriangle}, {"b/a.obj", kTriangle}});
    const auto namesIn = [&](const char* archive) {
        Names names;
        for (const auto& [name, data] : ContentsOf(m_folder.Path(archive)))
            names.push_back(name + ": " + data.substr(0, 3));
        return names;
    };
    EXPECT_EQ(Run(L"-r --to ply --zip @new/out.zip @in\\pack.zip"), 0u) << m_output;
    EXPECT_EQ(namesIn("new/out.zip"), (Names{"a.ply: ply", "b/a.ply: ply"}));
    EXPECT_EQ(Made(".ply"), Names{});
    EXPECT_EQ(Run(L"-r --to ply --flat --zip @new/out.zip @in\\pack.zip"), 0u) << m_output;
    EXPECT_EQ(namesIn("new/out (1).zip"), (Names{"a (1).ply: ply", "a.ply: ply"}));
    EXPECT_EQ(Run(L"-y --to ply --zip @new/out.zip @in\\pack.zip"), 0u) << m_output;
    EXPECT_EQ(namesIn("new/out.zip"), Names{"a.ply: ply"});
    EXPECT_EQ(Run(L"-y --to ply --zip @in/pack.zip @in\\pack.zip"), 0u) << "a source is never replaced";
    EXPECT_EQ(Made(".zip"), (Names{"in/pack (1).zip", "in/pack.zip", "new/out (1).zip", "new/out.zip"}));
    SetFileAttributesW(m_folder.Path("new/out.zip"), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(Run(L"-y --to ply --zip @new/out.zip @in\\pack.zip"), 1u);
    EXPECT_TRUE(Says("0 converted, 1 failed")) << m_output;
    SetFileAttributesW(m_folder.Path("new/out.zip"), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Run(L"--to stl --zip @none.zip @in\\pack.zip\\x.obj"), 1u);
    EXPECT_FALSE(m_folder.Has("none.zip")) << "no results, no archive";
    for (const wchar_t* wrong :
         {L"--dest @out", L"--beside", L"-s r", L"--tree", L"--zip @in", L"--zip @in/pack.zip/o.zip"})
        EXPECT_EQ(Run(CString(L"--to ply --zip @o.zip @in\\pack.zip ") + wrong), 2u) << wrong;
}
