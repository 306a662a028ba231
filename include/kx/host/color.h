#pragma once
// TColor: 0x00BBGGRR; a top byte of 0xFF marks a system colour that ColorToRGB
// resolves through the system colour table.
#include <QColor>
#include <QPalette>
#include <cstdint>

namespace kx {

using TColor = int32_t;

constexpr TColor clBlack = 0x000000;
constexpr TColor clMaroon = 0x000080;
constexpr TColor clGreen = 0x008000;
constexpr TColor clOlive = 0x008080;
constexpr TColor clNavy = 0x800000;
constexpr TColor clPurple = 0x800080;
constexpr TColor clTeal = 0x808000;
constexpr TColor clGray = 0x808080;
constexpr TColor clSilver = 0xC0C0C0;
constexpr TColor clRed = 0x0000FF;
constexpr TColor clLime = 0x00FF00;
constexpr TColor clYellow = 0x00FFFF;
constexpr TColor clBlue = 0xFF0000;
constexpr TColor clFuchsia = 0xFF00FF;
constexpr TColor clAqua = 0xFFFF00;
constexpr TColor clWhite = 0xFFFFFF;
constexpr TColor clNone = 0x1FFFFFFF;

constexpr TColor SystemColor(int index) {
    return static_cast<TColor>(0xFF000000u | uint32_t(index));
}
constexpr TColor clScrollBar = SystemColor(0);
constexpr TColor clBackground = SystemColor(1);
constexpr TColor clActiveCaption = SystemColor(2);
constexpr TColor clInactiveCaption = SystemColor(3);
constexpr TColor clMenu = SystemColor(4);
constexpr TColor clWindow = SystemColor(5);
constexpr TColor clWindowFrame = SystemColor(6);
constexpr TColor clMenuText = SystemColor(7);
constexpr TColor clWindowText = SystemColor(8);
constexpr TColor clCaptionText = SystemColor(9);
constexpr TColor clActiveBorder = SystemColor(10);
constexpr TColor clInactiveBorder = SystemColor(11);
constexpr TColor clAppWorkSpace = SystemColor(12);
constexpr TColor clHighlight = SystemColor(13);
constexpr TColor clHighlightText = SystemColor(14);
constexpr TColor clBtnFace = SystemColor(15);
constexpr TColor clBtnShadow = SystemColor(16);
constexpr TColor clGrayText = SystemColor(17);
constexpr TColor clBtnText = SystemColor(18);
constexpr TColor clInactiveCaptionText = SystemColor(19);
constexpr TColor clBtnHighlight = SystemColor(20);
constexpr TColor cl3DDkShadow = SystemColor(21);
constexpr TColor cl3DLight = SystemColor(22);
constexpr TColor clInfoText = SystemColor(23);
constexpr TColor clInfoBk = SystemColor(24);
constexpr int kSystemColorCount = 25;

constexpr uint8_t GetRValue(TColor c) {
    return uint8_t(uint32_t(c) & 0xFF);
}
constexpr uint8_t GetGValue(TColor c) {
    return uint8_t((uint32_t(c) >> 8) & 0xFF);
}
constexpr uint8_t GetBValue(TColor c) {
    return uint8_t((uint32_t(c) >> 16) & 0xFF);
}
// Builds a colour from the low byte of each component (wrapping, no clamping).
constexpr TColor RGB(int32_t r, int32_t g, int32_t b) {
    return TColor((uint32_t(r) & 0xFF) | ((uint32_t(g) & 0xFF) << 8) |
                  ((uint32_t(b) & 0xFF) << 16));
}

// Resolves a system colour to RGB; an RGB colour comes back unchanged. An unknown
// system index resolves to black.
TColor ColorToRGB(TColor c);

// The system colour table. It starts with the classic defaults (button face F0F0F0,
// shadow A0A0A0, highlight FFFFFF, ...) so that renders are the same everywhere.
void SetSystemColor(TColor systemColor, TColor rgb);
void ResetSystemColors();
// Takes the button, window and highlight colours from a Qt palette.
void SetSystemColorsFromPalette(const QPalette& palette);
// Whether the table follows the application palette (on by default). While it does,
// every change of the application palette (QApplication::setPalette, a platform theme
// change) takes the table from the new palette; until the first change the classic
// defaults hold, so that renders are the same everywhere. Off, the table changes only
// through SetSystemColor, ResetSystemColors and SetSystemColorsFromPalette.
void SetSystemColorsFollowPalette(bool follow);
bool SystemColorsFollowPalette();
// Takes the table from the application palette now when it follows it (no application
// object: nothing).
void SyncSystemColorsWithApplicationPalette();

// The QColor form of a TColor in published properties (Designer, .ui files, QColor
// setters). It is lossless: alpha = 255 - the TColor's top byte, red/green/blue = its
// low/middle/high byte. So an RGB colour is an opaque QColor; a system colour
// (top byte 0xFF) is a fully transparent QColor whose red component is the system colour
// index (clBtnFace = QColor(15, 0, 0, 0)); clNone is QColor(255, 255, 255, 224).
// Beware: Qt::transparent is QColor(0, 0, 0, 0), i.e. clScrollBar; use clNone for "no
// colour". DecodeQColor reads an invalid QColor as clNone and converts other colour
// specifications (HSV, ...) to RGB first.
QColor EncodeQColor(TColor c);
TColor DecodeQColor(const QColor& c);

// The argument type of the colour setters: a classic TColor as before, or a QColor (or a
// Qt::GlobalColor, meaning Qt's colour, not a TColor number) in the encoding above.
class TColorArg {
  public:
    constexpr TColorArg(TColor c) : color_(c) {}
    TColorArg(const QColor& c) : color_(DecodeQColor(c)) {}
    TColorArg(Qt::GlobalColor c) : color_(DecodeQColor(QColor(c))) {}
    constexpr operator TColor() const { return color_; }

  private:
    TColor color_;
};

// Conversions to and from Qt (opaque).
QColor ToQColor(TColor c);
TColor FromQColor(const QColor& c);
// 0xAARRGGBB with alpha 255, as QImage stores opaque pixels.
uint32_t ToQRgb(TColor c);
TColor FromQRgb(uint32_t argb);

}  // namespace kx
