// The clock: its texts, that it changes with the blink service's second pulses (and so
// may lag the true second), that only the text area is redrawn, and a text cut at the
// area's right edge.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QWidget>
#include <memory>

#include "common/test_env.h"
#include "kx/blink/flashtimer.h"
#include "kx/host/datetime.h"
#include "kx/host/datetimeformat.h"
#include "kx/recorders/kxclock.h"

namespace kx {
namespace {

class Clock : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        ClearFlashList();
        delete FlashTimerInstance();
        // 10:00:00.600 on the fixed day: the service's seconds run 600 ms behind.
        test::FakeClock().SetNow(45000.0 + EncodeTime(10, 0, 0, 600));
        c_ = std::make_unique<TKxClock>(&form_);
    }
    void TearDown() override {
        c_.reset();
        ClearFlashList();
    }
    void Tick(uint32_t ms) {
        test::FakeClock().Advance(ms);
        RunFlashTick();
    }
    // Columns of r holding text (anything but the black background; text is smoothed).
    int inkColumns(TRect r) const {
        int n = 0;
        for (int x = r.Left; x < r.Right; ++x)
            for (int y = r.Top; y < r.Bottom; ++y)
                if (c_->Surface().Pixel(x, y) != clBlack) {
                    ++n;
                    break;
                }
        return n;
    }

    QWidget form_;
    std::unique_ptr<TKxClock> c_;
};

TEST_F(Clock, DefaultsAndTexts) {
    EXPECT_EQ(c_->width(), 69);
    EXPECT_EQ(c_->height(), 24);
    EXPECT_EQ(c_->ClockOption(), TKxClock::coTime);
    EXPECT_TRUE(c_->AutoHint());
    EXPECT_EQ(c_->Font()->Color(), clLime);
    EXPECT_EQ(c_->Font()->Size(), 10);
    EXPECT_EQ(c_->BevelInner()->Color(), clBlack);
    const TDateTime now = Now();
    const struct {
        TKxClock::TClockOption option;
        QString text;
    } cases[] = {{TKxClock::coDate, DateToStr(now)},
                 {TKxClock::coTime, TimeToStr(now)},
                 {TKxClock::coDateTime, DateTimeToStr(now)}};
    for (const auto& c : cases) {
        c_->SetClockOption(c.option);
        EXPECT_EQ(c_->Text(), c.text);
    }
    EXPECT_EQ(TimeToStr(now), "10:00:00 AM");
}

TEST_F(Clock, TicksOnlyAfterLoadedAndFollowsTheServiceSecond) {
    EXPECT_FALSE(c_->Subscribed());
    c_->Loaded();
    EXPECT_TRUE(c_->IsLoaded());
    EXPECT_TRUE(c_->Subscribed());
    c_->PaintToSurface();
    const QImage at0 = c_->Surface().Image();
    Tick(500);  // 10:00:01.100: the true second has changed, the service's has not
    EXPECT_EQ(c_->Surface().Image(), at0);
    Tick(520);  // 10:00:01.620: the pulse (a tick after the service's second)
    EXPECT_NE(c_->Surface().Image(), at0);
    // Drawn from the text as it is then.
    auto fresh = std::make_unique<TKxClock>(&form_);
    fresh->PaintToSurface();
    EXPECT_EQ(fresh->Surface().Image(), c_->Surface().Image());
    fresh.reset();
    c_.reset();
    EXPECT_EQ(FlashList().size(), 0u);
}

TEST_F(Clock, APulseRedrawsOnlyTheTextAreaAndSetsTheHint) {
    c_->Loaded();
    c_->PaintToSurface();
    const TRect r = c_->TextRect();
    EXPECT_EQ(r, (TRect{3, 3, 66, 21}));
    EXPECT_EQ(c_->Hint(), DateToStr(Now()));
    c_->Canvas().SetPixel(0, 0, clRed);
    c_->Canvas().SetPixel(r.Right - 1, r.Bottom - 1, clRed);
    Tick(1000);
    EXPECT_EQ(c_->Surface().Pixel(0, 0), clRed);
    EXPECT_EQ(c_->Surface().Pixel(r.Right - 1, r.Bottom - 1), clBlack);
    // Text at the area's top-left corner.
    EXPECT_GT(inkColumns(TRect{r.Left, r.Top, r.Left + 4, r.Bottom}), 0);

    c_->hide();
    c_->Canvas().SetPixel(r.Right - 1, r.Bottom - 1, clRed);
    Tick(1000);
    EXPECT_EQ(c_->Surface().Pixel(r.Right - 1, r.Bottom - 1), clRed);  // hidden: no drawing
}

TEST_F(Clock, TextStandsAtTheAreasTopLeftCorner) {
    c_->Loaded();
    c_->PaintToSurface();
    const TRect r = c_->TextRect();
    TBitmap expected;
    expected.SetSize(r.Width(), r.Height());
    TCanvas& e = expected.Canvas();
    e.Brush().SetColor(clBlack);
    e.FillRect(TRect{0, 0, r.Width(), r.Height()});
    e.SetFont(*c_->Font());
    e.Brush().SetStyle(bsClear);
    e.TextOut(0, 0, c_->Text());
    for (int y = 0; y < r.Height(); ++y)
        for (int x = 0; x < r.Width(); ++x)
            ASSERT_EQ(c_->Surface().Pixel(r.Left + x, r.Top + y), expected.Pixel(x, y))
                << x << "," << y;
}

TEST_F(Clock, TheHintFollowsTheDateOverMidnight) {
    test::FakeClock().SetNow(45000.0 + EncodeTime(23, 59, 59, 500));
    c_->Loaded();
    c_->PaintToSurface();
    const QString before = c_->Hint();
    Tick(1020);
    EXPECT_NE(c_->Hint(), before);
    EXPECT_EQ(c_->Hint(), DateToStr(45001.0));
}

TEST_F(Clock, AnotherOptionRepaints) {
    c_->Loaded();
    c_->PaintToSurface();
    const QImage time = c_->Surface().Image();
    c_->SetClockOption(TKxClock::coDate);
    c_->PaintToSurface();
    EXPECT_NE(c_->Surface().Image(), time);
}

TEST_F(Clock, LongTextIsCutAtTheRightEdge) {
    c_->SetClockOption(TKxClock::coDateTime);
    c_->Loaded();
    c_->PaintToSurface();
    const TRect r = c_->TextRect();
    EXPECT_GT(inkColumns(r), r.Right - r.Left - 8);  // text all the way across
    // The frame beside the area is as a clock without text draws it.
    TKxClock empty(&form_);
    empty.Font()->SetSize(1);
    empty.PaintToSurface();
    for (int y = 0; y < 24; ++y)
        for (int x = r.Right; x < 69; ++x)
            ASSERT_EQ(c_->Surface().Pixel(x, y), empty.Surface().Pixel(x, y)) << x << "," << y;
}

TEST_F(Clock, WhatAssistiveToolsLearn) {
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(c_.get());
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->role(), QAccessible::Indicator);
    EXPECT_EQ(a->text(QAccessible::Name), "clock");
    EXPECT_EQ(a->text(QAccessible::Value), "10:00:00 AM");
    EXPECT_EQ(a->text(QAccessible::Description), "");
}

TEST_F(Clock, DesignTimeHasNoHint) {
    c_->SetDesigning(true);
    c_->Loaded();
    c_->PaintToSurface();
    EXPECT_TRUE(c_->Hint().isEmpty());
    c_->SetAutoHint(false);
    c_->SetDesigning(false);
    c_->Invalidate();
    c_->PaintToSurface();
    EXPECT_TRUE(c_->Hint().isEmpty());
}

// Frames that grow outwards keep the text area (and its bitmap) inside the control: a
// spacing of -20000 used to ask for a text bitmap of 40000 x 40000 pixels.
TEST_F(Clock, AnOutwardFrameKeepsTheTextAreaInsideTheControl) {
    const struct {
        int32_t Spacing, OffsetLeft, OffsetTop;
    } cases[] = {{-20000, 0, 0}, {0, -20000, 0}, {0, 0, INT32_MIN}, {-3, -3, -3}};
    for (const auto& frame : cases) {
        SCOPED_TRACE(testing::Message()
                     << frame.Spacing << "," << frame.OffsetLeft << "," << frame.OffsetTop);
        c_->Loaded();
        c_->BevelOuter()->SetSpacing(frame.Spacing);
        c_->BevelOuter()->Offset()->SetLeft(frame.OffsetLeft);
        c_->BevelOuter()->Offset()->SetTop(frame.OffsetTop);
        c_->PaintToSurface();
        const TRect r = c_->TextRect();
        EXPECT_GE(r.Left, 0);
        EXPECT_GE(r.Top, 0);
        EXPECT_LE(r.Right, c_->width());
        EXPECT_LE(r.Bottom, c_->height());
    }
}

}  // namespace
}  // namespace kx
