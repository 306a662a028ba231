#include <gtest/gtest.h>

#include "kx/drawing/leds.h"
#include "kx/host/recordingcanvas.h"
#include "qstring_print.h"

namespace kx {
namespace {

TEST(Leds, OutlinesOfEveryShape) {
    // The triangles stop one pixel short of the right and bottom edges; the
    // parallelograms reach them. Half sizes come from each side.
    struct Case {
        TLEDShape shape;
        QString square, wide;  // in (0, 0, 11, 11) and (10, 20, 30, 35)
    } cases[] = {
        {sArrowLeft, "Polygon(0,5,10,0,10,10)", "Polygon(10,27,29,20,29,34)"},
        {sArrowRight, "Polygon(0,0,10,5,0,10)", "Polygon(10,20,29,27,10,34)"},
        {sArrowUp, "Polygon(5,0,10,10,0,10)", "Polygon(20,20,29,34,10,34)"},
        {sArrowDown, "Polygon(0,0,10,0,5,10)", "Polygon(10,20,29,20,20,34)"},
        {sRectangle, "RoundRect(0,0,11,11,1,1)", "RoundRect(10,20,30,35,1,1)"},
        {sDiamondLeft, "Polygon(0,0,5,0,11,11,5,11)", "Polygon(10,20,20,20,30,35,20,35)"},
        {sDiamondRight, "Polygon(5,0,11,0,5,11,0,11)", "Polygon(20,20,30,20,20,35,10,35)"},
        {TLEDShape(8), "", ""},  // unknown: pen and brush only
    };
    for (const Case& c : cases) {
        for (const TRect& r : {TRect{0, 0, 11, 11}, TRect{10, 20, 30, 35}}) {
            TRecordingCanvas canvas;
            canvas.Pen().SetWidth(3);
            KxDrawLED(canvas, r, c.shape, clNavy, clLime);
            const QString want = r.Left == 0 ? c.square : c.wide;
            EXPECT_EQ(canvas.Log().join(""), want) << c.shape;
            EXPECT_EQ(canvas.Pen().Color(), clNavy);
            EXPECT_EQ(canvas.Pen().Width(), 1);
            EXPECT_EQ(canvas.Brush().Color(), clLime);
        }
    }
}

TEST(Leds, RoundLampHighlight) {
    TRecordingCanvas canvas;
    KxDrawLED(canvas, {10, 20, 50, 60}, sRound, clBtnShadow, clRed);
    // 40 wide: pen 40 div 8 = 5 on the rectangle shrunk by 40 div 5 = 8; the radials
    // come from the unshrunk rectangle.
    EXPECT_EQ(canvas.Log(), (QStringList{"Ellipse(10,20,50,60)", "Arc(18,28,42,52,30,20,10,40)"}));
    EXPECT_EQ(canvas.Calls()[0].PenColor, clBtnShadow);
    EXPECT_EQ(canvas.Calls()[0].BrushColor, clRed);
    EXPECT_EQ(canvas.Pen().Color(), clBtnHighlight);  // left so
    EXPECT_EQ(canvas.Pen().Width(), 5);
}

}  // namespace
}  // namespace kx
