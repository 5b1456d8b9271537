#pragma once

/// A font of the platform as an object. Windows only. It is kept until no control and no device context has
/// it any more.

#include "framework/ui/GdiObject.h"

class VAK_API CFont : public CGdiObject
{
    DECLARE_DYNAMIC(CFont)

public:
    /// Makes a font of `pointSize` tenths of a point for the screen; returns 0 when the system refuses or
    /// this object has one.
    BOOL CreatePointFont(int pointSize, LPCTSTR faceName);
};
