#include "kx/recorders/oppoint.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "kx/blink/flashtimer.h"
#include "kx/drawing/geometry.h"
#include "kx/drawing/text.h"
#include "kx/host/numeric.h"
#include "kx/recorders/trendaccessible.h"

namespace kx {
namespace {

int16_t saturate16(int64_t v) {
    return static_cast<int16_t>(std::clamp<int64_t>(v, std::numeric_limits<int16_t>::min(),
                                                    std::numeric_limits<int16_t>::max()));
}

TRect intersect(const TRect& a, const TRect& b) {
    return TRect{std::max(a.Left, b.Left), std::max(a.Top, b.Top), std::min(a.Right, b.Right),
                 std::min(a.Bottom, b.Bottom)};
}

bool isEmpty(const TRect& r) {
    return r.Right <= r.Left || r.Bottom <= r.Top;
}

// Per-mille position of v on an axis, not clamped. A zero span has no scale to divide
// by and leaves the point at the axis start.
int32_t axisPerMille(float v, const TSignalSettings& axis) {
    const double span = axis.Range();
    if (span == 0.0) return 0;
    return Round(1000.0 / span * (double(v) - double(axis.ValueFrom())));
}

int16_t valueToDigit(float v, const TSignalSettings& axis) {
    return TKxOperatingPoint::SaturateDigit(
        Round64((double(v) - double(axis.ValueFrom())) * double(axis.DigitPerValue())));
}

float digitToValue(int16_t d, const TSignalSettings& axis) {
    return ToSingle(double(axis.ValueFrom()) + double(d) * double(axis.ValuePerDigit()));
}

}  // namespace

const QString TKxOperatingPoint::kNoBitmapText = QStringLiteral("No CharacteristicBMP");

// ---- TIndRect -------------------------------------------------------------------------------

void TIndRect::SetLeft(int32_t v) {
    SetxyRect(TRect{v, top_, right_, bottom_});
}
void TIndRect::SetTop(int32_t v) {
    SetxyRect(TRect{left_, v, right_, bottom_});
}
void TIndRect::SetRight(int32_t v) {
    SetxyRect(TRect{left_, top_, v, bottom_});
}
void TIndRect::SetBottom(int32_t v) {
    SetxyRect(TRect{left_, top_, right_, v});
}

void TIndRect::SetxyRect(const TRect& r) {
    const TRect s{saturate16(r.Left), saturate16(r.Top), saturate16(r.Right), saturate16(r.Bottom)};
    if (s == GetxyRect()) return;
    left_ = int16_t(s.Left);
    top_ = int16_t(s.Top);
    right_ = int16_t(s.Right);
    bottom_ = int16_t(s.Bottom);
    Change();
}

void TIndRect::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TIndRect*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->left_ = left_;
    d->top_ = top_;
    d->right_ = right_;
    d->bottom_ = bottom_;
    d->Change();
}

// ---- Construction -----------------------------------------------------------------------------

TKxOperatingPoint::TKxOperatingPoint(QWidget* parent)
    : TKxGraphicControl(parent),
      axisX_(new TSignalSettings(this)),
      axisY_(new TSignalSettings(this)),
      indRect_(new kx::TIndRect(this)) {
    SetBounds(0, 0, 200, 150);
    // What a picture of the default size would give.
    indRect_->SetxyRect(
        TRect{kPictureInset, kPictureInset, 200 - kPictureInset, 150 - kPictureInset});
    SetTailArraySize(tailArraySize_);
    const TNotifyEvent changed = [this](QObject* s) { ParamChange(s); };
    axisX_->SetOnChange(changed);
    axisY_->SetOnChange(changed);
    indRect_->SetOnChange(changed);
    KxInstallRecorderAccessibility();
}

TKxOperatingPoint::~TKxOperatingPoint() {
    DelControl(this);
}

void TKxOperatingPoint::Loaded() {
    TKxGraphicControl::Loaded();
    if (!Designing()) subscribe();
}

void TKxOperatingPoint::subscribe() {
    AddControl(this, interval_);
    subscribed_ = true;
}

// ---- Properties -------------------------------------------------------------------------------

void TKxOperatingPoint::repaintWhileDesigning() {
    if (Designing()) Invalidate();
}

void TKxOperatingPoint::SetColor(TColorArg c) {
    if (TColor(c) == color_) return;
    color_ = c;
    repaintWhileDesigning();
}

void TKxOperatingPoint::SetTailColor(TColorArg c) {
    if (TColor(c) == tailColor_) return;
    tailColor_ = c;
    repaintWhileDesigning();
}

void TKxOperatingPoint::SetTail(bool b) {
    if (b == tail_) return;
    tail_ = b;
    repaintWhileDesigning();
}

void TKxOperatingPoint::SetCharacteristicBMP(const QImage& image) {
    pictureFile_.clear();
    QImage pixels;
    if (!image.isNull()) pixels = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (pixels.isNull()) {
        picture_.SetSize(0, 0);
    } else {
        pixels.setDevicePixelRatio(1.0);
        picture_.SetDeviceGrid(1.0);
        picture_.SetSize(pixels.width(), pixels.height());
        picture_.MutableImage() = std::move(pixels);
        scaledStale_ = true;
        const int32_t w = picture_.Width(), h = picture_.Height();
        SetBounds(x(), y(), w, h);
        indRect_->SetxyRect(
            TRect{kPictureInset, kPictureInset, w - kPictureInset, h - kPictureInset});
    }
    Invalidate();
}

void TKxOperatingPoint::SetCharacteristicFile(const QString& fileName) {
    LoadCharacteristicBMP(fileName);
    pictureFile_ = fileName;
}

bool TKxOperatingPoint::LoadCharacteristicBMP(const QString& fileName) {
    QImage image;
    const bool ok = !fileName.isEmpty() && image.load(fileName);
    SetCharacteristicBMP(ok ? image : QImage());
    return !picture_.Empty();
}

void TKxOperatingPoint::SetSignalSettingsX(const TSignalSettings* v) {
    if (v && v != axisX_) axisX_->Assign(v);
}

void TKxOperatingPoint::SetSignalSettingsY(const TSignalSettings* v) {
    if (v && v != axisY_) axisY_->Assign(v);
}

void TKxOperatingPoint::SetIndRect(const kx::TIndRect* v) {
    if (v && v != indRect_) indRect_->Assign(v);
}

int16_t TKxOperatingPoint::SaturateDigit(int64_t d) {
    return saturate16(d);
}

void TKxOperatingPoint::SetValueX(float v) {
    if (std::isnan(v) || v == valueX_) return;
    valueX_ = v;
    digitX_ = valueToDigit(v, *axisX_);
    repaintWhileDesigning();
}

void TKxOperatingPoint::SetValueY(float v) {
    if (std::isnan(v) || v == valueY_) return;
    valueY_ = v;
    digitY_ = valueToDigit(v, *axisY_);
    repaintWhileDesigning();
}

void TKxOperatingPoint::SetDigitX(int16_t d) {
    if (d == digitX_) return;
    digitX_ = d;
    valueX_ = digitToValue(d, *axisX_);
    repaintWhileDesigning();
}

void TKxOperatingPoint::SetDigitY(int16_t d) {
    if (d == digitY_) return;
    digitY_ = d;
    valueY_ = digitToValue(d, *axisY_);
    repaintWhileDesigning();
}

void TKxOperatingPoint::deriveDigits() {
    digitX_ = valueToDigit(valueX_, *axisX_);
    digitY_ = valueToDigit(valueY_, *axisY_);
}

void TKxOperatingPoint::SetTailArraySize(int32_t n) {
    tailArraySize_ = int16_t(std::clamp(n, kMinTailArraySize, kMaxTailArraySize));
    // A new, empty buffer every time: a shorter one must not show a tail cut off from
    // positions of the old one.
    std::vector<TPoint>(size_t(tailArraySize_) + 2, TPoint{}).swap(tailPoints_);
    tailCount_ = 0;
}

void TKxOperatingPoint::SetInterval(int32_t ms) {
    if (ms < kMinInterval || ms > std::numeric_limits<int16_t>::max() || ms == interval_) return;
    interval_ = int16_t(ms);
    if (subscribed_) subscribe();
}

void TKxOperatingPoint::ParamChange(QObject* sender) {
    if (sender == indRect_) {
        Invalidate();
        return;
    }
    deriveDigits();
    repaintWhileDesigning();
}

void TKxOperatingPoint::Invalidate() {
    laidOut_ = false;
    TKxGraphicControl::Invalidate();
}

// ---- Geometry ---------------------------------------------------------------------------------

TPoint TKxOperatingPoint::TailPoint(int32_t i) const {
    if (i < 0 || size_t(i) >= tailPoints_.size()) return TPoint{};
    return tailPoints_[size_t(i)];
}

TRect TKxOperatingPoint::IndicatorArea() const {
    const TRect r = indRect_->GetxyRect();
    return TRect{r.Left - kMargin, r.Top - kMargin, r.Right + kMargin, r.Bottom + kMargin};
}

TPoint TKxOperatingPoint::UnclampedPerMille() const {
    return TPoint{axisPerMille(valueX_, *axisX_), axisPerMille(valueY_, *axisY_)};
}

TPoint TKxOperatingPoint::PerMille() const {
    int32_t x = axisPerMille(valueX_, *axisX_);
    int32_t y = axisPerMille(valueY_, *axisY_);
    if (x > 1000)
        x = 1000;
    else if (x < 0)
        x = 0;
    // Below the Y range the point goes to the left edge and keeps its depth.
    if (y > 1000)
        y = 1000;
    else if (y < 0)
        x = 0;
    return TPoint{x, y};
}

TPoint TKxOperatingPoint::PointPosition(TPoint perMille, int32_t width, int32_t height) {
    const int64_t px =
        Round64((double(width) - 11.0) / 1000.0 * double(perMille.X)) + int64_t(kMargin);
    const int64_t py = Round64((double(height) - 11.0) / 1000.0 * (1000.0 - double(perMille.Y))) +
                       int64_t(kMargin);
    return KxSaturatedPoint(px, py);
}

// ---- Painting ---------------------------------------------------------------------------------

void TKxOperatingPoint::Paint() {
    if (drawing_) return;
    TCanvas& c = Canvas();
    if (picture_.Empty()) {
        c.Pen().SetColor(clBlack);
        c.Pen().SetStyle(psSolid);           // the design-time outline leaves it dotted
        c.Brush().SetColor(clBtnHighlight);  // a colour makes the brush solid
        c.Rectangle(ClientRect());
        // A control narrower than the text cuts it inside the frame.
        c.SetClipRegion(TCanvas::RectRegion(TRect{1, 1, width() - 1, height() - 1}));
        KxTextOut(c, width() / 2, height() / 2, kNoBitmapText, toMidCenter);
        c.ClearClipRegion();
        laidOut_ = true;
        return;
    }
    if (width() != picture_.Width() || height() != picture_.Height())
        SetBounds(x(), y(), picture_.Width(), picture_.Height());
    Canvas().SetCopyMode(cmSrcCopy);
    Canvas().Draw(0, 0, staticPart());
    laidOut_ = true;
    drawPoints(true);
}

TBitmap& TKxOperatingPoint::staticPart() {
    if (picture_.DeviceRatio() == SurfaceRatio()) return picture_;
    if (scaledStale_ || scaledPicture_.DeviceRatio() != SurfaceRatio()) {
        MakeCompatibleBitmap(scaledPicture_, picture_.Width(), picture_.Height());
        scaledPicture_.Canvas().Draw(0, 0, picture_);
        scaledStale_ = false;
    }
    return scaledPicture_;
}

void TKxOperatingPoint::DrawPoints() {
    drawPoints(false);
}

void TKxOperatingPoint::drawPoints(bool fromPaint) {
    if (drawing_ || picture_.Empty()) return;
    drawing_ = true;
    const TRect area = IndicatorArea();
    // Only the part of the area on the picture and the control is read or written.
    const TRect shown =
        intersect(intersect(area, TRect{0, 0, picture_.Width(), picture_.Height()}), ClientRect());
    TCanvas* canvas = nullptr;
    if (!isEmpty(shown)) {
        MakeCompatibleBitmap(work_, shown.Width(), shown.Height(), TPoint{shown.Left, shown.Top});
        canvas = &work_.Canvas();
        canvas->SetCopyMode(cmSrcCopy);
        canvas->CopyRect(TRect{0, 0, shown.Width(), shown.Height()}, staticPart().Canvas(), shown);
    } else {
        work_.SetSize(0, 0);
    }
    const TPoint p = PointPosition(PerMille(), area.Width(), area.Height());
    drawPoint(canvas, TPoint{shown.Left - area.Left, shown.Top - area.Top}, p.X, p.Y, tail_);
    movePoints();
    if (canvas && laidOut_ && (Visible() || Designing())) putOnSurface(shown, fromPaint);
    drawing_ = false;
}

void TKxOperatingPoint::drawPoint(TCanvas* c, TPoint origin, int32_t x, int32_t y, bool tail) {
    tailPoints_[0] = TPoint{x, y};
    if (!c) return;
    auto local = [&](TPoint p) {
        return KxSaturatedPoint(int64_t(p.X) - origin.X, int64_t(p.Y) - origin.Y);
    };
    c->Pen().SetMode(pmCopy);
    c->Pen().SetStyle(psSolid);
    if (tail && tailCount_ >= 2) {
        polyline_.clear();
        for (int32_t i = 0; i < tailCount_; ++i)
            polyline_.push_back(local(tailPoints_[size_t(i)]));
        c->Pen().SetWidth(1);
        c->Pen().SetColor(tailColor_);
        c->Polyline(polyline_);
    }
    const TPoint m = local(TPoint{x, y});
    // Far off the bitmap the marker has nothing to draw; skipping it keeps the wide pen
    // away from coordinates near the int32 limits.
    const int64_t reach = 8;
    if (int64_t(m.X) + reach < 0 || int64_t(m.X) - reach >= work_.Width() ||
        int64_t(m.Y) + reach < 0 || int64_t(m.Y) - reach >= work_.Height())
        return;
    c->Pen().SetWidth(3);
    c->Pen().SetColor(color_);
    constexpr int32_t kNear = 3, kFar = 4;
    c->MoveTo(m.X - kFar, m.Y);
    c->LineTo(m.X - kNear, m.Y);
    c->MoveTo(m.X + kNear, m.Y);
    c->LineTo(m.X + kFar, m.Y);
    c->MoveTo(m.X, m.Y - kFar);
    c->LineTo(m.X, m.Y - kNear);
    c->MoveTo(m.X, m.Y + kNear);
    c->LineTo(m.X, m.Y + kFar);
}

void TKxOperatingPoint::movePoints() {
    // The buffer has two entries more than the tail may count, so index count + 1 exists.
    for (int32_t i = tailCount_ + 1; i >= 1; --i)
        tailPoints_[size_t(i)] = tailPoints_[size_t(i) - 1];
    tailCount_ = std::min<int32_t>(tailCount_ + 1, tailArraySize_);
}

void TKxOperatingPoint::putOnSurface(const TRect& shown, bool fromPaint) {
    // The surface's own canvas schedules an update of the whole control when it draws;
    // a pulse changed only the indicator area, so it draws through a canvas of its own
    // on the surface and updates just that rectangle. Paint (which updates everything
    // anyway) and a canvas handed in from outside are drawn through as usual.
    TCanvas& own = const_cast<TBitmap&>(Surface()).Canvas();
    const bool direct = !fromPaint && &Canvas() == &own;
    std::optional<TCanvas> pulse;
    if (direct) {
        own.Release();
        pulse.emplace(&SurfaceImage());
        pulse->SetDeviceGrid(SurfaceRatio(), TPoint{},
                             TPoint{Surface().Width(), Surface().Height()});
    }
    TCanvas& c = direct ? *pulse : Canvas();
    c.Draw(shown.Left, shown.Top, work_);
    if (Designing()) {
        const TRect r = indRect_->GetxyRect();
        c.Pen().SetColor(tailColor_);
        c.Pen().SetWidth(1);
        c.Pen().SetStyle(psDot);
        c.Pen().SetMode(pmCopy);
        // Edge by edge: the canvas's Rectangle draws its outline solid whatever the style.
        c.MoveTo(r.Left, r.Top);
        c.LineTo(r.Right - 1, r.Top);
        c.LineTo(r.Right - 1, r.Bottom - 1);
        c.LineTo(r.Left, r.Bottom - 1);
        c.LineTo(r.Left, r.Top);
    }
    if (direct) {
        pulse->Release();
        update(QRect(shown.Left, shown.Top, shown.Width(), shown.Height()));
    }
}

void TKxOperatingPoint::WMFlash(TMessage&) {
    if (Designing()) return;
    drawPoints(false);
}

}  // namespace kx
