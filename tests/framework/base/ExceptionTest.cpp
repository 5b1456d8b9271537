#include "framework/base/ArchiveException.h"
#include "framework/base/FileException.h"
#include "resources/Ids.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <cerrno>

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

/// A host's exception without a message of its own.
class MutePathException : public CFileException
{
public:
    MutePathException() : CFileException(badPath) { ++alive; }
    ~MutePathException() override { --alive; }
    BOOL GetErrorMessage(LPTSTR error, UINT room, PUINT help) const override
    {
        return CException::GetErrorMessage(error, room, help);
    }
    static inline int alive = 0;
};

} // namespace

TEST(Exception, CausesHaveTheirNumbersAndTheirSentences)
{
    const struct
    {
        int cause;
        const wchar_t* message;
    } files[] = {
        {CFileException::none, L"Aucune erreur ne s'est produite sur Z:\\été.obj."},
        {2, L"Z:\\été.obj est introuvable."},
        {3, L"Z:\\été.obj contient un chemin d'accès incorrect."},
        {5, L"L'accès à Z:\\été.obj est refusé."},
        {13, L"Le disque est plein : impossible d'écrire Z:\\été.obj."},
        {14, L"La fin de Z:\\été.obj est dépassée."},
        {15, L""},
        {-1, L""},
    };
    for (const auto& row : files)
        EXPECT_EQ(Message(CFileException(row.cause, -1, L"Z:\\été.obj")), CString(row.message));
    EXPECT_EQ(Message(CFileException(CFileException::fileNotFound)),
              CString(L"un fichier sans nom est introuvable."));
    EXPECT_EQ(Message(CFileException(2, -1, L"50%1 %%.txt")), CString(L"50%1 %%.txt est introuvable."));

    const struct
    {
        int cause;
        const wchar_t* message;
    } archives[] = {
        {2, L"Tentative d'écriture dans a, ouvert en lecture."},
        {3, L"La fin de a est dépassée."},
        {4, L"Tentative de lecture dans a, ouvert en écriture."},
        {5, L"Le format de a est incorrect."},
        {6, L"a contient un objet d'un type inattendu."},
        {7, L"a contient un objet d'une version non prise en charge."},
        {8, L"Une donnée de a est plus longue que la place prévue."},
        {9, L""},
    };
    for (const auto& row : archives)
        EXPECT_EQ(Message(CArchiveException(row.cause, L"a")), CString(row.message));
    EXPECT_EQ(Message(CMemoryException()), CString(L"Mémoire insuffisante."));
}

TEST(Exception, MessagesAreCutToTheRoomThereIs)
{
    const CMemoryException exception;
    EXPECT_EQ(Message(exception, 5), CString(L"Mémo"));
    wchar_t text[] = L"ab";
    EXPECT_TRUE(exception.GetErrorMessage(text, 1));
    EXPECT_EQ(text[0], 0);
    EXPECT_FALSE(exception.GetErrorMessage(text, 0));
    EXPECT_EQ(text[1], L'b');
}

TEST(Exception, SystemErrorsBecomeCauses)
{
    const int system[][2] = {{0, CFileException::none},
                             {2, CFileException::fileNotFound},
                             {3, CFileException::badPath},
                             {4, CFileException::tooManyOpenFiles},
                             {5, CFileException::accessDenied},
                             {6, CFileException::invalidFile},
                             {16, CFileException::removeCurrentDir},
                             {32, CFileException::sharingViolation},
                             {33, CFileException::lockViolation},
                             {38, CFileException::endOfFile},
                             {112, CFileException::diskFull},
                             {123, CFileException::badPath},
                             {131, CFileException::badSeek},
                             {1117, CFileException::hardIO},
                             {7, CFileException::genericException},
                             {99999, CFileException::genericException},
                             {-1, CFileException::genericException}};
    for (const auto& [error, cause] : system)
        EXPECT_EQ(CFileException::OsErrorToException(error), cause) << error;
    EXPECT_EQ(CFileException::ErrnoToException(ENOENT), CFileException::fileNotFound);
    EXPECT_EQ(CFileException::ErrnoToException(EACCES), CFileException::accessDenied);
    EXPECT_EQ(CFileException::ErrnoToException(ENOSPC), CFileException::diskFull);
    try {
        CFileException::ThrowOsError(5, L"x");
    } catch (CException* exception) {
        ASSERT_TRUE(exception->IsKindOf(RUNTIME_CLASS(CFileException)));
        const auto* error = static_cast<CFileException*>(exception);
        EXPECT_EQ(error->m_cause, CFileException::accessDenied);
        EXPECT_EQ(error->m_lOsError, 5);
        EXPECT_EQ(error->m_strFileName, CString(L"x"));
        exception->Delete();
    }
}

TEST(Exception, DeleteFreesOnlyWhatWasMadeWithNew)
{
    (new MutePathException)->Delete();
    EXPECT_EQ(MutePathException::alive, 0);
    MutePathException onTheStack;
    onTheStack.m_bAutoDelete = FALSE;
    onTheStack.Delete();
    EXPECT_EQ(MutePathException::alive, 1);
    for (int again = 0; again < 2; ++again) {
        try {
            AfxThrowUserException();
        } catch (CUserException* exception) {
            exception->Delete();
        }
    }
}

TEST(Exception, ReportsItsMessageOrTheOneGivenForIt)
{
    MessageRecorder recorder{IDCANCEL};
    CArchiveException archive(CArchiveException::badSchema, L"a");
    EXPECT_EQ(archive.ReportError(MB_OKCANCEL), IDCANCEL);
    MutePathException mute;
    EXPECT_EQ(mute.ReportError(), IDOK);
    EXPECT_EQ(mute.ReportError(MB_OK, IDS_OUT_OF_MEMORY), IDOK);
    ASSERT_EQ(recorder.Boxes().size(), 3u);
    EXPECT_EQ(recorder.Boxes()[0].text, CString(L"a contient un objet d'une version non prise en charge."));
    EXPECT_EQ(recorder.Boxes()[0].type, UINT(MB_OKCANCEL));
    EXPECT_EQ(recorder.Boxes()[1].text, CString(L"Aucun message d'erreur n'est disponible."));
    EXPECT_EQ(recorder.Boxes()[2].text, CString(L"Mémoire insuffisante."));
}
