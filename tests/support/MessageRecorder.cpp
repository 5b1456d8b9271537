#include "tests/support/MessageRecorder.h"

namespace vak::test {

int MessageRecorder::DoMessageBox(LPCTSTR prompt, UINT type, UINT helpId)
{
    m_boxes.push_back({prompt, type, helpId});
    if (m_answers.empty())
        return DefaultAnswer(type);
    const int answer = m_answers.front();
    m_answers.pop_front();
    return answer;
}

void MessageRecorder::DoWaitCursor(int code)
{
    m_waitCursorsBegun += code > 0;
    m_waitCursorsOpen += code;
}

} // namespace vak::test
