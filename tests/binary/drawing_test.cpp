// Exact drawing of the binary elements, through a recording canvas with fixed text
// metrics (7 pixels per character, 13 per line): lever geometry, what the static and the
// moving parts draw, captions and their shortening, the colour bit button's face.
#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>
#include <functional>
#include <memory>

#include "binary_fixture.h"
#include "common/test_env.h"
#include "kx/binary/colbitbtn.h"
#include "kx/binary/kxled.h"
#include "kx/binary/leverswitch.h"
#include "kx/binary/rockerswitch.h"
#include "kx/drawing/colors.h"
#include "kx/drawing/geometry.h"
#include "kx/host/recordingcanvas.h"

namespace kx {
namespace {

// The protected drawing steps, opened for the tests.
class TToggle : public TKxToggleSwitch {
  public:
    using TKxLeverSwitch::PaintMoving;
    using TKxLeverSwitch::PaintStatic;
    using TKxToggleSwitch::TKxToggleSwitch;
};
class TRocker : public TKxRockerSwitch {
  public:
    using TKxRockerSwitch::PaintMoving;
    using TKxRockerSwitch::PaintStatic;
    using TKxRockerSwitch::TKxRockerSwitch;
};

std::vector<int32_t> ArgsOf(const TCanvasCall& c) {
    return c.Args;
}

class BinaryDrawing : public test::BinaryFixture {
  protected:
    TRecordingCanvas rec_;
};

struct TLeverCase {
    const char* name;
    bool vertical;
    TRect body;
    QString on, off;
    TRect plate;
    TPoint centre;
    int32_t nut, ball, reach;
    bool legendOn, legendOff;
    TPoint ballOn, ballOff;
};

TEST_F(BinaryDrawing, LeverGeometry) {
    const TLeverCase cases[] = {
        // Both legends fit beside the lever: the ball stops one pixel short of them.
        {"upright",
         true,
         {0, 0, 45, 77},
         "ON",
         "OFF",
         {2, 2, 43, 75},
         {22, 38},
         10,
         7,
         13,
         true,
         true,
         {22, 25},
         {22, 51}},
        // Across, the wider legend ("OFF", 21 pixels) sets the reach for both ends.
        {"across",
         false,
         {0, 0, 92, 40},
         "ON",
         "OFF",
         {2, 2, 90, 38},
         {46, 20},
         9,
         6,
         14,
         true,
         true,
         {60, 20},
         {32, 20}},
        // Legends would keep the ball inside the nut: they are left out.
        {"short",
         true,
         {0, 0, 30, 40},
         "ON",
         "OFF",
         {2, 2, 28, 38},
         {15, 20},
         6,
         4,
         13,
         false,
         false,
         {15, 7},
         {15, 33}},
        // A legend wider than the plate is left out, the other one stays.
        {"wide legend",
         true,
         {0, 0, 45, 77},
         "ONWARDS",
         "OFF",
         {2, 2, 43, 75},
         {22, 38},
         10,
         7,
         13,
         false,
         true,
         {22, 25},
         {22, 51}},
        // No legends: the lever uses the whole half.
        {"no legends",
         true,
         {0, 0, 45, 77},
         "",
         "",
         {2, 2, 43, 75},
         {22, 38},
         10,
         7,
         28,
         false,
         false,
         {22, 10},
         {22, 66}},
        // Tiny: minimum radii, the ball's centre on the nut's rim.
        {"tiny",
         false,
         {0, 0, 8, 8},
         "ON",
         "OFF",
         {2, 2, 6, 6},
         {4, 4},
         2,
         2,
         2,
         false,
         false,
         {6, 4},
         {2, 4}},
        // Legends that leave the ball's centre exactly on the nut's rim stay.
        {"rim",
         true,
         {0, 0, 28, 56},
         "ON",
         "OFF",
         {2, 2, 26, 54},
         {14, 28},
         6,
         4,
         6,
         true,
         true,
         {14, 22},
         {14, 34}},
        // An offset body moves everything with it.
        {"offset",
         true,
         {10, 20, 55, 97},
         "ON",
         "OFF",
         {12, 22, 53, 95},
         {32, 58},
         10,
         7,
         13,
         true,
         true,
         {32, 45},
         {32, 71}},
    };
    for (const auto& t : cases) {
        TToggle s(&form_);
        s.SetOrientation(t.vertical ? orVertical : orHorizontal);
        s.SetCaptionOn(t.on);
        s.SetCaptionOff(t.off);
        const auto g = s.Geometry(rec_, t.body);
        EXPECT_EQ(g.Plate, t.plate) << t.name;
        EXPECT_EQ(g.Centre, t.centre) << t.name;
        EXPECT_EQ(g.NutRadius, t.nut) << t.name;
        EXPECT_EQ(g.BallRadius, t.ball) << t.name;
        EXPECT_EQ(g.Reach, t.reach) << t.name;
        EXPECT_EQ(g.LegendOn, t.legendOn) << t.name;
        EXPECT_EQ(g.LegendOff, t.legendOff) << t.name;
        EXPECT_EQ(s.BallCentre(g, true), t.ballOn) << t.name;
        EXPECT_EQ(s.BallCentre(g, false), t.ballOff) << t.name;
    }
}

TEST_F(BinaryDrawing, LeverStaticPartsAndLever) {
    TToggle s(&form_);
    s.SetColor(clSilver);
    s.PaintStatic(rec_, TRect{0, 0, 45, 77});
    // The plate, the legends at the ends, the nut and its hole.
    const auto rects = rec_.CallsOf("Rectangle");
    ASSERT_FALSE(rects.empty());
    EXPECT_EQ(ArgsOf(rects[0]), (std::vector<int32_t>{0, 0, 45, 77}));
    EXPECT_EQ(rects[0].BrushColor, clSilver);
    EXPECT_EQ(rec_.Log("TextOut"), (QStringList{"TextOut(15,3,'ON')", "TextOut(12,61,'OFF')"}));
    const auto ellipses = rec_.CallsOf("Ellipse");
    ASSERT_GE(ellipses.size(), 2u);
    EXPECT_EQ(ArgsOf(ellipses.front()), (std::vector<int32_t>{12, 28, 33, 49}));
    EXPECT_EQ(ArgsOf(ellipses.back()), (std::vector<int32_t>{17, 33, 28, 44}));
    EXPECT_EQ(ellipses.back().BrushColor, clBlack);

    for (bool on : {true, false}) {
        rec_.ClearCalls();
        s.SetChecked(on);
        s.PaintMoving(rec_, TRect{0, 0, 45, 77});
        const auto bar = rec_.CallsOf("Polygon");
        ASSERT_EQ(bar.size(), 1u);
        const int32_t tipY = on ? 25 : 51;
        EXPECT_EQ(ArgsOf(bar[0]), (std::vector<int32_t>{16, 38, 28, 38, 26, tipY, 18, tipY}));
        EXPECT_EQ(bar[0].BrushColor, RGB(200, 200, 200));
        const auto knob = rec_.CallsOf("Ellipse");
        ASSERT_FALSE(knob.empty());
        EXPECT_EQ(ArgsOf(knob.front()), (std::vector<int32_t>{15, tipY - 7, 30, tipY + 8}));
        EXPECT_EQ(knob.back().BrushColor, on ? clLime : clBtnFace);
    }
    // Across, the lever runs sideways; on a tiny plate it is at least a pixel each side.
    s.SetOrientation(orHorizontal);
    s.SetChecked(true);
    rec_.ClearCalls();
    s.PaintMoving(rec_, TRect{0, 0, 92, 40});
    EXPECT_EQ(ArgsOf(rec_.CallsOf("Polygon").at(0)),
              (std::vector<int32_t>{46, 14, 46, 26, 60, 24, 60, 16}));
    rec_.ClearCalls();
    s.PaintMoving(rec_, TRect{0, 0, 8, 8});
    EXPECT_EQ(ArgsOf(rec_.CallsOf("Polygon").at(0)),
              (std::vector<int32_t>{4, 3, 4, 5, 6, 5, 6, 3}));
}

TEST_F(BinaryDrawing, RockerHalvesAndLegends) {
    TRocker r(&form_);
    r.SetColor(clSilver);
    r.SetColorOn(clRed);
    r.PaintStatic(rec_, TRect{0, 0, 37, 48});
    EXPECT_EQ(ArgsOf(rec_.CallsOf("Rectangle").at(0)), (std::vector<int32_t>{0, 0, 37, 48}));
    EXPECT_EQ(rec_.CallsOf("Rectangle").at(0).BrushColor, clSilver);
    for (bool on : {false, true}) {
        r.SetChecked(on);
        rec_.ClearCalls();
        r.PaintMoving(rec_, TRect{0, 0, 37, 48});
        const auto faces = rec_.CallsOf("Rectangle");
        ASSERT_EQ(faces.size(), 2u);
        EXPECT_EQ(ArgsOf(faces[0]), (std::vector<int32_t>{2, 2, 35, 24}));
        EXPECT_EQ(ArgsOf(faces[1]), (std::vector<int32_t>{2, 24, 35, 46}));
        // The pressed half is darker and its legend one pixel down and right.
        const TColor onFace = on ? KxSetBrightness(clRed, 80.0f) : clBtnFace;
        const TColor offFace = on ? clSilver : KxSetBrightness(ColorToRGB(clSilver), 80.0f);
        EXPECT_EQ(faces[0].BrushColor, onFace);
        EXPECT_EQ(faces[1].BrushColor, offFace);
        const int32_t onShift = on ? 1 : 0, offShift = on ? 0 : 1;
        EXPECT_EQ(
            rec_.Log("TextOut"),
            (QStringList{QString("TextOut(%1,%2,'I')").arg(15 + onShift).arg(7 + onShift),
                         QString("TextOut(%1,%2,'O')").arg(15 + offShift).arg(29 + offShift)}));
    }
    // A legend that does not fit its half is left out.
    r.SetCaptionOn("MAINS ON");
    rec_.ClearCalls();
    r.PaintMoving(rec_, TRect{0, 0, 37, 48});
    EXPECT_EQ(rec_.Log("TextOut").size(), 1);
}

TEST_F(BinaryDrawing, SwitchCaptionAndBody) {
    const struct {
        QString caption;
        QSize size;
        TRect body;
        QStringList text;
        int32_t charWidth = 7;
    } cases[] = {
        {"Pump", {41, 65}, {2, 2, 39, 48}, {"TextOut(6,50,'Pump')"}},
        {"Main|pump", {41, 65}, {2, 2, 39, 35}, {"TextOut(6,37,'Main')", "TextOut(6,50,'pump')"}},
        // Too wide: shortened to the control's width less the margins.
        {"Main pump", {41, 65}, {2, 2, 39, 48}, {QString::fromUtf8("TextOut(3,50,'Main\u2026')")}},
        // Just too wide for the 37 pixels between the margins (5-pixel characters).
        {"Pumpwork",
         {41, 65},
         {2, 2, 39, 48},
         {QString::fromUtf8("TextOut(3,50,'Pumpwo\u2026')")},
         5},
        // Too low for caption and body: no caption.
        {"Pump", {41, 24}, {2, 2, 39, 22}, {}},
        {"", {41, 65}, {2, 2, 39, 63}, {}},
    };
    for (const auto& t : cases) {
        TKxRockerSwitch r(&form_);
        r.SetCaption(t.caption);
        r.SetBounds(0, 0, t.size.width(), t.size.height());
        TRecordingCanvas rec(&r.SurfaceImage());
        rec.CharWidth = t.charWidth;
        r.SetCanvas(&rec);
        r.PaintToSurface();
        EXPECT_EQ(r.BodyRect(), t.body) << t.caption.toStdString();
        EXPECT_EQ(rec.Log("TextOut"), t.text) << t.caption.toStdString();
        r.SetCanvas(nullptr);
    }
}

TEST_F(BinaryDrawing, ColourBitButtonFaceCaptionAndBevel) {
    const struct {
        bool checked;
        int32_t bevel;
        QString caption;
        TRect face;
        TColor faceColor;
        QStringList text;
    } cases[] = {
        {false, 2, "Auto", {2, 2, 73, 23}, clBtnFace, {"TextOut(23,6,'Auto')"}},
        {true, 2, "Auto", {2, 2, 73, 23}, clLime, {"TextOut(24,7,'Auto')"}},
        {false, 0, "Auto", {0, 0, 75, 25}, clBtnFace, {"TextOut(23,6,'Auto')"}},
        {false, 8, "Auto", {8, 8, 67, 17}, clBtnFace, {"TextOut(23,6,'Auto')"}},
        {true, 3, "A|B", {3, 3, 72, 22}, clLime, {"TextOut(35,1,'A')", "TextOut(35,14,'B')"}},
        // Wider than the face less a pixel each side: shortened.
        {false,
         2,
         "Operating mode",
         {2, 2, 73, 23},
         clBtnFace,
         {QString::fromUtf8("TextOut(6,6,'Operatin\u2026')")}},
    };
    for (const auto& t : cases) {
        TKxColBitBtn b(&form_);
        b.SetCaption(t.caption);
        b.SetBevelWidth(t.bevel);
        b.SetChecked(t.checked);
        TRecordingCanvas rec(&b.SurfaceImage());
        b.SetCanvas(&rec);
        b.PaintToSurface();
        EXPECT_EQ(b.FaceRect(), t.face) << t.caption.toStdString();
        const auto fills = rec.CallsOf("FillRect");
        ASSERT_FALSE(fills.empty());
        EXPECT_EQ(ArgsOf(fills[0]),
                  (std::vector<int32_t>{t.face.Left, t.face.Top, t.face.Right, t.face.Bottom}));
        EXPECT_EQ(fills[0].BrushColor, t.faceColor);
        EXPECT_EQ(rec.Log("TextOut"), t.text) << t.caption.toStdString();
        b.SetCanvas(nullptr);
    }
}

TEST_F(BinaryDrawing, ColourBitButtonRedrawsOnColourChangesOnly) {
    TKxColBitBtn b(&form_);
    b.SetChecked(true);
    TRecordingCanvas rec(&b.SurfaceImage());
    b.SetCanvas(&rec);
    b.PaintToSurface();
    const struct {
        std::function<void()> act;
        size_t fills;  // face fills drawn at once
        bool repaint;  // a full repaint requested
        TColor face;
    } steps[] = {
        {[&] { b.SetColorOn(clLime); }, 0, false, clLime},
        {[&] { b.SetColorOn(clRed); }, 1, false, clRed},
        {[&] { b.SetColorOff(clBtnFace); }, 0, false, clRed},
        {[&] { b.SetColorOff(clYellow); }, 1, false, clRed},
        {[&] { b.SetBevelWidth(2); }, 0, false, clRed},
        {[&] { b.SetBevelWidth(4); }, 0, true, clRed},
        {[&] { b.SetChecked(false); }, 1, false, clYellow},
        {[&] { b.SetCaption("x"); }, 0, true, clYellow},
    };
    for (size_t i = 0; i < std::size(steps); ++i) {
        b.PaintToSurface();
        b.SetRedrawNeeded(false);
        rec.ClearCalls();
        steps[i].act();
        const auto fills = rec.CallsOf("FillRect");
        EXPECT_EQ(fills.size(), steps[i].fills) << i;
        if (!fills.empty()) {
            EXPECT_EQ(fills[0].BrushColor, steps[i].face) << i;
        }
        EXPECT_EQ(b.RedrawNeeded(), steps[i].repaint) << i;
        EXPECT_EQ(b.FaceColor(), steps[i].face) << i;
    }
    b.SetCanvas(nullptr);
}

TEST_F(BinaryDrawing, LedCaptionShortenedToItsSide) {
    const struct {
        TKxLED::TLEDPos pos;
        int32_t width;
        QString text;
    } cases[] = {
        {lpLeft, 73, "Pump"},                          // 18 + 28 <= 73
        {lpLeft, 40, QString::fromUtf8("Pu\u2026")},   // room 22
        {lpRight, 40, QString::fromUtf8("Pu\u2026")},  // room 22
        {lpTop, 20, QString::fromUtf8("P\u2026")},     // room 20
        {lpBottom, 28, "Pump"},
    };
    for (const auto& t : cases) {
        TKxLED led(&form_);
        led.SetCaption("Pump");
        led.SetLED_Position(t.pos);
        led.SetBounds(0, 0, t.width, 40);
        TRecordingCanvas rec(&led.SurfaceImage());
        led.SetCanvas(&rec);
        led.PaintToSurface();
        const auto text = rec.CallsOf("TextOut");
        ASSERT_EQ(text.size(), 1u) << t.pos;
        EXPECT_EQ(text[0].Text, t.text) << t.pos << " " << t.width;
        led.SetCanvas(nullptr);
    }
}

TEST_F(BinaryDrawing, ColourBitButtonBevelFocusAndClippedCaption) {
    form_.resize(200, 100);
    TKxColBitBtn b(&form_);
    b.SetCaption("");
    form_.show();
    b.PaintToSurface();
    const TColor raised = b.Surface().Pixel(0, 0);
    b.SetChecked(true);
    const TColor lowered = b.Surface().Pixel(0, 0);
    // Light at the top left while up, dark while down.
    const auto brightness = [](TColor c) { return GetRValue(c) + GetGValue(c) + GetBValue(c); };
    EXPECT_GT(brightness(raised), 3 * 128);
    EXPECT_LT(brightness(lowered), 3 * 128);
    b.SetChecked(false);

    // The focus mark: dots one pixel inside the face while focused, gone afterwards.
    QApplication::setActiveWindow(&form_);
    b.setFocus();
    ASSERT_TRUE(b.hasFocus());
    const TRect f = b.FaceRect();
    EXPECT_EQ(b.Surface().Pixel(f.Left + 1, f.Top + 1), clBlack);
    EXPECT_EQ(b.Surface().Pixel(f.Left + 2, f.Top + 1), ColorToRGB(clBtnFace));
    EXPECT_EQ(b.Surface().Pixel(f.Right - 2, f.Bottom - 2), clBlack);
    b.clearFocus();
    EXPECT_EQ(b.Surface().Pixel(f.Left + 1, f.Top + 1), ColorToRGB(clBtnFace));

    // A caption higher than the face leaves the frame untouched.
    b.SetBevelWidth(8);
    b.Invalidate();
    b.PaintToSurface();
    const QImage plain = b.Surface().Image().copy();
    b.SetCaption("W|W|W|W");
    b.PaintToSurface();
    const QImage tall = b.Surface().Image();
    for (int y = 0; y < b.height(); ++y)
        for (int x = 0; x < b.width(); ++x)
            if (!KxInRect(x, y, b.FaceRect())) {
                ASSERT_EQ(tall.pixel(x, y), plain.pixel(x, y)) << x << "," << y;
            }
    EXPECT_NE(tall, plain);
}

}  // namespace
}  // namespace kx
