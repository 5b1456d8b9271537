#include "examples/vakconvert/viewer/Canvas.h"

#include "framework/base/Exception.h"

Canvas::~Canvas()
{
    Free();
}

void Canvas::Free()
{
    if (m_former)
        SelectObject(m_former);
    m_former = nullptr;
    m_bitmap.DeleteObject();
    m_pixels = nullptr;
    m_size = CSize();
}

void Canvas::Prepare(CSize size)
{
    if (size.cx <= m_size.cx && size.cy <= m_size.cy)
        return;
    Free();
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.cx;
    info.bmiHeader.biHeight = -size.cy; // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* pixels = nullptr;
    const bool hasContext = GetSafeHdc() || CreateCompatibleDC(nullptr);
    if (!hasContext ||
        !m_bitmap.Attach(CreateDIBSection(GetSafeHdc(), &info, DIB_RGB_COLORS, &pixels, nullptr, 0)))
        AfxThrowResourceException();
    m_former = SelectObject(&m_bitmap);
    m_pixels = static_cast<std::uint32_t*>(pixels);
    m_size = size;
}

PixelRows Canvas::PixelsAt(CPoint at)
{
    GdiFlush();
    return {m_pixels + std::ptrdiff_t{m_size.cx} * at.y + at.x, static_cast<int>(m_size.cx)};
}
