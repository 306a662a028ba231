#include "kx/drawing/shapes.h"

#include "kx/drawing/angles.h"
#include "kx/drawing/geometry.h"
#include "kx/host/numeric.h"

namespace kx {

void KxBtnBevel(TCanvas& canvas, TRect& r, bool raised, bool fill, TColor color) {
    if (fill) {
        canvas.Brush().SetColor(color);
        canvas.Brush().SetStyle(bsSolid);
        canvas.Rectangle(r);
    }
    if (raised) {
        canvas.Frame3D(r, clBtnHighlight, clBlack, 1);
        canvas.Frame3D(r, kBevelGrey, clBtnShadow, 1);
    } else {
        canvas.Frame3D(r, clBlack, clBtnHighlight, 1);
        canvas.Frame3D(r, clBtnShadow, kBevelGrey, 1);
    }
}

namespace {

void SetPenAndBrush(TCanvas& canvas, TColor color) {
    canvas.Pen().SetColor(color);
    canvas.Brush().SetColor(color);
}

}  // namespace

void KxEllipse3D(TCanvas& canvas, TRect& r, TColor color, bool raised) {
    canvas.Pen().SetWidth(1);
    canvas.Brush().SetStyle(bsSolid);
    const TColor first = raised ? clBtnShadow : clBtnHighlight;
    const TColor second = raised ? clBtnHighlight : clBtnShadow;
    const int32_t innerRight = WrapSub(r.Right, 2);
    const int32_t innerBottom = WrapSub(r.Bottom, 2);
    SetPenAndBrush(canvas, first);
    canvas.Ellipse(r.Left, r.Top, r.Right, r.Bottom);
    SetPenAndBrush(canvas, second);
    canvas.Ellipse(r.Left, r.Top, innerRight, innerBottom);
    const TRect face{WrapAdd(r.Left, 1), WrapAdd(r.Top, 1), innerRight, innerBottom};
    SetPenAndBrush(canvas, color);
    canvas.Ellipse(face);
    r = face;
}

void KxCircleAtPoint(TCanvas& canvas, TPoint p, int32_t radius, TColor penColor, TColor fillColor) {
    canvas.Brush().SetColor(fillColor);
    canvas.Brush().SetStyle(bsSolid);
    // The outline is always the highlight; the argument has never shown.
    canvas.Pen().SetColor(penColor);
    canvas.Pen().SetColor(clBtnHighlight);
    const int32_t l = WrapSub(p.X, radius);
    const int32_t t = WrapSub(p.Y, radius);
    const int32_t r = WrapAdd(WrapAdd(p.X, radius), 1);
    const int32_t b = WrapAdd(WrapAdd(p.Y, radius), 1);
    canvas.Ellipse(l, t, r, b);
    canvas.Pen().SetColor(clBtnShadow);
    canvas.Arc(l, t, r, b, WrapAdd(WrapAdd(p.X, radius), 2), t, l, b);
}

void KxThumb(TCanvas& canvas, TPoint p, int32_t size, int32_t /*unused*/, bool vertical,
             TColor color) {
    const double d = size * 0.2;
    const int32_t halfLong = Div(size, 2);
    const int32_t halfShort = Round(d);
    const int32_t hw = vertical ? halfLong : halfShort;
    const int32_t hh = vertical ? halfShort : halfLong;
    TRect box{WrapSub(p.X, hw), WrapSub(p.Y, hh), WrapAdd(WrapAdd(p.X, hw), 1),
              WrapAdd(WrapAdd(p.Y, hh), 1)};
    const TColor lineColor = color == clBtnShadow ? clBtnShadow : clBlack;

    SetPenAndBrush(canvas, clBtnFace);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Rectangle(box);
    canvas.Frame3D(box, clBtnShadow, lineColor, 1);
    canvas.Frame3D(box, clBtnHighlight, clBtnShadow, 1);
    KxBorder(box, Div(size, 25));
    canvas.Pen().SetColor(lineColor);
    canvas.Brush().SetColor(color);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Rectangle(box);
}

void KxDrawHPointer(TCanvas& canvas, const TRect& r, int32_t position, int32_t halfWidth,
                    int32_t height, bool /*unused*/) {
    const float s = static_cast<float>(WrapSub(r.Right, r.Left) / 1000.0);
    const int32_t x = WrapAdd(r.Left, Round(static_cast<double>(s) * position));
    const int32_t base = WrapAdd(r.Top, height);
    const TPoint pts[] = {{x, r.Top}, {WrapAdd(x, halfWidth), base}, {WrapSub(x, halfWidth), base}};
    canvas.Polygon(pts);
}

void KxRoundSector(TCanvas& canvas, const TRect& r, float start, float sweep) {
    const TPoint m = KxCenterPoint(r);
    const TPoint p1 = KxRotate(TPoint{m.X, r.Top}, m, start, true);
    const TPoint p2 = KxRotate(p1, m, sweep, true);
    // Pie runs counter-clockwise, so it goes from the far radial back to the start.
    canvas.Pie(r.Left, r.Top, r.Right, r.Bottom, p2.X, p2.Y, p1.X, p1.Y);
}

void KxCircleGradFill(TCanvas& canvas, const TRect& r, TColor from, TColor to) {
    // Right and bottom exchanged: harmless for the squares callers pass.
    canvas.SetClipRegion(TCanvas::EllipticRegion(TRect{r.Left, r.Top, r.Bottom, r.Right}));

    const TColor c1 = ColorToRGB(from);
    const TColor c2 = ColorToRGB(to);
    const int32_t dR = GetRValue(c2) - GetRValue(c1);
    const int32_t dG = GetGValue(c2) - GetGValue(c1);
    const int32_t dB = GetBValue(c2) - GetBValue(c1);

    canvas.Pen().SetWidth(1);
    const int32_t w = WrapSub(r.Right, r.Left);
    const int32_t k = Round(w * 0.22);
    // 64 bits: twice a wrapped width does not fit 32.
    const int64_t n = w == k ? 1 : 2 * (int64_t{w} - k);
    const float incR = static_cast<float>(double(dR) / double(n));
    const float incG = static_cast<float>(double(dG) / double(n));
    const float incB = static_cast<float>(double(dB) / double(n));

    // Line i runs along the anti-diagonal x + y = base + i: only those crossing what the
    // canvas can show are drawn, so a face far larger than the surface costs no more.
    const TRect seen = canvas.ReachRect();
    const int64_t base = int64_t(r.Left) + r.Top + k - 1;
    const int64_t first = std::max<int64_t>(0, int64_t(seen.Left) + seen.Top - base);
    const int64_t last = std::min<int64_t>(n, int64_t(seen.Right) + seen.Bottom - 2 - base);
    for (int64_t i = first; i <= last; ++i) {
        const double di = static_cast<double>(i);
        canvas.Pen().SetColor(RGB(GetRValue(c1) + Round(incR * di),
                                  GetGValue(c1) + Round(incG * di),
                                  GetBValue(c1) + Round(incB * di)));
        const int32_t offset = static_cast<int32_t>(static_cast<uint32_t>(k) + uint32_t(i));
        canvas.MoveTo(WrapSub(WrapAdd(r.Left, offset), 1), r.Top);
        canvas.LineTo(WrapSub(r.Left, 1), WrapAdd(r.Top, offset));
    }
    canvas.ClearClipRegion();
}

void KxDrawFocusFrame(TCanvas& canvas, const TRect& r, TColor color) {
    if (r.Right - r.Left < 1 || r.Bottom - r.Top < 1) return;
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(color);
    const auto dot = [&canvas](int32_t x, int32_t y) {
        canvas.FillRect(TRect{x, y, x + 1, y + 1});
    };
    // Walk the outline once, clockwise, so the dots alternate around the corners too.
    int64_t n = 0;
    const auto put = [&](int32_t x, int32_t y) {
        if (n++ % 2 == 0) dot(x, y);
    };
    for (int32_t x = r.Left; x < r.Right; ++x)
        put(x, r.Top);
    for (int32_t y = r.Top + 1; y < r.Bottom; ++y)
        put(r.Right - 1, y);
    if (r.Bottom - 1 > r.Top)
        for (int32_t x = r.Right - 2; x >= r.Left; --x)
            put(x, r.Bottom - 1);
    if (r.Right - 1 > r.Left)
        for (int32_t y = r.Bottom - 2; y > r.Top; --y)
            put(r.Left, y);
}

void GetBkUpImage(TCanvas& canvas, TBitmap& bitmap, const TRect& r) {
    TRect i;
    if (!KxRectIntersection(canvas.ClipRect(), r, i)) return;
    const int32_t w = WrapSub(i.Right, i.Left);
    const int32_t h = WrapSub(i.Bottom, i.Top);
    // Both bitmaps share the canvas's device grid, so the copies are pixel for pixel.
    const TPoint origin = canvas.GridOrigin();
    TBitmap part;
    part.SetDeviceGrid(canvas.DeviceRatio(),
                       TPoint{WrapAdd(origin.X, i.Left), WrapAdd(origin.Y, i.Top)});
    part.SetSize(w, h);
    part.Canvas().CopyRect(TRect{0, 0, w, h}, canvas, i);
    bitmap.SetDeviceGrid(canvas.DeviceRatio(),
                         TPoint{WrapAdd(origin.X, r.Left), WrapAdd(origin.Y, r.Top)});
    bitmap.SetSize(WrapSub(r.Right, r.Left), WrapSub(r.Bottom, r.Top));
    bitmap.Canvas().Draw(WrapSub(i.Left, r.Left), WrapSub(i.Top, r.Top), part);
}

}  // namespace kx
