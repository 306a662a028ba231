#include "kx/recorders/ophourcounter.h"

#include <QPointer>
#include <algorithm>

#include "kx/blink/flashtimer.h"
#include "kx/host/format.h"

namespace kx {
namespace {

int32_t satAdd(int32_t a, int64_t b) {
    return int32_t(std::clamp<int64_t>(int64_t(a) + b, INT32_MIN, INT32_MAX));
}

bool isZero(int32_t h, int32_t m, int32_t s) {
    return (h <= 0 && m <= 0 && s <= 0) || h < 0 || m < 0 || s < 0;
}

// Text shown as it is inside a Format string.
QString literal(QString s) {
    return s.replace(u'%', QStringLiteral("%%"));
}

}  // namespace

void KxNormaliseTime(int32_t& h, int32_t& m, int32_t& s) {
    int32_t carry = 0;
    if (s > 59) {
        carry = s / 60;
        s %= 60;
    }
    m = satAdd(m, carry);
    if (m >= 60) {
        h = satAdd(h, m / 60);
        m %= 60;
    }
}

// ---- TTimeSetting -----------------------------------------------------------------

void TTimeSetting::SetValue(int32_t h, int32_t m, int32_t s) {
    KxNormaliseTime(h, m, s);
    hour_ = h;
    min_ = m;
    sec_ = s;
    Change();
}

void TTimeSetting::SetHour(int32_t v) {
    if (v != hour_) SetValue(v, min_, sec_);
}

void TTimeSetting::SetMin(int32_t v) {
    if (v != min_) SetValue(hour_, v, sec_);
}

void TTimeSetting::SetSec(int32_t v) {
    if (v != sec_) SetValue(hour_, min_, v);
}

void TTimeSetting::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TTimeSetting*>(dest);
    if (!d) assignError(dest);
    d->SetValue(hour_, min_, sec_);
}

// ---- TKxOpHourCounter --------------------------------------------------------------

TKxOpHourCounter::TKxOpHourCounter(QWidget* parent)
    : TKxSecondDisplay(parent),
      limit_(new TTimeSetting(this)),
      preset_(new TTimeSetting(this)),
      ini_(new TIniSettings(this)) {
    resize(113, 24);
    BevelInner()->SetColor(clWindow);
    ini_->SetFileName(QStringLiteral("KxksApp.ini"));
    ini_->SetOnHandleIniEvent([this](TIniFile& ini, bool read) { HandleIni(ini, read); });
}

TKxOpHourCounter::~TKxOpHourCounter() {
    if (!Designing()) ini_->AutoHandle(false);
}

void TKxOpHourCounter::Loaded() {
    TKxSecondDisplay::Loaded();
    if (!Designing()) ini_->AutoHandle(true);
}

void TKxOpHourCounter::SetCount(bool v) {
    if (v == count_) return;
    count_ = v;
    if (!Designing()) SubscribeSeconds(v);
}

void TKxOpHourCounter::SetCountDown(bool v) {
    if (v == countDown_) return;
    countDown_ = v;
    if (count_ && !v && !Designing()) SubscribeSeconds(true);
}

void TKxOpHourCounter::SetLimit(const TTimeSetting* v) {
    if (v && v != limit_) limit_->Assign(v);
}

void TKxOpHourCounter::SetPresetValue(const TTimeSetting* v) {
    if (v && v != preset_) preset_->Assign(v);
}

void TKxOpHourCounter::SetIniSettings(const TIniSettings* v) {
    if (v && v != ini_) ini_->Assign(v);
}

void TKxOpHourCounter::SetIndicate(TOpHrIndicate v) {
    indicate_ = v;
    Invalidate();
}

void TKxOpHourCounter::SetHourDigits(int32_t v) {
    if (v == hourDigits_) return;
    hourDigits_ = v;
    Invalidate();
}

#define KX_SEPARATOR_SETTER(Name, field)                 \
    void TKxOpHourCounter::Set##Name(const QString& v) { \
        if (v == field) return;                          \
        field = v;                                       \
        Invalidate();                                    \
    }
KX_SEPARATOR_SETTER(SeparatorHour, sepHour_)
KX_SEPARATOR_SETTER(SeparatorMin, sepMin_)
KX_SEPARATOR_SETTER(SeparatorSec, sepSec_)
KX_SEPARATOR_SETTER(SeparatorChar, sepChar_)
#undef KX_SEPARATOR_SETTER

void TKxOpHourCounter::IncSec(int32_t& h, int32_t& m, int32_t& s) {
    if (s >= 59) {
        s = 0;
        if (m >= 59) {
            m = 0;
            h = satAdd(h, 1);
        } else {
            ++m;
        }
    } else {
        ++s;
    }
}

void TKxOpHourCounter::DecSec(int32_t& h, int32_t& m, int32_t& s) {
    if (s < 1) {
        s = 59;
        if (m < 1) {
            m = 59;
            h = satAdd(h, -1);
        } else {
            --m;
        }
    } else {
        --s;
    }
}

void TKxOpHourCounter::SetTime(int32_t h, int32_t m, int32_t s) {
    KxNormaliseTime(h, m, s);
    h_ = h;
    m_ = m;
    s_ = s;
    if (checkTime()) repaintText();
}

void TKxOpHourCounter::CheckTime() {
    checkTime();
}

bool TKxOpHourCounter::checkTime() {
    QPointer<TKxOpHourCounter> self(this);
    zero_ = false;
    if (isZero(h_, m_, s_)) {
        zero_ = true;
        const TTimeSetting& p = *preset_;
        if (HasOption(opPresetOnZero) && !isZero(p.Hour(), p.Min(), p.Sec())) {
            SetTime(p.Hour(), p.Min(), p.Sec());
            if (!self) return false;
        } else {
            SubscribeSeconds(false);
            h_ = m_ = s_ = 0;
        }
        emit OnZero(this);
        if (!self) return false;
    }
    const bool limit = h_ >= limit_->Hour() && m_ >= limit_->Min() && s_ >= limit_->Sec();
    if (!limit) {
        latch_ = false;
    } else if (!latch_) {
        emit OnLimit(this);
        if (!self) return false;
        if (HasOption(opResetOnLimit)) {
            h_ = m_ = s_ = 0;
            zero_ = true;
        }
        if (HasOption(opStopOnLimit)) SubscribeSeconds(false);
        latch_ = true;
    }
    return true;
}

void TKxOpHourCounter::WMFlash(TMessage&) {
    if (countDown_) {
        if (!zero_) DecSec(h_, m_, s_);
    } else {
        IncSec(h_, m_, s_);
    }
    if (!checkTime()) return;
    repaintText();
    if (ini_->AutoLoadSave() && saveInterval_ > 0 && ++sinceSave_ >= saveInterval_) {
        sinceSave_ = 0;
        if (!Designing()) SaveToIni();
    }
}

void TKxOpHourCounter::repaintText() {
    if (Visible() || Designing()) PaintText();
}

QString TKxOpHourCounter::Text() const {
    const int digits = std::clamp(hourDigits_, 0, 32);
    QString f = QStringLiteral("%.") + QString::number(digits) + u'd' + literal(sepHour_);
    if (indicate_ != oiHour) f += literal(sepChar_) + QStringLiteral("%.2d") + literal(sepMin_);
    if (indicate_ == oiHourMinSec)
        f += literal(sepChar_) + QStringLiteral("%.2d") + literal(sepSec_);
    return Format(f, {h_, m_, s_});
}

TPoint TKxOpHourCounter::TextPosition(int32_t w, int32_t h, int32_t aw, int32_t ah) const {
    return TPoint{w <= aw ? (aw - w) / 2 : 0, (ah - h) / 2};
}

void TKxOpHourCounter::HandleIni(TIniFile& ini, bool read) {
    const QString& section = ini_->Section();
    if (read) {
        h_ = ini.ReadInteger(section, QStringLiteral("h"), 0);
        m_ = ini.ReadInteger(section, QStringLiteral("m"), 0);
        s_ = ini.ReadInteger(section, QStringLiteral("s"), 0);
        repaintText();
    } else {
        ini.WriteInteger(section, QStringLiteral("h"), h_);
        ini.WriteInteger(section, QStringLiteral("m"), m_);
        ini.WriteInteger(section, QStringLiteral("s"), s_);
    }
}

}  // namespace kx
