#pragma once

/// A place in a list or a map, opaque to everybody but the container; null for none. It stays valid until the
/// element that it names is removed.
struct __POSITION
{
};
using POSITION = __POSITION*;
