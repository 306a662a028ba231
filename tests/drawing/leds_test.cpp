#include <gtest/gtest.h>

#include "drawing/leds.h"
#include "host/bitmap.h"
#include "host/recordingcanvas.h"

namespace kx {
namespace {

TEST(Leds, OutlinesOfEveryShape) {
    struct Case {
        TLEDShape shape;
        TRect r;
        QString call;
    } cases[] = {
        {sArrowUp, {0, 0, 11, 11}, "Polygon(5,0,10,10,0,10)"},
        {sArrowLeft, {0, 0, 11, 11}, "Polygon(0,5,10,0,10,10)"},
        {sArrowRight, {0, 0, 11, 11}, "Polygon(0,0,10,5,0,10)"},
        {sArrowDown, {0, 0, 11, 11}, "Polygon(0,0,10,0,5,10)"},
        {sRectangle, {0, 0, 11, 11}, "RoundRect(0,0,11,11,1,1)"},
        // The parallelograms reach the right and bottom edges.
        {sDiamondLeft, {0, 0, 11, 11}, "Polygon(0,0,5,0,11,11,5,11)"},
        {sDiamondRight, {0, 0, 11, 11}, "Polygon(5,0,11,0,5,11,0,11)"},
        // Offset and not square: half sizes from each side.
        {sArrowUp, {10, 20, 30, 35}, "Polygon(20,20,29,34,10,34)"},
        {sArrowLeft, {10, 20, 30, 35}, "Polygon(10,27,29,20,29,34)"},
        {sArrowRight, {10, 20, 30, 35}, "Polygon(10,20,29,27,10,34)"},
        {sArrowDown, {10, 20, 30, 35}, "Polygon(10,20,29,20,20,34)"},
        {sDiamondLeft, {10, 20, 30, 35}, "Polygon(10,20,20,20,30,35,20,35)"},
        {sDiamondRight, {10, 20, 30, 35}, "Polygon(20,20,30,20,20,35,10,35)"},
    };
    for (const Case& c : cases) {
        TRecordingCanvas canvas;
        canvas.Pen().SetWidth(3);
        KxDrawLED(canvas, c.r, c.shape, clNavy, clLime);
        ASSERT_EQ(canvas.Calls().size(), 1u) << c.shape;
        const TCanvasCall& call = canvas.Calls()[0];
        EXPECT_EQ(call.ToString(), c.call) << c.shape;
        EXPECT_EQ(call.PenColor, clNavy);
        EXPECT_EQ(call.PenWidth, 1);
        EXPECT_EQ(call.BrushColor, clLime);
    }
}

TEST(Leds, RoundLampHighlight) {
    TRecordingCanvas canvas;
    KxDrawLED(canvas, {10, 20, 50, 60}, sRound, clBtnShadow, clRed);
    // 40 wide: highlight pen 40 div 8 = 5 on the rectangle shrunk by 40 div 5 = 8; the
    // radials come from the unshrunk rectangle.
    EXPECT_EQ(canvas.Log(), (QStringList{"Ellipse(10,20,50,60)", "Arc(18,28,42,52,30,20,10,40)"}));
    const auto& calls = canvas.Calls();
    EXPECT_EQ(calls[0].PenColor, clBtnShadow);
    EXPECT_EQ(calls[0].BrushColor, clRed);
    EXPECT_EQ(calls[1].PenColor, clBtnHighlight);
    EXPECT_EQ(calls[1].PenWidth, 5);
    // The pen stays in the highlight colour and width.
    EXPECT_EQ(canvas.Pen().Color(), clBtnHighlight);
    EXPECT_EQ(canvas.Pen().Width(), 5);
}

TEST(Leds, RoundLampPixels) {
    TBitmap bmp(40, 40);
    KxDrawLED(bmp.Canvas(), {0, 0, 40, 40}, sRound, clBlack, clRed);
    // The reflex lies on the circle of radius 12 about the centre, upper-left only.
    const TColor highlight = ColorToRGB(clBtnHighlight);
    ASSERT_NE(highlight, clRed);
    EXPECT_EQ(bmp.Pixel(11, 11), highlight);  // 135 degrees, on the arc
    EXPECT_EQ(bmp.Pixel(20, 8), highlight);   // twelve o'clock end
    EXPECT_EQ(bmp.Pixel(8, 20), highlight);   // nine o'clock end
    EXPECT_EQ(bmp.Pixel(28, 28), clRed);      // mirrored: no reflex
    EXPECT_EQ(bmp.Pixel(28, 11), clRed);
    EXPECT_EQ(bmp.Pixel(20, 20), clRed);
    EXPECT_EQ(bmp.Pixel(0, 20), clBlack);  // the outline
    EXPECT_EQ(bmp.Pixel(0, 0), clWhite);   // outside the lamp
}

TEST(Leds, TrianglePixelsStopShortOfTheEdge) {
    TBitmap bmp(12, 12);
    KxDrawLED(bmp.Canvas(), {0, 0, 11, 11}, sArrowDown, clBlack, clRed);
    EXPECT_EQ(bmp.Pixel(0, 0), clBlack);
    EXPECT_EQ(bmp.Pixel(10, 0), clBlack);
    EXPECT_EQ(bmp.Pixel(5, 10), clBlack);
    EXPECT_EQ(bmp.Pixel(5, 4), clRed);
    EXPECT_EQ(bmp.Pixel(11, 0), clWhite);
    EXPECT_EQ(bmp.Pixel(5, 11), clWhite);
}

TEST(Leds, UnknownShapeOnlySetsPenAndBrush) {
    TRecordingCanvas canvas;
    KxDrawLED(canvas, {0, 0, 10, 10}, TLEDShape(8), clNavy, clLime);
    EXPECT_TRUE(canvas.Calls().empty());
    EXPECT_EQ(canvas.Pen().Color(), clNavy);
    EXPECT_EQ(canvas.Brush().Color(), clLime);
}

}  // namespace
}  // namespace kx
