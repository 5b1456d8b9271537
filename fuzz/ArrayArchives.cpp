// Both arrays' archives from arbitrary bytes. What loads is stored, and what was stored loads again and
// stores the same bytes; what does not load leaves an empty array that can be used.
#include "core/ElementArray.h"
#include "core/IntArrayID.h"
#include "fuzz/support/Target.h"
#include "tests/support/Archived.h"

#include <cstring>
#include <vector>

using vak::fuzz::Require;

namespace {

/// Elements of any size; as many are destructed as were constructed, but for the scratch of a reading.
class Bytes : public CElementArray
{
public:
    Bytes() : CElementArray(4) {}
    ~Bytes() override
    {
        Bytes::RemoveAll();
        Require(m_alive == 0);
    }

    void ConstructElement(void* element) override
    {
        std::memset(element, 0, GetSizeOfElement());
        ++m_alive;
    }
    void DestructElement(void*) override { --m_alive; }
    void CopyElement(void* destination, const void* source) override
    {
        std::memmove(destination, source, GetSizeOfElement());
    }
    void SerializeElement(CArchive& archive, void* element) override
    {
        if (archive.IsStoring())
            archive.Write(element, GetSizeOfElement());
        else
            archive.EnsureRead(element, GetSizeOfElement());
    }
    /// Uses the array as its owner would, unless the file has made it too large for that.
    void Use()
    {
        Require(m_alive == GetSize() || m_alive == GetSize() + 1);
        m_alive = GetSize();
        SetGrowFactor(0);
        if (GetSizeOfElement() > 4096)
            return;
        const std::vector<char> element(GetSizeOfElement() + 1, 'x');
        Add(element.data());
        InsertAt(GetSize() / 2, this);
        RemoveAt(0);
        FreeExtra();
    }

private:
    int m_alive = 0;
};

struct Ints : CIntArrayID
{
    void Use()
    {
        Add(1);
        InsertAt(GetSize() / 2, this);
    }
};

template <class Array, class File>
void RunArray(const std::string& bytes, int room)
{
    Array array, again;
    array.SetSize(room);
    if (vak::test::IsLoaded<CArchiveException, File>(array, bytes)) {
        const std::string stored = vak::test::StoredBytes(array);
        // Elements of another size need the room that the array happened to have.
        again.SetSize(room);
        Require(vak::test::IsLoaded<CArchiveException>(again, stored) &&
                vak::test::StoredBytes(again) == stored);
        again.Use();
    } else {
        Require(array.GetSize() == 0);
    }
    array.Use();
}

void Run(const std::uint8_t* data, std::size_t size)
{
    // The first byte chooses the array, whether the file knows its length, and the room that the array has.
    constexpr void (*kRuns[])(const std::string&, int) = {RunArray<Bytes, CMemFile>, RunArray<Ints, CMemFile>,
                                                          RunArray<Bytes, vak::test::LengthlessFile>,
                                                          RunArray<Ints, vak::test::LengthlessFile>};
    if (size != 0)
        kRuns[data[0] & 3](std::string(data + 1, data + size), data[0] >> 2);
}

const vak::fuzz::Target target("ArrayArchives", Run);

} // namespace
