#include "kx/binary/leverswitch.h"

#include <algorithm>
#include <array>

#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"

namespace kx {

namespace {

constexpr int32_t kPlateFrame = 2;
constexpr TColor kLeverColor = RGB(200, 200, 200);

}  // namespace

TKxLeverSwitch::TKxLeverSwitch(QWidget* parent) : TKxCustomSwitch(parent) {}

TKxLeverSwitch::TGeometry TKxLeverSwitch::Geometry(TCanvas& canvas, const TRect& body) const {
    TGeometry g;
    g.Plate = TRect{body.Left + kPlateFrame, body.Top + kPlateFrame, body.Right - kPlateFrame,
                    body.Bottom - kPlateFrame};
    const int32_t pw = std::max(0, g.Plate.Right - g.Plate.Left);
    const int32_t ph = std::max(0, g.Plate.Bottom - g.Plate.Top);
    g.Centre = TPoint{g.Plate.Left + pw / 2, g.Plate.Top + ph / 2};
    g.NutRadius = std::max(2, std::min(pw, ph) / 4);
    g.BallRadius = std::max(2, g.NutRadius * 3 / 4);
    // Room from the pivot to the plate's edge along the lever, and across it.
    const int32_t along = Vertical() ? ph / 2 : pw / 2;
    const int32_t across = Vertical() ? pw : ph;
    const auto legendDepth = [&](const QString& text, bool& shown) {
        if (text.isEmpty()) return 0;
        const int32_t w = canvas.TextWidth(text), h = canvas.TextHeight(text);
        const int32_t depth = (Vertical() ? h : w) + 2;
        shown = (Vertical() ? w : h) <= across - 2 && depth < along;
        return shown ? depth : 0;
    };
    const int32_t onDepth = legendDepth(CaptionOn(), g.LegendOn);
    const int32_t offDepth = legendDepth(CaptionOff(), g.LegendOff);
    g.Reach = along - std::max(onDepth, offDepth) - g.BallRadius - 1;
    if (g.Reach < g.NutRadius && (g.LegendOn || g.LegendOff)) {
        // Legends would leave the lever no room beyond the nut: the lever goes first.
        g.LegendOn = g.LegendOff = false;
        g.Reach = along - g.BallRadius - 1;
    }
    g.Reach = std::max(g.Reach, g.NutRadius);
    return g;
}

TPoint TKxLeverSwitch::BallCentre(const TGeometry& g, bool on) const {
    if (Vertical()) return TPoint{g.Centre.X, on ? g.Centre.Y - g.Reach : g.Centre.Y + g.Reach};
    return TPoint{on ? g.Centre.X + g.Reach : g.Centre.X - g.Reach, g.Centre.Y};
}

TPoint TKxLeverSwitch::legendPoint(const TGeometry& g, bool on, int32_t w, int32_t h) const {
    const TRect& p = g.Plate;
    if (Vertical()) return TPoint{g.Centre.X, on ? p.Top + 1 + h / 2 : p.Bottom - 1 - h + h / 2};
    return TPoint{on ? p.Right - 1 - w + w / 2 : p.Left + 1 + w / 2, g.Centre.Y};
}

void TKxLeverSwitch::PaintStatic(TCanvas& canvas, const TRect& body) {
    // The frame covers the rectangle's outline, so the pen's colour does not show.
    TRect r = body;
    KxBtnBevel(canvas, r, true, true, Color());
    const TGeometry g = Geometry(canvas, body);
    canvas.Brush().SetStyle(bsClear);
    const auto legend = [&](bool on, bool shown, const QString& text) {
        if (!shown) return;
        const int32_t w = canvas.TextWidth(text), h = canvas.TextHeight(text);
        KxTextOutIfFits(canvas, legendPoint(g, on, w, h), text, g.Plate);
    };
    legend(true, g.LegendOn, CaptionOn());
    legend(false, g.LegendOff, CaptionOff());
    canvas.Brush().SetStyle(bsSolid);
    const int32_t n = g.NutRadius;
    TRect nut{g.Centre.X - n, g.Centre.Y - n, g.Centre.X + n + 1, g.Centre.Y + n + 1};
    KxEllipse3D(canvas, nut, Color(), true);
    const int32_t h = std::max(1, n / 2);
    canvas.Pen().SetColor(clBlack);
    canvas.Brush().SetColor(clBlack);
    canvas.Ellipse(g.Centre.X - h, g.Centre.Y - h, g.Centre.X + h + 1, g.Centre.Y + h + 1);
}

void TKxLeverSwitch::PaintMoving(TCanvas& canvas, const TRect& body) {
    const TGeometry g = Geometry(canvas, body);
    const TPoint ball = BallCentre(g, Checked());
    const int32_t base = std::max(1, g.NutRadius * 2 / 3);
    const int32_t tip = std::max(1, g.BallRadius * 2 / 3);
    const TPoint c = g.Centre;
    const std::array<TPoint, 4> bar =
        Vertical() ? std::array<TPoint, 4>{TPoint{c.X - base, c.Y}, TPoint{c.X + base, c.Y},
                                           TPoint{c.X + tip, ball.Y}, TPoint{c.X - tip, ball.Y}}
                   : std::array<TPoint, 4>{TPoint{c.X, c.Y - base}, TPoint{c.X, c.Y + base},
                                           TPoint{ball.X, c.Y + tip}, TPoint{ball.X, c.Y - tip}};
    canvas.Pen().SetColor(clBlack);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(kLeverColor);
    canvas.Polygon(bar);
    const int32_t b = g.BallRadius;
    TRect knob{ball.X - b, ball.Y - b, ball.X + b + 1, ball.Y + b + 1};
    KxEllipse3D(canvas, knob, LitColor(), true);
}

TKxToggleSwitch::TKxToggleSwitch(QWidget* parent) : TKxLeverSwitch(parent) {
    SetCaptionOn(QStringLiteral("ON"));
    SetCaptionOff(QStringLiteral("OFF"));
    SetBounds(x(), y(), 49, 97);
}

}  // namespace kx
