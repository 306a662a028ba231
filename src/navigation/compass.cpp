#include "kx/navigation/compass.h"

#include <QPointer>
#include <algorithm>
#include <cmath>

#include "kx/drawing/angles.h"
#include "kx/drawing/arrows.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/framework/areacomposer.h"
#include "kx/framework/valuebox.h"
#include "kx/host/formatfloat.h"
#include "kx/host/numeric.h"

namespace kx {

namespace {

constexpr int32_t kNeedleKind = 4;  // a shaft with an arrow head
constexpr float kFull = 360.0f;

// Card labels every 30 degrees: the cardinal letters, else tens of degrees.
QString label(int32_t degrees) {
    switch (degrees) {
        case 0:
            return QStringLiteral("N");
        case 90:
            return QStringLiteral("E");
        case 180:
            return QStringLiteral("S");
        case 270:
            return QStringLiteral("W");
        default:
            return QString::number(degrees / 10);
    }
}

const QString kIntercardinal[4] = {QStringLiteral("NE"), QStringLiteral("SE"), QStringLiteral("SW"),
                                   QStringLiteral("NW")};

}  // namespace

// What one composition draws, in face coordinates.
struct TKxCompass::TShapes {
    float card = 0.0f;     // the card's turn
    float needle = -1.0f;  // the needle's direction; -1: the lubber mark instead
    std::array<TPoint, 7> pointer{};
    size_t pointerN = 0;
    TRect cap{};
    std::array<TPoint, 5> bug{};
    std::array<TPoint, 6> marks{};
};

TKxCompass::TKxCompass(QWidget* parent)
    : TKxAnalogGControl(parent),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)),
      bevelValue_(new TKxSBevel(this)),
      fontValue_(new TFont(this)),
      scaleSettings_(new TScaleSettings(this)) {
    BeginUpdate();
    KxSetDefaultBevels(*bevelInner_, *bevelOuter_);
    bevelValue_->SetStyle(bsLowered);
    bevelValue_->SetWidth(2);
    bevelValue_->SetColor(clBlack);
    bevelValue_->SetSpacing(0);
    fontValue_->SetName(QStringLiteral("System"));
    fontValue_->SetSize(10);
    fontValue_->SetColor(clLime);
    scaleSettings_->SetPointerColor(clBlue);
    scaleSettings_->Font()->SetSize(11);
    TSignalSettings& s = *SignalSettings();
    // Written directly: the setter would store a zero start as 1e-6.
    s.WriteRange(0.0f, kFull);
    s.SetValueFormat(QStringLiteral("000"));
    s.SetValueUnit(QStringLiteral("°"));
    s.SetName1(QStringLiteral("Heading"));
    s.SetName2(QString());
    MinMax()->SetMinVisible(false);
    MinMax()->SetMaxVisible(false);
    // No heading lies beyond these, so the defaults never alarm.
    SetLimitUpper(kFull);
    SetLimitLower(-1.0f);
    SetValue(0.0f);
    SetBounds(x(), y(), 200, 250);
}

TKxCompass::~TKxCompass() = default;

void TKxCompass::Loaded() {
    const TNotifyEvent handler = [this](QObject* sender) { ParamChange(sender); };
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    bevelValue_->SetOnChange(handler);
    fontValue_->SetOnChange(handler);
    scaleSettings_->SetOnChange(handler);
    TKxAnalogGControl::Loaded();
    EndUpdate();
}

float TKxCompass::WrapHeading(float v) {
    if (!std::isfinite(v)) return std::numeric_limits<float>::quiet_NaN();
    float r = std::fmod(v, kFull);
    if (r < 0.0f) r += kFull;
    // A tiny negative remainder rounds up to 360 when the circle is added; -0 is 0.
    if (r >= kFull || r == 0.0f) r = 0.0f;
    return r;
}

void TKxCompass::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

bool TKxCompass::shown() const {
    return Visible() || Designing();
}

void TKxCompass::keepRange() {
    TSignalSettings& s = *SignalSettings();
    if (s.ValueFrom() != 0.0f || s.ValueTo() != kFull) s.WriteRange(0.0f, kFull);
}

void TKxCompass::ParamChange(QObject* sender) {
    keepRange();
    TKxAnalogGControl::ParamChange(sender);
    requestRepaint();
}

void TKxCompass::LogScaleChanged() {
    if (LogScale()) {
        SetLogScale(false);  // runs this again with the flag off
        return;
    }
    scaleSettings_->LogScale = false;
    TKxAnalogGControl::LogScaleChanged();
}

void TKxCompass::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}
void TKxCompass::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}
void TKxCompass::SetBevelValue(const TKxSBevel* v) {
    if (v && v != bevelValue_) bevelValue_->Assign(v);
}
void TKxCompass::SetScaleSettings(const TScaleSettings* v) {
    if (v && v != scaleSettings_) scaleSettings_->Assign(v);
}
void TKxCompass::SetFontValue(const TFont* v) {
    if (v && v != fontValue_) fontValue_->Assign(*v);
    requestRepaint();
}

void TKxCompass::SetCardColor(TColorArg v) {
    if (TColor(v) == cardColor_) return;
    cardColor_ = v;
    requestRepaint();
}
void TKxCompass::SetCardinalColor(TColorArg v) {
    if (TColor(v) == cardinalColor_) return;
    cardinalColor_ = v;
    requestRepaint();
}
void TKxCompass::SetCourseColor(TColorArg v) {
    if (TColor(v) == courseColor_) return;
    courseColor_ = v;
    requestRepaint();
}
void TKxCompass::SetOptions(TCompassOptions v) {
    v &= kAllOptions;
    if (v == options_) return;
    options_ = v;
    requestRepaint();
}

void TKxCompass::SetCourse(float v) {
    const float c = WrapHeading(v);
    if (std::isnan(c) || c == course_) return;
    course_ = c;
    // The bug moves like the needle: only the moving layer is composed again.
    if (HasOption(opCourse) && UpdateCount() == 0 && shown()) DrawPointer(Canvas());
}

QString TKxCompass::ReadoutText() const {
    const QString& format = SignalSettings()->ValueFormat();
    const float v = Value();
    QString text = Designing() || ValueText().isEmpty() ? FormatFloat(format, v) : ValueText();
    // 360 is north: a heading the picture rounds up to it reads as 0 does.
    if (v > 359.0f && text == FormatFloat(format, 360.0)) text = FormatFloat(format, 0.0);
    return text;
}

void TKxCompass::Paint() {
    if (UpdateCount() > 0) return;
    composer_.Invalidate();
    TCanvas& c = Canvas();
    TRect r = ClientRect();
    int32_t t = 0;
    if (HasOption(opBevelOuter)) {
        bevelOuter_->PaintFilledBevel(c, r);
        t = Div(bevelOuter_->Spacing(), 2);
    }
    PaintNames(c, r, t, HasOption(opName1), HasOption(opName2), MeasureNames(c));

    readoutBox_ = TRect{};
    if (HasOption(opReadout)) {
        const TSignalSettings& s = *SignalSettings();
        const TKxValueBoxSize b =
            KxMeasureValueBox(c, *fontValue_, s.SampleValueText(), *Font(),
                              HasOption(opUnit) ? s.ValueUnit() : QString(), *bevelValue_);
        if (b.BoxW <= r.Width() && int64_t(b.BoxH) * 3 <= int64_t(r.Height())) {
            const TRect box{r.Left, WrapSub(r.Bottom, b.BoxH), r.Right, r.Bottom};
            readoutBox_ = KxPaintFittedValueBox(c, box, b, *bevelValue_, *Font());
            r.Bottom = Saturate(int64_t(box.Top) - bevelOuter_->Spacing());
        }
    }
    if (HasOption(opBevelInner)) bevelInner_->PaintFilledBevel(c, r);
    area_ = r;
    face_ = KxMakeCenterSquare(r);
    const int32_t d = face_.Width();
    tooSmall_ = r.Width() < 2 || r.Height() < 2 || d < kMinFace;
    background_.SetSize(0, 0);
    if (tooSmall_) {
        drawReadout();
        return;
    }
    center_ = KxCenterPoint(face_);
    faceR_ = Div(d - 1, 2);
    ring_ = std::max(3, Div(faceR_, 10));
    cardR_ = faceR_ - ring_ - 1;
    tick_ = std::max(2, Div(cardR_, 8));
    needleR_ = std::max(1, cardR_ - tick_ - 1);

    c.SetFont(*scaleSettings_->Font());
    labelH_ = c.TextHeight(QStringLiteral("W"));
    labelW_ = 0;
    for (int32_t a = 0; a < 360; a += 30)
        labelW_ = std::max(labelW_, c.TextWidth(label(a)));
    int32_t interW = 0;
    for (const QString& s : kIntercardinal)
        interW = std::max(interW, c.TextWidth(s));
    const int32_t extent = std::max(labelW_, labelH_);
    labelR_ = cardR_ - tick_ - 2 - Div(extent, 2);
    labelsShown_ = labelR_ >= 2 * labelH_ && Div(labelR_, 2) >= labelW_ + 2;
    // Half its own width further in than a label extent keeps an intercardinal clear of
    // the numbers beside it (30 and 33 around NW).
    interR_ = labelR_ - extent - Div(interW, 2);
    interShown_ =
        HasOption(opIntercardinal) && labelsShown_ && interR_ - Div(interW, 2) >= capRadius() + 2;

    GetBkUpImage(c, background_, face_);
    if (!HasOption(opRotatingCard)) drawCard(background_.Canvas(), 0.0f);
    ValueChange();
}

int32_t TKxCompass::capRadius() const {
    return std::max(2, Div(needleR_, 12));
}

void TKxCompass::drawCard(TCanvas& c, float rotation) {
    const TPoint m{WrapSub(center_.X, face_.Left), WrapSub(center_.Y, face_.Top)};
    const TColor ink = scaleSettings_->Color();
    c.Pen().SetMode(pmCopy);
    c.Pen().SetStyle(psSolid);
    c.Pen().SetWidth(1);
    c.Pen().SetColor(scaleSettings_->DrawLine() ? ink : cardColor_);
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(cardColor_);
    c.Ellipse(m.X - cardR_, m.Y - cardR_, m.X + cardR_ + 1, m.Y + cardR_ + 1);

    c.Pen().SetColor(ink);
    const int32_t edge = m.Y - cardR_ + 1;
    const int32_t wide = std::max(1, Div(cardR_, 50));
    for (int32_t a = 0; a < 360; a += 5) {
        const bool ten = a % 10 == 0;
        const int32_t len = ten ? tick_ : std::max(1, Div(tick_, 2));
        c.Pen().SetWidth(ten ? wide : 1);
        const float at = float(a) + rotation;
        const TPoint p1 = KxRotate(TPoint{m.X, edge}, m, at, true);
        const TPoint p2 = KxRotate(TPoint{m.X, edge + len}, m, at, true);
        c.MoveTo(p1.X, p1.Y);
        c.LineTo(p2.X, p2.Y);
    }
    c.Pen().SetWidth(1);
    if (!labelsShown_) return;
    c.SetFont(*scaleSettings_->Font());
    c.Brush().SetStyle(bsClear);
    for (int32_t a = 0; a < 360; a += 30) {
        c.Font().SetColor(a % 90 == 0 ? cardinalColor_ : ink);
        const TPoint p = KxRotate(TPoint{m.X, m.Y - labelR_}, m, float(a) + rotation, true);
        KxTextOut(c, p.X, p.Y, label(a), toMidCenter);
    }
    if (!interShown_) return;
    c.Font().SetColor(ink);
    for (int32_t i = 0; i < 4; ++i) {
        const TPoint p =
            KxRotate(TPoint{m.X, m.Y - interR_}, m, float(45 + 90 * i) + rotation, true);
        KxTextOut(c, p.X, p.Y, kIntercardinal[i], toMidCenter);
    }
}

void TKxCompass::shapesFor(TShapes& s) const {
    const TPoint m{WrapSub(center_.X, face_.Left), WrapSub(center_.Y, face_.Top)};
    float heading = WrapHeading(Value());
    if (std::isnan(heading)) heading = 0.0f;
    const bool rotating = HasOption(opRotatingCard);
    s.card = rotating ? -heading : 0.0f;
    const int32_t top = m.Y - faceR_, edge = m.Y - cardR_, w = ring_;

    if (!rotating) {
        s.needle = heading;
        TArrowPoints field{};
        KxArrowField(kNeedleKind, 0, TRect{0, 0, 2 * needleR_, 2 * needleR_}, field,
                     kArrowPointsHigh);
        const TPoint by{m.X - needleR_, m.Y - needleR_};
        for (size_t i = 0; i < s.pointer.size(); ++i)
            s.pointer[i] = KxRotate(KxOffsetPoint(field[i + 2], by.X, by.Y), m, heading, true);
        s.pointerN = s.pointer.size();
    } else {
        s.needle = -1.0f;
        s.pointer = {TPoint{m.X - w, top}, TPoint{m.X + w, top}, TPoint{m.X, edge + tick_}};
        for (size_t i = 3; i < s.pointer.size(); ++i)
            s.pointer[i] = s.pointer[2];
        s.pointerN = 3;
    }
    const int32_t cap = capRadius();
    s.cap = TRect{m.X - cap, m.Y - cap, m.X + cap + 1, m.Y + cap + 1};

    const float bugAt = course_ + s.card;
    const int32_t notch = std::max(1, Div(ring_, 2));
    const std::array<TPoint, 5> bug{TPoint{m.X - w, top}, TPoint{m.X + w, top},
                                    TPoint{m.X + w, edge}, TPoint{m.X, edge - notch},
                                    TPoint{m.X - w, edge}};
    for (size_t i = 0; i < bug.size(); ++i)
        s.bug[i] = KxRotate(bug[i], m, bugAt, true);

    const float perMille = kFull / 1000.0f;
    const float minAt = float(std::clamp(MinPPT(), 0, 1000)) * perMille + s.card;
    const float maxAt = float(std::clamp(MaxPPT(), 0, 1000)) * perMille + s.card;
    const std::array<TPoint, 6> marks{TPoint{m.X, edge}, TPoint{m.X, top}, TPoint{m.X - w, top},
                                      TPoint{m.X, edge}, TPoint{m.X, top}, TPoint{m.X + w, top}};
    for (size_t i = 0; i < 6; ++i)
        s.marks[i] = KxRotate(marks[i], m, i < 3 ? minAt : maxAt, true);
}

void TKxCompass::DrawPointer(TCanvas& canvas) {
    if (tooSmall_ || background_.Width() < 2) return;
    TShapes s;
    shapesFor(s);
    const TMinMax& mm = *MinMax();
    const bool bugShown = HasOption(opCourse);
    const std::array<TRect, 4> now{
        KxUnionArea(KxPointsBounds(s.pointer.data(), s.pointerN, kKxOutlineReach), s.cap),
        bugShown ? KxPointsBounds(s.bug.data(), 5, kKxOutlineReach) : TRect{},
        mm.MinVisible() ? KxPointsBounds(s.marks.data(), 3, kKxOutlineReach) : TRect{},
        mm.MaxVisible() ? KxPointsBounds(s.marks.data() + 3, 3, kKxOutlineReach) : TRect{},
    };

    // A fixed card restores only what the old and the new shapes cover; a turning card
    // changes the whole face.
    const bool rotating = HasOption(opRotatingCard);
    if (composer_.Begin(*this, background_, rotating))
        for (size_t i = 0; i < now.size(); ++i)
            composer_.Add(KxUnionArea(now[i], lastDirty_[i]));
    lastDirty_ = now;
    TCanvas& w = composer_.Restore(background_);
    if (rotating) drawCard(w, s.card);

    KxPaintMinMaxMarkers(w, s.marks.data(), mm.MinVisible(),
                         MarkerColor(std::clamp(MinPPT(), 0, 1000), mm.MinColor()), mm.MaxVisible(),
                         MarkerColor(std::clamp(MaxPPT(), 0, 1000), mm.MaxColor()));
    if (bugShown) {
        w.Brush().SetColor(courseColor_);
        w.Polygon(std::span<const TPoint>(s.bug.data(), 5));
    }
    const TColor ink = scaleSettings_->Color();
    w.Pen().SetColor(ink);
    w.Brush().SetColor(scaleSettings_->PointerColor());
    w.Polygon(std::span<const TPoint>(s.pointer.data(), s.pointerN));
    w.Brush().SetColor(ink);
    w.Ellipse(s.cap);

    const TPoint at{face_.Left, face_.Top};
    cardAngle_ = s.card;
    needleAngle_ = s.needle;
    for (size_t i = 0; i < needle_.size(); ++i)
        needle_[i] = KxOffsetPoint(s.pointer[i], at.X, at.Y);
    for (size_t i = 0; i < bug_.size(); ++i)
        bug_[i] = KxOffsetPoint(s.bug[i], at.X, at.Y);
    for (size_t i = 0; i < markers_.size(); ++i)
        markers_[i] = KxOffsetPoint(s.marks[i], at.X, at.Y);
    composer_.Put(canvas, at);
}

void TKxCompass::drawReadout() {
    if (KxIsEmptyRect(readoutBox_)) return;
    KxDrawNumberBox(Canvas(), number_, readoutBox_, bevelValue_->Color(), *fontValue_,
                    ReadoutText());
}

void TKxCompass::ValueChange() {
    // An event handler may delete the compass; then there is nothing left to draw.
    QPointer<TKxCompass> alive(this);
    TKxAnalogGControl::ValueChange();
    if (!alive) return;
    if (shown() && UpdateCount() == 0) {
        DrawPointer(Canvas());
        drawReadout();
    }
}

}  // namespace kx
