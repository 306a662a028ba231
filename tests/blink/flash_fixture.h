#pragma once
// Shared set-up for the blink tests: hand-fired tick sources, a recording message
// box and a clean subscription list before and after every test.
#include <gtest/gtest.h>

#include <QString>
#include <string>
#include <vector>

#include "common/test_env.h"
#include "kx/blink/flashtimer.h"

namespace kx::test {

struct TShownMessage {
    QString Text;
    QString Caption;
    int Flags;
};

// Frees every entry and the serving timer and zeroes the tick counter.
void ResetFlashService();

// A subscriber that logs every pulse into a log shared with other subscribers.
struct TFlashLogEntry {
    std::string Who;
    intptr_t WParam;
    intptr_t LParam;
    friend bool operator==(const TFlashLogEntry&, const TFlashLogEntry&) = default;
};
void PrintTo(const TFlashLogEntry& e, std::ostream* os);

class TLoggingClient : public TKxFlashClient {
  public:
    TLoggingClient(std::string name, std::vector<TFlashLogEntry>& log)
        : name_(std::move(name)), log_(log) {}
    ~TLoggingClient() override { DelControl(this); }
    void WMFlash(TMessage& message) override;
    // Runs after the pulse is logged; may unsubscribe or delete this object.
    std::function<void(TLoggingClient&)> OnPulse;

  private:
    std::string name_;
    std::vector<TFlashLogEntry>& log_;
};

class FlashServiceTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;
    // The serving timer's hand-fired source (the timer must exist).
    TManualTickSource& ServingSource();
    // Runs n ticks, advancing the fake clock by 16 ms before each.
    void Ticks(int n);

    std::vector<TShownMessage> shown_;
};

}  // namespace kx::test
