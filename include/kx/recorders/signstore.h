#pragma once
// TSignRec: one trend record. 24 bytes with no padding, the same in memory and in a record
// file: the time stamp (days since 1899-12-30, fraction = time of day; for a separator the
// trend's separator marker) and one unsigned 16-bit digit per channel. Files are written in
// the machine's byte order, which the library requires to be little-endian.
//
// TKxSignStore: the trend's records, oldest first, in one contiguous block. It grows by a
// sixteenth of its size (at least 256 records) so that a large store carries little slack:
// at most about 6% above 24 bytes per record. Deleting from the front moves the rest down;
// clearing gives the memory back. It holds at most kMaxRecords records (indices are int32);
// appends beyond that, or beyond what memory allows, are refused and return false.
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

#include "kx/host/datetime.h"

namespace kx {

struct TSignRec {
    TDateTime Time;
    uint16_t Ch[8];
};
static_assert(sizeof(TSignRec) == 24, "a record is 24 bytes on disk and in memory");
static_assert(offsetof(TSignRec, Ch) == 8);
static_assert(std::is_trivially_copyable_v<TSignRec>);
static_assert(std::endian::native == std::endian::little, "record files are little-endian");
using PSignRec = TSignRec*;

// Leaves new elements uninitialised on resize, so that a load reads straight into the store
// without clearing it first.
template <class T>
struct TDefaultInitAllocator : std::allocator<T> {
    template <class U>
    struct rebind {
        using other = TDefaultInitAllocator<U>;
    };
    TDefaultInitAllocator() = default;
    template <class U>
    TDefaultInitAllocator(const TDefaultInitAllocator<U>&) noexcept {}
    template <class U>
    void construct(U* p) noexcept(std::is_nothrow_default_constructible_v<U>) {
        ::new (static_cast<void*>(p)) U;
    }
    template <class U, class... Args>
    void construct(U* p, Args&&... args) {
        std::allocator_traits<std::allocator<T>>::construct(static_cast<std::allocator<T>&>(*this),
                                                            p, std::forward<Args>(args)...);
    }
};

class TKxSignStore {
  public:
    static constexpr int32_t kMaxRecords = 0x7FFFFFFF;
    static constexpr size_t kMinGrowth = 256;

    int32_t Count() const { return static_cast<int32_t>(recs_.size()); }
    // Count - 1: -1 when empty.
    int32_t Last() const { return Count() - 1; }
    bool Empty() const { return recs_.empty(); }
    // Unchecked; the trend checks indices before.
    const TSignRec& operator[](int32_t i) const { return recs_[static_cast<size_t>(i)]; }
    TSignRec& operator[](int32_t i) { return recs_[static_cast<size_t>(i)]; }
    const TSignRec* Data() const { return recs_.data(); }

    bool Append(const TSignRec& r);
    // Inserts n copies of r before index (0..Count()).
    bool Insert(int32_t index, const TSignRec& r, int32_t n);
    // Removes records 0..n-1 (n is clipped to 0..Count()).
    void DeleteFront(int32_t n);
    // Removes every record and frees the block.
    void Clear();
    // Makes room for n more records exactly (no growth slack); false when it cannot.
    bool ReserveMore(size_t n);
    // Appends n uninitialised records and returns the first of them (for n = 0 a pointer
    // that must not be read), or nullptr when it cannot; Truncate gives back what was not
    // filled.
    TSignRec* Extend(size_t n);
    void Truncate(int32_t count);
    // Bytes held, capacity included.
    size_t CapacityBytes() const { return recs_.capacity() * sizeof(TSignRec); }

  private:
    bool grow(size_t needed);

    std::vector<TSignRec, TDefaultInitAllocator<TSignRec>> recs_;
    TSignRec empty_{};
};

}  // namespace kx
