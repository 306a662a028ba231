// Tank: vessel layout, the level at and beyond the range, what a reading repaints, limit
// lines, markers, blinking and bad input.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include "common/flash_util.h"
#include "common/ratio.h"
#include "kx/blink/flashtimer.h"
#include "kx/indicators/tank.h"

namespace kx {
namespace {

class TankTest : public ::testing::Test {
  protected:
    void TearDown() override {
        ClearFlashList();
        SetFlashTickCounter(0);
    }
};

using TankSetup = std::function<void(TKxTank&)>;

std::unique_ptr<TKxTank> paintedTank(const TankSetup& setup = nullptr) {
    auto t = std::make_unique<TKxTank>();
    t->SetLimitUpper(1e6f);  // no limit alarms unless a test wants them
    t->SetLimitLower(-1e6f);
    if (setup) setup(*t);
    t->Loaded();
    t->PaintToSurface();
    return t;
}

int32_t expectedLevel(const TKxTank& t, int32_t pos) {
    const float f = float(t.LevelBottom() - t.LevelTop()) / 1000.0f;
    const int32_t raw = t.LevelBottom() - int32_t(std::nearbyint(double(f) * pos));
    return std::clamp(raw, t.Vessel().Top + 1, t.Vessel().Bottom - 1);
}

int changedOutside(const QImage& a, const QImage& b, std::initializer_list<TRect> areas) {
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            bool inside = false;
            for (const TRect& r : areas)
                inside = inside || (x >= r.Left && x < r.Right && y >= r.Top && y < r.Bottom);
            if (!inside && a.pixel(x, y) != b.pixel(x, y)) ++n;
        }
    return n;
}

int32_t centreColumn(const TKxTank& t) {
    return t.Vessel().Left + t.Vessel().Width() / 2;
}

TEST_F(TankTest, Defaults) {
    TKxTank t;
    EXPECT_EQ(t.width(), 140);
    EXPECT_EQ(t.height(), 240);
    EXPECT_EQ(t.Options(), TKxTank::kDefaultTankOptions);
    EXPECT_FALSE(t.HasOption(TKxTank::opSector));
    EXPECT_TRUE(t.HasOption(TKxTank::opOverflow));
    EXPECT_EQ(t.TankShape(), TKxTank::tsCylinder);
    EXPECT_EQ(t.TankColor(), clSilver);
    EXPECT_EQ(t.LiquidColor(), RGB(30, 110, 220));
    EXPECT_EQ(t.LimitUpperColor(), clRed);
    EXPECT_EQ(t.LimitLowerColor(), RGB(255, 140, 0));
    EXPECT_TRUE(t.ValueTop());
    EXPECT_EQ(t.ScaleSettings()->Font()->Size(), 10);
    EXPECT_EQ(t.BevelInner()->BevelLine(), blInner);
    EXPECT_EQ(t.BevelInner()->Style(), bsLowered);
    EXPECT_EQ(t.BevelOuter()->BevelLine(), blOuter);
    EXPECT_EQ(t.ValInd()->FormatStr(), QStringLiteral("##0.0"));
    t.setTankShape(7);  // not a shape: ignored
    EXPECT_EQ(t.TankShape(), TKxTank::tsCylinder);
    t.setTankShape(TKxTank::tsRectangular);
    EXPECT_EQ(t.TankShape(), TKxTank::tsRectangular);
}

// --- layout ------------------------------------------------------------------------------

struct LayoutCase {
    TKxTank::TTankShape shape;
    bool leftTop;
};

class TankLayout : public ::testing::TestWithParam<LayoutCase> {};

TEST_P(TankLayout, VesselMarkersAndScaleShareTheArea) {
    const LayoutCase c = GetParam();
    auto t = paintedTank([&](TKxTank& k) {
        k.SetTankShape(c.shape);
        k.ScaleSettings()->SetPosLeftTop(c.leftTop);
    });
    ASSERT_FALSE(t->TooSmall());
    const TRect a = t->Area(), v = t->Vessel(), m = t->MarkerColumn(), s = t->ScaleRect();
    EXPECT_EQ(v.Top, a.Top + 3);
    EXPECT_EQ(v.Bottom, a.Bottom - 3);
    EXPECT_EQ(t->LevelTop(), v.Top + t->EndHeight());
    EXPECT_EQ(t->LevelBottom(), v.Bottom - 1 - t->EndHeight());
    // The ends keep the stops at -30 and 1030 inside the vessel.
    EXPECT_GE(t->EndHeight() * 1000, (t->LevelBottom() - t->LevelTop()) * 30);
    if (!c.leftTop) {
        EXPECT_EQ(v.Left, a.Left + 3);
        EXPECT_EQ(m.Left, v.Right + 2);
        EXPECT_EQ(s.Left, m.Right + 2);
    } else {
        EXPECT_EQ(s.Left, a.Left + 3);
        EXPECT_EQ(m.Right + 2, v.Left);
        EXPECT_EQ(v.Right, a.Right - 3);
    }
    // The scale's ends are the straight part's ends: 0 and 1000 per mille.
    EXPECT_EQ(t->ScaleSettings()->ScaleStart, t->LevelBottom());
    EXPECT_EQ(t->ScaleSettings()->ScaleEnd, t->LevelTop());
    // The inside: symmetric, full width less the outline along the straight part; the
    // cylinder's domes narrow towards the ends, the rectangle's ends do not.
    const auto mid = t->Inside((t->LevelTop() + t->LevelBottom()) / 2);
    EXPECT_EQ(mid.first, v.Left + 1);
    EXPECT_EQ(mid.second, v.Right - 1);
    EXPECT_EQ(t->Inside(v.Top).first, t->Inside(v.Top).second);  // the outline row
    const auto nearTop = t->Inside(v.Top + 1);
    EXPECT_EQ(nearTop.first - v.Left, v.Right - nearTop.second);
    if (c.shape == TKxTank::tsCylinder) {
        EXPECT_GT(nearTop.first, v.Left + 5);
    } else {
        EXPECT_EQ(nearTop, mid);
    }
}

INSTANTIATE_TEST_SUITE_P(Tank, TankLayout,
                         ::testing::Values(LayoutCase{TKxTank::tsCylinder, false},
                                           LayoutCase{TKxTank::tsCylinder, true},
                                           LayoutCase{TKxTank::tsRectangular, false},
                                           LayoutCase{TKxTank::tsRectangular, true}));

// --- the level -----------------------------------------------------------------------------

struct LevelCase {
    TKxTank::TTankShape shape;
    float value;
    int32_t position;  // per mille the surface stands at
};

class TankLevel : public ::testing::TestWithParam<LevelCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(TankLevel, SurfaceStandsAtTheReading) {
    const LevelCase c = GetParam();
    auto t = paintedTank([&](TKxTank& k) { k.SetTankShape(c.shape); });
    t->SetValue(c.value);
    const int32_t level = expectedLevel(*t, c.position);
    EXPECT_EQ(t->LastLevel(), level);
    const int32_t x = centreColumn(*t), W = t->Vessel().Width(), col = x - t->Vessel().Left;
    const TBitmap& s = t->Surface();
    // Liquid below the surface band, the empty vessel above it, in their shades.
    if (t->Inside(level + 2).second > t->Inside(level + 2).first) {
        EXPECT_EQ(s.Pixel(x, level + 2), TKxTank::Shade(t->LiquidColor(), col, W));
    }
    if (t->Inside(level - 1).second > t->Inside(level - 1).first) {
        EXPECT_EQ(s.Pixel(x, level - 1), TKxTank::Shade(t->TankColor(), col, W));
    }
    // A reading composes exactly the picture a full paint gives.
    const QImage composed = s.Image().copy();
    t->Invalidate();
    t->PaintToSurface();
    EXPECT_TRUE(composed == t->Surface().Image());
}

const float kInf = std::numeric_limits<float>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Tank, TankLevel,
    ::testing::Values(
        LevelCase{TKxTank::tsCylinder, 0.0f, 0}, LevelCase{TKxTank::tsCylinder, 50.0f, 500},
        LevelCase{TKxTank::tsCylinder, 100.0f, 1000}, LevelCase{TKxTank::tsCylinder, 102.0f, 1020},
        LevelCase{TKxTank::tsCylinder, 500.0f, 1030},  // held by the stop
        LevelCase{TKxTank::tsCylinder, -2.0f, -20}, LevelCase{TKxTank::tsCylinder, kInf, 1030},
        LevelCase{TKxTank::tsCylinder, -kInf, -30}, LevelCase{TKxTank::tsCylinder, FLT_MAX, 1030},
        LevelCase{TKxTank::tsRectangular, 0.0f, 0}, LevelCase{TKxTank::tsRectangular, 50.0f, 500},
        LevelCase{TKxTank::tsRectangular, 100.0f, 1000},
        LevelCase{TKxTank::tsRectangular, 1e30f, 1030},
        LevelCase{TKxTank::tsRectangular, -kInf, -30}));

TEST_F(TankTest, NaNReadingsLeaveTheLevelAlone) {
    auto t = paintedTank();
    t->SetValue(30.0f);
    const int32_t level = t->LastLevel();
    const QImage before = t->Surface().Image().copy();
    t->SetValue(std::nanf(""));
    EXPECT_EQ(t->LastLevel(), level);
    EXPECT_TRUE(before == t->Surface().Image());
}

TEST_F(TankTest, AReadingRepaintsOnlyTheVesselTheMarkersAndTheNumber) {
    for (auto shape : {TKxTank::tsCylinder, TKxTank::tsRectangular}) {
        auto t = paintedTank([&](TKxTank& k) { k.SetTankShape(shape); });
        t->SetValue(40.0f);
        const QImage before = t->Surface().Image().copy();
        t->SetValue(47.0f);
        EXPECT_NE(before, t->Surface().Image());
        EXPECT_EQ(changedOutside(before, t->Surface().Image(),
                                 {t->Vessel(), t->MarkerColumn(), t->ValueBox()}),
                  0);
        // Inside the vessel only the rows between the two levels (and the band) change.
        const int32_t a = std::min(t->LastLevel(), expectedLevel(*t, 400));
        const int32_t b = std::max(t->LastLevel(), expectedLevel(*t, 400)) + 2;
        const TRect v = t->Vessel();
        EXPECT_EQ(changedOutside(before, t->Surface().Image(),
                                 {TRect{v.Left, a, v.Right, b}, t->MarkerColumn(), t->ValueBox()}),
                  0);
    }
}

TEST_F(TankTest, ReadingSequencesMatchFullPaints) {
    const float values[] = {10.0f, 90.0f, 33.0f, 150.0f, -kInf, 61.0f, 5.0f, 95.0f};
    const TankSetup setups[] = {
        nullptr,
        [](TKxTank& t) { t.SetOptions(TKxTank::kAllTankOptions); },  // liquid in sector colours
        [](TKxTank& t) {
            t.SetTankShape(TKxTank::tsRectangular);
            t.ScaleSettings()->SetPosLeftTop(true);
            t.SetValueTop(false);
        },
    };
    for (size_t i = 0; i < std::size(setups); ++i) {
        auto t = paintedTank(setups[i]);
        for (float v : values) {
            t->SetValue(v);
            const QImage composed = t->Surface().Image().copy();
            t->Invalidate();
            t->PaintToSurface();
            EXPECT_TRUE(composed == t->Surface().Image()) << i << " " << v;
        }
        ClearFlashList();
    }
}

TEST_F(TankTest, LiquidTakesTheSectorColourWithOpSector) {
    auto t = paintedTank([](TKxTank& k) { k.SetOptions(TKxTank::kAllTankOptions); });
    const struct {
        float value;
        TColor colour;
    } cases[] = {{10.0f, t->SectorSettings()->Sector1Color()},
                 {50.0f, t->SectorSettings()->Sector2Color()},
                 {90.0f, t->SectorSettings()->Sector3Color()}};
    for (const auto& c : cases) {
        t->SetValue(c.value);
        EXPECT_EQ(t->LiquidShown(), c.colour) << c.value;
        const int32_t x = centreColumn(*t);
        EXPECT_EQ(t->Surface().Pixel(x, t->LevelBottom()),
                  TKxTank::Shade(c.colour, x - t->Vessel().Left, t->Vessel().Width()));
    }
}

// --- limit lines and markers -----------------------------------------------------------------

TEST_F(TankTest, LimitLinesCrossTheVesselInTheirColours) {
    const struct {
        float lower, upper;
        bool lowerShown, upperShown;
    } cases[] = {
        {10.0f, 90.0f, true, true}, {-5.0f, 100.0f, false, true}, {0.0f, 120.0f, true, false}};
    for (const auto& c : cases) {
        auto t = paintedTank([&](TKxTank& k) {
            k.SetLimitLower(c.lower);
            k.SetLimitUpper(c.upper);
        });
        t->SetValue(50.0f);
        const int32_t x = t->Vessel().Left - 1;  // just outside the outline
        const std::pair<int32_t, TColor> lines[] = {{t->LimitLowerPPT(), t->LimitLowerColor()},
                                                    {t->LimitUpperPPT(), t->LimitUpperColor()}};
        const bool shown[] = {c.lowerShown, c.upperShown};
        for (size_t i = 0; i < 2; ++i) {
            const int32_t ppt = std::clamp(lines[i].first, 0, 1000);
            const int32_t y = expectedLevel(*t, ppt);
            EXPECT_EQ(t->Surface().Pixel(x, y) == lines[i].second, shown[i])
                << c.lower << ".." << c.upper << " " << i;
            // Across the liquid as well as the empty part.
            if (shown[i]) {
                EXPECT_EQ(t->Surface().Pixel(centreColumn(*t), y), lines[i].second);
            }
        }
    }
    // Without the option no line; a moved limit repaints.
    auto t = paintedTank([](TKxTank& k) {
        k.SetLimitUpper(90.0f);
        k.SetOptions(TKxTank::kDefaultTankOptions & ~TKxTank::TankOption(TKxTank::opLimitLines));
    });
    EXPECT_NE(t->Surface().Pixel(t->Vessel().Left - 1, expectedLevel(*t, 900)), clRed);
    t->SetOptions(TKxTank::kDefaultTankOptions);
    t->PaintToSurface();
    t->SetRedrawNeeded(false);
    t->SetLimitUpper(80.0f);
    EXPECT_TRUE(t->RedrawNeeded());
}

TEST_F(TankTest, MarkersStandAtTheExtremesPointingAtTheVessel) {
    for (bool leftTop : {false, true}) {
        auto t = paintedTank([&](TKxTank& k) { k.ScaleSettings()->SetPosLeftTop(leftTop); });
        t->SetValue(20.0f);
        t->SetValue(80.0f);
        t->SetValue(50.0f);
        const int32_t T = t->ScaleSettings()->StepLength, k = T / 2;
        const TRect m = t->MarkerColumn();
        const int32_t tip = leftTop ? m.Right - 1 : m.Left, base = leftTop ? tip - T : tip + T;
        const int32_t a = expectedLevel(*t, 200), b = expectedLevel(*t, 800);
        const std::array<TPoint, 6> expected{TPoint{base, a}, TPoint{base, a + k}, TPoint{tip, a},
                                             TPoint{base, b}, TPoint{base, b - k}, TPoint{tip, b}};
        EXPECT_EQ(t->Markers(), expected) << leftTop;
        // Sector colours with UseSectorCol (20 % lies in sector 1, 80 % in sector 3).
        const int32_t inside = leftTop ? base + 2 : base - 2;
        EXPECT_EQ(t->Surface().Pixel(inside, a + 1), t->SectorSettings()->Sector1Color());
        EXPECT_EQ(t->Surface().Pixel(inside, b - 1), t->SectorSettings()->Sector3Color());
        // The bodies reach the surface down (minimum) and up (maximum) to half their height.
        EXPECT_EQ(t->Surface().Pixel(inside, a + k / 2), t->SectorSettings()->Sector1Color());
        EXPECT_EQ(t->Surface().Pixel(inside, b - k / 2), t->SectorSettings()->Sector3Color());
        // A new extreme moves its marker and restores the column where it stood.
        t->SetValue(90.0f);
        EXPECT_EQ(t->Markers()[3].Y, expectedLevel(*t, 900));
        EXPECT_NE(t->Surface().Pixel(inside, b - 1), t->SectorSettings()->Sector3Color());
    }
}

// --- blinking --------------------------------------------------------------------------------

TEST_F(TankTest, OverflowBlinksTheSurfaceBandYellowAndRed) {
    auto t = paintedTank();
    t->SetValue(130.0f);
    EXPECT_TRUE(t->Blinking());
    EXPECT_NE(test::Subscription(t.get()), nullptr);
    const int32_t x = centreColumn(*t), y = t->LastLevel();
    SetFlashTickCounter(15);
    RunFlashTick();
    EXPECT_EQ(t->Surface().Pixel(x, y), clRed);
    EXPECT_EQ(t->Surface().Pixel(x, y + 1), clRed);
    SetFlashTickCounter(31);
    RunFlashTick();
    EXPECT_EQ(t->Surface().Pixel(x, y), clYellow);
    t->SetValue(50.0f);
    EXPECT_FALSE(t->Blinking());
    EXPECT_EQ(test::Subscription(t.get()), nullptr);
    const QImage stopped = t->Surface().Image().copy();
    t->Invalidate();
    t->PaintToSurface();
    EXPECT_TRUE(stopped == t->Surface().Image());
}

TEST_F(TankTest, BlinkingFollowsOptionsLimitsAndDesignTime) {
    const struct {
        const char* what;
        uint16_t options;
        float value;
        bool designing, blinks;
    } cases[] = {
        {"overflow", TKxTank::kDefaultTankOptions, 130.0f, false, true},
        {"underflow", TKxTank::kDefaultTankOptions, -1.0f, false, true},
        {"no opOverflow",
         TKxTank::kDefaultTankOptions & ~TKxTank::TankOption(TKxTank::opOverflow) &
             ~TKxTank::TankOption(TKxTank::opLimit),
         130.0f, false, false},
        {"limit", TKxTank::kDefaultTankOptions, 95.0f, false, true},
        {"limit without opLimit",
         TKxTank::kDefaultTankOptions & ~TKxTank::TankOption(TKxTank::opLimit), 95.0f, false,
         false},
        {"in range", TKxTank::kDefaultTankOptions, 50.0f, false, false},
        {"design time", TKxTank::kDefaultTankOptions, 130.0f, true, false},
    };
    for (const auto& c : cases) {
        TKxTank t;
        t.SetOptions(c.options);
        t.SetDesigning(c.designing);
        t.Loaded();
        t.PaintToSurface();
        t.SetValue(c.value);
        t.PaintToSurface();
        EXPECT_EQ(t.Blinking(), c.blinks) << c.what;
        EXPECT_EQ(test::Subscription(&t) != nullptr, c.blinks) << c.what;
        t.SetOptions(0);  // clearing the options stops it
        EXPECT_FALSE(t.Blinking()) << c.what;
        ClearFlashList();
    }
}

// --- sizes and bad input ---------------------------------------------------------------------

TEST_F(TankTest, SizesFromOnePixelToHugeStayInside) {
    const struct {
        int32_t w, h;
        bool small;
    } cases[] = {{1, 1, true},      {30, 40, true},    {50, 50, true},    {60, 90, false},
                 {140, 240, false}, {400, 120, false}, {60, 1000, false}, {4000, 4000, false}};
    const float values[] = {std::nanf(""), kInf, -kInf, FLT_MAX, 0.0f, 1030.0f};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.w << "x" << c.h);
        TKxTank t;
        t.SetBounds(0, 0, c.w, c.h);
        t.Loaded();
        t.PaintToSurface();
        EXPECT_EQ(t.TooSmall(), c.small);
        for (float v : values)
            t.SetValue(v);
        EXPECT_EQ(t.Blinking(), !c.small);
        if (c.small) continue;
        const TRect v = t.Vessel(), a = t.Area();
        EXPECT_GE(v.Left, a.Left);
        EXPECT_LE(v.Right, a.Right);
        EXPECT_GE(v.Top, a.Top);
        EXPECT_LE(v.Bottom, a.Bottom);
        EXPECT_LE(t.MarkerColumn().Right, a.Right);
        EXPECT_GE(t.LastLevel(), v.Top + 1);
        EXPECT_LE(t.LastLevel(), v.Bottom - 1);
        ClearFlashList();
    }
}

TEST_F(TankTest, NegativeBevelSpacingsKeepTheVesselInsideTheControl) {
    const int32_t kMin = std::numeric_limits<int32_t>::min();
    // One int32-minimum spacing turns the rectangle inside out (nothing to draw in); two
    // wrap it round once more.
    const struct {
        int32_t outer, inner;
        bool tooSmall;
    } cases[] = {{kMin, 5, true}, {5, kMin, true}, {-40, -40, false}, {kMin, kMin, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.outer << " / " << c.inner);
        const auto t = paintedTank([&](TKxTank& k) {
            k.SetBounds(0, 0, 140, 240);
            k.BevelOuter()->SetSpacing(c.outer);
            k.BevelInner()->SetSpacing(c.inner);
        });
        EXPECT_EQ(t->TooSmall(), c.tooSmall);
        t->SetValue(50.0f);
        if (c.tooSmall) continue;
        const TRect a = t->Area(), v = t->Vessel(), client = t->ClientRect();
        EXPECT_TRUE(a.Left >= 0 && a.Top >= 0 && a.Right <= client.Right &&
                    a.Bottom <= client.Bottom);
        EXPECT_TRUE(v.Left >= a.Left && v.Top >= a.Top && v.Right <= a.Right &&
                    v.Bottom <= a.Bottom);
        EXPECT_EQ(t->LastLevel(), expectedLevel(*t, 500));
    }
}

TEST_F(TankTest, ExtremeRangesDrawWithoutHarm) {
    const TankSetup ranges[] = {
        [](TKxTank& t) { t.SignalSettings()->SetValueTo(0.0f); },  // empty
        [](TKxTank& t) {
            t.SignalSettings()->SetValueFrom(100.0f);  // descending
            t.SignalSettings()->SetValueTo(-100.0f);
        },
        [](TKxTank& t) {
            t.SignalSettings()->SetValueFrom(-FLT_MAX);
            t.SignalSettings()->SetValueTo(FLT_MAX);
        },
        [](TKxTank& t) {
            t.SignalSettings()->SetValueFrom(1e-3f);
            t.SetLogScale(true);
        },
    };
    const float values[] = {std::nanf(""), kInf, -kInf, FLT_MAX, -FLT_MAX, 0.0f, 1.0f};
    for (size_t i = 0; i < std::size(ranges); ++i) {
        auto t = paintedTank(ranges[i]);
        for (float v : values) {
            t->SetValue(v);
            EXPECT_GE(t->PointerPosition(), -30) << i;
            EXPECT_LE(t->PointerPosition(), 1030) << i;
            EXPECT_EQ(t->LastLevel(), expectedLevel(*t, t->PointerPosition())) << i << " " << v;
        }
        ClearFlashList();
    }
}

TEST_F(TankTest, ReadoutRowAboveOrBelowAndLeftOutWhenItDoesNotFit) {
    auto top = paintedTank();
    ASSERT_GT(top->ValueBox().Width(), 0);
    EXPECT_LT(top->ValueBox().Bottom, top->Area().Top);
    auto below = paintedTank([](TKxTank& t) { t.SetValueTop(false); });
    EXPECT_GT(below->ValueBox().Top, below->Area().Bottom);
    auto narrow = paintedTank([](TKxTank& t) { t.SetBounds(0, 0, 60, 240); });
    EXPECT_EQ(narrow->ValueBox().Width(), 0);
    EXPECT_FALSE(narrow->TooSmall());
    // The number follows the reading.
    top->SetValue(12.5f);
    const QImage a = top->Surface().Image().copy();
    top->SetValue(88.5f);
    const TRect box = top->ValueBox();
    EXPECT_GT(changedOutside(a, top->Surface().Image(),
                             {TRect{0, 0, top->width(), box.Top},
                              TRect{0, box.Bottom, top->width(), top->height()}}),
              10);
}

TEST_F(TankTest, ReadoutRowFitsUpToItsExactWidthAndAThirdOfTheHeight) {
    // The unit alone: the row is as wide and as high as its text.
    const QString unit = QStringLiteral("m3 of fuel oil");
    int32_t w = 0, h = 0;
    {
        TKxTank probe;
        TBitmap b;
        b.SetSize(8, 8);
        b.Canvas().SetFont(*probe.Font());
        w = b.Canvas().TextWidth(unit);
        h = b.Canvas().TextHeight(unit);
    }
    ASSERT_GT(w, 20);
    ASSERT_GT(h, 5);
    const struct {
        int32_t width, height;
        bool fits;
    } cases[] = {
        {w, 240, true}, {w - 1, 240, false}, {w + 40, 3 * h, true}, {w + 40, 3 * h - 1, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height);
        auto t = paintedTank([&](TKxTank& k) {
            k.SetOptions(TKxTank::TankOption(TKxTank::opUnit));
            k.SignalSettings()->SetValueUnit(unit);
            k.SetBounds(0, 0, c.width, c.height);
        });
        // A row that fits takes the top and its gap of 3 from the instrument area.
        EXPECT_EQ(t->Area().Top, c.fits ? h + 3 : 0);
    }
}

TEST_F(TankTest, ShrinkingBelowTheMinimumDropsTheCaches) {
    auto t = paintedTank();
    t->SetValue(40.0f);
    ASSERT_GT(t->Background().Width(), 0);
    ASSERT_GT(t->FullVessel().Width(), 0);
    t->SetBounds(0, 0, 40, 40);
    t->PaintToSurface();
    ASSERT_TRUE(t->TooSmall());
    EXPECT_EQ(t->Background().Width(), 0);
    EXPECT_EQ(t->FullVessel().Width(), 0);
    // Grown again, it composes readings as before.
    t->SetBounds(0, 0, 140, 240);
    t->PaintToSurface();
    t->SetValue(70.0f);
    EXPECT_EQ(t->LastLevel(), expectedLevel(*t, 700));
}

TEST_F(TankTest, SettingsSettersCopyTheirSourceAndIgnoreNull) {
    TKxTank source;
    source.BevelInner()->SetWidth(4);
    source.BevelOuter()->SetWidth(5);
    source.ScaleSettings()->SetSteps(7);
    source.ValInd()->SetColor(clNavy);
    using Set = std::function<void(TKxTank&, const TKxTank*)>;
    using Copied = std::function<bool(const TKxTank&)>;
    const struct {
        const char* what;
        Set set;
        Copied copied;
    } cases[] = {
        {"BevelInner",
         [](TKxTank& t, const TKxTank* s) { t.SetBevelInner(s ? s->BevelInner() : nullptr); },
         [](const TKxTank& t) { return t.BevelInner()->Width() == 4; }},
        {"BevelOuter",
         [](TKxTank& t, const TKxTank* s) { t.SetBevelOuter(s ? s->BevelOuter() : nullptr); },
         [](const TKxTank& t) { return t.BevelOuter()->Width() == 5; }},
        {"ScaleSettings",
         [](TKxTank& t, const TKxTank* s) { t.SetScaleSettings(s ? s->ScaleSettings() : nullptr); },
         [](const TKxTank& t) { return t.ScaleSettings()->Steps() == 7; }},
        {"ValInd", [](TKxTank& t, const TKxTank* s) { t.SetValInd(s ? s->ValInd() : nullptr); },
         [](const TKxTank& t) { return t.ValInd()->Color() == clNavy; }},
    };
    for (const auto& c : cases) {
        TKxTank t;
        EXPECT_NO_THROW(c.set(t, nullptr)) << c.what;
        EXPECT_FALSE(c.copied(t)) << c.what;
        c.set(t, &source);
        EXPECT_TRUE(c.copied(t)) << c.what;
    }
}

TEST_F(TankTest, SettingsChangesRepaintOnceLoaded) {
    const std::pair<const char*, TankSetup> cases[] = {
        {"ScaleSettings", [](TKxTank& t) { t.ScaleSettings()->SetSteps(4); }},
        {"BevelInner", [](TKxTank& t) { t.BevelInner()->SetWidth(3); }},
        {"BevelOuter", [](TKxTank& t) { t.BevelOuter()->SetWidth(3); }},
        {"ValInd", [](TKxTank& t) { t.ValInd()->SetColor(clNavy); }},
        {"ValInd font", [](TKxTank& t) { t.ValInd()->Font()->SetSize(14); }},
        {"Options", [](TKxTank& t) { t.SetOptions(1); }},
        {"LiquidColor", [](TKxTank& t) { t.SetLiquidColor(clGreen); }},
        {"TankColor", [](TKxTank& t) { t.SetTankColor(clGray); }},
        {"LimitUpperColor", [](TKxTank& t) { t.SetLimitUpperColor(clBlue); }},
        {"LimitLowerColor", [](TKxTank& t) { t.SetLimitLowerColor(clBlue); }},
        {"TankShape", [](TKxTank& t) { t.SetTankShape(TKxTank::tsRectangular); }},
        {"ValueTop", [](TKxTank& t) { t.SetValueTop(false); }},
        {"LogScale", [](TKxTank& t) { t.SetLogScale(true); }},
    };
    for (const auto& [what, touch] : cases) {
        auto t = paintedTank();
        t->SetRedrawNeeded(false);
        touch(*t);
        EXPECT_TRUE(t->RedrawNeeded()) << what;
    }
}

TEST_F(TankTest, TheVesselIsOutlinedInItsColourDarkenedToTwoFifths) {
    const struct {
        TColor tank;
        TColor outline;
    } cases[] = {
        {clSilver, RGB(77, 77, 77)},  // 192 x 0.4 = 76.8
        {RGB(200, 100, 10), RGB(80, 40, 4)},
        {clWhite, RGB(102, 102, 102)},
    };
    for (const auto& c : cases) {
        auto t = paintedTank([&](TKxTank& k) { k.SetTankColor(c.tank); });
        const TRect v = t->Vessel();
        const int32_t mid = (t->LevelTop() + t->LevelBottom()) / 2;
        EXPECT_EQ(t->Surface().Pixel(v.Left, mid), c.outline) << c.tank;
        EXPECT_EQ(t->Surface().Pixel(v.Right - 1, mid), c.outline) << c.tank;
        EXPECT_NE(t->Surface().Pixel(v.Left + 1, mid), c.outline) << c.tank;
    }
}

TEST_F(TankTest, ShadeIsDarkAtTheEdgesAndBrightLeftOfCentre) {
    const TColor base = RGB(100, 100, 100);
    const int32_t W = 100;
    auto level = [&](int32_t x) { return int(GetRValue(TKxTank::Shade(base, x, W))); };
    EXPECT_LT(level(0), 60);
    EXPECT_LT(level(W - 1), 60);
    int brightest = 0;
    for (int32_t x = 1; x < W; ++x)
        if (level(x) > level(brightest)) brightest = x;
    EXPECT_GE(brightest, 30);
    EXPECT_LT(brightest, 45);
    EXPECT_GT(level(brightest), 150);
}

TEST_F(TankTest, ShadeOfSingleAndEmptyColumns) {
    const TColor grey = RGB(100, 100, 100);
    const struct {
        TColor base;
        int32_t x, width;
        TColor expected;
    } cases[] = {
        // One column is the middle of a cylinder (both at t = 0.5): lit, not plain.
        {grey, 0, 1, TKxTank::Shade(grey, 50, 101)},
        {grey, 0, 1, RGB(118, 118, 118)},  // 100 + 155 x 0.55 e^-1.5625
        // No width: the plain colour, a system colour resolved.
        {grey, 0, 0, grey},
        {grey, 3, -4, grey},
        {clBtnFace, 0, 0, ColorToRGB(clBtnFace)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(TKxTank::Shade(c.base, c.x, c.width), c.expected)
            << c.base << " " << c.x << "/" << c.width;
}

TEST_F(TankTest, HighDpiReadingsMatchFullPaints) {
    for (double ratio : {1.5, 2.0}) {
        test::AtRatio<TKxTank> t(ratio);
        t.SetLimitUpper(1e6f);
        t.Loaded();
        t.PaintToSurface();
        for (const float v : {10.0f, 47.0f, 83.0f, 52.0f}) {
            t.SetValue(v);
            const QImage composed = t.Surface().Image().copy();
            t.Invalidate();
            t.PaintToSurface();
            EXPECT_TRUE(composed == t.Surface().Image()) << ratio << " " << v;
        }
    }
}

}  // namespace
}  // namespace kx
