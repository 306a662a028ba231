// The reconnect back-off and the once-a-minute log that the network sources share.
#include <gtest/gtest.h>

#include <vector>

#include "common/test_env.h"
#include "reconnectbackoff.h"
#include "throttledlog.h"

namespace kx::panel {
namespace {

TEST(ReconnectBackoff, DoublesUpToTenSecondsAndStartsOver) {
    ReconnectBackoff b;
    std::vector<int> delays;
    for (int i = 0; i < 8; ++i)
        delays.push_back(b.Next());
    EXPECT_EQ(delays, (std::vector<int>{500, 1000, 2000, 4000, 8000, 10000, 10000, 10000}));
    b.Reset();
    EXPECT_EQ(b.Next(), 500);
    EXPECT_EQ(b.Next(), 1000);
}

TEST(ThrottledLog, LogsTheFirstAtOnceThenOncePerMinute) {
    TFakeClock& clock = test::FakeClock();
    ThrottledLog log("source \"x\": bad things");
    const struct {
        uint32_t advanceMs;
        bool logged;
    } steps[] = {
        {0, true},       // the first is reported at once
        {1, false},      // the rest of the minute is only counted
        {59998, false},  // 59 999 ms after the report
        {1, true},       // a minute after it
        {30000, false}, {30000, true},
    };
    for (size_t i = 0; i < std::size(steps); ++i) {
        clock.Advance(steps[i].advanceMs);
        EXPECT_EQ(log.Note("detail"), steps[i].logged) << "step " << i;
    }
    EXPECT_EQ(log.Count(), 6);
    EXPECT_EQ(log.Reports(), 3);
}

TEST(ThrottledLog, SurvivesTheTickCounterWrapping) {
    TFakeClock& clock = test::FakeClock();
    clock.SetTicks(0xFFFFFF00u);
    ThrottledLog log("wrap");
    EXPECT_TRUE(log.Note("a"));
    clock.Advance(1000);  // wraps past zero
    EXPECT_FALSE(log.Note("b"));
    clock.Advance(60000);
    EXPECT_TRUE(log.Note("c"));
}

}  // namespace
}  // namespace kx::panel
