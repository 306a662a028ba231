#pragma once
// A canvas that logs every drawing call with the pen, brush and font in force, and
// measures text with fixed metrics (CharWidth per character, LineHeight per line), so
// that tests can assert exact geometry independent of fonts. With a target image it
// also draws, as the plain canvas does.
#include <QStringList>
#include <vector>

#include "kx/host/canvas.h"

namespace kx {

struct TCanvasCall {
    QString Op;                 // "Rectangle", "LineTo", "TextOut", ...
    std::vector<int32_t> Args;  // coordinates in call order
    QString Text;               // TextOut text
    TColor PenColor = 0;
    int32_t PenWidth = 1;
    TPenStyle PenStyle = psSolid;
    TPenMode PenMode = pmCopy;
    TColor BrushColor = 0;
    TBrushStyle BrushStyle = bsSolid;
    TColor FontColor = 0;
    QString FontName;
    int32_t FontHeight = 0;
    int32_t FontOrientation = 0;
    uint32_t TextAlign = 0;
    // "Op(a,b,c)" or "TextOut(x,y,'text')".
    QString ToString() const;
};

class TRecordingCanvas : public TCanvas {
  public:
    explicit TRecordingCanvas(QImage* target = nullptr) : TCanvas(target) {}

    int32_t CharWidth = 7;
    int32_t LineHeight = 13;

    const std::vector<TCanvasCall>& Calls() const { return calls_; }
    void ClearCalls() { calls_.clear(); }
    // The calls as strings, optionally only those of one operation.
    QStringList Log(const QString& op = QString()) const;
    // Calls of one operation.
    std::vector<TCanvasCall> CallsOf(const QString& op) const;

    void MoveTo(int32_t x, int32_t y) override;
    void LineTo(int32_t x, int32_t y) override;
    void Rectangle(int32_t l, int32_t t, int32_t r, int32_t b) override;
    void FillRect(const TRect& r) override;
    void RoundRect(int32_t l, int32_t t, int32_t r, int32_t b, int32_t w, int32_t h) override;
    void Ellipse(int32_t l, int32_t t, int32_t r, int32_t b) override;
    void Arc(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1, int32_t x2,
             int32_t y2) override;
    void Pie(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1, int32_t x2,
             int32_t y2) override;
    void Polygon(std::span<const TPoint> points) override;
    void Polyline(std::span<const TPoint> points) override;
    void TextOut(int32_t x, int32_t y, const QString& text) override;
    int32_t TextWidth(const QString& text) override;
    int32_t TextHeight(const QString& text) override;
    void Frame3D(TRect& r, TColor topColor, TColor bottomColor, int32_t width) override;
    void CopyRect(const TRect& dest, TCanvas& source, const TRect& sourceRect) override;
    void Draw(int32_t x, int32_t y, const TBitmap& bitmap) override;
    void StretchDraw(const TRect& dest, const TBitmap& bitmap) override;
    void SetClipRegion(const QRegion& region) override;
    void ClearClipRegion() override;

    using TCanvas::Ellipse;
    using TCanvas::Rectangle;

  private:
    void record(const QString& op, std::vector<int32_t> args, const QString& text = QString());
    std::vector<TCanvasCall> calls_;
};

}  // namespace kx
