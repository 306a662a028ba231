// Value readout: layout of box, number and unit, the digits' colour (sectors, blinking)
// and what a reading repaints.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include "kx/blink/flashtimer.h"
#include "kx/host/recordingcanvas.h"
#include "kx/indicators/valueind.h"

namespace kx {
namespace {

class ValueIndTest : public ::testing::Test {
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

constexpr uint16_t O(TKxValueInd::TValueIndOption o) {
    return TKxValueInd::ValueIndOption(o);
}

// Pixels of the number field in colour c.
int inkIn(const TKxValueInd& v, TColor c) {
    int n = 0;
    const TRect r = v.NumberRect();
    for (int32_t y = r.Top; y < r.Bottom; ++y)
        for (int32_t x = r.Left; x < r.Right; ++x)
            n += v.Surface().Pixel(x, y) == c;
    return n;
}

// --- layout with fixed text metrics (7 x 14 per character) -----------------------------------

struct Recorded {
    TKxValueInd v;
    TRecordingCanvas rec;
    explicit Recorded(uint16_t options, bool autoSize = false, const QString& name2 = QString()) {
        rec.CharWidth = 7;
        rec.LineHeight = 14;
        v.SetCanvas(&rec);
        if (!name2.isEmpty()) v.SignalSettings()->SetName2(name2);
        v.SetOptions(options);
        v.SetKxAutoSize(autoSize);
        v.Loaded();
        v.PaintToSurface();
    }
    ~Recorded() { v.SetCanvas(nullptr); }
};

// Sample "100.0" is 35 x 14: e = 2, the box 35 + 2e + 2 x 2 (bevel) = 43 by 18; the unit
// "%" is 7 wide. Bevels 8 thick each, names 14 high and 77 wide.
TEST_F(ValueIndTest, LayoutFollowsTheBlockRule) {
    const struct {
        uint16_t options;
        bool autoSize;
        int32_t w, h;
        TRect box, number, unit;
        QString name2 = QString();
    } cases[] = {
        // 160 x 96: area 16..144 x 16..52, the 52-wide block centred.
        {TKxValueInd::kDefaultOptions,
         false,
         160,
         96,
         {54, 25, 97, 43},
         {58, 27, 93, 41},
         {99, 27, 106, 41}},
        // No bevels, names or unit: the box alone centred in the whole control.
        {0, false, 160, 96, {58, 39, 101, 57}, {62, 41, 97, 55}, {}},
        // AutoSize: exactly the names' width (77 + 16) and 32 + 18 + 28 high.
        {TKxValueInd::kDefaultOptions,
         true,
         93,
         78,
         {20, 16, 63, 34},
         {24, 18, 59, 32},
         {65, 18, 72, 32}},
        // AutoSize without names: the block decides the width.
        {O(TKxValueInd::opUnit) | O(TKxValueInd::opBevelOuter),
         true,
         68,
         34,
         {8, 8, 51, 26},
         {12, 10, 47, 24},
         {53, 10, 60, 24}},
        // AutoSize with a 140 wide Name2: it decides the width (140 + 16), the block is
        // centred in the 124 wide area.
        {TKxValueInd::kDefaultOptions,
         true,
         156,
         78,
         {52, 16, 95, 34},
         {56, 18, 91, 32},
         {97, 18, 104, 32},
         QString(20, QLatin1Char('n'))},
        // ... unless the line is not shown.
        {TKxValueInd::kDefaultOptions & ~O(TKxValueInd::opName2),
         true,
         93,
         64,
         {20, 16, 63, 34},
         {24, 18, 59, 32},
         {65, 18, 72, 32},
         QString(20, QLatin1Char('n'))},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.options << " " << c.autoSize << " " << c.name2.size());
        Recorded r(c.options, c.autoSize, c.name2);
        EXPECT_EQ(r.v.width(), c.w);
        EXPECT_EQ(r.v.height(), c.h);
        EXPECT_EQ(r.v.ValueBox(), c.box);
        EXPECT_EQ(r.v.NumberRect(), c.number);
        EXPECT_EQ(r.v.UnitRect(), c.unit);
        if (c.unit.Right > 0) {
            bool found = false;
            for (const TCanvasCall& t : r.rec.CallsOf(QStringLiteral("TextOut")))
                if (t.Text == QStringLiteral("%")) {
                    found = true;
                    EXPECT_EQ(t.Args.at(0), c.unit.Left);
                    EXPECT_EQ(t.Args.at(1), c.unit.Top);
                }
            EXPECT_TRUE(found);
        }
    }
}

TEST_F(ValueIndTest, Defaults) {
    TKxValueInd v;
    EXPECT_EQ(v.width(), 160);
    EXPECT_EQ(v.height(), 96);
    EXPECT_FALSE(v.AutoSize());
    EXPECT_EQ(v.Options(), TKxValueInd::kDefaultOptions);
    EXPECT_FALSE(v.HasOption(TKxValueInd::opSectorColor));
    EXPECT_EQ(v.FontValue()->Name(), QStringLiteral("Arial"));
    EXPECT_EQ(v.FontValue()->Color(), clLime);
    EXPECT_EQ(v.FontValue()->Size(), 18);
    EXPECT_EQ(v.FontValue()->Style(), fsBold);
    EXPECT_EQ(v.FontUnit()->Name(), QStringLiteral("Arial"));
    EXPECT_EQ(v.FontUnit()->Color(), clBlack);
    EXPECT_EQ(v.FontUnit()->Size(), 10);
    EXPECT_EQ(v.FontUnit()->Style(), 0);
    EXPECT_EQ(v.BevelValue()->Color(), clBlack);
    EXPECT_EQ(v.BevelValue()->Style(), bsLowered);
    EXPECT_EQ(v.BevelInner()->BevelLine(), blInner);
    EXPECT_EQ(v.BevelOuter()->BevelLine(), blOuter);
}

// --- readings --------------------------------------------------------------------------------

struct ReadingCase {
    uint16_t options;
    float value;
    bool blinks;
    TColor color;  // of the digits; 0 = the sector colour given by sector
    int sector;
};

class ValueIndReading : public ::testing::TestWithParam<ReadingCase> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(ValueIndReading, DigitsTakeTheirColour) {
    const ReadingCase& c = GetParam();
    TKxValueInd v;
    v.SetOptions(c.options);
    v.Loaded();
    v.PaintToSurface();
    v.SetValue(c.value);
    const TSectorSettings& s = *v.SectorSettings();
    const TColor expected = c.sector == 1   ? s.Sector1Color()
                            : c.sector == 2 ? s.Sector2Color()
                            : c.sector == 3 ? s.Sector3Color()
                                            : c.color;
    EXPECT_EQ(v.Blinking(), c.blinks);
    EXPECT_EQ(inFlashList(&v), c.blinks);
    if (!c.blinks) {
        EXPECT_EQ(v.DigitColor(), expected);
        EXPECT_GT(inkIn(v, expected), 10);
        return;
    }
    SetFlashTickCounter(15);
    RunFlashTick();
    EXPECT_EQ(v.DigitColor(), clRed);
    EXPECT_GT(inkIn(v, clRed), 10);
    SetFlashTickCounter(31);
    RunFlashTick();
    EXPECT_EQ(v.DigitColor(), clYellow);
    EXPECT_EQ(inkIn(v, clRed), 0);
    // Back in range: the normal colour at once.
    v.SetValue(50.0f);
    EXPECT_FALSE(v.Blinking());
    EXPECT_FALSE(inFlashList(&v));
    EXPECT_EQ(inkIn(v, clYellow), 0);
}

constexpr uint16_t kDef = TKxValueInd::kDefaultOptions;
constexpr uint16_t kSect = TKxValueInd::kAllValueIndOptions;
constexpr uint16_t kNoLimit = kDef & ~O(TKxValueInd::opLimit);
constexpr uint16_t kNoOverflow = kDef & ~O(TKxValueInd::opOverflow);
const float kInf = std::numeric_limits<float>::infinity();

INSTANTIATE_TEST_SUITE_P(
    ValueInd, ValueIndReading,
    ::testing::Values(ReadingCase{kDef, 0.0f, true, 0, 0},  // below LimitLower 10
                      ReadingCase{kDef, 50.0f, false, clLime, 0},
                      ReadingCase{kDef, 95.0f, true, 0, 0},  // above LimitUpper 90
                      ReadingCase{kNoLimit, 95.0f, false, clLime, 0},
                      ReadingCase{kNoLimit, 100.0f, false, clLime, 0},
                      ReadingCase{kNoLimit, 100.5f, true, 0, 0},
                      ReadingCase{kNoLimit, kInf, true, 0, 0},
                      ReadingCase{kNoLimit, -kInf, true, 0, 0},
                      ReadingCase{kNoOverflow, 150.0f, true, 0, 0},  // the limit still holds
                      ReadingCase{0, 150.0f, false, clLime, 0},
                      ReadingCase{kSect & ~O(TKxValueInd::opLimit), 20.0f, false, 0, 1},
                      ReadingCase{kSect, 50.0f, false, 0, 2},
                      ReadingCase{kSect & ~O(TKxValueInd::opLimit), 80.0f, false, 0, 3}));

TEST_F(ValueIndTest, AReadingRepaintsOnlyTheNumberField) {
    TKxValueInd v;
    v.Loaded();
    v.SetValue(40.0f);
    v.PaintToSurface();
    const QImage before = v.Surface().Image().copy();
    v.SetValue(47.5f);
    const TRect r = v.NumberRect();
    int inside = 0, outside = 0;
    for (int y = 0; y < before.height(); ++y)
        for (int x = 0; x < before.width(); ++x)
            if (before.pixel(x, y) != v.Surface().Image().pixel(x, y))
                (x >= r.Left && x < r.Right && y >= r.Top && y < r.Bottom ? inside : outside)++;
    EXPECT_GT(inside, 0);
    EXPECT_EQ(outside, 0);
    // The composed number is what a full paint draws.
    const QImage composed = v.Surface().Image().copy();
    v.Invalidate();
    v.PaintToSurface();
    EXPECT_TRUE(composed == v.Surface().Image());
}

TEST_F(ValueIndTest, NaNIsIgnoredAndTooWideNumbersShowHashes) {
    TKxValueInd v;
    v.Loaded();
    v.SetValue(42.0f);
    v.PaintToSurface();
    const QImage before = v.Surface().Image().copy();
    v.SetValue(std::nanf(""));
    EXPECT_TRUE(before == v.Surface().Image());
    v.SetOptions(0);
    v.PaintToSurface();
    v.SetValue(-FLT_MAX);  // far wider than "100.0"
    EXPECT_GT(inkIn(v, clLime), 10);
    EXPECT_FALSE(v.Blinking());
}

// A number too wide for its field shows as many whole '#' as fit, at least one, against
// the right edge: left of them the field keeps the box colour.
TEST_F(ValueIndTest, HashesAreWholeAndRightAligned) {
    TKxValueInd v;
    TBitmap probe;
    probe.Canvas().SetFont(*v.FontValue());
    const int32_t hash = probe.Canvas().TextWidth(QStringLiteral("#"));
    ASSERT_GT(hash, 5);
    v.SetOptions(0);
    v.Loaded();
    v.SetValue(50.0f);  // "50.0": wider than two and a half '#'
    // A control narrower than the box cuts the box at its left edge, so the field keeps
    // the same margin m from both sides of the control.
    v.SetBounds(0, 0, 20, 96);
    v.PaintToSurface();
    const int32_t m = v.NumberRect().Left;
    const struct {
        int32_t room, hashes;
    } cases[] = {{hash / 2, 1}, {hash, 1}, {hash + hash / 2, 1}, {2 * hash + hash / 2, 2}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "room " << c.room << ", '#' " << hash);
        v.SetBounds(0, 0, c.room + 2 * m, 96);
        v.PaintToSurface();
        const TRect n = v.NumberRect();
        ASSERT_EQ(n.Width(), c.room);
        // One column of slack for the glyph's anti-aliased edge.
        const int32_t clearTo = n.Right - c.hashes * hash - 1;
        int ink = 0, stray = 0;
        for (int32_t y = n.Top; y < n.Bottom; ++y)
            for (int32_t x = n.Left; x < n.Right; ++x)
                if (v.Surface().Pixel(x, y) != clBlack) {
                    ++ink;
                    stray += x < clearTo;
                }
        EXPECT_GT(ink, 10);
        EXPECT_EQ(stray, 0);
    }
}

// The settings setters ignore a null: nothing is thrown, nothing changes.
TEST_F(ValueIndTest, NullSettingsAreIgnored) {
    using Set = std::function<void(TKxValueInd&)>;
    const std::pair<const char*, Set> cases[] = {
        {"BevelInner", [](TKxValueInd& v) { v.SetBevelInner(nullptr); }},
        {"BevelOuter", [](TKxValueInd& v) { v.SetBevelOuter(nullptr); }},
        {"BevelValue", [](TKxValueInd& v) { v.SetBevelValue(nullptr); }},
        {"FontValue", [](TKxValueInd& v) { v.SetFontValue(nullptr); }},
        {"FontUnit", [](TKxValueInd& v) { v.SetFontUnit(nullptr); }},
    };
    for (const auto& [what, set] : cases) {
        SCOPED_TRACE(what);
        TKxValueInd v;
        v.Loaded();
        v.PaintToSurface();
        const QImage before = v.Surface().Image().copy();
        EXPECT_NO_THROW(set(v));
        v.Invalidate();
        v.PaintToSurface();
        EXPECT_TRUE(before == v.Surface().Image());
    }
}

TEST_F(ValueIndTest, SizesFromTinyToHuge) {
    const struct {
        int32_t w, h;
        bool small;
    } cases[] = {
        {1, 1, true}, {33, 33, true}, {34, 34, false}, {60, 40, false}, {4000, 4000, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.w << "x" << c.h);
        TKxValueInd v;
        v.SetBounds(0, 0, c.w, c.h);
        v.SetOptions(O(TKxValueInd::opBevelOuter) | O(TKxValueInd::opBevelInner) |
                     O(TKxValueInd::opOverflow));
        v.Loaded();
        v.PaintToSurface();
        EXPECT_EQ(v.TooSmall(), c.small);
        v.SetValue(500.0f);
        EXPECT_EQ(v.Blinking(), !c.small);
        // The box never leaves the display area.
        const TRect a = v.DisplayArea(), b = v.ValueBox();
        if (!c.small) {
            EXPECT_GE(b.Left, a.Left);
            EXPECT_GE(b.Top, a.Top);
            EXPECT_LE(b.Right, a.Right);
            EXPECT_LE(b.Bottom, a.Bottom);
        }
        ClearFlashList();
    }
}

TEST_F(ValueIndTest, DesignTimeShowsTheSampleAndNeverBlinks) {
    TKxValueInd v;
    v.SetDesigning(true);
    v.Loaded();
    v.PaintToSurface();
    v.SetValue(150.0f);
    v.PaintToSurface();
    EXPECT_FALSE(v.Blinking());
    EXPECT_FALSE(inFlashList(&v));
    EXPECT_GT(inkIn(v, clLime), 10);
}

TEST_F(ValueIndTest, SettingsChangesRepaint) {
    using Touch = std::function<void(TKxValueInd&)>;
    const std::pair<const char*, Touch> cases[] = {
        {"BevelValue", [](TKxValueInd& v) { v.BevelValue()->SetWidth(3); }},
        {"BevelInner", [](TKxValueInd& v) { v.BevelInner()->SetWidth(3); }},
        {"FontValue", [](TKxValueInd& v) { v.FontValue()->SetSize(30); }},
        {"FontUnit", [](TKxValueInd& v) { v.FontUnit()->SetSize(13); }},
        {"SetFontValue",
         [](TKxValueInd& v) {
             TFont f;
             f.SetSize(30);
             v.SetFontValue(&f);
         }},
        {"SetBevelInner",
         [](TKxValueInd& v) {
             TKxSBevel b;
             b.SetWidth(3);
             v.SetBevelInner(&b);
         }},
        {"Options", [](TKxValueInd& v) { v.SetOptions(1); }},
        {"AutoSize", [](TKxValueInd& v) { v.SetKxAutoSize(true); }},
        {"Format", [](TKxValueInd& v) { v.SignalSettings()->SetValueFormat("0.000"); }},
    };
    for (const auto& [what, touch] : cases) {
        SCOPED_TRACE(what);
        TKxValueInd v;
        v.Loaded();
        v.PaintToSurface();
        v.SetRedrawNeeded(false);
        touch(v);
        EXPECT_TRUE(v.RedrawNeeded());
    }
}

}  // namespace
}  // namespace kx
