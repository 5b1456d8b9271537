#pragma once

class CException;

namespace vak::detail {

/// Reports what a hook has thrown, and deletes it. Lets nothing out, what the report itself throws included:
/// the system's message loop lies between a window procedure and whoever could catch.
void ReportFromProcedure(CException* exception);

} // namespace vak::detail
