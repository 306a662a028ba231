// Flex meters: geometry of pointer and ticks, layouts from 1 x 1 to 4000 x 4000, the
// order in which parts give way, label spacing, bad readings, blinking and what a reading
// repaints.
#include <gtest/gtest.h>

#include <algorithm>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <set>
#include <vector>

#include "common/flash_util.h"
#include "kx/blink/flashtimer.h"
#include "kx/host/numeric.h"
#include "kx/indicators/flexmeter.h"

namespace kx {
namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();

class FlexMeterTest : public ::testing::Test {
  protected:
    void TearDown() override {
        ClearFlashList();
        SetFlashTickCounter(0);
    }
};

std::unique_ptr<TKxFlexMeter> makeMeter(bool upright, int w, int h) {
    std::unique_ptr<TKxFlexMeter> m;
    if (upright)
        m = std::make_unique<TKxFlexVMeter>();
    else
        m = std::make_unique<TKxFlexHMeter>();
    m->SetBounds(0, 0, w, h);
    m->Loaded();
    return m;
}

bool inside(const TRect& outer, const TRect& r) {
    return r.Left >= outer.Left && r.Top >= outer.Top && r.Right <= outer.Right &&
           r.Bottom <= outer.Bottom;
}

int changedOutside(const QImage& a, const QImage& b, std::initializer_list<TRect> areas) {
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            bool in = false;
            for (const TRect& r : areas)
                in = in || (x >= r.Left && x < r.Right && y >= r.Top && y < r.Bottom);
            if (!in && a.pixel(x, y) != b.pixel(x, y)) ++n;
        }
    return n;
}

// The pointer's tip (H: x, V: y) in control pixels.
int32_t tip(const TKxFlexMeter& m, bool upright) {
    return upright ? m.Pointer()[2].Y : m.Pointer()[2].X;
}

TColor pointerFill(const TKxFlexMeter& m) {
    const auto& p = m.Pointer();
    return m.Surface().Pixel((p[0].X + p[1].X + p[2].X) / 3, (p[0].Y + p[1].Y + p[2].Y) / 3);
}

// --- pointer geometry ------------------------------------------------------------------------

struct PosCase {
    float value;
    int32_t position;  // per mille along the scale, after the stops
};

class FlexPointer : public ::testing::TestWithParam<std::tuple<bool, PosCase>> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(FlexPointer, TipStandsOnTheScaleAtThePosition) {
    const auto [upright, c] = GetParam();
    auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
    m->SetLimitLower(-1e30f);  // no limit blink: the pointer keeps its colour
    m->SetLimitUpper(1e30f);
    m->PaintToSurface();
    m->SetValue(c.value);
    const int32_t s = m->ScaleStart(), e = m->ScaleEnd();
    const float f = float(double(e - s) / 1000.0);
    EXPECT_EQ(tip(*m, upright), s + Round(double(f) * c.position));
    // The tip touches the base line; the triangle is T deep and T wide.
    const auto& p = m->Pointer();
    const int32_t T = m->TickLength(), k = T / 2;
    if (!upright) {
        EXPECT_EQ(p[2].Y, m->BaseLine());
        EXPECT_EQ(p[0].Y, m->BaseLine() - T);
        EXPECT_EQ(p[1].X - p[0].X, 2 * k);
    } else {
        EXPECT_EQ(p[2].X, m->BaseLine());
        EXPECT_EQ(p[0].X, m->BaseLine() - T);
        EXPECT_EQ(p[1].Y - p[0].Y, 2 * k);
    }
    // The pointer is drawn in its colour where it stands inside the area.
    if (c.position >= 0 && c.position <= 1000) {
        EXPECT_EQ(pointerFill(*m), m->PointerColor());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Positions, FlexPointer,
    ::testing::Combine(::testing::Bool(),
                       ::testing::Values(PosCase{0, 0}, PosCase{50, 500}, PosCase{100, 1000},
                                         PosCase{101, 1010}, PosCase{250, 1030}, PosCase{-2, -20},
                                         PosCase{-1e9f, -30}, PosCase{kInf, 1030},
                                         PosCase{-kInf, -30})));

TEST_F(FlexMeterTest, EndTicksStandAtTheScaleEndsAndStepsAreEven) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
        m->PaintToSurface();
        std::vector<TKxFlexMeter::TTick> steps;
        for (const auto& t : m->Ticks())
            if (t.Step) steps.push_back(t);
        ASSERT_GE(steps.size(), 3u);
        EXPECT_EQ(steps.front().Pos, m->ScaleStart());
        EXPECT_EQ(steps.back().Pos, m->ScaleEnd());
        EXPECT_EQ(steps.front().Label, QStringLiteral("0"));
        EXPECT_EQ(steps.back().Label, QStringLiteral("100"));
        const double pitch = double(m->ScaleEnd() - m->ScaleStart()) / (steps.size() - 1);
        for (size_t i = 0; i < steps.size(); ++i)
            EXPECT_NEAR(steps[i].Pos, m->ScaleStart() + pitch * i, 0.5);
    }
}

// --- layouts at every size -------------------------------------------------------------------

struct LayoutCase {
    bool upright;
    int w, h;
    bool tooSmall, ticks, labels;
};

class FlexLayout : public ::testing::TestWithParam<LayoutCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(FlexLayout, PartsFitTheControlAndLabelsNeverOverlap) {
    const LayoutCase& c = GetParam();
    auto m = makeMeter(c.upright, c.w, c.h);
    m->PaintToSurface();
    m->SetValue(75);
    EXPECT_EQ(m->TooSmall(), c.tooSmall);
    EXPECT_EQ(m->ShowsTicks(), c.ticks);
    EXPECT_EQ(m->LabelHeight() > 0, c.labels);
    const TRect client = m->ClientRect();
    EXPECT_TRUE(inside(client, m->HeaderRect()));
    if (m->TooSmall()) return;
    const TRect a = m->PointerArea();
    EXPECT_TRUE(inside(client, a));
    EXPECT_TRUE(inside(a, m->PointerStrip()));
    if (m->LabelHeight() > 0) {
        EXPECT_GE(m->LabelHeight(), TKxFlexMeter::kMinLabel);
    }
    int32_t last = INT32_MIN;
    for (const auto& t : m->Ticks()) {
        // Along: within the scale; labelled steps at least a label extent apart.
        const int32_t along = c.upright ? -t.Pos : t.Pos;
        EXPECT_GE(along, c.upright ? -m->ScaleStart() : m->ScaleStart());
        EXPECT_LE(along, c.upright ? -m->ScaleEnd() : m->ScaleEnd());
        if (!t.Labelled) continue;
        if (last != INT32_MIN) {
            EXPECT_GT(along - last, c.upright ? m->LabelHeight() : m->LabelWidth())
                << t.Label.toStdString();
        }
        last = along;
    }
    // Across: pointer, ticks and labels inside the area.
    const int32_t T = m->TickLength();
    const int64_t labelsEnd = int64_t(m->BaseLine()) + T + (m->LabelHeight() > 0 ? 1 : 0) +
                              (c.upright ? m->LabelWidth() : m->LabelHeight());
    if (m->ShowsTicks()) {
        EXPECT_LE(labelsEnd, c.upright ? a.Right : a.Bottom);
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, FlexLayout,
                         ::testing::Values(LayoutCase{false, 1, 1, true, false, false},
                                           LayoutCase{true, 1, 1, true, false, false},
                                           LayoutCase{false, 40, 20, true, false, false},
                                           LayoutCase{true, 20, 40, true, false, false},
                                           LayoutCase{false, 120, 60, false, true, false},
                                           LayoutCase{true, 60, 120, false, true, false},
                                           LayoutCase{false, 300, 150, false, true, true},
                                           LayoutCase{true, 150, 300, false, true, true},
                                           LayoutCase{false, 2000, 400, false, true, true},
                                           LayoutCase{true, 400, 2000, false, true, true},
                                           LayoutCase{false, 4000, 4000, false, true, true},
                                           LayoutCase{true, 4000, 4000, false, true, true},
                                           LayoutCase{false, 4000, 60, false, true, false},
                                           LayoutCase{false, 60, 4000, false, true, false},
                                           LayoutCase{true, 4000, 60, false, true, true}));

// As the band shrinks, the parts go in a fixed order and never come back at a smaller
// size: labels, then sub-ticks, then ticks, then everything.
TEST_F(FlexMeterTest, PartsGiveWayInOrderAsTheMeterShrinks) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        int tier = 4;  // 4 labels, 3 sub-ticks, 2 ticks, 1 pointer only, 0 too small
        for (int across = 200; across >= 1; across -= 3) {
            auto m = upright ? makeMeter(true, across, 400) : makeMeter(false, 600, across);
            m->SetOptions(0);  // no bevels, names or header: the band is the control
            m->PaintToSurface();
            const int now = m->TooSmall()           ? 0
                            : !m->ShowsTicks()      ? 1
                            : !m->ShowsSubTicks()   ? 2
                            : m->LabelHeight() == 0 ? 3
                                                    : 4;
            EXPECT_LE(now, tier) << across;
            tier = now;
            if (across < TKxFlexMeter::kMinBand) {
                EXPECT_EQ(now, 0) << across;
            }
            if (across >= TKxFlexMeter::kSubTickBand) {
                EXPECT_GE(now, 3) << across;
            }
        }
        EXPECT_EQ(tier, 0);
    }
}

TEST_F(FlexMeterTest, HeaderAndNamesYieldToTheInstrument) {
    struct Case {
        int h;
        bool value, unit, names;
    };
    for (const Case c : {Case{150, true, true, true}, Case{90, false, false, true},
                         Case{60, false, false, false}}) {
        auto m = makeMeter(false, 300, c.h);
        m->PaintToSurface();
        EXPECT_EQ(m->ShowsValue(), c.value) << c.h;
        EXPECT_EQ(m->ShowsUnit(), c.unit) << c.h;
        EXPECT_EQ(m->ShowsNames(), c.names) << c.h;
        EXPECT_FALSE(m->TooSmall()) << c.h;
    }
}

// --- steps -----------------------------------------------------------------------------------

struct StepCase {
    float from, to;
    float subStepAt;
    int32_t stepMulti;
    bool log;
    double step;
    int32_t labelEvery;
};

class FlexSteps : public ::testing::TestWithParam<StepCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(FlexSteps, StepsFollowTheSeriesOrTheScaleSettings) {
    const StepCase& c = GetParam();
    auto m = makeMeter(false, 600, 150);
    if (c.log) m->SetLogScale(true);
    m->SignalSettings()->SetValueTo(c.to);
    m->SignalSettings()->SetValueFrom(c.from);
    if (c.subStepAt > 0) m->Scale()->SetSubStepAt(c.subStepAt);
    m->Scale()->SetStepMulti(c.stepMulti);
    m->PaintToSurface();
    EXPECT_DOUBLE_EQ(m->StepValue(), c.step);
    EXPECT_EQ(m->LabelEvery(), c.labelEvery);
    // Sub-ticks stand between the steps, never on them.
    std::set<int32_t> stepsAt;
    for (const auto& t : m->Ticks())
        if (t.Step) stepsAt.insert(t.Pos);
    for (const auto& t : m->Ticks())
        if (!t.Step) {
            EXPECT_EQ(stepsAt.count(t.Pos), 0u) << t.Pos;
        }
}

INSTANTIATE_TEST_SUITE_P(
    Scales, FlexSteps,
    ::testing::Values(StepCase{0, 100, 0, 1, false, 10, 1}, StepCase{-1, 1, 0, 1, false, 0.2, 1},
                      StepCase{-273.15f, 1234.5f, 0, 1, false, 200, 1},
                      StepCase{0, 1e6f, 0, 1, false, 500000, 1},
                      StepCase{0, 100, 5, 2, false, 10, 1}, StepCase{0, 100, 1, 2, false, 2, 5},
                      StepCase{0, 100, 0.001f, 1, false, 10, 1},  // too fine: automatic
                      StepCase{0.001f, 1e6f, 0, 1, true, 10, 2},
                      StepCase{1e-30f, 1e30f, 0, 1, true, 10, 20}));

TEST_F(FlexMeterTest, SubTicksNeedSubStepsVisPixels) {
    auto m = makeMeter(false, 600, 150);
    m->PaintToSurface();
    const auto count = [&] {
        return std::count_if(m->Ticks().begin(), m->Ticks().end(),
                             [](const auto& t) { return !t.Step; });
    };
    ASSERT_GT(count(), 0);
    m->Scale()->SetSubStepsVis(1000);
    m->PaintToSurface();
    EXPECT_EQ(count(), 0);
}

// --- settings ------------------------------------------------------------------------------

// A loaded meter with a unit and a name, painted once.
std::unique_ptr<TKxFlexMeter> painted(bool upright = false) {
    std::unique_ptr<TKxFlexMeter> m;
    if (upright)
        m = std::make_unique<TKxFlexVMeter>();
    else
        m = std::make_unique<TKxFlexHMeter>();
    m->SignalSettings()->SetValueUnit(QStringLiteral("bar"));
    m->SignalSettings()->SetName1(QStringLiteral("Flow"));
    m->Loaded();
    m->PaintToSurface();
    return m;
}

struct SettingCase {
    const char* name;
    std::function<void(TKxFlexMeter&)> change;
};
class FlexSetting : public ::testing::TestWithParam<SettingCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

// A loaded meter shows a settings change at the next update, without being asked to.
TEST_P(FlexSetting, RepaintsTheMeter) {
    auto m = painted();
    const QImage before = m->Surface().Image().copy();
    GetParam().change(*m);
    m->PaintToSurface();
    EXPECT_NE(before, m->Surface().Image());
}

INSTANTIATE_TEST_SUITE_P(
    Changes, FlexSetting,
    ::testing::Values(
        SettingCase{"BevelInner", [](TKxFlexMeter& m) { m.BevelInner()->SetColor(clNavy); }},
        SettingCase{"BevelOuter", [](TKxFlexMeter& m) { m.BevelOuter()->SetColor(clNavy); }},
        SettingCase{"ScaleFont", [](TKxFlexMeter& m) { m.Scale()->Font()->SetColor(clRed); }},
        SettingCase{"ScaleFormat",
                    [](TKxFlexMeter& m) { m.Scale()->SetFormatStr(QStringLiteral("0.00")); }},
        SettingCase{"FontUnit", [](TKxFlexMeter& m) { m.FontUnit()->SetColor(clRed); }},
        SettingCase{"ValInd", [](TKxFlexMeter& m) { m.ValInd()->SetColor(clNavy); }},
        SettingCase{"PointerColor", [](TKxFlexMeter& m) { m.SetPointerColor(clRed); }},
        SettingCase{"Options",
                    [](TKxFlexMeter& m) {
                        m.SetOptions(TKxFlexMeter::kAllFlexOptions &
                                     ~TKxFlexMeter::FlexOption(TKxFlexMeter::opUnit));
                    }},
        SettingCase{"SetBevelInner",
                    [](TKxFlexMeter& m) {
                        TKxSBevel b;
                        b.Assign(m.BevelInner());
                        b.SetColor(clNavy);
                        m.SetBevelInner(&b);
                        EXPECT_EQ(m.BevelInner()->Color(), clNavy);
                    }},
        SettingCase{"SetScale",
                    [](TKxFlexMeter& m) {
                        TKxFlexScale s;
                        s.Assign(m.Scale());
                        s.SetFormatStr(QStringLiteral("0.00"));
                        m.SetScale(&s);
                        EXPECT_EQ(m.Scale()->FormatStr(), QStringLiteral("0.00"));
                    }},
        SettingCase{"SetFontUnit",
                    [](TKxFlexMeter& m) {
                        TFont f;
                        f.Assign(*m.FontUnit());
                        f.SetColor(clRed);
                        m.SetFontUnit(&f);
                        EXPECT_EQ(m.FontUnit()->Color(), clRed);
                    }},
        SettingCase{"SetValInd",
                    [](TKxFlexMeter& m) {
                        TKxValInd v;
                        v.Assign(m.ValInd());
                        v.SetColor(clNavy);
                        m.SetValInd(&v);
                        EXPECT_EQ(m.ValInd()->Color(), clNavy);
                    }}),
    [](const ::testing::TestParamInfo<SettingCase>& i) { return std::string(i.param.name); });

TEST_F(FlexMeterTest, NullSettingsAreIgnored) {
    const std::function<void(TKxFlexMeter&)> setters[] = {
        [](TKxFlexMeter& m) { m.SetBevelInner(nullptr); },
        [](TKxFlexMeter& m) { m.SetBevelOuter(nullptr); },
        [](TKxFlexMeter& m) { m.SetScale(nullptr); },
        [](TKxFlexMeter& m) { m.SetFontUnit(nullptr); },
        [](TKxFlexMeter& m) { m.SetValInd(nullptr); },
    };
    for (const auto& set : setters) {
        auto m = painted();
        const QImage before = m->Surface().Image().copy();
        const QString format = m->Scale()->FormatStr();
        EXPECT_NO_THROW(set(*m));
        m->PaintToSurface();
        EXPECT_TRUE(before == m->Surface().Image());
        EXPECT_EQ(m->Scale()->FormatStr(), format);
    }
}

// --- header and names ----------------------------------------------------------------------

// The bounding box of the pixels within r that ink() accepts (empty when there are none).
TRect inkBox(const TBitmap& b, const TRect& r, const std::function<bool(TColor)>& ink) {
    TRect box{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    for (int32_t y = r.Top; y < r.Bottom; ++y)
        for (int32_t x = r.Left; x < r.Right; ++x)
            if (ink(b.Pixel(x, y))) {
                box.Left = std::min(box.Left, x);
                box.Top = std::min(box.Top, y);
                box.Right = std::max(box.Right, x + 1);
                box.Bottom = std::max(box.Bottom, y + 1);
            }
    return box.Left == INT32_MAX ? TRect{} : box;
}
TRect inkBox(const TKxFlexMeter& m, const TRect& r, TColor col) {
    return inkBox(m.Surface(), r, [col](TColor c) { return c == col; });
}

// Any noticeably red pixel, smoothed text edges included.
bool reddish(TColor c) {
    return (c & 0xFF) > ((c >> 8) & 0xFF) + 60 && (c & 0xFF) > ((c >> 16) & 0xFF) + 60;
}

TEST_F(FlexMeterTest, TheUnitStandsRightOfTheValueBox) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = painted(upright);
        m->FontUnit()->SetColor(clRed);
        m->PaintToSurface();
        ASSERT_TRUE(m->ShowsValue() && m->ShowsUnit());
        const TRect box = m->ValInd()->BoxRect(), h = m->HeaderRect();
        const TRect unit = inkBox(*m, h, clRed);
        ASSERT_FALSE(unit.Left >= unit.Right);
        EXPECT_GE(unit.Left, box.Right);
        // The pair is centred: the unit ends as far from the right as the box starts left.
        EXPECT_NEAR(h.Right - unit.Right, box.Left - h.Left, 4);
    }
}

TEST_F(FlexMeterTest, WithoutTheOuterBevelTheNameSitsOnTheBottomEdge) {
    const QString name = QStringLiteral("Flow");
    // Where the name's ink starts below the top of its line.
    TBitmap line;
    line.SetSize(200, 60);
    line.Canvas().Brush().SetColor(clWhite);
    line.Canvas().FillRect(TRect{0, 0, 200, 60});
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = makeMeter(upright, 300, 300);
        m->SignalSettings()->SetName2(name);
        m->Font()->SetColor(clRed);
        m->SetOptions(TKxFlexMeter::FlexOption(TKxFlexMeter::opName2));
        m->PaintToSurface();
        ASSERT_TRUE(m->ShowsNames());
        line.Canvas().SetFont(*m->Font());
        line.Canvas().Brush().SetStyle(bsClear);
        line.Canvas().TextOut(0, 0, name);
        const TRect inLine = inkBox(line, TRect{0, 0, 200, 60}, reddish);
        ASSERT_LT(inLine.Top, inLine.Bottom);
        const TRect client = m->ClientRect();
        const TRect ink = inkBox(m->Surface(), client, reddish);
        EXPECT_EQ(ink.Top, client.Bottom - line.Canvas().TextHeight(name) + inLine.Top);
        EXPECT_EQ(ink.Bottom, client.Bottom - line.Canvas().TextHeight(name) + inLine.Bottom);
    }
}

// --- scale parts ---------------------------------------------------------------------------

TEST_F(FlexMeterTest, SectorBandsRunAlongTheBaseLineOnTheTicksSide) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
        TSectorSettings& s = *m->SectorSettings();
        s.SetSector1From(0), s.SetSector1To(1000);
        s.SetSector2From(2000), s.SetSector2To(2000);
        s.SetSector3From(2000), s.SetSector3To(2000);
        s.SetSector1Color(clFuchsia);
        m->Scale()->StepLines()->SetVisible(false);
        m->Scale()->SubStepLines()->SetVisible(false);
        m->PaintToSurface();
        ASSERT_TRUE(m->ShowsTicks());
        // A quarter along (the markers stand halfway), from the base line into the tick
        // zone: BandHeight() deep as a pen-less rectangle, one pixel less below.
        const int32_t mid = (3 * m->ScaleStart() + m->ScaleEnd()) / 4, b = m->BandHeight();
        auto at = [&](int32_t across) {
            return upright ? m->Surface().Pixel(across, mid) : m->Surface().Pixel(mid, across);
        };
        EXPECT_EQ(at(m->BaseLine() + 1), clFuchsia);
        EXPECT_EQ(at(m->BaseLine() + b - 1), clFuchsia);
        EXPECT_NE(at(m->BaseLine() + b), clFuchsia);
        EXPECT_NE(at(m->BaseLine() - 1), clFuchsia);
    }
}

struct LabelPlaceCase {
    bool upright;
    int32_t offsetX, offsetY;
};
class FlexLabelPlace : public ::testing::TestWithParam<LabelPlaceCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

// Centred labels stand on their ticks (H: centred along, V: centred across their tick),
// moved by the text offsets.
TEST_P(FlexLabelPlace, CentredLabelsStandOnTheirTicksMovedByTheOffsets) {
    const LabelPlaceCase& c = GetParam();
    auto m = c.upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
    m->SetOptions(TKxFlexMeter::kAllFlexOptions &
                  ~TKxFlexMeter::FlexOption(TKxFlexMeter::opSector));
    m->Scale()->Font()->SetColor(clRed);
    m->Scale()->SetTextOffsetX(c.offsetX);
    m->Scale()->SetTextOffsetY(c.offsetY);
    m->PaintToSurface();
    ASSERT_GT(m->LabelHeight(), 0);
    const TRect a = m->PointerArea();
    const int32_t lh = m->LabelHeight(), lw = m->LabelWidth();
    const int32_t labelsFrom = m->BaseLine() + m->TickLength() + 1;
    // V: the runs of rows that hold label ink, each one label.
    std::vector<std::pair<int32_t, int32_t>> runs;
    if (c.upright)
        for (int32_t y = a.Top; y < a.Bottom; ++y) {
            const TRect row = inkBox(*m, TRect{labelsFrom, y, a.Right, y + 1}, clRed);
            if (row.Left >= row.Right) continue;
            if (!runs.empty() && runs.back().second == y)
                runs.back().second = y + 1;
            else
                runs.emplace_back(y, y + 1);
        }
    int checked = 0;
    for (const auto& t : m->Ticks()) {
        if (!t.Labelled || t.Pos == m->ScaleStart() || t.Pos == m->ScaleEnd()) continue;
        SCOPED_TRACE(t.Label.toStdString());
        if (c.upright) {
            // The digits' ink is centred on the line less its descent: close to the tick.
            double nearest = 1e9;
            for (const auto& [top, bottom] : runs)
                if (std::abs((top + bottom) / 2.0 - (t.Pos + c.offsetY)) < std::abs(nearest))
                    nearest = (top + bottom) / 2.0 - (t.Pos + c.offsetY);
            EXPECT_NEAR(nearest, 0, lh / 6.0);
            const TRect ink =
                inkBox(*m, TRect{a.Left, t.Pos - lh / 2, a.Right, t.Pos + lh / 2}, clRed);
            EXPECT_GE(ink.Left, labelsFrom + c.offsetX);
        } else {
            // Labels stand at least 1.4 widths apart: a window of 0.7 widths each way holds
            // this one alone.
            const int32_t half = lw * 7 / 10;
            const TRect ink = inkBox(
                *m, TRect{t.Pos - half + c.offsetX, a.Top, t.Pos + half + c.offsetX, a.Bottom},
                clRed);
            ASSERT_LT(ink.Left, ink.Right);
            EXPECT_NEAR((ink.Left + ink.Right) / 2.0, t.Pos + c.offsetX, 1.5);
            EXPECT_GE(ink.Top, labelsFrom + c.offsetY);
        }
        ++checked;
    }
    EXPECT_GT(checked, 0);
}

INSTANTIATE_TEST_SUITE_P(Offsets, FlexLabelPlace,
                         ::testing::Values(LabelPlaceCase{false, 0, 0}, LabelPlaceCase{true, 0, 0},
                                           LabelPlaceCase{false, 5, 3},
                                           LabelPlaceCase{true, 3, -6}));

struct ExactLayoutCase {
    bool upright;
    int w, h;
    QString format;
    float from, to;
    int32_t tick, labelH, labelW;
};
class FlexExactLayout : public ::testing::TestWithParam<ExactLayoutCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

// Tick length and label size at given sizes; long labels of a vertical meter shrink until
// they fit beside the ticks, and no further.
TEST_P(FlexExactLayout, TickAndLabelSizes) {
    const ExactLayoutCase& c = GetParam();
    auto m = makeMeter(c.upright, c.w, c.h);
    m->SignalSettings()->SetValueTo(c.to);
    m->SignalSettings()->SetValueFrom(c.from);
    m->Scale()->SetFormatStr(c.format);
    m->PaintToSurface();
    EXPECT_EQ(m->TickLength(), c.tick);
    EXPECT_EQ(m->LabelHeight(), c.labelH);
    EXPECT_EQ(m->LabelWidth(), c.labelW);
    if (c.upright && c.labelH > 0) {
        EXPECT_LE(int64_t(m->BaseLine()) + c.tick + 1 + c.labelW, m->PointerArea().Right);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, FlexExactLayout,
    ::testing::Values(
        ExactLayoutCase{true, 150, 300, QStringLiteral("##0.#"), 0, 100, 18, 23, 36},
        ExactLayoutCase{true, 70, 300, QStringLiteral("##0.#"), 0, 100, 6, 0, 0},
        ExactLayoutCase{true, 150, 600, QStringLiteral("0.000"), -20000, -10000, 18, 17, 73},
        ExactLayoutCase{true, 300, 600, QStringLiteral("0.000"), -20000, -10000, 40, 39, 174},
        ExactLayoutCase{true, 100, 600, QStringLiteral("0.000"), -20000, -10000, 10, 9, 37}));

struct MarkerCase {
    int w;
    std::vector<float> values;
    int32_t minPpt, maxPpt;
};
class FlexMarkers : public ::testing::TestWithParam<MarkerCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

// The markers stand at the extremes recorded from the first value on, held at the range
// ends.
TEST_P(FlexMarkers, StandAtTheRecordedExtremes) {
    const MarkerCase& c = GetParam();
    auto m = makeMeter(false, c.w, 150);
    m->SetLimitLower(-1e30f);
    m->SetLimitUpper(1e30f);
    m->MinMax()->SetUseSectorCol(false);
    m->PaintToSurface();
    m->SetValue(c.values.front());
    m->ResetMinMax();
    for (float v : c.values)
        m->SetValue(v);
    const float f = float(double(m->ScaleEnd() - m->ScaleStart()) / 1000.0);
    const auto& mk = m->Markers();
    EXPECT_EQ(mk[0].X, m->ScaleStart() + Round(double(f) * c.minPpt));
    EXPECT_EQ(mk[3].X, m->ScaleStart() + Round(double(f) * c.maxPpt));
    // The minimum's body lies towards the range start, the maximum's towards the end.
    EXPECT_LT(mk[2].X, mk[0].X);
    EXPECT_GT(mk[5].X, mk[3].X);
    EXPECT_EQ(m->Surface().Pixel(mk[0].X - 2, mk[2].Y - 2), m->MinMax()->MinColor());
}

INSTANTIATE_TEST_SUITE_P(Extremes, FlexMarkers,
                         ::testing::Values(MarkerCase{300, {20, 80, 50}, 200, 800},
                                           MarkerCase{1200, {-50}, 0, 0},
                                           MarkerCase{1200, {150}, 1000, 1000},
                                           MarkerCase{1200, {-50, 150, 50}, 0, 1000}));

// Logarithmic decades keep every tick down to kMinTickPitch pixels apart, then every
// second one.
TEST_F(FlexMeterTest, LogDecadesAreTickedDownToTheClosestPitch) {
    constexpr int32_t decades = 40;
    bool exact = false, closer = false;
    for (int w = 120; w <= 260 && !(exact && closer); ++w) {
        auto m = makeMeter(false, w, 60);
        m->SetOptions(0);
        m->SetLogScale(true);
        m->SignalSettings()->SetValueTo(1e20f);
        m->SignalSettings()->SetValueFrom(1e-20f);
        m->PaintToSurface();
        const int32_t length = m->ScaleEnd() - m->ScaleStart();
        const auto steps = std::count_if(m->Ticks().begin(), m->Ticks().end(),
                                         [](const auto& t) { return t.Step; });
        if (length == decades * TKxFlexMeter::kMinTickPitch) {
            exact = true;
            EXPECT_EQ(steps, decades + 1) << w;
        } else if (length == decades * TKxFlexMeter::kMinTickPitch - 1) {
            closer = true;
            EXPECT_EQ(steps, decades / 2 + 1) << w;
        }
    }
    EXPECT_TRUE(exact && closer);
}

// --- readings --------------------------------------------------------------------------------

TEST_F(FlexMeterTest, BadReadingsDrawWithinTheArea) {
    for (bool upright : {false, true}) {
        for (QSize size : {QSize(1, 1), QSize(40, 20), QSize(300, 150), QSize(4000, 400)}) {
            auto m = makeMeter(upright, size.width(), size.height());
            m->PaintToSurface();
            for (float v : {std::nanf(""), kInf, -kInf, 1e38f, -1e38f, 50.0f}) {
                m->SetValue(v);
                if (!m->TooSmall()) {
                    const auto& p = m->Pointer();
                    for (const auto& q : p)
                        EXPECT_TRUE(std::abs(q.X) < 100000);
                }
            }
            EXPECT_EQ(m->Value(), 50.0f);
        }
    }
}

TEST_F(FlexMeterTest, NaNIsIgnoredAndInfinityStopsAtTheEnd) {
    auto m = makeMeter(false, 300, 150);
    m->PaintToSurface();
    m->SetValue(20);
    const QImage before = m->Surface().Image().copy();
    m->SetValue(std::nanf(""));
    EXPECT_EQ(m->Value(), 20.0f);
    EXPECT_EQ(before, m->Surface().Image());
    m->SetValue(kInf);
    EXPECT_EQ(m->PointerPosition(), 1030);
    EXPECT_TRUE(m->Blinking());
}

TEST_F(FlexMeterTest, AReadingRepaintsOnlyThePointerAreaAndTheNumber) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
        m->PaintToSurface();
        const QImage before = m->Surface().Image().copy();
        m->SetValue(20);
        EXPECT_NE(before, m->Surface().Image());
        EXPECT_EQ(changedOutside(before, m->Surface().Image(),
                                 {m->PointerArea(), m->ValInd()->TextRect()}),
                  0);
    }
}

TEST_F(FlexMeterTest, ComposedReadingsEqualAFullRepaint) {
    for (bool upright : {false, true}) {
        auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
        m->PaintToSurface();
        for (float v : {30.0f, 80.0f, 10.0f, 120.0f, 55.0f}) {
            m->SetValue(v);
            ClearFlashList();
            const QImage composed = m->Surface().Image().copy();
            m->PaintToSurface();
            EXPECT_TRUE(composed == m->Surface().Image()) << upright << " " << v;
        }
    }
}

TEST_F(FlexMeterTest, OverflowBlinksYellowAndRedAndStopsInThePointerColour) {
    for (bool upright : {false, true}) {
        SCOPED_TRACE(upright);
        auto m = upright ? makeMeter(true, 150, 300) : makeMeter(false, 300, 150);
        m->PaintToSurface();
        m->SetValue(130.0f);
        EXPECT_TRUE(m->Blinking());
        EXPECT_NE(test::Subscription(m.get()), nullptr);
        SetFlashTickCounter(15);
        RunFlashTick();
        EXPECT_EQ(pointerFill(*m), clRed);
        SetFlashTickCounter(31);
        RunFlashTick();
        EXPECT_EQ(pointerFill(*m), clYellow);
        m->SetValue(50.0f);
        EXPECT_FALSE(m->Blinking());
        EXPECT_EQ(test::Subscription(m.get()), nullptr);
        EXPECT_EQ(pointerFill(*m), m->PointerColor());
    }
}

TEST_F(FlexMeterTest, NothingBlinksAtDesignTime) {
    auto m = makeMeter(false, 300, 150);
    m->SetDesigning(true);
    m->PaintToSurface();
    m->SetValue(130.0f);
    EXPECT_FALSE(m->Blinking());
    EXPECT_EQ(test::Subscription(m.get()), nullptr);
}

TEST_F(FlexMeterTest, Defaults) {
    TKxFlexHMeter h;
    EXPECT_EQ(h.width(), 300);
    EXPECT_EQ(h.height(), 150);
    EXPECT_EQ(h.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    TKxFlexVMeter v;
    EXPECT_EQ(v.width(), 150);
    EXPECT_EQ(v.height(), 300);
    EXPECT_EQ(v.sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(h.Options(), TKxFlexMeter::kAllFlexOptions);
    EXPECT_EQ(h.PointerColor(), clLime);
    EXPECT_EQ(h.Scale()->SubStepsVis(), 4);
    EXPECT_EQ(h.Scale()->Font()->Size(), 36);
    EXPECT_EQ(h.BevelInner()->BevelLine(), blInner);
    EXPECT_EQ(h.BevelOuter()->BevelLine(), blOuter);
}

}  // namespace
}  // namespace kx

namespace kx {
namespace {

// A step split into more parts than can be drawn keeps its steps: only the sub-ticks go.
TEST(FlexSteps, AStepSplitIntoVeryManyPartsKeepsItsSteps) {
    for (const int32_t parts : {1000, 100000}) {
        TKxFlexHMeter m;
        m.SetBounds(0, 0, 300, 150);
        m.SignalSettings()->SetValueFrom(0);
        m.SignalSettings()->SetValueTo(100);
        m.Scale()->SetSubStepAt(10.0f / float(parts));
        m.Scale()->SetStepMulti(parts);
        m.Loaded();
        m.PaintToSurface();
        const auto& ticks = m.Ticks();
        EXPECT_EQ(std::count_if(ticks.begin(), ticks.end(), [](const auto& t) { return t.Step; }),
                  11)
            << parts;
        EXPECT_TRUE(std::all_of(ticks.begin(), ticks.end(), [](const auto& t) { return t.Step; }))
            << parts;
    }
}

}  // namespace
}  // namespace kx

namespace kx {
namespace {

std::unique_ptr<TKxFlexHMeter> paintedFlex(const std::function<void(TKxFlexHMeter&)>& setup) {
    auto m = std::make_unique<TKxFlexHMeter>();
    m->SetLimitUpper(1e6f);
    m->SetLimitLower(-1e6f);
    setup(*m);
    m->Loaded();
    m->PaintToSurface();
    return m;
}

// The steps are drawn with Scale.StepLines' pen.
TEST(FlexTicks, StepsTakeTheStepLinesPen) {
    for (const TColor colour : {clRed, clNavy}) {
        auto m =
            paintedFlex([&](TKxFlexHMeter& f) { f.Scale()->StepLines()->Pen()->SetColor(colour); });
        ASSERT_TRUE(m->ShowsTicks());
        int checked = 0;
        for (const auto& t : m->Ticks()) {
            if (!t.Step) continue;
            EXPECT_EQ(m->Surface().Pixel(t.Pos, m->BaseLine() + m->TickLength() / 2), colour)
                << t.Pos;
            ++checked;
        }
        EXPECT_GE(checked, 3);
    }
}

// The header is the value box's height plus two, whatever the box's text spacing; a value
// box without a unit still shows.
TEST(FlexHeader, FollowsTheValueBoxWithOrWithoutTheUnit) {
    const struct {
        int32_t top, bottom;
        bool unit;
    } cases[] = {{0, 0, true}, {4, 6, true}, {4, 6, false}, {0, 9, false}};
    for (const auto& c : cases) {
        auto m = paintedFlex([&](TKxFlexHMeter& f) {
            f.SetBounds(0, 0, 400, 200);
            f.SignalSettings()->SetValueUnit(QStringLiteral("m/min"));
            f.ValInd()->TxtSpacing()->SetTop(c.top);
            f.ValInd()->TxtSpacing()->SetBottom(c.bottom);
            if (!c.unit)
                f.SetOptions(TKxFlexMeter::kAllFlexOptions &
                             ~TKxFlexMeter::FlexOption(TKxFlexMeter::opUnit));
        });
        EXPECT_TRUE(m->ShowsValue()) << c.top << " " << c.unit;
        EXPECT_EQ(m->ShowsUnit(), c.unit);
        EXPECT_EQ(m->HeaderRect().Height(), m->ValInd()->BoxRect().Height() + 2)
            << c.top << " " << c.bottom << " " << c.unit;
    }
}

}  // namespace
}  // namespace kx
