#include "kx/drawing/geometry.h"

#include <algorithm>
#include <cmath>

#include "kx/host/numeric.h"

namespace kx {
namespace {

int32_t width(const TRect& r) {
    return WrapSub(r.Right, r.Left);
}
int32_t height(const TRect& r) {
    return WrapSub(r.Bottom, r.Top);
}

}  // namespace

TPoint KxCenterPoint(const TRect& r) {
    return TPoint{WrapAdd(r.Left, Div(width(r), 2)), WrapAdd(r.Top, Div(height(r), 2))};
}

int32_t KxGetRadius(const TRect& r) {
    const int32_t w = width(r);
    const int32_t h = height(r);
    return w <= h ? Div(w, 2) : Div(h, 2);
}

bool KxInRect(int32_t x, int32_t y, const TRect& r) {
    return x >= r.Left && x < r.Right && y >= r.Top && y <= r.Bottom;
}

bool KxInCircle(int32_t x, int32_t y, const TRect& r) {
    const double w = width(r);
    const double h = height(r);
    const double dx = x - (r.Left + w / 2);
    const double dy = y - (r.Top + h / 2);
    return w >= 2 * std::sqrt(dx * dx + dy * dy);
}

bool KxRectInRect(const TRect& a, const TRect& b) {
    return a.Left >= b.Left && a.Right <= b.Right && a.Top >= b.Top && a.Bottom <= b.Bottom;
}

bool KxRectIsRect(const TRect& a, const TRect& b) {
    return a == b;
}

bool KxRectIntersection(const TRect& a, const TRect& b, TRect& r) {
    r.Left = KxMaxInt(a.Left, b.Left);
    r.Top = KxMaxInt(a.Top, b.Top);
    r.Right = KxMinInt(a.Right, b.Right);
    r.Bottom = KxMinInt(a.Bottom, b.Bottom);
    return r.Left <= r.Right && r.Top <= r.Bottom;
}

TRect KxMakeSquare(const TRect& r) {
    TRect s = r;
    const int32_t w = width(r);
    const int32_t h = height(r);
    if (w <= h)
        s.Bottom = WrapAdd(r.Top, w);
    else
        s.Right = WrapAdd(r.Left, h);
    return s;
}

TRect KxMakeCenterSquare(const TRect& r) {
    TRect s = r;
    const int32_t w = width(r);
    const int32_t h = height(r);
    if (w <= h) {
        s.Top = WrapSub(WrapAdd(r.Top, Div(h, 2)), Div(w, 2));
        s.Bottom = WrapAdd(s.Top, w);
    } else {
        s.Left = WrapSub(WrapAdd(r.Left, Div(w, 2)), Div(h, 2));
        s.Right = WrapAdd(s.Left, h);
    }
    return s;
}

void KxGetMaxRect(int32_t x, int32_t y, TRect& r) {
    if (x < r.Left) r.Left = x;
    if (x > r.Right) r.Right = x;
    if (y < r.Top) r.Top = y;
    if (y > r.Bottom) r.Bottom = y;
}

TRect KxPointsBounds(const TPoint* p, size_t n, int32_t margin) {
    TRect r{p[0].X, p[0].Y, p[0].X, p[0].Y};
    for (size_t i = 1; i < n; ++i)
        KxGetMaxRect(p[i].X, p[i].Y, r);
    KxBorder(r, WrapSub(0, margin));
    return r;
}

bool KxIsEmptyRect(const TRect& r) {
    return r.Right <= r.Left || r.Bottom <= r.Top;
}

TRect KxUnionRect(const TRect& a, const TRect& b) {
    return TRect{std::min(a.Left, b.Left), std::min(a.Top, b.Top), std::max(a.Right, b.Right),
                 std::max(a.Bottom, b.Bottom)};
}

TRect KxUnionArea(const TRect& a, const TRect& b) {
    if (KxIsEmptyRect(a)) return b;
    if (KxIsEmptyRect(b)) return a;
    return KxUnionRect(a, b);
}

TRect KxOffsetRect(const TRect& r, int32_t dx, int32_t dy) {
    return TRect{WrapAdd(r.Left, dx), WrapAdd(r.Top, dy), WrapAdd(r.Right, dx),
                 WrapAdd(r.Bottom, dy)};
}

TPoint KxOffsetPoint(TPoint p, int32_t dx, int32_t dy) {
    return TPoint{WrapAdd(p.X, dx), WrapAdd(p.Y, dy)};
}

TPoint KxSaturatedPoint(int64_t x, int64_t y) {
    return TPoint{Saturate(x), Saturate(y)};
}

void KxBorder(TRect& r, int32_t n) {
    KxMultiBorder(r, n, n, n, n);
}

void KxMultiBorder(TRect& rect, int32_t l, int32_t t, int32_t r, int32_t b) {
    rect.Left = WrapAdd(rect.Left, l);
    rect.Top = WrapAdd(rect.Top, t);
    rect.Right = WrapSub(rect.Right, r);
    rect.Bottom = WrapSub(rect.Bottom, b);
}

TRect KxMultiBorderRect(const TRect& rect, int32_t l, int32_t t, int32_t r, int32_t b) {
    TRect s = rect;
    KxMultiBorder(s, l, t, r, b);
    return s;
}

int32_t KxMinInt(int32_t a, int32_t b) {
    return a < b ? a : b;
}
int32_t KxMaxInt(int32_t a, int32_t b) {
    return a > b ? a : b;
}

int32_t KxMinMaxInt(int32_t value, int32_t min, int32_t max) {
    return KxMaxInt(KxMinInt(value, max), min);
}

int32_t CalcTotalDigit(int32_t a, int32_t b) {
    if (a >= 0 && b <= 0) return 0;
    return WrapSub(b, a);
}

}  // namespace kx
