#pragma once
// The control bases. Every component owns a surface image; its Canvas draws into that
// surface at any time, paintEvent only blits it (running Paint first when a full redraw
// is pending). Settings changes funnel through Change into one ParamChange; an update
// phase (BeginUpdate/EndUpdate) coalesces them into a single ParamChange.
//
// High-DPI: the surface is drawn at the widget's devicePixelRatioF() (see canvas.h for
// how logical geometry maps to device pixels); layout stays in logical pixels. When the
// ratio changes (a move to another screen, a new scale) the surface is re-created at the
// new ratio and fully repainted; paintEvent copies its device pixels unscaled.
//
// Colours: system colours (clBtnFace, ...) resolve through the application-wide table of
// color.h, which follows the application palette (see SetSystemColorsFollowPalette).
// An application palette change repaints every control in the new colours. A palette
// set on one widget does not change the system colours (they are application-wide, as
// on the classic platform); that control only repaints. Colour one control through its
// colour properties.
//
// Threads: components are GUI-thread objects, like every QWidget. Create, change, read
// and delete them on the GUI thread only; their events fire there. A worker thread hands
// readings over through PostValue (analog controls), which may be called from any thread,
// or through a queued signal of its own.
#include <QVarLengthArray>
#include <QWidget>

#include "kx/blink/flashclient.h"
#include "kx/host/bitmap.h"
#include "kx/host/types.h"

namespace kx {

class TKxControl : public QWidget, public TKxFlashClient {
    Q_OBJECT
    Q_PROPERTY(bool ShowHint READ ShowHint WRITE setShowHint)
    Q_PROPERTY(QString Hint READ Hint WRITE setHint)
  public:
    explicit TKxControl(QWidget* parent = nullptr);
    ~TKxControl() override;

    // The drawing surface's canvas, usable outside Paint too.
    TCanvas& Canvas() { return canvasOverride_ ? *canvasOverride_ : surface_.Canvas(); }
    const TBitmap& Surface() const { return surface_; }
    // Draws through another canvas (not owned), e.g. a recording canvas aimed at
    // SurfaceImage() or at no image; nullptr restores the surface's own canvas. A canvas
    // aimed at SurfaceImage() follows the surface: the control ends the canvas's painting
    // before the surface is resized, cleared or destroyed, so the next call draws into the
    // surface as it is then. The canvas must stay alive while it is set (hand nullptr
    // before destroying it); after the control is gone it may only be destroyed.
    void SetCanvas(TCanvas* canvas);
    QImage& SurfaceImage() { return surface_.MutableImage(); }
    // The device pixel ratio the surface is drawn at.
    double SurfaceRatio() const { return surface_.DeviceRatio(); }
    // Sizes bitmap (logical width x height) on this control's device grid, for a cache of
    // the area whose top-left corner is at origin on the control, so that copies between
    // it and the surface are pixel for pixel.
    void MakeCompatibleBitmap(TBitmap& bitmap, int32_t width, int32_t height,
                              TPoint origin = {}) const;
    // The start of composing a moving part: work takes background's size and device grid
    // (re-made only when they differ) and a copy of its pixels; returns work's canvas.
    TCanvas& StartComposition(TBitmap& work, TBitmap& background) const;

    int32_t UpdateCount() const { return updateCount_; }
    void BeginUpdate() { ++updateCount_; }
    // Floored at 0; reaching 0 calls Change once (also after an unmatched call).
    void EndUpdate();
    // ParamChange(this) unless an update phase is in progress.
    void Change();

    // Ends the construction phase. Runs by itself on the first polish when the
    // application did not call it. Descendants call the inherited Loaded first.
    virtual void Loaded();
    bool IsLoaded() const { return loaded_; }

    // The form-designer flag, set by the Designer plugin: value setters then re-lay out
    // instead of evaluating, extremes are not recorded and nothing blinks.
    bool Designing() const { return designing_; }
    void SetDesigning(bool d) { designing_ = d; }

    // Requests a full Paint (static parts included) at the next screen update.
    virtual void Invalidate();
    bool RedrawNeeded() const { return redrawNeeded_; }
    void SetRedrawNeeded(bool v) { redrawNeeded_ = v; }

    // Brings the surface up to date now (resizing it and running a pending Paint)
    // without waiting for the screen; headless renders and benchmarks use it. Does
    // nothing during an update phase. A control may resize itself at the start of its
    // Paint (auto-size); the rest of that Paint then draws into the resized surface.
    void PaintToSurface();

    // Visible unless explicitly hidden, whether or not a window shows it yet.
    bool Visible() const;
    // Moves and sizes the control; a new size becomes its size hint for layouts.
    void SetBounds(int32_t left, int32_t top, int32_t width, int32_t height);
    // Sizes the control to what an auto-size rule computed, at most kKxMaxAutoSize pixels
    // a side (and at least 0), so absurd texts, fonts or minimum settings cannot make a
    // control allocate a surface of gigabytes; an application may still size a control
    // larger with SetBounds. Does nothing when the size is already that.
    static constexpr int64_t kKxMaxAutoSize = 4096;
    void SetAutoSize(int64_t width, int64_t height);
    // Grows each side that is smaller than asked to that size, at most kKxMaxAutoSize;
    // never shrinks.
    void GrowToAtLeast(int64_t width, int64_t height);
    QSize sizeHint() const override { return size(); }
    TRect ClientRect() const { return TRect{0, 0, width(), height()}; }

    // Whether the hint is shown as a tool tip.
    bool ShowHint() const { return showHint_; }
    void SetShowHint(bool v) { showHint_ = v; }
    // The hint and QWidget::toolTip are one text: setting either sets both. The hint
    // keeps carriage returns as line separators; the tool tip has line breaks in their
    // place (a CR LF pair becomes one break). A tool tip set through QWidget::setToolTip
    // becomes the hint as it is.
    QString Hint() const { return hint_; }
    void SetHint(const QString& text);
    // Qt-style names for uic, which calls "set" + the property name.
    void setShowHint(bool v) { SetShowHint(v); }
    void setHint(const QString& text) { SetHint(text); }

    void WMFlash(TMessage& message) override;

  signals:
    void OnClick(QObject* sender);
    void OnDblClick(QObject* sender);

  protected:
    // The tool-tip form of a hint: each carriage return (or CR LF pair) a line break.
    static QString ToolTipText(const QString& hint);
    // SetHint with the tool-tip form already made (toolTip == ToolTipText(hint)).
    void SetHintTexts(const QString& hint, const QString& toolTip);

    // Recomputes layout and repaints after a settings change; empty here.
    virtual void ParamChange(QObject* sender);
    // Draws the whole control into the surface; empty here.
    virtual void Paint();

    bool event(QEvent* e) override;
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;

  private:
    // Re-creates the surface for a new size or ratio; true when it did.
    bool ensureSurfaceSize();
    void setOwnToolTip(const QString& tip);
    // Schedules the screen update of what changed on the surface (device pixels; null:
    // all of it).
    void surfaceTouched(const QRect* device);
    // After a Paint: a control whose surface has no transparent pixel paints opaquely,
    // so that Qt draws nothing beneath it and the surface is copied, not blended.
    void updateOpacity();
    // Ends the painting of a handed canvas, which may hold the surface's pixels.
    void releaseCanvas();

    TBitmap surface_;
    TCanvas* canvasOverride_ = nullptr;
    int32_t updateCount_ = 0;
    bool loaded_ = false;
    bool designing_ = false;
    bool redrawNeeded_ = true;
    bool paintPending_ = true;
    bool inPaintEvent_ = false;
    bool madeOpaque_ = false;  // WA_OpaquePaintEvent set by updateOpacity
    // The parts requested since the last paint (a few; then the whole control).
    QVarLengthArray<QRect, 8> requested_;
    bool inPaint_ = false;
    bool screenUpdatePending_ = false;
    bool showHint_ = true;
    // Set while the control updates its own tool tip, so that only the application's
    // setToolTip counts as a new hint.
    bool settingToolTip_ = false;
    QString hint_;
};

// Windowless control: takes no focus and paints over its parent.
class TKxGraphicControl : public TKxControl {
    Q_OBJECT
  public:
    explicit TKxGraphicControl(QWidget* parent = nullptr);
};

// Windowed control: takes keyboard and wheel focus.
class TKxCustomControl : public TKxControl {
    Q_OBJECT
  public:
    explicit TKxCustomControl(QWidget* parent = nullptr);
};

}  // namespace kx
