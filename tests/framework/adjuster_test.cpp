// The interactive analog base, driven with real key, wheel and mouse events: clamping,
// keys and their filter, wheel notches, drags, the two value events, the linked indicator.
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>
#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "common/test_env.h"
#include "kx/framework/adjuster.h"

namespace kx {
namespace {

// Records the events and the drag steps.
class TAdjuster : public TKxAnalogCControl {
  public:
    explicit TAdjuster(QWidget* parent = nullptr) : TKxAnalogCControl(parent) {
        connect(this, &TKxAnalogCControl::OnValueChange, this, [this] { ++changes; });
        connect(this, &TKxAnalogCControl::OnValueChanged, this, [this] { ++finished; });
        HitRect = TRect{10, 10, 50, 50};
    }
    int changes = 0;
    int finished = 0;
    std::vector<TPoint> slides;
    int valueChanges = 0;

  protected:
    void MouseSlide(Qt::KeyboardModifiers m, int32_t x, int32_t y, TPoint last) override {
        slides.push_back(TPoint{x, y});
        TKxAnalogCControl::MouseSlide(m, x, y, last);
    }
    void ValueChange() override {
        ++valueChanges;
        TKxAnalogCControl::ValueChange();
    }
};

void Key(QWidget* w, int key, bool release = false, bool repeat = false) {
    QKeyEvent e(release ? QEvent::KeyRelease : QEvent::KeyPress, key, Qt::NoModifier, QString(),
                repeat);
    QCoreApplication::sendEvent(w, &e);
}

void Click(QWidget* w, int key) {
    Key(w, key);
    Key(w, key, true);
}

void Wheel(QWidget* w, int delta, bool horizontal = false) {
    const QPointF p(20, 20);
    QWheelEvent e(p, w->mapToGlobal(p), QPoint(), horizontal ? QPoint(delta, 0) : QPoint(0, delta),
                  Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(w, &e);
}

void Mouse(QWidget* w, QEvent::Type type, QPoint p, Qt::MouseButton b = Qt::LeftButton) {
    const Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(b);
    QMouseEvent e(type, QPointF(p), w->mapToGlobal(QPointF(p)),
                  type == QEvent::MouseMove ? Qt::NoButton : b, held, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &e);
}

class Adjuster : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        a_ = std::make_unique<TAdjuster>(&form_);
        a_->Loaded();
        a_->changes = a_->finished = 0;
    }
    QWidget form_;
    std::unique_ptr<TAdjuster> a_;
};

TEST_F(Adjuster, ValueAndDigitStayInsideTheRange) {
    const struct {
        float value;
        float expectValue;
        int32_t expectDigit;
    } cases[] = {
        {150.0f, 100.0f, 1000},
        {-5.0f, 0.0f, 0},
        {50.0f, 50.0f, 500},
        {33.333f, 33.3f, 333},  // snapped to the digit grid
        {std::numeric_limits<float>::infinity(), 100.0f, 1000},
        {-std::numeric_limits<float>::infinity(), 0.0f, 0},
    };
    for (const auto& t : cases) {
        a_->SetValue(t.value);
        EXPECT_FLOAT_EQ(a_->Value(), t.expectValue) << t.value;
        EXPECT_EQ(a_->Digit(), t.expectDigit) << t.value;
    }
    a_->SetValue(std::nanf(""));
    EXPECT_FLOAT_EQ(a_->Value(), 0.0f);
    const struct {
        int32_t digit;
        int32_t expect;
    } digits[] = {{1200, 1000}, {-1, 0}, {INT_MIN, 0}, {INT_MAX, 1000}, {250, 250}};
    for (const auto& t : digits) {
        a_->SetDigit(t.digit);
        EXPECT_EQ(a_->Digit(), t.expect) << t.digit;
    }
    EXPECT_FLOAT_EQ(a_->Value(), 25.0f);
    EXPECT_EQ(a_->ValueText(), "25.0");
    EXPECT_EQ(a_->DigitText(), "250");
}

TEST_F(Adjuster, KeysMoveByTheirStepsAndStopAtTheEnds) {
    const struct {
        int key;
        int32_t from;
        int32_t expect;
    } cases[] = {
        {Qt::Key_PageUp, 995, 1000},  {Qt::Key_PageUp, 500, 510},  {Qt::Key_PageDown, 5, 0},
        {Qt::Key_PageDown, 500, 490}, {Qt::Key_End, 3, 1000},      {Qt::Key_Home, 700, 0},
        {Qt::Key_Left, 500, 499},     {Qt::Key_Down, 500, 499},    {Qt::Key_Up, 500, 501},
        {Qt::Key_Right, 500, 501},    {Qt::Key_Right, 1000, 1000}, {Qt::Key_Left, 0, 0},
        {Qt::Key_A, 500, 500},
    };
    for (const auto& t : cases) {
        a_->SetDigit(t.from);
        Click(a_.get(), t.key);
        EXPECT_EQ(a_->Digit(), t.expect) << t.key << " from " << t.from;
    }
    a_->SetChangeSmall(7);
    a_->SetChangeLarge(100);
    a_->SetDigit(500);
    Click(a_.get(), Qt::Key_Up);
    Click(a_.get(), Qt::Key_PageDown);
    EXPECT_EQ(a_->Digit(), 407);
}

TEST_F(Adjuster, DisabledKeysAndKeyboardDoNothing) {
    const struct {
        TKxAnalogCControl::TEnabledKey member;
        int key;
    } cases[] = {{TKxAnalogCControl::_VK_PRIOR, Qt::Key_PageUp},
                 {TKxAnalogCControl::_VK_NEXT, Qt::Key_PageDown},
                 {TKxAnalogCControl::_VK_END, Qt::Key_End},
                 {TKxAnalogCControl::_VK_HOME, Qt::Key_Home},
                 {TKxAnalogCControl::_VK_LEFT, Qt::Key_Left},
                 {TKxAnalogCControl::_VK_DOWN, Qt::Key_Down},
                 {TKxAnalogCControl::_VK_UP, Qt::Key_Up},
                 {TKxAnalogCControl::_VK_RIGHT, Qt::Key_Right}};
    for (const auto& t : cases) {
        a_->SetEnabledKeys(TKxAnalogCControl::kAllKeys & ~TKxAnalogCControl::EnabledKey(t.member));
        a_->SetDigit(500);
        Click(a_.get(), t.key);
        EXPECT_EQ(a_->Digit(), 500) << t.key;
        // Every other key still works.
        a_->SetEnabledKeys(TKxAnalogCControl::EnabledKey(t.member));
        Click(a_.get(), t.key);
        EXPECT_NE(a_->Digit(), 500) << t.key;
    }
    a_->SetEnabledKeys(TKxAnalogCControl::kAllKeys);
    a_->SetEnableKeyboard(false);
    a_->SetDigit(500);
    Click(a_.get(), Qt::Key_Up);
    EXPECT_EQ(a_->Digit(), 500);
}

TEST_F(Adjuster, ChangeEventsPerPressFinishedEventPerRelease) {
    a_->SetDigit(500);
    a_->changes = a_->finished = 0;
    Key(a_.get(), Qt::Key_Up);
    Key(a_.get(), Qt::Key_Up, false, true);  // auto-repeat
    Key(a_.get(), Qt::Key_Up, true, true);   // its release
    Key(a_.get(), Qt::Key_Up, false, true);
    EXPECT_EQ(a_->changes, 3);
    EXPECT_EQ(a_->finished, 0);
    EXPECT_TRUE(a_->ValueChangedPending());
    Key(a_.get(), Qt::Key_Up, true);
    EXPECT_EQ(a_->finished, 1);
    EXPECT_FALSE(a_->ValueChangedPending());
    // A key at the end changes nothing and reports nothing.
    a_->SetDigit(1000);
    Key(a_.get(), Qt::Key_Up, true);
    a_->changes = a_->finished = 0;
    Click(a_.get(), Qt::Key_Up);
    EXPECT_EQ(a_->changes, 0);
    EXPECT_EQ(a_->finished, 0);
}

TEST_F(Adjuster, WheelNotchesAndSmallSteps) {
    const struct {
        std::vector<int> deltas;
        int32_t expect;  // from 500
        int finished;
    } cases[] = {
        {{120}, 501, 1},
        {{-120}, 499, 1},
        {{240}, 500, 0},  // larger than a notch: judged by its low byte
        {{-240}, 500, 0},
        {{0x178}, 501, 1},
        {{-0x178}, 499, 1},  // low byte 0x88
        {{40, 40, 40}, 501, 1},
        {{60, 50}, 500, 0},
        {{60, 60, 60, 60}, 502, 2},
        {{-30, -30, -30, -30}, 499, 1},
        {{100, -30, 60}, 500, 0},  // the sum starts afresh when the direction turns
        {{100, -30, -100}, 499, 1},
        {{15, 15, 15, 15, 15, 15, 15, 15}, 501, 1},
    };
    for (const auto& t : cases) {
        TAdjuster a(&form_);
        a.Loaded();
        a.SetDigit(500);
        a.finished = 0;
        for (int d : t.deltas)
            Wheel(&a, d);
        EXPECT_EQ(a.Digit(), t.expect) << t.deltas.front() << " x" << t.deltas.size();
        EXPECT_EQ(a.finished, t.finished) << t.deltas.front();
    }
    // Horizontal wheels count too; at design time the wheel does nothing.
    a_->SetDigit(500);
    Wheel(a_.get(), 120, true);
    EXPECT_EQ(a_->Digit(), 501);
    a_->SetDesigning(true);
    Wheel(a_.get(), 120);
    EXPECT_EQ(a_->Digit(), 501);
}

TEST_F(Adjuster, DragsStartOnlyInsideTheHitArea) {
    const struct {
        bool circle;
        QPoint press;
        bool slides;
    } cases[] = {
        {false, {10, 10}, true}, {false, {49, 49}, true}, {false, {50, 30}, false},
        {false, {9, 30}, false}, {false, {30, 50}, true}, {true, {30, 30}, true},
        {true, {11, 11}, false}, {true, {30, 11}, true},
    };
    for (const auto& t : cases) {
        TAdjuster a(&form_);
        a.Loaded();
        a.HitIsCircle = t.circle;
        Mouse(&a, QEvent::MouseButtonPress, t.press);
        EXPECT_EQ(a.Sliding(), t.slides) << t.press.x() << "," << t.press.y();
        EXPECT_EQ(a.slides.size(), t.slides ? 1u : 0u);
        Mouse(&a, QEvent::MouseMove, {70, 70});
        EXPECT_EQ(a.slides.size(), t.slides ? 2u : 0u);
        if (t.slides) {
            EXPECT_EQ(a.slides.back(), (TPoint{70, 70}));
            EXPECT_EQ(a.LastMousePos(), (TPoint{70, 70}));
        }
        Mouse(&a, QEvent::MouseButtonRelease, {70, 70});
        EXPECT_FALSE(a.Sliding());
        Mouse(&a, QEvent::MouseMove, {20, 20});
        EXPECT_EQ(a.slides.size(), t.slides ? 2u : 0u);
    }
    // Other buttons never drag.
    Mouse(a_.get(), QEvent::MouseButtonPress, {20, 20}, Qt::RightButton);
    EXPECT_FALSE(a_->Sliding());
}

TEST_F(Adjuster, ReleaseReportsAChangeMadeWhileDragging) {
    Mouse(a_.get(), QEvent::MouseButtonPress, {20, 20});
    a_->SetDigit(600);
    a_->SetDigit(650);
    EXPECT_EQ(a_->finished, 0);
    Mouse(a_.get(), QEvent::MouseButtonRelease, {20, 20});
    EXPECT_EQ(a_->changes, 2);
    EXPECT_EQ(a_->finished, 1);
    Mouse(a_.get(), QEvent::MouseButtonPress, {20, 20});
    Mouse(a_.get(), QEvent::MouseButtonRelease, {20, 20});
    EXPECT_EQ(a_->finished, 1);
}

TEST_F(Adjuster, CursorShowsTheHitArea) {
    a_->SetCursorSlide(Qt::SizeAllCursor);
    Mouse(a_.get(), QEvent::MouseMove, {20, 20});
    EXPECT_TRUE(a_->InHitArea());
    EXPECT_EQ(a_->cursor().shape(), Qt::SizeAllCursor);
    Mouse(a_.get(), QEvent::MouseMove, {80, 80});
    EXPECT_FALSE(a_->InHitArea());
    EXPECT_EQ(a_->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(Adjuster, LinkedIndicatorFollowsAndMayBeDeleted) {
    auto* meter = new TKxAnalogGControl(&form_);
    meter->Loaded();
    a_->SignalSettings()->SetValueTo(8.0f);
    a_->SignalSettings()->SetValueUnit("bar");
    a_->SetValue(2.0f);
    a_->SetValueIndicator(meter);
    EXPECT_EQ(a_->ValueIndicator(), meter);
    EXPECT_FLOAT_EQ(meter->SignalSettings()->ValueTo(), 8.0f);
    EXPECT_EQ(meter->SignalSettings()->ValueUnit(), "bar");
    EXPECT_FLOAT_EQ(meter->Value(), 2.0f);
    Click(a_.get(), Qt::Key_PageUp);
    EXPECT_FLOAT_EQ(meter->Value(), a_->Value());
    // Range changes reach the indicator.
    a_->SignalSettings()->SetValueFrom(-8.0f);
    EXPECT_FLOAT_EQ(meter->SignalSettings()->ValueFrom(), -8.0f);
    delete meter;
    EXPECT_EQ(a_->ValueIndicator(), nullptr);
    Click(a_.get(), Qt::Key_Up);
    a_->SignalSettings()->SetValueTo(9.0f);
    a_->SetValueIndicator(nullptr);
    EXPECT_EQ(a_->ValueIndicator(), nullptr);
}

TEST_F(Adjuster, FocusAndEnablingRedrawInTheirColours) {
    form_.resize(100, 100);
    form_.show();
    QApplication::setActiveWindow(&form_);
    a_->clearFocus();
    EXPECT_EQ(a_->StateColor(), clGreen);
    const int before = a_->valueChanges;
    a_->setFocus();
    ASSERT_TRUE(a_->hasFocus());
    EXPECT_EQ(a_->StateColor(), clLime);
    EXPECT_EQ(a_->valueChanges, before + 1);
    a_->setEnabled(false);
    EXPECT_EQ(a_->StateColor(), clBtnShadow);
    EXPECT_GE(a_->valueChanges, before + 2);
    a_->setEnabled(true);
    a_->SetColorFocus(clRed);
    a_->setFocus();
    EXPECT_EQ(a_->StateColor(), clRed);
    EXPECT_EQ(a_->focusPolicy(), Qt::WheelFocus);
}

// Counts the key presses that reach it, as a form would see them.
class TKeyCounter : public QWidget {
  public:
    int presses = 0;

  protected:
    void keyPressEvent(QKeyEvent*) override { ++presses; }
};

TEST(AdjusterEvents, HandledKeysStayAndOthersReachTheParent) {
    test::ResetEnvironment();
    TKeyCounter form;
    TAdjuster a(&form);
    a.Loaded();
    const struct {
        int key;
        int reachParent;
    } cases[] = {{Qt::Key_Up, 0},
                 {Qt::Key_PageDown, 0},
                 {Qt::Key_Home, 0},
                 {Qt::Key_A, 1},
                 {Qt::Key_Return, 1}};
    for (const auto& t : cases) {
        form.presses = 0;
        Key(&a, t.key);
        EXPECT_EQ(form.presses, t.reachParent) << t.key;
    }
}

TEST(AdjusterEvents, SettingsObjectsAreCopiedAndOnlyTheLeftButtonEndsADrag) {
    test::ResetEnvironment();
    QWidget form;
    TAdjuster a(&form);
    a.Loaded();
    TSignalSettings other;
    other.SetValueTo(50.0f);
    a.SetSignalSettings(&other);
    EXPECT_FLOAT_EQ(a.SignalSettings()->ValueTo(), 50.0f);
    EXPECT_NE(a.SignalSettings(), &other);
    a.SetSignalSettings(nullptr);
    a.SetSignalSettings(a.SignalSettings());
    EXPECT_FLOAT_EQ(a.SignalSettings()->ValueTo(), 50.0f);
    Mouse(&a, QEvent::MouseButtonPress, {20, 20});
    Mouse(&a, QEvent::MouseButtonRelease, {20, 20}, Qt::RightButton);
    EXPECT_TRUE(a.Sliding());
    Mouse(&a, QEvent::MouseButtonRelease, {20, 20});
    EXPECT_FALSE(a.Sliding());
}

}  // namespace
}  // namespace kx
