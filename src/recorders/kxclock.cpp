#include "kx/recorders/kxclock.h"

#include "kx/host/clock.h"
#include "kx/host/datetimeformat.h"

namespace kx {

TKxClock::TKxClock(QWidget* parent) : TKxSecondDisplay(parent) {
    resize(69, 24);
    BevelInner()->SetColor(clBlack);
    Font()->SetSize(10);
    Font()->SetColor(clLime);
}

void TKxClock::SetClockOption(TClockOption v) {
    if (v == option_) return;
    option_ = v;
    Invalidate();
}

QString TKxClock::Text() const {
    const TDateTime now = Now();
    switch (option_) {
        case coDate:
            return DateToStr(now);
        case coDateTime:
            return DateTimeToStr(now);
        case coTime:
        default:
            return TimeToStr(now);
    }
}

void TKxClock::Loaded() {
    TKxSecondDisplay::Loaded();
    SubscribeSeconds(true);
}

void TKxClock::Paint() {
    TKxSecondDisplay::Paint();
    updateHint();
}

void TKxClock::WMFlash(TMessage&) {
    if (!Visible() && !Designing()) return;
    PaintText();
    updateHint();
}

void TKxClock::updateHint() {
    if (!autoHint_ || Designing()) return;
    const QString date = DateToStr(Now());
    if (date != Hint()) SetHint(date);
}

TPoint TKxClock::TextPosition(int32_t, int32_t, int32_t, int32_t) const {
    return TPoint{0, 0};
}

}  // namespace kx
