#pragma once

#include "framework/base/String.h"
#include "framework/base/SystemFileFault.h"

#include <ctime>
#include <string>
#include <string_view>

/// The platform's paths and names on this host: `Z:\tmp\x` is /tmp/x, as Wine maps it.
namespace vak::posix {

/// The host's form (UTF-8) of a platform path. Understands drive Z:, paths from the root, relative ones,
/// slashes as backslashes and the prefix `\\?\`. Returns an empty string for what this host does not have
/// (other drives, network names) or what the platform refuses as a name; `error`, when given, receives the
/// platform's code.
std::string HostFromPath(LPCWSTR path, DWORD* error = nullptr);

/// The platform's form of a host path: absolute ones on drive Z:, relative ones relative, slashes turned.
CString PathFromHost(std::string_view host);

/// UTF-16 to UTF-8 and back. Bytes that are no UTF-8 become the lone surrogates 0xDC80 to 0xDCFF and turn
/// back into those bytes, so every name of the host can be opened again.
std::string HostFromName(LPCWSTR name, size_t length);
CString NameFromHost(std::string_view host);

/// The host's form of a moment.
timespec ToHostTime(const FILETIME& time);

/// The platform's error code (ERROR_...) for an errno value.
DWORD ErrorFromErrno(int error);

/// Records `error` as the thread's last failure, for vak::system::LastFileError; returns false.
bool Fail(DWORD error);
/// The same for errno.
bool FailErrno();
/// The same for errno of a call on `host`: a name that is missing because its folder is missing is another
/// error.
bool FailPath(const std::string& host);
/// Whether a test's hook makes the operation fail; that failure is then recorded.
bool Refused(vak::system::FileOperation operation);

} // namespace vak::posix
