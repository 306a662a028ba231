// Signal, channel and sector settings: setter rules, derived quantities, positions.
#include <gtest/gtest.h>

#include <QStringList>
#include <cmath>
#include <limits>
#include <vector>

#include "kx/framework/sectorsettings.h"
#include "kx/framework/signalsettings.h"

namespace kx {
namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();

TEST(SignalSettings, DefaultRangeStartsAtATrueZero) {
    TSignalSettings s;
    EXPECT_EQ(s.ValueFrom(), 0.0f);
    EXPECT_EQ(s.Range(), 100.0f);
    EXPECT_EQ(s.ValuePerDigit(), 0.1f);
    EXPECT_EQ(s.PPTFactor(), 10.0f);
    EXPECT_EQ(s.LongFormat(), QStringLiteral("##0.0"));
}

// Start range, mode, which bound is set to what; resulting bounds and notifications.
TEST(SignalSettings, RangeBoundSetters) {
    const struct {
        const char* what;
        float from, to;
        bool log;
        bool setFrom;
        float v;
        float wantFrom, wantTo;
        int changes;
    } cases[] = {
        {"zero start becomes 1e-6", 5, 100, false, true, 0.0f, 1e-6f, 100, 1},
        {"start equal to end ignored", 5, 100, false, true, 100, 5, 100, 0},
        {"same start ignored", 5, 100, false, true, 5, 5, 100, 0},
        {"zero end kept", -50, 100, false, false, 0.0f, -50, 0.0f, 1},
        {"end equal to start ignored", 5, 100, false, false, 5, 5, 100, 0},
        {"log start rounded, applied again", 1, 1000, true, true, 3, 1, 1000, 2},
        {"log start rounding onto the end stays", 1, 100, true, true, 40, 40, 100, 1},
        {"log end rounded, applied again", 1, 100, true, false, 3000, 1, 1000, 2},
        {"log end already a decade", 1, 100, true, false, 1000, 1, 1000, 1},
        {"log zero start", 5, 100, true, true, 0.0f, 1e-6f, 100, 1},
        {"NaN start ignored", 5, 100, false, true, std::nanf(""), 5, 100, 0},
        {"infinite end ignored", 5, 100, false, false, kInf, 5, 100, 0},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.what);
        TSignalSettings s;
        s.SetValueTo(t.to);
        s.SetValueFrom(t.from);
        s.SetLogScale(t.log);
        int changes = 0;
        s.SetOnChange([&](QObject*) { ++changes; });
        if (t.setFrom)
            s.SetValueFrom(t.v);
        else
            s.SetValueTo(t.v);
        EXPECT_EQ(s.ValueFrom(), t.wantFrom);
        EXPECT_EQ(s.ValueTo(), t.wantTo);
        EXPECT_EQ(changes, t.changes);
    }
}

TEST(SignalSettings, DerivedQuantitiesAreReadyWhenOnChangeFires) {
    const struct {
        float from, to;
        int32_t dFrom, dTo;
        float range;
        int32_t total;
        float perDigit, perValue, pptFactor;
    } cases[] = {
        {-100, -50, 0, 1000, 50, 1000, 0.05f, 20, 20},
        {-50, 50, 0, 4000, 100, 4000, 0.025f, 40, 10},
        {20, 70, -500, 500, 50, 1000, 0.05f, 20, 20},
        {20, 70, -4095, -95, 50, 4000, 0.0125f, 80, 20},
        {0, 250, 100, 1100, 250, 1000, 0.25f, 4, 4},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.range);
        TSignalSettings s;
        s.SetDigitalTo(t.dTo);
        s.SetDigitalFrom(t.dFrom);
        s.SetValueTo(t.to);
        s.SetValueFrom(t.from);
        s.SetValueTo(t.to);
        std::vector<float> seen;
        s.SetOnChange([&](QObject*) { seen = {s.Range(), s.PPTFactor()}; });
        s.SetName2(QStringLiteral("x"));
        EXPECT_EQ(s.Range(), t.range);
        EXPECT_EQ(s.TotalDigit(), t.total);
        EXPECT_FLOAT_EQ(s.ValuePerDigit(), t.perDigit);
        EXPECT_FLOAT_EQ(s.DigitPerValue(), t.perValue);
        EXPECT_FLOAT_EQ(s.PPTFactor(), t.pptFactor);
        EXPECT_EQ(seen, (std::vector<float>{t.range, s.PPTFactor()}));
    }
}

TEST(SignalSettings, UnusableRangesKeepThePreviousQuantities) {
    TSignalSettings s;
    s.SetValueFrom(50);
    s.SetValueTo(-10);  // start >= 0 >= end: no span
    EXPECT_EQ(s.Range(), 50.0f);
    EXPECT_EQ(s.PPTFactor(), 20.0f);
    s.SetValueTo(20);  // descending: Range goes negative, the factors stay
    EXPECT_EQ(s.Range(), -30.0f);
    EXPECT_EQ(s.PPTFactor(), 20.0f);
    EXPECT_EQ(s.DigitPerValue(), 20.0f);
    s.SetValueFormat(QStringLiteral("0;-00"));
    EXPECT_EQ(s.LongFormat(), QStringLiteral("##0.0"));

    TSignalSettings d;
    d.SetDigitalTo(-10);  // no digit span
    d.SetDigitalFrom(10);
    EXPECT_EQ(d.TotalDigit(), 0);
    EXPECT_EQ(d.ValuePerDigit(), 0.1f);
}

class HookedSignal : public TSignalSettings {
  public:
    QStringList calls;

  protected:
    void DigitScaleChanged(int32_t newFrom, int32_t newTo) override {
        calls << QStringLiteral("%1..%2 (stored %3..%4)")
                     .arg(newFrom)
                     .arg(newTo)
                     .arg(DigitalFrom())
                     .arg(DigitalTo());
    }
};

TEST(SignalSettings, DigitScaleHookSeesTheNewRangeBeforeItIsStored) {
    HookedSignal s;
    s.SetDigitalFrom(-200);
    s.SetDigitalTo(800);
    s.SetDigitalTo(800);
    EXPECT_EQ(s.calls, (QStringList{QStringLiteral("-200..1000 (stored 0..1000)"),
                                    QStringLiteral("-200..800 (stored -200..1000)")}));
    EXPECT_EQ(s.TotalDigit(), 1000);
}

TEST(SignalSettings, PositionAndValueConversions) {
    TSignalSettings s;
    const struct {
        float v;
        int32_t ppt;
    } toPPT[] = {
        // clang-format off
        {0.25f, 2},  // halves round to even
        {0.75f, 8}, {100.0f, 1000},
        {100.1f, 1001},  // not clamped
        {-5.0f, -50}, {kInf, std::numeric_limits<int32_t>::max()},
        {-kInf, std::numeric_limits<int32_t>::min()}, {std::nanf(""), 0},
        // clang-format on
    };
    for (const auto& t : toPPT)
        EXPECT_EQ(s.GetPPT(t.v), t.ppt) << t.v;
    EXPECT_EQ(s.GetValue(500), 50.0f);
    EXPECT_FLOAT_EQ(s.GetValue(1001), 100.1f);

    s.SetValueFrom(-20);
    s.SetValueTo(30);
    EXPECT_EQ(s.GetPPT(5.0f), 500);
    EXPECT_EQ(s.GetValue(-100), -25.0f);
}

TEST(SignalSettings, LongestFormatSection) {
    const struct {
        const char* format;
        const char* longest;
    } cases[] = {
        {"##0.0°;-##0.0°", "-##0.0°"},  // head one shorter
        {"##0.0;-0", "##0.0"},          // head longer
        {"00.0;-0.0", "-0.0"},          // equal: the rest
        {"##0.00", "##0.00"},
        {"0;-0.000;'zero'", "-0.000;'zero'"},  // the rest keeps its own ';'
        {";", ""},
        {"", ""},
    };
    for (const auto& t : cases) {
        EXPECT_EQ(TSignalSettings::KxGetValueFormat(QString::fromUtf8(t.format)),
                  QString::fromUtf8(t.longest))
            << t.format;
    }
}

TEST(SignalSettings, AssignCopiesThePublishedFields) {
    TSignalSettings a;
    a.SetDigitalFrom(-100);
    a.SetValueFrom(-10);
    a.SetValueTo(0.0f);
    a.SetName1(QStringLiteral("Tank"));
    a.SetValueUnit(QStringLiteral("m"));
    TSignalSettings b;
    int changes = 0;
    b.SetOnChange([&](QObject*) { ++changes; });
    b.Assign(&a);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(b.DigitalFrom(), -100);
    EXPECT_EQ(b.ValueFrom(), -10.0f);
    EXPECT_EQ(b.ValueTo(), 0.0f);
    EXPECT_EQ(b.Name1(), QStringLiteral("Tank"));
    EXPECT_EQ(b.ValueUnit(), QStringLiteral("m"));
    EXPECT_EQ(b.Range(), 10.0f);
    EXPECT_EQ(b.TotalDigit(), 1100);
    TSectorSettings other;
    EXPECT_THROW(b.Assign(&other), EConvertError);
}

// --- channel ---------------------------------------------------------------------------

TEST(ChSettings, ValueAndDigitDriveEachOtherWithoutClamping) {
    TChSettings ch;
    ch.SetDigitalFrom(100);
    ch.SetDigitalTo(3300);
    ch.SetValueFrom(-50);
    ch.SetValueTo(50);
    int valueEvents = 0, changes = 0;
    QObject::connect(&ch, &TChSettings::OnValueChange, [&](QObject* s) {
        EXPECT_EQ(s, &ch);
        ++valueEvents;
    });
    ch.SetOnChange([&](QObject*) { ++changes; });

    EXPECT_EQ(ch.Value(), 0.0f);
    ch.SetValue(0.0f);
    EXPECT_EQ(valueEvents, 0);
    ch.SetValue(25.0f);
    EXPECT_EQ(ch.Digit(), 2500);
    EXPECT_EQ(ch.AbsDigit(), 2400);
    ch.SetValue(75.0f);  // beyond the range
    EXPECT_EQ(ch.Digit(), 4100);
    ch.SetDigit(0);  // below the digit range
    EXPECT_EQ(ch.Value(), -53.125f);
    EXPECT_EQ(ch.AbsDigit(), -100);
    ch.SetDigit(0);
    ch.SetValue(std::nanf(""));
    EXPECT_EQ(valueEvents, 3);
    EXPECT_EQ(ch.AbsDigitToValue(1600), 0.0f);

    ch.SetColor(clRed);
    ch.SetVisible(false);
    ch.SetPenWidth(3);
    ch.SetPenWidth(3);
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(valueEvents, 3);
}

// --- sectors ---------------------------------------------------------------------------

TEST(SectorSettings, SectorColourOfAPosition) {
    TSectorSettings s;
    s.SetSector2From(300);  // overlaps sector 1 on 300..333
    s.SetSector3From(700);  // gap 667..699
    const struct {
        int32_t ppt;
        bool found;
        TColor color;
    } cases[] = {
        {0, true, clYellow},  {299, true, clYellow}, {300, true, clGreen}, {333, true, clGreen},
        {666, true, clGreen}, {667, false, clNone},  {699, false, clNone}, {700, true, clRed},
        {1000, true, clRed},  {1001, false, clNone}, {-1, false, clNone},
    };
    for (const auto& t : cases) {
        TColor c = clNone;
        EXPECT_EQ(s.CheckSectorColor(t.ppt, c), t.found) << t.ppt;
        EXPECT_EQ(c, t.color) << t.ppt;
    }
}

TEST(SectorSettings, AssignGoesThroughTheSettersInOrderButSkipsTheOffsets) {
    TSectorSettings src;
    src.SetSector1Color(clBlue);
    src.SetSector3Color(clLime);
    src.SetSector2From(400);
    src.SetSector1To(399);
    src.SetOffset(4);
    src.SetWidthOffset(2);
    TSectorSettings dst;
    QStringList seen;
    dst.SetOnChange([&](QObject*) {
        seen << QStringLiteral("%1 %2 %3 %4")
                    .arg(dst.Sector1Color() == clBlue)
                    .arg(dst.Sector3Color() == clLime)
                    .arg(dst.Sector2From())
                    .arg(dst.Sector1To());
    });
    dst.Assign(&src);
    EXPECT_EQ(seen, (QStringList{"1 0 334 333", "1 1 334 333", "1 1 400 333", "1 1 400 399"}));
    EXPECT_EQ(dst.Offset(), 0);
    EXPECT_EQ(dst.WidthOffset(), 0);
}

}  // namespace
}  // namespace kx
