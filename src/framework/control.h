#pragma once
// The control bases. Every component owns a surface image; its Canvas draws into that
// surface at any time, paintEvent only blits it (running Paint first when a full redraw
// is pending). Settings changes funnel through Change into one ParamChange; an update
// phase (BeginUpdate/EndUpdate) coalesces them into a single ParamChange.
#include <QWidget>

#include "blink/flashclient.h"
#include "host/bitmap.h"
#include "host/types.h"

namespace kx {

class TKxControl : public QWidget, public TKxFlashClient {
    Q_OBJECT
    Q_PROPERTY(bool ShowHint READ ShowHint WRITE SetShowHint)
    Q_PROPERTY(QString Hint READ Hint WRITE SetHint)
  public:
    explicit TKxControl(QWidget* parent = nullptr);
    ~TKxControl() override;

    // The drawing surface's canvas, usable outside Paint too.
    TCanvas& Canvas() { return canvasOverride_ ? *canvasOverride_ : surface_.Canvas(); }
    const TBitmap& Surface() const { return surface_; }
    // Draws through another canvas (not owned), e.g. a recording canvas aimed at
    // SurfaceImage(); nullptr restores the surface's own canvas.
    void SetCanvas(TCanvas* canvas) { canvasOverride_ = canvas; }
    QImage& SurfaceImage() { return surface_.MutableImage(); }

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

    // The form-designer flag: value setters then re-lay out instead of evaluating.
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
    QSize sizeHint() const override { return size(); }
    TRect ClientRect() const { return TRect{0, 0, width(), height()}; }

    bool ShowHint() const { return showHint_; }
    void SetShowHint(bool v) { showHint_ = v; }
    // The hint text; descendants may build it lazily when it is read.
    virtual QString Hint() const { return hint_; }
    void SetHint(const QString& text) { hint_ = text; }

    void WMFlash(TMessage& message) override;

  signals:
    void OnClick(QObject* sender);
    void OnDblClick(QObject* sender);

  protected:
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
    void ensureSurfaceSize();
    void surfaceTouched();

    TBitmap surface_;
    TCanvas* canvasOverride_ = nullptr;
    int32_t updateCount_ = 0;
    bool loaded_ = false;
    bool designing_ = false;
    bool redrawNeeded_ = true;
    bool paintPending_ = true;
    bool inPaint_ = false;
    bool screenUpdatePending_ = false;
    bool showHint_ = true;
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
