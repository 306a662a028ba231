#pragma once
// The blink service as tests look at it.
#include "kx/blink/flashtimer.h"

namespace kx::test {

// The subscription of a control in the blink service, or null.
inline const TFlash* Subscription(const TKxFlashClient* c) {
    for (const auto& e : FlashList())
        if (e && e->Control == c) return e.get();
    return nullptr;
}

}  // namespace kx::test
