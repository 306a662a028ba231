// The numeric spin: which buttons may step when, the button inside the edit, the minimum
// height, and steps by the buttons' clicks and repeats.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QWidget>
#include <memory>

#include "common/test_env.h"
#include "kx/blink/flashtimer.h"
#include "kx/entry/numspin.h"
#include "kx/host/messagebox.h"

namespace kx {
namespace {

using E = TKxNumEdit;

void Click(QWidget* w, QEvent::Type type) {
    const QPointF p(2, 2);
    const Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(Qt::LeftButton);
    QMouseEvent e(type, p, w->mapToGlobal(p), Qt::LeftButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &e);
}

class NumSpin : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        SetBeepHook([] {});
        SetTickSourceFactory([] { return std::make_unique<TManualTickSource>(); });
        ClearFlashList();
        s_ = std::make_unique<TKxNumSpin>(&form_);
        s_->resize(120, 40);
        form_.show();  // resize events reach shown widgets only
        s_->Loaded();
        s_->SetIncrement(1.0f);
        s_->SetValue(5.0);
    }
    void TearDown() override {
        s_.reset();
        ClearFlashList();
        delete FlashTimerInstance();
        SetTickSourceFactory({});
        SetBeepHook(nullptr);
    }
    void key(int k, const QString& text = QString()) {
        QKeyEvent press(QEvent::KeyPress, k, Qt::NoModifier, text);
        QCoreApplication::sendEvent(s_.get(), &press);
    }
    bool up() const { return s_->SpinButton()->UpButton()->isEnabled(); }
    bool down() const { return s_->SpinButton()->DownButton()->isEnabled(); }
    QWidget form_;
    std::unique_ptr<TKxNumSpin> s_;
};

TEST_F(NumSpin, ButtonsStepOnlyWhileAStepIsPossible) {
    s_->SetOptions(E::NumEditOption(E::eoLimitMax) | E::NumEditOption(E::eoLimitMin));
    s_->SetMaxValue(6.0);
    s_->SetMinValue(4.0);
    const struct {
        const char* step;
        std::function<void()> act;
        bool up, down;
    } steps[] = {
        {"between the limits", [] {}, true, true},
        {"typing",
         [&] {
             s_->selectAll();
             key(0, QStringLiteral("5.5"));
         },
         false, false},
        {"an error", [&] { key(0, QStringLiteral("x")); }, false, false},
        {"repaired", [&] { key(Qt::Key_Backspace); }, false, false},
        {"confirmed", [&] { key(Qt::Key_Return); }, true, true},
        {"up to the upper limit", [&] { key(Qt::Key_Up); }, false, true},
        {"down to the lower limit",
         [&] {
             key(Qt::Key_Down);
             key(Qt::Key_Down);
         },
         true, false},
        {"disabled", [&] { s_->setEnabled(false); }, false, false},
        {"enabled again", [&] { s_->setEnabled(true); }, true, false},
    };
    for (const auto& t : steps) {
        t.act();
        EXPECT_EQ(up(), t.up) << t.step;
        EXPECT_EQ(down(), t.down) << t.step;
    }
    EXPECT_EQ(s_->Value(), 4.0);
}

TEST_F(NumSpin, ClicksAndRepeatsStep) {
    TKxTimerSpeedBtn* b = s_->SpinButton()->UpButton();
    Click(b, QEvent::MouseButtonPress);
    Click(b, QEvent::MouseButtonRelease);
    EXPECT_EQ(s_->Value(), 6.0);
    // Held for 700 ms: repeats from 500 ms on, every 100 ms, and the click on release.
    Click(b, QEvent::MouseButtonPress);
    for (int t = 16; t <= 700; t += 16) {
        test::FakeClock().Advance(16);
        RunFlashTick();
    }
    Click(b, QEvent::MouseButtonRelease);
    EXPECT_GE(s_->Value(), 6.0 + 3.0);
    EXPECT_LE(s_->Value(), 6.0 + 4.0);
    const double held = s_->Value();
    Click(s_->SpinButton()->DownButton(), QEvent::MouseButtonPress);
    Click(s_->SpinButton()->DownButton(), QEvent::MouseButtonRelease);
    EXPECT_EQ(s_->Value(), held - 1.0);
}

TEST_F(NumSpin, LeavingWhileHeldEndsTheHoldWithoutAClick) {
    TKxTimerSpeedBtn* b = s_->SpinButton()->UpButton();
    Click(b, QEvent::MouseButtonPress);
    ASSERT_TRUE(b->isDown());
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(s_.get(), &out);
    EXPECT_FALSE(b->isDown());
    EXPECT_FALSE(b->Repeating());
    EXPECT_EQ(s_->Value(), 5.0);
}

TEST_F(NumSpin, TheButtonSitsInsideTheRightEdge) {
    const int frame = s_->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, s_.get());
    for (QSize size : {QSize(120, 40), QSize(60, 30), QSize(300, 80)}) {
        s_->resize(size);
        const QRect r = s_->SpinButton()->geometry();
        EXPECT_EQ(r, QRect(size.width() - frame - TKxSpinButton::kMinWidth, frame,
                           TKxSpinButton::kMinWidth, size.height() - 2 * frame));
        EXPECT_EQ(s_->textMargins().right(), TKxSpinButton::kMinWidth + 2);
    }
    // Placed at once, before the edit is ever shown.
    TKxNumSpin hidden;
    const QRect r = hidden.SpinButton()->geometry();
    EXPECT_EQ(r.right(), hidden.width() - frame - 1);
    EXPECT_EQ(hidden.SpinButton()->FocusControl(), &hidden);
}

TEST_F(NumSpin, LimitsAreReportedAndAFontRaisesTheMinimum) {
    int limits = 0;
    QObject::connect(s_.get(), &TKxNumEdit::OnLimit, [&] { ++limits; });
    s_->SetOptions(E::NumEditOption(E::eoLimitMax));
    s_->SetMaxValue(6.0);
    key(Qt::Key_Up);
    EXPECT_TRUE(s_->AtUpperLimit());
    EXPECT_EQ(limits, 1);
    const int h = QFontMetrics(s_->font()).height();
    EXPECT_EQ(s_->MinimumHeight(), h + h / 4 + 6);  // the application's font is the edit's
    QFont big = s_->font();
    big.setPointSize(big.pointSize() * 3);
    s_->setFont(big);
    EXPECT_GT(s_->minimumHeight(), h + h / 4 + 6);
    EXPECT_EQ(s_->minimumHeight(), s_->MinimumHeight());
}

TEST_F(NumSpin, NeverLowerThanItsMinimumHeight) {
    const int minimum = s_->MinimumHeight();
    EXPECT_GT(minimum, QFontMetrics(s_->font()).height());
    s_->resize(120, 5);
    EXPECT_EQ(s_->height(), minimum);
    s_->resize(120, minimum + 10);
    EXPECT_EQ(s_->height(), minimum + 10);
}

TEST_F(NumSpin, IntervalAndDelayAreTheButtons) {
    s_->SetInterval(200);
    s_->SetStartDelay(800);
    EXPECT_EQ(s_->SpinButton()->UpButton()->Interval(), 200);
    EXPECT_EQ(s_->SpinButton()->DownButton()->StartDelay(), 800u);
    s_->SetInterval(20);  // below the floor: kept
    EXPECT_EQ(s_->Interval(), 200);
    EXPECT_EQ(s_->StartDelay(), 800);
}

}  // namespace
}  // namespace kx
