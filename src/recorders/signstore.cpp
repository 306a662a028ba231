#include "kx/recorders/signstore.h"

#include <algorithm>
#include <new>

namespace kx {

bool TKxSignStore::grow(size_t needed) {
    if (needed > static_cast<size_t>(kMaxRecords)) return false;
    if (needed <= recs_.capacity()) return true;
    size_t cap = recs_.capacity();
    size_t next = std::max(needed, cap + std::max(kMinGrowth, cap / 16));
    next = std::min(next, static_cast<size_t>(kMaxRecords));
    try {
        recs_.reserve(next);
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    return true;
}

bool TKxSignStore::Append(const TSignRec& r) {
    if (!grow(recs_.size() + 1)) return false;
    recs_.push_back(r);
    return true;
}

bool TKxSignStore::Insert(int32_t index, const TSignRec& r, int32_t n) {
    if (n <= 0 || index < 0 || index > Count()) return false;
    if (!grow(recs_.size() + static_cast<size_t>(n))) return false;
    const TSignRec copy = r;  // r may live in the store
    recs_.insert(recs_.begin() + index, static_cast<size_t>(n), copy);
    return true;
}

void TKxSignStore::DeleteFront(int32_t n) {
    n = std::clamp(n, 0, Count());
    recs_.erase(recs_.begin(), recs_.begin() + n);
}

void TKxSignStore::Clear() {
    decltype(recs_)().swap(recs_);
}

bool TKxSignStore::ReserveMore(size_t n) {
    const size_t needed = recs_.size() + n;
    if (n > static_cast<size_t>(kMaxRecords) || needed > static_cast<size_t>(kMaxRecords))
        return false;
    if (needed <= recs_.capacity()) return true;
    try {
        recs_.reserve(needed);
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    return true;
}

TSignRec* TKxSignStore::Extend(size_t n) {
    if (!ReserveMore(n)) return nullptr;
    if (n == 0) return recs_.data() ? recs_.data() + recs_.size() : &empty_;
    const size_t at = recs_.size();
    recs_.resize(at + n);  // within capacity: cannot throw
    return recs_.data() + at;
}

void TKxSignStore::Truncate(int32_t count) {
    if (count >= 0 && count < Count()) recs_.resize(static_cast<size_t>(count));
}

}  // namespace kx
