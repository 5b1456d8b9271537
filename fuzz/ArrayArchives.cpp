// Both arrays' archives from arbitrary bytes. What loads is stored, and what was stored loads again and
// stores the same bytes; what does not load leaves an empty array that can be used.
#include "core/ElementArray.h"
#include "core/IntArrayID.h"
#include "framework/base/Archive.h"
#include "framework/base/Exception.h"
#include "framework/base/MemFile.h"
#include "fuzz/support/Target.h"

#include <cstring>
#include <string>
#include <vector>

using vak::fuzz::Require;

namespace {

class LengthlessFile : public CMemFile
{
public:
    using CMemFile::CMemFile;
    ULONGLONG GetLength() const override { AfxThrowNotSupportedException(); }
};

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
    void ForgetScratch()
    {
        Require(m_alive == GetSize() || m_alive == GetSize() + 1);
        m_alive = GetSize();
    }
    /// Uses the array as its owner would, unless the file has made it too large for that.
    void Use()
    {
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
    void ForgetScratch() {}
    void Use()
    {
        Add(1);
        InsertAt(GetSize() / 2, this);
    }
};

template <class Array>
std::string Store(Array& array)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store, 128);
    array.Serialize(archive);
    archive.Close();
    std::string bytes(std::size_t(file.GetLength()), '\0');
    file.SeekToBegin();
    file.Read(bytes.data(), UINT(bytes.size()));
    return bytes;
}

template <class Array>
bool Load(Array& array, CFile& file)
{
    bool isLoaded = true;
    CArchive archive(&file, CArchive::load, 128);
    try {
        array.Serialize(archive);
    } catch (CArchiveException* exception) {
        exception->Delete();
        isLoaded = false;
    }
    Require(isLoaded || array.GetSize() == 0);
    array.ForgetScratch();
    return isLoaded;
}

template <class Array>
void RunArray(CFile& file, int room)
{
    Array array, again;
    array.SetSize(room);
    if (Load(array, file)) {
        std::string stored = Store(array);
        CMemFile copy(reinterpret_cast<BYTE*>(stored.data()), UINT(stored.size()));
        // Elements of another size need the room that the array happened to have.
        again.SetSize(room);
        Require(Load(again, copy) && Store(again) == stored);
    }
    array.Use();
}

void Run(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return;
    // The first byte chooses the array, the room that it has, and whether the file knows its length.
    std::vector<BYTE> bytes(data + 1, data + size);
    CMemFile known(bytes.data(), UINT(bytes.size()));
    LengthlessFile unknown(bytes.data(), UINT(bytes.size()));
    CFile& file = (data[0] & 2) != 0 ? unknown : known;
    if ((data[0] & 1) != 0)
        RunArray<Ints>(file, data[0] >> 2);
    else
        RunArray<Bytes>(file, data[0] >> 2);
}

const vak::fuzz::Target target("ArrayArchives", Run);

} // namespace
