#include "kx/recorders/trend.h"

#include <QMouseEvent>
#include <algorithm>
#include <cmath>

#include "kx/blink/flashtimer.h"
#include "kx/host/clock.h"
#include "kx/host/numeric.h"
#include "kx/recorders/recordfile.h"
#include "kx/recorders/trendaccessible.h"

namespace kx {
namespace {

constexpr TColor kChannelColors[8] = {clLime, clYellow, clAqua,   clFuchsia,
                                      clRed,  clWhite,  0x0080FF, clSilver};

uint16_t clampDigit(int64_t d) {
    return static_cast<uint16_t>(std::clamp<int64_t>(d, 0, 65535));
}

}  // namespace

TKxTrend::TKxTrend(QWidget* parent)
    : TKxGraphicControl(parent),
      recInfo_(new TRecInfo(this)),
      vAtCursor_(new TVAtCursor(this)),
      limitUpper_(new TTrendLimit(this)),
      limitLower_(new TTrendLimit(this)),
      font_(new TFont(this)),
      captionFont_(new TFont(this)),
      bevelOuter_(new TKxSBevel(this)) {
    for (int i = 0; i < kChannels; ++i) {
        channels_[i] = new TChSettings(this);
        channels_[i]->SetColor(kChannelColors[i]);
        minMax_[i] = new TMinMax(this);
    }
    limitLower_->SetColor(clBlue);
    font_->SetName(QStringLiteral("System"));
    font_->SetSize(8);
    font_->SetColor(clBlack);
    captionFont_->SetName(QStringLiteral("System"));
    captionFont_->SetSize(10);
    captionFont_->SetStyle(fsBold);
    captionFont_->SetColor(clBlack);
    bevelOuter_->SetStyle(TKxSBevel::bsLowered);
    bevelOuter_->SetSpacing(2);
    bevelOuter_->SetBevelLine(TKxSBevel::blOuter);
    bevelOuter_->SetWidth(1);
    setMouseTracking(true);
    SetBounds(0, 0, 400, 250);
    KxInstallRecorderAccessibility();
    const TNotifyEvent repaint = [this](QObject* s) { ParamChange(s); };
    font_->SetOnChange(repaint);
    captionFont_->SetOnChange(repaint);
    bevelOuter_->SetOnChange(repaint);
    limitUpper_->SetOnChange(repaint);
    limitUpper_->SetOnValueChange(repaint);
    limitLower_->SetOnChange(repaint);
    limitLower_->SetOnValueChange(repaint);
    for (TChSettings* ch : channels_) {
        ch->SetOnChange(repaint);
        connect(ch, &TChSettings::OnValueChange, this, [this] { channelValueChanged(); });
    }
}

TKxTrend::~TKxTrend() {
    destroying_ = true;
    ClearRecords();
    unsubscribe();
}

void TKxTrend::Loaded() {
    TKxGraphicControl::Loaded();
    refreshChArray();
    if (startRecording_ && !Designing() && !subscribed_) subscribe(interval_);
}

// ---- Recording ----------------------------------------------------------------------------

void TKxTrend::subscribe(uint32_t ms) {
    AddControl(this, ms);
    subscribed_ = true;
}

void TKxTrend::unsubscribe() {
    if (!subscribed_) return;
    DelControl(this);
    subscribed_ = false;
}

void TKxTrend::SetStartRecording(bool b) {
    startRecording_ = b;
    interval2Active_ = false;
    if (b && !Designing()) {
        subscribe(interval_);
        if (store_.Last() >= 1) AddSeparator(store_.Last());
    } else {
        unsubscribe();
    }
}

void TKxTrend::SetInterval(uint32_t ms) {
    if (ms < 100 || ms == interval_) return;
    interval_ = ms;
    if (startRecording_ && !Designing()) {
        if (store_.Last() > 0) AddSeparator(store_.Last());
        subscribe(interval_);
    }
}

void TKxTrend::SetInterval2(uint32_t ms) {
    if (ms >= 100) interval2_ = ms;
}

void TKxTrend::SetMaxRecords(int32_t n) {
    if (n >= 100) maxRecords_ = n;
}

void TKxTrend::SetFlow(bool b) {
    flow_ = b;
}

void TKxTrend::RunInterval2(int32_t ticks) {
    if (!startRecording_ || Designing()) return;
    interval2Ticks_ = ticks;
    interval2Active_ = true;
    subscribe(interval2_);
    AddSeparator(store_.Last());
}

void TKxTrend::WMFlash(TMessage&) {
    if (Designing() || destroying_) return;
    tick();
}

void TKxTrend::tick() {
    if (interval2Active_) {
        --interval2Ticks_;
        if (interval2Ticks_ < 1) {
            interval2Active_ = false;
            subscribe(interval_);
            AddSeparator(store_.Last());
        }
    }
    getData();
    emit OnInterval(this);
}

void TKxTrend::getData() {
    if (destroying_) return;
    inTick_ = true;
    // The record the curve bitmap shows at column 0 and its drawn columns, so that a scroll
    // can move the picture instead of drawing it all again.
    int64_t shownFirst = firstDisplayed_;
    const int32_t drawn = hOffset_;
    if (store_.Last() >= maxRecords_ && flow_) {
        const int32_t n = store_.Count() - (maxRecords_ - gridXPixel_) - 1;
        emit OnMaxRecords(this);
        const int32_t before = store_.Count();
        DeleteRecords(n);
        shownFirst -= before - store_.Count();
        firstDisplayed_ = 0;
    }
    TSignRec r;
    r.Time = Now();
    std::copy(chArray_.begin(), chArray_.end(), r.Ch);
    appendRecord(r);
    const int32_t last = store_.Last();
    if (flow_) {
        bool advanced = false;
        while (last > DisplayableRecords() + firstDisplayed_) {
            firstDisplayed_ += gridXPixel_;
            advanced = true;
        }
        if (advanced) hOffset_ = 0;
    }
    const int64_t moved = int64_t(firstDisplayed_) - shownFirst;
    if (moved != 0) {
        scrollCurves(moved, drawn);
        putNewColumns();
    } else if (firstDisplayed_ + lastDrawnColumn() < last) {
        hOffset_ = drawn;
        drawCurves(firstDisplayed_, last);
        putNewColumns();
    }
    inTick_ = false;
}

void TKxTrend::putNewColumns() {
    if (cursorShown_ && Visible())
        drawCursorLine(true);
    else
        showColumns(dirtyLeft_, dirtyRight_);
}

bool TKxTrend::appendRecord(const TSignRec& r) {
    if (!store_.Append(r)) return false;
    RecordNoChanged();
    return true;
}

void TKxTrend::refreshChArray() {
    for (int i = 0; i < kChannels; ++i)
        chArray_[i] = static_cast<uint16_t>(channels_[i]->AbsDigit());
}

void TKxTrend::channelValueChanged() {
    refreshChArray();
}

// ---- Records ------------------------------------------------------------------------------

bool TKxTrend::IsSeparator(int32_t index) const {
    return index >= 0 && index < store_.Count() && store_[index].Time == separatorMarker_;
}

bool TKxTrend::AddValue(float v1, float v2, float v3, float v4, float v5, float v6, float v7,
                        float v8) {
    if (startRecording_) return false;
    const float v[8] = {v1, v2, v3, v4, v5, v6, v7, v8};
    TSignRec r;
    r.Time = Now();
    for (int i = 0; i < kChannels; ++i) {
        const float vf = std::fabs(channels_[i]->ValueFrom());
        r.Ch[i] = static_cast<uint16_t>(static_cast<uint32_t>(ValueToDigit(i + 1, vf + v[i])));
    }
    return addAndShow(r);
}

bool TKxTrend::addAndShow(const TSignRec& r) {
    if (!appendRecord(r)) return false;
    if (firstDisplayed_ + lastDrawnColumn() < store_.Last()) {
        drawCurves(firstDisplayed_, store_.Last());
        putNewColumns();
    }
    return true;
}

bool TKxTrend::AddDigit(int32_t d1, int32_t d2, int32_t d3, int32_t d4, int32_t d5, int32_t d6,
                        int32_t d7, int32_t d8) {
    if (startRecording_) return false;
    const int32_t d[8] = {d1, d2, d3, d4, d5, d6, d7, d8};
    TSignRec r;
    r.Time = Now();
    for (int i = 0; i < kChannels; ++i) {
        const int64_t df = std::abs(static_cast<int64_t>(channels_[i]->DigitalFrom()));
        r.Ch[i] = clampDigit(df + d[i]);
    }
    return addAndShow(r);
}

bool TKxTrend::ReadRecTime(int32_t index, TDateTime& time) const {
    if (index < 0 || index > store_.Last()) return false;
    time = store_[index].Time;
    return true;
}

bool TKxTrend::ReadDigit(int32_t index, TDateTime& time, std::array<int32_t, 8>& digits) const {
    if (index < 0 || index > store_.Last()) return false;
    const TSignRec& r = store_[index];
    time = r.Time;
    for (int i = 0; i < kChannels; ++i) {
        const int64_t df = std::abs(static_cast<int64_t>(channels_[i]->DigitalFrom()));
        digits[i] = Saturate(int64_t(r.Ch[i]) - df);
    }
    return true;
}

bool TKxTrend::ReadValue(int32_t index, TDateTime& time, std::array<float, 8>& values) const {
    if (index < 0 || index > store_.Last()) return false;
    const TSignRec& r = store_[index];
    time = r.Time;
    for (int i = 0; i < kChannels; ++i)
        values[i] = DigitToValue(i + 1, r.Ch[i]);
    return true;
}

float TKxTrend::DigitToValue(int ch, uint16_t digit) const {
    const TChSettings* c = Channel(ch);
    if (!c) return 0.0f;
    return static_cast<float>(double(c->ValueFrom()) +
                              (double(digit) - double(c->DigitalFrom())) * c->ValuePerDigit());
}

int32_t TKxTrend::ValueToDigit(int ch, float value) const {
    const TChSettings* c = Channel(ch);
    if (!c) return 0;
    return Round(double(c->DigitalFrom()) +
                 (double(value) - double(c->ValueFrom())) * double(c->DigitPerValue()));
}

bool TKxTrend::FindMinMax(int32_t first, int32_t last) {
    if (first < 0 || last > store_.Last() || first > last) return false;
    const TSignRec& seed = store_[first];
    std::array<uint16_t, 8> lo{}, hi{};
    std::array<TDateTime, 8> loAt{}, hiAt{};
    for (int i = 0; i < kChannels; ++i) {
        lo[i] = hi[i] = seed.Ch[i];
        loAt[i] = hiAt[i] = seed.Time;
    }
    for (int32_t k = first + 1; k <= last; ++k) {
        const TSignRec& r = store_[k];
        if (r.Time == separatorMarker_) continue;
        for (int i = 0; i < kChannels; ++i) {
            if (r.Ch[i] < lo[i]) {
                lo[i] = r.Ch[i];
                loAt[i] = r.Time;
            } else if (r.Ch[i] > hi[i]) {
                hi[i] = r.Ch[i];
                hiAt[i] = r.Time;
            }
        }
    }
    for (int i = 0; i < kChannels; ++i) {
        minMax_[i]->SetMinDirect(DigitToValue(i + 1, lo[i]), loAt[i]);
        minMax_[i]->SetMaxDirect(DigitToValue(i + 1, hi[i]), hiAt[i]);
    }
    return true;
}

void TKxTrend::DeleteRecords(int32_t n) {
    if (n > store_.Last()) return;
    store_.DeleteFront(n);
    RecordNoChanged();
}

void TKxTrend::ClearRecords() {
    const bool was = startRecording_;
    if (!destroying_) SetStartRecording(false);
    hOffset_ = 0;
    firstDisplayed_ = 0;
    store_.Clear();
    if (!destroying_) {
        redrawCurves();
        SetStartRecording(was);
    }
    if (destroying_) return;  // no handler may see a half-destroyed trend
    recInfo_->SetDisplayed(0, 0);
    RecordNoChanged();
}

void TKxTrend::AddSeparator(int32_t index) {
    if (index > store_.Last() || index < 1 || !HasOption(opSeparator)) return;
    TSignRec sep = store_[index - 1];
    sep.Time = separatorMarker_;
    if (store_.Insert(index, sep, 5)) RecordNoChanged();
}

void TKxTrend::RecordNoChanged() {
    if (store_.Last() < 1) {
        recInfo_->SetRecords(0, 0.0, 0.0);
    } else {
        recInfo_->SetRecords(static_cast<uint32_t>(store_.Count()), store_[0].Time,
                             store_[store_.Last()].Time);
    }
    emit OnRecNoChanged(this);
}

void TKxTrend::MoveX(int32_t dx) {
    if (!Visible() && !Designing()) return;
    flow_ = false;
    int64_t first = int64_t(firstDisplayed_) + dx;
    if (first > store_.Count()) first = int64_t(store_.Count()) - gridXPixel_ - 1;
    if (first < 0) first = 0;
    firstDisplayed_ = static_cast<int32_t>(first);
    hOffset_ = 0;
    invalidateCursor();
    redrawCurves();
    showColumns(0, curves_.Width() - 1);
}

// ---- Files --------------------------------------------------------------------------------

int TKxTrend::SaveToFile(const QString& name) {
    return KxWriteRecordFile(name, store_.Data(), static_cast<size_t>(store_.Count()));
}

int TKxTrend::SavePartToFile(const QString& name, int32_t first, int32_t last) {
    first = std::max(first, 0);
    last = std::min(last, store_.Last());
    if (int64_t(last) - first <= 0) return -1;
    return KxAppendRecordFile(name, store_.Data() + first, static_cast<size_t>(last - first + 1));
}

int TKxTrend::LoadFromFileEx(const QString& name, bool clear) {
    SetStartRecording(false);
    if (clear) {
        hOffset_ = 0;
        firstDisplayed_ = 0;
        store_.Clear();
    }
    if (store_.Last() > 0) AddSeparator(store_.Last());
    const int result = KxReadRecordFile(name, store_);
    RecordNoChanged();
    if (Visible() || Designing()) {
        int32_t first = 0;
        if (HasOption(opShowLast)) first = std::max(0, store_.Count() - DisplayableRecords());
        firstDisplayed_ = first;
        hOffset_ = 0;
        invalidateCursor();
        redrawCurves();
        showColumns(0, curves_.Width() - 1);
    }
    return result;
}

// ---- Cursor readout -----------------------------------------------------------------------

void TKxTrend::fillCursorReadout(int32_t record) {
    const TSignRec& r = store_[record];
    vAtCursor_->SetDataValid(r.Time != separatorMarker_);
    vAtCursor_->SetRecordNo(record);
    vAtCursor_->SetTime(r.Time);
    for (int i = 0; i < kChannels; ++i) {
        const TChSettings* c = channels_[i];
        vAtCursor_->SetValueCh(i + 1, static_cast<float>(double(c->ValueFrom()) +
                                                         double(r.Ch[i]) * c->ValuePerDigit()));
    }
    emit OnNewCursorPos(this);
}

void TKxTrend::SetCursorLineAt(int32_t x, int32_t y) {
    if (FlowActive() && !HasOption(opCursorOnRec)) return;
    if (!cursorLine_ || inTick_) return;
    const bool inside =
        laidOut_ && x >= area_.Left && x < area_.Right && y >= area_.Top && y < area_.Bottom;
    const int32_t column = inside ? Saturate(int64_t(x) - area_.Left) : 0;
    if (inside && column == cursorColumn_ && cursorShown_) return;
    const int64_t record = int64_t(column) + firstDisplayed_;
    if (inside && record <= store_.Last() && record >= 0) {
        cursorShown_ = true;
        cursorColumn_ = column;
        drawCursorLine(false);
        fillCursorReadout(static_cast<int32_t>(record));
    } else if (inside) {
        if (cursorShown_) showColumns(0, curves_.Width() - 1);
        cursorShown_ = false;
        cursorColumn_ = column;
        vAtCursor_->SetDataValid(false);
        emit OnNewCursorPos(this);
    } else if (cursorShown_) {
        cursorShown_ = false;
        cursorColumn_ = -1;
        vAtCursor_->SetDataValid(false);
        emit OnNewCursorPos(this);
        showColumns(0, curves_.Width() - 1);
    }
}

void TKxTrend::invalidateCursor() {
    cursorShown_ = false;
    cursorColumn_ = -1;
    prevCursorColumn_ = -1;
}

void TKxTrend::mouseMoveEvent(QMouseEvent* e) {
    const QPoint p = e->position().toPoint();
    SetCursorLineAt(p.x(), p.y());
    TKxGraphicControl::mouseMoveEvent(e);
}

void TKxTrend::leaveEvent(QEvent* e) {
    SetCursorLineAt(-1, -1);
    TKxGraphicControl::leaveEvent(e);
}

// ---- Settings -----------------------------------------------------------------------------

TChSettings* TKxTrend::Channel(int ch) const {
    return ch >= 1 && ch <= kChannels ? channels_[ch - 1] : nullptr;
}

void TKxTrend::SetChannel(int ch, const TChSettings* v) {
    TChSettings* c = Channel(ch);
    if (c && v && v != c) c->Assign(v);
}

TMinMax* TKxTrend::MinMax(int ch) const {
    return ch >= 1 && ch <= kChannels ? minMax_[ch - 1] : nullptr;
}

void TKxTrend::SetLimitUpper(const TTrendLimit* v) {
    if (v && v != limitUpper_) limitUpper_->Assign(v);
}

void TKxTrend::SetLimitLower(const TTrendLimit* v) {
    if (v && v != limitLower_) limitLower_->Assign(v);
}

void TKxTrend::SetFont(const TFont* v) {
    if (v && v != font_) font_->Assign(*v);
}

void TKxTrend::SetCaptionFont(const TFont* v) {
    if (v && v != captionFont_) captionFont_->Assign(*v);
}

void TKxTrend::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}

void TKxTrend::repaintAll() {
    Invalidate();
}

void TKxTrend::ParamChange(QObject*) {
    repaintAll();
}

void TKxTrend::SetGridXPixel(int32_t px) {
    if (px < 30 || px == gridXPixel_) return;
    gridXPixel_ = px;
    repaintAll();
}

void TKxTrend::SetGridYSteps(int32_t n) {
    if (n < 1 || n > 10 || n == gridYSteps_) return;
    gridYSteps_ = n;
    repaintAll();
}

void TKxTrend::SetFillChannelNo(int32_t n) {
    if (n == fillChannelNo_) return;
    if (n >= 0 && n <= kChannels) fillChannelNo_ = n;
    repaintAll();
}

void TKxTrend::SetOptions(TTrendOptions o) {
    o &= kTrendAllOptions;
    if (o == options_) return;
    options_ = o;
    repaintAll();
}

void TKxTrend::SetCaption(const QString& s) {
    if (s == caption_) return;
    caption_ = s;
    repaintAll();
}

void TKxTrend::SetColorCursorLine(TColorArg c) {
    colorCursorLine_ = c;
    repaintAll();
}

void TKxTrend::SetCursorLinePenMode(TPenMode m) {
    cursorLinePenMode_ = m;
    repaintAll();
}

void TKxTrend::setCursorLinePenMode(int m) {
    if (m >= pmBlack && m <= pmNotXor) SetCursorLinePenMode(TPenMode(m));
}

void TKxTrend::SetCursorLine(bool b) {
    if (b == cursorLine_) return;
    cursorLine_ = b;
    if (!b && cursorShown_) {
        invalidateCursor();
        showColumns(0, curves_.Width() - 1);
    }
}

void TKxTrend::SetColor(TColorArg c) {
    if (TColor(c) == color_) return;
    color_ = c;
    repaintAll();
}

void TKxTrend::SetColorGrid(TColorArg c) {
    if (TColor(c) == colorGrid_) return;
    colorGrid_ = c;
    repaintAll();
}

void TKxTrend::SetColorSeparator(TColorArg c) {
    if (TColor(c) == colorSeparator_) return;
    colorSeparator_ = c;
    repaintAll();
}

void TKxTrend::SetColorTime(TColorArg c) {
    if (TColor(c) == colorTime_) return;
    colorTime_ = c;
    repaintAll();
}

void TKxTrend::SetTimeFormat(const QString& f) {
    if (f == timeFormat_) return;
    timeFormat_ = f;
    repaintAll();
}

void TKxTrend::SetAbsScaleCh(int32_t ch) {
    if (ch < 0 || ch > kChannels || ch == absScaleCh_) return;
    absScaleCh_ = ch;
    repaintAll();
}

void TKxTrend::SetLeftScaleCh(int32_t ch) {
    if (ch < 0 || ch > kChannels || ch == leftScaleCh_) return;
    leftScaleCh_ = ch;
    repaintAll();
}

void TKxTrend::SetZoomY(float z) {
    if (!(z >= 0.1f && z <= 10.0f) || z == zoomY_) return;
    zoomY_ = z;
    invalidateCursor();
    repaintAll();
}

void TKxTrend::ZoomYIn() {
    SetZoomY(std::max(zoomY_ - 0.1f, 0.1f));
}

void TKxTrend::ZoomYOut() {
    SetZoomY(std::min(zoomY_ + 0.1f, 10.0f));
}

void TKxTrend::MoveY(int32_t dy) {
    if (dy == 0) return;
    yOffset_ = Saturate(int64_t(yOffset_) + dy);
    invalidateCursor();
    repaintAll();
}

void TKxTrend::SetYDefault() {
    zoomY_ = 1.0f;
    yOffset_ = 0;
    invalidateCursor();
    repaintAll();
}

void TKxTrend::setZoomY(double z) {
    SetZoomY(static_cast<float>(z));
}

QColor TKxTrend::colorCursorLine() const {
    return EncodeQColor(colorCursorLine_);
}
QColor TKxTrend::color() const {
    return EncodeQColor(color_);
}
QColor TKxTrend::colorGrid() const {
    return EncodeQColor(colorGrid_);
}
QColor TKxTrend::colorSeparator() const {
    return EncodeQColor(colorSeparator_);
}
QColor TKxTrend::colorTime() const {
    return EncodeQColor(colorTime_);
}

}  // namespace kx
