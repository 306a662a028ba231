#pragma once
// TCanvas: the classic drawing surface with its raster rules, drawn into a QImage.
//
// Raster rules (kept here, in one place):
//  - Rectangle(L,T,R,B) covers columns L..R-1 and rows T..B-1; with a clear pen the fill
//    covers L..R-2, T..B-2. FillRect covers L..R-1, T..B-1 with the brush, no outline.
//  - LineTo does not paint its end point (1-pixel pens); MoveTo only moves.
//  - Ellipse, Arc, Pie and RoundRect use the bounding box L..R-1, T..B-1; Arc and Pie run
//    counter-clockwise from the radial through the start point to the radial through the
//    end point (equal radials draw the whole ellipse).
//  - Polygon fills with the alternate (even-odd) rule and outlines with the pen.
//  - Frame3D draws ring by ring from the outside: left column and top row in the first
//    colour, right column and bottom row in the second (the top-right and bottom-left
//    corner pixels take the second), then shrinks the rectangle by the width. It leaves
//    the pen 1 pixel wide in the second colour.
//  - Pens wider than one pixel are centred on the outline with round ends and joins.
//  - Pen modes apply to the outline and the fill of every pen-and-brush operation; copy
//    modes apply to CopyRect.
//  - TextOut places the text by TextAlign (default top-left) at the reference point,
//    turned by the font's Orientation; a solid brush paints the text cell first.
// Every operation is virtual so that a recording canvas can log the calls instead.
#include <QImage>
#include <QPainter>
#include <QRegion>
#include <QString>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "host/graphics.h"
#include "host/types.h"

namespace kx {

class TBitmap;

enum TCopyMode {
    cmSrcCopy, cmSrcInvert, cmSrcAnd, cmSrcPaint, cmNotSrcCopy, cmDstInvert, cmBlackness,
    cmWhiteness, cmMergePaint, cmSrcErase, cmNotSrcErase
};

// Text alignment flags, combinable as on the classic device context.
constexpr uint32_t TA_LEFT = 0;
constexpr uint32_t TA_RIGHT = 2;
constexpr uint32_t TA_CENTER = 6;
constexpr uint32_t TA_TOP = 0;
constexpr uint32_t TA_BOTTOM = 8;
constexpr uint32_t TA_BASELINE = 24;

class TCanvas {
public:
    // Draws into target (not owned; may be null for a canvas that only records).
    explicit TCanvas(QImage* target = nullptr);
    virtual ~TCanvas();
    TCanvas(const TCanvas&) = delete;
    TCanvas& operator=(const TCanvas&) = delete;

    TPen& Pen() { return pen_; }
    TBrush& Brush() { return brush_; }
    TFont& Font() { return font_; }
    const TPen& Pen() const { return pen_; }
    const TBrush& Brush() const { return brush_; }
    const TFont& Font() const { return font_; }
    void SetFont(const TFont& f) { font_.Assign(f); }
    TPoint PenPos() const { return penPos_; }
    void SetPenPos(TPoint p) { penPos_ = p; }
    TCopyMode CopyMode() const { return copyMode_; }
    void SetCopyMode(TCopyMode m) { copyMode_ = m; }
    uint32_t TextAlign() const { return textAlign_; }
    void SetTextAlign(uint32_t flags) { textAlign_ = flags; }

    virtual void MoveTo(int32_t x, int32_t y);
    virtual void LineTo(int32_t x, int32_t y);
    virtual void Rectangle(int32_t l, int32_t t, int32_t r, int32_t b);
    void Rectangle(const TRect& r) { Rectangle(r.Left, r.Top, r.Right, r.Bottom); }
    virtual void FillRect(const TRect& r);
    virtual void RoundRect(int32_t l, int32_t t, int32_t r, int32_t b, int32_t w, int32_t h);
    virtual void Ellipse(int32_t l, int32_t t, int32_t r, int32_t b);
    void Ellipse(const TRect& r) { Ellipse(r.Left, r.Top, r.Right, r.Bottom); }
    virtual void Arc(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1, int32_t x2,
                     int32_t y2);
    virtual void Pie(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1, int32_t x2,
                     int32_t y2);
    virtual void Polygon(std::span<const TPoint> points);
    virtual void Polyline(std::span<const TPoint> points);
    virtual void TextOut(int32_t x, int32_t y, const QString& text);
    virtual int32_t TextWidth(const QString& text);
    virtual int32_t TextHeight(const QString& text);
    virtual void Frame3D(TRect& r, TColor topColor, TColor bottomColor, int32_t width);
    virtual void CopyRect(const TRect& dest, TCanvas& source, const TRect& sourceRect);
    virtual void Draw(int32_t x, int32_t y, const TBitmap& bitmap);
    virtual void StretchDraw(const TRect& dest, const TBitmap& bitmap);
    virtual TColor Pixel(int32_t x, int32_t y);
    virtual void SetPixel(int32_t x, int32_t y, TColor c);

    // Clipping, in canvas coordinates. An empty optional region means no clipping.
    virtual void SetClipRegion(const QRegion& region);
    virtual void ClearClipRegion();
    bool HasClipRegion() const { return hasClip_; }
    const QRegion& ClipRegion() const { return clip_; }
    // The bounding box of the clip region, or the whole surface without one.
    virtual TRect ClipRect() const;

    // Regions with the classic geometry: an elliptic region fills the ellipse inscribed
    // in L..R-1, T..B-1; a rectangular one covers L..R-1, T..B-1.
    static QRegion EllipticRegion(const TRect& r);
    static QRegion RectRegion(const TRect& r);

    QImage* Target() const { return target_; }
    // Called before pixels change (a control uses it to schedule its screen update).
    void SetOnDraw(std::function<void()> handler) { onDraw_ = std::move(handler); }
    // Ends the painter so that the image may be resized, copied or read freely.
    void Release();

protected:
    bool drawable() const { return target_ && !target_->isNull(); }
    QPainter& painter();
    // Prepares the painter for pen-and-brush drawing in the current pen mode; returns
    // false when the mode draws nothing (pmNop) or there is no target.
    bool preparePenMode(QPainter& p);
    bool penVisible() const { return pen_.Style() != psClear; }
    bool brushVisible() const { return brush_.Style() != bsClear; }
    QColor penQColor() const;
    QColor brushQColor() const;
    void strokeThinLine(TPoint a, TPoint b, bool includeEnd);
    void putRuns(const std::vector<QRect>& runs, const QColor& c);
    // Whether drawing may write the pixels directly (no clip, plain copy, 32-bit pixels).
    bool directPixels() const;
    void drawPath(const class QPainterPath& path, bool fill, bool stroke);

private:
    void fillSpanRect(int32_t l, int32_t t, int32_t r, int32_t b, const QColor& c);
    bool fastCopy(const QImage& src, const TRect& srcRect, int32_t dx, int32_t dy);

    QImage* target_;
    std::function<void()> onDraw_;
    std::unique_ptr<QPainter> painter_;
    TPen pen_;
    TBrush brush_;
    TFont font_;
    TPoint penPos_;
    TCopyMode copyMode_ = cmSrcCopy;
    uint32_t textAlign_ = TA_LEFT | TA_TOP;
    QRegion clip_;
    bool hasClip_ = false;
};

}  // namespace kx
