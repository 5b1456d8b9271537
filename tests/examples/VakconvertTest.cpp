#include "tests/examples/Vakconvert.h"
#include "platform/Shortcut.h"

#include <filesystem>
#include <utility>

using vak::test::kTriangle;
using vak::test::Names;
using vak::test::Vakconvert;

TEST_F(Vakconvert, ConvertsATreeAndReportsTheFileThatFailed)
{
    m_folder.Write("in/été/a b.obj", kTriangle);
    m_folder.Write("in/deep/er/damaged.stl", "solid x\nfacet");
    m_folder.Write("in/notes.txt", "nothing to convert");
    EXPECT_EQ(Run(L"-r --to .ply --dest @out @in"), 1u) << m_output;
    EXPECT_TRUE(Says("Mauvais format de fichier")) << m_output;
    EXPECT_TRUE(Says("1 converted, 1 failed, 1 passed over")) << m_output;
    EXPECT_EQ(m_folder.Names(),
              (Names{"in", "in/deep", "in/deep/er", "in/deep/er/damaged.stl", "in/notes.txt", "in/été",
                     "in/été/a b.obj", "out", "out/été", "out/été/a b.ply", "output.txt"}))
        << "no temporary file or folder may stay";
}

TEST_F(Vakconvert, ReplacesAFileOnlyWhenAsked)
{
    m_folder.Write("a.obj", kTriangle);
    m_folder.Write("a.ply", "mine");
    EXPECT_EQ(Run(L"--to ply @a.obj"), 0u) << m_output;
    EXPECT_TRUE(Says("-> a (1).ply")) << m_output;
    EXPECT_EQ(m_folder.Read("a.ply"), "mine");
    EXPECT_EQ(Run(L"--to ply -y @a.obj"), 0u) << m_output;
    EXPECT_EQ(m_folder.Read("a.ply").substr(0, 4), "ply\n");
}

TEST_F(Vakconvert, ResultsOfOneRunNeverReplaceEachOtherNorASource)
{
    m_folder.Write("in/a.obj", kTriangle);
    m_folder.Write("in/b/a.obj", kTriangle);
    EXPECT_EQ(Run(L"-y -r --to stl --dest @out --flat @in @in/a.obj"), 0u) << m_output;
    EXPECT_EQ(Made(".stl"), (Names{"out/a (1).stl", "out/a.stl"}));
    EXPECT_EQ(Run(L"-y --to stl @in\\a.obj"), 0u) << m_output;
    EXPECT_EQ(Run(L"-y --to stl -o binary=0 @in @in\\a.stl"), 0u) << m_output;
    EXPECT_EQ(m_folder.Read("in/a (1).stl").substr(0, 5), "solid") << "a.stl was still to be converted";
}

TEST_F(Vakconvert, FilesThatBelongToAResultAreKeptApartToo)
{
    const std::string painted = std::string("mtllib m.mtl\nusemtl red\n") + kTriangle;
    m_folder.Write("in/m.mtl", "newmtl red\nKd 1 0 0\n");
    m_folder.Write("in/a b.obj", painted);
    m_folder.Write("in/a_b.obj", painted);
    m_folder.Write("out/a_b.mtl", "mine");
    EXPECT_EQ(Run(L"--to obj --dest @out @in"), 0u) << m_output;
    EXPECT_EQ(m_folder.Read("out/a_b.mtl"), "mine");
    EXPECT_EQ(Made("mtl"), (Names{"in/m.mtl", "out/a_b.mtl", "out/a_b_(1).mtl", "out/a_b_(2).mtl"}));
}

TEST_F(Vakconvert, ResultsGoWhereTheRulesSayAndAreNotConvertedAgain)
{
    const std::pair<const wchar_t*, Names> rows[] = {
        {L"--recreate-tree --dest @in\\out", {"in/out/1.ply", "in/out/b/2.ply"}},
        {L"-r --flat --dest @in/OUT/", {"in/OUT/1.ply", "in/OUT/2.ply"}},
        {L"-r --subfolder ./r/s", {"in/b/r/s/2.ply", "in/r/s/1.ply"}},
        {L"-r --beside", {"in/1.ply", "in/b/2.ply"}},
    };
    for (const auto& [rules, made] : rows) {
        const CString call = CString(L" --to ply @in ") + rules;
        std::filesystem::remove_all(m_folder.Host("in"));
        m_folder.Write("in/1.obj", kTriangle);
        m_folder.Write("in/b/2.obj", kTriangle);
        m_folder.Write("in/.vakconvert-7/3.obj", kTriangle);
        EXPECT_EQ(Run(call), 0u) << m_output;
        EXPECT_EQ(Made(".ply"), made);
        for (const wchar_t* again : {L"-y", L"", L""})
            EXPECT_EQ(Run(again + call), 0u) << m_output;
        EXPECT_EQ(Made(".ply").size(), 3 * made.size()) << "numbered results are results, too";
    }
    EXPECT_TRUE(Says("2 converted, 0 failed, 4 passed over: results of an earlier run")) << m_output;
}

TEST_F(Vakconvert, OnlyWhatLooksLikeAResultIsPassedOver)
{
    m_folder.Write("in/a.obj", kTriangle);
    m_folder.Write("in/b (1).ply", "damaged");
    m_folder.Write("in/b.ply", "damaged");
    m_folder.Write("in/a.ply", "damaged");
    EXPECT_EQ(Run(L"--to ply -y @in"), 1u);
    EXPECT_TRUE(Says("1 converted, 2 failed, 1 passed over")) << m_output;
    EXPECT_EQ(Run(L"--to png @in"), 0u);
    EXPECT_TRUE(Says("nothing to convert, 4 passed over: no target for their kind")) << m_output;
}

TEST_F(Vakconvert, ShowsTheStructureOfModelsFromAnArchive)
{
    m_folder.Write("in/a.mtl", "newmtl wood\nKd 0.5 0.25 1\nNs 8\nd 0.5\n");
    m_folder.Write("in/a.obj", std::string("mtllib a.mtl\ng top\nusemtl wood\n") + kTriangle);
    m_folder.Write("in/b.stl", "solid x\nfacet");
    EXPECT_EQ(Run(L"--tree @in"), 1u) << m_output;
    for (const char* line : {"a.obj: 3 vertices, 1 face", "\n  group top: 1 face of wood",
                             "\n  material wood: shininess 8, opacity 0.5",
                             "\n    diffuse  R :  127  G : 63  B : 255", "6 nodes, ", "b.stl: "})
        EXPECT_TRUE(Says(line)) << line << m_output;
}

TEST_F(Vakconvert, WrongCallsAreToldApartFromFailures)
{
    m_folder.Write("a.obj", kTriangle);
    for (const wchar_t* arguments :
         {L"", L"@a.obj", L"--to .xyz @a.obj", L"--to stl --option nonsense=1 @a.obj",
          L"--to jpg --option quality=101 @a.obj", L"--to stl --to ply @a.obj", L"--frobnicate", L"--to",
          L"--to stl --beside --dest @out @a.obj", L"--to stl --subfolder r --dest @out @a.obj",
          L"--to stl --recreate-tree @a.obj", L"--to stl --recreate-tree --flat --dest @out @a.obj",
          L"--to stl --dest ?:\\out @a.obj", L"--to stl -s ../r @a.obj", L"--to stl -s r. @a.obj",
          L"--to stl -s c:\\r @a.obj", L"--to stl \"\"", L"--to stl --dest \"\" @a.obj",
          L"--tree --to stl @a.obj"})
        EXPECT_EQ(Run(arguments), 2u) << m_output;
    for (const wchar_t* arguments : {L"-y --no-overwrite --to stl @a.obj", L"--options", L"--options .xyz"})
        EXPECT_EQ(Run(arguments), 2u) << m_output;
    EXPECT_TRUE(Says("no plug-in writes \".xyz\"")) << m_output;
    EXPECT_EQ(Run(L"--to stl @missing.obj"), 1u);
    EXPECT_TRUE(Says("there is no such file or folder")) << m_output;
    EXPECT_EQ(Run(L"--list-plugins"), 0u);
    EXPECT_TRUE(Says("loaded, 3 kinds")) << m_output;
}

TEST_F(Vakconvert, KeepsOptionsForLaterRunsWhenAsked)
{
    m_folder.Write("a.obj", kTriangle);
    EXPECT_EQ(Run(L"--to stl -y --option binary=0 @a.obj"), 0u) << m_output;
    EXPECT_EQ(m_folder.Read("a.stl").substr(0, 5), "solid");
    EXPECT_EQ(Run(L"--to stl -y @a.obj"), 0u) << "the option was for that run";
    EXPECT_EQ(m_folder.Read("a.stl").substr(0, 6), "binary");
    EXPECT_EQ(Run(L"--to stl -y --option binary=0 --save-options @a.obj"), 0u) << m_output;
    EXPECT_EQ(Run(L"--to stl -y @a.obj"), 0u);
    EXPECT_EQ(m_folder.Read("a.stl").substr(0, 5), "solid");
}

TEST_F(Vakconvert, TakesAShortcutForWhatItLeadsTo)
{
    m_folder.Write("models\\a.obj", kTriangle);
    m_folder.Write("b.obj", kTriangle);
    const auto lead = [&](const char* name, const char* target) {
        return CShortcut::CreateShortcut(m_folder.Path(name), m_folder.Path(target), L"", L"", L"", 0);
    };
    ASSERT_TRUE(lead("folder.lnk", "models") && lead("file.lnk", "b.obj") && lead("broken.lnk", "c.obj"));
    m_folder.Write("damaged.lnk", "L");
    EXPECT_EQ(Run(L"--to .stl --dest @out @folder.lnk @file.lnk @broken.lnk @damaged.lnk"), 1u);
    EXPECT_EQ(Made(".stl"), (Names{"out/a.stl", "out/b.stl"}));
    EXPECT_TRUE(Says("c.obj, which is not there") && Says("damaged.lnk: the shortcut is damaged"))
        << m_output;
}
