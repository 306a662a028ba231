// The drawing toolkit's routines in the drawing script.
#include <iterator>

#include "kx/drawing/arrows.h"
#include "kx/drawing/gradient.h"
#include "kx/drawing/leds.h"
#include "kx/drawing/scriptops.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

// The gradients draw a line or a shape per colour step over their whole area (and
// KxGradFill through a temporary bitmap of that size): a side limit keeps a script's
// run time and memory modest.
constexpr int32_t kMaxGradientSide = 2048;

constexpr const char* kLedShapes[] = {"sRound",     "sArrowLeft", "sArrowRight",  "sArrowUp",
                                      "sArrowDown", "sRectangle", "sDiamondLeft", "sDiamondRight"};
constexpr const char* kGradientStyles[] = {
    "gsHorizontal1", "gsHorizontal2", "gsHorizontal3", "gsVertical1", "gsVertical2",
    "gsVertical3",   "gsElliptic1",   "gsElliptic2",   "gsElliptic3", "gsRectangle",
    "gsDiamond1",    "gsDiamond2",    "gsTopLeft",     "gsTopRight"};
constexpr const char* kTextPositions[] = {"toTopLeft", "toTopCenter", "toTopRight",
                                          "toMidLeft", "toMidCenter", "toMidRight",
                                          "toBotLeft", "toBotCenter", "toBotRight"};

static_assert(std::size(kLedShapes) == size_t(sDiamondRight) + 1);
static_assert(std::size(kGradientStyles) == size_t(gsTopRight) + 1);
static_assert(std::size(kTextPositions) == size_t(toBotRight) + 1);

TRect rectArgs(TScriptArgs& a, int first) {
    return TRect{a.Coord(first), a.Coord(first + 1), a.Coord(first + 2), a.Coord(first + 3)};
}

void checkGradientSize(TScriptArgs& a, const TRect& r) {
    if (a.Ok() && (r.Width() > kMaxGradientSide || r.Height() > kMaxGradientSide))
        a.Fail(QStringLiteral("%1: %2 x %3 is larger than %4 pixels a side")
                   .arg(a.Op())
                   .arg(r.Width())
                   .arg(r.Height())
                   .arg(kMaxGradientSide));
}

toPos posArg(TScriptArgs& a, int i) {
    return toPos(a.Choice(i, kTextPositions, "to"));
}

void opDrawLED(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    const auto shape = TLEDShape(a.Choice(4, kLedShapes, "s"));
    const TColor outline = a.Color(5), fill = a.Color(6);
    if (a.Ok()) KxDrawLED(ctx.Canvas(), r, shape, outline, fill);
}

void opBtnBevel(TScriptContext& ctx, TScriptArgs& a) {
    TRect r = rectArgs(a, 0);
    const bool raised = a.Flag(4), fill = a.Flag(5);
    const TColor c = a.Color(6);
    if (a.Ok()) KxBtnBevel(ctx.Canvas(), r, raised, fill, c);
}

void opEllipse3D(TScriptContext& ctx, TScriptArgs& a) {
    TRect r = rectArgs(a, 0);
    const TColor c = a.Color(4);
    const bool raised = a.Flag(5);
    if (a.Ok()) KxEllipse3D(ctx.Canvas(), r, c, raised);
}

void opCircleAtPoint(TScriptContext& ctx, TScriptArgs& a) {
    const TPoint p{a.Coord(0), a.Coord(1)};
    const int32_t radius = a.Size(2);
    const TColor pen = a.Color(3), fill = a.Color(4);
    if (a.Ok()) KxCircleAtPoint(ctx.Canvas(), p, radius, pen, fill);
}

void opThumb(TScriptContext& ctx, TScriptArgs& a) {
    const TPoint p{a.Coord(0), a.Coord(1)};
    const int32_t size = a.Size(2);
    const bool vertical = a.Flag(3);
    const TColor c = a.Color(4);
    if (a.Ok()) KxThumb(ctx.Canvas(), p, size, 0, vertical, c);
}

void opDrawHPointer(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    const int32_t pos = a.Coord(4), hw = a.Coord(5), h = a.Coord(6);
    if (a.Ok()) KxDrawHPointer(ctx.Canvas(), r, pos, hw, h, false);
}

void opRoundSector(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    const float start = a.Angle(4), sweep = a.Angle(5);
    if (a.Ok()) KxRoundSector(ctx.Canvas(), r, start, sweep);
}

void opCircleGradFill(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    const TColor from = a.Color(4), to = a.Color(5);
    checkGradientSize(a, r);
    if (a.Ok()) KxCircleGradFill(ctx.Canvas(), r, from, to);
}

void opGradFill(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    const TColor from = a.Color(4), to = a.Color(5);
    const auto style = TGradientStyle(a.Choice(6, kGradientStyles, "gs"));
    checkGradientSize(a, r);
    if (a.Ok()) KxGradFill(ctx.Canvas(), r, from, to, style);
}

void opArrowField(TScriptContext& ctx, TScriptArgs& a) {
    const int32_t kind = a.Coord(0);
    const TRect r = rectArgs(a, 1);
    if (!a.Ok()) return;
    ctx.ArrowField = TArrowPoints{};
    KxArrowField(kind, 0, r, ctx.ArrowField, kArrowPointsHigh);
    ctx.ArrowOrigin = TPoint{r.Left, r.Top};
    ctx.HasArrowField = true;
}

void opArrowDraw(TScriptContext& ctx, TScriptArgs& a) {
    const float angle = a.Angle(0);
    const bool clockwise = a.Flag(1);
    if (a.Count() == 3) a.Fail(QStringLiteral("KxArrowDraw: DX needs a DY"));
    const TPoint origin = a.Count() >= 4 ? TPoint{a.Coord(2), a.Coord(3)} : ctx.ArrowOrigin;
    if (a.Ok() && !ctx.HasArrowField)
        a.Fail(QStringLiteral("KxArrowDraw without a KxArrowField before it"));
    if (!a.Ok()) return;
    // Turning is the same about a moved pivot, so the field is moved first; the header
    // (index 0) holds bytes, not a point, and stays as it is.
    TArrowPoints source = ctx.ArrowField, target{};
    for (size_t i = 1; i < source.size(); ++i) {
        source[i].X = WrapAdd(source[i].X, origin.X);
        source[i].Y = WrapAdd(source[i].Y, origin.Y);
    }
    KxArrowDraw(ctx.Canvas(), angle, source, kArrowPointsHigh, target, kArrowPointsHigh, clockwise);
}

void opTextOut(TScriptContext& ctx, TScriptArgs& a) {
    const int32_t x = a.Coord(0), y = a.Coord(1);
    const toPos pos = posArg(a, 2);
    if (a.Ok()) KxTextOut(ctx.Canvas(), x, y, a.Text(), pos);
}

void opTextOut3D(TScriptContext& ctx, TScriptArgs& a) {
    const int32_t x = a.Coord(0), y = a.Coord(1);
    const TColor text = a.Color(2), light = a.Color(3), shadow = a.Color(4);
    const toPos pos = posArg(a, 5);
    const bool is3D = a.Flag(6);
    if (a.Ok()) KxTextOut3D(ctx.Canvas(), x, y, text, light, shadow, a.Text(), pos, is3D);
}

void opTextOutMultiLine(TScriptContext& ctx, TScriptArgs& a) {
    const int32_t x = a.Coord(0), y = a.Coord(1), spacing = a.Coord(2);
    const toPos pos = posArg(a, 3);
    if (a.Ok()) KxTextOutMultiLine(ctx.Canvas(), x, y, spacing, a.Text(), pos);
}

void opTextOutMultiLine3D(TScriptContext& ctx, TScriptArgs& a) {
    const int32_t x = a.Coord(0), y = a.Coord(1), spacing = a.Coord(2);
    const TColor text = a.Color(3), light = a.Color(4), shadow = a.Color(5);
    const toPos pos = posArg(a, 6);
    const bool is3D = a.Flag(7);
    if (a.Ok())
        KxTextOutMultiLine3D(ctx.Canvas(), x, y, spacing, text, light, shadow, a.Text(), pos, is3D);
}

void opRotTextOut(TScriptContext& ctx, TScriptArgs& a) {
    const TPoint anchor{a.Coord(0), a.Coord(1)};
    const float angle = a.Angle(2);
    const toPos pos = posArg(a, 3);
    if (a.Ok()) KxRotTextOut(ctx.Canvas(), anchor, angle, a.Text(), pos);
}

constexpr TScriptOpDef kToolkitOps[] = {
    {"KxDrawLED", "L T R B SHAPE OUTLINE FILL", 7, 7, false, opDrawLED},
    {"KxBtnBevel", "L T R B RAISED FILL COLOR", 7, 7, false, opBtnBevel},
    {"KxEllipse3D", "L T R B COLOR RAISED", 6, 6, false, opEllipse3D},
    {"KxCircleAtPoint", "X Y R PENCOLOR FILLCOLOR", 5, 5, false, opCircleAtPoint},
    {"KxThumb", "X Y SIZE VERTICAL COLOR", 5, 5, false, opThumb},
    {"KxDrawHPointer", "L T R B POS HW H", 7, 7, false, opDrawHPointer},
    {"KxRoundSector", "L T R B START SWEEP", 6, 6, false, opRoundSector},
    {"KxCircleGradFill", "L T R B FROM TO", 6, 6, false, opCircleGradFill},
    {"KxGradFill", "L T R B FROM TO STYLE", 7, 7, false, opGradFill},
    {"KxArrowField", "KIND L T R B", 5, 5, false, opArrowField},
    {"KxArrowDraw", "ANGLE CLOCKWISE [DX DY]", 2, 4, false, opArrowDraw},
    {"KxTextOut", "X Y POS TEXT", 3, 3, true, opTextOut},
    {"KxTextOut3D", "X Y TEXTCOLOR LIGHT SHADOW POS EMBOSSED TEXT", 7, 7, true, opTextOut3D},
    {"KxTextOutMultiLine", "X Y SPACING POS TEXT", 4, 4, true, opTextOutMultiLine},
    {"KxTextOutMultiLine3D", "X Y SPACING TEXTCOLOR LIGHT SHADOW POS EMBOSSED TEXT", 8, 8, true,
     opTextOutMultiLine3D},
    {"KxRotTextOut", "X Y ANGLE POS TEXT", 4, 4, true, opRotTextOut},
};

}  // namespace

std::span<const TScriptOpDef> CanvasScriptToolkitOps() {
    return kToolkitOps;
}

}  // namespace kx
