#include "framework/base/Application.h"
#include "framework/base/StringTable.h"
#include "framework/base/SystemText.h"

#include <gtest/gtest.h>

namespace {

/// The application below every test: a box that no recorder caught would wait for a user, so it fails the
/// test.
class UnattendedApplication : public CWinApp
{
public:
    int DoMessageBox(LPCTSTR prompt, UINT type, UINT) override
    {
        const CString text(prompt);
        CStringA bytes;
        vak::system::ToNarrow(CP_UTF8, text, std::size_t(text.GetLength()), bytes);
        ADD_FAILURE() << "message box without a recorder: " << bytes.GetString();
        return vak::DefaultAnswer(type);
    }
};

/// A test leaves the process as it found it.
class LeavesNothingBehind : public testing::EmptyTestEventListener
{
public:
    explicit LeavesNothingBehind(const CWinApp& app) : m_app(app) {}

private:
    void OnTestEnd(const testing::TestInfo&) override
    {
        EXPECT_EQ(AfxGetApp(), &m_app) << "an application object outlives its test";
        EXPECT_EQ(vak::TextLanguage(), vak::kDefaultTextLanguage)
            << "the test leaves another language behind";
        vak::SetTextLanguage(vak::kDefaultTextLanguage);
    }

    const CWinApp& m_app;
};

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    UnattendedApplication app;
    testing::UnitTest::GetInstance()->listeners().Append(new LeavesNothingBehind(app));
    return RUN_ALL_TESTS();
}
