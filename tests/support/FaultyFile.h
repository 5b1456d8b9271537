#pragma once

#include "framework/base/File.h"
#include "framework/base/FileException.h"
#include "framework/base/SystemFile.h"
#include "framework/base/SystemFileFault.h"

namespace vak::test {

/// A file of class Base (CMemFile, CFile, CStdioFile) that fails on command. A write that fails has written
/// half of its bytes, as on a disk that fills up.
template <class Base>
class FaultyFile : public Base
{
public:
    using Base::Base;

    /// The `number`th operation from now on (1 is the next) finds the disk full; 0: none does.
    void FailAt(int number) { m_left = number; }

    UINT Read(void* bytes, UINT count) override
    {
        Step();
        return Base::Read(bytes, count);
    }
    void Write(const void* bytes, UINT count) override
    {
        if (m_left == 1)
            Base::Write(bytes, count / 2);
        Step();
        Base::Write(bytes, count);
    }
    void Flush() override
    {
        Step();
        Base::Flush();
    }

private:
    void Step()
    {
        if (m_left > 0 && --m_left == 0)
            AfxThrowFileException(CFileException::diskFull, -1, this->GetFilePath());
    }

    int m_left = 0;
};

/// While it lives, the `number`th operation on files of the whole process (1 is the next) finds the disk
/// full, and only that one. Code that opens its files itself is tried by growing numbers until Happened() is
/// false.
class FailingSystem
{
public:
    explicit FailingSystem(int number)
    {
        left = number;
        vak::system::SetFileFaultHook([](vak::system::FileOperation) -> DWORD {
            return left > 0 && --left == 0 ? vak::system::kErrorDiskFull : 0;
        });
    }
    ~FailingSystem() { vak::system::SetFileFaultHook(nullptr); }
    FailingSystem(const FailingSystem&) = delete;
    FailingSystem& operator=(const FailingSystem&) = delete;

    bool Happened() const { return left == 0; }

private:
    static inline int left = 0;
};

} // namespace vak::test
