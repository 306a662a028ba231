#include "kx/entry/numedit.h"

#include <QKeyEvent>
#include <QPalette>
#include <QPointer>
#include <QScopedValueRollback>
#include <cfloat>
#include <cmath>

#include "kx/drawing/binstr.h"
#include "kx/host/format.h"
#include "kx/host/formatfloat.h"
#include "kx/host/messagebox.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

constexpr double kIntLimit = 2147483647.0;

// The range a notation can show.
void clampToBase(double& v, TKxNumEdit::TEditBase base) {
    const double lo = base == TKxNumEdit::ebFloat ? -HUGE_VAL : -kIntLimit;
    const double hi = base == TKxNumEdit::ebFloat ? 1.7e308 : kIntLimit;
    if (v < lo) v = lo;
    if (v > hi) v = hi;
}

float singleView(double v) {
    if (v <= -1.5e45) return -HUGE_VALF;
    if (v >= 3.4e38) return 3.4e38f;
    // Below the single range rounding to nearest overflows to minus infinity; the cast
    // itself would be undefined there.
    if (v < -double(FLT_MAX)) return v < -3.4028235677973366e38 ? -HUGE_VALF : -FLT_MAX;
    return float(v);
}

int32_t intView(double v) {
    if (v >= kIntLimit) return 2147483647;
    if (v <= -kIntLimit) return -2147483647;
    return Round(v);
}

}  // namespace

TKxNumEdit::TKxNumEdit(QWidget* parent)
    : QLineEdit(parent), hexText_(QStringLiteral("0")), binText_(QStringLiteral("0")) {
    setText(QStringLiteral("0"));
    connect(this, &QLineEdit::textEdited, this, [this] { textEditedByUser(); });
    applyColor();
}

void TKxNumEdit::Loaded() {
    loading_ = false;
}

bool TKxNumEdit::event(QEvent* e) {
    if (e->type() == QEvent::Polish && loading_) Loaded();
    return QLineEdit::event(e);
}

QString TKxNumEdit::textOf(TEditBase base) const {
    switch (base) {
        case ebBin:
            return binText_;
        case ebHex:
            return hexText_;
        case ebFloat:
            return FormatFloat(formatStr_, value_);
        case ebInt:
            break;
    }
    return QString::number(intView_);
}

void TKxNumEdit::SetEditBase(TEditBase b) {
    if (b < ebBin || b > ebInt || b == editBase_) return;
    editBase_ = b;
    setText(textOf(b));
    lastApplied_ = text();
    SetState(esNormal);
}

void TKxNumEdit::SetFormatStr(const QString& f) {
    if (f == formatStr_) return;
    formatStr_ = f;
    if (editBase_ == ebFloat) setText(FormatFloat(formatStr_, value_));
    CheckEdit(true);
}

void TKxNumEdit::SetValue(double v) {
    if (std::isnan(v) || v == value_) return;
    SetText(CheckValue(v));
}

void TKxNumEdit::SetValueAsInt(int32_t v) {
    if (QString::number(v) != text()) SetText(CheckValue(v));
}

void TKxNumEdit::SetValueAsSingle(float v) {
    if (!std::isnan(v) && FloatToStr(v) != text()) SetText(CheckValue(v));
}

void TKxNumEdit::SetValueAsHex(const QString& v) {
    if (v == text()) return;
    setText(editBase_ == ebHex ? v : QStringLiteral("$") + v);
    CheckEdit(true);
}

void TKxNumEdit::SetValueAsBool(const QString& v) {
    if (v == text()) return;
    setText(editBase_ == ebBin ? v : QStringLiteral("&") + v);
    CheckEdit(true);
}

void TKxNumEdit::SetColorDefault(TColorArg c) {
    colorDefault_ = c;
    applyColor();
}

void TKxNumEdit::SetColorError(TColorArg c) {
    colorError_ = c;
    applyColor();
}

void TKxNumEdit::SetColorEditing(TColorArg c) {
    colorEditing_ = c;
    applyColor();
}

void TKxNumEdit::SetKxAutoSize(bool v) {
    autoSize_ = v;
    if (v) resize(width(), sizeHint().height());
}

void TKxNumEdit::applyColor() {
    const TColor c = state_ == esError     ? colorError_
                     : state_ == esEditing ? colorEditing_
                                           : colorDefault_;
    QPalette p = palette();
    const TColor rgb = ColorToRGB(c);
    p.setColor(QPalette::Base, QColor(GetRValue(rgb), GetGValue(rgb), GetBValue(rgb)));
    setPalette(p);
}

void TKxNumEdit::SetState(TNumEditState s) {
    if (s == state_) return;
    state_ = s;
    applyColor();
    if (s != esError) return;
    if (isVisible()) repaint();  // the colour shows before the beep
    Beep();
}

void TKxNumEdit::showEntryError(const TEntry& entry) {
    // Set while an edit takes the focus for its error: the edit that loses the focus then
    // checks its own entry on the way out, and must not take the focus back for an error
    // of its own, or two edits in error would pass it to and fro for ever.
    static bool takingFocus = false;
    SetState(esError);
    if (focusPolicy() != Qt::NoFocus && isVisible() && !designing_ && !hasFocus() && !takingFocus) {
        const QPointer<TKxNumEdit> alive(this);
        const QScopedValueRollback<bool> guard(takingFocus, true);
        setFocus();
        if (!alive) return;  // a handler of the other edit deleted this one
    }
    setSelection(entry.FirstInvalid, entry.LastInvalid - entry.FirstInvalid + 1);
}

bool TKxNumEdit::CheckEdit(bool apply) {
    const TEntry entry = Parse(text(), editBase_, FormatSettings());
    if (entry.Empty) {
        SetState(esEditing);
        return true;
    }
    if (!entry.Valid) {
        showEntryError(entry);
        return false;
    }
    SetState(apply || text() == lastApplied_ ? esNormal : esEditing);
    if (apply) SetText(CheckValue(entry.Value));
    return true;
}

double TKxNumEdit::CheckValue(double v) {
    double r = v;
    bool lower = atLower_, upper = atUpper_;
    if (HasOption(eoLimitMin)) {
        lower = minValue_ >= v;
        if (lower) r = minValue_;
    }
    if (HasOption(eoLimitMax)) {
        // The incoming value decides, not the one the lower limit may have given.
        upper = v >= maxValue_;
        if (upper) r = maxValue_;
    }
    const bool lowerChanged = lower != atLower_, upperChanged = upper != atUpper_;
    atLower_ = lower;
    atUpper_ = upper;
    if (lowerChanged) Limit();
    if (upperChanged) Limit();
    return r;
}

void TKxNumEdit::SetText(double v) {
    if (std::isnan(v)) return;
    clampToBase(v, editBase_);
    singleView_ = singleView(v);
    intView_ = intView(v);
    value_ = v;
    formatted_ = true;
    hexText_ = IntToHex(int64_t(uint32_t(intView_)), digitsHex_);
    binText_ = KxIntToBin(intView_, digitsBool_);
    setText(textOf(editBase_));
    SetState(esNormal);
    const QString shown = text();
    if (!loading_ && shown != lastApplied_) {
        lastApplied_ = shown;
        emit OnValueChanged(this);
        return;
    }
    lastApplied_ = shown;
}

void TKxNumEdit::Limit() {
    emit OnLimit(this);
}

void TKxNumEdit::step(bool up) {
    if (isReadOnly() || (up ? atUpper_ : atLower_)) {
        Beep();
        return;
    }
    const bool multiply =
        HasOption(eoMultiply) && editBase_ == ebFloat && increment_ != 0.0f && value_ != 0.0;
    const double inc = increment_;
    double v = value_;
    if (multiply)
        v = up ? v * inc : v / inc;
    else
        v = up ? v + inc : v - inc;
    SetValue(CheckValue(v));
    emit OnChange(this);
}

void TKxNumEdit::UpClick() {
    step(true);
}

void TKxNumEdit::DownClick() {
    step(false);
}

void TKxNumEdit::textEditedByUser() {
    // Applied at once only at design time or before any value was shown; otherwise the
    // entry waits for Enter or for the focus to leave.
    CheckEdit(designing_ || !formatted_);
    emit OnChange(this);
}

void TKxNumEdit::confirm() {
    if (text().isEmpty()) setText(QStringLiteral("0"));
    CheckEdit(true);
}

void TKxNumEdit::keyPressEvent(QKeyEvent* e) {
    switch (e->key()) {
        case Qt::Key_Up:
            if (!atUpper_) UpClick();
            e->accept();
            return;
        case Qt::Key_Down:
            if (!atLower_) DownClick();
            e->accept();
            return;
        case Qt::Key_Escape:
            if (state_ == esNormal) break;
            setText(textOf(editBase_));
            SetState(esNormal);
            e->accept();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            confirm();
            e->accept();
            return;
        default:
            break;
    }
    if (!editorEnabled_ && (!e->text().isEmpty() || e->key() == Qt::Key_Delete)) {
        Beep();
        e->accept();
        return;
    }
    QLineEdit::keyPressEvent(e);
}

void TKxNumEdit::focusInEvent(QFocusEvent* e) {
    QLineEdit::focusInEvent(e);
    if (!autoSelect_) deselect();
}

void TKxNumEdit::focusOutEvent(QFocusEvent* e) {
    QLineEdit::focusOutEvent(e);
    // A context menu or another window taking over is no leaving.
    if (e->reason() == Qt::PopupFocusReason || e->reason() == Qt::ActiveWindowFocusReason) return;
    confirm();
}

void TKxNumEdit::changeEvent(QEvent* e) {
    QLineEdit::changeEvent(e);
    if (e->type() == QEvent::FontChange && autoSize_) resize(width(), sizeHint().height());
}

}  // namespace kx
