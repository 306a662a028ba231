// Thermometer: layout of tube, bulb and scale, the column's level for readings in and
// beyond the range, markers, blinking and what a reading repaints.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/colors.h"
#include "kx/indicators/thermometer.h"

namespace kx {
namespace {

class ThermometerTest : public ::testing::Test {
  protected:
    void TearDown() override {
        ClearFlashList();
        SetFlashTickCounter(0);
    }
};

bool inFlashList(const TKxFlashClient* c) {
    for (const auto& e : FlashList())
        if (e && e->Control == c) return true;
    return false;
}

std::unique_ptr<TKxThermometer> painted(bool leftTop = false, float value = 50.0f) {
    auto t = std::make_unique<TKxThermometer>();
    t->ScaleSettings()->SetPosLeftTop(leftTop);
    t->SetLimitUpper(1e6f);
    t->SetLimitLower(-1e6f);
    t->Loaded();
    t->SetValue(value);
    t->PaintToSurface();
    return t;
}

// The middle column of the bore, which the highlight line does not touch.
int32_t boreX(const TKxThermometer& t) {
    return (t.Bore().Left + t.Bore().Right) / 2;
}

// The highlight line one pixel in from the bore's left edge.
int32_t highlightX(const TKxThermometer& t) {
    return t.Bore().Left + 1;
}

TColor highlightOf(TColor liquid) {
    return KxCalcColor(liquid, clWhite, 2, 1);
}

// --- level of the column ---------------------------------------------------------------------

struct LevelCase {
    bool leftTop;
    float value;
    int32_t position;  // per mille the column's top stands at
};

class ThermometerLevel : public ::testing::TestWithParam<LevelCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(ThermometerLevel, ColumnReachesTheReading) {
    const LevelCase& c = GetParam();
    auto t = painted(c.leftTop, 50.0f);
    t->SetValue(c.value);
    const TScaleSettings& s = *t->ScaleSettings();
    const float f = float(s.ScaleStart - s.ScaleEnd) / 1000.0f;
    const int32_t level = s.ScaleStart - int32_t(std::nearbyint(double(f) * c.position));
    EXPECT_EQ(t->Level(), level);
    const int32_t x = boreX(*t);
    // Liquid from the level down, glass above it.
    EXPECT_EQ(t->Surface().Pixel(x, level), t->LiquidColor());
    EXPECT_EQ(t->Surface().Pixel(x, t->Bore().Bottom - 1), t->LiquidColor());
    EXPECT_NE(t->Surface().Pixel(x, level - 1), t->LiquidColor());
    // A lighter line runs down the column's left side; a blinking column is flat.
    const TColor side =
        t->Blinking() ? t->Surface().Pixel(x, level) : highlightOf(t->LiquidColor());
    EXPECT_EQ(t->Surface().Pixel(highlightX(*t), level), side);
    EXPECT_EQ(t->Surface().Pixel(highlightX(*t), t->Bore().Bottom - 1), side);
    // The stops keep the column inside the glass, clear of the cap and the bulb.
    EXPECT_GE(level, t->Bore().Top);
    EXPECT_LE(level, t->Bulb().Top);
}

INSTANTIATE_TEST_SUITE_P(
    Thermometer, ThermometerLevel,
    ::testing::Values(LevelCase{false, 0.0f, 0}, LevelCase{false, 50.0f, 500},
                      LevelCase{false, 100.0f, 1000}, LevelCase{false, 101.5f, 1015},
                      LevelCase{false, 1e30f, 1030}, LevelCase{false, -7.0f, -30},
                      LevelCase{false, std::numeric_limits<float>::infinity(), 1030},
                      LevelCase{false, -std::numeric_limits<float>::infinity(), -30},
                      LevelCase{true, 25.0f, 250}, LevelCase{true, 100.0f, 1000},
                      LevelCase{true, -FLT_MAX, -30}));

TEST_F(ThermometerTest, NaNReadingLeavesTheColumnWhereItWas) {
    auto t = painted(false, 30.0f);
    const QImage before = t->Surface().Image().copy();
    const int32_t level = t->Level();
    t->SetValue(std::nanf(""));
    EXPECT_EQ(t->Level(), level);
    EXPECT_TRUE(before == t->Surface().Image());
}

// --- layout ----------------------------------------------------------------------------------

TEST_F(ThermometerTest, Defaults) {
    TKxThermometer t;
    EXPECT_EQ(t.TubeColor(), clWhite);
    EXPECT_EQ(t.BevelInner()->Style(), bsLowered);
    EXPECT_EQ(t.BevelInner()->BevelLine(), blInner);
    EXPECT_EQ(t.BevelOuter()->Style(), bsRaised);
    EXPECT_EQ(t.BevelOuter()->BevelLine(), blOuter);
    EXPECT_EQ(t.FontUnit()->Name(), QStringLiteral("System"));
    EXPECT_EQ(t.FontUnit()->Size(), 10);
    EXPECT_EQ(t.FontUnit()->Color(), clBlack);
}

TEST_F(ThermometerTest, DefaultLayout) {
    auto t = painted();
    EXPECT_EQ(t->width(), 130);
    EXPECT_EQ(t->height(), 280);
    EXPECT_EQ(t->Options(), TKxThermometer::kDefaultOptions);
    EXPECT_EQ(t->LiquidColor(), clRed);
    EXPECT_FALSE(t->TooSmall());
    const TScaleSettings& s = *t->ScaleSettings();
    const int32_t H = s.MaxTextHeight, T = s.StepLength;
    const int32_t tw = std::max(4, int32_t(std::nearbyint(H * 0.6)));
    EXPECT_EQ(t->Tube().Width(), tw);
    EXPECT_EQ(t->Bulb().Width(), 2 * tw);
    EXPECT_EQ(t->Bulb().Height(), 2 * tw);
    EXPECT_EQ(t->Bulb().Bottom, t->InstrumentArea().Bottom);
    // Bulb centred under the tube, the scale 2 pixels right of it, markers' room left.
    EXPECT_EQ(t->Bulb().Left + tw / 2, t->Tube().Left);
    EXPECT_EQ(t->ScaleRect().Left, t->Tube().Right + 2);
    EXPECT_EQ(s.ScaleStart, t->ScaleRect().Bottom);
    EXPECT_EQ(s.ScaleEnd, t->ScaleRect().Top);
    // The block (T + 2, tube, 2, scale) is centred in the area.
    const TRect a = t->InstrumentArea();
    const int32_t blockW = T + 2 + tw + 2 + s.ScaleThickness;
    EXPECT_EQ(t->Tube().Left - T - 2, a.Left + (a.Width() - blockW) / 2);
    // Room above the top tick and below the bottom tick for the stops.
    const int32_t len = t->ScaleRect().Height();
    EXPECT_GE(t->ScaleRect().Top - t->Bore().Top, (len * 3 + 99) / 100 - 1);
    EXPECT_GE(t->Bulb().Top - t->ScaleRect().Bottom, (len * 3 + 99) / 100 - 1);
    // The bulb is outlined one pixel wide in gray.
    const TRect b = t->Bulb();
    const int32_t y = (b.Top + b.Bottom) / 2;
    const struct {
        int32_t x;
        bool edge;
    } row[] = {{b.Left - 1, false},  {b.Left, true},      {b.Left + 1, false},
               {b.Right - 2, false}, {b.Right - 1, true}, {b.Right, false}};
    for (const auto& p : row)
        EXPECT_EQ(t->Surface().Pixel(p.x, y) == clGray, p.edge) << p.x;
}

TEST_F(ThermometerTest, LabelsLeftMirrorTheBlock) {
    auto t = painted(true);
    EXPECT_EQ(t->Tube().Left, t->ScaleRect().Right + 2);
    const auto& m = t->Markers();
    // Markers to the right, their points 2 pixels off the tube.
    EXPECT_EQ(m[2].X, t->Tube().Right + 1);
    EXPECT_EQ(m[0].X, m[2].X + t->ScaleSettings()->StepLength);
}

TEST_F(ThermometerTest, TooSmallRule) {
    const struct {
        int32_t w, h;
        bool small;
    } cases[] = {{1, 1, true},      {40, 60, true},      {80, 280, true},   {130, 120, true},
                 {130, 280, false}, {4000, 4000, false}, {4000, 200, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.w << "x" << c.h);
        TKxThermometer t;
        t.SetBounds(0, 0, c.w, c.h);
        t.Loaded();
        t.PaintToSurface();
        EXPECT_EQ(t.TooSmall(), c.small);
        t.SetValue(500.0f);  // no blinking while too small
        EXPECT_EQ(t.Blinking(), !c.small);
        if (c.small) {
            EXPECT_EQ(t.Background().Width(), 0);
            EXPECT_EQ(t.Level(), -1);
        } else {
            EXPECT_GE(t.Tube().Left, t.InstrumentArea().Left);
            EXPECT_LE(t.ScaleRect().Right, t.InstrumentArea().Right);
        }
        ClearFlashList();
    }
}

TEST_F(ThermometerTest, UnitIsDrawnOnlyWithOpUnitAndAText) {
    const auto unitBit = TKxThermometer::ThermometerOption(TKxThermometer::opUnit);
    auto paint = [](uint16_t options, const QString& unit) {
        auto t = std::make_unique<TKxThermometer>();
        t->SetOptions(options);
        t->SignalSettings()->SetValueUnit(unit);
        t->Loaded();
        t->SetValue(40.0f);
        t->PaintToSurface();
        return t->Surface().Image().copy();
    };
    const QImage plain = paint(TKxThermometer::kDefaultOptions & ~unitBit, QString());
    const struct {
        uint16_t options;
        const char* unit;
        bool drawn;
    } cases[] = {
        {TKxThermometer::kDefaultOptions, "degC", true},
        {TKxThermometer::kDefaultOptions, "", false},
        {uint16_t(TKxThermometer::kDefaultOptions & ~unitBit), "degC", false},
        {0, "degC", false},  // no bevels behind: black text would show in the alpha only
    };
    for (const auto& c : cases) {
        const QImage reference = c.options == 0 ? paint(0, QString()) : plain;
        EXPECT_EQ(paint(c.options, QString::fromLatin1(c.unit)) != reference, c.drawn)
            << c.options << " " << c.unit;
    }
}

// --- markers ---------------------------------------------------------------------------------

TEST_F(ThermometerTest, MarkersStandAtTheExtremes) {
    auto t = painted(false, 20.0f);
    t->SetValue(80.0f);
    t->SetValue(50.0f);
    const int32_t T = t->ScaleSettings()->StepLength, k = T / 2;
    const int32_t a = t->LevelOf(200), b = t->LevelOf(800), tx = t->Tube().Left - 2;
    const std::array<TPoint, 6> expected{TPoint{tx - T, a}, TPoint{tx - T, a + k}, TPoint{tx, a},
                                         TPoint{tx - T, b}, TPoint{tx - T, b - k}, TPoint{tx, b}};
    EXPECT_EQ(t->Markers(), expected);
    // Sector colours with UseSectorCol (20 % lies in sector 1, 80 % in sector 3).
    EXPECT_EQ(t->Surface().Pixel(tx - T + 2, a + 2), t->SectorSettings()->Sector1Color());
    EXPECT_EQ(t->Surface().Pixel(tx - T + 2, b - 2), t->SectorSettings()->Sector3Color());
    t->MinMax()->SetUseSectorCol(false);
    t->SetValue(51.0f);
    EXPECT_EQ(t->Surface().Pixel(tx - T + 2, a + 2), clAqua);
}

// --- what a reading repaints -----------------------------------------------------------------

TEST_F(ThermometerTest, AReadingRepaintsOnlyTheChangedBandAndTheMarkers) {
    auto t = painted(false, 40.0f);
    t->SetValue(44.0f);  // extremes recorded once: the markers stay put below
    const QImage before = t->Surface().Image().copy();
    const int32_t oldLevel = t->Level();
    t->SetValue(42.0f);
    const TRect bore = t->Bore();
    int outside = 0, inside = 0;
    for (int y = 0; y < before.height(); ++y)
        for (int x = 0; x < before.width(); ++x) {
            if (before.pixel(x, y) == t->Surface().Image().pixel(x, y)) continue;
            const bool band =
                x >= bore.Left && x < bore.Right && y >= oldLevel - 1 && y <= t->Level() + 1;
            (band ? inside : outside)++;
        }
    EXPECT_GT(inside, 0);
    EXPECT_EQ(outside, 0);
}

TEST_F(ThermometerTest, ReadingsComposeTheSamePixelsAsAFullPaint) {
    for (bool leftTop : {false, true}) {
        auto t = painted(leftTop, 50.0f);
        for (float v : {10.0f, 90.0f, 33.0f, 150.0f, -40.0f, 61.0f}) {
            t->SetValue(v);
            ClearFlashList();
            const QImage composed = t->Surface().Image().copy();
            t->Invalidate();
            t->PaintToSurface();
            EXPECT_TRUE(composed == t->Surface().Image()) << leftTop << " " << v;
        }
    }
}

TEST_F(ThermometerTest, SectorColourFillsColumnAndBulb) {
    auto t = painted(false, 20.0f);
    t->SetLiquidColor(clBlue);
    t->PaintToSurface();
    const TPoint bulb{(t->Bulb().Left + t->Bulb().Right) / 2, t->Bulb().Bottom - 3};
    TColor last = t->Surface().Pixel(bulb.X, bulb.Y);
    t->SetOptions(TKxThermometer::kAllThermometerOptions);
    t->PaintToSurface();
    const TSectorSettings& s = *t->SectorSettings();
    const struct {
        float value;
        TColor color;
    } cases[] = {{20.0f, s.Sector1Color()}, {50.0f, s.Sector2Color()}, {80.0f, s.Sector3Color()}};
    for (const auto& c : cases) {
        t->SetValue(c.value);
        EXPECT_EQ(t->CurrentLiquidColor(), c.color) << c.value;
        EXPECT_EQ(t->Surface().Pixel(boreX(*t), t->Level() + 1), c.color) << c.value;
        // The bulb follows the sector (the three sector colours differ).
        const TColor now = t->Surface().Pixel(bulb.X, bulb.Y);
        EXPECT_NE(now, last) << c.value;
        last = now;
    }
}

// --- blinking --------------------------------------------------------------------------------

TEST_F(ThermometerTest, OverflowAndLimitBlinkTheColumn) {
    const struct {
        uint16_t options;
        float value;
        bool blinks;
    } cases[] = {
        {TKxThermometer::kDefaultOptions, 130.0f, true},
        {TKxThermometer::kDefaultOptions, -5.0f, true},
        {TKxThermometer::kDefaultOptions, 95.0f, true},  // beyond LimitUpper 90
        {TKxThermometer::kDefaultOptions &
             ~TKxThermometer::ThermometerOption(TKxThermometer::opLimit),
         95.0f, false},
        {TKxThermometer::kDefaultOptions &
             ~TKxThermometer::ThermometerOption(TKxThermometer::opOverflow),
         130.0f, true},  // still beyond the limit
        {0, 130.0f, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.options << " " << c.value);
        TKxThermometer t;
        t.SetOptions(c.options);
        t.Loaded();
        t.PaintToSurface();
        t.SetValue(c.value);
        EXPECT_EQ(t.Blinking(), c.blinks);
        EXPECT_EQ(inFlashList(&t), c.blinks);
        // Blinking, the column is one flat colour, highlight line included.
        const TPoint p{boreX(t), t.Bore().Bottom - 2}, h{highlightX(t), p.Y};
        const TColor lit = highlightOf(t.LiquidColor());
        SetFlashTickCounter(15);
        RunFlashTick();
        EXPECT_EQ(t.Surface().Pixel(p.X, p.Y), c.blinks ? clRed : t.LiquidColor());
        EXPECT_EQ(t.Surface().Pixel(h.X, h.Y), c.blinks ? clRed : lit);
        SetFlashTickCounter(31);
        RunFlashTick();
        EXPECT_EQ(t.Surface().Pixel(p.X, p.Y), c.blinks ? clYellow : t.LiquidColor());
        EXPECT_EQ(t.Surface().Pixel(h.X, h.Y), c.blinks ? clYellow : lit);
        t.SetValue(50.0f);
        EXPECT_FALSE(t.Blinking());
        EXPECT_FALSE(inFlashList(&t));
        EXPECT_EQ(t.Surface().Pixel(p.X, p.Y), t.LiquidColor());
        EXPECT_EQ(t.Surface().Pixel(h.X, h.Y), lit);
        ClearFlashList();
    }
}

TEST_F(ThermometerTest, NothingBlinksAtDesignTime) {
    TKxThermometer t;
    t.SetDesigning(true);
    t.Loaded();
    t.PaintToSurface();
    t.SetValue(150.0f);
    t.PaintToSurface();
    EXPECT_FALSE(t.Blinking());
    EXPECT_FALSE(inFlashList(&t));
}

// --- bad input and settings ------------------------------------------------------------------

TEST_F(ThermometerTest, ExtremeRangesDrawInsideTheControl) {
    const float inf = std::numeric_limits<float>::infinity();
    for (int range = 0; range < 4; ++range) {
        SCOPED_TRACE(range);
        TKxThermometer t;
        TSignalSettings& s = *t.SignalSettings();
        if (range == 1) s.SetValueTo(0.0f);
        if (range == 2) s.SetValueFrom(-1e30f), s.SetValueTo(-1e29f);
        if (range == 3) {
            s.SetValueFrom(1e-3f);
            t.SetLogScale(true);
        }
        t.Loaded();
        t.PaintToSurface();
        for (float v : {std::nanf(""), inf, -inf, FLT_MAX, -FLT_MAX, 0.0f}) {
            t.SetValue(v);
            t.PaintToSurface();
            EXPECT_GE(t.PointerPosition(), -30);
            EXPECT_LE(t.PointerPosition(), 1030);
            if (t.Level() >= 0) {
                EXPECT_GE(t.Level(), t.Bore().Top);
                EXPECT_LE(t.Level(), t.Bore().Bottom);
            }
        }
        ClearFlashList();
    }
}

TEST_F(ThermometerTest, SettingsSettersCopyTheirSourceAndIgnoreNull) {
    TKxThermometer source;
    source.BevelInner()->SetWidth(4);
    source.BevelOuter()->SetWidth(5);
    source.FontUnit()->SetSize(17);
    source.ScaleSettings()->SetSteps(7);
    using Set = std::function<void(TKxThermometer&, const TKxThermometer*)>;
    using Copied = std::function<bool(const TKxThermometer&)>;
    const struct {
        const char* what;
        Set set;
        Copied copied;
    } cases[] = {
        {"BevelInner",
         [](TKxThermometer& t, const TKxThermometer* s) {
             t.SetBevelInner(s ? s->BevelInner() : nullptr);
         },
         [](const TKxThermometer& t) { return t.BevelInner()->Width() == 4; }},
        {"BevelOuter",
         [](TKxThermometer& t, const TKxThermometer* s) {
             t.SetBevelOuter(s ? s->BevelOuter() : nullptr);
         },
         [](const TKxThermometer& t) { return t.BevelOuter()->Width() == 5; }},
        {"FontUnit",
         [](TKxThermometer& t, const TKxThermometer* s) {
             t.SetFontUnit(s ? s->FontUnit() : nullptr);
         },
         [](const TKxThermometer& t) { return t.FontUnit()->Size() == 17; }},
        {"ScaleSettings",
         [](TKxThermometer& t, const TKxThermometer* s) {
             t.SetScaleSettings(s ? s->ScaleSettings() : nullptr);
         },
         [](const TKxThermometer& t) { return t.ScaleSettings()->Steps() == 7; }},
    };
    for (const auto& c : cases) {
        TKxThermometer t;
        EXPECT_NO_THROW(c.set(t, nullptr)) << c.what;
        EXPECT_FALSE(c.copied(t)) << c.what;
        c.set(t, &source);
        EXPECT_TRUE(c.copied(t)) << c.what;
    }
}

TEST_F(ThermometerTest, SettingsChangesRepaint) {
    using Touch = std::function<void(TKxThermometer&)>;
    const std::pair<const char*, Touch> cases[] = {
        {"ScaleSettings", [](TKxThermometer& t) { t.ScaleSettings()->SetSteps(4); }},
        {"BevelInner", [](TKxThermometer& t) { t.BevelInner()->SetWidth(3); }},
        {"BevelOuter", [](TKxThermometer& t) { t.BevelOuter()->SetWidth(3); }},
        {"FontUnit", [](TKxThermometer& t) { t.FontUnit()->SetSize(13); }},
        {"LiquidColor", [](TKxThermometer& t) { t.SetLiquidColor(clBlue); }},
        {"TubeColor", [](TKxThermometer& t) { t.SetTubeColor(clSilver); }},
        {"Options", [](TKxThermometer& t) { t.SetOptions(1); }},
        {"LogScale", [](TKxThermometer& t) { t.SetLogScale(true); }},
    };
    for (const auto& [what, touch] : cases) {
        SCOPED_TRACE(what);
        auto t = painted();
        t->SetRedrawNeeded(false);
        touch(*t);
        EXPECT_TRUE(t->RedrawNeeded());
    }
    auto t = painted();
    t->SetLogScale(true);
    EXPECT_TRUE(t->ScaleSettings()->LogScale);
}

}  // namespace
}  // namespace kx
