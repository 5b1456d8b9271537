#include "core/HashTable.h"

template class CHashTable<CString>;
template class CHashTable<unsigned int>;
