#include "core/HashTable.h"

// Exported member by member, as in HashMap.cpp.
template VAK_API CHashTable<CString>::CHashTable(unsigned int);
template VAK_API CHashTable<CString>::CHashTable(const CHashTable&);
template VAK_API CHashTable<CString>& CHashTable<CString>::operator=(const CHashTable&);
template VAK_API CHashTable<CString>::~CHashTable();
template VAK_API int CHashTable<CString>::IsFound(const CString&) const;
template VAK_API const CString& CHashTable<CString>::GetNext(unsigned int&) const;
template VAK_API void CHashTable<CString>::GetNext(unsigned int&, CString&) const;
template VAK_API int CHashTable<CString>::Insert(const CString&);
template VAK_API int CHashTable<CString>::Remove(const CString&);
template VAK_API CHashTable<unsigned int>::CHashTable(unsigned int);
template VAK_API CHashTable<unsigned int>::CHashTable(const CHashTable&);
template VAK_API CHashTable<unsigned int>& CHashTable<unsigned int>::operator=(const CHashTable&);
template VAK_API CHashTable<unsigned int>::~CHashTable();
template VAK_API int CHashTable<unsigned int>::IsFound(const unsigned int&) const;
template VAK_API const unsigned int& CHashTable<unsigned int>::GetNext(unsigned int&) const;
template VAK_API void CHashTable<unsigned int>::GetNext(unsigned int&, unsigned int&) const;
template VAK_API int CHashTable<unsigned int>::Insert(const unsigned int&);
template VAK_API int CHashTable<unsigned int>::Remove(const unsigned int&);
