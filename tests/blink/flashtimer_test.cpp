#include <gtest/gtest.h>

#include <memory>

#include "flash_fixture.h"
#include "kx/host/messagebox.h"

namespace kx::test {
namespace {

using Log = std::vector<TFlashLogEntry>;

// ---- Square waves --------------------------------------------------------------

class SquareWaveTest : public FlashServiceTest, public ::testing::WithParamInterface<TFlashFreq> {};

TEST_P(SquareWaveTest, SubscribersWithTheSameCodeAreInPhaseAndHearOnlyChanges) {
    const int64_t code = FlashFreqCode(GetParam());
    Log log;
    TLoggingClient a("a", log), b("b", log);
    AddControl(&a, code);
    AddControl(&b, code);
    Ticks(300);

    // Bit `code` of the counter first becomes 1 at tick 2^code, then toggles every
    // 2^code ticks; each subscriber hears every toggle on the same tick, in list order.
    Log expected;
    const intptr_t period = intptr_t{1} << code;
    for (intptr_t t = period; t <= 300; t += period) {
        const intptr_t state = (t / period) % 2;
        expected.push_back({"a", t, state});
        expected.push_back({"b", t, state});
    }
    EXPECT_EQ(log, expected);
}

INSTANTIATE_TEST_SUITE_P(AllFrequencies, SquareWaveTest,
                         ::testing::Values(ff8Hz, ff4Hz, ff2Hz, ff1Hz, ff05Hz));

TEST_F(FlashServiceTest, TickCounterWrapsToZero) {
    Log log;
    TLoggingClient a("a", log);
    AddControl(&a, 2);
    SetFlashTickCounter(4294967294u);
    Ticks(2);
    EXPECT_EQ(FlashTickCounter(), 0u);
    EXPECT_EQ(log, (Log{{"a", 4294967295, 1}, {"a", 0, 0}}));
}

// ---- Subscription list ---------------------------------------------------------

TEST_F(FlashServiceTest, ResubscribingChangesTheCodeWithoutASecondEntry) {
    Log log;
    TLoggingClient a("a", log);
    FakeClock().SetTicks(1000);
    AddControl(&a, 2);
    Ticks(4);  // tick 4: bit 2 on
    ASSERT_EQ(log.size(), 1u);

    FakeClock().SetTicks(5000);
    AddControl(&a, 3);
    ASSERT_EQ(FlashList().size(), 1u);
    EXPECT_EQ(FlashList()[0]->IntervalTime, 3);
    EXPECT_EQ(FlashList()[0]->NextPulseTime, 5003);
    // The state last sent (on) is kept, so the new wave's current off state is news.
    Ticks(1);
    EXPECT_EQ(log.back(), (TFlashLogEntry{"a", 5, 0}));

    AddControl(&a, 250);  // now an interval, due 250 ms from now
    const int64_t due = FlashList()[0]->NextPulseTime;
    EXPECT_EQ(due, FakeClock().TickCount() + 250);
    EXPECT_EQ(FlashList().size(), 1u);
}

TEST_F(FlashServiceTest, ProceduresAreCalledWithCounterAndStateAsInt32) {
    static std::vector<std::pair<int32_t, int32_t>> calls;
    calls.clear();
    TKxFlashProc proc = [](int32_t w, int32_t l) { calls.emplace_back(w, l); };
    AddProc(proc, 2);
    AddProc(proc, 2);
    EXPECT_EQ(FlashList().size(), 1u);
    SetFlashTickCounter(0x7FFFFFFFu);  // next tick 0x80000000: bit 2 off, no news
    Ticks(5);                          // 0x80000004: on
    EXPECT_EQ(calls, (std::vector<std::pair<int32_t, int32_t>>{{INT32_MIN + 4, 1}}));
    DelProc(proc);
    EXPECT_TRUE(FlashList().empty());
}

TEST_F(FlashServiceTest, DeletionByIndexIgnoresIndicesOutsideTheList) {
    Log log;
    TLoggingClient a("a", log), b("b", log);
    AddControl(&a, 2);
    AddControl(&b, 3);
    for (int index : {2, 3, -1, INT32_MIN, INT32_MAX}) {
        DelControlNo(index);
        DelProcNo(index);
        EXPECT_EQ(FlashList().size(), 2u) << index;
    }
    DelControlNo(0);
    ASSERT_EQ(FlashList().size(), 1u);
    EXPECT_EQ(FlashList()[0]->Control, &b);
}

TEST_F(FlashServiceTest, DelControlRemovesOnlyThatControl) {
    Log log;
    TLoggingClient a("a", log), b("b", log), stranger("s", log);
    TKxFlashProc proc = [](int32_t, int32_t) {};
    AddControl(&a, 2);
    AddProc(proc, 2);
    AddControl(&b, 2);
    DelControl(&stranger);
    DelControl(nullptr);
    DelProc(nullptr);
    EXPECT_EQ(FlashList().size(), 3u);
    DelControl(&a);
    ASSERT_EQ(FlashList().size(), 2u);
    EXPECT_EQ(FlashList()[0]->FlashProc, proc);
    EXPECT_EQ(FlashList()[1]->Control, &b);
}

TEST_F(FlashServiceTest, CapacityGrowsByTenKeepingTwoSpareSlots) {
    std::vector<std::unique_ptr<TLoggingClient>> clients;
    Log log;
    size_t capacity = FlashList().capacity();
    int growths = 0;
    for (int i = 0; i < 45; ++i) {
        clients.push_back(std::make_unique<TLoggingClient>("c", log));
        AddControl(clients.back().get(), 2);
        const size_t now = FlashList().capacity();
        if (now != capacity) {
            if (capacity != 0) {
                EXPECT_EQ(now, capacity + 10) << "after " << i + 1;
            }
            ++growths;
        }
        capacity = now;
        EXPECT_GE(capacity - FlashList().size(), 2u) << "after " << i + 1;
    }
    EXPECT_LE(growths, 6);
    clients.clear();  // the destructors unsubscribe
    EXPECT_TRUE(FlashList().empty());
    EXPECT_EQ(FlashList().capacity(), capacity);
}

TEST_F(FlashServiceTest, ForgottenSubscriptionIsWithdrawnWhenTheClientDies) {
    struct TCareless : TKxFlashClient {
        void WMFlash(TMessage&) override {}
    };
    auto careless = std::make_unique<TCareless>();
    AddControl(careless.get(), 2);
    careless.reset();
    EXPECT_TRUE(FlashList().empty());
    Ticks(8);  // nothing left to reach a dead object
}

// ---- Interval pulses -----------------------------------------------------------

TEST_F(FlashServiceTest, IntervalLatenessIsAbsorbedUpToOneSecond) {
    const struct {
        const char* Name;
        int64_t Lateness;  // ms after the due time at which the tick runs
        bool Pulse;
        intptr_t LParam;
        int64_t NextDueFromNow;
    } cases[] = {
        {"early", -1, false, 0, 0},
        {"on time", 0, true, 0, 100},
        {"late 30", 30, true, 30, 70},
        {"late one second catches up", 1000, true, 1000, -900},
        {"late over one second restarts", 1001, true, 0, 100},
        {"late 1500 restarts", 1500, true, 0, 100},
        // A 32-bit difference beyond 2^31 reads as negative lateness.
        {"late beyond half the range", 0x90000000LL, true, 0, 100},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        ResetFlashService();
        Log log;
        TLoggingClient a("a", log);
        FakeClock().SetTicks(1000);
        AddControl(&a, 100);  // due at 1100
        const uint32_t now = static_cast<uint32_t>(1100 + c.Lateness);
        FakeClock().SetTicks(now);
        RunFlashTick();
        EXPECT_EQ(log, (c.Pulse ? Log{{"a", 1, c.LParam}} : Log{}));
        EXPECT_EQ(FlashList()[0]->NextPulseTime, c.Pulse ? int64_t{now} + c.NextDueFromNow : 1100);
    }
}

// ---- Second pulses -------------------------------------------------------------

TEST_F(FlashServiceTest, FirstSecondPulseComesOneSecondAfterTheTimerStarts) {
    Log log;
    TLoggingClient a("a", log);
    AddControl(&a, kFlashSecondCode);
    FakeClock().Advance(990);
    RunFlashTick();
    EXPECT_TRUE(log.empty());
    FakeClock().Advance(20);
    RunFlashTick();
    RunFlashTick();
    EXPECT_EQ(log, (Log{{"a", 2, 0}}));
}

TEST_F(FlashServiceTest, SecondBacklogIsWorkedOffOnePulsePerTick) {
    Log log;
    TLoggingClient a("a", log), b("b", log);
    AddControl(&a, kFlashSecondCode);
    AddControl(&b, kFlashSecondCode);
    FakeClock().Advance(5500);  // the application was paused
    for (int i = 0; i < 6; ++i)
        RunFlashTick();
    Log expected;
    for (intptr_t t = 1; t <= 5; ++t) {
        expected.push_back({"a", t, 0});
        expected.push_back({"b", t, 0});
    }
    EXPECT_EQ(log, expected);
    FakeClock().Advance(600);  // 6.1 s: the sixth second is due
    RunFlashTick();
    EXPECT_EQ(log.size(), 12u);
}

// ---- Changes to the list during the walk ---------------------------------------

enum class WalkAction { DeleteSelf, DeleteLater, DeleteEarlier, DestroySelf, Clear, AddNew };

// "a4 c4" for pulses of a and c on tick 4, each switching the state on.
Log Pulses(const std::string& text) {
    Log log;
    for (size_t i = 0; i + 1 < text.size(); i += 3)
        log.push_back({text.substr(i, 1), text[i + 1] - '0', 1});
    return log;
}

TEST_F(FlashServiceTest, HandlersMayChangeTheListWhileItIsWalked) {
    const struct {
        const char* Name;
        int Actor;  // index of the client whose handler acts, on its first pulse
        WalkAction Action;
        const char* Expected;  // pulses of ticks 4 and 5
    } cases[] = {
        // The entry moving into a freed place waits for the next tick.
        {"first deletes itself", 0, WalkAction::DeleteSelf, "a4 c4 b5"},
        {"middle destroys itself", 1, WalkAction::DestroySelf, "a4 b4 c5"},
        {"last deletes itself", 2, WalkAction::DeleteSelf, "a4 b4 c4"},
        {"first deletes a later one", 0, WalkAction::DeleteLater, "a4 b4"},
        {"middle deletes an earlier one", 1, WalkAction::DeleteEarlier, "a4 b4 c5"},
        {"first clears the list", 0, WalkAction::Clear, "a4"},
        // A new entry joins the walk on the next tick.
        {"first subscribes another", 0, WalkAction::AddNew, "a4 b4 c4 d5"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        ResetFlashService();
        Log log;
        std::vector<std::unique_ptr<TLoggingClient>> clients;
        for (const char* name : {"a", "b", "c"}) {
            clients.push_back(std::make_unique<TLoggingClient>(name, log));
            AddControl(clients.back().get(), 2);
        }
        auto added = std::make_unique<TLoggingClient>("d", log);
        bool done = false;
        clients[c.Actor]->OnPulse = [&](TLoggingClient& self) {
            if (std::exchange(done, true)) return;
            switch (c.Action) {
                case WalkAction::DeleteSelf:
                    DelControl(&self);
                    break;
                case WalkAction::DeleteLater:
                    DelControl(clients[2].get());
                    break;
                case WalkAction::DeleteEarlier:
                    DelControl(clients[0].get());
                    break;
                case WalkAction::DestroySelf:
                    clients[c.Actor].reset();  // the destructor unsubscribes
                    break;
                case WalkAction::Clear:
                    ClearFlashList();
                    break;
                case WalkAction::AddNew:
                    AddControl(added.get(), 2);
                    break;
            }
        };
        Ticks(5);
        EXPECT_EQ(log, Pulses(c.Expected));
    }
}

TEST_F(FlashServiceTest, EmptyEntryIsRemovedAndTheNextOneWaitsATick) {
    Log log;
    TLoggingClient a("a", log), blank("x", log), b("b", log);
    AddControl(&a, 2);
    AddControl(&blank, 2);
    AddControl(&b, 2);
    Ticks(3);
    FlashList()[1]->Control = nullptr;  // blanked just before b's first change
    Ticks(2);
    EXPECT_EQ(log, (Log{{"a", 4, 1}, {"b", 5, 1}}));
    ASSERT_EQ(FlashList().size(), 2u);
    EXPECT_EQ(FlashList()[1]->Control, &b);
}

// ---- The serving timer ---------------------------------------------------------

TEST_F(FlashServiceTest, TimerIsCreatedOnFirstSubscriptionAndTicksTheService) {
    EXPECT_EQ(FlashTimerInstance(), nullptr);
    Log log;
    TLoggingClient a("a", log);
    AddProc([](int32_t, int32_t) {}, 1000);
    TKxFlashTimer* timer = FlashTimerInstance();
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(timer->parent(), nullptr);
    EXPECT_TRUE(ServingSource().Active());
    EXPECT_EQ(ServingSource().Interval(), 16u);

    AddControl(&a, 2);
    EXPECT_EQ(FlashTimerInstance(), timer);
    for (int i = 0; i < 4; ++i)
        ServingSource().Fire();
    EXPECT_EQ(FlashTickCounter(), 4u);
    EXPECT_EQ(log, (Log{{"a", 4, 1}}));

    // Emptying the list while the application runs keeps the timer.
    DelControl(&a);
    ClearFlashList();
    DelControl(&a);
    EXPECT_EQ(FlashTimerInstance(), timer);
    EXPECT_TRUE(shown_.empty());
}

TEST_F(FlashServiceTest, ClosingDownStopsTheWalkAndFreesTheTimerWithTheLastEntry) {
    Log log;
    TLoggingClient a("a", log), b("b", log);
    AddControl(&a, 2);
    AddControl(&b, 2);
    SetClosingDownOverride(true);
    Ticks(4);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(FlashTickCounter(), 4u);

    DelControl(&a);
    EXPECT_NE(FlashTimerInstance(), nullptr);
    DelControl(&b);
    EXPECT_EQ(FlashTimerInstance(), nullptr);

    // No new timer while the application object is going away.
    AddControl(&a, 2);
    EXPECT_EQ(FlashTimerInstance(), nullptr);
    DelControl(&a);
}

TEST_F(FlashServiceTest, SecondTimerReportsOnceAndNeverFlashes) {
    Log log;
    TLoggingClient a("a", log);
    AddControl(&a, 2);
    ASSERT_TRUE(shown_.empty());
    {
        TKxFlashTimer second;
        ASSERT_EQ(shown_.size(), 1u);
        EXPECT_EQ(shown_[0].Text,
                  QStringLiteral("Only one TKxFlashTimer per Application!\rRemove it..."));
        EXPECT_EQ(shown_[0].Caption, QStringLiteral("Error Message"));
        EXPECT_EQ(shown_[0].Flags, 0);

        auto& source = *static_cast<TManualTickSource*>(second.TickSource());
        EXPECT_FALSE(source.Active());
        second.SetEnabled(false);
        second.SetEnabled(true);
        second.SetInterval(20);
        EXPECT_FALSE(source.Active());
        source.Fire();
        EXPECT_EQ(FlashTickCounter(), 0u);
    }
    EXPECT_EQ(shown_.size(), 1u);
    Ticks(4);
    EXPECT_EQ(log.size(), 1u);
}

TEST_F(FlashServiceTest, TimerPlacedFirstServesAndTheAutomaticOneReports) {
    Log log;
    TLoggingClient a("a", log);
    {
        TKxFlashTimer placed;
        EXPECT_TRUE(shown_.empty());
        AddControl(&a, 2);
        EXPECT_EQ(shown_.size(), 1u);
        EXPECT_FALSE(ServingSource().Active());
        auto& source = *static_cast<TManualTickSource*>(placed.TickSource());
        for (int i = 0; i < 4; ++i)
            source.Fire();
        EXPECT_EQ(log, (Log{{"a", 4, 1}}));
    }
    DelControl(&a);
}

}  // namespace
}  // namespace kx::test
