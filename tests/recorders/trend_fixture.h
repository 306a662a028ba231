#pragma once
// A trend with a known store for the recorder tests: not recording, a fake clock that
// steps one second per record, and ticks delivered by hand.
#include <gtest/gtest.h>

#include <QImage>
#include <memory>
#include <vector>

#include "common/test_env.h"
#include "kx/blink/flashtimer.h"
#include "kx/host/clock.h"
#include "kx/recorders/trend.h"

namespace kx::test {

class TrendTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetEnvironment();
        ClearFlashList();
        trend = std::make_unique<TKxTrend>();
        trend->SetStartRecording(false);
    }
    void TearDown() override {
        trend.reset();
        ClearFlashList();
    }

    // One recording tick as the blink service delivers it, one second after the last.
    void Tick(int n = 1) {
        for (int i = 0; i < n; ++i) {
            FakeClock().SetNow(FakeClock().Now() + 1.0 / 86400.0);
            TMessage m{KX_WM_FLASH, 0, 0, 0};
            trend->WMFlash(m);
        }
    }
    // Appends n records with channel 1 = digit i (0, 1, 2, ...) while stopped.
    void AddDigits(int n, int from = 0) {
        for (int i = 0; i < n; ++i) {
            FakeClock().SetNow(FakeClock().Now() + 1.0 / 86400.0);
            ASSERT_TRUE(trend->AddDigit(from + i, 0, 0, 0, 0, 0, 0, 0));
        }
    }
    // The channel-1 digits of the store, separators as -1.
    std::vector<int> Ch1() const {
        std::vector<int> out;
        for (int32_t i = 0; i < trend->RecordCount(); ++i)
            out.push_back(trend->IsSeparator(i) ? -1 : trend->Records()[i].Ch[0]);
        return out;
    }
    // The interval the trend is subscribed with, or -1.
    int64_t SubscribedCode() const {
        for (const auto& e : FlashList())
            if (e && e->Control == trend.get()) return e->IntervalTime;
        return -1;
    }
    void Paint(int w = 400, int h = 250) {
        trend->SetBounds(0, 0, w, h);
        trend->PaintToSurface();
    }

    std::unique_ptr<TKxTrend> trend;
};

}  // namespace kx::test
