#pragma once
// TCanvas: the classic drawing surface with its raster rules, drawn into a QImage.
//
// Raster rules (kept here, in one place; the geometry of lines and curves is in
// host/raster.h):
//  - Rectangle(L,T,R,B) covers columns L..R-1 and rows T..B-1; with a clear pen the fill
//    covers L..R-2, T..B-2. FillRect covers L..R-1, T..B-1 with the brush, no outline.
//  - LineTo does not paint its end point (1-pixel pens); MoveTo only moves. A tie on the
//    minor axis takes the smaller coordinate, whichever way the line runs.
//  - Ellipse, Arc, Pie and RoundRect use the bounding box L..R-1, T..B-1 (corners given
//    in any order). An ellipse is a rounded rectangle whose corner ellipse is the whole
//    box; its outline is the closed polyline through the quadrant walk's points, and the
//    brush fills each row between the outline's leftmost and rightmost pixels (including
//    them without a pen). An ellipse box 1 or 2 pixels wide or high is filled by the pen
//    (by the brush when the pen is clear); a RoundRect corner of 2 pixels or less (after
//    clamping to the box) makes a plain Rectangle.
//  - Arc and Pie run counter-clockwise from the radial through the start point to the
//    radial through the end point (equal radials draw the whole ellipse); Arc is an open
//    polyline, Pie adds the centre and is filled and outlined as a polygon.
//  - Polygon fills with the alternate (even-odd) rule sampled at integer coordinates,
//    then draws its closed outline over the fill.
//  - An outline pixel is written once even where edges meet or coincide, so combining
//    pen modes (xor, not-mask, ...) see it once.
//  - Frame3D draws ring by ring from the outside: the left column and top row in the
//    first colour, the right column and bottom row in the second (the top-right and
//    bottom-left corner pixels take the second); where the two overlap (a ring one pixel
//    wide or high) the second colour wins. Rings that would be empty are skipped. The
//    rectangle then shrinks by the width, and the pen is left 1 pixel wide in the second
//    colour.
//  - Pens wider than one pixel are centred on the outline with round ends and joins.
//  - Pen modes apply to the outline and the fill of every pen-and-brush operation; copy
//    modes apply to CopyRect.
//  - TextOut places the text by TextAlign (default top-left) at the reference point,
//    turned by the font's Orientation; a solid brush paints the text cell first.
//
// Device pixel ratio (high-DPI surfaces). Coordinates stay logical: layouts compute in
// logical pixels exactly as at ratio 1, and the canvas puts them on a target image whose
// pixels are device pixels (DeviceRatio() device pixels per logical pixel; at ratio 1
// the two are the same and every rule above holds pixel for pixel). With ratio d and
// grid origin (ox, oy) (the logical position of the image's top-left corner on the
// grid it shares with other images, 0 for a control's surface):
//  - A logical coordinate x maps to DeviceX(x) = Round((x + ox) * d) - Round(ox * d)
//    (half to even; saturated to the int32 range), y likewise. Two images that share a
//    grid map a logical point to the same device pixel, so copies between them never
//    resample, even at fractional ratios.
//  - Rectangles and spans cover the device pixels [map(L), map(R)) x [map(T), map(B)):
//    FillRect, the fill of Rectangle (with a clear pen the logical L..R-2, T..B-2 maps
//    so), Frame3D's rings, CopyRect's rectangles, a text cell.
//  - One-pixel lines and outlines run by the line rule in device space between the
//    mapped points and are LineThickness() = max(1, floor(d)) device pixels thick: a
//    line grows towards the positive minor axis (so a horizontal line covers exactly its
//    mapped logical row at whole ratios); a Rectangle's outline is a ring that thick
//    inside the mapped box; dashed and dotted pens stay one device pixel.
//  - Ellipses, rounded rectangles, arcs and pies run the exact walk on the mapped box
//    (corner sizes scaled by d); their outline is the ring between the walk on the
//    mapped box and the walk on that box shrunk by the thickness (towards the inside),
//    and an arc or a pie keeps the part of that ring between its two radials. The size
//    rules (a box 1 or 2 pixels wide, a corner of 2 pixels or less) apply to the
//    logical sizes.
//  - Polygons and pies fill with the mapped vertices.
//  - Wider pens have width Round(w * d), centred on the mapped pixel centres.
//  - Text is laid out in logical pixels (TextWidth and TextHeight are logical) and drawn
//    by QPainter scaled by d, so glyphs are rasterized at device resolution.
//  - Pixel and SetPixel address the one device pixel at (map(x), map(y)).
//  - Clip regions are given and read back in logical coordinates; each rectangle of a
//    region maps by the rectangle rule.
//  - Draw puts a bitmap of the same ratio pixel for pixel at the mapped position; a
//    bitmap of another ratio is scaled into the mapped rectangle of its logical size.
// A ratio that is not finite or not positive is taken as 1, one outside [1/8, 8] as the
// nearest limit.
// Every operation is virtual so that a recording canvas can log the calls instead.
#include <QImage>
#include <QPainter>
#include <QRegion>
#include <QString>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "kx/host/graphics.h"
#include "kx/host/types.h"

namespace kx {

class TBitmap;
namespace raster {
struct TSpan;
struct TWindow;
}  // namespace raster

enum TCopyMode : int {
    cmSrcCopy,
    cmSrcInvert,
    cmSrcAnd,
    cmSrcPaint,
    cmNotSrcCopy,
    cmDstInvert,
    cmBlackness,
    cmWhiteness,
    cmMergePaint,
    cmSrcErase,
    cmNotSrcErase
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
    // What drawing can change: the surface within ClipRect(); nothing when the target's
    // pixels could not be had; the whole plane without a target (a recording canvas logs
    // everything).
    TRect ReachRect() const;
    // The insets k in [first, last) of r's rings (ring k is r shrunk by k on every side,
    // k < count) that can touch ReachRect(), for rings whose pixels lie at most `reach`
    // inside their ring's rectangle. Rings past the surface draw nothing, so a loop over
    // a bevel far wider than the surface visits only these: never more than the reach
    // rectangle's longer side plus `reach` plus one.
    std::pair<int32_t, int32_t> RingsOnSurface(const TRect& r, int32_t count,
                                               int32_t reach = 0) const;

    // Regions with the classic geometry: an elliptic region fills the ellipse inscribed
    // in L..R-1, T..B-1; a rectangular one covers L..R-1, T..B-1. An ellipse reaching
    // past +-32768 is cut to that square and follows a polygon through its curve.
    static QRegion EllipticRegion(const TRect& r);
    static QRegion RectRegion(const TRect& r);

    // The device grid: device pixels per logical pixel, and the logical position of the
    // target's top-left corner on the grid it shares with other images. logicalSize is
    // the target's size in logical pixels (ClipRect reports it). TBitmap sets these.
    void SetDeviceGrid(double ratio, TPoint origin, TPoint logicalSize);
    double DeviceRatio() const { return ratio_; }
    TPoint GridOrigin() const { return origin_; }
    int32_t DeviceX(int32_t x) const;
    int32_t DeviceY(int32_t y) const;
    TRect DeviceRect(const TRect& r) const;
    // Device pixels across a one-pixel line: max(1, floor(DeviceRatio())).
    int32_t LineThickness() const { return thickness_; }
    // Clamps a ratio to what the canvas accepts (see above).
    static double ValidRatio(double ratio);

    QImage* Target() const { return target_; }
    // Called before pixels change (a control uses it to schedule its screen update),
    // with the device rectangle that changes, or null when it is not known (anything
    // drawn through QPainter: the whole canvas may change).
    using TDrawHandler = std::function<void(const QRect* device)>;
    void SetOnDraw(TDrawHandler handler) { onDraw_ = std::move(handler); }
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
    // pts are device points (logical ones when logical is set, mapped here).
    void strokeOutline(std::span<const TPoint> pts, bool closed, bool logical);
    void putRuns(const std::vector<QRect>& runs, const QColor& c);
    void putPixels(std::vector<TPoint>& pixels, const QColor& c);
    void putSpans(const std::vector<raster::TSpan>& spans, const QColor& c);
    // The counter-clockwise angular span of an arc in device space (degrees, y up).
    struct TSector {
        double Cx, Cy, Start, Sweep;
    };
    void drawRoundShape(const std::vector<TPoint>& outline);
    // The rounded rectangle or ellipse on device box d; false when it is too large.
    bool drawCurve(const TRect& d, int32_t ew, int32_t eh);
    std::vector<TPoint> innerOutline(const TRect& d, int32_t ew, int32_t eh) const;
    // The thick outline ring between two closed device outlines (inner may be empty), and
    // the inner shape's rows; with a sector only the ring's part inside it.
    void ringPixels(const std::vector<TPoint>& outer, const std::vector<TPoint>& inner,
                    const TSector* sector, std::vector<TPoint>& ring,
                    std::vector<raster::TSpan>* inside) const;
    TSector deviceSector(const TRect& d, TPoint p1, TPoint p2) const;
    void appendThickLine(TPoint a, TPoint b, bool includeEnd, std::vector<TPoint>& out) const;
    QRegion deviceRegion(const QRegion& region) const;
    QPen widePen() const;
    double deviceCentreX(int32_t x) const;
    double deviceCentreY(int32_t y) const;
    TPoint toDevice(TPoint p) const { return TPoint{DeviceX(p.X), DeviceY(p.Y)}; }
    bool scaled() const { return ratio_ != 1.0; }
    // The surface's pixels as a stepping window (rowsOnly: unbounded left and right).
    raster::TWindow surfaceWindow(bool rowsOnly) const;
    // Whether drawing may write the pixels directly (no clip, plain copy, 32-bit pixels).
    bool directPixels() const;
    void drawPath(const class QPainterPath& path, bool fill, bool stroke);

  private:
    // Device pixels [l, r) x [t, b), and the same for a logical rectangle.
    void fillSpanRect(int64_t l, int64_t t, int64_t r, int64_t b, const QColor& c);
    void fillLogicalRect(int32_t l, int32_t t, int32_t r, int32_t b, const QColor& c);
    void drawImageAt(int32_t x, int32_t y, const TBitmap& bitmap);
    bool fastCopy(const QImage& src, const TRect& srcRect, int32_t dx, int32_t dy);

    QImage* target_;
    TDrawHandler onDraw_;
    std::unique_ptr<QPainter> painter_;
    TPen pen_;
    TBrush brush_;
    TFont font_;
    TPoint penPos_;
    TCopyMode copyMode_ = cmSrcCopy;
    uint32_t textAlign_ = TA_LEFT | TA_TOP;
    QRegion clip_;        // logical, as given
    QRegion deviceClip_;  // mapped, as the painter uses it
    bool hasClip_ = false;
    double ratio_ = 1.0;
    TPoint origin_;
    int32_t thickness_ = 1;
    TPoint logicalSize_{-1, -1};  // negative: the target's own size
};

}  // namespace kx
