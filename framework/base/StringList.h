#pragma once

/// CStringList: a doubly linked list of strings.
///
/// A POSITION names an element until that element is removed; it must come from the same list. A null
/// position, or an empty list, where an element is needed throws CInvalidArgException, an allocation that
/// fails CMemoryException (both by pointer). References live as long as their element.

#include "framework/base/Object.h"
#include "framework/base/Position.h"
#include "framework/base/String.h"

class VAK_API CStringList : public CObject
{
    DECLARE_SERIAL(CStringList)

public:
    CStringList() = default;
    ~CStringList() override;

    INT_PTR GetCount() const { return m_count; }
    INT_PTR GetSize() const { return m_count; }
    BOOL IsEmpty() const { return m_count == 0; }
    const CString& GetHead() const { return GetAt(m_head); }
    CString& GetHead() { return GetAt(m_head); }
    const CString& GetTail() const { return GetAt(m_tail); }
    CString& GetTail() { return GetAt(m_tail); }
    /// Null when the list is empty.
    POSITION GetHeadPosition() const { return m_head; }
    POSITION GetTailPosition() const { return m_tail; }
    /// Return the element at `position` and move it on; it becomes null behind the last (before the first)
    /// one.
    const CString& GetNext(POSITION& position) const;
    CString& GetNext(POSITION& position);
    const CString& GetPrev(POSITION& position) const;
    CString& GetPrev(POSITION& position);
    const CString& GetAt(POSITION position) const;
    CString& GetAt(POSITION position);
    /// The first element equal to `wanted`, behind `startAfter` when that is given; null for none.
    POSITION Find(const CString& wanted, POSITION startAfter = nullptr) const;
    /// Null when `index`, from 0, is outside.
    POSITION FindIndex(INT_PTR index) const;

    POSITION AddHead(const CString& text);
    POSITION AddTail(const CString& text);
    /// Add copies of all elements of another list, in its order.
    void AddHead(const CStringList* from);
    void AddTail(const CStringList* from);
    /// A null position inserts at the head (InsertBefore) or at the tail (InsertAfter).
    POSITION InsertBefore(POSITION position, const CString& text);
    POSITION InsertAfter(POSITION position, const CString& text);
    void SetAt(POSITION position, const CString& text) { GetAt(position) = text; }
    CString RemoveHead();
    CString RemoveTail();
    void RemoveAt(POSITION position);
    void RemoveAll();

    /// The archive holds the count and the strings; reading appends to what the list holds, after an
    /// exception the strings read before.
    void Serialize(CArchive& archive) override;

private:
    struct Node : __POSITION
    {
        Node* next;
        Node* previous;
        CString text;
    };
    static Node* Checked(POSITION position);
    Node* Link(Node* previous, Node* next, const CString& text);

    Node* m_head = nullptr;
    Node* m_tail = nullptr;
    INT_PTR m_count = 0;
};
