#pragma once

#include "framework/ui/DC.h"

namespace vak::detail {

/// Gives the device context back as it was; meanwhile its coordinates are those of the device.
/// That of a window that has its own still has the origin that painting has set.
class DeviceCoordinates
{
public:
    explicit DeviceCoordinates(CDC& dc) : m_dc(dc), m_saved(dc.SaveDC())
    {
        dc.SetMapMode(MM_TEXT);
        dc.SetViewportOrg(CPoint());
        SetWindowOrgEx(dc.GetSafeHdc(), 0, 0, nullptr);
    }
    DeviceCoordinates(const DeviceCoordinates&) = delete;
    DeviceCoordinates& operator=(const DeviceCoordinates&) = delete;
    ~DeviceCoordinates() { m_dc.RestoreDC(m_saved); }

private:
    CDC& m_dc;
    int m_saved;
};

} // namespace vak::detail
