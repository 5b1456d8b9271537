#pragma once

#include "framework/base/Application.h"

#include <deque>
#include <initializer_list>
#include <vector>

namespace vak::test {

/// While it lives, message boxes are recorded and answered from a script, and wait cursors are counted.
class MessageRecorder : public CWinApp
{
public:
    struct Box
    {
        CString text;
        UINT type;
        UINT helpId;
    };

    /// The boxes get `answers` in turn; when they are used up, the default button's answer.
    explicit MessageRecorder(std::initializer_list<int> answers = {}) : m_answers(answers) {}

    const std::vector<Box>& Boxes() const { return m_boxes; }
    /// How many wait cursors were begun, and how many of them have not ended.
    int WaitCursorsBegun() const { return m_waitCursorsBegun; }
    int WaitCursorsOpen() const { return m_waitCursorsOpen; }

    int DoMessageBox(LPCTSTR prompt, UINT type, UINT helpId) override;
    void DoWaitCursor(int code) override;

private:
    std::deque<int> m_answers;
    std::vector<Box> m_boxes;
    int m_waitCursorsBegun = 0;
    int m_waitCursorsOpen = 0;
};

} // namespace vak::test
