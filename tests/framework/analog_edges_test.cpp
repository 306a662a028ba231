// Analog value model: edges a user meets at the range ends, in logarithmic mode, with
// long value pictures and with handlers that delete the control.
#include <gtest/gtest.h>

#include <QPointer>
#include <cmath>
#include <limits>

#include "analog_probe.h"
#include "kx/host/formatfloat.h"
#include "kx/host/recordingcanvas.h"

namespace kx {
namespace {

using test::AnalogProbe;

TEST(AnalogEdges, TheRangeEndsAreInRange) {
    const struct {
        float value;
        bool low, high;
    } cases[] = {{0.0f, false, false},
                 {100.0f, false, false},
                 {-0.1f, true, false},
                 {100.1f, false, true},
                 {0.05f, false, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        AnalogProbe p;
        p.LoadQuiet();
        p.SetValue(c.value);
        EXPECT_EQ(p.OverflowLow(), c.low);
        EXPECT_EQ(p.OverflowHigh(), c.high);
    }
}

TEST(AnalogEdges, LowerLimitIgnoresNaNAndRepeats) {
    AnalogProbe p;
    p.LoadQuiet();
    p.SetLimitLower(20.0f);
    p.Take();
    p.SetLimitLower(20.0f);
    p.SetLimitLower(std::numeric_limits<float>::quiet_NaN());
    EXPECT_TRUE(p.Take().isEmpty());
    EXPECT_EQ(p.LimitLower(), 20.0f);
}

// In logarithmic mode a digit maps through the decades from ValueFrom: 0.01..100 spans
// four decades over 1000 digits, so digit 500 is 10^(2 - 2) = 1.
TEST(AnalogEdges, LogarithmicDigitsStartAtTheRangeStart) {
    AnalogProbe p;
    p.SignalSettings()->SetValueFrom(0.01f);
    p.SignalSettings()->SetValueTo(100.0f);
    p.SetLogScale(true);
    p.LoadQuiet();
    p.SetDigit(500);
    EXPECT_FLOAT_EQ(p.Value(), 1.0f);
    p.SetDigit(750);
    EXPECT_FLOAT_EQ(p.Value(), 10.0f);
}

TEST(AnalogEdges, LogarithmicSwitchMovesAZeroStartToTheFloor) {
    AnalogProbe p;
    p.SignalSettings()->SetValueFrom(0.0f);
    p.SignalSettings()->SetValueTo(80.0f);
    p.SetLogScale(true);
    EXPECT_FLOAT_EQ(p.SignalSettings()->ValueFrom(), 0.001f);
    EXPECT_FLOAT_EQ(p.SignalSettings()->ValueTo(), 100.0f);
}

// A picture longer than any number it formats (a long literal) still gives the text.
TEST(AnalogEdges, LongValuePicturesFormatInFull) {
    AnalogProbe p;
    const QString picture =
        QStringLiteral("'") + QString(300, QChar('x')) + QStringLiteral("' 0.0");
    p.SignalSettings()->SetValueFormat(picture);
    p.LoadQuiet();
    p.SetValue(42.0f);
    EXPECT_EQ(p.ValueText(), FormatFloat(picture, 42.0));
    EXPECT_TRUE(p.ValueText().endsWith(QStringLiteral(" 42.0")));
}

TEST(AnalogEdges, NamesUseArialEight) {
    AnalogProbe p;
    EXPECT_EQ(p.Font()->Name(), QStringLiteral("Arial"));
    EXPECT_EQ(p.Font()->Size(), 8);
}

// A sector handler that deletes the control ends the evaluation (checked for memory
// errors by the sanitizer run).
TEST(AnalogEdges, SectorHandlerMayDeleteTheControl) {
    for (int leave = 0; leave < 2; ++leave) {
        auto* c = new TKxAnalogGControl;
        c->Loaded();
        c->SetValue(10.0f);  // sector 1
        QPointer<TKxAnalogGControl> alive(c);
        int calls = 0;
        QObject::connect(c, &TKxAnalogGControl::OnSectorChange,
                         [&](QObject*, bool, bool, bool, bool enter) {
                             ++calls;
                             if (enter == bool(leave)) delete alive.data();
                         });
        c->SetValue(50.0f);  // leaves sector 1, enters sector 2
        EXPECT_TRUE(alive.isNull());
        EXPECT_EQ(calls, leave ? 2 : 1);
        delete alive.data();
    }
}

// With a digit span of one, a reading beyond the range still shows past the end.
TEST(AnalogEdges, PointerPositionOfATinyDigitSpan) {
    AnalogProbe p;
    p.SignalSettings()->SetDigitalTo(1);
    p.LoadQuiet();
    p.SetValue(300.0f);  // digit 3
    EXPECT_EQ(p.PPT(), 1000);
    EXPECT_EQ(p.PointerPosition(), 1030);
    p.SetValue(-100.0f);  // digit -1
    EXPECT_EQ(p.PointerPosition(), -30);
}

// The name lines: Name2 lowest, each centred in the rectangle, t below its line's top.
TEST(AnalogEdges, NameLinesAreCentredAtTheBottom) {
    AnalogProbe p;
    p.SignalSettings()->SetName1(QStringLiteral("abc"));
    p.SignalSettings()->SetName2(QStringLiteral("abcdefg"));
    TRecordingCanvas rec;
    rec.CharWidth = 7;
    rec.LineHeight = 14;
    const auto sizes = p.MeasureNames(rec);
    EXPECT_EQ(sizes.Name1W, 21);
    EXPECT_EQ(sizes.Name2W, 49);
    TRect r{10, 0, 110, 100};
    p.PaintNames(rec, r, 3, true, true, sizes);
    EXPECT_EQ(r.Bottom, 72);
    const auto texts = rec.CallsOf(QStringLiteral("TextOut"));
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0].Args, (std::vector<int32_t>{10 + (100 - 49) / 2, 86 + 3}));
    EXPECT_EQ(texts[1].Args, (std::vector<int32_t>{10 + (100 - 21) / 2, 72 + 3}));
    TRect only{0, 0, 100, 100};
    p.PaintNames(rec, only, 0, false, true, sizes);
    EXPECT_EQ(only.Bottom, 86);
}

// Positions count from DigitalFrom, not from digit 0.
TEST(AnalogEdges, PositionsCountFromTheDigitalStart) {
    AnalogProbe p;
    p.SignalSettings()->SetDigitalFrom(100);
    p.SignalSettings()->SetDigitalTo(1100);
    p.LoadQuiet();
    p.SetValue(25.0f);
    EXPECT_EQ(p.Digit(), 350);
    EXPECT_EQ(p.PPT(), 250);
    p.SetDigit(600);
    EXPECT_EQ(p.PPT(), 500);
}

}  // namespace
}  // namespace kx
