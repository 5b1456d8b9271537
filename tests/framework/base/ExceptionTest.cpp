#include "framework/base/ArchiveException.h"
#include "framework/base/FileException.h"
#include "resources/Ids.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <utility>

using vak::test::MessageRecorder;

namespace {

CString Message(const CException& exception, UINT room = 256)
{
    wchar_t text[256] = L"untouched";
    UINT help = 99;
    const BOOL has = exception.GetErrorMessage(text, room, &help);
    EXPECT_EQ(has != 0, text[0] != 0);
    EXPECT_NE(help, 99u);
    return text;
}

} // namespace

TEST(Exception, CausesHaveTheirNumbersAndTheirSentences)
{
    const std::pair<int, const wchar_t*> files[] = {
        {CFileException::none, L"Aucune erreur ne s'est produite sur Z:\\été.obj."},
        {2, L"Z:\\été.obj est introuvable."},
        {14, L"La fin de Z:\\été.obj est dépassée."},
        {15, L""},
        {-1, L""},
    };
    for (const auto& [cause, message] : files)
        EXPECT_EQ(Message(CFileException(cause, -1, L"Z:\\été.obj")), CString(message));
    EXPECT_EQ(Message(CFileException(2)), CString(L"un fichier sans nom est introuvable."));
    EXPECT_EQ(Message(CFileException(2, -1, L"50%1 %%.txt")), CString(L"50%1 %%.txt est introuvable."));

    const std::pair<int, const wchar_t*> archives[] = {
        {2, L"Tentative d'écriture dans a, ouvert en lecture."},
        {8, L"Une donnée de a est plus longue que la place prévue."},
        {9, L""},
    };
    for (const auto& [cause, message] : archives)
        EXPECT_EQ(Message(CArchiveException(cause, L"a")), CString(message));
    const CMemoryException memory;
    EXPECT_EQ(Message(memory), CString(L"Mémoire insuffisante."));
    EXPECT_EQ(Message(memory, 5), CString(L"Mémo")) << "cut to the room there is";
    wchar_t text[] = L"ab";
    EXPECT_FALSE(memory.GetErrorMessage(text, 0));
    EXPECT_EQ(CString(text), CString(L"ab"));
}

TEST(Exception, SystemErrorsBecomeCauses)
{
    const int system[][2] = {{32, CFileException::sharingViolation},
                             {131, CFileException::badSeek},
                             {99999, CFileException::genericException},
                             {-1, CFileException::genericException}};
    for (const auto& [error, cause] : system)
        EXPECT_EQ(CFileException::OsErrorToException(error), cause) << error;
}

TEST(Exception, ReportsItsMessageOrTheOneGivenForIt)
{
    MessageRecorder recorder{IDCANCEL};
    EXPECT_EQ(CMemoryException().ReportError(MB_OKCANCEL), IDCANCEL);
    CFileException(15).ReportError(MB_OK, IDS_NOT_SUPPORTED); // has no message of its own
    ASSERT_EQ(recorder.Boxes().size(), 2u);
    EXPECT_EQ(recorder.Boxes()[0].text, CString(L"Mémoire insuffisante."));
    EXPECT_EQ(recorder.Boxes()[1].text, CString(L"Cette opération n'est pas prise en charge."));
}
