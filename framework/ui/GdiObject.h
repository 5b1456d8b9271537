#pragma once

/// What a device context draws with: pens, brushes, bitmaps and regions as objects. Windows only; an object
/// owns its handle and deletes it, so it is kept until no device context has it selected any more.

#include "framework/base/Geometry.h"
#include "framework/base/Object.h"

class CDC;

class VAK_API CGdiObject : public CObject
{
    DECLARE_DYNAMIC(CGdiObject)

public:
    CGdiObject() = default;
    /// Deletes the handle.
    ~CGdiObject() override;

    HGDIOBJ GetSafeHandle() const { return m_hObject; }
    /// Takes over `object`; returns 0 when it is null or this object has one.
    BOOL Attach(HGDIOBJ object);
    /// Lets go of the handle and returns it.
    HGDIOBJ Detach();
    /// Returns 0 when there is no handle.
    BOOL DeleteObject();

    HGDIOBJ m_hObject = nullptr;
};

/// Draws lines. The functions that create return 0 when the system refuses, the constructors with arguments
/// then throw CResourceException; so for the classes below.
class VAK_API CPen : public CGdiObject
{
    DECLARE_DYNAMIC(CPen)

public:
    CPen() = default;
    /// `style` is PS_SOLID, PS_DOT, ...; `width` in logical units, 0 for one pixel. Only solid pens are wider
    /// than that.
    CPen(int style, int width, COLORREF color);

    BOOL CreatePen(int style, int width, COLORREF color);
};

class CBitmap;

/// Fills areas.
class VAK_API CBrush : public CGdiObject
{
    DECLARE_DYNAMIC(CBrush)

public:
    CBrush() = default;
    explicit CBrush(COLORREF color);
    explicit CBrush(CBitmap* pattern);

    BOOL CreateSolidBrush(COLORREF color);
    /// Repeats `pattern`, which is copied. Of a monochrome one, the bits that are 1 get the device context's
    /// background colour and those that are 0 its text colour.
    BOOL CreatePatternBrush(CBitmap* pattern);
};

class VAK_API CBitmap : public CGdiObject
{
    DECLARE_DYNAMIC(CBitmap)

public:
    /// `bits` are copied: rows from the top, each padded to 16 bits; null leaves them undefined.
    BOOL CreateBitmap(int width, int height, UINT planes, UINT bitCount, const void* bits);
    /// A bitmap that memory device contexts made for `dc` can draw on.
    BOOL CreateCompatibleBitmap(CDC* dc, int width, int height);
};

/// A set of pixels, in device coordinates.
class VAK_API CRgn : public CGdiObject
{
    DECLARE_DYNAMIC(CRgn)

public:
    /// The rectangle without its right column and bottom row.
    BOOL CreateRectRgnIndirect(LPCRECT rect);
    /// Makes this region, which exists already, of the two: `mode` is RGN_AND, RGN_OR, RGN_XOR or RGN_DIFF.
    /// Returns what kind of region it is, ERROR when that failed. Any of them may be the same.
    int CombineRgn(const CRgn* first, const CRgn* second, int mode);
};
