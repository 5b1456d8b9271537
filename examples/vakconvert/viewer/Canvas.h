#pragma once

#include "examples/vakconvert/viewer/Pixels.h"
#include "framework/ui/DC.h"

/// A picture of a client area in memory, in which a painting is made before the window shows it.
class Canvas : public CDC
{
public:
    Canvas() = default;
    ~Canvas() override;

    /// Makes room for that many pixels; what was drawn may be gone. Throws CResourceException when the system
    /// has none.
    void Prepare(CSize size);
    /// The pixels at and behind `at`, for drawing without the device context. What was drawn through it is
    /// there.
    PixelRows PixelsAt(CPoint at);

private:
    void Free();

    CBitmap m_bitmap;
    CBitmap* m_former = nullptr;
    CSize m_size;
    std::uint32_t* m_pixels = nullptr;
};
