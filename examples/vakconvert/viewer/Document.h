#pragma once

#include "examples/vakconvert/Content.h"
#include "examples/vakconvert/viewer/Canvas.h"
#include "examples/vakconvert/viewer/Wireframe.h"
#include "view/VakCoord.h"

#include <optional>

/// What a file shows: its image, or its model as a wireframe.
class Document
{
public:
    explicit Document(Content&& content);

    /// In document pixels; empty when there is nothing to see.
    CSize Size() const;
    /// The image, or null.
    const Image* AsImage() const { return m_wireframe ? nullptr : &m_content.image; }
    /// Draws what lies in `area`, a part of the page, where `coord` places it. `canvas` is a picture of the
    /// client area and clipped to that part.
    void Draw(Canvas& canvas, const CVakCoord& coord, const CRect& area) const;

private:
    void DrawImage(Canvas& canvas, const CVakCoord& coord, const CRect& area) const;
    void DrawWireframe(Canvas& canvas, const CVakCoord& coord, const CRect& area) const;

    Content m_content;
    std::optional<Wireframe> m_wireframe;
};
