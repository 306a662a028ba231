#pragma once
// TKxTrend: an eight-channel chart recorder. On every recording tick it takes the current
// digit of each channel into a 24-byte record (signstore.h) and draws the new columns of
// the curves; one record occupies one pixel column of the curve area. The user stops the
// flow, moves a cursor line with the mouse to read the values at a past moment
// (ValueAtCursor), and saves or loads the records (recordfile.h).
//
// Layout, outside in: BevelOuter; a top row holding the Caption (CaptionFont, opCaption,
// centred) and the scale headings; the left scale (opLeftScale with LeftScaleCh 1..8) and
// the right scale (opRightScale with AbsScaleCh 1..8); the curve area in between. A scale
// is as wide as its widest label + 6 and labels every horizontal grid line with the value
// the line stands for (the channel's ValueFormat, or "##0.#" when it has none); its heading
// is the channel's unit (or "%" without one) + " Ch" + the channel number. Headings stand
// above their scales, left- and right-aligned, the caption between them; each gives way
// (is cut with "…") when the row is too narrow. When scales are shown without a top row,
// the area starts half a label height down so the top label stays on the control. A
// control too small for scales drops them; one too small for a curve area draws only
// its bevel.
//
// Curve bitmap (the curve area's size): background Color, the fill channel and limit
// bands, the grid (ColorGrid: GridYSteps horizontal divisions, a vertical line every
// GridXPixel columns, never at column 0), the curves, separator lines (ColorSeparator,
// full height) and the date/time labels (ColorTime, Font) centred on every GridXPixel-th
// column but never at column 0; when a label is wider than GridXPixel - 8 they stand on
// every m-th such column only (counted in grid divisions from record 0 of the view's first
// division), so they never overlap (TimeLabelStep); a label that would
// stick out at the right edge is left out. Scale labels
// likewise skip grid lines closer than a label's height (ScaleLabelStep). Bottom reserve: one label
// height for opDate and one for opTime, or label height + 4 when neither is set but a scale is
// shown; the curve baseline is 4 above the labels. Channel digit d maps to
//     y = baseline - Round(d * PixelFactor(ch) / ZoomY) + YOffset,
// with PixelFactor = baseline / the channel's TotalDigit (so its digit range fills the
// height at ZoomY 1). ZoomY stays in 0.1..10; MoveY shifts the curves by pixels;
// SetYDefault restores ZoomY 1 and offset 0.
//
// Fill and limit bands, drawn before the grid so the grid stays visible on them (the limit
// lines themselves go over the grid, so that a limit on a grid line still shows):
//  - FillChannelNo n: the area between curve n and the baseline, in channel n's colour.
//  - opCh7isUL: channel 7 is the upper limit: the area above its curve in LimitUpper.Color
//    when LimitUpper.Filled, else its curve line in that colour. opCh8isLL: channel 8 the
//    lower limit, the area below its curve in LimitLower's colour, likewise.
//  - LimitUpper/LimitLower.Enabled: a horizontal line at the limit's Value on the right
//    scale's channel (AbsScaleCh, 1 when none), with the band beyond it when Filled.
// Curves: every other visible channel as a line from each column's point to the next, in
// the channel's colour and PenWidth (1..32 used; other widths draw 1 pixel wide).
//
// Painting: Paint draws bevel, top row and scales and copies the curve bitmap once. A
// tick draws only the new columns into the curve bitmap and copies only the columns it
// touched (curve ends, labels) to the surface. When the view scrolls by whole grid
// divisions the picture moves left and only its two edges are drawn anew (the labels that
// enter or leave, the new columns), then the bitmap is copied whole; any other move redraws
// it. The cursor line is drawn through a temporary copy of
// the columns it spans (pen ColorCursorLine, mode CursorLinePenMode), so the curve bitmap
// never holds it; the line stops above the date/time labels.
//
// Recording: while StartRecording is true (and not Designing) the trend subscribes to the
// blink service at Interval (or Interval2 for RunInterval2's ticks). Each tick stores the
// channels' absolute digits (ChArray) as they stand. See the setters for separators,
// MaxRecords and Flow. Values are converted per channel:
//     ValueToDigit(ch, v) = Round(DigitalFrom + (v - ValueFrom) * DigitPerValue) (double)
//     DigitToValue(ch, d) = ValueFrom + (d - DigitalFrom) * ValuePerDigit (as float)
// AddValue stores the low 16 bits of ValueToDigit(ch, |ValueFrom| + v) (so a value read
// back is the value added + |ValueFrom|), AddDigit clamp(|DigitalFrom| + d, 0, 65535).
//
// Choices where the classic behaviour is silent:
//  - The separator marker is 0.0 and cannot be changed: another marker would turn records
//    already stored into separators or back.
//  - opShowLast after a load shows the newest records with the newest in the last column:
//    the view starts at count - (curve area width), one record further on than
//    subtracting a whole width and one more would put it, which leaves the newest unseen.
//  - The cursor follows mouse movement (mouse tracking is on) and hides when the mouse
//    leaves the control. ZoomY, MoveY and MoveX keep the cursor hidden until it moves.
//  - Channel colours start as lime, yellow, aqua, fuchsia, red, white, orange and silver,
//    distinct on the black curve area.
//  - Destruction frees the records without firing OnRecNoChanged: no handler may see a
//    half-destroyed trend.
//  - AddValue and AddDigit draw the new column like a tick when it lies in the view (they
//    neither scroll nor delete: the application that adds records decides with MoveX).
//  - The count of displayable records (opShowLast, flow) is the curve area's width; before
//    the first layout it is the width the control would give it.
//
// Bad input: a NaN AddValue stores digit 0 for that channel (Round of NaN); a record with
// a NaN or absurd time loads and draws (its labels read as 1899-12-30). Out-of-range
// indices make the read functions return false without touching their out-parameters; a
// channel outside 1..8 converts to 0. Files: recordfile.h; the file functions return 0 or
// the errno value of the first failing step (open, each write, flush, rename), never throw.
// A store that cannot grow (memory, 2^31-1 records) refuses the record: the tick or the add
// does nothing more (AddValue/AddDigit return false).
#include <QString>
#include <array>
#include <cstdint>

#include "kx/framework/control.h"
#include "kx/framework/minmax.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/signalsettings.h"
#include "kx/host/bitmap.h"
#include "kx/host/graphics.h"
#include "kx/recorders/signstore.h"
#include "kx/recorders/trendsettings.h"

namespace kx {

enum TTrendOption : int {
    opCaption,
    opGrid,
    opCursorOnRec,
    opSeparator,
    opDate,
    opTime,
    opCh7isUL,
    opCh8isLL,
    opLeftScale,
    opRightScale,
    opShowLast
};
using TTrendOptions = uint32_t;
constexpr TTrendOptions TrendOpt(TTrendOption o) {
    return TTrendOptions(1) << o;
}
constexpr TTrendOptions kTrendDefaultOptions =
    TrendOpt(opCaption) | TrendOpt(opGrid) | TrendOpt(opCursorOnRec) | TrendOpt(opSeparator) |
    TrendOpt(opTime) | TrendOpt(opLeftScale) | TrendOpt(opRightScale);
constexpr TTrendOptions kTrendAllOptions = (TTrendOptions(1) << (opShowLast + 1)) - 1;

class TKxTrend : public TKxGraphicControl {
    Q_OBJECT
    Q_PROPERTY(bool StartRecording READ StartRecording WRITE setStartRecording)
    Q_PROPERTY(uint Interval READ Interval WRITE setInterval)
    Q_PROPERTY(uint Interval2 READ Interval2 WRITE setInterval2)
    Q_PROPERTY(int MaxRecords READ MaxRecords WRITE setMaxRecords)
    Q_PROPERTY(bool Flow READ Flow WRITE setFlow)
    Q_PROPERTY(int GridXPixel READ GridXPixel WRITE setGridXPixel)
    Q_PROPERTY(int GridYSteps READ GridYSteps WRITE setGridYSteps)
    Q_PROPERTY(int FillChannelNo READ FillChannelNo WRITE setFillChannelNo)
    Q_PROPERTY(uint Options READ Options WRITE setOptions)
    Q_PROPERTY(QString Caption READ Caption WRITE setCaption)
    Q_PROPERTY(QColor ColorCursorLine READ colorCursorLine WRITE setColorCursorLine)
    Q_PROPERTY(int CursorLinePenMode READ CursorLinePenMode WRITE setCursorLinePenMode)
    Q_PROPERTY(bool CursorLine READ CursorLine WRITE setCursorLine)
    Q_PROPERTY(QColor Color READ color WRITE setColor)
    Q_PROPERTY(QColor ColorGrid READ colorGrid WRITE setColorGrid)
    Q_PROPERTY(QColor ColorSeparator READ colorSeparator WRITE setColorSeparator)
    Q_PROPERTY(QColor ColorTime READ colorTime WRITE setColorTime)
    Q_PROPERTY(QString TimeFormat READ TimeFormat WRITE setTimeFormat)
    Q_PROPERTY(int AbsScaleCh READ AbsScaleCh WRITE setAbsScaleCh)
    Q_PROPERTY(int LeftScaleCh READ LeftScaleCh WRITE setLeftScaleCh)
    Q_PROPERTY(double ZoomY READ zoomY WRITE setZoomY)
    Q_PROPERTY(kx::TRecInfo* RecordInfo READ RecordInfo DESIGNABLE false)
    Q_PROPERTY(kx::TVAtCursor* ValueAtCursor READ ValueAtCursor DESIGNABLE false)
    Q_PROPERTY(kx::TTrendLimit* LimitUpper READ LimitUpper WRITE SetLimitUpper DESIGNABLE false)
    Q_PROPERTY(kx::TTrendLimit* LimitLower READ LimitLower WRITE SetLimitLower DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel1 READ Channel1 WRITE SetChannel1 DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel2 READ Channel2 WRITE SetChannel2 DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel3 READ Channel3 WRITE SetChannel3 DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel4 READ Channel4 WRITE SetChannel4 DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel5 READ Channel5 WRITE SetChannel5 DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel6 READ Channel6 WRITE SetChannel6 DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel7 READ Channel7 WRITE SetChannel7 DESIGNABLE false)
    Q_PROPERTY(kx::TChSettings* Channel8 READ Channel8 WRITE SetChannel8 DESIGNABLE false)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont DESIGNABLE false)
    Q_PROPERTY(kx::TFont* CaptionFont READ CaptionFont WRITE SetCaptionFont DESIGNABLE false)
    Q_PROPERTY(kx::TKxSBevel* BevelOuter READ BevelOuter WRITE SetBevelOuter DESIGNABLE false)

  public:
    static constexpr int kChannels = 8;

    explicit TKxTrend(QWidget* parent = nullptr);
    ~TKxTrend() override;

    // ---- Recording -------------------------------------------------------------------
    bool StartRecording() const { return startRecording_; }
    // Stores, leaves the Interval2 mode; when true (not Designing) subscribes at Interval
    // and, with two or more records, adds a separator at the last; else unsubscribes.
    void SetStartRecording(bool b);
    uint32_t Interval() const { return interval_; }
    // Below 100 or unchanged: ignored. Else stores; while recording adds a separator at the
    // last record (with two or more) and subscribes again at the new interval.
    void SetInterval(uint32_t ms);
    uint32_t Interval2() const { return interval2_; }
    // Below 100: ignored; stores only.
    void SetInterval2(uint32_t ms);
    int32_t MaxRecords() const { return maxRecords_; }
    // Below 100: ignored.
    void SetMaxRecords(int32_t n);
    // With Flow the store is bounded by MaxRecords and the view follows the newest record.
    bool Flow() const { return flow_; }
    void SetFlow(bool b);
    bool FlowActive() const { return flow_ && startRecording_; }
    int32_t GridXPixel() const { return gridXPixel_; }
    // Below 30: ignored; else stores and redraws the grid.
    void SetGridXPixel(int32_t px);
    int32_t GridYSteps() const { return gridYSteps_; }
    // Only 1..10; repaints.
    void SetGridYSteps(int32_t n);
    int32_t FillChannelNo() const { return fillChannelNo_; }
    // Stored only within 0..8, but any different value repaints.
    void SetFillChannelNo(int32_t n);
    TTrendOptions Options() const { return options_; }
    // Bits above opShowLast are dropped.
    void SetOptions(TTrendOptions o);
    bool HasOption(TTrendOption o) const { return (options_ & TrendOpt(o)) != 0; }

    // Records for the given number of ticks at Interval2 (only while recording), with a
    // separator at both switches.
    void RunInterval2(int32_t ticks);
    bool Interval2Active() const { return interval2Active_; }

    // ---- Records -----------------------------------------------------------------------
    const TKxSignStore& Records() const { return store_; }
    int32_t RecordCount() const { return store_.Count(); }
    TDateTime SeparatorMarker() const { return separatorMarker_; }
    bool IsSeparator(int32_t index) const;
    // ChArray(1..8): the digits the next tick records (0 outside 1..8).
    uint16_t ChArray(int ch) const { return ch >= 1 && ch <= 8 ? chArray_[ch - 1] : 0; }

    // Refused (false) while StartRecording is true; true after appending.
    bool AddValue(float v1, float v2, float v3, float v4, float v5, float v6, float v7, float v8);
    bool AddDigit(int32_t d1, int32_t d2, int32_t d3, int32_t d4, int32_t d5, int32_t d6,
                  int32_t d7, int32_t d8);
    bool ReadRecTime(int32_t index, TDateTime& time) const;
    // Per channel: the stored digit - |DigitalFrom|.
    bool ReadDigit(int32_t index, TDateTime& time, std::array<int32_t, 8>& digits) const;
    bool ReadValue(int32_t index, TDateTime& time, std::array<float, 8>& values) const;
    float DigitToValue(int ch, uint16_t digit) const;
    int32_t ValueToDigit(int ch, float value) const;
    // The texts the trend draws, for printing: channel ch's scale label at absolute digit
    // d (ValueFrom + d * ValuePerDigit in its ValueFormat, "##0.#" without one), the
    // heading above its scale, and a record time's label. Empty for a channel outside 1..8.
    QString ScaleLabelText(int ch, double digit) const;
    QString ScaleHeading(int ch) const;
    QString TimeLabelText(TDateTime t) const { return timeText(t); }
    // Fills MinMax(1..8) over first..last; false when first < 0 or last > count - 1.
    bool FindMinMax(int32_t first, int32_t last);
    // Frees records 0..n-1; ignored unless n <= last.
    void DeleteRecords(int32_t n);
    void ClearRecords();
    // A block of five separators before index (index <= last, opSeparator set), carrying
    // the digits of the record before index.
    void AddSeparator(int32_t index);
    // Refreshes RecordInfo (a single record counts as none) and emits OnRecNoChanged.
    void RecordNoChanged();
    // Scrolls the view by dx records and switches Flow off.
    void MoveX(int32_t dx);

    // Files (see recordfile.h); 0 or an errno value.
    int SaveToFile(const QString& name);
    // -1 unless last - first > 0 after clipping to the store; else appends those records.
    int SavePartToFile(const QString& name, int32_t first, int32_t last);
    int LoadFromFile(const QString& name) { return LoadFromFileEx(name, false); }
    // Stops recording; clear: replaces the records, else appends after a separator block.
    // These steps come before the file is opened, so a load that fails has still stopped
    // recording, cleared (when asked) and added the block; check the file first when that
    // matters.
    int LoadFromFileEx(const QString& name, bool clear);

    // ---- Display -----------------------------------------------------------------------
    QString Caption() const { return caption_; }
    void SetCaption(const QString& s);
    TColor ColorCursorLine() const { return colorCursorLine_; }
    void SetColorCursorLine(TColorArg c);
    TPenMode CursorLinePenMode() const { return cursorLinePenMode_; }
    void SetCursorLinePenMode(TPenMode m);
    bool CursorLine() const { return cursorLine_; }
    // Off hides a shown cursor.
    void SetCursorLine(bool b);
    TColor Color() const { return color_; }
    void SetColor(TColorArg c);
    TColor ColorGrid() const { return colorGrid_; }
    void SetColorGrid(TColorArg c);
    TColor ColorSeparator() const { return colorSeparator_; }
    void SetColorSeparator(TColorArg c);
    TColor ColorTime() const { return colorTime_; }
    void SetColorTime(TColorArg c);
    QString TimeFormat() const { return timeFormat_; }
    void SetTimeFormat(const QString& f);
    int32_t AbsScaleCh() const { return absScaleCh_; }
    // 0..8 (0: none); other values ignored.
    void SetAbsScaleCh(int32_t ch);
    int32_t LeftScaleCh() const { return leftScaleCh_; }
    void SetLeftScaleCh(int32_t ch);
    float ZoomY() const { return zoomY_; }
    // Only within 0.1..10 (NaN ignored).
    void SetZoomY(float z);
    void ZoomYIn();
    void ZoomYOut();
    int32_t YOffset() const { return yOffset_; }
    void MoveY(int32_t dy);
    void SetYDefault();

    // The cursor at mouse position (x, y) in control coordinates (see the class comment).
    void SetCursorLineAt(int32_t x, int32_t y);
    bool CursorShown() const { return cursorShown_; }
    int32_t CursorColumn() const { return cursorColumn_; }

    // ---- Settings objects ---------------------------------------------------------------
    TRecInfo* RecordInfo() const { return recInfo_; }
    TVAtCursor* ValueAtCursor() const { return vAtCursor_; }
    TTrendLimit* LimitUpper() const { return limitUpper_; }
    void SetLimitUpper(const TTrendLimit* v);
    TTrendLimit* LimitLower() const { return limitLower_; }
    void SetLimitLower(const TTrendLimit* v);
    // Channel(1..8); nullptr outside.
    TChSettings* Channel(int ch) const;
    void SetChannel(int ch, const TChSettings* v);
    TMinMax* MinMax(int ch) const;
    TChSettings* Channel1() const { return channels_[0]; }
    TChSettings* Channel2() const { return channels_[1]; }
    TChSettings* Channel3() const { return channels_[2]; }
    TChSettings* Channel4() const { return channels_[3]; }
    TChSettings* Channel5() const { return channels_[4]; }
    TChSettings* Channel6() const { return channels_[5]; }
    TChSettings* Channel7() const { return channels_[6]; }
    TChSettings* Channel8() const { return channels_[7]; }
    void SetChannel1(const TChSettings* v) { SetChannel(1, v); }
    void SetChannel2(const TChSettings* v) { SetChannel(2, v); }
    void SetChannel3(const TChSettings* v) { SetChannel(3, v); }
    void SetChannel4(const TChSettings* v) { SetChannel(4, v); }
    void SetChannel5(const TChSettings* v) { SetChannel(5, v); }
    void SetChannel6(const TChSettings* v) { SetChannel(6, v); }
    void SetChannel7(const TChSettings* v) { SetChannel(7, v); }
    void SetChannel8(const TChSettings* v) { SetChannel(8, v); }
    TFont* Font() const { return font_; }
    void SetFont(const TFont* v);
    TFont* CaptionFont() const { return captionFont_; }
    void SetCaptionFont(const TFont* v);
    TKxSBevel* BevelOuter() const { return bevelOuter_; }
    void SetBevelOuter(const TKxSBevel* v);

    KX_FLAT_CHSETTINGS(Channel1, Channel1())
    KX_FLAT_CHSETTINGS(Channel2, Channel2())
    KX_FLAT_CHSETTINGS(Channel3, Channel3())
    KX_FLAT_CHSETTINGS(Channel4, Channel4())
    KX_FLAT_CHSETTINGS(Channel5, Channel5())
    KX_FLAT_CHSETTINGS(Channel6, Channel6())
    KX_FLAT_CHSETTINGS(Channel7, Channel7())
    KX_FLAT_CHSETTINGS(Channel8, Channel8())
    KX_FLAT_SINGLE(LimitUpper_Value, LimitUpper(), Value)
    KX_FLAT_COLOR(LimitUpper_Color, LimitUpper(), Color)
    KX_FLAT(bool, LimitUpper_Filled, LimitUpper(), Filled)
    KX_FLAT(bool, LimitUpper_Enabled, LimitUpper(), Enabled)
    KX_FLAT_SINGLE(LimitLower_Value, LimitLower(), Value)
    KX_FLAT_COLOR(LimitLower_Color, LimitLower(), Color)
    KX_FLAT(bool, LimitLower_Filled, LimitLower(), Filled)
    KX_FLAT(bool, LimitLower_Enabled, LimitLower(), Enabled)
    KX_FLAT_FONT(Font, Font())
    KX_FLAT_FONT(CaptionFont, CaptionFont())
    KX_FLAT_SBEVEL(BevelOuter, BevelOuter())

    // ---- Geometry (valid after a layout, i.e. a Paint) ------------------------------------
    // The curve area on the control; the curve bitmap has its size.
    TRect CurveArea() const { return area_; }
    const TBitmap& CurveBitmap() const { return curves_; }
    // The curve baseline in the bitmap, and a channel's digit-to-pixel factor.
    int32_t Baseline() const { return baseline_; }
    double PixelFactor(int ch) const;
    // y in the bitmap of digit d of channel ch.
    int32_t DigitY(int ch, int32_t digit) const;
    int32_t LabelHeight() const { return labelHeight_; }
    // Every how many grid lines a scale label stands (1 unless the lines are closer than
    // a label's height), and every how many GridXPixel columns a date/time label stands (1
    // unless a label is wider than GridXPixel - 8).
    int32_t ScaleLabelStep() const;
    int32_t TimeLabelStep() const;
    // Columns already drawn in the curve bitmap and the first record they show.
    int32_t DrawnColumns() const { return hOffset_; }
    int32_t FirstDisplayedRecord() const { return firstDisplayed_; }
    // The records the curve area can show side by side.
    int32_t DisplayableRecords() const;

    void Loaded() override;
    void WMFlash(TMessage& message) override;

    // Qt-style setters for uic.
    void setStartRecording(bool v) { SetStartRecording(v); }
    void setInterval(uint v) { SetInterval(v); }
    void setInterval2(uint v) { SetInterval2(v); }
    void setMaxRecords(int v) { SetMaxRecords(v); }
    void setFlow(bool v) { SetFlow(v); }
    void setGridXPixel(int v) { SetGridXPixel(v); }
    void setGridYSteps(int v) { SetGridYSteps(v); }
    void setFillChannelNo(int v) { SetFillChannelNo(v); }
    void setOptions(uint v) { SetOptions(v); }
    void setCaption(const QString& v) { SetCaption(v); }
    QColor colorCursorLine() const;
    void setColorCursorLine(const QColor& c) { SetColorCursorLine(c); }
    void setCursorLinePenMode(int m);
    void setCursorLine(bool v) { SetCursorLine(v); }
    QColor color() const;
    void setColor(const QColor& c) { SetColor(c); }
    QColor colorGrid() const;
    void setColorGrid(const QColor& c) { SetColorGrid(c); }
    QColor colorSeparator() const;
    void setColorSeparator(const QColor& c) { SetColorSeparator(c); }
    QColor colorTime() const;
    void setColorTime(const QColor& c) { SetColorTime(c); }
    void setTimeFormat(const QString& v) { SetTimeFormat(v); }
    void setAbsScaleCh(int v) { SetAbsScaleCh(v); }
    void setLeftScaleCh(int v) { SetLeftScaleCh(v); }
    double zoomY() const { return ZoomY(); }
    void setZoomY(double z);

  signals:
    void OnInterval(QObject* sender);
    void OnMaxRecords(QObject* sender);
    void OnNewCursorPos(QObject* sender);
    void OnRecNoChanged(QObject* sender);

  protected:
    void ParamChange(QObject* sender) override;
    void Paint() override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void leaveEvent(QEvent* e) override;

  private:
    void subscribe(uint32_t ms);
    void unsubscribe();
    void tick();
    void getData();
    bool appendRecord(const TSignRec& r);
    bool addAndShow(const TSignRec& r);
    void putNewColumns();
    // The column of the newest record drawn (0 when none is).
    int32_t lastDrawnColumn() const { return hOffset_ > 0 ? hOffset_ - 1 : 0; }
    void refreshChArray();
    void channelValueChanged();
    void repaintAll();
    void fillCursorReadout(int32_t record);
    void invalidateCursor();

    // Display (trendpaint.cpp).
    void layout(TCanvas& c, TRect inner);
    void drawBands(int32_t first, int32_t c0, int32_t n);
    void drawLimitLines(int32_t first, int32_t c0, int32_t n, int32_t segStart);
    int32_t limitY(const TTrendLimit& l) const;
    void drawChannel(int ch, int32_t first, int32_t start, int32_t n, TColor color);
    void drawSpan(int32_t first, int32_t c0, int32_t n, int32_t segStart);
    void redrawColumns(int32_t x0, int32_t x1);
    void scrollCurves(int64_t k, int32_t drawn);
    bool bandsShown() const;
    bool labelAt(int32_t first, int32_t x) const;
    int32_t widestPen() const;
    int32_t recordColumns(int32_t first) const;
    bool canDraw() const;
    int32_t columnY(double factor, int32_t digit) const;
    void drawLabel(int32_t column, TDateTime t);
    void drawGrid(int32_t x0, int32_t x1);
    void drawCurves(int32_t first, int32_t last);
    void redrawCurves();
    void showColumns(int32_t x0, int32_t x1);
    void drawCursorLine(bool full);
    void paintTopRow();
    void paintScale(int ch, bool left);
    QString scaleText(int ch, int32_t k) const;
    QString timeText(TDateTime t) const;
    int32_t scaleWidth(TCanvas& c, int ch, int32_t baseline) const;
    int32_t gridY(int32_t k) const;
    void markDirty(int32_t x0, int32_t x1);

    TKxSignStore store_;
    std::array<TChSettings*, 8> channels_{};
    std::array<TMinMax*, 8> minMax_{};
    std::array<uint16_t, 8> chArray_{};
    TRecInfo* recInfo_;
    TVAtCursor* vAtCursor_;
    TTrendLimit* limitUpper_;
    TTrendLimit* limitLower_;
    TFont* font_;
    TFont* captionFont_;
    TKxSBevel* bevelOuter_;

    bool startRecording_ = true;
    uint32_t interval_ = 1000;
    uint32_t interval2_ = 250;
    int32_t maxRecords_ = 2000;
    bool flow_ = true;
    int32_t gridXPixel_ = 60;
    int32_t gridYSteps_ = 10;
    int32_t fillChannelNo_ = 0;
    TTrendOptions options_ = kTrendDefaultOptions;
    TDateTime separatorMarker_ = 0.0;
    bool interval2Active_ = false;
    int32_t interval2Ticks_ = 0;
    bool subscribed_ = false;
    bool inTick_ = false;
    bool destroying_ = false;

    QString caption_;
    TColor colorCursorLine_ = clLime;
    TPenMode cursorLinePenMode_ = pmNotMask;
    bool cursorLine_ = true;
    TColor color_ = clBlack;
    TColor colorGrid_ = clBtnShadow;
    TColor colorSeparator_ = clBtnHighlight;
    TColor colorTime_ = clBtnHighlight;
    QString timeFormat_;
    int32_t absScaleCh_ = 1;
    int32_t leftScaleCh_ = 0;
    float zoomY_ = 1.0f;
    int32_t yOffset_ = 0;

    // Display state.
    TBitmap curves_;
    TBitmap cursorWork_;
    // Where the curve drawing goes: the curve bitmap, or the spare one while columns are
    // drawn anew.
    TBitmap spare_;
    TBitmap* drawTo_ = &curves_;
    TCanvas& drawing() { return drawTo_->Canvas(); }
    TRect area_{};
    TRect leftScale_{};
    TRect rightScale_{};
    TRect topRow_{};
    int32_t baseline_ = 0;
    int32_t labelHeight_ = 0;
    int32_t timeLabelStep_ = 1;
    // Half the widest date/time label so far: how far a label reaches beside its column.
    int32_t labelHalfMax_ = 0;
    int32_t firstDisplayed_ = 0;
    int32_t hOffset_ = 0;
    int32_t cursorColumn_ = -1;
    int32_t prevCursorColumn_ = -1;
    bool cursorShown_ = false;
    bool laidOut_ = false;
    // Columns of the curve bitmap touched since they were last put on the surface.
    int32_t dirtyLeft_ = 0;
    int32_t dirtyRight_ = -1;
};

}  // namespace kx
