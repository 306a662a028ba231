#include "kx/navigation/vcind.h"

#include <QPointer>
#include <algorithm>
#include <cmath>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/shapes.h"
#include "kx/drawing/text.h"
#include "kx/framework/sectorsettings.h"
#include "kx/host/numeric.h"
#include "kx/navigation/vcindaccessible.h"

namespace kx {

namespace {

constexpr int64_t kNeedleBlinkCode = 4;
constexpr double kPi = 3.14159265358979323846;
const QString kDegree = QStringLiteral("\u00B0");

// A point of the card (u to the right, v down, from the window's centre) on the work
// bitmap, the card turned by the angle whose sine and cosine are given.
struct TCard {
    double cx, cy, s, c;
    TPoint at(double u, double v) const {
        return TPoint{Round(cx + u * c - v * s), Round(cy + u * s + v * c)};
    }
};

void solidPen(TCanvas& c, TColor color, int32_t width = 1) {
    c.Pen().SetMode(pmCopy);
    c.Pen().SetStyle(psSolid);
    c.Pen().SetWidth(width);
    c.Pen().SetColor(color);
}

void line(TCanvas& c, TPoint a, TPoint b) {
    c.MoveTo(a.X, a.Y);
    c.LineTo(b.X, b.Y);
}

bool isMajorRollTick(int32_t a) {
    return a % 30 == 0;
}

}  // namespace

TKxVCInd::TKxVCInd(QWidget* parent)
    : TKxAnalogGControl(parent),
      bevelInner_(new TKxSBevel(this)),
      bevelOuter_(new TKxSBevel(this)),
      colorBezel_(RGB(48, 48, 48)),
      colorGround_(RGB(140, 90, 40)),
      colorSky_(RGB(40, 130, 220)),
      courseSettings_(new TSignalSettings(this)),
      fontValue_(new TFont(this)),
      pitchSettings_(new TSignalSettings(this)),
      rollSettings_(new TSignalSettings(this)) {
    BeginUpdate();
    KxInstallVCIndAccessibility();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    KxSetDefaultBevels(*bevelInner_, *bevelOuter_);
    fontValue_->SetName(QStringLiteral("Arial"));
    fontValue_->SetSize(10);
    fontValue_->SetStyle(fsBold);
    fontValue_->SetColor(clBlack);
    // The settings are not hooked yet: these only store. The readings' own names are
    // what assistive tools call them; the instrument's names stay SignalSettings'.
    for (TSignalSettings* s : {courseSettings_, pitchSettings_, rollSettings_})
        s->SetName2(QString());
    courseSettings_->SetName1(QStringLiteral("Course"));
    pitchSettings_->SetName1(QStringLiteral("Pitch"));
    rollSettings_->SetName1(QStringLiteral("Roll"));
    courseSettings_->WriteRange(0.0f, 360.0f);
    courseSettings_->SetValueFormat(QStringLiteral("000"));
    courseSettings_->SetValueUnit(kDegree);
    pitchSettings_->WriteRange(-30.0f, 30.0f);
    pitchSettings_->SetValueFormat(QStringLiteral("##0.0"));
    pitchSettings_->SetValueUnit(kDegree);
    rollSettings_->WriteRange(-60.0f, 60.0f);
    rollSettings_->SetValueFormat(QStringLiteral("##0.0"));
    rollSettings_->SetValueUnit(kDegree);
    SignalSettings()->WriteRange(-2.0f, 2.0f);
    SignalSettings()->SetValueFormat(QStringLiteral("##0.0"));
    SignalSettings()->SetValueUnit(QString());
    SetLimitLower(-2.0f);
    SetLimitUpper(2.0f);
    SetValue(0.0f);
    SetBounds(x(), y(), 220, 220);
}

TKxVCInd::~TKxVCInd() {
    DelControl(this);
}

void TKxVCInd::hookSettings() {
    const TNotifyEvent handler = [this](QObject* sender) { ParamChange(sender); };
    bevelInner_->SetOnChange(handler);
    bevelOuter_->SetOnChange(handler);
    courseSettings_->SetOnChange(handler);
    pitchSettings_->SetOnChange(handler);
    rollSettings_->SetOnChange(handler);
    fontValue_->SetOnChange(handler);
}

void TKxVCInd::Loaded() {
    hookSettings();
    TKxAnalogGControl::Loaded();
    EndUpdate();
}

void TKxVCInd::requestRepaint() {
    if (UpdateCount() == 0) Invalidate();
}

void TKxVCInd::ParamChange(QObject* sender) {
    TKxAnalogGControl::ParamChange(sender);
    requestRepaint();
}

// --- properties ----------------------------------------------------------------------------

void TKxVCInd::SetBevelInner(const TKxSBevel* v) {
    if (v && v != bevelInner_) bevelInner_->Assign(v);
}
void TKxVCInd::SetBevelOuter(const TKxSBevel* v) {
    if (v && v != bevelOuter_) bevelOuter_->Assign(v);
}
void TKxVCInd::SetCourseSettings(const TSignalSettings* v) {
    if (v && v != courseSettings_) courseSettings_->Assign(v);
}
void TKxVCInd::SetPitchSettings(const TSignalSettings* v) {
    if (v && v != pitchSettings_) pitchSettings_->Assign(v);
}
void TKxVCInd::SetRollSettings(const TSignalSettings* v) {
    if (v && v != rollSettings_) rollSettings_->Assign(v);
}
void TKxVCInd::SetFontValue(const TFont* v) {
    if (v && v != fontValue_) fontValue_->Assign(*v);
    requestRepaint();
}

#define KX_VCIND_COLOR(Name, field)         \
    void TKxVCInd::Set##Name(TColorArg c) { \
        if (TColor(c) == field) return;     \
        field = c;                          \
        requestRepaint();                   \
    }
KX_VCIND_COLOR(ColorBezel, colorBezel_)
KX_VCIND_COLOR(ColorGround, colorGround_)
KX_VCIND_COLOR(ColorSky, colorSky_)
KX_VCIND_COLOR(ColorSymbol, colorSymbol_)
KX_VCIND_COLOR(PointerColor, pointerColor_)
#undef KX_VCIND_COLOR

void TKxVCInd::SetOptions(TVCIndOptions v) {
    if (v == options_) return;
    options_ = v;
    // Clearing the option that made the needle blink stops the blinking at once.
    if (blinking_) pointerFlash();
    requestRepaint();
}

void TKxVCInd::SetCourse(float v) {
    if (!std::isfinite(v)) return;
    const double from = courseSettings_->ValueFrom();
    const double turn = std::fabs(double(courseSettings_->ValueTo()) - from);
    if (std::isfinite(turn) && turn > 0.0) {
        double c = std::fmod(double(v) - from, turn);
        if (c < 0.0) c += turn;
        float w = float(from + c);
        // Rounding to single may land on the turn's end, which is its start.
        if (double(w) >= from + turn) w = float(from);
        v = w;
    }
    if (v == course_) return;
    course_ = v;
    if (canDraw()) drawCourse();
    emit OnCourseChange(this);
    KxAccessibleTextChanged(this, KxVCIndValueText(*this));
}

void TKxVCInd::SetAttitude(float pitch, float roll) {
    bool changed = false;
    if (!std::isnan(pitch)) {
        pitch = std::clamp(pitch, -kMaxPitch, kMaxPitch);
        changed = pitch != pitch_;
        pitch_ = pitch;
    }
    if (std::isfinite(roll)) {
        float r = std::fmod(roll, 360.0f);
        if (r > 180.0f) r -= 360.0f;
        if (r <= -180.0f) r += 360.0f;
        changed = changed || r != roll_;
        roll_ = r;
    }
    if (changed) attitudeChanged();
}

void TKxVCInd::SetPitch(float v) {
    SetAttitude(v, roll_);
}

void TKxVCInd::SetRoll(float v) {
    SetAttitude(pitch_, v);
}

void TKxVCInd::attitudeChanged() {
    if (canDraw()) drawFace();
    emit OnAttitudeChange(this);
    KxAccessibleTextChanged(this, KxVCIndValueText(*this));
}

QString TKxVCInd::CourseText() const {
    return FormatFloat(courseSettings_->ValueFormat(), double(course_)) +
           courseSettings_->ValueUnit();
}

int32_t TKxVCInd::HorizonOffset() const {
    const double from = pitchSettings_->ValueFrom(), to = pitchSettings_->ValueTo();
    const double span = to - from;
    if (!(std::fabs(span) > 0.0) || !std::isfinite(span)) return 0;
    const double d = 2.0 * Div(window_.Width(), 2);
    return Round((double(pitch_) - (from + to) / 2.0) * d / span);
}

// --- layout and static parts ---------------------------------------------------------------

bool TKxVCInd::canDraw() const {
    return !tooSmall_ && background_.Width() >= 2 && (Visible() || Designing()) &&
           UpdateCount() == 0;
}

void TKxVCInd::layout(TRect r) {
    area_ = r;
    courseBox_ = devStrip_ = face_ = window_ = TRect{};
    tooSmall_ = r.Width() < 2 || r.Height() < 2;
    if (tooSmall_) return;
    TCanvas& c = Canvas();
    const int32_t cx = WrapAdd(r.Left, Div(r.Width(), 2));
    // The box, the face and the strip are stacked and centred as one block.
    int32_t boxW = 0, boxH = 0, stripH = 0;
    if (HasOption(opCourse)) {
        c.SetFont(*fontValue_);
        const QString sample = courseSettings_->SampleValueText() + courseSettings_->ValueUnit();
        boxW = Saturate(int64_t(c.TextWidth(sample)) + 6);
        boxH = Saturate(int64_t(c.TextHeight(sample)) + 2);
        if (int64_t(r.Height()) < 3 * int64_t(boxH) || r.Width() < boxW) boxW = boxH = 0;
    }
    tick_ = std::clamp(Div(std::min(r.Width(), r.Height()), 20), 3, 10);
    if (HasOption(opDeviation) && r.Height() >= 6 * tick_) stripH = 2 * tick_ + 3;
    const int64_t fixed = (boxH > 0 ? int64_t(boxH) + 2 : 0) + (stripH > 0 ? stripH + 2 : 0);
    const int32_t d =
        Saturate(std::max<int64_t>(0, std::min<int64_t>(r.Width(), r.Height() - fixed)));
    int32_t top = WrapAdd(r.Top, Saturate((r.Height() - fixed - d) / 2));
    if (boxH > 0) {
        const int32_t l = WrapSub(cx, Div(boxW, 2));
        courseBox_ = TRect{l, top, WrapAdd(l, boxW), WrapAdd(top, boxH)};
        top = WrapAdd(courseBox_.Bottom, 2);
    }
    const int32_t fl = WrapSub(cx, Div(d, 2));
    face_ = TRect{fl, top, WrapAdd(fl, d), WrapAdd(top, d)};
    if (stripH > 0) {
        const int32_t st = WrapAdd(face_.Bottom, 2);
        devStrip_ = TRect{r.Left, st, r.Right, WrapAdd(st, stripH)};
    }
    ring_ = std::max(1, Div(d, 10));
    window_ = face_;
    KxBorder(window_, ring_);
    if (Div(window_.Width(), 2) < 4) {
        tooSmall_ = true;
        return;
    }
    trackL_ = window_.Left;
    trackR_ = WrapSub(window_.Right, 1);
    trackY_ = WrapAdd(devStrip_.Top, tick_ + 1);
}

void TKxVCInd::paintStatic(TCanvas& c) {
    if (!KxIsEmptyRect(courseBox_)) {
        solidPen(c, clBlack);
        c.Brush().SetStyle(bsSolid);
        c.Brush().SetColor(clWhite);
        c.Rectangle(courseBox_);
    }
    if (!KxIsEmptyRect(devStrip_)) {
        if (HasOption(opSector))
            KxDrawSectorBands(
                c, TRect{trackL_, WrapAdd(trackY_, 1), WrapAdd(trackR_, 1), WrapAdd(trackY_, 4)},
                *SectorSettings(), false);
        solidPen(c, clBlack);
        line(c, TPoint{trackL_, trackY_}, TPoint{WrapAdd(trackR_, 1), trackY_});
        c.Brush().SetStyle(bsSolid);
        c.Brush().SetColor(clBlack);
        const float f = float(int64_t(trackR_) - trackL_) / 1000.0f;
        for (int32_t ppt = 0; ppt <= 1000; ppt += 250) {
            const int32_t x = WrapAdd(trackL_, Round(double(f) * ppt));
            c.FillRect(TRect{x - 1, trackY_ - 1, x + 2, trackY_ + 2});
        }
    }
    // The bezel ring with the roll scale; the window inside it is composed per reading.
    solidPen(c, colorBezel_);
    c.Brush().SetStyle(bsSolid);
    c.Brush().SetColor(colorBezel_);
    c.Ellipse(face_);
    if (!HasOption(opRollScale)) return;
    const double ro = face_.Width() / 2.0;
    const double cx = face_.Left + (face_.Width() - 1) / 2.0;
    const double cy = face_.Top + (face_.Height() - 1) / 2.0;
    const float lo = std::min(rollSettings_->ValueFrom(), rollSettings_->ValueTo());
    const float hi = std::max(rollSettings_->ValueFrom(), rollSettings_->ValueTo());
    static constexpr int32_t kTicks[] = {0, 10, 20, 30, 45, 60, 90};
    for (int32_t side = -1; side <= 1; side += 2)
        for (int32_t t : kTicks) {
            const int32_t a = side * t;
            if (t == 0 && side > 0) continue;
            if (t != 0 && (float(a) < lo || float(a) > hi)) continue;
            const double len = isMajorRollTick(t) ? ring_ - 1 : ring_ / 2.0;
            // The mark for roll a sits where the card's pointer stands at that roll.
            const double th = -a * kPi / 180.0;
            const double s = std::sin(th), co = std::cos(th);
            solidPen(c, clWhite, isMajorRollTick(t) && ring_ >= 8 ? 2 : 1);
            line(c, TPoint{Round(cx + (ro - 1) * s), Round(cy - (ro - 1) * co)},
                 TPoint{Round(cx + (ro - 1 - len) * s), Round(cy - (ro - 1 - len) * co)});
        }
}

void TKxVCInd::makeOverlay() {
    const int32_t d = face_.Width();
    MakeCompatibleBitmap(overlay_, d, d, TPoint{face_.Left, face_.Top});
    overlay_.ClearTransparent();
    TCanvas& o = overlay_.Canvas();
    const TRect square{0, 0, d, d};
    const TRect hole = KxOffsetRect(window_, -face_.Left, -face_.Top);
    // Everything but the window, copied from the static painting: ring, ticks, corners.
    o.SetClipRegion(TCanvas::RectRegion(square).subtracted(TCanvas::EllipticRegion(hole)));
    o.SetCopyMode(cmSrcCopy);
    o.CopyRect(square, Canvas(), face_);
    o.ClearClipRegion();
    // The fixed vehicle symbol: two wings with their inner legs and a centre square.
    const int32_t rw = Div(hole.Width(), 2);
    const int32_t cx = WrapAdd(hole.Left, rw), cy = WrapAdd(hole.Top, rw);
    const int32_t t = std::max(2, Div(rw, 20));
    const int32_t outer = Round(rw * 0.6), inner = Round(rw * 0.22);
    solidPen(o, clBlack);
    o.Brush().SetStyle(bsSolid);
    o.Brush().SetColor(colorSymbol_);
    for (int32_t side = -1; side <= 1; side += 2) {
        const int32_t a = cx + side * outer, b = cx + side * inner;
        o.Rectangle(std::min(a, b), cy - t / 2, std::max(a, b) + 1, cy - t / 2 + t + 1);
        const int32_t lx = side < 0 ? b - t : b;
        o.Rectangle(lx, cy - t / 2, lx + t + 1, cy + 2 * t + 1);
    }
    o.Rectangle(cx - t, cy - t, cx + t + 1, cy + t + 1);
    overlay_.SetTransparent(true);
}

void TKxVCInd::Paint() {
    if (UpdateCount() > 0) return;
    TCanvas& c = Canvas();
    TRect r = ClientRect();
    int32_t t = 0;
    if (HasOption(opBevelOuter)) {
        bevelOuter_->PaintFilledBevel(c, r);
        t = Div(bevelOuter_->Spacing(), 2);
    }
    names_ = MeasureNames(c);
    PaintNames(c, r, t, HasOption(opName1), HasOption(opName2), names_);
    if (HasOption(opBevelInner)) bevelInner_->PaintFilledBevel(c, r);
    layout(r);
    background_.SetSize(0, 0);
    if (tooSmall_) return;
    paintStatic(c);
    GetBkUpImage(c, background_, area_);
    makeOverlay();
    StartComposition(work_, background_);
    pointerFlash();  // an indicator that was too small may have missed its overflow
    if (!canDraw()) return;
    drawFace();
    drawCourse();
    // As every meter's paint: the reading is evaluated anew (limits, extremes) and drawn.
    ValueChange();
}

// --- readings ------------------------------------------------------------------------------

void TKxVCInd::putOnSurface(const TRect& r) {
    TRect part;
    if (!KxRectIntersection(r, TRect{0, 0, work_.Width(), work_.Height()}, part)) return;
    TCanvas& c = Canvas();
    c.SetCopyMode(cmSrcCopy);
    c.CopyRect(KxOffsetRect(part, area_.Left, area_.Top), work_.Canvas(), part);
}

void TKxVCInd::composeFace(TCanvas& w) {
    const TRect face = KxOffsetRect(face_, -area_.Left, -area_.Top);
    const TRect win = KxOffsetRect(window_, -area_.Left, -area_.Top);
    const double rw = Div(win.Width(), 2);
    const double phi = -double(roll_) * kPi / 180.0;
    const TCard card{win.Left + (win.Width() - 1) / 2.0, win.Top + (win.Height() - 1) / 2.0,
                     std::sin(phi), std::cos(phi)};
    const double from = pitchSettings_->ValueFrom(), to = pitchSettings_->ValueTo();
    const double span = to - from;
    const bool scaled = std::isfinite(span) && std::fabs(span) > 0.0;
    const double ppd = scaled ? 2.0 * rw / span : 0.0;
    double h = scaled ? (double(pitch_) - (from + to) / 2.0) * ppd : 0.0;
    if (std::isnan(h)) h = 0.0;  // an infinite scale at the range's middle
    // Beyond the window one colour fills it; the clamp keeps the polygon small.
    const double hc = std::clamp(h, -2.0 * rw - 2.0, 2.0 * rw + 2.0);
    const double l = 2.0 * rw + 4.0;

    w.Pen().SetStyle(psClear);
    w.Brush().SetStyle(bsSolid);
    w.Brush().SetColor(colorSky_);
    w.FillRect(face);
    w.Brush().SetColor(colorGround_);
    const std::array<TPoint, 4> ground{card.at(-l, hc), card.at(l, hc), card.at(l, hc + 2.0 * l),
                                       card.at(-l, hc + 2.0 * l)};
    w.Polygon(ground);
    const double hr = std::clamp(h, -1e6, 1e6);
    horizon_ = {TPoint{WrapAdd(card.at(-2.0 * rw, hr).X, area_.Left),
                       WrapAdd(card.at(-2.0 * rw, hr).Y, area_.Top)},
                TPoint{WrapAdd(card.at(2.0 * rw, hr).X, area_.Left),
                       WrapAdd(card.at(2.0 * rw, hr).Y, area_.Top)}};
    solidPen(w, clWhite);
    if (std::fabs(h) < rw) line(w, card.at(-rw, h), card.at(rw, h));

    if (HasOption(opPitchLadder) && scaled) {
        w.SetFont(*Font());
        w.Font().SetColor(clWhite);
        // Labels only where they have room: a wide enough window, lines far enough apart.
        const bool labels =
            rw >= 24 && std::fabs(10.0 * ppd) >= w.TextHeight(QStringLiteral("0")) + 2;
        const double reach = rw * 0.7;  // the ladder keeps clear of the roll pointer
        w.Brush().SetStyle(bsClear);
        for (int32_t deg = -90; deg <= 90; deg += 5) {
            if (deg == 0) continue;
            const double v = h - deg * ppd;
            if (!(std::fabs(v) < reach)) continue;
            const bool major = deg % 10 == 0;
            const double half = rw * (major ? 0.25 : 0.125);
            line(w, card.at(-half, v), card.at(half, v));
            if (!major || !labels) continue;
            const QString text = QString::number(std::abs(deg));
            const double gap = half + 3.0 + w.TextWidth(text) / 2.0;
            for (double side : {-gap, gap}) {
                const TPoint p = card.at(side, v);
                KxTextOut(w, p.X, p.Y, text, toMidCenter);
            }
        }
    }

    w.Draw(face.Left, face.Top, overlay_);

    // The card's pointer to the roll scale, apex at the window's rim.
    const double k = std::max(3.0, std::floor(face.Width() / 24.0));
    const std::array<TPoint, 3> ptr{card.at(0.0, -(rw - 1.0)), card.at(-k, -(rw - 1.0) + 1.6 * k),
                                    card.at(k, -(rw - 1.0) + 1.6 * k)};
    solidPen(w, clBlack);
    w.Brush().SetStyle(bsSolid);
    w.Brush().SetColor(colorSymbol_);
    w.Polygon(ptr);
    for (size_t i = 0; i < 3; ++i)
        rollPointer_[i] = TPoint{WrapAdd(ptr[i].X, area_.Left), WrapAdd(ptr[i].Y, area_.Top)};
}

void TKxVCInd::drawFace() {
    if (KxIsEmptyRect(face_) || work_.Width() != area_.Width()) return;
    composeFace(work_.Canvas());
    putOnSurface(KxOffsetRect(face_, -area_.Left, -area_.Top));
}

void TKxVCInd::drawCourse() {
    if (KxIsEmptyRect(courseBox_) || work_.Width() != area_.Width()) return;
    TRect box = KxOffsetRect(courseBox_, -area_.Left, -area_.Top);
    KxBorder(box, 1);
    KxDrawNumberBox(work_.Canvas(), numberCache_, box, clWhite, *fontValue_, CourseText(), 2);
    putOnSurface(box);
}

void TKxVCInd::composeDeviation(TCanvas& w) {
    const int32_t dx = -area_.Left, dy = -area_.Top;
    const int32_t y = WrapAdd(trackY_, dy), x0 = WrapAdd(trackL_, dx);
    const int32_t t = tick_, k = std::max(2, Div(2 * t, 3));
    const float f = float(int64_t(trackR_) - trackL_) / 1000.0f;
    auto at = [&](int32_t ppt) { return WrapAdd(x0, Round(double(f) * ppt)); };
    solidPen(w, clBlack);
    w.Brush().SetStyle(bsSolid);
    const TMinMax& mm = *MinMax();
    auto marker = [&](int32_t ppt, int32_t side, TColor own) {
        const int32_t pos = std::clamp(ppt, 0, 1000), x = at(pos);
        w.Brush().SetColor(MarkerColor(pos, own));
        const std::array<TPoint, 3> m{TPoint{x, y - 1}, TPoint{x + side * k, y - 1},
                                      TPoint{x, y - 1 - t}};
        w.Polygon(m);
    };
    if (mm.MinVisible()) marker(MinPPT(), -1, mm.MinColor());
    if (mm.MaxVisible()) marker(MaxPPT(), 1, mm.MaxColor());
    const int32_t xp = at(PointerPosition());
    needle_ = {TPoint{xp, y + 1}, TPoint{xp - k, y + 1 + t}, TPoint{xp + k, y + 1 + t}};
    w.Brush().SetColor(blinking_ && HasOption(opOverflow) ? blinkColor_ : pointerColor_);
    w.Polygon(needle_);
    for (TPoint& p : needle_)
        p = TPoint{WrapSub(p.X, dx), WrapSub(p.Y, dy)};
}

void TKxVCInd::drawDeviation() {
    if (KxIsEmptyRect(devStrip_) || work_.Width() != area_.Width()) return;
    const TRect strip = KxOffsetRect(devStrip_, -area_.Left, -area_.Top);
    TCanvas& w = work_.Canvas();
    w.SetCopyMode(cmSrcCopy);
    w.CopyRect(strip, background_.Canvas(), strip);
    composeDeviation(w);
    putOnSurface(strip);
}

void TKxVCInd::ValueChange() {
    ++drawing_;
    // An event handler may delete the indicator; then there is nothing left to draw.
    QPointer<TKxVCInd> alive(this);
    TKxAnalogGControl::ValueChange();
    if (!alive) return;
    if (canDraw()) drawDeviation();
    --drawing_;
}

void TKxVCInd::OverflowChange(int32_t) {
    pointerFlash();
}

void TKxVCInd::LimitChange() {
    pointerFlash();
}

void TKxVCInd::pointerFlash() {
    if (tooSmall_) return;
    if (PointerAlarm(PointerPosition(), HasOption(opOverflow), HasOption(opLimit))) {
        AddControl(this, kNeedleBlinkCode);
        blinking_ = true;
        return;
    }
    const bool was = blinking_;
    blinking_ = false;
    DelControl(this);
    // The needle takes its own colour at once.
    if (was && drawing_ == 0 && canDraw()) drawDeviation();
}

void TKxVCInd::WMFlash(TMessage& message) {
    if (!HasOption(opOverflow) || drawing_ > 0 || !canDraw()) return;
    blinkColor_ = message.LParam != 0 ? BlinkColor2() : BlinkColor1();
    drawDeviation();
}

}  // namespace kx
