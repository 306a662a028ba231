#pragma once
// The setter rule every settings object follows: compare, store when different,
// then notify through Change. Setters never paint.
#include "kx/framework/persistent.h"

namespace kx {

// Returns whether the value changed (and Change was called).
template <typename T, typename V>
bool SetField(TKxPersistent& owner, T& field, const V& value) {
    if (field == value) return false;
    field = value;
    owner.Change();
    return true;
}

}  // namespace kx
