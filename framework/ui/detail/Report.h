#pragma once

#include "framework/base/Platform.h"

class CException;

namespace vak::detail {

/// Reports what a hook has thrown, and deletes it. Lets nothing out, what the report itself throws included:
/// the system's message loop lies between a window procedure and whoever could catch.
void ReportFromProcedure(CException* exception);

/// After WM_PAINT: takes what has not been drawn for drawn, lest the system ask for it for ever.
void GiveUpPainting(HWND window, UINT message);

} // namespace vak::detail
