// The canvas's own operations in the drawing script.
#include <vector>

#include "kx/drawing/scriptops.h"

namespace kx {

namespace {

constexpr int32_t kMaxBitmapSide = 8192;
constexpr int32_t kMaxPenWidth = 1000;
constexpr int32_t kMaxFontSize = 1000;

constexpr const char* kPenStyles[] = {"psSolid",      "psDash",  "psDot",        "psDashDot",
                                      "psDashDotDot", "psClear", "psInsideFrame"};
constexpr const char* kPenModes[] = {
    "pmBlack",       "pmWhite",      "pmNop",         "pmNot",        "pmCopy",  "pmNotCopy",
    "pmMergePenNot", "pmMaskPenNot", "pmMergeNotPen", "pmMaskNotPen", "pmMerge", "pmNotMerge",
    "pmMask",        "pmNotMask",    "pmXor",         "pmNotXor"};
constexpr const char* kBrushStyles[] = {"bsSolid",    "bsClear",     "bsHorizontal",
                                        "bsVertical", "bsFDiagonal", "bsBDiagonal",
                                        "bsCross",    "bsDiagCross"};
constexpr const char* kFontStyles[] = {"bold", "italic", "underline", "strikeout"};

TRect rectArgs(TScriptArgs& a, int first) {
    return TRect{a.Coord(first), a.Coord(first + 1), a.Coord(first + 2), a.Coord(first + 3)};
}

std::vector<TPoint> pointArgs(TScriptArgs& a) {
    if (a.Count() % 2 != 0)
        a.Fail(QStringLiteral("%1 expects X Y pairs, got %2 numbers").arg(a.Op()).arg(a.Count()));
    std::vector<TPoint> pts;
    for (int i = 0; i + 1 < a.Count(); i += 2)
        pts.push_back(TPoint{a.Coord(i), a.Coord(i + 1)});
    return pts;
}

void opSize(TScriptContext& ctx, TScriptArgs& a) {
    const int32_t w = a.Int(0, 1, kMaxBitmapSide), h = a.Int(1, 1, kMaxBitmapSide);
    if (!a.Ok()) return;
    auto bmp = std::make_unique<TBitmap>(w, h);
    if (bmp->Empty()) {
        a.Fail(QStringLiteral("size: cannot allocate %1 x %2 pixels").arg(w).arg(h));
        return;
    }
    ctx.Bitmap = std::move(bmp);
}

void opFill(TScriptContext& ctx, TScriptArgs& a) {
    const TColor c = a.Color(0);
    if (!a.Ok()) return;
    TCanvas& cv = ctx.Canvas();
    // The script's brush stays as it was: fill is a background, not a brush change.
    TBrush saved;
    saved.Assign(cv.Brush());
    cv.Brush().SetColor(c);
    cv.Brush().SetStyle(bsSolid);
    cv.FillRect(TRect{0, 0, ctx.Bitmap->Width(), ctx.Bitmap->Height()});
    cv.Brush().Assign(saved);
}

void opPen(TScriptContext& ctx, TScriptArgs& a) {
    const TColor c = a.Color(0);
    const int32_t w = a.Int(1, 0, kMaxPenWidth);
    TPenStyle style = psSolid;
    TPenMode mode = pmCopy;
    for (int i = 2; i < a.Count(); ++i) {
        if (int32_t s = TScriptArgs::FindChoice(a.Word(i), kPenStyles, "ps"); s >= 0)
            style = TPenStyle(s);
        else if (int32_t m = TScriptArgs::FindChoice(a.Word(i), kPenModes, "pm"); m >= 0)
            mode = TPenMode(m);
        else
            a.FailArg(i, QStringLiteral("is neither a pen style nor a pen mode"));
    }
    if (!a.Ok()) return;
    TPen& pen = ctx.Canvas().Pen();
    pen.SetColor(c);
    pen.SetWidth(w);
    pen.SetStyle(style);
    pen.SetMode(mode);
}

void opBrush(TScriptContext& ctx, TScriptArgs& a) {
    const TColor c = a.Color(0);
    const int32_t style = a.Count() > 1 ? a.Choice(1, kBrushStyles, "bs") : int32_t(bsSolid);
    if (!a.Ok()) return;
    TBrush& brush = ctx.Canvas().Brush();
    brush.SetColor(c);
    brush.SetStyle(TBrushStyle(style));
}

void opFont(TScriptContext& ctx, TScriptArgs& a) {
    const QString name = a.Word(0);
    const int32_t size = a.Int(1, 1, kMaxFontSize);
    const TColor c = a.Color(2);
    TFontStyles styles = 0;
    for (int i = 3; i < a.Count(); ++i) {
        const int32_t s = TScriptArgs::FindChoice(a.Word(i), kFontStyles, "");
        if (s < 0)
            a.FailArg(i, QStringLiteral("is not bold, italic, underline or strikeout"));
        else
            styles |= TFontStyles(1u << s);
    }
    if (name.isEmpty()) a.Fail(QStringLiteral("argument 1 (NAME) of font: empty font name"));
    if (!a.Ok()) return;
    TFont& font = ctx.Canvas().Font();
    font.SetName(name);
    font.SetSize(size);
    font.SetColor(c);
    font.SetStyle(styles);
}

void opMoveTo(TScriptContext& ctx, TScriptArgs& a) {
    const int32_t x = a.Coord(0), y = a.Coord(1);
    if (a.Ok()) ctx.Canvas().MoveTo(x, y);
}

void opLineTo(TScriptContext& ctx, TScriptArgs& a) {
    const int32_t x = a.Coord(0), y = a.Coord(1);
    if (a.Ok()) ctx.Canvas().LineTo(x, y);
}

void opPixel(TScriptContext& ctx, TScriptArgs& a) {
    const int32_t x = a.Coord(0), y = a.Coord(1);
    const TColor c = a.Color(2);
    if (a.Ok()) ctx.Canvas().SetPixel(x, y, c);
}

void opRectangle(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    if (a.Ok()) ctx.Canvas().Rectangle(r);
}

void opFillRect(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    if (a.Ok()) ctx.Canvas().FillRect(r);
}

void opRoundRect(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    const int32_t w = a.Size(4), h = a.Size(5);
    if (a.Ok()) ctx.Canvas().RoundRect(r.Left, r.Top, r.Right, r.Bottom, w, h);
}

void opEllipse(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    if (a.Ok()) ctx.Canvas().Ellipse(r);
}

void opArc(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    const TRect p = rectArgs(a, 4);
    if (a.Ok())
        ctx.Canvas().Arc(r.Left, r.Top, r.Right, r.Bottom, p.Left, p.Top, p.Right, p.Bottom);
}

void opPie(TScriptContext& ctx, TScriptArgs& a) {
    const TRect r = rectArgs(a, 0);
    const TRect p = rectArgs(a, 4);
    if (a.Ok())
        ctx.Canvas().Pie(r.Left, r.Top, r.Right, r.Bottom, p.Left, p.Top, p.Right, p.Bottom);
}

void opPolygon(TScriptContext& ctx, TScriptArgs& a) {
    const std::vector<TPoint> pts = pointArgs(a);
    if (a.Ok()) ctx.Canvas().Polygon(pts);
}

void opPolyline(TScriptContext& ctx, TScriptArgs& a) {
    const std::vector<TPoint> pts = pointArgs(a);
    if (a.Ok()) ctx.Canvas().Polyline(pts);
}

void opFrame3D(TScriptContext& ctx, TScriptArgs& a) {
    TRect r = rectArgs(a, 0);
    const TColor top = a.Color(4), bottom = a.Color(5);
    const int32_t width = a.Int(6, 0, kMaxPenWidth);
    if (a.Ok()) ctx.Canvas().Frame3D(r, top, bottom, width);
}

void opTextOut(TScriptContext& ctx, TScriptArgs& a) {
    const int32_t x = a.Coord(0), y = a.Coord(1);
    if (a.Ok()) ctx.Canvas().TextOut(x, y, a.Text());
}

constexpr TScriptOpDef kCanvasOps[] = {
    {"size", "W H", 2, 2, false, opSize},
    {"fill", "COLOR", 1, 1, false, opFill},
    {"pen", "COLOR WIDTH [STYLE] [MODE]", 2, 4, false, opPen},
    {"brush", "COLOR [STYLE]", 1, 2, false, opBrush},
    {"font", "NAME SIZE COLOR [STYLE...]", 3, 7, false, opFont},
    {"moveto", "X Y", 2, 2, false, opMoveTo},
    {"lineto", "X Y", 2, 2, false, opLineTo},
    {"pixel", "X Y COLOR", 3, 3, false, opPixel},
    {"rectangle", "L T R B", 4, 4, false, opRectangle},
    {"fillrect", "L T R B", 4, 4, false, opFillRect},
    {"roundrect", "L T R B W H", 6, 6, false, opRoundRect},
    {"ellipse", "L T R B", 4, 4, false, opEllipse},
    {"arc", "L T R B X1 Y1 X2 Y2", 8, 8, false, opArc},
    {"pie", "L T R B X1 Y1 X2 Y2", 8, 8, false, opPie},
    {"polygon", "X1 Y1 X2 Y2 ...", 4, -1, false, opPolygon},
    {"polyline", "X1 Y1 X2 Y2 ...", 4, -1, false, opPolyline},
    {"frame3d", "L T R B TOPCOLOR BOTTOMCOLOR WIDTH", 7, 7, false, opFrame3D},
    {"textout", "X Y TEXT", 2, 2, true, opTextOut},
};

}  // namespace

std::span<const TScriptOpDef> CanvasScriptCanvasOps() {
    return kCanvasOps;
}

}  // namespace kx
