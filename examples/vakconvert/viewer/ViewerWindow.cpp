#include "examples/vakconvert/viewer/ViewerWindow.h"

#include "examples/vakconvert/viewer/SavePart.h"
#include "files/FileKinds.h"
#include "files/FilePath.h"
#include "files/IoPlugins.h"
#include "framework/base/Application.h"
#include "framework/ui/FileDialog.h"

#include <algorithm>

namespace {

/// Pixels.
constexpr int kStatusHeight = 22;
constexpr int kGap = 3;

} // namespace

ViewerWindow::ViewerWindow(const Document& document, const CString& path)
    : m_document(document), m_path(path), m_view(document, *this)
{
}

ViewerWindow::~ViewerWindow()
{
    // While the view is still there to be told.
    DestroyWindow();
}

bool ViewerWindow::Open()
{
    const LPCTSTR windowClass =
        AfxRegisterWndClass(0, LoadCursor(nullptr, IDC_ARROW), GetSysColorBrush(COLOR_3DFACE), nullptr);
    const CString title = fileStripPath(m_path) + L" - vakconvert";
    if (!CreateEx(0, windowClass, title, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CRect(60, 60, 960, 720),
                  nullptr, 0))
        return false;
    ShowWindow(SW_SHOW);
    m_view.ShowWhole(); // now it has its size
    SetForegroundWindow(GetSafeHwnd());
    m_view.SetFocus();
    return true;
}

int ViewerWindow::OnCreate(CREATESTRUCT* create)
{
    constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | SS_NOPREFIX | SS_ENDELLIPSIS;
    if (CWnd::OnCreate(create) != 0 || !m_view.Create(this) ||
        !m_status.CreateEx(0, L"STATIC", L"", kStyle, CRect(), this, 0))
        return -1;
    m_status.SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)));
    return 0;
}

void ViewerWindow::OnSize(UINT type, int cx, int cy)
{
    if (type == SIZE_MINIMIZED)
        return;
    const int bottom = std::max(cy - kStatusHeight, 0);
    m_view.MoveWindow(CRect(0, 0, cx, bottom));
    m_status.MoveWindow(CRect(2 * kGap, bottom + kGap, std::max(cx - 2 * kGap, 0), cy));
}

void ViewerWindow::OnGetMinMaxInfo(MINMAXINFO* info)
{
    info->ptMinTrackSize = {240, 160};
}

void ViewerWindow::OnSetFocus(HWND)
{
    m_view.SetFocus();
}

void ViewerWindow::OnViewChanged()
{
    const CString text = TextOf(m_view.Status());
    if (text == m_statusText || !m_status.GetSafeHwnd())
        return;
    m_statusText = text;
    m_status.SetWindowText(text);
}

CString ViewerWindow::OfferedName() const
{
    const CString extension = fileGetExtension(m_path);
    return m_path.Left(m_path.GetLength() - extension.GetLength()) + L" (part)" + extension;
}

void ViewerWindow::OnSaveWanted()
{
    const Image* const image = m_document.AsImage();
    const CRect part = m_view.Selection();
    CString problem;
    if (!image)
        problem = L"Parts of images can be saved, not those of models.";
    else if (part.IsRectEmpty())
        problem = L"Select the part to save first: drag the mouse over it.";
    if (problem.IsEmpty()) {
        CFileDialog dialog(FALSE, L"png", OfferedName(), CFileDialog::kDefaultFlags,
                           fileGetDialogFilter(kIoPluginBitmaps), this);
        if (dialog.DoModal() != IDOK)
            return;
        problem = SavePart(*image, part, dialog.GetPathName());
    }
    if (!problem.IsEmpty())
        AfxMessageBox(problem, MB_OK | MB_ICONEXCLAMATION);
}
