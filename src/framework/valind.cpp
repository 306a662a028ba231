#include "kx/framework/valind.h"

#include <algorithm>

#include "kx/framework/setfield.h"
#include "kx/host/formatfloat.h"
#include "kx/host/numeric.h"

namespace kx {

TKxValInd::TKxValInd(QObject* parent)
    : TKxPersistent(parent),
      bevel_(new TKxBevelSettings(this)),
      caption_(new TKxText(this)),
      font_(new TFont(this)),
      txtSpacing_(new TKxOffset(this)) {
    bevel_->SwapColors();
    bevel_->SetWidth(2);
    font_->SetName(QStringLiteral("Arial"));
    font_->SetSize(10);
    font_->SetStyle(fsBold);
    font_->SetColor(clLime);
    hookOwned();
}

TKxValInd::~TKxValInd() = default;

void TKxValInd::hookOwned() {
    auto handler = [this](QObject* sender) { ChangeObject(sender); };
    bevel_->SetOnChange(handler);
    caption_->SetOnChange(handler);
    font_->SetOnChange(handler);
    txtSpacing_->SetOnChange(handler);
}

void TKxValInd::unhookOwned() {
    bevel_->SetOnChange(nullptr);
    caption_->SetOnChange(nullptr);
    font_->SetOnChange(nullptr);
    txtSpacing_->SetOnChange(nullptr);
}

void TKxValInd::SetFormatStr(const QString& v) {
    SetField(*this, formatStr_, v);
}
void TKxValInd::SetBevel(const TKxBevelSettings* v) {
    if (v && v != bevel_) bevel_->Assign(v);
}
void TKxValInd::SetCaption(const TKxText* v) {
    if (v && v != caption_) caption_->Assign(v);
}
void TKxValInd::SetColor(TColorArg v) {
    SetField(*this, color_, TColor(v));
}
void TKxValInd::SetFont(const TFont* v) {
    if (v && v != font_) font_->Assign(*v);
}
void TKxValInd::SetOffsetX(int32_t v) {
    SetField(*this, offsetX_, v);
}
void TKxValInd::SetOffsetY(int32_t v) {
    SetField(*this, offsetY_, v);
}
void TKxValInd::SetVisible(bool v) {
    SetField(*this, visible_, v);
}
void TKxValInd::SetTxtSpacing(const TKxOffset* v) {
    if (v && v != txtSpacing_) txtSpacing_->Assign(v);
}

void TKxValInd::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TKxValInd*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->unhookOwned();
    d->formatStr_ = formatStr_;
    d->bevel_->Assign(bevel_);
    d->caption_->Assign(caption_);
    d->color_ = color_;
    d->font_->Assign(*font_);
    d->offsetX_ = offsetX_;
    d->offsetY_ = offsetY_;
    d->visible_ = visible_;
    d->txtSpacing_->Assign(txtSpacing_);
    d->SampleText = SampleText;
    d->hookOwned();
    d->Change();
}

void TKxValInd::Draw(TCanvas& canvas, TPoint point, toPos anchor) {
    canvas.SetFont(*font_);
    const QString sample = SampleText.isEmpty() ? FormatFloat(formatStr_, -88888.888) : SampleText;
    const TKxOffset& sp = *txtSpacing_;
    const int64_t textW = int64_t(canvas.TextWidth(sample)) + sp.Left() + sp.Right();
    const int64_t textH = int64_t(canvas.TextHeight(QStringLiteral("0"))) + sp.Top() + sp.Bottom();
    const int64_t ring = std::max(0, bevel_->Width());
    const int64_t boxW = std::max<int64_t>(0, textW) + 2 * ring;
    const int64_t boxH = std::max<int64_t>(0, textH) + 2 * ring;

    const bool caption = caption_->Visible() && !caption_->Text().isEmpty();
    int64_t captionW = 0, captionH = 0;
    if (caption) {
        canvas.SetFont(*caption_->Font());
        captionW = canvas.TextWidth(caption_->Text());
        captionH = canvas.TextHeight(caption_->Text());
    }
    const int64_t blockW = std::max(boxW, captionW);
    const int64_t blockH = boxH + captionH;
    // The anchor picks a column (left, centre, right) and a row (top, middle, bottom).
    const int32_t column = anchor >= toTopLeft && anchor <= toBotRight ? anchor % 3 : 0;
    const int32_t row = anchor >= toTopLeft && anchor <= toBotRight ? anchor / 3 : 0;
    const int64_t x0 = int64_t(point.X) + offsetX_ -
                       (column == 0   ? 0
                        : column == 1 ? blockW / 2
                                      : blockW);
    const int64_t y0 = int64_t(point.Y) + offsetY_ -
                       (row == 0   ? 0
                        : row == 1 ? blockH / 2
                                   : blockH);

    const int64_t boxLeft = x0 + (blockW - boxW) / 2;
    const int64_t boxTop = y0 + captionH;
    boxRect_ = TRect{Saturate(boxLeft), Saturate(boxTop), Saturate(boxLeft + boxW),
                     Saturate(boxTop + boxH)};
    textRect_ = TRect{Saturate(boxLeft + ring), Saturate(boxTop + ring),
                      Saturate(boxLeft + boxW - ring), Saturate(boxTop + boxH - ring)};
    if (!visible_) return;

    if (caption) {
        canvas.SetFont(*caption_->Font());
        canvas.Brush().SetStyle(bsClear);
        canvas.TextOut(Saturate(x0 + (blockW - captionW) / 2 + caption_->OffsetX()),
                       Saturate(y0 + caption_->OffsetY()), caption_->Text());
    }
    TRect frame = boxRect_;
    canvas.Frame3D(frame, bevel_->ColorFrom(), bevel_->ColorTo(), int32_t(ring));
    canvas.Brush().SetStyle(bsSolid);
    canvas.Brush().SetColor(color_);
    canvas.FillRect(textRect_);
}

void TKxValInd::DrawValue(TCanvas& canvas, double value) {
    if (!visible_) return;
    KxDrawNumberBox(canvas, number_, textRect_, color_, *font_, FormatFloat(formatStr_, value),
                    txtSpacing_->Right() - 1);
}

}  // namespace kx
