#include "core/HashMap.h"

// The instantiation that is part of the library, exported member by member: exported as a whole it would
// leave out the inline ones. Users who include the header inline them all the same.
template VAK_API CHashMap<int, int, int>::CHashMap(unsigned int);
template VAK_API CHashMap<int, int, int>::CHashMap(const CHashMap&);
template VAK_API CHashMap<int, int, int>& CHashMap<int, int, int>::operator=(const CHashMap&);
template VAK_API CHashMap<int, int, int>::~CHashMap();
template VAK_API int CHashMap<int, int, int>::Find(int, int&) const;
template VAK_API int CHashMap<int, int, int>::IsFound(int) const;
template VAK_API const int& CHashMap<int, int, int>::GetNext(unsigned int&, int&) const;
template VAK_API void CHashMap<int, int, int>::GetNext(unsigned int&, int&, int&) const;
template VAK_API int CHashMap<int, int, int>::Insert(int, const int&);
template VAK_API int CHashMap<int, int, int>::Insert2(int, int);
template VAK_API int CHashMap<int, int, int>::Remove(int);
