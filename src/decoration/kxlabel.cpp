#include "kx/decoration/kxlabel.h"

#include "kx/decoration/labelaccessible.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/strings.h"
#include "kx/framework/accessible.h"
#include "kx/host/numeric.h"

namespace kx {

TKxLabel::TKxLabel(QWidget* parent) : TKxGraphicControl(parent), font_(new TFont(this)) {
    resize(60, 20);
    font_->SetName(QStringLiteral("MS Sans Serif"));
    font_->SetSize(8);
    font_->SetOnChange([this](QObject* sender) { ParamChange(sender); });
    for (int i = 0; i < kTexts; ++i)
        digitText_ += QString::number(i) + u';';
    parse();
    KxInstallDecorationAccessibility();
}

void TKxLabel::SetDigitText(const QString& v) {
    if (v == digitText_) return;
    digitText_ = v;
    parse();
}

void TKxLabel::SetDigit(int32_t v) {
    if (v == digit_) return;
    digit_ = v;
    draw();
}

void TKxLabel::SetSpacing(int32_t v) {
    if (v == spacing_) return;
    spacing_ = v;
    draw();
}

void TKxLabel::SetTextPosH(TPosH v) {
    if (v == posH_) return;
    posH_ = v;
    draw();
}

void TKxLabel::SetTextPosV(TPosV v) {
    if (v == posV_) return;
    posV_ = v;
    draw();
}

void TKxLabel::SetFont(const TFont* v) {
    if (v && v != font_) font_->Assign(*v);
}

void TKxLabel::ParamChange(QObject*) {
    draw();
}

QString TKxLabel::Text(int32_t i) const {
    return i >= 0 && i < kTexts ? texts_[size_t(i)] : QString();
}

QString TKxLabel::ShownText() const {
    const QString t = Text(digit_);
    return t.isEmpty() ? defaultText_ : t;
}

void TKxLabel::parse() {
    QString rest = digitText_;
    for (QString& t : texts_)
        t = KxStrToken(rest, u';');
    draw();
}

void TKxLabel::draw() {
    if (paintedOnce_ && (Visible() || Designing())) Invalidate();
    KxAccessibleTextChanged(this, ShownText());
}

void TKxLabel::Paint() {
    if (!Visible() && !Designing()) return;
    paintedOnce_ = true;
    TCanvas& c = Canvas();
    c.SetFont(*font_);
    const QString text = ShownText();
    const int32_t th = c.TextHeight(QStringLiteral("X")), tw = c.TextWidth(text);
    const int32_t w = width(), h = height();
    const TPoint m = KxCenterPoint(ClientRect());
    int64_t x = m.X - tw / 2, y = m.Y - th / 2;
    if (posH_ == phLeft) x = spacing_;
    if (posH_ == phRight) x = int64_t(w) - tw - spacing_;
    if (posV_ == pvTop) y = int64_t(spacing_) - Round(th * 0.25);
    if (posV_ == pvBottom) y = int64_t(h) - Round(th * 0.8) - spacing_ - 1;
    origin_ = KxSaturatedPoint(x, y);
    c.Brush().SetStyle(bsClear);
    c.TextOut(origin_.X, origin_.Y, text);
}

}  // namespace kx
