#include "framework/ui/View.h"

IMPLEMENT_DYNAMIC(CView, CWnd)

void CView::OnPrepareDC(CDC*) {}

BOOL CView::OnScrollBy(CSize, BOOL)
{
    return FALSE;
}

void CView::OnPaint()
{
    CPaintDC dc(this);
    OnPrepareDC(&dc);
    OnDraw(&dc);
}
