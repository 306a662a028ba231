#include "kx/recorders/minitrend.h"

#include <algorithm>
#include <cmath>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/text.h"
#include "kx/host/clock.h"
#include "kx/host/formatfloat.h"
#include "kx/host/numeric.h"

namespace kx {
namespace {

constexpr TColor kChannelColors[4] = {clLime, clYellow, clAqua, clFuchsia};
const QString kDefaultFormat = QStringLiteral("##0.#");

uint16_t clampDigit(int64_t d) {
    return static_cast<uint16_t>(std::clamp<int64_t>(d, 0, 65535));
}

int32_t usedPenWidth(const TChSettings* c) {
    const int32_t pw = c->PenWidth();
    return pw >= 1 && pw <= 32 ? pw : 1;
}

}  // namespace

TKxMiniTrend::TKxMiniTrend(QWidget* parent)
    : TKxGraphicControl(parent), font_(new TFont(this)), bevelOuter_(new TKxSBevel(this)) {
    for (int i = 0; i < kChannels; ++i) {
        channels_[i] = new TChSettings(this);
        channels_[i]->SetColor(kChannelColors[i]);
    }
    font_->SetName(QStringLiteral("Arial"));
    font_->SetSize(8);
    bevelOuter_->SetStyle(TKxSBevel::bsLowered);
    bevelOuter_->SetBevelLine(TKxSBevel::blNone);
    bevelOuter_->SetSpacing(0);
    bevelOuter_->SetWidth(1);
    SetBounds(0, 0, 120, 40);
    const TNotifyEvent repaint = [this](QObject* s) { ParamChange(s); };
    font_->SetOnChange(repaint);
    bevelOuter_->SetOnChange(repaint);
    for (TChSettings* ch : channels_)
        ch->SetOnChange(repaint);
}

TKxMiniTrend::~TKxMiniTrend() {
    destroying_ = true;
    unsubscribe();
}

void TKxMiniTrend::Loaded() {
    TKxGraphicControl::Loaded();
    if (startRecording_ && !Designing()) subscribe();
}

// ---- Recording ----------------------------------------------------------------------------

void TKxMiniTrend::subscribe() {
    AddControl(this, interval_);
    subscribed_ = true;
}

void TKxMiniTrend::unsubscribe() {
    if (!subscribed_) return;
    DelControl(this);
    subscribed_ = false;
}

void TKxMiniTrend::SetStartRecording(bool b) {
    startRecording_ = b;
    // Before Loaded the subscription waits for it, so that a form loading its properties
    // (or the designer marking the control) decides first.
    if (b && !Designing() && IsLoaded())
        subscribe();
    else if (!b)
        unsubscribe();
}

void TKxMiniTrend::SetInterval(uint32_t ms) {
    if (ms < 100 || ms == interval_) return;
    interval_ = ms;
    if (subscribed_) subscribe();
}

void TKxMiniTrend::SetMaxRecords(int32_t n) {
    if (n < kMinRecords || n == maxRecords_) return;
    maxRecords_ = n;
    if (store_.Count() > n) {
        dropFront(store_.Count() - n);
        Invalidate();
    }
}

void TKxMiniTrend::WMFlash(TMessage&) {
    if (Designing() || destroying_ || !subscribed_) return;
    TSignRec r{};
    r.Time = Now();
    for (int i = 0; i < kChannels; ++i)
        r.Ch[i] = clampDigit(channels_[i]->AbsDigit());
    if (append(r)) emit OnInterval(this);
}

bool TKxMiniTrend::AddValue(float v1, float v2, float v3, float v4) {
    if (startRecording_) return false;
    const float v[4] = {v1, v2, v3, v4};
    TSignRec r{};
    r.Time = Now();
    for (int i = 0; i < kChannels; ++i) {
        const TChSettings* c = channels_[i];
        if (std::isnan(v[i])) continue;
        // The digit SetValue would give, so that both ways record the same.
        const int32_t digit = Round(double(c->DigitalFrom()) +
                                    (double(v[i]) - double(c->ValueFrom())) * c->DigitPerValue());
        r.Ch[i] = clampDigit(int64_t(digit) - c->DigitalFrom());
    }
    return append(r);
}

bool TKxMiniTrend::append(const TSignRec& r) {
    if (store_.Count() >= maxRecords_) dropFront(store_.Count() - maxRecords_ + 1);
    if (!store_.Append(r)) return false;
    showNewest();
    return true;
}

void TKxMiniTrend::dropFront(int32_t n) {
    n = std::clamp(n, 0, store_.Count());
    store_.DeleteFront(n);
    base_ += n;
}

bool TKxMiniTrend::ReadValue(int32_t index, TDateTime& time, std::array<float, 4>& values) const {
    if (index < 0 || index > store_.Last()) return false;
    const TSignRec& r = store_[index];
    time = r.Time;
    for (int i = 0; i < kChannels; ++i)
        values[i] = channels_[i]->AbsDigitToValue(r.Ch[i]);
    return true;
}

void TKxMiniTrend::ClearRecords() {
    base_ += store_.Count();
    store_.Clear();
    Invalidate();
}

// ---- Settings -----------------------------------------------------------------------------

TChSettings* TKxMiniTrend::Channel(int ch) const {
    return ch >= 1 && ch <= kChannels ? channels_[ch - 1] : nullptr;
}

void TKxMiniTrend::SetChannel(int ch, const TChSettings* v) {
    TChSettings* c = Channel(ch);
    if (c && v && v != c) c->Assign(v);
}

void TKxMiniTrend::SetFont(const TFont* v) {
    if (v && v != font_) font_->Assign(*v);
}

void TKxMiniTrend::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}

void TKxMiniTrend::SetChannelCount(int32_t n) {
    if (n < 1 || n > kChannels || n == channelCount_) return;
    channelCount_ = n;
    Invalidate();
}

void TKxMiniTrend::SetColor(TColorArg c) {
    if (TColor(c) == color_) return;
    color_ = c;
    Invalidate();
}

void TKxMiniTrend::SetShowLastValue(bool b) {
    if (b == showLastValue_) return;
    showLastValue_ = b;
    Invalidate();
}

QColor TKxMiniTrend::color() const {
    return EncodeQColor(color_);
}

void TKxMiniTrend::ParamChange(QObject*) {
    Invalidate();
}

void TKxMiniTrend::Invalidate() {
    // Until the next Paint lays out anew, ticks only record.
    laidOut_ = false;
    TKxGraphicControl::Invalidate();
}

// ---- Geometry -----------------------------------------------------------------------------

int32_t TKxMiniTrend::DigitY(int ch, int32_t digit) const {
    const TChSettings* c = Channel(ch);
    if (!c || c->TotalDigit() <= 0 || baseline_ <= 0) return baseline_;
    const int32_t up = Round(double(digit) * baseline_ / double(c->TotalDigit()));
    return baseline_ - std::clamp(up, 0, baseline_);
}

int32_t TKxMiniTrend::FirstDisplayedRecord() const {
    return std::max(0, store_.Count() - CurveBitmap().Width());
}

int32_t TKxMiniTrend::PenReach() const {
    int32_t r = 0;
    for (int ch = 1; ch <= channelCount_; ++ch) {
        const TChSettings* c = channels_[ch - 1];
        const int32_t pw = usedPenWidth(c);
        if (c->Visible() && pw > 1) r = std::max(r, pw / 2 + 1);
    }
    // Off the unit grid a thin line's device pixels may reach into the next column.
    if (r == 0 && CurveBitmap().DeviceRatio() != 1.0) r = 1;
    return r;
}

// ---- Painting -----------------------------------------------------------------------------

void TKxMiniTrend::Paint() {
    TCanvas& c = Canvas();
    TRect inner = ClientRect();
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(color_);
    c.FillRect(inner);
    bevelOuter_->PaintBevel(c, inner);
    // Spans and sums in 64 bits: bevel spacings may push the edges to the int32 limits.
    const int32_t innerW = std::max(inner.Width(), 0);
    const int32_t innerH = std::max(inner.Height(), 0);

    int32_t valueW = 0;
    lineHeight_ = 0;
    if (showLastValue_ && innerW > 0 && innerH > 0) {
        c.SetFont(*font_);
        lineHeight_ = std::max(1, c.TextHeight(QStringLiteral("0")));
        for (int ch = 1; ch <= channelCount_; ++ch) {
            const TChSettings* s = channels_[ch - 1];
            const QString& f = s->ValueFormat().isEmpty() ? kDefaultFormat : s->ValueFormat();
            valueW = std::max({valueW, c.TextWidth(FormatFloat(f, s->ValueFrom())),
                               c.TextWidth(FormatFloat(f, s->ValueTo()))});
        }
        valueW = Saturate(int64_t(valueW) + 4);
        if (int64_t(innerW) - valueW < innerW / 2 || lineHeight_ > innerH) valueW = 0;
    }
    area_ = TRect{inner.Left, inner.Top, Saturate(int64_t(inner.Left) + innerW - valueW),
                  Saturate(int64_t(inner.Top) + innerH)};
    valueArea_ = valueW > 0 ? TRect{area_.Right, area_.Top, Saturate(int64_t(area_.Right) + valueW),
                                    area_.Bottom}
                            : TRect{};
    const int32_t w = area_.Width(), h = area_.Height();
    for (TBitmap& b : bitmaps_)
        MakeCompatibleBitmap(b, w, h, TPoint{area_.Left, area_.Top});
    baseline_ = std::max(h - 1, 0);
    laidOut_ = true;
    redrawAll();
    showColumns(0, w - 1);
    drawValues();
}

void TKxMiniTrend::redrawAll() {
    drawnFirst_ = base_ + FirstDisplayedRecord();
    drawnNewest_ = store_.Empty() ? -1 : base_ + store_.Last();
    drawColumns(0, CurveBitmap().Width() - 1);
}

// Draws columns a..b of the curve bitmap as a full drawing would: the background, then
// every segment that can reach them, channel by channel, clipped to them.
void TKxMiniTrend::drawColumns(int32_t a, int32_t b) {
    TBitmap& bmp = curves();
    const int32_t w = bmp.Width(), h = bmp.Height();
    a = std::max(a, 0);
    b = std::min(b, w - 1);
    if (b < a || h <= 0) return;
    TCanvas& c = bmp.Canvas();
    const bool whole = a == 0 && b == w - 1;
    if (!whole) c.SetClipRegion(TCanvas::RectRegion(TRect{a, 0, b + 1, h}));
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(color_);
    c.FillRect(TRect{a, 0, b + 1, h});
    if (!store_.Empty()) {
        const int64_t firstIndex = drawnFirst_ - base_;
        const int64_t reach = PenReach();
        const int64_t i0 = std::max<int64_t>(0, firstIndex + a - 1 - reach);
        const int64_t i1 = std::min<int64_t>(store_.Last(), firstIndex + b + 1 + reach);
        for (int ch = 1; ch <= channelCount_; ++ch)
            if (channels_[ch - 1]->Visible()) drawChannel(c, ch, i0, i1, firstIndex);
    }
    if (!whole) c.ClearClipRegion();
}

void TKxMiniTrend::drawChannel(TCanvas& c, int ch, int64_t i0, int64_t i1, int64_t firstIndex) {
    if (i1 < i0) return;
    const TChSettings* s = channels_[ch - 1];
    c.Pen().SetColor(s->Color());
    c.Pen().SetWidth(usedPenWidth(s));
    c.Pen().SetMode(pmCopy);
    c.Pen().SetStyle(psSolid);
    auto x = [&](int64_t i) { return static_cast<int32_t>(i - firstIndex); };
    auto y = [&](int64_t i) { return DigitY(ch, store_[static_cast<int32_t>(i)].Ch[ch - 1]); };
    c.MoveTo(x(i0), y(i0));
    for (int64_t i = i0 + 1; i <= i1; ++i)
        c.LineTo(x(i), y(i));
    // LineTo leaves its end point out; the newest point is drawn by a one-pixel step.
    if (i1 == store_.Last()) c.LineTo(x(i1) + 1, y(i1));
}

void TKxMiniTrend::shiftLeft(int32_t k) {
    TBitmap& from = curves();
    TBitmap& to = bitmaps_[1 - current_];
    const int32_t w = from.Width(), h = from.Height();
    if (to.Width() != w || to.Height() != h || to.DeviceRatio() != from.DeviceRatio())
        MakeCompatibleBitmap(to, w, h, TPoint{area_.Left, area_.Top});
    to.Canvas().SetCopyMode(cmSrcCopy);
    to.Canvas().CopyRect(TRect{0, 0, w - k, h}, from.Canvas(), TRect{k, 0, w, h});
    current_ = 1 - current_;
}

// After records were added: the changed columns into the bitmap and onto the surface.
void TKxMiniTrend::showNewest() {
    if (!laidOut_ || (!Visible() && !Designing())) return;
    const int32_t w = CurveBitmap().Width();
    if (w > 0 && CurveBitmap().Height() > 0 && !store_.Empty()) {
        const int64_t first = base_ + FirstDisplayedRecord();
        const int64_t newest = base_ + store_.Last();
        const int64_t k = first - drawnFirst_;
        const double ratio = CurveBitmap().DeviceRatio();
        const bool wholeColumns = ratio == std::floor(ratio);
        if (k < 0 || k >= w || (k > 0 && !wholeColumns) || drawnNewest_ < drawnFirst_) {
            redrawAll();
            showColumns(0, w - 1);
        } else {
            if (k > 0) shiftLeft(static_cast<int32_t>(k));
            drawnFirst_ = first;
            const int32_t reach = PenReach();
            const int64_t oldColumn = drawnNewest_ - first;
            const int32_t a = static_cast<int32_t>(std::max<int64_t>(0, oldColumn - reach));
            const int32_t b =
                k > 0 ? w - 1
                      : static_cast<int32_t>(std::min<int64_t>(w - 1, newest - first + reach));
            drawnNewest_ = newest;
            drawColumns(a, b);
            // A record that left the store took its segment into column 0 with it.
            if (k > 0 && first == base_) drawColumns(0, reach);
            if (k > 0)
                showColumns(0, w - 1);
            else
                showColumns(a, b);
        }
    }
    drawValues();
}

void TKxMiniTrend::showColumns(int32_t a, int32_t b) {
    TBitmap& bmp = curves();
    a = std::max(a, 0);
    b = std::min(b, bmp.Width() - 1);
    const int32_t h = bmp.Height();
    if (b < a || h <= 0) return;
    Canvas().CopyRect(TRect{area_.Left + a, area_.Top, area_.Left + b + 1, area_.Top + h},
                      bmp.Canvas(), TRect{a, 0, b + 1, h});
}

QString TKxMiniTrend::valueText(int ch, uint16_t digit) const {
    const TChSettings* s = channels_[ch - 1];
    const QString& f = s->ValueFormat().isEmpty() ? kDefaultFormat : s->ValueFormat();
    return FormatFloat(f, double(s->AbsDigitToValue(digit)));
}

void TKxMiniTrend::drawValues() {
    const int32_t w = valueArea_.Right - valueArea_.Left, h = valueArea_.Bottom - valueArea_.Top;
    if (w <= 0 || h <= 0) return;
    // Drawn in a bitmap of the strip's size, so that a reading wider than the strip is
    // cut at its edge instead of running into the curves or the bevel.
    MakeCompatibleBitmap(valueBox_, w, h, TPoint{valueArea_.Left, valueArea_.Top});
    TCanvas& c = valueBox_.Canvas();
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(color_);
    c.FillRect(TRect{0, 0, w, h});
    if (!store_.Empty()) {
        const TSignRec& r = store_[store_.Last()];
        c.SetFont(*font_);
        c.Brush().SetStyle(bsClear);
        int32_t y = 0;
        for (int ch = 1; ch <= channelCount_ && y + lineHeight_ <= h; ++ch) {
            const TChSettings* s = channels_[ch - 1];
            if (!s->Visible()) continue;
            c.Font().SetColor(s->Color());
            KxTextOut(c, w - 2, y, valueText(ch, r.Ch[ch - 1]), toTopRight);
            y += lineHeight_;
        }
    }
    Canvas().Draw(valueArea_.Left, valueArea_.Top, valueBox_);
}

}  // namespace kx
