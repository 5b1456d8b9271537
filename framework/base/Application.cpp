#include "framework/base/Application.h"

#include "framework/base/StringTable.h"
#include "framework/base/SystemMessage.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <mutex>

IMPLEMENT_DYNAMIC(CWinApp, CObject)

namespace {

/// Guards the chain; readers of its head need no lock. Never destroyed: a host's static object may outlive
/// it.
std::mutex& ChainLock()
{
    static auto* const lock = new std::mutex;
    return *lock;
}

/// The newest application object; the older ones hang on m_previous.
constinit std::atomic<CWinApp*> newest = nullptr;
constinit std::atomic<HINSTANCE> resourceModule = nullptr;
/// For code that runs without an application object.
constinit std::atomic<int> waitCursorCount = 0;

constexpr UINT kTypeMask = 0x0F;
constexpr UINT kIconMask = 0xF0;

/// Boxes that tell or ask carry the exclamation icon unless told otherwise; those that offer to try again do
/// not.
UINT WithIcon(UINT type)
{
    const UINT buttons = type & kTypeMask;
    const bool tellsOrAsks =
        buttons == MB_OK || buttons == MB_OKCANCEL || buttons == MB_YESNO || buttons == MB_YESNOCANCEL;
    return (type & kIconMask) == 0 && tellsOrAsks ? type | MB_ICONEXCLAMATION : type;
}

void CountWaitCursor(std::atomic<int>& count, int code)
{
    int before = count;
    int after = 0;
    do
        after = std::max(before + code, 0);
    while (!count.compare_exchange_weak(before, after));
    if (code != 0 || after > 0)
        vak::system::ShowWaitCursor(after > 0);
}

void DoWaitCursor(int code)
{
    if (CWinApp* app = AfxGetApp())
        return app->DoWaitCursor(code);
    CountWaitCursor(waitCursorCount, code);
}

} // namespace

CWinApp::CWinApp(LPCTSTR appName) : m_appName(appName)
{
    if (appName != nullptr)
        m_pszAppName = m_appName;
    const std::scoped_lock lock(ChainLock());
    m_previous = newest.exchange(this);
}

CWinApp::~CWinApp()
{
    const std::scoped_lock lock(ChainLock());
    if (newest == this) {
        newest = m_previous;
        return;
    }
    CWinApp* later = newest;
    while (later->m_previous != this)
        later = later->m_previous;
    later->m_previous = m_previous;
}

int CWinApp::DoMessageBox(LPCTSTR prompt, UINT type, UINT)
{
    const int answer =
        vak::system::ShowMessage(prompt, m_pszAppName == nullptr ? L"" : m_pszAppName, WithIcon(type));
    RestoreWaitCursor();
    return answer;
}

void CWinApp::DoWaitCursor(int code)
{
    CountWaitCursor(m_waitCursorCount, code);
}

CWaitCursor::CWaitCursor()
{
    DoWaitCursor(1);
}

CWaitCursor::~CWaitCursor()
{
    DoWaitCursor(-1);
}

void CWaitCursor::Restore()
{
    DoWaitCursor(0);
}

CWinApp* AfxGetApp()
{
    return newest;
}

CWnd* AfxGetMainWnd()
{
    const CWinApp* app = AfxGetApp();
    return app == nullptr ? nullptr : app->m_pMainWnd;
}

LPCTSTR AfxGetAppName()
{
    const CWinApp* app = AfxGetApp();
    return app == nullptr || app->m_pszAppName == nullptr ? L"" : app->m_pszAppName;
}

HINSTANCE AfxGetResourceHandle()
{
    return resourceModule;
}

void AfxSetResourceHandle(HINSTANCE module)
{
    resourceModule = module;
}

int AfxMessageBox(LPCTSTR text, UINT type, UINT helpId)
{
    if (text == nullptr)
        text = L"";
    if (CWinApp* app = AfxGetApp())
        return app->DoMessageBox(text, type, helpId);
    return vak::system::ShowMessage(text, L"", WithIcon(type));
}

int AfxMessageBox(UINT textId, UINT type, UINT helpId)
{
    CString text;
    vak::LoadText(text, textId);
    return AfxMessageBox(text, type, helpId == UINT(-1) ? textId : helpId);
}

namespace vak {

int DefaultAnswer(UINT type)
{
    // The answers in the order of the buttons, by the type's low digit, which also counts the boxes.
    static constexpr int kAnswers[][3] = {{1}, {1, 2}, {3, 4, 5}, {6, 7, 2}, {6, 7}, {4, 2}, {2, 10, 11}};
    const UINT box = type & kTypeMask;
    const UINT button = type >> 8 & 0x0F;
    if (box >= std::size(kAnswers) || button >= std::size(kAnswers[0]) || kAnswers[box][button] == 0)
        return IDOK;
    return kAnswers[box][button];
}

} // namespace vak
