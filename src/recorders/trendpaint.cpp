// The trend's display: layout, the curve bitmap and the cursor line (see trend.h).
#include <algorithm>
#include <cmath>

#include "kx/drawing/text.h"
#include "kx/host/datetime.h"
#include "kx/host/datetimeformat.h"
#include "kx/host/formatfloat.h"
#include "kx/host/numeric.h"
#include "kx/recorders/trend.h"

namespace kx {
namespace {

const QString kDefaultScaleFormat = QStringLiteral("##0.#");

bool validChannel(int ch) {
    return ch >= 1 && ch <= TKxTrend::kChannels;
}

}  // namespace

// ---- Geometry -----------------------------------------------------------------------------

double TKxTrend::PixelFactor(int ch) const {
    const TChSettings* c = Channel(ch);
    if (!c || c->TotalDigit() <= 0) return 0.0;
    return double(baseline_) / double(c->TotalDigit());
}

int32_t TKxTrend::DigitY(int ch, int32_t digit) const {
    return columnY(PixelFactor(ch), digit);
}

int32_t TKxTrend::columnY(double factor, int32_t digit) const {
    const double y =
        double(baseline_) - std::nearbyint(digit * factor / double(zoomY_)) + double(yOffset_);
    return Round(std::clamp(y, -1e6, 1e6));
}

int32_t TKxTrend::gridY(int32_t k) const {
    return baseline_ - Round(double(k) * baseline_ / gridYSteps_);
}

int32_t TKxTrend::DisplayableRecords() const {
    if (laidOut_) return curves_.Width();
    return std::max(1, width() - 2 * bevelOuter_->TotalWidth());
}

QString TKxTrend::scaleText(int ch, int32_t k) const {
    // The value the grid line stands for, from the unrounded line position, so that round
    // ranges give round labels.
    const double f = PixelFactor(ch);
    double digit = 0.0;
    if (f > 0.0) digit = (double(k) * baseline_ / gridYSteps_ + yOffset_) * double(zoomY_) / f;
    return ScaleLabelText(ch, digit);
}

QString TKxTrend::ScaleLabelText(int ch, double digit) const {
    const TChSettings* c = Channel(ch);
    if (!c) return QString();
    const double v = double(c->ValueFrom()) + digit * double(c->ValuePerDigit());
    return FormatFloat(c->ValueFormat().isEmpty() ? kDefaultScaleFormat : c->ValueFormat(), v);
}

QString TKxTrend::ScaleHeading(int ch) const {
    const TChSettings* c = Channel(ch);
    if (!c) return QString();
    const QString unit = c->ValueUnit();
    return (unit.isEmpty() ? QStringLiteral("%") : unit) + QStringLiteral(" Ch") +
           QString::number(ch);
}

int32_t TKxTrend::scaleWidth(TCanvas& c, int ch, int32_t baseline) const {
    const int32_t saved = baseline_;
    const_cast<TKxTrend*>(this)->baseline_ = baseline;
    int32_t w = 0;
    for (int32_t k = 0; k <= gridYSteps_; ++k)
        w = std::max(w, c.TextWidth(scaleText(ch, k)));
    const_cast<TKxTrend*>(this)->baseline_ = saved;
    return w + 6;
}

int32_t TKxTrend::ScaleLabelStep() const {
    const double spacing = double(baseline_) / gridYSteps_;
    if (spacing <= 0.0) return gridYSteps_;
    return std::clamp(int32_t(std::ceil((labelHeight_ + 1) / spacing)), 1, gridYSteps_);
}

int32_t TKxTrend::TimeLabelStep() const {
    return timeLabelStep_;
}

void TKxTrend::layout(TCanvas& c, TRect inner) {
    // A bevel wider than the control leaves an empty area at its edge, not outside it.
    inner.Left = std::clamp(inner.Left, 0, width());
    inner.Top = std::clamp(inner.Top, 0, height());
    inner.Right = std::clamp(inner.Right, inner.Left, width());
    inner.Bottom = std::clamp(inner.Bottom, inner.Top, height());
    c.SetFont(*font_);
    labelHeight_ = std::max(1, c.TextHeight(QStringLiteral("0")));
    bool left = HasOption(opLeftScale) && validChannel(leftScaleCh_);
    bool right = HasOption(opRightScale) && validChannel(absScaleCh_);
    const int32_t innerW = inner.Right - inner.Left, innerH = inner.Bottom - inner.Top;
    // Scales need room for a few labels and a curve area beside them.
    if (innerH < 5 * labelHeight_) left = right = false;
    int32_t topH = 0;
    if (HasOption(opCaption)) {
        c.SetFont(*captionFont_);
        topH = c.TextHeight(QStringLiteral("X")) + 4;
        c.SetFont(*font_);
    }
    if (left || right) topH = std::max(topH, labelHeight_ + 2);
    if (topH >= innerH / 2) topH = 0;
    const int32_t provisional = std::max(1, innerH - topH - 2 * labelHeight_);
    int32_t lw = left ? scaleWidth(c, leftScaleCh_, provisional) : 0;
    int32_t rw = right ? scaleWidth(c, absScaleCh_, provisional) : 0;
    if (innerW - lw - rw < innerW / 2) lw = rw = 0, left = right = false;
    const int32_t scaleInset = (left || right) && topH == 0 ? labelHeight_ / 2 : 0;
    topRow_ = TRect{inner.Left, inner.Top, inner.Right, inner.Top + topH};
    area_ = TRect{inner.Left + lw, inner.Top + topH + scaleInset, inner.Right - rw, inner.Bottom};
    if (area_.Right < area_.Left) area_.Right = area_.Left;
    if (area_.Bottom < area_.Top) area_.Bottom = area_.Top;
    leftScale_ = left ? TRect{inner.Left, area_.Top, area_.Left, area_.Bottom} : TRect{};
    rightScale_ = right ? TRect{area_.Right, area_.Top, inner.Right, area_.Bottom} : TRect{};
    const int32_t w = area_.Right - area_.Left, h = area_.Bottom - area_.Top;
    MakeCompatibleBitmap(curves_, w, h, TPoint{area_.Left, area_.Top});
    int32_t bottom = h - 1;
    if (HasOption(opDate)) bottom -= labelHeight_;
    if (HasOption(opTime)) bottom -= labelHeight_;
    if (!HasOption(opDate) && !HasOption(opTime) && (left || right)) bottom -= labelHeight_ + 4;
    baseline_ = HasOption(opDate) || HasOption(opTime) ? bottom - 4 : bottom;
    baseline_ = std::max(baseline_, 0);
    // Labels wider than a grid division stand on every m-th division only.
    const TDateTime sample = EncodeDate(2000, 12, 28) + EncodeTime(23, 58, 58, 0);
    int32_t labelW = 0;
    if (HasOption(opDate)) labelW = c.TextWidth(DateToStr(sample));
    if (HasOption(opTime)) labelW = std::max(labelW, c.TextWidth(timeText(sample)));
    timeLabelStep_ = std::max(1, (labelW + 8 + gridXPixel_ - 1) / gridXPixel_);
    labelHalfMax_ = labelW / 2 + 2;
    laidOut_ = true;
}

// ---- Painting -----------------------------------------------------------------------------

void TKxTrend::Paint() {
    TCanvas& c = Canvas();
    TRect inner = ClientRect();
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(clBtnFace);
    c.FillRect(inner);
    bevelOuter_->PaintBevel(c, inner);
    layout(c, inner);
    paintTopRow();
    if (leftScale_.Right > leftScale_.Left) paintScale(leftScaleCh_, true);
    if (rightScale_.Right > rightScale_.Left) paintScale(absScaleCh_, false);
    hOffset_ = 0;
    redrawCurves();
    if (cursorShown_ && cursorColumn_ >= 0 && cursorColumn_ < curves_.Width()) {
        drawCursorLine(true);
    } else {
        cursorShown_ = false;
        showColumns(0, curves_.Width() - 1);
    }
}

void TKxTrend::paintTopRow() {
    if (topRow_.Bottom <= topRow_.Top) return;
    TCanvas& c = Canvas();
    c.Brush().SetStyle(bsClear);
    const int32_t y = topRow_.Top + (topRow_.Bottom - topRow_.Top) / 2;
    int32_t leftEnd = topRow_.Left, rightStart = topRow_.Right;
    const int32_t rowW = topRow_.Right - topRow_.Left;
    c.SetFont(*font_);
    if (leftScale_.Right > leftScale_.Left) {
        const QString t = KxElideLines(c, ScaleHeading(leftScaleCh_), QChar(u'\n'), rowW / 3);
        KxTextOut(c, topRow_.Left + 2, y, t, toMidLeft);
        leftEnd += c.TextWidth(t) + 6;
    }
    if (rightScale_.Right > rightScale_.Left) {
        const QString t = KxElideLines(c, ScaleHeading(absScaleCh_), QChar(u'\n'), rowW / 3);
        KxTextOut(c, topRow_.Right - 2, y, t, toMidRight);
        rightStart -= c.TextWidth(t) + 6;
    }
    if (!HasOption(opCaption) || caption_.isEmpty()) return;
    c.SetFont(*captionFont_);
    // Centred on the control when it fits between the headings, else in the room left.
    const int32_t room = rightStart - leftEnd;
    const QString t = KxElideLines(c, caption_, QChar(u'\n'), std::max(room, 0));
    const int32_t tw = c.TextWidth(t);
    int32_t x = topRow_.Left + rowW / 2;
    x = std::clamp(x, leftEnd + tw / 2, std::max(leftEnd + tw / 2, rightStart - (tw + 1) / 2));
    KxTextOut(c, x, y, t, toMidCenter);
}

void TKxTrend::paintScale(int ch, bool left) {
    TCanvas& c = Canvas();
    c.SetFont(*font_);
    c.Brush().SetStyle(bsClear);
    const TRect& r = left ? leftScale_ : rightScale_;
    const int32_t step = ScaleLabelStep();
    for (int32_t k = 0; k <= gridYSteps_; k += step) {
        const int32_t y = area_.Top + gridY(k);
        const QString t = scaleText(ch, k);
        if (left)
            KxTextOut(c, r.Right - 3, y, t, toMidRight);
        else
            KxTextOut(c, r.Left + 3, y, t, toMidLeft);
    }
}

void TKxTrend::redrawCurves() {
    if (!laidOut_) return;
    TCanvas& c = curves_.Canvas();
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(color_);
    c.FillRect(TRect{0, 0, curves_.Width(), curves_.Height()});
    hOffset_ = 0;
    drawGrid(0, curves_.Width() - 1);
    drawCurves(firstDisplayed_, store_.Last());
    markDirty(0, curves_.Width() - 1);
}

void TKxTrend::drawGrid(int32_t x0, int32_t x1) {
    if (!HasOption(opGrid) || x1 < x0) return;
    TCanvas& c = drawing();
    c.Pen().SetColor(colorGrid_);
    c.Pen().SetWidth(1);
    c.Pen().SetMode(pmCopy);
    c.Pen().SetStyle(psSolid);
    for (int32_t k = 0; k <= gridYSteps_; ++k) {
        const int32_t y = gridY(k);
        c.MoveTo(x0, y);
        c.LineTo(x1 + 1, y);
    }
    const int32_t g = gridXPixel_;
    for (int32_t x = std::max(g, (x0 + g - 1) / g * g); x <= x1; x += g) {
        c.MoveTo(x, 0);
        c.LineTo(x, baseline_ + 1);
    }
}

void TKxTrend::markDirty(int32_t x0, int32_t x1) {
    x0 = std::max(x0, 0);
    x1 = std::min(x1, curves_.Width() - 1);
    if (x1 < x0) return;
    if (dirtyRight_ < dirtyLeft_) {
        dirtyLeft_ = x0;
        dirtyRight_ = x1;
    } else {
        dirtyLeft_ = std::min(dirtyLeft_, x0);
        dirtyRight_ = std::max(dirtyRight_, x1);
    }
}

int32_t TKxTrend::limitY(const TTrendLimit& l) const {
    const int scaleCh = validChannel(absScaleCh_) ? absScaleCh_ : 1;
    return DigitY(scaleCh, ValueToDigit(scaleCh, l.Value()) - Channel(scaleCh)->DigitalFrom());
}

// The filled areas, which the grid is drawn over.
void TKxTrend::drawBands(int32_t first, int32_t c0, int32_t n) {
    TCanvas& c = drawing();
    c.Pen().SetWidth(1);
    c.Pen().SetMode(pmCopy);
    auto column = [&](int32_t x, int32_t y0, int32_t y1, TColor color) {
        if (y1 < y0) std::swap(y0, y1);
        c.Pen().SetColor(color);
        c.MoveTo(x, y0);
        c.LineTo(x, y1 + 1);
    };
    const bool ul = HasOption(opCh7isUL) && limitUpper_->Filled();
    const bool ll = HasOption(opCh8isLL) && limitLower_->Filled();
    const bool upper = limitUpper_->Enabled() && limitUpper_->Filled();
    const bool lower = limitLower_->Enabled() && limitLower_->Filled();
    const int32_t upperY = limitY(*limitUpper_), lowerY = limitY(*limitLower_);
    for (int32_t x = c0; x < n; ++x) {
        const TSignRec& r = store_[first + x];
        if (validChannel(fillChannelNo_) && Channel(fillChannelNo_)->Visible())
            column(x, DigitY(fillChannelNo_, r.Ch[fillChannelNo_ - 1]), baseline_,
                   Channel(fillChannelNo_)->Color());
        if (ul) column(x, 0, DigitY(7, r.Ch[6]), limitUpper_->Color());
        if (ll) column(x, DigitY(8, r.Ch[7]), baseline_, limitLower_->Color());
        if (upper) column(x, 0, upperY, limitUpper_->Color());
        if (lower) column(x, lowerY, baseline_, limitLower_->Color());
    }
}

// The limits' lines, over the grid so that a limit on a grid line still shows: channels 7
// and 8 as limit curves when not filled, and the enabled limits' values.
void TKxTrend::drawLimitLines(int32_t first, int32_t c0, int32_t n, int32_t segStart) {
    if (HasOption(opCh7isUL) && !limitUpper_->Filled())
        drawChannel(7, first, segStart, n, limitUpper_->Color());
    if (HasOption(opCh8isLL) && !limitLower_->Filled())
        drawChannel(8, first, segStart, n, limitLower_->Color());
    TCanvas& c = drawing();
    c.Pen().SetWidth(1);
    for (const TTrendLimit* l : {limitUpper_, limitLower_}) {
        if (!l->Enabled()) continue;
        const int32_t y = limitY(*l);
        c.Pen().SetColor(l->Color());
        c.MoveTo(c0, y);
        c.LineTo(n, y);
    }
}

void TKxTrend::drawChannel(int ch, int32_t first, int32_t start, int32_t n, TColor color) {
    TCanvas& c = drawing();
    const int32_t pw = Channel(ch)->PenWidth();
    c.Pen().SetColor(color);
    c.Pen().SetWidth(pw >= 1 && pw <= 32 ? pw : 1);
    c.Pen().SetMode(pmCopy);
    if (n - start < 2) return;
    const double f = PixelFactor(ch);
    c.MoveTo(start, columnY(f, store_[first + start].Ch[ch - 1]));
    for (int32_t x = start + 1; x < n; ++x)
        c.LineTo(x, columnY(f, store_[first + x].Ch[ch - 1]));
}

QString TKxTrend::timeText(TDateTime t) const {
    return timeFormat_.isEmpty() ? TimeToStr(t) : FormatDateTime(timeFormat_, t);
}

void TKxTrend::drawLabel(int32_t column, TDateTime t) {
    TCanvas& c = drawing();
    c.SetFont(*font_);
    c.Font().SetColor(colorTime_);
    c.Brush().SetStyle(bsClear);
    const int32_t h = curves_.Height();
    auto put = [&](const QString& text, int32_t bottom) {
        const int32_t half = c.TextWidth(text) / 2 + 1;
        labelHalfMax_ = std::max(labelHalfMax_, half + 1);
        if (column + half >= curves_.Width()) return;  // a cut label would be misread
        KxTextOut(c, column, bottom, text, toBotCenter);
        markDirty(column - half, column + half);
    };
    const bool time = HasOption(opTime);
    if (HasOption(opDate)) put(DateToStr(t), time ? h - 1 - labelHeight_ : h - 1);
    if (time) put(timeText(t), h - 1);
}

// Labels stand on grid columns other than 0; wide ones on every TimeLabelStep-th grid
// column counted from the first record, so that a scroll by grid divisions keeps them.
bool TKxTrend::labelAt(int32_t first, int32_t x) const {
    if (x <= 0 || x % gridXPixel_ != 0) return false;
    return (int64_t(first) / gridXPixel_ + x / gridXPixel_) % timeLabelStep_ == 0;
}

bool TKxTrend::bandsShown() const {
    return validChannel(fillChannelNo_) || HasOption(opCh7isUL) || HasOption(opCh8isLL) ||
           limitUpper_->Enabled() || limitLower_->Enabled();
}

int32_t TKxTrend::widestPen() const {
    int32_t widest = 1;
    for (const TChSettings* c : channels_)
        if (c->Visible() && c->PenWidth() <= 32) widest = std::max(widest, c->PenWidth());
    return widest;
}

int32_t TKxTrend::recordColumns(int32_t first) const {
    return static_cast<int32_t>(
        std::clamp<int64_t>(int64_t(store_.Last()) - first + 1, 0, curves_.Width()));
}

bool TKxTrend::canDraw() const {
    return (Visible() || Designing()) && store_.Count() >= 2 && laidOut_;
}

// Columns c0..n-1 of the records from first on: bands, grid over them, the curves' segments
// from column segStart, separators and labels, in the order a whole drawing takes.
void TKxTrend::drawSpan(int32_t first, int32_t c0, int32_t n, int32_t segStart) {
    if (bandsShown()) {
        drawBands(first, c0, n);
        drawGrid(c0, n - 1);
    }
    drawLimitLines(first, c0, n, segStart);
    for (int ch = 1; ch <= kChannels; ++ch) {
        if (!Channel(ch)->Visible() || ch == fillChannelNo_) continue;
        if ((ch == 7 && HasOption(opCh7isUL)) || (ch == 8 && HasOption(opCh8isLL))) continue;
        drawChannel(ch, first, segStart, n, Channel(ch)->Color());
    }
    TCanvas& c = drawing();
    c.Pen().SetWidth(1);
    for (int32_t x = c0; x < n; ++x) {
        const TSignRec& r = store_[first + x];
        if (r.Time == separatorMarker_) {
            c.Pen().SetColor(colorSeparator_);
            c.MoveTo(x, 0);
            c.LineTo(x, curves_.Height());
        }
        if (labelAt(first, x)) drawLabel(x, r.Time);
    }
    const int32_t widest = widestPen();
    markDirty(segStart - widest, n - 1 + widest);
}

void TKxTrend::drawCurves(int32_t first, int32_t last) {
    if (!canDraw()) return;
    first = std::max(first, 0);
    last = std::min(last, store_.Last());
    if (first > last) return;
    recInfo_->SetDisplayed(first, last);
    const int32_t n = recordColumns(first);
    const int32_t c0 = hOffset_;
    if (c0 >= n) return;
    drawSpan(first, c0, n, std::max(c0 - 1, 0));
    hOffset_ = n;
}

// Draws columns x0..x1 anew, exactly as a whole drawing gives them: everything that reaches
// into them (curve segments, labels of nearby columns) is drawn, clipped to them.
void TKxTrend::redrawColumns(int32_t x0, int32_t x1) {
    x0 = std::max(x0, 0);
    x1 = std::min(x1, curves_.Width() - 1);
    if (x1 < x0) return;
    // Drawn unclipped on a spare bitmap of the same grid (clipping would take the canvas off
    // its fast paths), then copied into place.
    const int32_t h = curves_.Height();
    MakeCompatibleBitmap(spare_, curves_.Width(), h, TPoint{area_.Left, area_.Top});
    drawTo_ = &spare_;
    TCanvas& c = spare_.Canvas();
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(color_);
    c.FillRect(TRect{x0, 0, x1 + 1, h});
    drawGrid(x0, x1);
    const int32_t n = recordColumns(firstDisplayed_);
    const int32_t reach = labelHalfMax_ + widestPen() + 2;
    const int32_t from = std::max(x0 - reach, 0), to = std::min(x1 + reach, n - 1);
    if (canDraw() && to > from) drawSpan(firstDisplayed_, from, to + 1, from);
    drawTo_ = &curves_;
    curves_.Canvas().CopyRect(TRect{x0, 0, x1 + 1, h}, c, TRect{x0, 0, x1 + 1, h});
    markDirty(x0, x1);
}

// The view moved on by k columns (the record at column k is now at column 0) over a bitmap
// holding drawn columns: the picture moves left and only its edges are drawn anew (the new
// columns on the right, the labels that come into or leave the view). Anything else, a move
// that is not by whole grid divisions, a fractional device ratio, draws it all.
void TKxTrend::scrollCurves(int64_t k, int32_t drawn) {
    const int32_t w = curves_.Width();
    if (!canDraw() || k <= 0 || k >= drawn || k % gridXPixel_ != 0 ||
        !curves_.ShiftLeft(static_cast<int32_t>(k))) {
        hOffset_ = 0;
        redrawCurves();
        return;
    }
    recInfo_->SetDisplayed(firstDisplayed_, store_.Last());
    const int32_t kept = drawn - static_cast<int32_t>(k);
    const int32_t reach = labelHalfMax_ + widestPen() + 2;
    redrawColumns(0, reach);
    // A label left out at the old right edge (it stuck out) may reach back two half-widths.
    redrawColumns(std::max(kept - 1 - 2 * reach, reach + 1), w - 1);
    hOffset_ = recordColumns(firstDisplayed_);
    markDirty(0, w - 1);
}

// ---- To the surface -----------------------------------------------------------------------

void TKxTrend::showColumns(int32_t x0, int32_t x1) {
    x0 = std::max(x0, 0);
    x1 = std::min(x1, curves_.Width() - 1);
    dirtyLeft_ = 0;
    dirtyRight_ = -1;
    if (x1 < x0 || !laidOut_) return;
    const int32_t h = curves_.Height();
    Canvas().CopyRect(TRect{area_.Left + x0, area_.Top, area_.Left + x1 + 1, area_.Top + h},
                      curves_.Canvas(), TRect{x0, 0, x1 + 1, h});
}

void TKxTrend::drawCursorLine(bool full) {
    const int32_t w = curves_.Width(), h = curves_.Height();
    if (w <= 0 || h <= 0) return;
    int32_t x0 = 0, x1 = w - 1;
    if (!full && prevCursorColumn_ >= 0) {
        x0 = std::min(prevCursorColumn_, cursorColumn_);
        x1 = std::max(prevCursorColumn_, cursorColumn_);
    } else if (!full) {
        x0 = x1 = cursorColumn_;
    }
    x0 = std::clamp(x0, 0, w - 1);
    x1 = std::clamp(x1, x0, w - 1);
    // Everything drawn since the last copy goes out with the line.
    if (dirtyRight_ >= dirtyLeft_) {
        x0 = std::min(x0, dirtyLeft_);
        x1 = std::max(x1, dirtyRight_);
    }
    const int32_t spanW = x1 - x0 + 1;
    MakeCompatibleBitmap(cursorWork_, spanW, h, TPoint{area_.Left + x0, area_.Top});
    TCanvas& t = cursorWork_.Canvas();
    t.CopyRect(TRect{0, 0, spanW, h}, curves_.Canvas(), TRect{x0, 0, x1 + 1, h});
    int32_t bottom = h;
    const int rows = (HasOption(opDate) ? 1 : 0) + (HasOption(opTime) ? 1 : 0);
    if (rows > 0) bottom = h - rows * labelHeight_ - 2;
    t.Pen().SetColor(colorCursorLine_);
    t.Pen().SetMode(cursorLinePenMode_);
    t.Pen().SetWidth(1);
    t.MoveTo(cursorColumn_ - x0, -1);
    t.LineTo(cursorColumn_ - x0, bottom);
    t.Pen().SetMode(pmCopy);
    Canvas().Draw(area_.Left + x0, area_.Top, cursorWork_);
    prevCursorColumn_ = cursorColumn_;
    dirtyLeft_ = 0;
    dirtyRight_ = -1;
}

}  // namespace kx
