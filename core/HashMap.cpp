#include "core/HashMap.h"

template class CHashMap<int, int, int>;
