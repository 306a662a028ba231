// Composing moving parts on a work copy of a background: which areas a composition
// restores and puts, where they land, and the extreme markers' fill rule.
#include "kx/framework/areacomposer.h"

#include <gtest/gtest.h>

#include <vector>

#include "../common/pixels.h"
#include "kx/framework/analogcontrol.h"
#include "kx/framework/control.h"
#include "kx/framework/minmax.h"
#include "kx/framework/sectorsettings.h"

namespace kx {
namespace {

void fill(TBitmap& b, TColor c, const TRect& r) {
    b.Canvas().Brush().SetStyle(bsSolid);
    b.Canvas().Brush().SetColor(c);
    b.Canvas().FillRect(r);
}

TEST(AreaComposer, ReusesTheWorkBitmapOnlyWhileItStillFits) {
    TKxGraphicControl control;
    TBitmap background(20, 10);
    TKxAreaComposer composer;
    enum Step { kBegin, kBeginWhole, kInvalidate, kResize };
    struct Case {
        Step step;
        bool reuse;
    } steps[] = {
        {kBegin, false},  // nothing composed yet
        {kBegin, true},       {kBegin, true},
        {kBeginWhole, false},  // asked for the whole background
        {kBegin, true},       {kInvalidate, false},
        {kBegin, true},       {kResize, false},  // the background changed size
        {kBegin, true},
    };
    int i = 0;
    for (const auto& s : steps) {
        bool reuse = false;
        switch (s.step) {
            case kBegin:
                reuse = composer.Begin(control, background);
                break;
            case kBeginWhole:
                reuse = composer.Begin(control, background, true);
                break;
            case kInvalidate:
                composer.Invalidate();
                reuse = composer.Begin(control, background);
                break;
            case kResize:
                background.SetSize(21, 10);
                reuse = composer.Begin(control, background);
                break;
        }
        EXPECT_EQ(reuse, s.reuse) << "step " << i;
        ++i;
    }
}

// The work bitmap is left with a red square from a first composition; what the next
// composition restores from the blue background and puts on a black target at (5, 5).
TEST(AreaComposer, RestoresAndPutsOnlyTheMarkedAreasClipped) {
    TKxGraphicControl control;
    TBitmap background(20, 10);
    fill(background, clBlue, TRect{0, 0, 20, 10});
    struct Case {
        std::vector<TRect> areas;
        TRect put;    // where blue reaches the target
        TColor at11;  // the work bitmap at (1, 1) after the restore
    } cases[] = {
        {{TRect{10, 2, 12, 4}}, TRect{15, 7, 17, 9}, clRed},
        // Clipped to the background.
        {{TRect{18, 8, 25, 15}}, TRect{23, 13, 25, 15}, clRed},
        {{TRect{-4, -4, 2, 2}}, TRect{5, 5, 7, 7}, clBlue},
        // Empty areas are dropped; two areas are both put.
        {{TRect{3, 3, 3, 9}, TRect{0, 0, 1, 1}, TRect{19, 9, 20, 10}}, TRect{5, 5, 25, 15}, clRed},
        {{}, TRect{30, 20, 0, 0}, clRed},
    };
    for (const auto& c : cases) {
        TKxAreaComposer composer;
        ASSERT_FALSE(composer.Begin(control, background));
        fill(background, clBlue, TRect{0, 0, 20, 10});
        TCanvas& first = composer.Restore(background);
        first.Brush().SetColor(clRed);
        first.FillRect(TRect{0, 0, 20, 10});
        ASSERT_TRUE(composer.Begin(control, background));
        for (const TRect& r : c.areas)
            composer.Add(r);
        TCanvas& w = composer.Restore(background);
        EXPECT_EQ(w.Pixel(1, 1), c.at11) << c.areas.size();
        TBitmap target(30, 20);
        fill(target, clBlack, TRect{0, 0, 30, 20});
        composer.Put(target.Canvas(), TPoint{5, 5});
        EXPECT_EQ(test::InkBounds(target, clBlack), c.put) << c.areas.size();
        // Nothing red reaches the target: only restored areas are put.
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 30; ++x)
                ASSERT_NE(target.Pixel(x, y), clRed) << x << "," << y;
    }
}

TEST(AreaComposer, AFirstCompositionPutsTheWholeBackground) {
    TKxGraphicControl control;
    TBitmap background(6, 4);
    fill(background, clLime, TRect{0, 0, 6, 4});
    TKxAreaComposer composer;
    EXPECT_FALSE(composer.Begin(control, background));
    composer.Add(TRect{0, 0, 1, 1});  // adds to the whole, changes nothing
    composer.Restore(background);
    TBitmap target(10, 10);
    fill(target, clBlack, TRect{0, 0, 10, 10});
    composer.Put(target.Canvas(), TPoint{2, 3});
    EXPECT_EQ(test::InkBounds(target, clBlack), (TRect{2, 3, 8, 7}));
}

TEST(AreaComposer, MinMaxMarkersFillOnlyTheShownOnes) {
    // Two triangles side by side; (4, 4) and (24, 4) lie inside them.
    const TPoint m[6] = {TPoint{2, 2},  TPoint{12, 2}, TPoint{2, 12},
                         TPoint{22, 2}, TPoint{32, 2}, TPoint{22, 12}};
    struct Case {
        bool minShown, maxShown;
        TColor inMin, inMax, minVertex;
    } cases[] = {
        {true, true, clYellow, clAqua, clBlack},
        {true, false, clYellow, clWhite, clBlack},
        {false, true, clWhite, clAqua, clWhite},
        {false, false, clWhite, clWhite, clWhite},
    };
    for (const auto& c : cases) {
        TBitmap b(40, 20);
        fill(b, clWhite, TRect{0, 0, 40, 20});
        b.Canvas().Pen().SetColor(clRed);
        b.Canvas().Pen().SetMode(pmXor);
        KxPaintMinMaxMarkers(b.Canvas(), m, c.minShown, clYellow, c.maxShown, clAqua);
        EXPECT_EQ(b.Pixel(4, 4), c.inMin) << c.minShown << c.maxShown;
        EXPECT_EQ(b.Pixel(24, 4), c.inMax) << c.minShown << c.maxShown;
        EXPECT_EQ(b.Pixel(2, 2), c.minVertex) << c.minShown << c.maxShown;
        // The outline pen is left set for the parts drawn next.
        EXPECT_EQ(b.Canvas().Pen().Color(), clBlack);
        EXPECT_EQ(b.Canvas().Pen().Mode(), pmCopy);
    }
}

TEST(MarkerColor, SectorColourOnlyWithUseSectorColAndInsideASector) {
    TKxAnalogGControl c;
    TSectorSettings& s = *c.SectorSettings();
    s.SetSector1From(0);
    s.SetSector1To(200);
    s.SetSector1Color(clYellow);
    s.SetSector2From(500);
    s.SetSector2To(800);
    s.SetSector2Color(clGreen);
    s.SetSector3From(700);  // overlaps sector 2: the later sector wins
    s.SetSector3To(1000);
    s.SetSector3Color(clRed);
    struct Case {
        bool useSectorCol;
        int32_t ppt;
        TColor expected;
    } cases[] = {
        {false, 100, clPurple}, {false, 900, clPurple}, {true, 0, clYellow},
        {true, 200, clYellow},  {true, 201, clPurple},  {true, 499, clPurple},
        {true, 500, clGreen},   {true, 700, clRed},     {true, 1000, clRed},
        {true, -1, clPurple},   {true, 1001, clPurple},
    };
    for (const auto& k : cases) {
        c.MinMax()->SetUseSectorCol(k.useSectorCol);
        EXPECT_EQ(c.MarkerColor(k.ppt, clPurple), k.expected) << k.useSectorCol << " " << k.ppt;
    }
}

}  // namespace
}  // namespace kx
