#pragma once
// TKxMiniTrend: a sparkline recorder for dense panels. One to four channels (the value
// model of the trend: TChSettings, records of signstore.h) drawn as thin curves on a plain
// background, one record per pixel column, without scales, grid, labels or cursor.
//
// Properties, in declaration order:
//  - StartRecording (bool, true): while true (and not Designing, and Loaded) the control
//    subscribes to the blink service at Interval; each pulse appends one record holding
//    the AbsDigit of all four channels (see Recording).
//  - Interval (uint ms, 1000): below 100 or unchanged ignored; a running subscription
//    moves to the new interval.
//  - MaxRecords (int, 200): the store's bound, at least 10 (smaller values ignored). The
//    store always flows: a record beyond the bound pushes the oldest out. Lowering the
//    bound drops the oldest records at once and repaints.
//  - ChannelCount (int, 1): the channels drawn, 1..4 (other values ignored). Every record
//    holds all four channels, so raising the count shows the history of the new ones.
//  - Color (colour, clBlack): the background of the whole control inside and around the
//    bevel.
//  - ShowLastValue (bool, false): a value strip right of the curves shows, one line per
//    drawn visible channel and in its colour, the newest record's value (Font; the
//    channel's ValueFormat, "##0.#" without one). The strip is as wide as the wider of
//    ValueFrom and ValueTo formatted, + 4; it is left out when the curves would keep less
//    than half the width or a line does not fit the height; lines that do not fit below
//    the first are left out.
//  - Channel1..Channel4 (TChSettings, flat as Channel1_ValueTo, ...): ranges, colours
//    (lime, yellow, aqua, fuchsia), Visible and PenWidth (1..32 used, other widths draw
//    1 pixel wide). A settings change repaints; a new Value is only read by the next tick.
//  - Font (TFont, Arial 8): the value strip's font; its colour is not used.
//  - BevelOuter (TKxSBevel, lowered, no lines, width 1, spacing 0): a one-pixel frame;
//    Width 0 takes it away.
//
// Layout: Color fills the control, the bevel is drawn on it, and the area inside is the
// curve area (less the value strip). Channel digit d maps to
//     y = Baseline - Round(d * Baseline / TotalDigit),  Baseline = curve area height - 1,
// pinned to 0..Baseline: the channel's digit range fills the height, and a reading beyond
// it stays on the edge like a pen at its end stop. Record i of the store stands in column
// i - FirstDisplayedRecord, FirstDisplayedRecord = max(0, count - curve area width): the
// curve grows from the left and, once the view or the store is full, flows to the left.
// Each channel is a line through its records' points, the newest point drawn as well.
//
// Painting: Paint draws the background and the bevel once; ticks never touch them. A tick
// draws only the columns that change into the cached curve bitmap (clipped to those
// columns, so channels overlap as in a full drawing) and copies only those columns to
// the surface: for pen width 1 the previous newest column and the new one; wider pens add
// PenWidth / 2 + 1 columns either side. When the view flows the bitmap is shifted left
// and the columns at the right edge are drawn anew (and the first columns too when the
// record that left the store had drawn into them), then the whole curve area is copied.
// The result is pixel for pixel what a full drawing of the same records gives. At a
// fractional device pixel ratio a column is not a whole number of device pixels, so
// there a flowing tick redraws the whole bitmap instead of shifting it.
//
// Recording: each pulse stores Now() and, per channel, its AbsDigit clamped to 0..65535
// (the trend cuts to the low 16 bits; a sparkline has no scale that would tell a wrapped
// reading from a real one). AddValue records from the application instead: refused
// (false) while StartRecording is true, as on the trend; else one value per channel 1..4
// (those not given are 0), each stored as the AbsDigit the channel would have after
// SetValue(v), clamped likewise; true after appending. Unlike TKxTrend::AddValue no
// |ValueFrom| is added, so the value read back is the value added (to the digit grid).
// OnInterval fires after each recorded pulse.
//
// Bad input: a NaN AddValue stores 0 for that channel (as the trend: Round of NaN gives
// 0); an infinite one the clamped end. A channel whose digit range is empty (TotalDigit
// <= 0) draws on the baseline. A control with no room inside the bevel (1x1, 0 high)
// records but draws only the background; a very wide one draws as many columns as it
// has (the store may be smaller than the view: the curve then never reaches the right
// edge). A size whose bitmaps cannot be allocated draws nothing. A store that cannot
// grow refuses the record (AddValue returns false). Read functions return false for
// indices outside the store without touching their out-parameters; a channel outside
// 1..4 gives nullptr from Channel.
#include <QString>
#include <array>
#include <cstdint>

#include "kx/framework/control.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/signalsettings.h"
#include "kx/host/bitmap.h"
#include "kx/host/graphics.h"
#include "kx/recorders/signstore.h"

namespace kx {

class TKxMiniTrend : public TKxGraphicControl {
    Q_OBJECT
    Q_PROPERTY(bool StartRecording READ StartRecording WRITE setStartRecording)
    Q_PROPERTY(uint Interval READ Interval WRITE setInterval)
    Q_PROPERTY(int MaxRecords READ MaxRecords WRITE setMaxRecords)
    Q_PROPERTY(int ChannelCount READ ChannelCount WRITE setChannelCount)
    Q_PROPERTY(QColor Color READ color WRITE setColor)
    Q_PROPERTY(bool ShowLastValue READ ShowLastValue WRITE setShowLastValue)
    Q_PROPERTY(kx::TChSettings* Channel1 READ Channel1 WRITE SetChannel1 DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel2 READ Channel2 WRITE SetChannel2 DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel3 READ Channel3 WRITE SetChannel3 DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel4 READ Channel4 WRITE SetChannel4 DESIGNABLE false)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)

  public:
    static constexpr int kChannels = 4;
    static constexpr int32_t kMinRecords = 10;

    explicit TKxMiniTrend(QWidget* parent = nullptr);
    ~TKxMiniTrend() override;

    // ---- Recording -------------------------------------------------------------------
    bool StartRecording() const { return startRecording_; }
    void SetStartRecording(bool b);
    uint32_t Interval() const { return interval_; }
    void SetInterval(uint32_t ms);
    int32_t MaxRecords() const { return maxRecords_; }
    void SetMaxRecords(int32_t n);
    bool Subscribed() const { return subscribed_; }

    // ---- Records -----------------------------------------------------------------------
    const TKxSignStore& Records() const { return store_; }
    int32_t RecordCount() const { return store_.Count(); }
    bool AddValue(float v1, float v2 = 0.0f, float v3 = 0.0f, float v4 = 0.0f);
    // Per channel: ValueFrom + stored digit * ValuePerDigit (the channel's AbsDigitToValue).
    bool ReadValue(int32_t index, TDateTime& time, std::array<float, 4>& values) const;
    // Empties the store and repaints.
    void ClearRecords();

    // ---- Display -----------------------------------------------------------------------
    int32_t ChannelCount() const { return channelCount_; }
    void SetChannelCount(int32_t n);
    TColor Color() const { return color_; }
    void SetColor(TColorArg c);
    bool ShowLastValue() const { return showLastValue_; }
    void SetShowLastValue(bool b);

    // ---- Settings objects ---------------------------------------------------------------
    // Channel(1..4); nullptr outside.
    TChSettings* Channel(int ch) const;
    void SetChannel(int ch, const TChSettings* v);
    TChSettings* Channel1() const { return channels_[0]; }
    TChSettings* Channel2() const { return channels_[1]; }
    TChSettings* Channel3() const { return channels_[2]; }
    TChSettings* Channel4() const { return channels_[3]; }
    void SetChannel1(const TChSettings* v) { SetChannel(1, v); }
    void SetChannel2(const TChSettings* v) { SetChannel(2, v); }
    void SetChannel3(const TChSettings* v) { SetChannel(3, v); }
    void SetChannel4(const TChSettings* v) { SetChannel(4, v); }
    TFont* Font() const { return font_; }
    void SetFont(const TFont* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);

    KX_FLAT_CHSETTINGS(Channel1, Channel1())
    KX_FLAT_CHSETTINGS(Channel2, Channel2())
    KX_FLAT_CHSETTINGS(Channel3, Channel3())
    KX_FLAT_CHSETTINGS(Channel4, Channel4())
    KX_FLAT_FONT(Font, Font())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())

    // ---- Geometry (valid after a Paint) -----------------------------------------------------
    TRect CurveArea() const { return area_; }
    // Empty when the value strip is not shown.
    TRect ValueArea() const { return valueArea_; }
    const TBitmap& CurveBitmap() const { return bitmaps_[current_]; }
    int32_t Baseline() const { return baseline_; }
    // y in the curve bitmap of stored digit d of channel ch (see the class comment).
    int32_t DigitY(int ch, int32_t digit) const;
    // The store index shown in column 0.
    int32_t FirstDisplayedRecord() const;
    // The columns either side of a point that a tick redraws besides it.
    int32_t PenReach() const;

    void Loaded() override;
    void WMFlash(TMessage& message) override;
    void Invalidate() override;

    // Qt-style setters for uic.
    void setStartRecording(bool v) { SetStartRecording(v); }
    void setInterval(uint v) { SetInterval(v); }
    void setMaxRecords(int v) { SetMaxRecords(v); }
    void setChannelCount(int v) { SetChannelCount(v); }
    QColor color() const;
    void setColor(const QColor& c) { SetColor(c); }
    void setShowLastValue(bool v) { SetShowLastValue(v); }

  signals:
    void OnInterval(QObject* sender);

  protected:
    void ParamChange(QObject* sender) override;
    void Paint() override;

  private:
    void subscribe();
    void unsubscribe();
    bool append(const TSignRec& r);
    void dropFront(int32_t n);
    void showNewest();
    void redrawAll();
    void drawColumns(int32_t a, int32_t b);
    void drawChannel(TCanvas& c, int ch, int64_t i0, int64_t i1, int64_t firstIndex);
    void shiftLeft(int32_t k);
    void showColumns(int32_t a, int32_t b);
    void drawValues();
    QString valueText(int ch, uint16_t digit) const;
    TBitmap& curves() { return bitmaps_[current_]; }

    TKxSignStore store_;
    std::array<TChSettings*, 4> channels_{};
    TFont* font_;
    TKxSBevel* bevelOuter_;

    bool startRecording_ = true;
    uint32_t interval_ = 1000;
    int32_t maxRecords_ = 200;
    int32_t channelCount_ = 1;
    TColor color_ = clBlack;
    bool showLastValue_ = false;
    bool subscribed_ = false;
    bool destroying_ = false;

    // Display state. Records are numbered from the first ever stored (dropped ones
    // included), so that a shift can be told from the store's front moving.
    int64_t base_ = 0;          // number of store index 0
    int64_t drawnFirst_ = 0;    // number of the record in column 0 of the bitmap
    int64_t drawnNewest_ = -1;  // number of the newest record drawn, -1: none
    TBitmap bitmaps_[2];        // the curve bitmap and the spare a shift copies into
    int current_ = 0;
    TBitmap valueBox_;
    TRect area_{};
    TRect valueArea_{};
    int32_t baseline_ = 0;
    int32_t lineHeight_ = 0;
    bool laidOut_ = false;
};

}  // namespace kx
