#include "sheet.h"

#include "kx/drawing/text.h"

namespace kxshow {

using namespace kx;

namespace {

constexpr int32_t kMargin = 24;
constexpr int32_t kGap = 12;
constexpr int32_t kLabelStrip = 20;
constexpr int32_t kMaxPageHeight = 6000;

void setFont(TCanvas& c, int32_t points, bool bold, TColor color) {
    c.Font().SetName(QStringLiteral("Arial"));
    c.Font().SetSize(points);
    c.Font().SetStyle(bold ? fsBold : 0);
    c.Font().SetColor(color);
    c.Font().SetOrientation(0);
    c.SetTextAlign(TA_LEFT | TA_TOP);
    c.Brush().SetStyle(bsClear);
}

}  // namespace

TSheet::TSheet(int32_t width, const QString& title, const QString& subtitle)
    : bitmap_(width, kMaxPageHeight), width_(width), y_(kMargin) {
    TCanvas& c = Canvas();
    c.Brush().SetColor(kPage);
    c.FillRect(TRect{0, 0, width, kMaxPageHeight});
    setFont(c, 16, true, kInk);
    KxTextOut(c, kMargin, y_, title, toTopLeft);
    y_ += c.TextHeight(title) + 2;
    setFont(c, 9, false, kNote);
    KxTextOut(c, kMargin, y_, subtitle, toTopLeft);
    y_ += c.TextHeight(subtitle) + 8;
}

void TSheet::Section(const QString& heading, const QString& note) {
    TCanvas& c = Canvas();
    y_ += 10;
    setFont(c, 11, true, kInk);
    KxTextOut(c, kMargin, y_, heading, toTopLeft);
    const int32_t headingWidth = c.TextWidth(heading);
    const int32_t h = c.TextHeight(heading);
    if (!note.isEmpty()) {
        setFont(c, 9, false, kNote);
        KxTextOut(c, kMargin + headingWidth + 12, y_ + h, note, toBotLeft);
    }
    y_ += h + 4;
    c.Pen().SetColor(kCardLine);
    c.Pen().SetWidth(1);
    c.Pen().SetStyle(psSolid);
    c.MoveTo(kMargin, y_);
    c.LineTo(width_ - kMargin, y_);
    y_ += 10;
}

std::vector<TRect> TSheet::Cards(int32_t count, int32_t w, int32_t h,
                                 const std::function<QString(int32_t)>& label) {
    TCanvas& c = Canvas();
    const int32_t perRow = std::max(1, (width_ - 2 * kMargin + kGap) / (w + kGap));
    std::vector<TRect> samples;
    for (int32_t i = 0; i < count; ++i) {
        const int32_t col = i % perRow, row = i / perRow;
        const TRect card = Bounds(kMargin + col * (w + kGap), y_ + row * (h + kGap), w, h);
        c.Pen().SetColor(kCardLine);
        c.Pen().SetWidth(1);
        c.Pen().SetStyle(psSolid);
        c.Pen().SetMode(pmCopy);
        c.Brush().SetColor(kCard);
        c.Rectangle(card);
        setFont(c, 8, false, kInk);
        KxTextOut(c, card.Left + w / 2, card.Bottom - kLabelStrip / 2, label(i), toMidCenter);
        samples.push_back(
            TRect{card.Left + 6, card.Top + 6, card.Right - 6, card.Bottom - kLabelStrip});
    }
    const int32_t rows = (count + perRow - 1) / perRow;
    y_ += rows * (h + kGap);
    return samples;
}

bool TSheet::Save(const QString& path) {
    bitmap_.SetSize(width_, std::min(y_ + kMargin - kGap, kMaxPageHeight));
    return bitmap_.SaveToFile(path);
}

void TSheet::LabelFont() {
    setFont(Canvas(), 8, false, kInk);
}

void TSheet::SampleFont(int32_t points, bool bold) {
    setFont(Canvas(), points, bold, kInk);
}

void MarkAnchor(TCanvas& canvas, TPoint p, TColor color) {
    canvas.Pen().SetColor(color);
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetStyle(psSolid);
    canvas.MoveTo(p.X - 4, p.Y);
    canvas.LineTo(p.X + 5, p.Y);
    canvas.MoveTo(p.X, p.Y - 4);
    canvas.LineTo(p.X, p.Y + 5);
}

TPoint CenterOf(const TRect& r) {
    return TPoint{(r.Left + r.Right) / 2, (r.Top + r.Bottom) / 2};
}

}  // namespace kxshow
