#include "kx/framework/control.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>

#include "kx/framework/accessible.h"

namespace kx {

TKxControl::TKxControl(QWidget* parent) : QWidget(parent) {
    KxInstallAccessibility();
    // The surface is the only thing shown; nothing of the widget's own background.
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAutoFillBackground(false);
    surface_.Canvas().SetOnDraw([this](const QRect* device) { surfaceTouched(device); });
}

TKxControl::~TKxControl() {
    surface_.Canvas().SetOnDraw(nullptr);
    releaseCanvas();
}

void TKxControl::SetCanvas(TCanvas* canvas) {
    releaseCanvas();
    canvasOverride_ = canvas;
}

void TKxControl::releaseCanvas() {
    if (canvasOverride_) canvasOverride_->Release();
}

QString TKxControl::ToolTipText(const QString& hint) {
    if (!hint.contains(QLatin1Char('\r'))) return hint;
    QString tip;
    tip.reserve(hint.size());
    for (qsizetype i = 0; i < hint.size(); ++i) {
        if (hint[i] != QLatin1Char('\r')) {
            tip += hint[i];
            continue;
        }
        tip += QLatin1Char('\n');
        if (i + 1 < hint.size() && hint[i + 1] == QLatin1Char('\n')) ++i;
    }
    return tip;
}

void TKxControl::SetHint(const QString& text) {
    SetHintTexts(text, ToolTipText(text));
}

void TKxControl::SetHintTexts(const QString& hint, const QString& toolTip) {
    hint_ = hint;
    setOwnToolTip(toolTip);
}

void TKxControl::setOwnToolTip(const QString& tip) {
    const bool wasSetting = settingToolTip_;
    settingToolTip_ = true;
    setToolTip(tip);
    settingToolTip_ = wasSetting;
}

void TKxControl::EndUpdate() {
    if (updateCount_ > 0) --updateCount_;
    if (updateCount_ == 0) Change();
}

void TKxControl::Change() {
    if (updateCount_ == 0) ParamChange(this);
}

void TKxControl::Loaded() {
    loaded_ = true;
}

void TKxControl::Invalidate() {
    redrawNeeded_ = true;
    paintPending_ = true;
    update();
}

void TKxControl::ParamChange(QObject*) {}

void TKxControl::Paint() {}

void TKxControl::WMFlash(TMessage&) {}

bool TKxControl::Visible() const {
    return !(testAttribute(Qt::WA_WState_ExplicitShowHide) && testAttribute(Qt::WA_WState_Hidden));
}

void TKxControl::SetBounds(int32_t left, int32_t top, int32_t width, int32_t height) {
    const QSize before = size();
    setGeometry(left, top, std::max(width, 0), std::max(height, 0));
    if (size() != before) updateGeometry();
    // A widget that is not shown gets no resize event; keep the surface in step anyway.
    ensureSurfaceSize();
}

void TKxControl::SetAutoSize(int64_t width, int64_t height) {
    const auto limit = [](int64_t v) { return int32_t(std::clamp<int64_t>(v, 0, kKxMaxAutoSize)); };
    const int32_t w = limit(width), h = limit(height);
    if (this->width() != w || this->height() != h) SetBounds(x(), y(), w, h);
}

void TKxControl::GrowToAtLeast(int64_t width, int64_t height) {
    const int64_t w = std::max<int64_t>(this->width(), std::min(width, kKxMaxAutoSize));
    const int64_t h = std::max<int64_t>(this->height(), std::min(height, kKxMaxAutoSize));
    if (w != this->width() || h != this->height()) SetBounds(x(), y(), int32_t(w), int32_t(h));
}

void TKxControl::MakeCompatibleBitmap(TBitmap& bitmap, int32_t width, int32_t height,
                                      TPoint origin) const {
    bitmap.SetDeviceGrid(canvasOverride_ ? canvasOverride_->DeviceRatio() : surface_.DeviceRatio(),
                         origin);
    bitmap.SetSize(width, height);
}

TCanvas& TKxControl::StartComposition(TBitmap& work, TBitmap& background) const {
    const TRect whole{0, 0, background.Width(), background.Height()};
    if (work.Width() != whole.Right || work.Height() != whole.Bottom ||
        work.DeviceRatio() != background.DeviceRatio())
        MakeCompatibleBitmap(work, whole.Right, whole.Bottom, background.GridOrigin());
    TCanvas& w = work.Canvas();
    w.SetCopyMode(cmSrcCopy);
    w.CopyRect(whole, background.Canvas(), whole);
    return w;
}

bool TKxControl::ensureSurfaceSize() {
    const double ratio = TCanvas::ValidRatio(devicePixelRatioF());
    if (surface_.Width() == width() && surface_.Height() == height() &&
        surface_.DeviceRatio() == ratio)
        return false;
    releaseCanvas();
    surface_.SetDeviceGrid(ratio);
    surface_.SetSize(width(), height());
    surface_.ClearTransparent();
    // A control that sizes itself at the start of its Paint draws the rest into the new
    // surface; only a resize from outside needs another Paint.
    if (!inPaint_) paintPending_ = true;
    redrawNeeded_ = true;
    return true;
}

void TKxControl::surfaceTouched(const QRect* device) {
    if (inPaint_ || screenUpdatePending_) return;
    if (!device) {
        screenUpdatePending_ = true;
        update();
        return;
    }
    // Only the changed part goes to the screen: Qt repaints (and copies) that alone. A
    // part inside what is already requested needs no request of its own (a bar drawn
    // row by row would otherwise make one per row).
    const double ratio = surface_.DeviceRatio();
    const QRect logical = ratio == 1.0 ? *device
                                       : QRectF(device->x() / ratio, device->y() / ratio,
                                                device->width() / ratio, device->height() / ratio)
                                             .toAlignedRect();
    for (const QRect& r : requested_)
        if (r.contains(logical)) return;
    if (!requested_.empty()) {
        // Rows of one fill join the rectangle above them.
        QRect& last = requested_.back();
        if (last.left() == logical.left() && last.right() == logical.right() &&
            logical.top() <= last.bottom() + 1 && logical.bottom() >= last.top() - 1) {
            last |= logical;
            update(logical);
            return;
        }
    }
    if (requested_.size() == requested_.capacity()) {
        // Many scattered parts: one request for the whole control is cheaper.
        screenUpdatePending_ = true;
        update();
        return;
    }
    requested_.push_back(logical);
    update(logical);
}

void TKxControl::updateOpacity() {
    if (testAttribute(Qt::WA_OpaquePaintEvent) && !madeOpaque_) return;  // the class's own
    madeOpaque_ = KxAllOpaque(surface_);
    setAttribute(Qt::WA_OpaquePaintEvent, madeOpaque_);
}

void TKxControl::PaintToSurface() {
    if (!loaded_) Loaded();
    ensureSurfaceSize();
    // Nothing is drawn during an update phase; the surface keeps its last picture.
    if (!paintPending_ || updateCount_ > 0) return;
    paintPending_ = false;
    const bool wasInPaint = inPaint_;
    inPaint_ = true;
    releaseCanvas();
    surface_.ClearTransparent();
    Paint();
    inPaint_ = wasInPaint;
    updateOpacity();
    // From a paint event the new picture goes to the screen right away; asking for
    // another paint there would draw the whole control twice.
    if (!inPaintEvent_) update();
}

bool TKxControl::event(QEvent* e) {
    switch (e->type()) {
        case QEvent::Polish:
            if (!loaded_) Loaded();
            break;
        case QEvent::Show:
            // Readings that arrived while hidden were not drawn.
            Invalidate();
            break;
        case QEvent::ScreenChangeInternal:
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
        case QEvent::DevicePixelRatioChange:
#endif
            // Another screen may have another ratio: a new surface, painted anew.
            if (ensureSurfaceSize()) Invalidate();
            break;
        case QEvent::ApplicationPaletteChange:
        case QEvent::PaletteChange:
            // The system colour table has followed the application palette already
            // (color.h); a palette of this widget alone leaves it as it is.
            Invalidate();
            break;
        case QEvent::ToolTipChange:
            // Set by the application: its text is the hint from now on, and the tool
            // tip shows it as any hint (line breaks for carriage returns).
            if (!settingToolTip_) {
                hint_ = toolTip();
                const QString tip = ToolTipText(hint_);
                if (tip != hint_) setOwnToolTip(tip);
            }
            break;
        case QEvent::ToolTip:
            if (showHint_) {
                const QString text = toolTip();
                auto* help = static_cast<QHelpEvent*>(e);
                if (text.isEmpty())
                    QToolTip::hideText();
                else
                    QToolTip::showText(help->globalPos(), text, this);
            }
            e->accept();
            return true;
        default:
            break;
    }
    return QWidget::event(e);
}

void TKxControl::paintEvent(QPaintEvent* e) {
    screenUpdatePending_ = false;
    requested_.clear();
    inPaintEvent_ = true;
    PaintToSurface();
    inPaintEvent_ = false;
    QPainter p(this);
    // Each changed rectangle on its own: a needle and a far marker do not pull in the
    // face between them.
    const bool opaque = testAttribute(Qt::WA_OpaquePaintEvent);
    for (const QRect& r : e->region())
        KxBlitSurface(p, surface_, r, opaque);
}

void TKxControl::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    ensureSurfaceSize();
}

void TKxControl::mouseReleaseEvent(QMouseEvent* e) {
    QWidget::mouseReleaseEvent(e);
    if (e->button() == Qt::LeftButton && rect().contains(e->position().toPoint()))
        emit OnClick(this);
}

void TKxControl::mouseDoubleClickEvent(QMouseEvent* e) {
    QWidget::mouseDoubleClickEvent(e);
    emit OnDblClick(this);
}

TKxGraphicControl::TKxGraphicControl(QWidget* parent) : TKxControl(parent) {
    setFocusPolicy(Qt::NoFocus);
}

TKxCustomControl::TKxCustomControl(QWidget* parent) : TKxControl(parent) {
    setFocusPolicy(Qt::WheelFocus);
}

}  // namespace kx
