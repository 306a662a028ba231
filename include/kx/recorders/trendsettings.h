#pragma once
// The trend's settings and information objects.
//
// TTrendLimit (LimitUpper, LimitLower): a limit with its colour. Setters store a different
// value and notify: Value through OnValueChange, the others through OnChange (a NaN Value
// is ignored). The trend repaints on either. How a limit is drawn: see trend.h.
//
// TRecInfo (RecordInfo): what the store holds and what is on display. Filled by the trend;
// the setters store and notify through OnChange.
//
// TVAtCursor (ValueAtCursor): the readout at the cursor line, plain stored fields.
#include <array>
#include <cstdint>

#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/host/color.h"
#include "kx/host/datetime.h"

namespace kx {

class TTrendLimit : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(float Value READ Value WRITE SetValue)
    Q_PROPERTY(int Color READ Color WRITE SetColor)
    Q_PROPERTY(bool Filled READ Filled WRITE SetFilled)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
  public:
    explicit TTrendLimit(QObject* parent = nullptr) : TKxPersistent(parent) {}

    float Value() const { return value_; }
    void SetValue(float v);
    TColor Color() const { return color_; }
    void SetColor(TColorArg v);
    // The band beyond the limit is filled (else only its edge line is drawn).
    bool Filled() const { return filled_; }
    void SetFilled(bool v);
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool v);

    void SetOnValueChange(TNotifyEvent handler) { onValueChange_ = std::move(handler); }
    void AssignTo(TKxPersistent* dest) const override;

  private:
    float value_ = 0.0f;
    TColor color_ = clRed;
    bool filled_ = false;
    bool enabled_ = false;
    TNotifyEvent onValueChange_;
};

class TRecInfo : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int FirstDisplayedRec READ FirstDisplayedRec)
    Q_PROPERTY(int LastDisplayedRec READ LastDisplayedRec)
    Q_PROPERTY(uint TotalRecords READ TotalRecords)
    Q_PROPERTY(double FirstRecord READ FirstRecord)
    Q_PROPERTY(double LastRecord READ LastRecord)
  public:
    explicit TRecInfo(QObject* parent = nullptr) : TKxPersistent(parent) {}

    int32_t FirstDisplayedRec() const { return firstDisplayed_; }
    int32_t LastDisplayedRec() const { return lastDisplayed_; }
    uint32_t TotalRecords() const { return total_; }
    TDateTime FirstRecord() const { return first_; }
    TDateTime LastRecord() const { return last_; }

    // For the trend: store and notify once.
    void SetDisplayed(int32_t first, int32_t last);
    void SetRecords(uint32_t total, TDateTime first, TDateTime last);

  private:
    int32_t firstDisplayed_ = 0;
    int32_t lastDisplayed_ = 0;
    uint32_t total_ = 0;
    TDateTime first_ = 0.0;
    TDateTime last_ = 0.0;
};

class TVAtCursor : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(bool DataValid READ DataValid WRITE SetDataValid)
    Q_PROPERTY(int RecordNo READ RecordNo WRITE SetRecordNo)
    Q_PROPERTY(double Time READ Time WRITE SetTime)
  public:
    explicit TVAtCursor(QObject* parent = nullptr) : TKxPersistent(parent) {}

    bool DataValid() const { return dataValid_; }
    void SetDataValid(bool v) { dataValid_ = v; }
    int32_t RecordNo() const { return recordNo_; }
    void SetRecordNo(int32_t v) { recordNo_ = v; }
    TDateTime Time() const { return time_; }
    void SetTime(TDateTime v) { time_ = v; }
    // ValueCh(1) .. ValueCh(8); a channel outside 1..8 reads 0 and is not stored.
    float ValueCh(int ch) const { return ch >= 1 && ch <= 8 ? values_[ch - 1] : 0.0f; }
    void SetValueCh(int ch, float v) {
        if (ch >= 1 && ch <= 8) values_[ch - 1] = v;
    }
    float ValueCh1() const { return values_[0]; }
    float ValueCh2() const { return values_[1]; }
    float ValueCh3() const { return values_[2]; }
    float ValueCh4() const { return values_[3]; }
    float ValueCh5() const { return values_[4]; }
    float ValueCh6() const { return values_[5]; }
    float ValueCh7() const { return values_[6]; }
    float ValueCh8() const { return values_[7]; }

  private:
    bool dataValid_ = false;
    int32_t recordNo_ = 0;
    TDateTime time_ = 0.0;
    std::array<float, 8> values_{};
};

}  // namespace kx
