#pragma once
// Delays between reconnect attempts of the field-bus and broker sources: 500 ms after the
// first failure, doubling with every further one, never more than 10 s; a connection that
// came up starts the series again. A dead server thus costs one attempt every 10 s, and a
// short outage is bridged within a second.
#include <algorithm>

namespace kx::panel {

class ReconnectBackoff {
  public:
    static constexpr int kFirstMs = 500;
    static constexpr int kMaxMs = 10000;

    // The delay before the next attempt; each call doubles the one after it.
    int Next() {
        const int d = next_;
        next_ = std::min(next_ * 2, kMaxMs);
        return d;
    }
    void Reset() { next_ = kFirstMs; }

  private:
    int next_ = kFirstMs;
};

}  // namespace kx::panel
