#include "host/canvas.h"

#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

#include "host/bitmap.h"

namespace kx {
namespace {

QPainter::CompositionMode compositionForPenMode(TPenMode m) {
    switch (m) {
        case pmNot: return QPainter::RasterOp_NotDestination;
        case pmNotCopy: return QPainter::RasterOp_NotSource;
        case pmMergePenNot: return QPainter::RasterOp_SourceOrNotDestination;
        case pmMaskPenNot: return QPainter::RasterOp_SourceAndNotDestination;
        case pmMergeNotPen: return QPainter::RasterOp_NotSourceOrDestination;
        case pmMaskNotPen: return QPainter::RasterOp_NotSourceAndDestination;
        case pmMerge: return QPainter::RasterOp_SourceOrDestination;
        case pmNotMerge: return QPainter::RasterOp_NotSourceAndNotDestination;
        case pmMask: return QPainter::RasterOp_SourceAndDestination;
        case pmNotMask: return QPainter::RasterOp_NotSourceOrNotDestination;
        case pmXor: return QPainter::RasterOp_SourceXorDestination;
        case pmNotXor: return QPainter::RasterOp_NotSourceXorDestination;
        default: return QPainter::CompositionMode_SourceOver;
    }
}

QPainter::CompositionMode compositionForCopyMode(TCopyMode m) {
    switch (m) {
        case cmSrcInvert: return QPainter::RasterOp_SourceXorDestination;
        case cmSrcAnd: return QPainter::RasterOp_SourceAndDestination;
        case cmSrcPaint: return QPainter::RasterOp_SourceOrDestination;
        case cmNotSrcCopy: return QPainter::RasterOp_NotSource;
        case cmDstInvert: return QPainter::RasterOp_NotDestination;
        case cmMergePaint: return QPainter::RasterOp_NotSourceOrDestination;
        case cmSrcErase: return QPainter::RasterOp_SourceAndNotDestination;
        case cmNotSrcErase: return QPainter::RasterOp_NotSourceAndNotDestination;
        default: return QPainter::CompositionMode_Source;
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
    return QRectF(l + 0.5, t + 0.5, r - l - 1, b - t - 1);
}

QPointF centre(TPoint p) { return QPointF(p.X + 0.5, p.Y + 0.5); }

void normalize(int32_t& l, int32_t& t, int32_t& r, int32_t& b) {
    if (r < l) std::swap(l, r);
    if (b < t) std::swap(t, b);
}

}  // namespace

TCanvas::TCanvas(QImage* target) : target_(target) {
    font_.SetColor(clWindowText);
}

TCanvas::~TCanvas() { Release(); }

void TCanvas::Release() {
    if (painter_) {
        painter_->end();
        painter_.reset();
    }
}

QPainter& TCanvas::painter() {
    if (onDraw_) onDraw_();
    if (!painter_) {
        painter_ = std::make_unique<QPainter>(target_);
        painter_->setRenderHint(QPainter::Antialiasing, false);
        painter_->setRenderHint(QPainter::TextAntialiasing, true);
        painter_->setRenderHint(QPainter::SmoothPixmapTransform, false);
        if (hasClip_) painter_->setClipRegion(clip_);
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

void TCanvas::fillSpanRect(int32_t l, int32_t t, int32_t r, int32_t b, const QColor& c) {
    if (r <= l || b <= t) return;
    painter().fillRect(QRect(l, t, r - l, b - t), c);
}

// One-pixel line by integer stepping along the major axis, rounding the minor axis
// half toward the start. The end point is painted only when asked. Pixels are merged
// into runs along the major axis and put down in one go.
void TCanvas::strokeThinLine(TPoint a, TPoint b, bool includeEnd) {
    const int64_t dx = int64_t(b.X) - a.X;
    const int64_t dy = int64_t(b.Y) - a.Y;
    const int64_t adx = std::llabs(dx), ady = std::llabs(dy);
    const int64_t n = std::max(adx, ady) + (includeEnd ? 1 : 0);
    if (n == 0) return;
    const int64_t sx = dx < 0 ? -1 : 1, sy = dy < 0 ? -1 : 1;
    const bool xMajor = adx >= ady;
    const int64_t major = std::max<int64_t>(std::max(adx, ady), 1);
    const int64_t minorDelta = xMajor ? ady : adx;
    // Step i sits at minor offset floor((2 i d + major - 1) / (2 major)), kept as an
    // error term instead of a division per pixel.
    const int64_t twoMajor = 2 * major, twoDelta = 2 * minorDelta;
    if (directPixels()) {
        if (onDraw_) onDraw_();
        const uint32_t pixel = penQColor().rgba();
        uchar* bits = target_->bits();
        const qsizetype stride = target_->bytesPerLine();
        const int64_t w = target_->width(), h = target_->height();
        int64_t x = a.X, y = a.Y, err = major - 1;
        for (int64_t i = 0; i < n; ++i) {
            if (x >= 0 && y >= 0 && x < w && y < h)
                reinterpret_cast<uint32_t*>(bits + y * stride)[x] = pixel;
            err += twoDelta;
            const bool stepMinor = err >= twoMajor;
            if (stepMinor) err -= twoMajor;
            if (xMajor) {
                x += sx;
                if (stepMinor) y += sy;
            } else {
                y += sy;
                if (stepMinor) x += sx;
            }
        }
        return;
    }
    // Clipped or combined: runs along the major axis, put down through the painter.
    thread_local std::vector<QRect> runs;
    runs.clear();
    int64_t x = a.X, y = a.Y, err = major - 1;
    int64_t runX = x, runY = y, runLen = 0;
    for (int64_t i = 0; i < n; ++i) {
        ++runLen;
        err += twoDelta;
        const bool stepMinor = err >= twoMajor;
        if (stepMinor) err -= twoMajor;
        const int64_t nx = xMajor ? x + sx : (stepMinor ? x + sx : x);
        const int64_t ny = xMajor ? (stepMinor ? y + sy : y) : y + sy;
        if (stepMinor || i + 1 == n) {
            if (xMajor)
                runs.emplace_back(int(sx < 0 ? x : runX), int(runY), int(runLen), 1);
            else
                runs.emplace_back(int(runX), int(sy < 0 ? y : runY), 1, int(runLen));
            runX = nx;
            runY = ny;
            runLen = 0;
        }
        x = nx;
        y = ny;
    }
    putRuns(runs, penQColor());
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
    if (onDraw_) onDraw_();
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

void TCanvas::MoveTo(int32_t x, int32_t y) { penPos_ = TPoint{x, y}; }

void TCanvas::LineTo(int32_t x, int32_t y) {
    const TPoint from = penPos_;
    penPos_ = TPoint{x, y};
    if (!drawable() || !penVisible()) return;
    QPainter& p = painter();
    if (!preparePenMode(p)) return;
    if (pen_.Width() <= 1 && pen_.Style() == psSolid) {
        strokeThinLine(from, penPos_, false);
        return;
    }
    QPen qp(penQColor(), pen_.Width(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    if (pen_.Width() <= 1) {
        qp.setWidth(1);
        qp.setStyle(pen_.Style() == psDash ? Qt::DashLine
                    : pen_.Style() == psDot ? Qt::DotLine
                    : pen_.Style() == psDashDot ? Qt::DashDotLine
                    : pen_.Style() == psDashDotDot ? Qt::DashDotDotLine
                                                  : Qt::SolidLine);
        qp.setCapStyle(Qt::FlatCap);
    }
    p.setPen(qp);
    p.setBrush(Qt::NoBrush);
    p.drawLine(centre(from), centre(penPos_));
}

void TCanvas::Polyline(std::span<const TPoint> pts) {
    if (pts.size() < 2 || !drawable() || !penVisible()) return;
    QPainter& p = painter();
    if (!preparePenMode(p)) return;
    if (pen_.Width() <= 1) {
        for (size_t i = 1; i < pts.size(); ++i) strokeThinLine(pts[i - 1], pts[i], false);
        return;
    }
    QPolygonF poly;
    for (const TPoint& pt : pts) poly << centre(pt);
    p.setPen(QPen(penQColor(), pen_.Width(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(poly);
}

void TCanvas::drawPath(const QPainterPath& path, bool fill, bool stroke) {
    QPainter& p = painter();
    if (!preparePenMode(p)) return;
    if (fill && brushVisible()) {
        p.setPen(Qt::NoPen);
        p.setBrush(brushQColor());
        p.drawPath(path);
    }
    if (stroke && penVisible()) {
        if (pen_.Width() <= 1)
            p.setPen(QPen(penQColor(), 1, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
        else
            p.setPen(QPen(penQColor(), pen_.Width(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        p.drawPath(path);
    }
}

void TCanvas::Polygon(std::span<const TPoint> pts) {
    if (pts.size() < 2 || !drawable()) return;
    QPainter& p = painter();
    if (!preparePenMode(p)) return;
    if (brushVisible() && pts.size() >= 3) {
        QPolygon poly;
        for (const TPoint& pt : pts) poly << QPoint(pt.X, pt.Y);
        p.setPen(Qt::NoPen);
        p.setBrush(brushQColor());
        p.drawPolygon(poly, Qt::OddEvenFill);
    }
    if (!penVisible()) return;
    if (pen_.Width() <= 1) {
        for (size_t i = 0; i < pts.size(); ++i)
            strokeThinLine(pts[i], pts[(i + 1) % pts.size()], false);
        return;
    }
    QPolygonF poly;
    for (const TPoint& pt : pts) poly << centre(pt);
    p.setPen(QPen(penQColor(), pen_.Width(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPolygon(poly, Qt::OddEvenFill);
}

void TCanvas::Rectangle(int32_t l, int32_t t, int32_t r, int32_t b) {
    if (!drawable()) return;
    normalize(l, t, r, b);
    QPainter& p = painter();
    if (!preparePenMode(p)) return;
    if (!penVisible()) {
        // Without an outline the classic fill stops one pixel short on the right and bottom.
        if (brushVisible()) fillSpanRect(l, t, r - 1, b - 1, brushQColor());
        return;
    }
    if (pen_.Width() <= 1) {
        if (brushVisible()) fillSpanRect(l + 1, t + 1, r - 1, b - 1, brushQColor());
        const QColor c = penQColor();
        if (r - l <= 0 || b - t <= 0) return;
        fillSpanRect(l, t, r, t + 1, c);
        if (b - 1 > t) fillSpanRect(l, b - 1, r, b, c);
        fillSpanRect(l, t + 1, l + 1, b - 1, c);
        if (r - 1 > l) fillSpanRect(r - 1, t + 1, r, b - 1, c);
        return;
    }
    if (brushVisible()) fillSpanRect(l, t, r, b, brushQColor());
    p.setPen(QPen(penQColor(), pen_.Width(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawRect(centredBox(l, t, r, b));
}

void TCanvas::FillRect(const TRect& r) {
    if (!drawable() || !brushVisible()) return;
    if (r.Right <= r.Left || r.Bottom <= r.Top) return;
    QPainter& p = painter();
    p.setCompositionMode(QPainter::CompositionMode_SourceOver);
    p.fillRect(QRect(r.Left, r.Top, r.Right - r.Left, r.Bottom - r.Top), ToQColor(brush_.Color()));
}

void TCanvas::RoundRect(int32_t l, int32_t t, int32_t r, int32_t b, int32_t w, int32_t h) {
    if (!drawable()) return;
    normalize(l, t, r, b);
    if (w <= 2 || h <= 2) {
        Rectangle(l, t, r, b);
        return;
    }
    if (r - l < 2 || b - t < 2) return;
    QPainterPath path;
    path.addRoundedRect(centredBox(l, t, r, b), w / 2.0, h / 2.0);
    drawPath(path, true, true);
}

void TCanvas::Ellipse(int32_t l, int32_t t, int32_t r, int32_t b) {
    if (!drawable()) return;
    normalize(l, t, r, b);
    if (r - l < 2 || b - t < 2) return;
    QPainterPath path;
    path.addEllipse(centredBox(l, t, r, b));
    drawPath(path, true, true);
}

namespace {
// The box and the counter-clockwise span from the radial through (x1, y1) to the radial
// through (x2, y2); equal radials make the whole ellipse.
struct TArcSpan {
    QRectF box;
    double start = 0, sweep = 0;
};

TArcSpan arcSpan(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1, int32_t x2,
                 int32_t y2) {
    TArcSpan s;
    s.box = centredBox(l, t, r, b);
    const double cx = (l + r) / 2.0, cy = (t + b) / 2.0;
    const double ra = s.box.width() / 2, rb = s.box.height() / 2;
    s.start = radialToParam(cx, cy, ra, rb, x1, y1);
    s.sweep = radialToParam(cx, cy, ra, rb, x2, y2) - s.start;
    while (s.sweep <= 0) s.sweep += 360.0;
    return s;
}
}  // namespace

void TCanvas::Arc(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1, int32_t x2,
                  int32_t y2) {
    if (!drawable()) return;
    normalize(l, t, r, b);
    if (r - l < 2 || b - t < 2) return;
    const TArcSpan a = arcSpan(l, t, r, b, x1, y1, x2, y2);
    QPainterPath path;
    path.arcMoveTo(a.box, a.start);
    path.arcTo(a.box, a.start, a.sweep);
    drawPath(path, false, true);
}

void TCanvas::Pie(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1, int32_t x2,
                  int32_t y2) {
    if (!drawable()) return;
    normalize(l, t, r, b);
    if (r - l < 2 || b - t < 2) return;
    const TArcSpan a = arcSpan(l, t, r, b, x1, y1, x2, y2);
    QPainterPath path;
    path.moveTo(a.box.center());
    path.arcTo(a.box, a.start, a.sweep);
    path.closeSubpath();
    drawPath(path, true, true);
}

void TCanvas::TextOut(int32_t x, int32_t y, const QString& text) {
    if (!drawable() || text.isEmpty()) return;
    QPainter& p = painter();
    p.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const QFontMetrics& fm = font_.Metrics();
    const int w = fm.horizontalAdvance(text);
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
    if (rotated) {
        p.save();
        p.translate(x, y);
        p.rotate(-font_.Orientation() / 10.0);
    } else {
        dx += x;
        top += y;
    }
    if (brushVisible()) p.fillRect(QRect(dx, top, w, h), ToQColor(brush_.Color()));
    p.setFont(font_.ToQFont());
    p.setPen(ToQColor(font_.Color()));
    p.drawText(QPoint(dx, top + asc), text);
    if (rotated) p.restore();
}

int32_t TCanvas::TextWidth(const QString& text) { return font_.Metrics().horizontalAdvance(text); }

int32_t TCanvas::TextHeight(const QString&) {
    const QFontMetrics& fm = font_.Metrics();
    return fm.ascent() + fm.descent();
}

void TCanvas::Frame3D(TRect& r, TColor topColor, TColor bottomColor, int32_t width) {
    pen_.SetWidth(1);
    if (drawable()) {
        QPainter& p = painter();
        if (preparePenMode(p)) {
            pen_.SetColor(topColor);
            const QColor top = penQColor();
            pen_.SetColor(bottomColor);
            const QColor bottom = penQColor();
            TRect ring = r;
            for (int32_t i = 0; i < width && ring.Right > ring.Left && ring.Bottom > ring.Top; ++i) {
                const int32_t l = ring.Left, t = ring.Top, rr = ring.Right, b = ring.Bottom;
                fillSpanRect(l, t, rr - 1, t + 1, top);                 // top row
                fillSpanRect(l, t + 1, l + 1, b - 1, top);             // left column
                fillSpanRect(rr - 1, t, rr, b, bottom);                // right column
                if (b - 1 > t) fillSpanRect(l, b - 1, rr - 1, b, bottom);  // bottom row
                ring = TRect{l + 1, t + 1, rr - 1, b - 1};
            }
        }
    }
    pen_.SetColor(bottomColor);
    if (width > 0) r = TRect{r.Left + width, r.Top + width, r.Right - width, r.Bottom - width};
}

bool TCanvas::fastCopy(const QImage& src, const TRect& s, int32_t dx, int32_t dy) {
    if (hasClip_ || !drawable() || src.isNull() || src.format() != target_->format() || &src == target_) return false;
    // Clip source and destination to both images.
    int32_t sl = s.Left, st = s.Top, w = s.Width(), h = s.Height();
    if (sl < 0) { dx -= sl; w += sl; sl = 0; }
    if (st < 0) { dy -= st; h += st; st = 0; }
    if (dx < 0) { sl -= dx; w += dx; dx = 0; }
    if (dy < 0) { st -= dy; h += dy; dy = 0; }
    w = std::min({w, src.width() - sl, target_->width() - dx});
    h = std::min({h, src.height() - st, target_->height() - dy});
    if (w <= 0 || h <= 0) return true;
    if (onDraw_) onDraw_();
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

void TCanvas::CopyRect(const TRect& dest, TCanvas& source, const TRect& sr) {
    if (!drawable() || !source.drawable()) return;
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

void TCanvas::Draw(int32_t x, int32_t y, const TBitmap& bitmap) {
    if (!drawable() || bitmap.Empty()) return;
    const QImage& img = bitmap.Image();
    if (!bitmap.Transparent() && fastCopy(img, TRect{0, 0, img.width(), img.height()}, x, y))
        return;
    QPainter& p = painter();
    p.setCompositionMode(bitmap.Transparent() ? QPainter::CompositionMode_SourceOver
                                              : QPainter::CompositionMode_Source);
    p.drawImage(QPoint(x, y), img);
}

void TCanvas::StretchDraw(const TRect& dest, const TBitmap& bitmap) {
    if (!drawable() || bitmap.Empty() || dest.Width() <= 0 || dest.Height() <= 0) return;
    const QImage& img = bitmap.Image();
    if (dest.Width() == img.width() && dest.Height() == img.height()) {
        Draw(dest.Left, dest.Top, bitmap);
        return;
    }
    QPainter& p = painter();
    p.setCompositionMode(bitmap.Transparent() ? QPainter::CompositionMode_SourceOver
                                              : QPainter::CompositionMode_Source);
    p.drawImage(QRect(dest.Left, dest.Top, dest.Width(), dest.Height()), img);
}

TColor TCanvas::Pixel(int32_t x, int32_t y) {
    if (!drawable() || x < 0 || y < 0 || x >= target_->width() || y >= target_->height()) return -1;
    return FromQRgb(qUnpremultiply(target_->pixel(x, y)));
}

void TCanvas::SetPixel(int32_t x, int32_t y, TColor c) {
    if (!drawable() || x < 0 || y < 0 || x >= target_->width() || y >= target_->height()) return;
    if (hasClip_ && !clip_.contains(QPoint(x, y))) return;
    if (onDraw_) onDraw_();
    target_->setPixel(x, y, ToQRgb(c));
}

void TCanvas::SetClipRegion(const QRegion& region) {
    clip_ = region;
    hasClip_ = true;
    if (painter_) {
        // Once clipping was switched off, a new region takes effect only when it is on again.
        painter_->setClipping(true);
        painter_->setClipRegion(region);
    }
}

void TCanvas::ClearClipRegion() {
    clip_ = QRegion();
    hasClip_ = false;
    if (painter_) painter_->setClipping(false);
}

TRect TCanvas::ClipRect() const {
    if (hasClip_) {
        QRect b = clip_.boundingRect();
        return TRect{b.left(), b.top(), b.left() + b.width(), b.top() + b.height()};
    }
    if (!drawable()) return TRect{};
    return TRect{0, 0, target_->width(), target_->height()};
}

QRegion TCanvas::EllipticRegion(const TRect& r) {
    if (r.Width() <= 0 || r.Height() <= 0) return QRegion();
    return QRegion(QRect(r.Left, r.Top, r.Width(), r.Height()), QRegion::Ellipse);
}

QRegion TCanvas::RectRegion(const TRect& r) {
    if (r.Width() <= 0 || r.Height() <= 0) return QRegion();
    return QRegion(QRect(r.Left, r.Top, r.Width(), r.Height()));
}

}  // namespace kx
