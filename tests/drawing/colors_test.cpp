#include <gtest/gtest.h>

#include <limits>

#include "kx/drawing/colors.h"

namespace kx {
namespace {

TEST(Colors, SetBrightness) {
    struct Case {
        TColor color;
        float percent;
        TColor expected;
    } cases[] = {
        {RGB(200, 100, 0), 150, RGB(44, 150, 0)},  // 300 wraps to 44
        {RGB(200, 100, 50), 100, RGB(200, 100, 50)},
        {RGB(200, 100, 50), 0, clBlack},
        {RGB(200, 100, 50), 50, RGB(100, 50, 25)},
        // Halves go to the even neighbour.
        {RGB(1, 3, 5), 50, RGB(0, 2, 2)},
        {RGB(7, 9, 11), 50, RGB(4, 4, 6)},
        // The factor is single precision: 0.1f is a little above 0.1, so 0.5,
        // 1.5 and 2.5 all come out slightly high.
        {RGB(5, 15, 25), 10, RGB(1, 2, 3)},
        // Negative products wrap.
        {RGB(1, 2, 0), -100, RGB(255, 254, 0)},
        // A system colour is scaled as its raw bits; its top byte is dropped.
        {clBtnFace, 200, RGB(30, 0, 0)},
        {clBtnShadow, 100, RGB(16, 0, 0)},
        {RGB(10, 20, 30), std::numeric_limits<float>::quiet_NaN(), clBlack},
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxSetBrightness(c.color, c.percent), c.expected)
            << std::hex << c.color << " by " << c.percent;
}

TEST(Colors, CalcColorBlends) {
    struct Case {
        TColor c1, c2;
        int32_t steps, i;
        TColor expected;
    } cases[] = {
        {clBlack, clWhite, 10, 0, clBlack},
        {clBlack, clWhite, 10, 10, clWhite},
        {clBlack, clWhite, 10, 5, RGB(128, 128, 128)},  // 127.5 to the even 128
        {clWhite, clBlack, 10, 5, RGB(127, 127, 127)},  // -127.5 to the even -128
        {clBlack, clWhite, 10, 1, RGB(26, 26, 26)},
        {RGB(10, 200, 30), RGB(20, 100, 30), 4, 1, RGB(12, 175, 30)},
        {RGB(10, 200, 30), RGB(20, 100, 30), 4, 3, RGB(18, 125, 30)},
        // Beyond the range: extrapolated and wrapped.
        {clBlack, clWhite, 10, 20, RGB(254, 254, 254)},
        {clBlack, clWhite, 10, -5, RGB(128, 128, 128)},
        {RGB(100, 0, 0), RGB(200, 0, 0), 1, 3, RGB(144, 0, 0)},
        // steps = 0 counts as 1; negative steps run the other way.
        {clBlack, clWhite, 0, 1, clWhite},
        {clBlack, clWhite, -10, 5, RGB(128, 128, 128)},
        {clBlack, clWhite, -10, 2, RGB(205, 205, 205)},
        // System colours are resolved for the arithmetic.
        {clBtnShadow, clWhite, 2, 1, RGB(0xD0, 0xD0, 0xD0)},
        {clBtnShadow, clBtnFace, 1, 0, RGB(0xA0, 0xA0, 0xA0)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(KxCalcColor(c.c1, c.c2, c.steps, c.i), c.expected)
            << std::hex << c.c1 << "->" << c.c2 << std::dec << " " << c.i << "/" << c.steps;
}

TEST(Colors, CalcColorOfEqualColoursReturnsTheFirstUnresolved) {
    // Button face resolves to F0F0F0, as does the menu colour.
    EXPECT_EQ(KxCalcColor(clBtnFace, RGB(0xF0, 0xF0, 0xF0), 10, 5), clBtnFace);
    EXPECT_EQ(KxCalcColor(clBtnFace, clMenu, 10, 99), clBtnFace);
    EXPECT_EQ(KxCalcColor(RGB(0xF0, 0xF0, 0xF0), clBtnFace, 10, 99), RGB(0xF0, 0xF0, 0xF0));
    // Once they differ, the result is a plain RGB colour.
    SetSystemColor(clMenu, RGB(0xF0, 0xF0, 0xF2));
    EXPECT_EQ(KxCalcColor(clBtnFace, clMenu, 1, 0), RGB(0xF0, 0xF0, 0xF0));
}

}  // namespace
}  // namespace kx
