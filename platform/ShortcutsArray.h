#pragma once

#include "framework/base/Array.h"
#include "platform/Shortcut.h"

/// The shortcuts of a folder. The array owns its elements: what leaves it by RemoveAt, RemoveAll, Copy onto
/// it or its destruction is deleted. One thread at a time.
class VAK_API CShortcutsArray : public CArray<CShortcut*, CShortcut*>
{
public:
    CShortcutsArray() = default;
    ~CShortcutsArray() override;

    /// Appends the shortcuts of a folder (made slash-terminated) in the order in which it lists them, and
    /// returns how many. Files that cannot be read as shortcuts are left out and left alone. With a non-zero
    /// `deleteBroken` a shortcut that was read, but whose target is neither a file nor a folder any more, is
    /// deleted from the disk instead; on a drive that is not there nothing exists. Where that cannot be told,
    /// as on a computer that does not answer, the shortcut stays.
    int ReadShortcuts(CString& folder, int iconFlags, int deleteBroken);
    /// Deletes `count` elements from `index` on; throws CInvalidArgException* when they are not there.
    void RemoveAt(int index, int count);
    void RemoveAll();
    /// Replaces the elements of `to` by copies of these.
    void Copy(CShortcutsArray& to) const;
};
