#include "framework/base/StringList.h"

#include "framework/base/Archive.h"
#include "framework/base/detail/Allocator.h"

#include <new>

IMPLEMENT_SERIAL(CStringList, CObject, 0)

CStringList::~CStringList()
{
    RemoveAll();
}

CStringList::Node* CStringList::Checked(POSITION position)
{
    if (position == nullptr)
        vak::detail::ThrowInvalidArgument();
    return static_cast<Node*>(position);
}

const CString& CStringList::GetAt(POSITION position) const
{
    return Checked(position)->text;
}

CString& CStringList::GetAt(POSITION position)
{
    return Checked(position)->text;
}

const CString& CStringList::GetNext(POSITION& position) const
{
    const Node* node = Checked(position);
    position = node->next;
    return node->text;
}

CString& CStringList::GetNext(POSITION& position)
{
    Node* node = Checked(position);
    position = node->next;
    return node->text;
}

const CString& CStringList::GetPrev(POSITION& position) const
{
    const Node* node = Checked(position);
    position = node->previous;
    return node->text;
}

CString& CStringList::GetPrev(POSITION& position)
{
    Node* node = Checked(position);
    position = node->previous;
    return node->text;
}

POSITION CStringList::Find(const CString& wanted, POSITION startAfter) const
{
    Node* node = startAfter == nullptr ? m_head : static_cast<Node*>(startAfter)->next;
    while (node != nullptr && node->text != wanted)
        node = node->next;
    return node;
}

POSITION CStringList::FindIndex(INT_PTR index) const
{
    if (index < 0 || index >= m_count)
        return nullptr;
    Node* node = m_head;
    for (; index != 0; --index)
        node = node->next;
    return node;
}

CStringList::Node* CStringList::Link(Node* previous, Node* next, const CString& text)
{
    Node* node = new (std::nothrow) Node;
    if (node == nullptr)
        vak::detail::ThrowMemory();
    try {
        node->text = text;
    } catch (...) {
        delete node;
        throw;
    }
    node->previous = previous;
    node->next = next;
    (previous == nullptr ? m_head : previous->next) = node;
    (next == nullptr ? m_tail : next->previous) = node;
    ++m_count;
    return node;
}

POSITION CStringList::AddHead(const CString& text)
{
    return Link(nullptr, m_head, text);
}

POSITION CStringList::AddTail(const CString& text)
{
    return Link(m_tail, nullptr, text);
}

void CStringList::AddHead(const CStringList* from)
{
    const Node* last = from->m_tail;
    for (INT_PTR left = from->m_count; left != 0; --left, last = last->previous)
        AddHead(last->text);
}

void CStringList::AddTail(const CStringList* from)
{
    const Node* first = from->m_head;
    for (INT_PTR left = from->m_count; left != 0; --left, first = first->next)
        AddTail(first->text);
}

POSITION CStringList::InsertBefore(POSITION position, const CString& text)
{
    if (position == nullptr)
        return AddHead(text);
    Node* next = static_cast<Node*>(position);
    return Link(next->previous, next, text);
}

POSITION CStringList::InsertAfter(POSITION position, const CString& text)
{
    if (position == nullptr)
        return AddTail(text);
    Node* previous = static_cast<Node*>(position);
    return Link(previous, previous->next, text);
}

CString CStringList::RemoveHead()
{
    CString text = std::move(GetHead());
    RemoveAt(m_head);
    return text;
}

CString CStringList::RemoveTail()
{
    CString text = std::move(GetTail());
    RemoveAt(m_tail);
    return text;
}

void CStringList::RemoveAt(POSITION position)
{
    Node* node = Checked(position);
    (node->previous == nullptr ? m_head : node->previous->next) = node->next;
    (node->next == nullptr ? m_tail : node->next->previous) = node->previous;
    --m_count;
    delete node;
}

void CStringList::RemoveAll()
{
    while (m_head != nullptr)
        RemoveAt(m_head);
}

void CStringList::Serialize(CArchive& archive)
{
    if (archive.IsStoring()) {
        archive.WriteCount(static_cast<DWORD_PTR>(m_count));
        for (const Node* node = m_head; node != nullptr; node = node->next)
            archive << node->text;
        return;
    }
    for (DWORD_PTR left = archive.ReadCount(); left != 0; --left) {
        CString text;
        archive >> text;
        AddTail(text);
    }
}
