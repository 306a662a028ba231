#include "kx/host/recordingcanvas.h"

#include "kx/host/bitmap.h"

namespace kx {

QString TCanvasCall::ToString() const {
    QStringList parts;
    for (int32_t a : Args)
        parts << QString::number(a);
    if (Op == u"TextOut") parts << QStringLiteral("'%1'").arg(Text);
    return Op + u'(' + parts.join(u',') + u')';
}

QStringList TRecordingCanvas::Log(const QString& op) const {
    QStringList out;
    for (const TCanvasCall& c : calls_)
        if (op.isEmpty() || c.Op == op) out << c.ToString();
    return out;
}

std::vector<TCanvasCall> TRecordingCanvas::CallsOf(const QString& op) const {
    std::vector<TCanvasCall> out;
    for (const TCanvasCall& c : calls_)
        if (c.Op == op) out.push_back(c);
    return out;
}

void TRecordingCanvas::record(const QString& op, std::vector<int32_t> args, const QString& text) {
    TCanvasCall c;
    c.Op = op;
    c.Args = std::move(args);
    c.Text = text;
    c.PenColor = Pen().Color();
    c.PenWidth = Pen().Width();
    c.PenStyle = Pen().Style();
    c.PenMode = Pen().Mode();
    c.BrushColor = Brush().Color();
    c.BrushStyle = Brush().Style();
    c.FontColor = Font().Color();
    c.FontName = Font().Name();
    c.FontHeight = Font().Height();
    c.FontOrientation = Font().Orientation();
    c.TextAlign = TextAlign();
    calls_.push_back(std::move(c));
}

void TRecordingCanvas::MoveTo(int32_t x, int32_t y) {
    record("MoveTo", {x, y});
    TCanvas::MoveTo(x, y);
}
void TRecordingCanvas::LineTo(int32_t x, int32_t y) {
    record("LineTo", {x, y});
    TCanvas::LineTo(x, y);
}
void TRecordingCanvas::Rectangle(int32_t l, int32_t t, int32_t r, int32_t b) {
    record("Rectangle", {l, t, r, b});
    TCanvas::Rectangle(l, t, r, b);
}
void TRecordingCanvas::FillRect(const TRect& r) {
    record("FillRect", {r.Left, r.Top, r.Right, r.Bottom});
    TCanvas::FillRect(r);
}
void TRecordingCanvas::RoundRect(int32_t l, int32_t t, int32_t r, int32_t b, int32_t w, int32_t h) {
    record("RoundRect", {l, t, r, b, w, h});
    TCanvas::RoundRect(l, t, r, b, w, h);
}
void TRecordingCanvas::Ellipse(int32_t l, int32_t t, int32_t r, int32_t b) {
    record("Ellipse", {l, t, r, b});
    TCanvas::Ellipse(l, t, r, b);
}
void TRecordingCanvas::Arc(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1,
                           int32_t x2, int32_t y2) {
    record("Arc", {l, t, r, b, x1, y1, x2, y2});
    TCanvas::Arc(l, t, r, b, x1, y1, x2, y2);
}
void TRecordingCanvas::Pie(int32_t l, int32_t t, int32_t r, int32_t b, int32_t x1, int32_t y1,
                           int32_t x2, int32_t y2) {
    record("Pie", {l, t, r, b, x1, y1, x2, y2});
    TCanvas::Pie(l, t, r, b, x1, y1, x2, y2);
}
void TRecordingCanvas::Polygon(std::span<const TPoint> pts) {
    std::vector<int32_t> args;
    for (const TPoint& p : pts)
        args.insert(args.end(), {p.X, p.Y});
    record("Polygon", std::move(args));
    TCanvas::Polygon(pts);
}
void TRecordingCanvas::Polyline(std::span<const TPoint> pts) {
    std::vector<int32_t> args;
    for (const TPoint& p : pts)
        args.insert(args.end(), {p.X, p.Y});
    record("Polyline", std::move(args));
    TCanvas::Polyline(pts);
}
void TRecordingCanvas::TextOut(int32_t x, int32_t y, const QString& text) {
    record("TextOut", {x, y}, text);
    TCanvas::TextOut(x, y, text);
}
int32_t TRecordingCanvas::TextWidth(const QString& text) {
    return CharWidth * int32_t(text.size());
}
int32_t TRecordingCanvas::TextHeight(const QString&) {
    return LineHeight;
}
void TRecordingCanvas::Frame3D(TRect& r, TColor topColor, TColor bottomColor, int32_t width) {
    record("Frame3D", {r.Left, r.Top, r.Right, r.Bottom, topColor, bottomColor, width});
    TCanvas::Frame3D(r, topColor, bottomColor, width);
}
void TRecordingCanvas::CopyRect(const TRect& d, TCanvas& source, const TRect& s) {
    record("CopyRect", {d.Left, d.Top, d.Right, d.Bottom, s.Left, s.Top, s.Right, s.Bottom});
    TCanvas::CopyRect(d, source, s);
}
void TRecordingCanvas::Draw(int32_t x, int32_t y, const TBitmap& bitmap) {
    record("Draw", {x, y, bitmap.Width(), bitmap.Height()});
    TCanvas::Draw(x, y, bitmap);
}
void TRecordingCanvas::StretchDraw(const TRect& d, const TBitmap& bitmap) {
    record("StretchDraw", {d.Left, d.Top, d.Right, d.Bottom});
    TCanvas::StretchDraw(d, bitmap);
}
void TRecordingCanvas::SetClipRegion(const QRegion& region) {
    QRect b = region.boundingRect();
    record("SetClipRegion", {b.left(), b.top(), b.left() + b.width(), b.top() + b.height()});
    TCanvas::SetClipRegion(region);
}
void TRecordingCanvas::ClearClipRegion() {
    record("ClearClipRegion", {});
    TCanvas::ClearClipRegion();
}

}  // namespace kx
