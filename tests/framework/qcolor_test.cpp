// The QColor form of TColor values in published properties and colour setters.
#include <gtest/gtest.h>

#include "kx/framework/sectorsettings.h"
#include "kx/host/color.h"
#include "kx/host/graphics.h"

namespace kx {
namespace {

TEST(QColorEncoding, IsLosslessBothWays) {
    const struct {
        TColor color;
        QColor encoded;
    } cases[] = {
        {clBlack, QColor(0, 0, 0, 255)},      {clRed, QColor(255, 0, 0, 255)},
        {clNavy, QColor(0, 0, 128, 255)},     {RGB(1, 2, 3), QColor(1, 2, 3, 255)},
        {clScrollBar, QColor(0, 0, 0, 0)},    {clBtnFace, QColor(15, 0, 0, 0)},
        {clInfoBk, QColor(24, 0, 0, 0)},      {SystemColor(0x030201), QColor(1, 2, 3, 0)},
        {clNone, QColor(255, 255, 255, 224)}, {TColor(0x7F332211), QColor(0x11, 0x22, 0x33, 128)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(EncodeQColor(c.color), c.encoded) << std::hex << c.color;
        EXPECT_EQ(DecodeQColor(c.encoded), c.color) << std::hex << c.color;
    }
}

TEST(QColorEncoding, DecodesOtherSpecificationsAndInvalidColours) {
    EXPECT_EQ(DecodeQColor(QColor()), clNone);
    EXPECT_EQ(DecodeQColor(QColor::fromHsv(240, 255, 255)), clBlue);
    EXPECT_EQ(DecodeQColor(QColor::fromRgbF(0.0f, 1.0f, 0.0f)), clLime);
}

TEST(QColorEncoding, ColourSettersTakeEveryForm) {
    const struct {
        const char* what;
        TColorArg arg;
        TColor stored;
    } cases[] = {
        {"TColor", clMaroon, clMaroon},
        {"system TColor", clBtnShadow, clBtnShadow},
        {"unsigned literal", TColor(0xFF000010u), clBtnShadow},
        {"opaque QColor", QColor(0, 0, 255), clBlue},
        {"transparent QColor", QColor(16, 0, 0, 0), clBtnShadow},
        {"Qt::red means Qt's red", Qt::red, clRed},
        {"Qt::darkBlue", Qt::darkBlue, clNavy},
        {"Qt::transparent is system colour 0", Qt::transparent, clScrollBar},
    };
    for (const auto& c : cases) {
        TSectorSettings sectors;
        int changes = 0;
        sectors.SetOnChange([&](QObject*) { ++changes; });
        sectors.SetSector2Color(c.arg);
        EXPECT_EQ(sectors.Sector2Color(), c.stored) << c.what;
        EXPECT_EQ(changes, c.stored == clGreen ? 0 : 1) << c.what;

        TFont font;
        font.SetColor(c.arg);
        EXPECT_EQ(font.Color(), c.stored) << c.what;
    }
}

}  // namespace
}  // namespace kx
