#pragma once

#include "framework/base/Platform.h"
#include "framework/base/detail/Allocator.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vak::detail {

/// What runs out of memory ends in the platform's exception.
template <class T>
using ZipVector = std::vector<T, Allocator<T>>;

/// The bytes of an archive as one space, wherever they lie.
class VAK_INTERNAL_API ZipSource
{
public:
    using Bytes = std::span<const std::uint8_t>;

    /// The most that one View gives.
    static constexpr std::size_t kWindow = 65536;

    virtual ~ZipSource() = default;

    virtual std::uint64_t Size() const = 0;
    /// The bytes at `offset`: at least `least` of them (at most kWindow) and as many more as are at hand;
    /// fewer only at the end of the space, none behind it. Valid until the next call. Throws CZipException*
    /// when the system cannot read them.
    virtual Bytes View(std::uint64_t offset, std::size_t least) = 0;
    /// Where a part begins, counted from 0; no part has the answer Size(), nor has one that is not known.
    virtual std::uint64_t PartStart(std::uint32_t part) const = 0;
    /// Makes the space that of `parts` parts (1 or more) of which it has the last; positions then count from
    /// the first one's beginning. False when it cannot be.
    virtual bool BringParts(std::uint32_t parts) = 0;
    /// Whether BringParts would find the files of that many parts.
    virtual bool HasParts(std::uint32_t parts) const = 0;

    /// Copies bytes to `buffer`; false when the space ends before the last.
    virtual bool Read(std::uint64_t offset, void* buffer, std::size_t size);
};

/// An archive in memory, in one part.
class VAK_INTERNAL_API ZipMemory final : public ZipSource
{
public:
    /// `bytes` must outlive the object.
    explicit ZipMemory(Bytes bytes) : m_bytes(bytes) {}

    std::uint64_t Size() const override { return m_bytes.size(); }
    Bytes View(std::uint64_t offset, std::size_t least) override;
    std::uint64_t PartStart(std::uint32_t part) const override { return part == 0 ? 0 : Size(); }
    bool BringParts(std::uint32_t parts) override { return parts == 1; }
    bool HasParts(std::uint32_t) const override { return true; }

private:
    Bytes m_bytes;
};

} // namespace vak::detail
