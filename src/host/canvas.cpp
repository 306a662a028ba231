#include "kx/host/canvas.h"

#include <QGlyphRun>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

#include "kx/host/bitmap.h"
#include "kx/host/numeric.h"
#include "kx/host/raster.h"

namespace kx {
namespace {

QPainter::CompositionMode compositionForPenMode(TPenMode m) {
    switch (m) {
        case pmNot:
            return QPainter::RasterOp_NotDestination;
        case pmNotCopy:
            return QPainter::RasterOp_NotSource;
        case pmMergePenNot:
            return QPainter::RasterOp_SourceOrNotDestination;
        case pmMaskPenNot:
            return QPainter::RasterOp_SourceAndNotDestination;
        case pmMergeNotPen:
            return QPainter::RasterOp_NotSourceOrDestination;
        case pmMaskNotPen:
            return QPainter::RasterOp_NotSourceAndDestination;
        case pmMerge:
            return QPainter::RasterOp_SourceOrDestination;
        case pmNotMerge:
            return QPainter::RasterOp_NotSourceAndNotDestination;
        case pmMask:
            return QPainter::RasterOp_SourceAndDestination;
        case pmNotMask:
            return QPainter::RasterOp_NotSourceOrNotDestination;
        case pmXor:
            return QPainter::RasterOp_SourceXorDestination;
        case pmNotXor:
            return QPainter::RasterOp_NotSourceXorDestination;
        default:
            return QPainter::CompositionMode_SourceOver;
    }
}

QPainter::CompositionMode compositionForCopyMode(TCopyMode m) {
    switch (m) {
        case cmSrcInvert:
            return QPainter::RasterOp_SourceXorDestination;
        case cmSrcAnd:
            return QPainter::RasterOp_SourceAndDestination;
        case cmSrcPaint:
            return QPainter::RasterOp_SourceOrDestination;
        case cmNotSrcCopy:
            return QPainter::RasterOp_NotSource;
        case cmDstInvert:
            return QPainter::RasterOp_NotDestination;
        case cmMergePaint:
            return QPainter::RasterOp_NotSourceOrDestination;
        case cmSrcErase:
            return QPainter::RasterOp_SourceAndNotDestination;
        case cmNotSrcErase:
            return QPainter::RasterOp_NotSourceAndNotDestination;
        default:
            return QPainter::CompositionMode_Source;
    }
}

// The parametric angle (degrees, counter-clockwise from 3 o'clock) of the ellipse point
// on the radial from the centre through (x, y).
double radialToParam(double cx, double cy, double a, double b, double x, double y) {
    double dx = x - cx;
    double dyUp = cy - y;
    if (a <= 0 || b <= 0) return std::atan2(dyUp, dx) * 180.0 / std::numbers::pi;
    return std::atan2(dyUp / b, dx / a) * 180.0 / std::numbers::pi;
}

// The outline box through the centres of the pixels L..R-1, T..B-1: aliased strokes
// then cover exactly those pixels.
QRectF centredBox(int32_t l, int32_t t, int32_t r, int32_t b) {
    return QRectF(l + 0.5, t + 0.5, double(r) - l - 1, double(b) - t - 1);
}

int32_t saturate(int64_t v) {
    return int32_t(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX));
}

// Degrees counter-clockwise (y up) of the direction from the centre to (x, y).
double directionDeg(double cx, double cy, double x, double y) {
    return std::atan2(cy - y, x - cx) * 180.0 / std::numbers::pi;
}

QPointF centre(TPoint p) {
    return QPointF(p.X + 0.5, p.Y + 0.5);
}

void normalize(int32_t& l, int32_t& t, int32_t& r, int32_t& b) {
    if (r < l) std::swap(l, r);
    if (b < t) std::swap(t, b);
}

}  // namespace

TCanvas::TCanvas(QImage* target) : target_(target) {
    font_.SetColor(clWindowText);
}

double TCanvas::ValidRatio(double ratio) {
    if (!std::isfinite(ratio) || ratio <= 0.0) return 1.0;
    return std::clamp(ratio, 0.125, 8.0);
}

void TCanvas::SetDeviceGrid(double ratio, TPoint origin, TPoint logicalSize) {
    ratio_ = ValidRatio(ratio);
    origin_ = origin;
    logicalSize_ = logicalSize;
    thickness_ = std::max(1, int32_t(std::floor(ratio_)));
    if (hasClip_) SetClipRegion(QRegion(clip_));
}

namespace {
// v on an axis whose grid origin is o, at ratio d (not 1).
int32_t mapAxis(int32_t v, int32_t o, double d) {
    return saturate(int64_t(Round64((double(v) + o) * d)) - Round64(double(o) * d));
}
double centreOnAxis(int32_t v, int32_t o, double d) {
    return (double(v) + o + 0.5) * d - double(Round64(double(o) * d));
}
}  // namespace

int32_t TCanvas::DeviceX(int32_t x) const {
    return ratio_ == 1.0 ? x : mapAxis(x, origin_.X, ratio_);
}

int32_t TCanvas::DeviceY(int32_t y) const {
    return ratio_ == 1.0 ? y : mapAxis(y, origin_.Y, ratio_);
}

TRect TCanvas::DeviceRect(const TRect& r) const {
    return TRect{DeviceX(r.Left), DeviceY(r.Top), DeviceX(r.Right), DeviceY(r.Bottom)};
}

double TCanvas::deviceCentreX(int32_t x) const {
    return centreOnAxis(x, origin_.X, ratio_);
}

double TCanvas::deviceCentreY(int32_t y) const {
    return centreOnAxis(y, origin_.Y, ratio_);
}

TCanvas::~TCanvas() {
    Release();
}

void TCanvas::Release() {
    if (painter_) {
        painter_->end();
        painter_.reset();
    }
}

QPainter& TCanvas::painter() {
    if (onDraw_) onDraw_(nullptr);
    if (!painter_) {
        painter_ = std::make_unique<QPainter>(target_);
        painter_->setRenderHint(QPainter::Antialiasing, false);
        painter_->setRenderHint(QPainter::TextAntialiasing, true);
        painter_->setRenderHint(QPainter::SmoothPixmapTransform, false);
        if (hasClip_) painter_->setClipRegion(deviceClip_);
    }
    return *painter_;
}

QColor TCanvas::penQColor() const {
    if (pen_.Mode() == pmBlack) return QColor(0, 0, 0);
    if (pen_.Mode() == pmWhite) return QColor(255, 255, 255);
    return ToQColor(pen_.Color());
}

QColor TCanvas::brushQColor() const {
    if (pen_.Mode() == pmBlack) return QColor(0, 0, 0);
    if (pen_.Mode() == pmWhite) return QColor(255, 255, 255);
    return ToQColor(brush_.Color());
}

bool TCanvas::preparePenMode(QPainter& p) {
    if (pen_.Mode() == pmNop) return false;
    p.setCompositionMode(compositionForPenMode(pen_.Mode()));
    return true;
}

void TCanvas::fillSpanRect(int64_t l, int64_t t, int64_t r, int64_t b, const QColor& c) {
    // Only the part on the surface (and a pixel around it) matters; the clamp keeps far
    // rectangles from overflowing QRect.
    l = std::max<int64_t>(l, -1);
    t = std::max<int64_t>(t, -1);
    r = std::min<int64_t>(r, int64_t(target_->width()) + 1);
    b = std::min<int64_t>(b, int64_t(target_->height()) + 1);
    if (r <= l || b <= t) return;
    QPainter& p = painter();
    const QPainter::CompositionMode mode = p.compositionMode();
    const bool plain =
        mode == QPainter::CompositionMode_Source || mode == QPainter::CompositionMode_SourceOver;
    const QImage::Format f = target_->format();
    if (!hasClip_ && plain && c.alpha() == 255 &&
        (f == QImage::Format_ARGB32_Premultiplied || f == QImage::Format_RGB32)) {
        // An opaque fill in copy mode is a row fill; QPainter costs more than the pixels
        // for the small rectangles that bars and readouts repaint on every reading.
        const int x0 = int(std::max<int64_t>(l, 0)),
                  x1 = int(std::min<int64_t>(r, target_->width()));
        const int y0 = int(std::max<int64_t>(t, 0)),
                  y1 = int(std::min<int64_t>(b, target_->height()));
        if (x1 <= x0 || y1 <= y0) return;
        const QRgb px = c.rgba();
        uchar* bits = target_->bits();  // one detach check for all rows
        const qsizetype stride = target_->bytesPerLine();
        for (int y = y0; y < y1; ++y)
            std::fill_n(reinterpret_cast<QRgb*>(bits + y * stride) + x0, x1 - x0, px);
        return;
    }
    p.fillRect(QRect(int(l), int(t), int(r - l), int(b - t)), c);
}

void TCanvas::fillLogicalRect(int32_t l, int32_t t, int32_t r, int32_t b, const QColor& c) {
    fillSpanRect(DeviceX(l), DeviceY(t), DeviceX(r), DeviceY(b), c);
}

raster::TWindow TCanvas::surfaceWindow(bool rowsOnly) const {
    raster::TWindow w;
    w.Y0 = 0;
    w.Y1 = target_->height();
    if (!rowsOnly) {
        w.X0 = 0;
        w.X1 = target_->width();
    }
    return w;
}

// The k-pixel thick line: each pixel of the line rule grows by k - 1 pixels towards the
// positive minor axis.
void TCanvas::appendThickLine(TPoint a, TPoint b, bool includeEnd, std::vector<TPoint>& out) const {
    const int32_t k = thickness_;
    const bool xMajor = std::abs(int64_t(b.X) - a.X) >= std::abs(int64_t(b.Y) - a.Y);
    raster::TWindow window = surfaceWindow(false);
    // Steps just before the window on the minor axis still reach into it.
    (xMajor ? window.Y0 : window.X0) -= k - 1;
    raster::ForEachLinePixel(
        a, b, includeEnd,
        [&](int64_t x, int64_t y) {
            for (int32_t i = 0; i < k; ++i)
                out.push_back(xMajor ? TPoint{int32_t(x), int32_t(y + i)}
                                     : TPoint{int32_t(x + i), int32_t(y)});
        },
        window);
}

void TCanvas::strokeThinLine(TPoint a, TPoint b, bool includeEnd) {
    if (thickness_ > 1) {
        thread_local std::vector<TPoint> thick;
        thick.clear();
        appendThickLine(a, b, includeEnd, thick);
        putPixels(thick, penQColor());
        return;
    }
    if (directPixels()) {
        if (onDraw_) onDraw_(nullptr);
        const uint32_t pixel = penQColor().rgba();
        uchar* bits = target_->bits();
        const qsizetype stride = target_->bytesPerLine();
        raster::ForEachLinePixel(
            a, b, includeEnd,
            [&](int64_t x, int64_t y) {
                reinterpret_cast<uint32_t*>(bits + y * stride)[x] = pixel;
            },
            surfaceWindow(false));
        return;
    }
    thread_local std::vector<TPoint> pixels;
    pixels.clear();
    raster::ForEachLinePixel(
        a, b, includeEnd,
        [&](int64_t x, int64_t y) {
            pixels.push_back(TPoint{int32_t(x), int32_t(y)});
        },
        surfaceWindow(false));
    putPixels(pixels, penQColor());
}

bool TCanvas::directPixels() const {
    const QImage::Format f = target_->format();
    return !hasClip_ && pen_.Mode() == pmCopy &&
           (f == QImage::Format_ARGB32_Premultiplied || f == QImage::Format_RGB32 ||
            f == QImage::Format_ARGB32);
}

// Plain copies straight into the pixels; anything clipped or combined through QPainter.
void TCanvas::putRuns(const std::vector<QRect>& runs, const QColor& c) {
    if (runs.empty()) return;
    if (!directPixels()) {
        QPainter& p = painter();
        p.setPen(Qt::NoPen);
        p.setBrush(c);
        p.drawRects(runs.data(), int(runs.size()));
        return;
    }
    if (onDraw_) {
        QRect touched;
        for (const QRect& r : runs)
            touched |= r;
        touched &= target_->rect();
        if (touched.isEmpty()) return;
        onDraw_(&touched);
    }
    const QRect bounds = target_->rect();
    const uint32_t pixel = c.rgba();
    uchar* bits = target_->bits();  // one detach check, not one per row
    const qsizetype stride = target_->bytesPerLine();
    for (const QRect& r0 : runs) {
        const QRect r = r0.intersected(bounds);
        if (r.isEmpty()) continue;
        for (int y = r.top(); y <= r.bottom(); ++y) {
            auto* line = reinterpret_cast<uint32_t*>(bits + y * stride);
            std::fill(line + r.left(), line + r.right() + 1, pixel);
        }
    }
}

// Each pixel once, even where a shape's edges meet or cross, so that combining pen modes
// see it once; neighbours on a row go down as one run.
void TCanvas::putPixels(std::vector<TPoint>& pixels, const QColor& c) {
    raster::SortUnique(pixels);
    thread_local std::vector<QRect> runs;
    runs.clear();
    for (size_t i = 0; i < pixels.size();) {
        size_t j = i;
        while (j + 1 < pixels.size() && pixels[j + 1].Y == pixels[i].Y &&
               pixels[j + 1].X == pixels[j].X + 1)
            ++j;
        runs.emplace_back(pixels[i].X, pixels[i].Y, int(j - i + 1), 1);
        i = j + 1;
    }
    putRuns(runs, c);
}

void TCanvas::putSpans(const std::vector<raster::TSpan>& spans, const QColor& c) {
    thread_local std::vector<QRect> runs;
    runs.clear();
    const int32_t width = target_->width();
    for (const raster::TSpan& s : spans) {
        // Spans may reach far off the surface; only the visible part becomes a run.
        const int32_t x0 = std::max(s.X0, 0), x1 = std::min(s.X1, width);
        if (x0 < x1) runs.emplace_back(x0, s.Y, x1 - x0, 1);
    }
    putRuns(runs, c);
}

QPen TCanvas::widePen() const {
    const int32_t width = scaled() ? std::max(1, Round(pen_.Width() * ratio_)) : pen_.Width();
    return QPen(penQColor(), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

// The outline through pts with the pen: one-pixel pens by the line rule, wider ones
// centred on the pixel centres with round ends and joins.
void TCanvas::strokeOutline(std::span<const TPoint> pts, bool closed, bool logical) {
    if (!penVisible() || pts.size() < 2) return;
    if (pen_.Width() <= 1) {
        thread_local std::vector<TPoint> mapped;
        if (logical && scaled()) {
            mapped.clear();
            for (const TPoint& pt : pts)
                mapped.push_back(toDevice(pt));
            pts = mapped;
        }
        thread_local std::vector<TPoint> pixels;
        pixels.clear();
        if (thickness_ == 1) {
            raster::AppendPolylinePixels(pts, closed, pixels, surfaceWindow(false));
        } else {
            const size_t n = pts.size(), segments = closed ? n : n - 1;
            for (size_t i = 0; i < segments; ++i)
                appendThickLine(pts[i], pts[(i + 1) % n], false, pixels);
        }
        putPixels(pixels, penQColor());
        return;
    }
    QPolygonF poly;
    for (const TPoint& pt : pts)
        poly << (logical ? QPointF(deviceCentreX(pt.X), deviceCentreY(pt.Y)) : centre(pt));
    QPainter& p = painter();
    p.setPen(widePen());
    p.setBrush(Qt::NoBrush);
    if (closed)
        p.drawPolygon(poly);
    else
        p.drawPolyline(poly);
}

void TCanvas::MoveTo(int32_t x, int32_t y) {
    penPos_ = TPoint{x, y};
}

void TCanvas::LineTo(int32_t x, int32_t y) {
    const TPoint from = penPos_;
    penPos_ = TPoint{x, y};
    if (!drawable() || !penVisible()) return;
    QPainter& p = painter();
    if (!preparePenMode(p)) return;
    if (pen_.Width() <= 1 && pen_.Style() == psSolid) {
        strokeThinLine(toDevice(from), toDevice(penPos_), false);
        return;
    }
    QPen qp = widePen();
    if (pen_.Width() <= 1) {
        qp.setWidth(1);
        qp.setStyle(pen_.Style() == psDash         ? Qt::DashLine
                    : pen_.Style() == psDot        ? Qt::DotLine
                    : pen_.Style() == psDashDot    ? Qt::DashDotLine
                    : pen_.Style() == psDashDotDot ? Qt::DashDotDotLine
                                                   : Qt::SolidLine);
        qp.setCapStyle(Qt::FlatCap);
    }
    p.setPen(qp);
    p.setBrush(Qt::NoBrush);
    p.drawLine(QPointF(deviceCentreX(from.X), deviceCentreY(from.Y)),
               QPointF(deviceCentreX(penPos_.X), deviceCentreY(penPos_.Y)));
}

void TCanvas::Polyline(std::span<const TPoint> pts) {
    if (pts.size() < 2 || !drawable() || !penVisible()) return;
    if (!preparePenMode(painter())) return;
    strokeOutline(pts, false, true);
}

void TCanvas::Polygon(std::span<const TPoint> pts) {
    if (pts.size() < 2 || !drawable()) return;
    if (!preparePenMode(painter())) return;
    if (brushVisible()) {
        thread_local std::vector<TPoint> mapped;
        std::span<const TPoint> vertices = pts;
        if (scaled()) {
            mapped.clear();
            for (const TPoint& pt : pts)
                mapped.push_back(toDevice(pt));
            vertices = mapped;
        }
        thread_local std::vector<raster::TSpan> spans;
        spans.clear();
        raster::PolygonSpans(vertices, spans, 0, target_->height());
        putSpans(spans, brushQColor());
    }
    strokeOutline(pts, true, true);
}

void TCanvas::Rectangle(int32_t l, int32_t t, int32_t r, int32_t b) {
    if (!drawable()) return;
    normalize(l, t, r, b);
    QPainter& p = painter();
    if (!preparePenMode(p)) return;
    if (!penVisible()) {
        // Without an outline the classic fill stops one pixel short on the right and bottom.
        if (brushVisible()) fillLogicalRect(l, t, r - 1, b - 1, brushQColor());
        return;
    }
    const int64_t dl = DeviceX(l), dt = DeviceY(t), dr = DeviceX(r), db = DeviceY(b);
    if (pen_.Width() <= 1) {
        // A ring k device pixels thick inside the mapped box, each pixel written once.
        const int64_t k = thickness_;
        if (brushVisible()) fillSpanRect(dl + k, dt + k, dr - k, db - k, brushQColor());
        const QColor c = penQColor();
        if (int64_t(r) - l <= 0 || int64_t(b) - t <= 0) return;
        fillSpanRect(dl, dt, dr, std::min(dt + k, db), c);
        fillSpanRect(dl, std::max(db - k, dt + k), dr, db, c);
        fillSpanRect(dl, dt + k, std::min(dl + k, dr), db - k, c);
        fillSpanRect(std::max(dr - k, dl + k), dt + k, dr, db - k, c);
        return;
    }
    if (brushVisible()) fillSpanRect(dl, dt, dr, db, brushQColor());
    p.setPen(widePen());
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(QPointF(deviceCentreX(l), deviceCentreY(t)),
                      QPointF(deviceCentreX(r - 1), deviceCentreY(b - 1))));
}

void TCanvas::FillRect(const TRect& r) {
    if (!drawable() || !brushVisible()) return;
    if (r.Right <= r.Left || r.Bottom <= r.Top) return;
    QPainter& p = painter();
    p.setCompositionMode(QPainter::CompositionMode_SourceOver);
    fillLogicalRect(r.Left, r.Top, r.Right, r.Bottom, ToQColor(brush_.Color()));
}

// The closed outline of an ellipse or rounded rectangle and the fill between its
// leftmost and rightmost pixels on each row (including them when there is no pen).
void TCanvas::drawRoundShape(const std::vector<TPoint>& outline) {
    thread_local std::vector<TPoint> pixels;
    pixels.clear();
    // Rows only: the fill needs each row's outermost pixels even where they are off the
    // surface's sides.
    raster::AppendPolylinePixels(outline, true, pixels, surfaceWindow(true));
    raster::SortUnique(pixels);
    if (brushVisible()) {
        thread_local std::vector<raster::TSpan> spans;
        spans.clear();
        raster::RowExtentSpans(pixels, penVisible(), spans);
        putSpans(spans, brushQColor());
    }
    if (!penVisible()) return;
    if (pen_.Width() <= 1) {
        const int32_t width = target_->width();
        std::erase_if(pixels, [&](const TPoint& p) { return p.X < 0 || p.X >= width; });
        putPixels(pixels, penQColor());
    } else {
        strokeOutline(outline, true, false);
    }
}

// Boxes beyond the exact walk's limit get Qt's curve; they reach far off any surface.
void TCanvas::drawPath(const QPainterPath& path, bool fill, bool stroke) {
    QPainter& p = painter();
    if (fill && brushVisible()) {
        p.setPen(Qt::NoPen);
        p.setBrush(brushQColor());
        p.drawPath(path);
    }
    if (stroke && penVisible()) {
        p.setPen(widePen());
        p.setBrush(Qt::NoBrush);
        p.drawPath(path);
    }
}

void TCanvas::RoundRect(int32_t l, int32_t t, int32_t r, int32_t b, int32_t w, int32_t h) {
    if (!drawable()) return;
    normalize(l, t, r, b);
    const int64_t bw = int64_t(r) - l, bh = int64_t(b) - t;
    if (std::min<int64_t>(w, bw) <= 2 || std::min<int64_t>(h, bh) <= 2) {
        Rectangle(l, t, r, b);
        return;
    }
    if (!preparePenMode(painter())) return;
    const TRect d = DeviceRect(TRect{l, t, r, b});
    const int32_t ew = scaled() ? Round(w * ratio_) : w, eh = scaled() ? Round(h * ratio_) : h;
    if (drawCurve(d, ew, eh)) return;
    QPainterPath path;
    path.addRoundedRect(centredBox(d.Left, d.Top, d.Right, d.Bottom), ew / 2.0, eh / 2.0);
    drawPath(path, true, true);
}

void TCanvas::Ellipse(int32_t l, int32_t t, int32_t r, int32_t b) {
    if (!drawable()) return;
    normalize(l, t, r, b);
    const int64_t w = int64_t(r) - l, h = int64_t(b) - t;
    if (w <= 0 || h <= 0) return;
    if (!preparePenMode(painter())) return;
    if (w <= 2 || h <= 2) {
        // Too small for a curve: the pen covers the whole box.
        if (penVisible() || brushVisible())
            fillLogicalRect(l, t, r, b, penVisible() ? penQColor() : brushQColor());
        return;
    }
    const TRect d = DeviceRect(TRect{l, t, r, b});
    if (drawCurve(d, saturate(int64_t(d.Right) - d.Left), saturate(int64_t(d.Bottom) - d.Top)))
        return;
    QPainterPath path;
    path.addEllipse(centredBox(d.Left, d.Top, d.Right, d.Bottom));
    drawPath(path, true, true);
}

// The rounded rectangle (an ellipse when the corner is the whole box) on the device box
// d; false when the box is too large for the exact walk.
bool TCanvas::drawCurve(const TRect& d, int32_t ew, int32_t eh) {
    const std::vector<TPoint> outline =
        raster::RoundRectOutline(d.Left, d.Top, d.Right, d.Bottom, ew, eh);
    if (outline.empty()) return false;
    if (thickness_ == 1 || !penVisible() || pen_.Width() > 1) {
        drawRoundShape(outline);
        return true;
    }
    thread_local std::vector<TPoint> ring;
    thread_local std::vector<raster::TSpan> inside;
    ring.clear();
    inside.clear();
    ringPixels(outline, innerOutline(d, ew, eh), nullptr, ring, &inside);
    if (brushVisible()) putSpans(inside, brushQColor());
    putPixels(ring, penQColor());
    return true;
}

// The same shape shrunk by the line thickness on every side (empty when nothing is left).
std::vector<TPoint> TCanvas::innerOutline(const TRect& d, int32_t ew, int32_t eh) const {
    const int32_t k = thickness_;
    const int64_t w = int64_t(d.Right) - d.Left - 2 * k, h = int64_t(d.Bottom) - d.Top - 2 * k;
    if (w <= 0 || h <= 0) return {};
    const int64_t iw = std::clamp<int64_t>(int64_t(ew) - 2 * k, 1, w);
    const int64_t ih = std::clamp<int64_t>(int64_t(eh) - 2 * k, 1, h);
    return raster::RoundRectOutline(d.Left + k, d.Top + k, d.Right - k, d.Bottom - k, int32_t(iw),
                                    int32_t(ih));
}

// The ring between two closed outlines, row by row: from each side of the outer shape's
// row to the inner shape's row (the whole outer row where the inner shape has none);
// with a sector, only the ring pixels whose centres lie in it. inside receives the inner
// shape's rows.
void TCanvas::ringPixels(const std::vector<TPoint>& outer, const std::vector<TPoint>& inner,
                         const TSector* sector, std::vector<TPoint>& ring,
                         std::vector<raster::TSpan>* inside) const {
    thread_local std::vector<TPoint> op, ip;
    thread_local std::vector<raster::TSpan> os, is;
    op.clear();
    ip.clear();
    os.clear();
    is.clear();
    raster::AppendPolylinePixels(outer, true, op, surfaceWindow(true));
    raster::SortUnique(op);
    raster::RowExtentSpans(op, false, os);
    if (!inner.empty()) {
        raster::AppendPolylinePixels(inner, true, ip, surfaceWindow(true));
        raster::SortUnique(ip);
        raster::RowExtentSpans(ip, false, is);
    }
    const int64_t width = target_->width();
    auto put = [&](int32_t y, int64_t x0, int64_t x1) {
        x0 = std::max<int64_t>(x0, 0);
        x1 = std::min(x1, width);
        for (int64_t x = x0; x < x1; ++x) {
            if (sector) {
                const double a = directionDeg(sector->Cx, sector->Cy, x + 0.5, y + 0.5);
                if (std::fmod(a - sector->Start + 720.0, 360.0) > sector->Sweep) continue;
            }
            ring.push_back(TPoint{int32_t(x), y});
        }
    };
    size_t j = 0;
    for (const raster::TSpan& o : os) {
        while (j < is.size() && is[j].Y < o.Y)
            ++j;
        if (j < is.size() && is[j].Y == o.Y) {
            const int64_t i0 = std::max(is[j].X0, o.X0), i1 = std::min(is[j].X1, o.X1);
            if (i0 < i1) {
                put(o.Y, o.X0, i0);
                put(o.Y, i1, o.X1);
                if (inside) inside->push_back(raster::TSpan{o.Y, int32_t(i0), int32_t(i1)});
                continue;
            }
        }
        put(o.Y, o.X0, o.X1);
    }
}

// The sector of an arc or pie on the device box d from the radial through p1 to the
// radial through p2 (logical points).
TCanvas::TSector TCanvas::deviceSector(const TRect& d, TPoint p1, TPoint p2) const {
    // Pixel centres throughout, the centre pixel as the exact walk takes it.
    TSector s;
    s.Cx = double(d.Left + (int64_t(d.Right) - d.Left) / 2) + 0.5;
    s.Cy = double(d.Top + (int64_t(d.Bottom) - d.Top) / 2) + 0.5;
    const TPoint a = toDevice(p1), b = toDevice(p2);
    s.Start = directionDeg(s.Cx, s.Cy, a.X + 0.5, a.Y + 0.5);
    s.Sweep = std::fmod(directionDeg(s.Cx, s.Cy, b.X + 0.5, b.Y + 0.5) - s.Start + 720.0, 360.0);
    if (s.Sweep == 0.0) s.Sweep = 360.0;
    return s;
}

namespace {
// Qt's arc for boxes beyond the exact walk's limit: the counter-clockwise span from the
// radial through (x1, y1) to the radial through (x2, y2) (equal radials: the whole one).
QPainterPath approximateArc(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1,
                            int32_t x2, int32_t y2, bool pie) {
    const QRectF box = centredBox(l, t, r, b);
    const double cx = (double(l) + r) / 2.0, cy = (double(t) + b) / 2.0;
    const double ra = box.width() / 2, rb = box.height() / 2;
    const double start = radialToParam(cx, cy, ra, rb, x1, y1);
    double sweep = radialToParam(cx, cy, ra, rb, x2, y2) - start;
    while (sweep <= 0)
        sweep += 360.0;
    QPainterPath path;
    if (pie)
        path.moveTo(box.center());
    else
        path.arcMoveTo(box, start);
    path.arcTo(box, start, sweep);
    if (pie) path.closeSubpath();
    return path;
}
}  // namespace

void TCanvas::Arc(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1, int32_t x2,
                  int32_t y2) {
    if (!drawable() || !penVisible()) return;
    normalize(l, t, r, b);
    if (r == l || b == t || !preparePenMode(painter())) return;
    TPoint c;
    const TRect d = DeviceRect(TRect{l, t, r, b});
    const TPoint p1 = toDevice({x1, y1}), p2 = toDevice({x2, y2});
    const std::vector<TPoint> pts = raster::ArcPoints(d.Left, d.Top, d.Right, d.Bottom, p1, p2, c);
    if (pts.empty()) {
        drawPath(approximateArc(d.Left, d.Top, d.Right, d.Bottom, p1.X, p1.Y, p2.X, p2.Y, false),
                 false, true);
    } else if (thickness_ > 1 && pen_.Width() <= 1) {
        thread_local std::vector<TPoint> ring;
        ring.clear();
        const TSector sector = deviceSector(d, {x1, y1}, {x2, y2});
        const int32_t w = saturate(int64_t(d.Right) - d.Left),
                      h = saturate(int64_t(d.Bottom) - d.Top);
        ringPixels(raster::RoundRectOutline(d.Left, d.Top, d.Right, d.Bottom, w, h),
                   innerOutline(d, w, h), &sector, ring, nullptr);
        putPixels(ring, penQColor());
    } else {
        strokeOutline(pts, false, false);
    }
}

void TCanvas::Pie(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1, int32_t x2,
                  int32_t y2) {
    if (!drawable()) return;
    normalize(l, t, r, b);
    if (r == l || b == t || !preparePenMode(painter())) return;
    TPoint c;
    const TRect d = DeviceRect(TRect{l, t, r, b});
    const TPoint p1 = toDevice({x1, y1}), p2 = toDevice({x2, y2});
    std::vector<TPoint> pts = raster::ArcPoints(d.Left, d.Top, d.Right, d.Bottom, p1, p2, c);
    if (pts.empty()) {
        drawPath(approximateArc(d.Left, d.Top, d.Right, d.Bottom, p1.X, p1.Y, p2.X, p2.Y, true),
                 true, true);
        return;
    }
    const TPoint first = pts.front(), last = pts.back();
    pts.push_back(c);
    if (brushVisible()) {
        thread_local std::vector<raster::TSpan> spans;
        spans.clear();
        raster::PolygonSpans(pts, spans, 0, target_->height());
        putSpans(spans, brushQColor());
    }
    if (thickness_ == 1 || pen_.Width() > 1 || !penVisible()) {
        strokeOutline(pts, true, false);
        return;
    }
    // The thick arc and the two radii, each pixel once.
    thread_local std::vector<TPoint> outline;
    outline.clear();
    const TSector sector = deviceSector(d, {x1, y1}, {x2, y2});
    const int32_t w = saturate(int64_t(d.Right) - d.Left), h = saturate(int64_t(d.Bottom) - d.Top);
    ringPixels(raster::RoundRectOutline(d.Left, d.Top, d.Right, d.Bottom, w, h),
               innerOutline(d, w, h), &sector, outline, nullptr);
    appendThickLine(last, c, false, outline);
    appendThickLine(c, first, false, outline);
    putPixels(outline, penQColor());
}

void TCanvas::TextOut(int32_t x, int32_t y, const QString& text) {
    if (!drawable() || text.isEmpty()) return;
    QPainter& p = painter();
    p.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const QFontMetrics& fm = font_.Metrics();
    QGlyphRun number;
    int w = 0;
    const bool isNumber = font_.LayOutNumber(text, &number, w);
    if (!isNumber) w = fm.horizontalAdvance(text);
    const int asc = fm.ascent(), h = fm.ascent() + fm.descent();
    int dx = 0;
    if ((textAlign_ & TA_CENTER) == TA_CENTER)
        dx = -(w / 2);
    else if (textAlign_ & TA_RIGHT)
        dx = -w;
    int top = 0;
    if ((textAlign_ & TA_BASELINE) == TA_BASELINE)
        top = -asc;
    else if (textAlign_ & TA_BOTTOM)
        top = -h;
    const bool rotated = font_.Orientation() != 0;
    if (!rotated) {
        // A cell far beyond any surface draws nothing (and its coordinates cannot wrap).
        constexpr int64_t kFar = int64_t(1) << 24;
        const int64_t left = int64_t(x) + dx, cellTop = int64_t(y) + top;
        if (left + w < -kFar || left > kFar || cellTop + h < -kFar || cellTop > kFar) return;
        dx = int(left);
        top = int(cellTop);
        // The cell by the rectangle rule, before the glyphs' scaling.
        if (brushVisible())
            fillLogicalRect(dx, top, saturate(int64_t(dx) + w), saturate(int64_t(top) + h),
                            ToQColor(brush_.Color()));
    }
    if (rotated || scaled()) p.save();
    if (scaled()) {
        // Logical coordinates onto the device grid, so glyphs are rasterized at device
        // resolution.
        p.translate(-double(Round64(origin_.X * ratio_)), -double(Round64(origin_.Y * ratio_)));
        p.scale(ratio_, ratio_);
        p.translate(origin_.X, origin_.Y);
    }
    if (rotated) {
        p.translate(x, y);
        p.rotate(-font_.Orientation() / 10.0);
        if (brushVisible()) p.fillRect(QRect(dx, top, w, h), ToQColor(brush_.Color()));
    }
    p.setFont(font_.ToQFont());
    p.setPen(ToQColor(font_.Color()));
    if (isNumber)
        p.drawGlyphRun(QPointF(dx, top + asc), number);
    else
        p.drawText(QPoint(dx, top + asc), text);
    if (rotated || scaled()) p.restore();
}

int32_t TCanvas::TextWidth(const QString& text) {
    int w = 0;
    if (font_.LayOutNumber(text, nullptr, w)) return w;
    return font_.Metrics().horizontalAdvance(text);
}

int32_t TCanvas::TextHeight(const QString&) {
    const QFontMetrics& fm = font_.Metrics();
    return fm.ascent() + fm.descent();
}

void TCanvas::Frame3D(TRect& r, TColor topColor, TColor bottomColor, int32_t width) {
    pen_.SetWidth(1);
    if (drawable() && preparePenMode(painter())) {
        pen_.SetColor(topColor);
        const QColor top = penQColor();
        pen_.SetColor(bottomColor);
        const QColor bottom = penQColor();
        const auto [first, last] = RingsOnSurface(r, width);
        for (int32_t k = first; k < last; ++k) {
            const int64_t l64 = int64_t(r.Left) + k, t64 = int64_t(r.Top) + k;
            const int64_t r64 = int64_t(r.Right) - k, b64 = int64_t(r.Bottom) - k;
            if (r64 <= l64 || b64 <= t64) break;
            const int32_t l = int32_t(l64), t = int32_t(t64), rr = int32_t(r64), b = int32_t(b64);
            // The second colour owns the right column and the bottom row, so a ring one
            // pixel high or wide is all second colour and no pixel is written twice.
            if (b - 1 > t) fillLogicalRect(l, t, rr - 1, t + 1, top);      // top row
            if (rr - 1 > l) fillLogicalRect(l, t + 1, l + 1, b - 1, top);  // left column
            fillLogicalRect(rr - 1, t, rr, b - 1, bottom);                 // right column
            fillLogicalRect(l, b - 1, rr, b, bottom);                      // bottom row
        }
    }
    pen_.SetColor(bottomColor);
    if (width > 0) {
        auto shift = [](int32_t v, int64_t by) {
            return int32_t(std::clamp<int64_t>(v + by, INT32_MIN, INT32_MAX));
        };
        r = TRect{shift(r.Left, width), shift(r.Top, width), shift(r.Right, -int64_t(width)),
                  shift(r.Bottom, -int64_t(width))};
    }
}

bool TCanvas::fastCopy(const QImage& src, const TRect& s, int32_t dx, int32_t dy) {
    if (hasClip_ || !drawable() || src.isNull() || src.format() != target_->format() ||
        &src == target_)
        return false;
    // Clip source and destination to both images, in 64 bits: either may start far off.
    int64_t sl = s.Left, st = s.Top, w = s.Width(), h = s.Height();
    int64_t dx64 = dx, dy64 = dy;
    // A start before 0 moves both starts on by as much and shortens the span.
    const auto clipStart = [](int64_t& start, int64_t& other, int64_t& span) {
        if (start >= 0) return;
        other -= start;
        span += start;
        start = 0;
    };
    clipStart(sl, dx64, w);
    clipStart(st, dy64, h);
    clipStart(dx64, sl, w);
    clipStart(dy64, st, h);
    w = std::min({w, src.width() - sl, target_->width() - dx64});
    h = std::min({h, src.height() - st, target_->height() - dy64});
    if (w <= 0 || h <= 0) return true;
    // Now within both images, so every figure fits 32 bits again.
    dx = int32_t(dx64);
    dy = int32_t(dy64);
    if (onDraw_) {
        const QRect touched(dx, dy, int(w), int(h));
        onDraw_(&touched);
    }
    const int bpp = src.depth() / 8;
    const uchar* srcBits = src.constBits();
    uchar* dstBits = target_->bits();
    const qsizetype srcStride = src.bytesPerLine(), dstStride = target_->bytesPerLine();
    for (int32_t row = 0; row < h; ++row) {
        const uchar* from = srcBits + (st + row) * srcStride + size_t(sl) * bpp;
        uchar* to = dstBits + (dy + row) * dstStride + size_t(dx) * bpp;
        std::memcpy(to, from, size_t(w) * bpp);
    }
    return true;
}

void TCanvas::CopyRect(const TRect& logicalDest, TCanvas& source, const TRect& logicalSource) {
    if (!drawable() || !source.drawable()) return;
    // Each rectangle maps on its own canvas's grid; equal device sizes copy row by row.
    const TRect dest = DeviceRect(logicalDest), sr = source.DeviceRect(logicalSource);
    if (dest.Width() == 0 || dest.Height() == 0 || sr.Width() == 0 || sr.Height() == 0) return;
    if (copyMode_ == cmBlackness || copyMode_ == cmWhiteness) {
        QPainter& p = painter();
        p.setCompositionMode(QPainter::CompositionMode_Source);
        p.fillRect(QRect(dest.Left, dest.Top, dest.Width(), dest.Height()),
                   copyMode_ == cmBlackness ? Qt::black : Qt::white);
        return;
    }
    const bool sameSize = dest.Width() == sr.Width() && dest.Height() == sr.Height();
    if (copyMode_ == cmSrcCopy && sameSize && sr.Width() > 0 && sr.Height() > 0 &&
        fastCopy(*source.target_, sr, dest.Left, dest.Top))
        return;
    // Copying within one image needs a snapshot of the source first.
    QImage snapshot;
    const QImage* src = source.target_;
    if (src == target_) {
        snapshot = src->copy();
        src = &snapshot;
    }
    QPainter& p = painter();
    p.setCompositionMode(compositionForCopyMode(copyMode_));
    QRect d(dest.Left, dest.Top, dest.Width(), dest.Height());
    QRect s(sr.Left, sr.Top, sr.Width(), sr.Height());
    // Mirrored rectangles are drawn mirrored, as the classic stretch copy does.
    QImage part = src->copy(s.normalized());
    const bool flipX = (sr.Width() < 0) != (dest.Width() < 0);
    const bool flipY = (sr.Height() < 0) != (dest.Height() < 0);
    if (flipX || flipY) part = part.mirrored(flipX, flipY);
    p.drawImage(d.normalized(), part);
}

// The image pixel for pixel with its top-left corner at device (x, y).
void TCanvas::drawImageAt(int32_t x, int32_t y, const TBitmap& bitmap) {
    const QImage& img = bitmap.Image();
    if (!bitmap.Transparent() && fastCopy(img, TRect{0, 0, img.width(), img.height()}, x, y))
        return;
    QPainter& p = painter();
    p.setCompositionMode(bitmap.Transparent() ? QPainter::CompositionMode_SourceOver
                                              : QPainter::CompositionMode_Source);
    p.drawImage(QPoint(x, y), img);
}

void TCanvas::Draw(int32_t x, int32_t y, const TBitmap& bitmap) {
    if (!drawable() || bitmap.Empty()) return;
    if (bitmap.DeviceRatio() == ratio_) {
        drawImageAt(DeviceX(x), DeviceY(y), bitmap);
        return;
    }
    StretchDraw(
        TRect{x, y, saturate(int64_t(x) + bitmap.Width()), saturate(int64_t(y) + bitmap.Height())},
        bitmap);
}

void TCanvas::StretchDraw(const TRect& logicalDest, const TBitmap& bitmap) {
    if (!drawable() || bitmap.Empty() || logicalDest.Width() <= 0 || logicalDest.Height() <= 0)
        return;
    const TRect dest = DeviceRect(logicalDest);
    if (dest.Width() <= 0 || dest.Height() <= 0) return;
    const QImage& img = bitmap.Image();
    if (dest.Width() == img.width() && dest.Height() == img.height()) {
        drawImageAt(dest.Left, dest.Top, bitmap);
        return;
    }
    QPainter& p = painter();
    p.setCompositionMode(bitmap.Transparent() ? QPainter::CompositionMode_SourceOver
                                              : QPainter::CompositionMode_Source);
    p.drawImage(QRect(dest.Left, dest.Top, dest.Width(), dest.Height()), img);
}

TColor TCanvas::Pixel(int32_t x, int32_t y) {
    x = DeviceX(x);
    y = DeviceY(y);
    if (!drawable() || x < 0 || y < 0 || x >= target_->width() || y >= target_->height()) return -1;
    return FromQRgb(qUnpremultiply(target_->pixel(x, y)));
}

void TCanvas::SetPixel(int32_t x, int32_t y, TColor c) {
    x = DeviceX(x);
    y = DeviceY(y);
    if (!drawable() || x < 0 || y < 0 || x >= target_->width() || y >= target_->height()) return;
    if (hasClip_ && !deviceClip_.contains(QPoint(x, y))) return;
    if (onDraw_) {
        const QRect touched(x, y, 1, 1);
        onDraw_(&touched);
    }
    target_->setPixel(x, y, ToQRgb(c));
}

// Each rectangle of a logical region by the rectangle rule.
QRegion TCanvas::deviceRegion(const QRegion& region) const {
    if (!scaled()) return region;
    QRegion out;
    for (const QRect& q : region) {
        const TRect d = DeviceRect(TRect{q.left(), q.top(), saturate(int64_t(q.left()) + q.width()),
                                         saturate(int64_t(q.top()) + q.height())});
        if (d.Right > d.Left && d.Bottom > d.Top)
            out += QRect(d.Left, d.Top, saturate(int64_t(d.Right) - d.Left),
                         saturate(int64_t(d.Bottom) - d.Top));
    }
    return out;
}

void TCanvas::SetClipRegion(const QRegion& region) {
    clip_ = region;
    deviceClip_ = deviceRegion(region);
    hasClip_ = true;
    if (painter_) {
        // Once clipping was switched off, a new region takes effect only when it is on again.
        painter_->setClipping(true);
        painter_->setClipRegion(deviceClip_);
    }
}

void TCanvas::ClearClipRegion() {
    clip_ = QRegion();
    deviceClip_ = QRegion();
    hasClip_ = false;
    if (painter_) painter_->setClipping(false);
}

TRect TCanvas::ClipRect() const {
    if (hasClip_) {
        QRect b = clip_.boundingRect();
        return TRect{b.left(), b.top(), b.left() + b.width(), b.top() + b.height()};
    }
    if (!drawable()) return TRect{};
    if (logicalSize_.X >= 0) return TRect{0, 0, logicalSize_.X, logicalSize_.Y};
    return TRect{0, 0, target_->width(), target_->height()};
}

namespace {
// Qt builds no polygon region taller than 100000 pixels (and leaks its scan-line tables
// when asked to). No surface reaches past this square, so larger ellipses are cut to it.
constexpr int kRegionReach = 32768;

bool WithinRegionReach(const TRect& r) {
    const auto in = [](int32_t v) { return v >= -kRegionReach && v <= kRegionReach; };
    return in(r.Left) && in(r.Top) && in(r.Right) && in(r.Bottom);
}
}  // namespace

TRect TCanvas::ReachRect() const {
    if (!target_) return TRect{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
    if (target_->isNull()) return TRect{};
    const TRect surface = logicalSize_.X >= 0 ? TRect{0, 0, logicalSize_.X, logicalSize_.Y}
                                              : TRect{0, 0, target_->width(), target_->height()};
    if (!hasClip_) return surface;
    const TRect c = ClipRect();
    return TRect{std::max(c.Left, surface.Left), std::max(c.Top, surface.Top),
                 std::min(c.Right, surface.Right), std::min(c.Bottom, surface.Bottom)};
}

std::pair<int32_t, int32_t> TCanvas::RingsOnSurface(const TRect& r, int32_t count,
                                                    int32_t reach) const {
    const TRect c = ReachRect();
    if (count <= 0 || c.Right <= c.Left || c.Bottom <= c.Top) return {0, 0};
    // A ring-k pixel lies k..k+reach deep inside r; the depth over c spans dmin..dmax,
    // and dmax - dmin never exceeds c's longer side.
    const int64_t l = r.Left, t = r.Top, rr = r.Right, b = r.Bottom;
    const int64_t dmin = std::min({c.Left - l, c.Top - t, rr - c.Right, b - c.Bottom});
    const int64_t dmax =
        std::min({c.Right - 1 - l, c.Bottom - 1 - t, rr - 1 - c.Left, b - 1 - c.Top});
    const int64_t first = std::clamp<int64_t>(dmin - std::max(reach, 0), 0, count);
    const int64_t last = std::clamp<int64_t>(dmax + 1, first, count);
    return {int32_t(first), int32_t(last)};
}

QRegion TCanvas::EllipticRegion(const TRect& r) {
    if (r.Right <= r.Left || r.Bottom <= r.Top) return QRegion();
    if (WithinRegionReach(r))
        return QRegion(QRect(r.Left, r.Top, r.Width(), r.Height()), QRegion::Ellipse);
    QPainterPath ellipse;
    ellipse.addEllipse(QRectF(r.Left, r.Top, double(r.Right) - r.Left, double(r.Bottom) - r.Top));
    QPainterPath reach;
    reach.addRect(QRectF(-kRegionReach, -kRegionReach, 2.0 * kRegionReach, 2.0 * kRegionReach));
    return QRegion(ellipse.intersected(reach).toFillPolygon().toPolygon());
}

QRegion TCanvas::RectRegion(const TRect& r) {
    if (r.Width() <= 0 || r.Height() <= 0) return QRegion();
    return QRegion(QRect(r.Left, r.Top, r.Width(), r.Height()));
}

}  // namespace kx
