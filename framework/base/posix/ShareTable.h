#pragma once

#include "framework/base/SystemFile.h"

#include <sys/stat.h>

/// The platform's sharing rules between the opens of this process; other processes are not seen.
///
/// Every open file says what it does and what it lets others do; a new open must agree with all that are
/// there, and a file that somebody holds without delete sharing is neither removed, renamed nor replaced.
namespace vak::posix {

/// Enters the open file `descriptor`; false when it disagrees with one that is open.
bool AdmitOpen(int descriptor, const struct stat& file, const vak::system::OpenOptions& options);
/// Forgets the descriptor, before it is closed.
void ForgetOpen(int descriptor);
/// Whether the file may be removed or renamed now.
bool MayDelete(const struct stat& file);

} // namespace vak::posix
