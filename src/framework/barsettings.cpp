#include "kx/framework/barsettings.h"

#include <algorithm>
#include <cmath>

#include "kx/drawing/colors.h"
#include "kx/drawing/text.h"
#include "kx/framework/setfield.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

int32_t perMille(int32_t p) {
    return std::clamp(p, 0, 1000);
}

// Pixels along a bar of the given length for the per-mille position p.
int32_t along(int32_t p, int32_t length) {
    return Round(double(perMille(p)) * (double(length) / 1000.0));
}

}  // namespace

TBarSettings::TBarSettings(QObject* parent)
    : TKxPersistent(parent),
      SectorSettings(new TSectorSettings(this)),
      font_(new TFont(this)),
      bevel_(new TKxSBevel(this)) {
    font_->SetColor(clBtnHighlight);
    bevel_->SetStyle(bsLowered);
    bevel_->SetSpacing(0);
    bevel_->SetBevelLine(blNone);
    bevel_->SetWidth(1);
    hookOwned();
}

TBarSettings::~TBarSettings() = default;

void TBarSettings::hookOwned() {
    font_->SetOnChange([this](QObject* sender) { ChangeObject(sender); });
    bevel_->SetOnChange([this](QObject* sender) { ChangeObject(sender); });
}

void TBarSettings::SetStyle(TBarStyle v) {
    if (v >= bsBar && v <= bsMultiColor) SetField(*this, style_, v);
}

void TBarSettings::SetFont(const TFont* font) {
    if (font && font != font_) font_->Assign(*font);
    Change();
}

void TBarSettings::SetOptions(TBarOptions v) {
    SetField(*this, options_, v);
}
void TBarSettings::SetColor(TColorArg v) {
    SetField(*this, color_, TColor(v));
}
void TBarSettings::SetBkColor(TColorArg v) {
    SetField(*this, bkColor_, TColor(v));
}
void TBarSettings::SetBkBrightness(float v) {
    if (!std::isnan(v)) SetField(*this, bkBrightness_, v);
}
void TBarSettings::SetBkAuto(bool v) {
    SetField(*this, bkAuto_, v);
}

void TBarSettings::SetBevel(const TKxSBevel* v) {
    if (v && v != bevel_) bevel_->Assign(v);
}

void TBarSettings::SetminHeight(int32_t v) {
    if (v <= 0) return;
    minHeight_ = v;
    Change();
}

void TBarSettings::SetminWidth(int32_t v) {
    if (v <= 0) return;
    minWidth_ = v;
    Change();
}

void TBarSettings::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TBarSettings*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->style_ = style_;
    d->font_->SetOnChange(nullptr);
    d->font_->Assign(*font_);
    d->options_ = options_;
    d->color_ = color_;
    d->bkColor_ = bkColor_;
    d->bkBrightness_ = bkBrightness_;
    d->bkAuto_ = bkAuto_;
    d->bevel_->SetOnChange(nullptr);
    d->bevel_->Assign(bevel_);
    d->minHeight_ = minHeight_;
    d->minWidth_ = minWidth_;
    d->hookOwned();
    d->Change();
}

void TBarSettings::DrawSector(TCanvas& canvas, const TRect& rect, int32_t,
                              const TSectorSettings& sectors, bool dim) const {
    drawBands(canvas, rect, sectors, dim, rect.Height() > rect.Width());
}

void TBarSettings::DrawHSector(TCanvas& canvas, const TRect& rect, const TSectorSettings& sectors,
                               bool dim) const {
    drawBands(canvas, rect, sectors, dim, false);
}

void TBarSettings::DrawVSector(TCanvas& canvas, const TRect& rect, const TSectorSettings& sectors,
                               bool dim) const {
    drawBands(canvas, rect, sectors, dim, true);
}

void TBarSettings::drawBands(TCanvas& canvas, const TRect& rect, const TSectorSettings& s, bool dim,
                             bool vertical) const {
    auto shade = [&](TColor c) { return dim ? KxSetBrightness(c, bkBrightness_) : c; };
    const TColor bk = shade(bkColor_);
    const int32_t length = vertical ? rect.Height() : rect.Width();
    canvas.Brush().SetStyle(bsSolid);
    auto band = [&](int32_t from, int32_t to, TColor color) {
        const int32_t a = along(from, length), b = along(to, length);
        canvas.Brush().SetColor(color);  // an empty or reversed band fills nothing
        if (vertical)
            canvas.FillRect(TRect{rect.Left, rect.Bottom - b, rect.Right, rect.Bottom - a});
        else
            canvas.FillRect(TRect{rect.Left + a, rect.Top, rect.Left + b, rect.Bottom});
    };
    if (s.Sector1From() > 0) band(0, s.Sector1From(), bk);
    band(s.Sector1From(), s.Sector1To(), shade(s.Sector1Color()));
    band(s.Sector1To(), s.Sector2From(), bk);
    band(s.Sector2From(), s.Sector2To(), shade(s.Sector2Color()));
    band(s.Sector2To(), s.Sector3From(), bk);
    band(s.Sector3From(), s.Sector3To(), shade(s.Sector3Color()));
    if (s.Sector1From() < 1000) band(s.Sector3To(), 1000, bk);
}

void TBarSettings::Paint(TCanvas& canvas, int32_t ppt, const TSectorSettings& sectors) {
    DrawSector(canvas, BarRect, ppt, sectors, true);
}

TRect TBarSettings::span(bool vertical, int32_t a, int32_t b) const {
    if (a > b) std::swap(a, b);
    if (vertical) return TRect{0, BarHeight - b, BarWidth, BarHeight - a};
    return TRect{a, 0, b, BarHeight};
}

TColor TBarSettings::LedColor(int32_t k, int32_t n, int32_t ppt) const {
    if (n <= 0) return bkColor_;
    const int32_t p = Round(double(k) / double(n) * 1000.0);
    TColor c = HasOption(opUseSectorCol) ? BarColor : color_;
    const bool inSector = SectorSettings->CheckSectorColor(p, c);
    if (p + 1 <= ppt) return c;
    return bkAuto_ ? KxSetBrightness(inSector ? c : bkColor_, bkBrightness_) : bkColor_;
}

void TBarSettings::prepare(TBitmap& bitmap, const TCanvas& canvas) const {
    const TPoint origin = canvas.GridOrigin();
    bitmap.SetDeviceGrid(canvas.DeviceRatio(),
                         TPoint{WrapAdd(origin.X, BarRect.Left), WrapAdd(origin.Y, BarRect.Top)});
    bitmap.SetSize(BarWidth, BarHeight);
}

void TBarSettings::PaintBar(TCanvas& canvas, int32_t ppt) {
    BarWidth = BarRect.Width();
    BarHeight = BarRect.Height();
    if (BarWidth < 1 || BarHeight < 1) return;
    prepare(bar_, canvas);
    paintBar(!(BarWidth > BarHeight), perMille(ppt));
    if (HasOption(opValue)) drawText();
    canvas.SetCopyMode(cmSrcCopy);
    canvas.Draw(BarRect.Left, BarRect.Top, bar_);
}

void TBarSettings::paintBar(bool vertical, int32_t ppt) {
    TCanvas& c = bar_.Canvas();
    const TRect whole{0, 0, BarWidth, BarHeight};
    c.Pen().SetMode(pmCopy);
    c.Pen().SetStyle(psSolid);
    c.Pen().SetWidth(1);
    c.Pen().SetColor(bkColor_);
    c.Brush().SetColor(bkColor_);
    c.Rectangle(whole);
    if (bkAuto_ && style_ != bsLED_Bar) DrawSector(c, whole, 1000, *SectorSettings, true);
    const TColor color = HasOption(opUseSectorCol) ? BarColor : color_;
    c.Pen().SetColor(color);
    c.Brush().SetColor(color);
    const int32_t length = vertical ? BarHeight : BarWidth;
    switch (style_) {
        case bsBar: {
            const int32_t start = HasOption(opBidir) ? along(BidirOrigin, length) : 0;
            const TRect r = span(vertical, start, along(ppt, length));
            c.Rectangle(r);  // empty at the origin: draws nothing
            break;
        }
        case bsPoint: {
            const int32_t x = Round(double(ppt) * (double(length - 3) / 1000.0));
            c.Rectangle(span(vertical, x, x + 3));
            break;
        }
        case bsMultiColor: {
            strip_.SetDeviceGrid(bar_.DeviceRatio(), bar_.GridOrigin());
            strip_.SetSize(BarWidth, BarHeight);
            DrawSector(strip_.Canvas(), whole, 1000, *SectorSettings, false);
            const TRect r = span(vertical, 0, along(ppt, length));
            c.CopyRect(r, strip_.Canvas(), r);
            break;
        }
        case bsLED_Bar: {
            const int32_t n = length / 4;
            if (n <= 0) break;
            for (int32_t k = 0; k <= n; ++k) {
                const TColor led = LedColor(k, n, ppt);
                c.Pen().SetColor(led);
                c.Brush().SetColor(led);
                c.Rectangle(span(vertical, 4 * k + 1, 4 * k + 4));
            }
            break;
        }
    }
}

void TBarSettings::drawText() {
    text_.SetDeviceGrid(bar_.DeviceRatio(), bar_.GridOrigin());
    text_.SetSize(BarWidth, BarHeight);
    TCanvas& t = text_.Canvas();
    t.SetFont(*font_);
    // Too wide for the bar: the unit goes first, then the whole text; a cut number would
    // read as another number.
    QString text = ValueText;
    if (HasOption(opUnit) && t.TextWidth(text + QLatin1Char(' ') + UnitText) <= BarWidth)
        text += QLatin1Char(' ') + UnitText;
    if (t.TextWidth(text) > BarWidth) return;
    const TRect whole{0, 0, BarWidth, BarHeight};
    t.Brush().SetStyle(bsSolid);
    t.Brush().SetColor(clBlack);
    t.FillRect(whole);
    t.Font().SetColor(clBtnHighlight);
    t.Brush().SetStyle(bsClear);
    KxTextOut(t, BarWidth / 2, BarHeight / 2, text, toMidCenter);
    TCanvas& c = bar_.Canvas();
    c.SetCopyMode(cmSrcInvert);
    c.CopyRect(whole, t, whole);
    c.SetCopyMode(cmSrcCopy);
}

}  // namespace kx
