// The LED: layout per lamp position, what a status change and a blink phase draw.
#include <gtest/gtest.h>

#include <QWidget>
#include <functional>

#include "binary_fixture.h"
#include "common/test_env.h"
#include "kx/binary/kxled.h"
#include "kx/host/recordingcanvas.h"

namespace kx {
namespace {

using LED = test::BinaryFixture;

struct TLayoutCase {
    TKxLED::TLEDPos pos;
    TLEDShape shape;
    int32_t w, h;
    int32_t width, height;
    TRect lamp;
    TPoint caption;
    toPos anchor;
};

TEST_F(LED, LayoutPerPosition) {
    const TLayoutCase cases[] = {
        {lpLeft, sRound, 13, 13, 73, 33, {0, 10, 13, 23}, {18, 16}, toMidLeft},
        {lpRight, sRound, 13, 13, 73, 33, {60, 10, 73, 23}, {55, 16}, toMidRight},
        {lpTop, sRound, 13, 13, 73, 33, {30, 0, 43, 13}, {36, 18}, toTopCenter},
        {lpBottom, sRound, 13, 13, 73, 33, {30, 20, 43, 33}, {36, 15}, toBotCenter},
        // A round lamp is a circle at its larger side; other shapes keep both sizes.
        {lpLeft, sRound, 13, 20, 73, 33, {0, 6, 20, 26}, {25, 16}, toMidLeft},
        {lpLeft, sRectangle, 13, 20, 73, 33, {0, 6, 13, 26}, {18, 16}, toMidLeft},
        {lpTop, sArrowUp, 20, 9, 40, 40, {10, 0, 30, 9}, {20, 14}, toTopCenter},
        // A control smaller than its lamp keeps the lamp's size (it is cut at the edge).
        {lpBottom, sRound, 30, 30, 10, 10, {-10, -20, 20, 10}, {5, -25}, toBotCenter},
    };
    for (const auto& t : cases) {
        TKxLED led(&form_);
        led.SetBounds(0, 0, t.width, t.height);
        led.SetLED_Position(t.pos);
        led.LED()->SetShape(t.shape);
        led.LED()->SetWidth(t.w);
        led.LED()->SetHeight(t.h);
        const auto l = led.Layout();
        EXPECT_EQ(l.Lamp, t.lamp) << t.pos << " " << t.shape;
        EXPECT_EQ(l.CaptionAt, t.caption) << t.pos << " " << t.shape;
        EXPECT_EQ(l.CaptionPos, t.anchor) << t.pos;
        led.PaintToSurface();
        EXPECT_EQ(led.LED()->Rect, t.lamp);
    }
}

TEST_F(LED, SpacingAndPositionAreValidatedAndRepaint) {
    TKxLED led(&form_);
    EXPECT_EQ(led.width(), 73);
    EXPECT_EQ(led.height(), 33);
    EXPECT_EQ(led.Spacing(), 5);
    EXPECT_EQ(led.LED_Position(), lpLeft);
    EXPECT_EQ(led.focusPolicy(), Qt::NoFocus);
    led.PaintToSurface();
    led.SetRedrawNeeded(false);
    led.SetSpacing(5);
    EXPECT_FALSE(led.RedrawNeeded());
    led.SetSpacing(-3);
    EXPECT_TRUE(led.RedrawNeeded());
    led.SetRedrawNeeded(false);
    led.SetLED_Position(lpLeft);
    EXPECT_FALSE(led.RedrawNeeded());
    led.SetLED_Position(lpTop);
    EXPECT_TRUE(led.RedrawNeeded());
    led.SetLED_Position(lpLeft);
    EXPECT_EQ(led.Layout().CaptionAt, (TPoint{10, 16}));
    led.SetLED_Position(TKxLED::TLEDPos(4));
    EXPECT_EQ(led.LED_Position(), lpLeft);
}

TEST_F(LED, TwoLineCaptionIsCentredAsABlock) {
    TKxLED led(&form_);
    led.SetCaption("Pump|on");
    TRecordingCanvas rec(&led.SurfaceImage());
    led.SetCanvas(&rec);
    led.PaintToSurface();
    const auto text = rec.CallsOf("TextOut");
    ASSERT_EQ(text.size(), 2u);
    // Two lines of 13 pixels around cy = 16: line centres at 16 - 13 div 2 and 13 lower,
    // so the block covers rows 4..29.
    EXPECT_EQ(text[0].Text, "Pump");
    EXPECT_EQ(text[0].Args[1], 4);
    EXPECT_EQ(text[1].Text, "on");
    EXPECT_EQ(text[1].Args[1], 17);
    EXPECT_EQ(text[0].Args[0], 18);
    EXPECT_EQ(led.CaptionHeight(), 26);
    EXPECT_EQ(text[0].BrushStyle, bsClear);
    led.SetCanvas(nullptr);
}

TEST_F(LED, StatusAndBlinkCopyTheLampAlone) {
    TKxLED led(&form_);
    led.setObjectName("Lamp");
    TRecordingCanvas rec(&led.SurfaceImage());
    led.SetCanvas(&rec);
    led.PaintToSurface();
    const TMessage dark{KX_WM_FLASH, 0, 0, 0}, bright{KX_WM_FLASH, 0, 1, 0};
    const struct {
        std::function<void()> act;
        TColor centre;
    } steps[] = {
        {[&] { led.SetChecked(true); }, clLime},
        {[&] {
             TMessage m = dark;
             led.WMFlash(m);
         },
         clBtnFace},
        {[&] {
             TMessage m = bright;
             led.WMFlash(m);
         },
         clLime},
        {[&] { led.SetChecked(false); }, clBtnFace},
    };
    const QImage before = led.Surface().Image().copy();
    for (const auto& s : steps) {
        rec.ClearCalls();
        s.act();
        ASSERT_EQ(rec.Calls().size(), 1u);
        EXPECT_EQ(rec.Calls()[0].Op, "CopyRect");
        const auto& a = rec.Calls()[0].Args;
        EXPECT_EQ(std::vector<int32_t>(a.begin(), a.begin() + 4),
                  (std::vector<int32_t>{0, 10, 14, 24}));
        EXPECT_EQ(led.Surface().Pixel(6, 16), ColorToRGB(s.centre));
    }
    // Back where it started: the lamp pictures hold exactly what Paint drew.
    EXPECT_EQ(led.Surface().Image(), before);
    // Hidden or in an update phase nothing is drawn.
    led.hide();
    rec.ClearCalls();
    led.SetChecked(true);
    EXPECT_TRUE(rec.Calls().empty());
    led.show();
    led.BeginUpdate();
    led.SetChecked(false);
    EXPECT_TRUE(rec.Calls().empty());
    led.SetCanvas(nullptr);
}

TEST_F(LED, LampPicturesMatchALampDrawnInPlace) {
    for (TLEDShape shape : {sRound, sArrowUp, sRectangle, sDiamondLeft, sDiamondRight})
        for (bool on : {false, true}) {
            TKxLED led(&form_);
            led.SetCaption("Lamp");
            led.LED()->SetShape(shape);
            led.LED()->SetWidth(20);
            led.SetChecked(!on);
            led.PaintToSurface();
            // The lamp drawn directly over the other state's picture.
            TBitmap expected(led.width(), led.height());
            expected.Canvas().SetCopyMode(cmSrcCopy);
            expected.Canvas().CopyRect(led.ClientRect(), led.Canvas(), led.ClientRect());
            led.LED()->Draw(expected.Canvas(), on);
            led.SetChecked(on);
            EXPECT_EQ(led.Surface().Image(), expected.Image()) << shape << on;
        }
}

// A canvas that delivers a blink phase while the LED paints its caption.
class TInterruptingCanvas : public TRecordingCanvas {
  public:
    using TRecordingCanvas::TRecordingCanvas;
    TKxLED* led = nullptr;
    void TextOut(int32_t x, int32_t y, const QString& text) override {
        TRecordingCanvas::TextOut(x, y, text);
        TMessage m{KX_WM_FLASH, 0, 0, 0};
        if (led) led->WMFlash(m);
    }
};

TEST_F(LED, BlinkDuringPaintDrawsNothing) {
    TKxLED led(&form_);
    led.SetCaption("x");
    led.SetChecked(true);
    led.PaintToSurface();  // lamp pictures exist from here on
    TInterruptingCanvas rec(&led.SurfaceImage());
    rec.led = &led;
    led.SetCanvas(&rec);
    led.Invalidate();
    led.PaintToSurface();
    ASSERT_EQ(rec.CallsOf("TextOut").size(), 1u);
    EXPECT_EQ(rec.CallsOf("CopyRect").size(), 1u);  // the lit lamp, once, after the caption
    EXPECT_EQ(led.Surface().Pixel(6, 16), ColorToRGB(clLime));
    led.SetCanvas(nullptr);
}

TEST_F(LED, BlinkServiceFlipsTheLampPixels) {
    TKxLED led(&form_);
    led.SetCaption("");
    led.SetFrequency(ff8Hz);
    led.SetFlashing(true);
    led.SetChecked(true);
    led.PaintToSurface();
    const auto centre = [&] { return led.Surface().Pixel(6, 16); };
    EXPECT_EQ(centre(), ColorToRGB(clLime));
    // ff8Hz follows bit 2 of the tick counter: lit at 4..7, dark at 8..11, lit from 12.
    SetFlashTickCounter(3);
    RunFlashTick();
    EXPECT_EQ(centre(), ColorToRGB(clLime));
    for (int i = 0; i < 4; ++i)
        RunFlashTick();
    EXPECT_EQ(centre(), ColorToRGB(clBtnFace));
    for (int i = 0; i < 4; ++i)
        RunFlashTick();
    EXPECT_EQ(centre(), ColorToRGB(clLime));
    // Outside the lamp the surface stays transparent.
    EXPECT_EQ(qAlpha(led.Surface().Image().pixel(40, 16)), 0);
}

TEST_F(LED, LampPropertiesRepaintAndCopy) {
    TKxLED led(&form_);
    led.PaintToSurface();
    led.SetRedrawNeeded(false);
    led.LED()->SetColorOn(clRed);
    EXPECT_TRUE(led.RedrawNeeded());
    TLED other;
    other.SetShape(sDiamondLeft);
    other.SetWidth(30);
    led.SetLED(&other);
    EXPECT_EQ(led.LED()->Shape(), sDiamondLeft);
    EXPECT_EQ(led.LED()->Width(), 30);
    led.setLED_Shape(99);
    EXPECT_EQ(led.LED_Shape(), int(sDiamondLeft));
    led.SetLED(nullptr);
    EXPECT_EQ(led.LED()->Width(), 30);
}

}  // namespace
}  // namespace kx
