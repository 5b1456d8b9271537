#pragma once

/// Calls into a plug-in's code.

#include "framework/base/Exception.h"
#include "framework/base/String.h"

#include <exception>

namespace vak::detail {

/// What became of a call.
struct PluginCallResult
{
    bool threw = false;
    CString message; ///< the exception's, empty when it has none
};

/// Calls `call` and lets no exception out. An exception of the platform is given back; another pointer stays
/// with whoever threw it, for nobody here knows how it was made.
template <class Call>
PluginCallResult CallPlugin(Call&& call)
{
    PluginCallResult result;
    try {
        call();
        return result;
    } catch (CException* exception) {
        wchar_t message[512] = {};
        if (exception->GetErrorMessage(message, 512))
            result.message = message;
        exception->Delete();
    } catch (const std::exception& exception) {
        result.message = CString(exception.what());
    } catch (...) {
    }
    result.threw = true;
    return result;
}

} // namespace vak::detail
