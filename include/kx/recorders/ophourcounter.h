#pragma once
// TKxOpHourCounter: an operating-hour counter. It counts elapsed time in hours, minutes
// and seconds, up or down, once per wall-clock second (the blink service's second
// pulses), shows it as text in a bevelled frame, signals a limit and the reaching of
// zero, and keeps its count across program runs in an INI file (IniSettings).
//
// Counting: each second pulse steps the count (IncSec up, DecSec down; a count-down
// that stands at zero does not step), then CheckTime, then redraws the text when the
// control is visible. CheckTime:
//  1. zero: (h <= 0 and m <= 0 and s <= 0) or any part negative. Then the zero flag is
//     set; with opPresetOnZero the count is set to PresetValue (which checks again),
//     otherwise counting stops and the count becomes 0:00:00; then OnZero.
//  2. limit: h >= Limit.Hour and m >= Limit.Min and s >= Limit.Sec, each part compared
//     by itself (so a limit of 1:30:00 is met by 2:30:00 but not by 2:00:00). When it
//     becomes true: OnLimit, then with opResetOnLimit the count becomes 0:00:00 (zero
//     flag set), with opStopOnLimit counting stops. OnLimit fires again only after the
//     condition has been false at a check in between. With the default limit 0:00:00 the
//     condition holds at every check; the latch makes OnLimit fire once.
// Counting runs from Count = true until Count = false, zero without a preset, or the
// limit with opStopOnLimit; clearing CountDown while Count is set restarts a count that
// stopped at zero. The count follows the service's second count, so a simulated day of
// pulses is exactly 24:00:00 more.
//
// Normalising (SetTime, TTimeSetting): seconds above 59 carry into the minutes, minutes
// above 59 into the hours; negative parts stay as they are (and count as zero).
//
// Text: "%.<HourDigits>d<SeparatorHour>" for oiHour, then "<SeparatorChar>%.2d
// <SeparatorMin>" (oiHourMin) and "<SeparatorChar>%.2d<SeparatorSec>" (oiHourMinSec):
// with the defaults 12 h 5 min 7 s reads "0012h:05m:07s". The hours are zero-padded to
// HourDigits digits and never cut. Painting: see TKxSecondDisplay; the text is centred in
// the area inside the bevels on the inner bevel's Color (clWindow by default) in the
// font's colour. A text wider than that area starts at its left edge and is cut at the
// right one, so the hours stay readable.
//
// Persistence: in the section that IniSettings names (file "KxksApp.ini" by default, in
// the application directory), the keys "h", "m" and "s" hold the count as integers.
// Loaded() loads through AutoHandle(true) and the destructor saves through
// AutoHandle(false) (both only with IniSettings.AutoLoadSave, never at design time), and
// while counting with AutoLoadSave the count is also saved every SaveInterval counted
// seconds (60 by default; 0 or less: only at the end), so a power cut costs at most that
// much of the count. LoadFromIni/SaveToIni do it on demand. A read takes each key as an int32 with
// default 0, without normalising or checking: a missing key, text, or a number beyond int32 gives
// 0; a negative value is kept and counts as zero at the next check.
//
// Choices where the classic behaviour is silent, and bad input:
//  - The separators are literal text ("%" is shown as it is).
//  - HourDigits below 0 counts as 0 and above 32 as 32 for the text (stored as given).
//  - Arithmetic saturates at the int32 bounds: the hours stop at 2147483647 when counting
//    up, and normalising never overflows.
//  - A PresetValue that is itself zero cannot restart a count (it would be zero again):
//    opPresetOnZero then stops the count like the plain zero rule.
//  - An OnZero or OnLimit handler may delete the counter; nothing is touched afterwards.
//  - The whole text area is redrawn each second, so a shorter text leaves no remnant.
// Defaults: 113 x 24; Count and CountDown false; Indicate oiHourMinSec; HourDigits 4;
// separators "h", "m", "s", ":"; Limit and PresetValue 0:00:00; Options empty;
// SaveInterval 60.
#include <QString>

#include "kx/framework/inisettings.h"
#include "kx/recorders/seconddisplay.h"

namespace kx {

// A time span in hours, minutes and seconds. Each setter assigns only a different value
// and then normalises all three.
class TTimeSetting : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int Hour READ Hour WRITE SetHour)
    Q_PROPERTY(int Min READ Min WRITE SetMin)
    Q_PROPERTY(int Sec READ Sec WRITE SetSec)
  public:
    explicit TTimeSetting(QObject* parent = nullptr) : TKxPersistent(parent) {}
    int32_t Hour() const { return hour_; }
    void SetHour(int32_t v);
    int32_t Min() const { return min_; }
    void SetMin(int32_t v);
    int32_t Sec() const { return sec_; }
    void SetSec(int32_t v);
    // Stores the three normalised.
    void SetValue(int32_t h, int32_t m, int32_t s);
    void AssignTo(TKxPersistent* dest) const override;

  private:
    int32_t hour_ = 0, min_ = 0, sec_ = 0;
};

// Normalises h:m:s in place (see above).
void KxNormaliseTime(int32_t& h, int32_t& m, int32_t& s);

#define KX_FLAT_TIMESETTING(Prefix, Object)   \
    KX_FLAT(int, Prefix##_Hour, Object, Hour) \
    KX_FLAT(int, Prefix##_Min, Object, Min)   \
    KX_FLAT(int, Prefix##_Sec, Object, Sec)

class TKxOpHourCounter : public TKxSecondDisplay {
    Q_OBJECT
    Q_PROPERTY(bool Count READ Count WRITE setCount)
    Q_PROPERTY(bool CountDown READ CountDown WRITE setCountDown)
    Q_PROPERTY(kx::TTimeSetting* Limit READ Limit WRITE SetLimit DESIGNABLE false)
    Q_PROPERTY(kx::TTimeSetting* PresetValue READ PresetValue WRITE SetPresetValue DESIGNABLE false)
    Q_PROPERTY(int Options READ Options WRITE setOptions)
    Q_PROPERTY(TOpHrIndicate Indicate READ Indicate WRITE setIndicate)
    Q_PROPERTY(int HourDigits READ HourDigits WRITE setHourDigits)
    Q_PROPERTY(QString SeparatorHour READ SeparatorHour WRITE setSeparatorHour)
    Q_PROPERTY(QString SeparatorMin READ SeparatorMin WRITE setSeparatorMin)
    Q_PROPERTY(QString SeparatorSec READ SeparatorSec WRITE setSeparatorSec)
    Q_PROPERTY(QString SeparatorChar READ SeparatorChar WRITE setSeparatorChar)
    Q_PROPERTY(kx::TIniSettings* IniSettings READ IniSettings WRITE SetIniSettings DESIGNABLE false)
    Q_PROPERTY(int SaveInterval READ SaveInterval WRITE setSaveInterval)
  public:
    enum TOpHrOption : int { opResetOnLimit, opStopOnLimit, opPresetOnZero };
    Q_ENUM(TOpHrOption)
    using TOpHrOptions = uint8_t;  // bit n = option n
    static constexpr TOpHrOptions Option(TOpHrOption o) { return TOpHrOptions(1u << o); }
    enum TOpHrIndicate : int { oiHour, oiHourMin, oiHourMinSec };
    Q_ENUM(TOpHrIndicate)

    explicit TKxOpHourCounter(QWidget* parent = nullptr);
    ~TKxOpHourCounter() override;

    bool Count() const { return count_; }
    void SetCount(bool v);
    bool CountDown() const { return countDown_; }
    void SetCountDown(bool v);
    // The setters copy; null is ignored.
    TTimeSetting* Limit() const { return limit_; }
    void SetLimit(const TTimeSetting* v);
    TTimeSetting* PresetValue() const { return preset_; }
    void SetPresetValue(const TTimeSetting* v);
    TOpHrOptions Options() const { return options_; }
    void SetOptions(TOpHrOptions v) { options_ = v; }
    bool HasOption(TOpHrOption o) const { return options_ & Option(o); }
    TOpHrIndicate Indicate() const { return indicate_; }
    void SetIndicate(TOpHrIndicate v);
    int32_t HourDigits() const { return hourDigits_; }
    void SetHourDigits(int32_t v);
    const QString& SeparatorHour() const { return sepHour_; }
    void SetSeparatorHour(const QString& v);
    const QString& SeparatorMin() const { return sepMin_; }
    void SetSeparatorMin(const QString& v);
    const QString& SeparatorSec() const { return sepSec_; }
    void SetSeparatorSec(const QString& v);
    const QString& SeparatorChar() const { return sepChar_; }
    void SetSeparatorChar(const QString& v);
    TIniSettings* IniSettings() const { return ini_; }
    void SetIniSettings(const TIniSettings* v);
    int32_t SaveInterval() const { return saveInterval_; }
    void SetSaveInterval(int32_t v) { saveInterval_ = v; }

    // Qt-style names for uic.
    void setCount(bool v) { SetCount(v); }
    void setCountDown(bool v) { SetCountDown(v); }
    void setOptions(int v) { SetOptions(TOpHrOptions(v & 7)); }
    void setIndicate(TOpHrIndicate v) { SetIndicate(v); }
    void setHourDigits(int v) { SetHourDigits(v); }
    void setSeparatorHour(const QString& v) { SetSeparatorHour(v); }
    void setSeparatorMin(const QString& v) { SetSeparatorMin(v); }
    void setSeparatorSec(const QString& v) { SetSeparatorSec(v); }
    void setSeparatorChar(const QString& v) { SetSeparatorChar(v); }
    void setSaveInterval(int v) { SetSaveInterval(v); }
    KX_FLAT_TIMESETTING(Limit, Limit())
    KX_FLAT_TIMESETTING(PresetValue, PresetValue())
    KX_FLAT_INISETTINGS(IniSettings, IniSettings())

    int32_t Hours() const { return h_; }
    int32_t Minutes() const { return m_; }
    int32_t Seconds() const { return s_; }
    // Sets the count (normalised), checks it and redraws the text.
    void SetTime(int32_t h, int32_t m, int32_t s);
    static void IncSec(int32_t& h, int32_t& m, int32_t& s);
    static void DecSec(int32_t& h, int32_t& m, int32_t& s);
    void CheckTime();
    // The persistence callback IniSettings calls.
    void HandleIni(TIniFile& ini, bool read);
    // IniSettings.Handle(true / false); the outcome is in IniSettings' LastError.
    void LoadFromIni() { ini_->Handle(true); }
    void SaveToIni() { ini_->Handle(false); }
    bool ZeroFlag() const { return zero_; }
    bool LimitLatch() const { return latch_; }

    QString Text() const override;
    void Loaded() override;
    void WMFlash(TMessage& message) override;

  signals:
    void OnZero(QObject* sender);
    void OnLimit(QObject* sender);

  protected:
    TPoint TextPosition(int32_t w, int32_t h, int32_t aw, int32_t ah) const override;

  private:
    // The check without OnZero's nesting guard; false when a handler deleted this.
    bool checkTime();
    void repaintText();

    bool count_ = false;
    bool countDown_ = false;
    TTimeSetting* limit_;
    TTimeSetting* preset_;
    TOpHrOptions options_ = 0;
    TOpHrIndicate indicate_ = oiHourMinSec;
    int32_t hourDigits_ = 4;
    QString sepHour_ = QStringLiteral("h");
    QString sepMin_ = QStringLiteral("m");
    QString sepSec_ = QStringLiteral("s");
    QString sepChar_ = QStringLiteral(":");
    TIniSettings* ini_;
    int32_t h_ = 0, m_ = 0, s_ = 0;
    bool zero_ = false;
    bool latch_ = false;
    int32_t saveInterval_ = 60;
    int32_t sinceSave_ = 0;
};

}  // namespace kx
