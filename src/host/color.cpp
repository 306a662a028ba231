#include "kx/host/color.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <array>

namespace kx {
namespace {

constexpr std::array<TColor, kSystemColorCount> kClassicSystemColors = {
    0xC8C8C8,  // scroll bar
    0x000000,  // background
    0xD1B499,  // active caption
    0xDBCDBF,  // inactive caption
    0xF0F0F0,  // menu
    0xFFFFFF,  // window
    0x646464,  // window frame
    0x000000,  // menu text
    0x000000,  // window text
    0x000000,  // caption text
    0xB4B4B4,  // active border
    0xFCF7F4,  // inactive border
    0xABABAB,  // app work space
    0xD77800,  // highlight
    0xFFFFFF,  // highlight text
    0xF0F0F0,  // button face
    0xA0A0A0,  // button shadow
    0x6D6D6D,  // gray text
    0x000000,  // button text
    0x000000,  // inactive caption text
    0xFFFFFF,  // button highlight
    0x696969,  // 3D dark shadow
    0xE3E3E3,  // 3D light
    0x000000,  // info text
    0xE1FFFF,  // info background
};

std::array<TColor, kSystemColorCount>& table() {
    static std::array<TColor, kSystemColorCount> t = kClassicSystemColors;
    return t;
}

bool isSystem(TColor c) {
    return (uint32_t(c) & 0xFF000000u) == 0xFF000000u;
}

bool& following() {
    static bool follow = true;
    return follow;
}

// Watches the application object for palette changes; the application sends the change
// to itself before it tells the widgets, so the table is current when they repaint.
class PaletteWatcher : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* e) override {
        if (e->type() == QEvent::ApplicationPaletteChange &&
            watched == QCoreApplication::instance())
            SyncSystemColorsWithApplicationPalette();
        return false;
    }
};

void watchApplicationPalette() {
    QCoreApplication* app = QCoreApplication::instance();
    if (app) app->installEventFilter(new PaletteWatcher(app));
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(watchApplicationPalette)

void SetSystemColorsFollowPalette(bool follow) {
    following() = follow;
}

bool SystemColorsFollowPalette() {
    return following();
}

void SyncSystemColorsWithApplicationPalette() {
    if (!following() || !qobject_cast<QGuiApplication*>(QCoreApplication::instance())) return;
    SetSystemColorsFromPalette(QGuiApplication::palette());
}

TColor ColorToRGB(TColor c) {
    if (!isSystem(c)) return c;
    uint32_t index = uint32_t(c) & 0x00FFFFFFu;
    if (index >= kSystemColorCount) return clBlack;
    return table()[index];
}

void SetSystemColor(TColor systemColor, TColor rgb) {
    if (!isSystem(systemColor)) return;
    uint32_t index = uint32_t(systemColor) & 0x00FFFFFFu;
    if (index < kSystemColorCount) table()[index] = rgb & 0xFFFFFF;
}

void ResetSystemColors() {
    table() = kClassicSystemColors;
}

void SetSystemColorsFromPalette(const QPalette& p) {
    auto set = [](TColor sys, const QColor& q) { SetSystemColor(sys, FromQColor(q)); };
    set(clBtnFace, p.color(QPalette::Button));
    set(clBtnShadow, p.color(QPalette::Dark));
    set(clBtnHighlight, p.color(QPalette::Light));
    set(clBtnText, p.color(QPalette::ButtonText));
    set(cl3DDkShadow, p.color(QPalette::Shadow));
    set(cl3DLight, p.color(QPalette::Midlight));
    set(clWindow, p.color(QPalette::Base));
    set(clWindowText, p.color(QPalette::Text));
    set(clHighlight, p.color(QPalette::Highlight));
    set(clHighlightText, p.color(QPalette::HighlightedText));
    set(clInfoBk, p.color(QPalette::ToolTipBase));
    set(clInfoText, p.color(QPalette::ToolTipText));
    set(clMenu, p.color(QPalette::Window));
}

QColor ToQColor(TColor c) {
    TColor rgb = ColorToRGB(c);
    return QColor(GetRValue(rgb), GetGValue(rgb), GetBValue(rgb));
}

TColor FromQColor(const QColor& c) {
    return RGB(c.red(), c.green(), c.blue());
}

QColor EncodeQColor(TColor c) {
    return QColor(GetRValue(c), GetGValue(c), GetBValue(c), 255 - int((uint32_t(c) >> 24) & 0xFF));
}

TColor DecodeQColor(const QColor& q) {
    if (!q.isValid()) return clNone;
    const QColor rgb = q.toRgb();
    const uint32_t top = uint32_t(255 - rgb.alpha()) << 24;
    return TColor(top | uint32_t(RGB(rgb.red(), rgb.green(), rgb.blue())));
}

uint32_t ToQRgb(TColor c) {
    TColor rgb = ColorToRGB(c);
    return 0xFF000000u | (uint32_t(GetRValue(rgb)) << 16) | (uint32_t(GetGValue(rgb)) << 8) |
           GetBValue(rgb);
}

TColor FromQRgb(uint32_t argb) {
    return RGB(int32_t((argb >> 16) & 0xFF), int32_t((argb >> 8) & 0xFF), int32_t(argb & 0xFF));
}

}  // namespace kx
