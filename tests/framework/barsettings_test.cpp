// Bar settings: the bar of each style, the sector bands, the inverting value text and the
// boxed readout.
#include <gtest/gtest.h>

#include <QString>
#include <cmath>
#include <limits>
#include <vector>

#include "kx/drawing/colors.h"
#include "kx/framework/barsettings.h"
#include "kx/framework/valind.h"
#include "kx/host/bitmap.h"
#include "kx/host/formatfloat.h"

namespace kx {
namespace {

constexpr TColor kBar = clLime;
constexpr TColor kBk = clBlack;

// The bar of `settings` painted at ppt onto a white canvas, BarRect at (5, 5).
struct Painted {
    TBitmap canvas;
    explicit Painted(TBarSettings& s, int32_t w, int32_t h, int32_t ppt) : canvas(w + 10, h + 10) {
        s.BarRect = TRect{5, 5, 5 + w, 5 + h};
        s.PaintBar(canvas.Canvas(), ppt);
    }
    TColor at(int32_t x, int32_t y) const { return canvas.Pixel(5 + x, 5 + y); }
    // The colours along the bar's middle row (or column for an upright bar).
    std::vector<TColor> row(int32_t w, int32_t h) const {
        std::vector<TColor> out;
        for (int32_t x = 0; x < w; ++x)
            out.push_back(at(x, h / 2));
        return out;
    }
};

// [from, to) of the first run of `color` in a row; {-1, -1} when absent.
std::pair<int32_t, int32_t> run(const std::vector<TColor>& row, TColor color) {
    int32_t from = -1, to = -1;
    for (int32_t i = 0; i < int32_t(row.size()); ++i) {
        if (row[size_t(i)] == color && from < 0) from = i;
        if (row[size_t(i)] != color && from >= 0 && to < 0) to = i;
    }
    if (from >= 0 && to < 0) to = int32_t(row.size());
    return {from, to};
}

struct BarCase {
    const char* what;
    TBarStyle style;
    bool bidir;
    int32_t origin;
    int32_t width;
    int32_t ppt;
    int32_t from, to;  // the bar colour's run along the row; -1, -1: none
};

TEST(BarSettings, HorizontalGeometryOfEachStyle) {
    const BarCase cases[] = {
        {"bar at half", bsBar, false, 0, 200, 500, 0, 100},
        {"bar at zero", bsBar, false, 0, 200, 0, -1, -1},
        {"bar full", bsBar, false, 0, 200, 1000, 0, 200},
        {"bar rounds half to even", bsBar, false, 0, 20, 125, 0, 2},  // 2.5 -> 2
        {"bar rounds up", bsBar, false, 0, 20, 175, 0, 4},            // 3.5 -> 4
        {"bidir at the origin", bsBar, true, 500, 200, 500, -1, -1},
        {"bidir above", bsBar, true, 500, 200, 750, 100, 150},
        {"bidir below", bsBar, true, 500, 200, 250, 50, 100},
        {"ppt beyond the range is held", bsBar, false, 0, 200, 1500, 0, 200},
        {"point at the end", bsPoint, false, 0, 203, 1000, 200, 203},
        {"point at the start", bsPoint, false, 0, 203, 0, 0, 3},
        {"point in the middle", bsPoint, false, 0, 103, 500, 50, 53},
        {"zero on a long bar", bsBar, false, 0, 1000, 0, -1, -1},
        {"one per mille on a long bar", bsBar, false, 0, 1000, 1, 0, 1},
        {"bidir from zero on a long bar", bsBar, true, 0, 1000, 2, 0, 2},
    };
    for (const BarCase& c : cases) {
        SCOPED_TRACE(c.what);
        TBarSettings s;
        s.SetStyle(c.style);
        if (c.bidir) s.SetOptions(TBarSettings::BarOption(TBarSettings::opBidir));
        s.BidirOrigin = c.origin;
        Painted p(s, c.width, 12, c.ppt);
        const auto r = run(p.row(c.width, 12), kBar);
        EXPECT_EQ(r.first, c.from);
        EXPECT_EQ(r.second, c.to);
        if (r.first >= 0) {  // the whole height, first and last row included
            EXPECT_EQ(p.at(r.first, 0), kBar);
            EXPECT_EQ(p.at(r.first, 11), kBar);
        }
        EXPECT_EQ(s.BarWidth, c.width);
        EXPECT_EQ(s.BarHeight, 12);
        // Only the bar rectangle is touched.
        EXPECT_EQ(p.canvas.Pixel(4, 10), clWhite);
        EXPECT_EQ(p.canvas.Pixel(5 + c.width, 10), clWhite);
    }
}

TEST(BarSettings, UprightBarGrowsFromTheBottom) {
    TBarSettings s;
    Painted p(s, 10, 100, 300);
    EXPECT_EQ(p.at(5, 99), kBar);
    EXPECT_EQ(p.at(5, 70), kBar);
    EXPECT_EQ(p.at(5, 69), kBk);
    EXPECT_EQ(p.at(5, 0), kBk);
    // A square counts as upright.
    Painted q(s, 20, 20, 500);
    EXPECT_EQ(q.at(10, 19), kBar);
    EXPECT_EQ(q.at(10, 9), kBk);
    EXPECT_EQ(q.at(19, 10), kBar);
}

// Upright, positions count up from the bottom for every style.
TEST(BarSettings, UprightStylesCountFromTheBottom) {
    TBarSettings s;
    s.SetStyle(bsPoint);
    Painted point(s, 10, 103, 500);  // rows 103 - 53 .. 103 - 50
    EXPECT_EQ(point.at(5, 49), kBk);
    EXPECT_EQ(point.at(5, 50), kBar);
    EXPECT_EQ(point.at(5, 52), kBar);
    EXPECT_EQ(point.at(5, 53), kBk);
    s.SetStyle(bsBar);
    s.SetOptions(TBarSettings::BarOption(TBarSettings::opBidir));
    s.BidirOrigin = 500;
    Painted bidir(s, 10, 100, 800);  // rows 100 - 80 .. 100 - 50
    EXPECT_EQ(bidir.at(5, 19), kBk);
    EXPECT_EQ(bidir.at(5, 20), kBar);
    EXPECT_EQ(bidir.at(5, 49), kBar);
    EXPECT_EQ(bidir.at(5, 50), kBk);
}

// A bar 4 to 7 pixels long holds one segment k = 0 for 0 per mille, and a segment k = 1
// for 1000 that never lights (1000 + 1 lies beyond any reading).
TEST(BarSettings, ShortLedBarHasOneSegment) {
    TBarSettings s;
    s.SetStyle(bsLED_Bar);
    Painted p(s, 6, 3, 1000);
    EXPECT_EQ(p.at(0, 1), kBk);
    EXPECT_EQ(p.at(1, 1), s.SectorSettings->Sector1Color());
    EXPECT_EQ(p.at(3, 1), s.SectorSettings->Sector1Color());
    EXPECT_EQ(p.at(5, 1), kBk);
    s.SetBkAuto(true);
    s.SetBkBrightness(50.0f);
    EXPECT_EQ(s.LedColor(1, 1, 1000), KxSetBrightness(s.SectorSettings->Sector3Color(), 50.0f));
}

TEST(BarSettings, LedSegmentsAreThreeLitPixelsAndAGap) {
    TBarSettings s;
    s.SetStyle(bsLED_Bar);
    for (auto set : {&TSectorSettings::SetSector1Color, &TSectorSettings::SetSector2Color,
                     &TSectorSettings::SetSector3Color})
        (s.SectorSettings->*set)(clAqua);
    const TColor lit = clAqua;
    Painted p(s, 40, 8, 500);
    // 10 segments of 4 pixels stand for 0, 100, ... 1000; the one at 500 is beyond.
    for (int32_t k = 0; k < 10; ++k) {
        SCOPED_TRACE(k);
        EXPECT_EQ(p.at(4 * k, 4), kBk);  // the gap
        const TColor expected = k <= 4 ? lit : kBk;
        for (int32_t x = 4 * k + 1; x < 4 * k + 4; ++x)
            EXPECT_EQ(p.at(x, 4), expected);
    }
}

TEST(BarSettings, LedColoursAtAndBeyondTheValue) {
    TBarSettings s;
    s.SetStyle(bsLED_Bar);
    s.SetBkBrightness(40.0f);
    TSectorSettings& sec = *s.SectorSettings;
    sec.SetSector1From(0), sec.SetSector1To(300);
    sec.SetSector2From(301), sec.SetSector2To(600);
    sec.SetSector3From(800), sec.SetSector3To(1000);
    const struct {
        int32_t k, ppt;
        bool bkAuto;
        TColor expected;
    } cases[] = {
        {1, 500, false, sec.Sector1Color()},                         // within, sector 1
        {5, 501, false, sec.Sector2Color()},                         // the last one lit
        {5, 500, false, kBk},                                        // just beyond
        {7, 1000, false, kBar},                                      // within, no sector
        {9, 500, false, kBk},                                        // beyond
        {9, 500, true, KxSetBrightness(sec.Sector3Color(), 40.0f)},  // beyond, dimmed
        {7, 500, true, KxSetBrightness(kBk, 40.0f)},                 // beyond, no sector
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "k " << c.k << " ppt " << c.ppt);
        s.SetBkAuto(c.bkAuto);
        // 10 segments: segment k stands for 100 k per mille.
        EXPECT_EQ(s.LedColor(c.k, 10, c.ppt), c.expected);
    }
    // Eleven segments (k = 0..10) on a 40-pixel bar: the last lies past its end.
    Painted p(s, 40, 8, 1000);
    EXPECT_EQ(p.at(37, 4), sec.Sector3Color());
    EXPECT_EQ(p.canvas.Pixel(5 + 41, 9), clWhite);
}

// The last segment stands for 1000 and shows (dimmed) where the bar is long enough.
TEST(BarSettings, LastLedSegmentShowsDimmedWhereItFits) {
    TBarSettings s;
    s.SetStyle(bsLED_Bar);
    s.SetBkAuto(true);
    s.SetBkBrightness(50.0f);
    Painted p(s, 43, 6, 500);  // n = 10: segment 10 at 41..43, cut at 43
    EXPECT_EQ(p.at(41, 3), KxSetBrightness(s.SectorSettings->Sector3Color(), 50.0f));
}

// Bands paint with a solid brush whatever the canvas had.
TEST(BarSettings, SectorBandsIgnoreAClearBrush) {
    TBarSettings s;
    TSectorSettings sec;
    TBitmap b(100, 10);
    b.Canvas().Brush().SetStyle(bsClear);
    s.DrawSector(b.Canvas(), TRect{0, 0, 100, 10}, 0, sec, false);
    EXPECT_EQ(b.Pixel(10, 5), sec.Sector1Color());
}

TEST(BarSettings, MultiColourShowsTheSectorsUpToTheValue) {
    TBarSettings s;
    s.SetStyle(bsMultiColor);
    const TSectorSettings& sec = *s.SectorSettings;  // 0..333, 334..666, 667..1000
    Painted p(s, 300, 10, 800);
    EXPECT_EQ(p.at(0, 5), sec.Sector1Color());
    EXPECT_EQ(p.at(50, 5), sec.Sector1Color());
    EXPECT_EQ(p.at(150, 5), sec.Sector2Color());
    EXPECT_EQ(p.at(230, 5), sec.Sector3Color());
    EXPECT_EQ(p.at(239, 5), sec.Sector3Color());
    EXPECT_EQ(p.at(240, 5), kBk);
}

TEST(BarSettings, AutoBackgroundShowsTheSectorsDimmed) {
    TBarSettings s;
    s.SetBkAuto(true);
    s.SetBkBrightness(40.0f);
    const TSectorSettings& sec = *s.SectorSettings;
    Painted p(s, 300, 10, 100);
    EXPECT_EQ(p.at(10, 5), kBar);
    EXPECT_EQ(p.at(50, 5), KxSetBrightness(sec.Sector1Color(), 40.0f));
    EXPECT_EQ(p.at(250, 5), KxSetBrightness(sec.Sector3Color(), 40.0f));
}

// DrawSector runs along the longer side; a square counts as horizontal.
TEST(BarSettings, SectorBandsRunAlongTheLongerSide) {
    TBarSettings s;
    TSectorSettings sec;  // 0..333, 334..666, 667..1000
    TBitmap square(90, 90);
    s.DrawSector(square.Canvas(), TRect{0, 0, 90, 90}, 0, sec, false);
    EXPECT_EQ(square.Pixel(5, 85), sec.Sector1Color());
    EXPECT_EQ(square.Pixel(85, 85), sec.Sector3Color());
    TBitmap upright(90, 91);
    s.DrawSector(upright.Canvas(), TRect{0, 0, 90, 91}, 0, sec, false);
    EXPECT_EQ(upright.Pixel(85, 88), sec.Sector1Color());
    EXPECT_EQ(upright.Pixel(85, 2), sec.Sector3Color());
}

TEST(BarSettings, SectorBandsAndTheirGaps) {
    TBarSettings s;
    TSectorSettings sec;
    sec.SetSector1From(100), sec.SetSector1To(300);
    sec.SetSector2From(400), sec.SetSector2To(500);
    sec.SetSector3From(700), sec.SetSector3To(900);
    TBitmap b(100, 10);
    s.DrawSector(b.Canvas(), TRect{0, 0, 100, 10}, 0, sec, false);
    const struct {
        int32_t x;
        TColor c;
    } expect[] = {{0, kBk},
                  {9, kBk},
                  {10, sec.Sector1Color()},
                  {29, sec.Sector1Color()},
                  {30, kBk},
                  {40, sec.Sector2Color()},
                  {49, sec.Sector2Color()},
                  {50, kBk},
                  {69, kBk},
                  {70, sec.Sector3Color()},
                  {89, sec.Sector3Color()},
                  {90, kBk},
                  {99, kBk}};
    for (const auto& e : expect) {
        SCOPED_TRACE(e.x);
        EXPECT_EQ(b.Pixel(e.x, 5), e.c);
    }
    // Upright: bands run up from the bottom.
    TBitmap v(10, 100);
    s.DrawVSector(v.Canvas(), TRect{0, 0, 10, 100}, sec, false);
    EXPECT_EQ(v.Pixel(5, 99 - 75), sec.Sector3Color());
}

// The value text inverts what lies beneath (its smoothed edges by their grey level): full
// ink turns lime into magenta and black into white.
TEST(BarSettings, ValueTextInvertsWhatLiesBeneath) {
    TBarSettings s;
    s.SetOptions(TBarSettings::BarOption(TBarSettings::opValue) |
                 TBarSettings::BarOption(TBarSettings::opUnit));
    s.ValueText = QStringLiteral("8888888");
    s.UnitText = QStringLiteral("%");
    s.Font()->SetSize(20);  // big enough for fully inked pixels
    s.Font()->SetStyle(fsBold);
    TBarSettings plain;
    Painted without(plain, 200, 40, 500);
    Painted with(s, 200, 40, 500);
    int overBar = 0, overBk = 0;
    for (int32_t y = 0; y < 40; ++y)
        for (int32_t x = 0; x < 200; ++x) {
            const TColor before = without.at(x, y), after = with.at(x, y);
            const TColor ink = before ^ after;
            EXPECT_TRUE((ink & 0xFF) == ((ink >> 8) & 0xFF) && (ink & 0xFF) == (ink >> 16))
                << x << "," << y;
            if (after == (before ^ TColor(0xFFFFFF))) ++(before == kBar ? overBar : overBk);
        }
    EXPECT_GT(overBar, 20);
    EXPECT_GT(overBk, 20);
    // The unit follows the value after a blank.
    s.SetOptions(TBarSettings::BarOption(TBarSettings::opValue));
    Painted valueOnly(s, 200, 40, 500);
    EXPECT_NE(valueOnly.canvas.Image(), with.canvas.Image());
}

// A text too wide for the bar drops its unit first, then goes altogether.
TEST(BarSettings, TooWideTextDropsTheUnitThenItself) {
    TBarSettings s;
    s.SetOptions(TBarSettings::BarOption(TBarSettings::opValue) |
                 TBarSettings::BarOption(TBarSettings::opUnit));
    s.ValueText = QStringLiteral("42.0");
    s.UnitText = QString(40, QChar('m'));
    TBarSettings valueOnly;
    valueOnly.SetOptions(TBarSettings::BarOption(TBarSettings::opValue));
    valueOnly.ValueText = s.ValueText;
    TBarSettings plain;
    Painted withUnit(s, 100, 16, 300), justValue(valueOnly, 100, 16, 300),
        bare(plain, 100, 16, 300);
    EXPECT_EQ(withUnit.canvas.Image(), justValue.canvas.Image());
    EXPECT_NE(justValue.canvas.Image(), bare.canvas.Image());
    s.ValueText = QString(30, QChar('8'));
    Painted tooWide(s, 100, 16, 300);
    EXPECT_EQ(tooWide.canvas.Image(), bare.canvas.Image());
}

// The text is drawn while it fits exactly, centred on the bar's middle row.
TEST(BarSettings, TextThatJustFitsIsDrawnCentred) {
    TBarSettings s;
    s.SetOptions(TBarSettings::BarOption(TBarSettings::opValue));
    s.Font()->SetSize(20);
    s.ValueText = QStringLiteral("88");
    TBitmap probe(10, 10);
    probe.Canvas().SetFont(*s.Font());
    const int32_t w = probe.Canvas().TextWidth(s.ValueText);
    TBarSettings plain;
    Painted exact(s, w, 60, 0), bare(plain, w, 60, 0);
    EXPECT_NE(exact.canvas.Image(), bare.canvas.Image());
    int32_t top = 60, bottom = -1;
    for (int32_t y = 0; y < 60; ++y)
        for (int32_t x = 0; x < w; ++x)
            if (exact.at(x, y) != kBk) top = std::min(top, y), bottom = std::max(bottom, y);
    EXPECT_NEAR((top + bottom) / 2.0, 30.0, 4.0);
    int32_t left = w, right = -1;
    for (int32_t y = 0; y < 60; ++y)
        for (int32_t x = 0; x < w; ++x)
            if (exact.at(x, y) != kBk) left = std::min(left, x), right = std::max(right, x);
    EXPECT_NEAR((left + right) / 2.0, w / 2.0, 3.0);
    // The text bitmap is cleared everywhere: the first row and column keep the bar.
    EXPECT_EQ(exact.at(0, 0), kBk);
}

TEST(BarSettings, NothingIsDrawnForAnEmptyRectangle) {
    for (TBarStyle style : {bsBar, bsLED_Bar, bsPoint, bsMultiColor}) {
        TBarSettings s;
        s.SetStyle(style);
        for (const TRect r : {TRect{5, 5, 5, 20}, TRect{5, 5, 20, 5}, TRect{20, 20, 5, 5}}) {
            TBitmap b(30, 30);
            s.BarRect = r;
            s.PaintBar(b.Canvas(), 500);
            EXPECT_EQ(b.Pixel(10, 10), clWhite);
        }
        // Three pixels or fewer: no LED segment, a point marker at the start.
        Painted tiny(s, 3, 3, 1000);
        EXPECT_NE(tiny.at(1, 1), clWhite);
    }
}

TEST(BarSettings, SettersFollowTheirRules) {
    TBarSettings s;
    int changes = 0;
    s.SetOnChange([&](QObject*) { ++changes; });
    s.SetminHeight(0);
    s.SetminWidth(0);
    s.SetminWidth(-3);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(s.minHeight(), 5);
    EXPECT_EQ(s.minWidth(), 5);
    s.SetminHeight(5);  // same value: still notifies
    EXPECT_EQ(changes, 1);
    s.SetminWidth(1);
    s.SetminHeight(1);
    EXPECT_EQ(s.minWidth(), 1);
    EXPECT_EQ(s.minHeight(), 1);
    changes = 0;
    s.SetStyle(TBarStyle(7));
    s.SetStyle(TBarStyle(-1));
    EXPECT_EQ(s.Style(), bsBar);
    s.SetStyle(bsMultiColor);
    s.SetStyle(bsBar);
    EXPECT_EQ(s.Style(), bsBar);
    EXPECT_EQ(changes, 2);
    // Null objects are ignored (the font setter still notifies); others are copied.
    s.SetBevel(nullptr);
    s.SetFont(nullptr);
    EXPECT_EQ(changes, 3);
    TFont big;
    big.SetSize(30);
    s.SetFont(&big);
    EXPECT_EQ(s.Font()->Size(), 30);
    EXPECT_NE(s.Font(), &big);
    TKxSBevel thick;
    thick.SetWidth(5);
    s.SetBevel(&thick);
    EXPECT_EQ(s.Bevel()->Width(), 5);
    changes = 1;
    s.SetBkBrightness(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(s.BkBrightness(), 0.0f);
    EXPECT_EQ(changes, 1);
    s.Bevel()->SetWidth(3);  // nested objects notify the settings
    s.Font()->SetSize(20);
    EXPECT_EQ(changes, 3);
    // Defaults.
    const TBarSettings d;
    EXPECT_EQ(d.Color(), clLime);
    EXPECT_EQ(d.BkColor(), clBlack);
    EXPECT_EQ(d.Font()->Color(), clBtnHighlight);
    EXPECT_EQ(d.Bevel()->Spacing(), 0);
    EXPECT_EQ(d.Bevel()->Color(), clBtnFace);
    EXPECT_EQ(d.Bevel()->Style(), bsLowered);
    EXPECT_EQ(d.Bevel()->Width(), 1);
    EXPECT_EQ(d.Bevel()->BevelLine(), blNone);
}

TEST(BarSettings, AssignCopiesEverySettingOnce) {
    TBarSettings a, b;
    a.SetStyle(bsPoint);
    a.SetOptions(3);
    a.SetColor(clRed);
    a.SetBkColor(clNavy);
    a.SetBkBrightness(25.0f);
    a.SetBkAuto(true);
    a.SetminHeight(17);
    a.Bevel()->SetWidth(4);
    a.Font()->SetSize(14);
    int changes = 0;
    b.SetOnChange([&](QObject*) { ++changes; });
    b.Assign(&a);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(b.Style(), bsPoint);
    EXPECT_EQ(b.Options(), 3);
    EXPECT_EQ(b.Color(), clRed);
    EXPECT_EQ(b.BkColor(), clNavy);
    EXPECT_EQ(b.BkBrightness(), 25.0f);
    EXPECT_TRUE(b.BkAuto());
    EXPECT_EQ(b.minHeight(), 17);
    EXPECT_EQ(b.Bevel()->Width(), 4);
    EXPECT_EQ(b.Font()->Size(), 14);
    b.Font()->SetSize(9);  // still hooked after the copy
    EXPECT_EQ(changes, 2);
    TSectorSettings other;
    EXPECT_THROW(other.Assign(&a), EConvertError);
}

// --- the boxed readout ------------------------------------------------------------------

TEST(ValInd, DrawLaysTheBoxOutAroundTheAnchor) {
    TKxValInd v;
    v.SampleText = QStringLiteral("000.0");
    TBitmap b(300, 200);
    TCanvas& c = b.Canvas();
    c.Brush().SetColor(clSilver);
    c.FillRect(TRect{0, 0, 300, 200});
    c.SetFont(*v.Font());
    const int32_t tw = c.TextWidth(v.SampleText), th = c.TextHeight(QStringLiteral("0"));
    const struct {
        toPos anchor;
        int32_t left, top;
    } cases[] = {
        {toTopLeft, 100, 50},
        {toMidCenter, 100 - (tw + 4) / 2, 50 - (th + 4) / 2},
        {toBotRight, 100 - (tw + 4), 50 - (th + 4)},
    };
    for (const auto& k : cases) {
        SCOPED_TRACE(int(k.anchor));
        v.Draw(c, TPoint{100, 50}, k.anchor);
        EXPECT_EQ(v.BoxRect(), (TRect{k.left, k.top, k.left + tw + 4, k.top + th + 4}));
        EXPECT_EQ(v.TextRect(), (TRect{k.left + 2, k.top + 2, k.left + tw + 2, k.top + th + 2}));
    }
    // Offsets move the block; the sunken bevel is dark on the top and left.
    v.SetOffsetX(10);
    v.SetOffsetY(-5);
    v.Draw(c, TPoint{100, 50}, toTopLeft);
    EXPECT_EQ(v.BoxRect().Left, 110);
    EXPECT_EQ(v.BoxRect().Top, 45);
    EXPECT_EQ(b.Pixel(110, 60), TColor(0x00737373));
    EXPECT_EQ(b.Pixel(v.BoxRect().Right - 1, 60), clWhite);
    EXPECT_EQ(b.Pixel(v.TextRect().Left, v.TextRect().Top), clBlack);
}

TEST(ValInd, CaptionStandsAboveTheBox) {
    TKxValInd v;
    v.Caption()->SetText(QStringLiteral("Flow"));
    TBitmap b(300, 200);
    v.Draw(b.Canvas(), TPoint{50, 40}, toTopLeft);
    b.Canvas().SetFont(*v.Caption()->Font());
    const int32_t ch = b.Canvas().TextHeight(QStringLiteral("Flow"));
    EXPECT_EQ(v.BoxRect().Top, 40 + ch);
    v.Caption()->SetVisible(false);
    v.Draw(b.Canvas(), TPoint{50, 40}, toTopLeft);
    EXPECT_EQ(v.BoxRect().Top, 40);
}

TEST(ValInd, DrawValueRepaintsOnlyTheNumber) {
    TKxValInd v;
    TBitmap b(200, 80);
    v.Draw(b.Canvas(), TPoint{10, 10}, toTopLeft);
    TBitmap before(200, 80);
    before.Assign(b);
    v.DrawValue(b.Canvas(), 12.34);
    const TRect t = v.TextRect();
    int inked = 0;
    for (int32_t y = 0; y < 80; ++y)
        for (int32_t x = 0; x < 200; ++x) {
            const bool inside = x >= t.Left && x < t.Right && y >= t.Top && y < t.Bottom;
            if (!inside) {
                EXPECT_EQ(b.Pixel(x, y), before.Pixel(x, y)) << x << "," << y;
            }
            if (inside && b.Pixel(x, y) == clLime) ++inked;
        }
    EXPECT_GT(inked, 10);
    // Right-aligned: the rightmost ink is within two pixels of the box's right edge.
    int32_t right = -1;
    for (int32_t x = t.Left; x < t.Right; ++x)
        for (int32_t y = t.Top; y < t.Bottom; ++y)
            if (b.Pixel(x, y) == clLime) right = x;
    EXPECT_GE(right, t.Right - 3);
    // Hidden: nothing changes.
    v.SetVisible(false);
    before.Assign(b);
    v.DrawValue(b.Canvas(), 99.9);
    EXPECT_EQ(b.Image(), before.Image());
}

// A number too wide for its box shows as '#' rather than cut to another number.
TEST(ValInd, TooWideNumberShowsHashes) {
    TKxValInd v;
    v.SampleText = QStringLiteral("0.0");
    TBitmap wide(300, 60), hashes(300, 60);
    v.Draw(wide.Canvas(), TPoint{10, 10}, toTopLeft);
    v.Draw(hashes.Canvas(), TPoint{10, 10}, toTopLeft);
    v.DrawValue(wide.Canvas(), 123456.0);
    TBitmap probe(300, 60);
    probe.Canvas().SetFont(*v.Font());
    const int32_t room = v.TextRect().Width() + 1;
    const int32_t n = room / probe.Canvas().TextWidth(QStringLiteral("#"));
    v.SetFormatStr(QStringLiteral("'%1'").arg(QString(n, QChar('#'))));
    v.DrawValue(hashes.Canvas(), 0.0);
    EXPECT_EQ(wide.Image(), hashes.Image());
}

TEST(ValInd, Defaults) {
    TKxValInd v;
    EXPECT_EQ(v.FormatStr(), QStringLiteral("##0.0"));
    EXPECT_EQ(v.Bevel()->ColorFrom(), TColor(0x00737373));
    EXPECT_EQ(v.Bevel()->ColorTo(), clWhite);
    EXPECT_EQ(v.Bevel()->Width(), 2);
    EXPECT_EQ(v.Color(), clBlack);
    EXPECT_EQ(v.Font()->Name(), QStringLiteral("Arial"));
    EXPECT_EQ(v.Font()->Size(), 10);
    EXPECT_EQ(v.Font()->Style(), fsBold);
    EXPECT_EQ(v.Font()->Color(), clLime);
    EXPECT_TRUE(v.Visible());
    int changes = 0;
    v.SetOnChange([&](QObject*) { ++changes; });
    v.Caption()->SetText(QStringLiteral("x"));
    v.TxtSpacing()->SetLeft(2);
    v.Font()->SetSize(12);
    v.Bevel()->SetWidth(3);
    EXPECT_EQ(changes, 4);
}

}  // namespace
}  // namespace kx
