#include "core/IntMap.h"

CIntMap::CIntMap(unsigned int n) : CHashMap<int, int, int>(n) {}

CIntMap::CIntMap(const CIntMap& other) = default;

CIntMap& CIntMap::operator=(const CIntMap& other) = default;

CIntMap::~CIntMap() = default;
