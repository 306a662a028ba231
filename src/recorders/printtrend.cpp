#include "kx/recorders/printtrend.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPolygonF>
#include <QPrinter>
#include <QSaveFile>
#include <algorithm>
#include <cmath>
#include <vector>

#include "kx/host/datetimeformat.h"

namespace kx {
namespace {

constexpr int kPdfResolution = 1200;
constexpr int kMaxImageSide = 16384;
constexpr double kImageDpi = 96.0;

bool validChannel(int ch) {
    return ch >= 1 && ch <= TKxTrend::kChannels;
}

// A trend font at the device's resolution: its screen pixel height scaled by s.
QFont deviceFont(const TFont& f, double s) {
    QFont q = f.ToQFont();
    const double px = std::clamp(std::fabs(double(f.Height())) * s, 1.0, 1e5);
    q.setPixelSize(int(std::lround(px)));
    return q;
}

// The printed chart of one trend range on one page (see printtrend.h).
class TPage {
  public:
    TPage(const TKxTrend& t, QPainter& p, int32_t first, int32_t last, double dpi)
        : t_(t),
          p_(p),
          first_(first),
          last_(last),
          n_(last - first + 1),
          s_(dpi / 96.0),
          mm_(dpi / 25.4),
          labelFont_(deviceFont(*t.Font(), s_)),
          captionFont_(deviceFont(*t.CaptionFont(), s_)),
          lm_(labelFont_, p.device()),
          cm_(captionFont_, p.device()),
          ink_(ToQColor(t.Font()->Color())),
          captionInk_(ToQColor(t.CaptionFont()->Color())) {}

    void Draw(const QRectF& page, const QString& title);

  private:
    void text(const QRectF& r, int flags, const QString& s, bool caption) {
        p_.setFont(caption ? captionFont_ : labelFont_);
        p_.setPen(caption ? captionInk_ : ink_);
        p_.drawText(r, flags, s);
    }
    QString stamp(int32_t i) const {
        const TDateTime time = t_.Records()[i].Time;
        return DateToStr(time) + QLatin1Char(' ') + t_.TimeLabelText(time);
    }
    // The nearest record from i towards the other end of the range that is not a
    // separator (their time is the marker, not a moment); -1 when there is none.
    int32_t realRecord(int32_t i, int step) const {
        for (; i >= first_ && i <= last_; i += step)
            if (!t_.IsSeparator(i)) return i;
        return -1;
    }
    double x(int32_t i) const {
        if (n_ == 1) return area_.center().x();
        return area_.left() + double(i - first_) * area_.width() / double(n_ - 1);
    }
    double y(int ch, double digit) const {
        const int32_t total = t_.Channel(ch)->TotalDigit();
        if (total <= 0) return area_.bottom();
        return area_.bottom() - digit / double(total) * area_.height();
    }
    QString scaleLabel(int ch, int32_t k) const {
        return t_.ScaleLabelText(ch, double(k) * t_.Channel(ch)->TotalDigit() / t_.GridYSteps());
    }
    double scaleWidth(int ch) const {
        double w = 0.0;
        for (int32_t k = 0; k <= t_.GridYSteps(); ++k)
            w = std::max(w, lm_.horizontalAdvance(scaleLabel(ch, k)));
        return w + 6.0 * s_;
    }
    QPolygonF curve(int ch) const;
    void fill(const QPolygonF& curve, double edgeY, const QColor& c);
    void line(const QPolygonF& curve, const QColor& c, int32_t penWidth);
    void drawChart(const QRectF& chart, bool left, bool right);
    void drawBands();
    void drawTimeLabels(double top);

    const TKxTrend& t_;
    QPainter& p_;
    const int32_t first_, last_, n_;
    const double s_, mm_;
    const QFont labelFont_, captionFont_;
    const QFontMetricsF lm_, cm_;
    const QColor ink_, captionInk_;
    QRectF area_;
    std::vector<int32_t> divisions_;  // the records that carry a time label and grid line
};

void TPage::Draw(const QRectF& page, const QString& title) {
    const double gap = 4.0 * s_;
    double top = page.top();
    if (!title.isEmpty()) {
        text(QRectF(page.left(), top, page.width(), cm_.height()), Qt::AlignHCenter | Qt::AlignTop,
             title, true);
        top += cm_.height() + gap;
    }
    const int32_t a = realRecord(first_, 1), b = realRecord(last_, -1);
    if (a >= 0) {
        const QString span = a == b ? stamp(a) : stamp(a) + QStringLiteral(" \u2013 ") + stamp(b);
        text(QRectF(page.left(), top, page.width(), lm_.height()), Qt::AlignHCenter | Qt::AlignTop,
             span, false);
        top += lm_.height() + gap;
    }
    const bool left = t_.HasOption(opLeftScale) && validChannel(t_.LeftScaleCh());
    const bool right = t_.HasOption(opRightScale) && validChannel(t_.AbsScaleCh());
    const bool caption = t_.HasOption(opCaption) && !t_.Caption().isEmpty();
    if (left || right || caption) {
        const double rowH =
            std::max(left || right ? lm_.height() : 0.0, caption ? cm_.height() : 0.0);
        const QRectF row(page.left(), top, page.width(), rowH);
        double headings = 0.0;
        if (left) {
            const QString h = t_.ScaleHeading(t_.LeftScaleCh());
            text(row, Qt::AlignLeft | Qt::AlignVCenter, h, false);
            headings = lm_.horizontalAdvance(h);
        }
        if (right) {
            const QString h = t_.ScaleHeading(t_.AbsScaleCh());
            text(row, Qt::AlignRight | Qt::AlignVCenter, h, false);
            headings = std::max(headings, lm_.horizontalAdvance(h));
        }
        if (caption) {
            // Centred on the page, cut where it would run into a heading.
            const double room = std::max(0.0, page.width() - 2.0 * (headings + 2.0 * gap));
            text(row, Qt::AlignHCenter | Qt::AlignVCenter,
                 cm_.elidedText(t_.Caption(), Qt::ElideRight, room), true);
        }
        top += rowH + gap;
    }
    const int rows = (t_.HasOption(opDate) ? 1 : 0) + (t_.HasOption(opTime) ? 1 : 0);
    double bottom = page.bottom() - rows * lm_.height() - (rows > 0 ? gap : 0.0);
    // The outer scale labels are centred on the outer grid lines.
    if (left || right) {
        top += lm_.height() / 2.0;
        if (rows == 0) bottom -= lm_.height() / 2.0;
    }
    const double lw = left ? scaleWidth(t_.LeftScaleCh()) : 0.0;
    const double rw = right ? scaleWidth(t_.AbsScaleCh()) : 0.0;
    const QRectF chart(page.left() + lw, top, page.width() - lw - rw, bottom - top);
    if (chart.width() < 1.0 || chart.height() < 1.0) return;  // the texts only
    drawChart(chart, left, right);
    drawTimeLabels(chart.bottom() + gap);
}

QPolygonF TPage::curve(int ch) const {
    QPolygonF pts;
    const auto& recs = t_.Records();
    const double columns = std::max(1.0, std::ceil(area_.width()));
    if (n_ <= 4.0 * columns) {
        pts.reserve(n_);
        for (int32_t i = first_; i <= last_; ++i)
            pts.append(QPointF(x(i), y(ch, recs[i].Ch[ch - 1])));
        return pts;
    }
    // More records than device columns: per column its first, lowest, highest and last.
    int64_t column = -1;
    double x0 = 0, x1 = 0, y0 = 0, y1 = 0, lo = 0, hi = 0;
    auto flush = [&] {
        if (column < 0) return;
        pts << QPointF(x0, y0) << QPointF(x0, lo) << QPointF(x1, hi) << QPointF(x1, y1);
    };
    for (int32_t i = first_; i <= last_; ++i) {
        const double xi = x(i), yi = y(ch, recs[i].Ch[ch - 1]);
        const int64_t c = int64_t(std::floor(xi - area_.left()));
        if (c != column) {
            flush();
            column = c;
            x0 = xi;
            y0 = lo = hi = yi;
        }
        x1 = xi;
        y1 = yi;
        lo = std::min(lo, yi);
        hi = std::max(hi, yi);
    }
    flush();
    return pts;
}

void TPage::fill(const QPolygonF& curve, double edgeY, const QColor& c) {
    if (curve.isEmpty()) return;
    QPolygonF band = curve;
    band << QPointF(curve.last().x(), edgeY) << QPointF(curve.first().x(), edgeY);
    p_.setPen(Qt::NoPen);
    p_.setBrush(c);
    p_.drawPolygon(band);
}

void TPage::line(const QPolygonF& curve, const QColor& c, int32_t penWidth) {
    if (penWidth < 1 || penWidth > 32) penWidth = 1;
    p_.setPen(QPen(c, penWidth * s_, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p_.setBrush(Qt::NoBrush);
    if (curve.size() == 1)
        p_.drawPoint(curve.first());
    else
        p_.drawPolyline(curve);
}

void TPage::drawBands() {
    const int fillCh = t_.FillChannelNo();
    if (validChannel(fillCh) && t_.Channel(fillCh)->Visible())
        fill(curve(fillCh), area_.bottom(), ToQColor(t_.Channel(fillCh)->Color()));
    const TTrendLimit* upper = t_.LimitUpper();
    const TTrendLimit* lower = t_.LimitLower();
    if (t_.HasOption(opCh7isUL) && upper->Filled())
        fill(curve(7), area_.top(), ToQColor(upper->Color()));
    if (t_.HasOption(opCh8isLL) && lower->Filled())
        fill(curve(8), area_.bottom(), ToQColor(lower->Color()));
    const int scaleCh = validChannel(t_.AbsScaleCh()) ? t_.AbsScaleCh() : 1;
    auto limitY = [&](const TTrendLimit* l) {
        const int64_t d =
            int64_t(t_.ValueToDigit(scaleCh, l->Value())) - t_.Channel(scaleCh)->DigitalFrom();
        return y(scaleCh, double(d));
    };
    auto limit = [&](const TTrendLimit* l, bool up) {
        if (!l->Enabled()) return;
        const double ly = limitY(l);
        const QColor c = ToQColor(l->Color());
        if (l->Filled()) {
            const double edge = up ? area_.top() : area_.bottom();
            p_.fillRect(QRectF(QPointF(area_.left(), std::min(ly, edge)),
                               QPointF(area_.right(), std::max(ly, edge))),
                        c);
        } else {
            p_.setPen(QPen(c, s_));
            p_.drawLine(QPointF(area_.left(), ly), QPointF(area_.right(), ly));
        }
    };
    limit(upper, true);
    limit(lower, false);
}

void TPage::drawChart(const QRectF& chart, bool left, bool right) {
    area_ = chart;
    const int32_t steps = t_.GridYSteps();
    // Time labels (and vertical grid lines) about every 25 mm, no closer than a label is
    // wide, and at most one per record.
    const TDateTime sample = EncodeDate(2000, 12, 28) + EncodeTime(23, 58, 58, 0);
    double labelW = 0.0;
    if (t_.HasOption(opDate)) labelW = lm_.horizontalAdvance(DateToStr(sample));
    if (t_.HasOption(opTime))
        labelW = std::max(labelW, lm_.horizontalAdvance(t_.TimeLabelText(sample)));
    int32_t divs = std::clamp(int32_t(area_.width() / (25.0 * mm_)), 1, 40);
    if (labelW > 0.0)
        divs = std::min(divs, std::max(1, int32_t(area_.width() / (labelW + 8.0 * s_))));
    divs = std::min(divs, std::max(1, n_ - 1));
    divisions_.clear();
    if (n_ == 1) {
        divisions_.push_back(first_);
    } else {
        for (int32_t j = 0; j <= divs; ++j)
            divisions_.push_back(first_ + int32_t(std::lround(double(j) * (n_ - 1) / divs)));
    }

    p_.save();
    p_.setClipRect(area_);
    p_.fillRect(area_, ToQColor(t_.Color()));
    drawBands();
    if (t_.HasOption(opGrid)) {
        p_.setPen(QPen(ToQColor(t_.ColorGrid()), s_));
        for (int32_t k = 0; k <= steps; ++k) {
            const double gy = area_.bottom() - double(k) * area_.height() / steps;
            p_.drawLine(QPointF(area_.left(), gy), QPointF(area_.right(), gy));
        }
        for (size_t j = 1; j + 1 < divisions_.size(); ++j) {
            const double gx = x(divisions_[j]);
            p_.drawLine(QPointF(gx, area_.top()), QPointF(gx, area_.bottom()));
        }
    }
    for (int ch = 1; ch <= TKxTrend::kChannels; ++ch) {
        const TChSettings* c = t_.Channel(ch);
        if (!c->Visible() || ch == t_.FillChannelNo()) continue;
        const TTrendLimit* asLimit = nullptr;
        if (ch == 7 && t_.HasOption(opCh7isUL)) asLimit = t_.LimitUpper();
        if (ch == 8 && t_.HasOption(opCh8isLL)) asLimit = t_.LimitLower();
        if (asLimit && asLimit->Filled()) continue;  // drawn as its band
        line(curve(ch), ToQColor(asLimit ? asLimit->Color() : c->Color()), c->PenWidth());
    }
    p_.setPen(QPen(ToQColor(t_.ColorSeparator()), s_));
    for (int32_t i = first_; i <= last_; ++i)
        if (t_.IsSeparator(i))
            p_.drawLine(QPointF(x(i), area_.top()), QPointF(x(i), area_.bottom()));
    p_.restore();

    p_.setPen(QPen(ink_, s_));
    p_.setBrush(Qt::NoBrush);
    p_.drawRect(area_);
    p_.setFont(labelFont_);
    const double spacing = area_.height() / steps;
    const int32_t step = std::clamp(int32_t(std::ceil(lm_.height() / spacing)), 1, steps);
    for (int32_t k = 0; k <= steps; k += step) {
        const double gy = area_.bottom() - k * spacing;
        const double h = lm_.height();
        if (left)
            text(QRectF(area_.left() - 1e4, gy - h / 2, 1e4 - 3.0 * s_, h),
                 Qt::AlignRight | Qt::AlignVCenter, scaleLabel(t_.LeftScaleCh(), k), false);
        if (right)
            text(QRectF(area_.right() + 3.0 * s_, gy - h / 2, 1e4, h),
                 Qt::AlignLeft | Qt::AlignVCenter, scaleLabel(t_.AbsScaleCh(), k), false);
    }
}

void TPage::drawTimeLabels(double top) {
    const bool date = t_.HasOption(opDate), time = t_.HasOption(opTime);
    if (!date && !time) return;
    const double h = lm_.height(), wide = 1e4;
    for (size_t j = 0; j < divisions_.size(); ++j) {
        const int32_t i = divisions_[j];
        if (t_.IsSeparator(i)) continue;
        const TDateTime when = t_.Records()[i].Time;
        // The outer labels stand inside the chart's width, the others centred.
        double left = x(i) - wide / 2;
        int flags = Qt::AlignHCenter;
        if (divisions_.size() > 1 && j == 0) {
            left = x(i);
            flags = Qt::AlignLeft;
        } else if (divisions_.size() > 1 && j + 1 == divisions_.size()) {
            left = x(i) - wide;
            flags = Qt::AlignRight;
        }
        double rowTop = top;
        if (date) {
            text(QRectF(left, rowTop, wide, h), flags | Qt::AlignTop, DateToStr(when), false);
            rowTop += h;
        }
        if (time)
            text(QRectF(left, rowTop, wide, h), flags | Qt::AlignTop, t_.TimeLabelText(when),
                 false);
    }
}

}  // namespace

TKxPrintTrend::TKxPrintTrend(QWidget* parent) : TKxGraphicControl(parent) {
    SetBounds(0, 0, 28, 28);
}

TKxPrintTrend::~TKxPrintTrend() = default;

void TKxPrintTrend::setVisible(bool visible) {
    // Only the designer shows the component; at run time it is never on the form.
    TKxGraphicControl::setVisible(visible && Designing());
}

void TKxPrintTrend::SetOrientation(TPrintOrientation o) {
    if (o == poPortrait || o == poLandscape) orientation_ = o;
}

void TKxPrintTrend::setOrientation(int v) {
    if (v == poPortrait || v == poLandscape) orientation_ = TPrintOrientation(v);
}

void TKxPrintTrend::setMargin(int side, double mm) {
    if (mm >= 0.0 && mm <= 1000.0) margins_[side] = mm;
}

bool TKxPrintTrend::PrintRange(int32_t& first, int32_t& last) const {
    if (!trend_ || trend_->RecordCount() == 0) return false;
    const int32_t end = trend_->Records().Last();
    const int32_t f = firstRecord_ < 0 ? 0 : std::min(firstRecord_, end);
    const int32_t l = lastRecord_ < 0 ? end : std::min(lastRecord_, end);
    if (f > l) return false;
    first = f;
    last = l;
    return true;
}

bool TKxPrintTrend::Render(QPainter& painter, const QRectF& page, double dpi) const {
    int32_t first = 0, last = 0;
    if (!PrintRange(first, last) || !(dpi > 0.0) || !std::isfinite(dpi) || !page.isValid() ||
        !painter.isActive())
        return false;
    painter.save();
    TPage(*trend_, painter, first, last, dpi).Draw(page, title_);
    painter.restore();
    return true;
}

bool TKxPrintTrend::printPaged(QPagedPaintDevice& device, int resolution) {
    device.setPageOrientation(orientation_ == poPortrait ? QPageLayout::Portrait
                                                         : QPageLayout::Landscape);
    device.setPageMargins(QMarginsF(margins_[0], margins_[1], margins_[2], margins_[3]),
                          QPageLayout::Millimeter);
    QPainter painter;
    if (!painter.begin(&device)) return false;
    const bool ok = Render(painter, QRectF(0, 0, device.width(), device.height()), resolution);
    return painter.end() && ok;
}

bool TKxPrintTrend::Print(QPrinter& printer) {
    int32_t first = 0, last = 0;
    if (!PrintRange(first, last)) return false;
    return printPaged(printer, printer.resolution());
}

bool TKxPrintTrend::PrintToPdf(const QString& file) {
    int32_t first = 0, last = 0;
    if (!PrintRange(first, last) || file.isEmpty()) return false;
    // Into memory first: the file is replaced only by a complete document.
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setResolution(kPdfResolution);
        writer.setTitle(title_);
        if (!printPaged(writer, kPdfResolution)) return false;
    }
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly)) return false;
    if (out.write(buffer.data()) != buffer.size()) {
        out.cancelWriting();
        return false;
    }
    return out.commit();
}

bool TKxPrintTrend::PrintToPng(const QString& file, QSize size) {
    int32_t first = 0, last = 0;
    if (!PrintRange(first, last) || file.isEmpty()) return false;
    if (size.width() < 1 || size.height() < 1 || size.width() > kMaxImageSide ||
        size.height() > kMaxImageSide)
        return false;
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) return false;
    image.fill(Qt::white);
    const double mm = kImageDpi / 25.4;
    const QRectF page(margins_[0] * mm, margins_[1] * mm,
                      size.width() - (margins_[0] + margins_[2]) * mm,
                      size.height() - (margins_[1] + margins_[3]) * mm);
    {
        QPainter painter;
        if (!painter.begin(&image)) return false;
        const bool ok = Render(painter, page, kImageDpi);
        painter.end();
        if (!ok) return false;
    }
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly)) return false;
    if (!image.save(&out, "PNG")) {
        out.cancelWriting();
        return false;
    }
    return out.commit();
}

// ---- Design-time glyph --------------------------------------------------------------------

void TKxPrintTrend::Paint() {
    if (!Designing()) return;
    TCanvas& c = Canvas();
    const TRect r = ClientRect();
    const int64_t w = r.Right - r.Left, h = r.Bottom - r.Top;
    if (w < 8 || h < 8) return;
    auto px = [&](int64_t percent) { return int32_t(r.Left + w * percent / 100); };
    auto py = [&](int64_t percent) { return int32_t(r.Top + h * percent / 100); };
    c.Pen().SetMode(pmCopy);
    c.Pen().SetWidth(1);
    c.Pen().SetStyle(psSolid);
    c.Pen().SetColor(clBlack);
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(clWhite);
    c.Rectangle(px(26), py(4), px(74), py(40));  // the paper going in
    c.Brush().SetColor(clSilver);
    c.Rectangle(px(4), py(34), px(96), py(74));  // the body
    c.Brush().SetColor(clWhite);
    c.Rectangle(px(20), py(60), px(80), py(97));  // the printout, with a curve on it
    c.Pen().SetColor(clGreen);
    c.MoveTo(px(26), py(88));
    c.LineTo(px(40), py(72));
    c.LineTo(px(54), py(84));
    c.LineTo(px(74), py(68));
    c.Brush().SetColor(clLime);
    c.Pen().SetColor(clBlack);
    c.Rectangle(px(80), py(42), px(90), py(52));  // the power lamp
}

}  // namespace kx
