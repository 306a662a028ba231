#pragma once
// TKxTimerSpeedBtn: a speed button that repeats its click while it is held down. The
// repeats come from the shared blink service (flashtimer.h), which the button joins
// with its Interval as a millisecond code on a left press and leaves on release; it
// has no timer of its own.
// TKxSpinButton: a windowed control made of two such buttons stacked vertically (up
// arrow over down arrow). It reports OnUpClick / OnDownClick, can hand the focus to an
// associated control, and answers the Up and Down keys.
//
// TKxTimerSpeedBtn (on QAbstractButton; no focus, like every speed button), properties
// in declaration order:
//   Interval     int32, 100: milliseconds between repeats; values below 50 are ignored.
//                A change while held applies at once (the next repeat comes one new
//                interval later).
//   TimerEnabled bool, true: whether a press repeats; false while held ends the repeats.
//   StartDelay   uint32, 500: milliseconds from the press to the first repeat.
//   ArrowGlyph   TArrowGlyph, agNone: the arrow drawn on the face.
// Not published: NextTime, the tick count (GetTickCount, wrapping) from which repeats
// are served: the press's tick count plus the StartDelay in force at the press.
//
// Timing: a press (left button on the enabled button) takes NextTime and subscribes;
// each blink pulse then clicks unless less than StartDelay has passed since the press.
// So with the defaults the first repeat comes at about 500 ms and later ones every
// 100 ms (quantised to the service's 16 ms tick). The press itself gives the normal
// click on release. A repeat is Click(): clicked() without touching the down state.
//
// Painting: the whole button is drawn through TCanvas into a TBitmap of its size (at the
// widget's device pixel ratio), which paintEvent blits with its one QPainter. The face
// is clBtnFace inside the two-ring button bevel (KxBtnBevel), raised when up and lowered
// while down. The arrow is a solid triangle, base 2 * a - 1 wide and a rows high, where
// a = min(face height div 2, (face width - 3) div 2) and the face is the button less 2
// pixels each side; its tip sits in column (width - 1) div 2 and its rows start at
// (height - a) div 2. It is clBtnText, one pixel down and right while down; a disabled
// button draws it embossed (clBtnHighlight one pixel down and right, clBtnShadow over
// it). text() and icon() are not drawn. Initial size 23 x 22.
//
// TKxSpinButton (a TKxCustomControl), properties in declaration order:
//   Interval     int32: forwarded to both buttons, read from the up button.
//   StartDelay   int32: forwarded to both buttons as uint32 (wrapping), read from the
//                up button (wrapping back).
//   FocusControl QWidget*, none: the control that receives the focus on a press; held
//                through QPointer, so it clears itself when that control is destroyed.
//   TabStop      bool, false: the spin button is reached by Tab (Qt::TabFocus) or not
//                at all (Qt::NoFocus).
// Events: OnUpClick(sender), OnDownClick(sender), sender being the spin button, for
// every click of the up or down button, repeats and keys included.
// Initial size 15 x 24. The width is at least 15 (a minimum width, so every way of
// sizing it obeys); the up button takes (0, 0, width, height div 2), the down button
// the rest. The buttons follow every resize and SetBounds; a widget that is not shown
// gets its resize events only when shown, so size it with SetBounds before then.
//
// Press (left button on an enabled button, before the button goes down): when
// FocusControl is set, has Qt::TabFocus, is visible and enabled, and does not have the
// focus, it gets the focus and nothing more happens; otherwise the spin button takes
// the focus when it has TabStop, is visible and enabled, and does not have it. Only
// this rule gives the spin button the focus on a click: TabStop maps to Qt::TabFocus
// without Qt::ClickFocus, so a click never focuses it on the way to FocusControl.
// Keys: Up clicks the up button, Down the down button (auto-repeated presses click
// again); other keys go to the base. Enabled is passed on to both buttons.
//
// Choices where the classic behaviour is silent:
// - The glyphs are drawn, not loaded: there are no UpGlyph / DownGlyph / NumGlyphs
//   properties; ArrowGlyph of each button chooses the arrow.
// - Repeats come only while the button shows down: dragging the pointer off the held
//   button pauses them, moving back resumes them (without a new start delay).
// - StartDelay is compared with the time passed since the press, so a press shortly
//   before the 32-bit tick count wraps still waits its delay. A huge StartDelay (a
//   negative one given through the spin button wraps to one of about 49.7 days) means
//   no repeats at all.
// - A hold ends, and the button leaves the blink service, on release (over the button
//   or not), when the button is disabled or hidden, when TimerEnabled goes false, and
//   when the button is destroyed; a button destroyed while held leaves no subscription.
// - Click() does nothing on a disabled button.
// - The spin button's buttons are named "Up" and "Down" for screen readers.
// - The spin button draws nothing itself: its buttons always cover it. Huge sizes are
//   accepted up to Qt's widget limit; each button's bitmap is as large as the button.
#include <QAbstractButton>
#include <QPointer>
#include <cstdint>

#include "kx/blink/flashclient.h"
#include "kx/framework/control.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxTimerSpeedBtn : public QAbstractButton, public TKxFlashClient {
    Q_OBJECT
    Q_PROPERTY(int Interval READ Interval WRITE setInterval)
    Q_PROPERTY(bool TimerEnabled READ TimerEnabled WRITE setTimerEnabled)
    Q_PROPERTY(uint StartDelay READ StartDelay WRITE setStartDelay)
    Q_PROPERTY(TArrowGlyph ArrowGlyph READ ArrowGlyph WRITE setArrowGlyph)
    // Set by the Designer plugin; a button being designed does not repeat.
    Q_PROPERTY(bool Designing READ Designing WRITE SetDesigning DESIGNABLE false STORED false)
  public:
    enum TArrowGlyph : int { agNone, agUp, agDown };
    Q_ENUM(TArrowGlyph)

    static constexpr int32_t kMinInterval = 50;

    explicit TKxTimerSpeedBtn(QWidget* parent = nullptr);
    ~TKxTimerSpeedBtn() override;

    int32_t Interval() const { return interval_; }
    void SetInterval(int32_t ms);
    bool TimerEnabled() const { return timerEnabled_; }
    void SetTimerEnabled(bool enabled);
    uint32_t StartDelay() const { return startDelay_; }
    void SetStartDelay(uint32_t ms) { startDelay_ = ms; }
    TArrowGlyph ArrowGlyph() const { return glyph_; }
    void SetArrowGlyph(TArrowGlyph glyph);
    uint32_t NextTime() const { return pressTick_ + heldDelay_; }
    bool Designing() const { return designing_; }
    void SetDesigning(bool d) { designing_ = d; }
    // Whether the button is held and subscribed to the blink service.
    bool Repeating() const { return repeating_; }

    // One click: clicked() when enabled, the down state left as it is.
    void Click();

    // Draws the button as it is now into the bitmap, for the screen and for tests.
    void PaintToSurface();
    const TBitmap& Surface() const { return surface_; }
    QSize sizeHint() const override { return size(); }

    void WMFlash(TMessage& message) override;

    // Qt-style names for uic.
    void setInterval(int ms) { SetInterval(ms); }
    void setTimerEnabled(bool enabled) { SetTimerEnabled(enabled); }
    void setStartDelay(uint ms) { SetStartDelay(ms); }
    void setArrowGlyph(TArrowGlyph glyph) { SetArrowGlyph(glyph); }

  protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void changeEvent(QEvent* e) override;
    void hideEvent(QHideEvent* e) override;

  private:
    void startRepeat();
    void stopRepeat();
    void paintButton(TCanvas& canvas);

    TBitmap surface_;
    int32_t interval_ = 100;
    uint32_t startDelay_ = 500;
    uint32_t pressTick_ = 0;
    uint32_t heldDelay_ = 0;
    TArrowGlyph glyph_ = agNone;
    bool timerEnabled_ = true;
    bool repeating_ = false;
    bool designing_ = false;
};

class TKxSpinButton : public TKxCustomControl {
    Q_OBJECT
    Q_PROPERTY(int Interval READ Interval WRITE setInterval)
    Q_PROPERTY(int StartDelay READ StartDelay WRITE setStartDelay)
    Q_PROPERTY(QWidget* FocusControl READ FocusControl WRITE SetFocusControl DESIGNABLE false)
    Q_PROPERTY(bool TabStop READ TabStop WRITE setTabStop)
  public:
    static constexpr int32_t kMinWidth = 15;

    explicit TKxSpinButton(QWidget* parent = nullptr);

    int32_t Interval() const { return up_->Interval(); }
    void SetInterval(int32_t ms);
    int32_t StartDelay() const { return static_cast<int32_t>(up_->StartDelay()); }
    void SetStartDelay(int32_t ms);
    QWidget* FocusControl() const { return focusControl_.data(); }
    void SetFocusControl(QWidget* control) { focusControl_ = control; }
    bool TabStop() const { return (focusPolicy() & Qt::TabFocus) != 0; }
    void SetTabStop(bool tabStop);

    TKxTimerSpeedBtn* UpButton() const { return up_; }
    TKxTimerSpeedBtn* DownButton() const { return down_; }

    // Hides TKxControl::SetBounds to lay the buttons out at once, shown or not.
    void SetBounds(int32_t left, int32_t top, int32_t width, int32_t height);
    void Loaded() override;

    // Qt-style names for uic.
    void setInterval(int ms) { SetInterval(ms); }
    void setStartDelay(int ms) { SetStartDelay(ms); }
    void setTabStop(bool tabStop) { SetTabStop(tabStop); }

  signals:
    void OnUpClick(QObject* sender);
    void OnDownClick(QObject* sender);

  protected:
    bool eventFilter(QObject* watched, QEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void changeEvent(QEvent* e) override;

  private:
    void adjustButtons();
    void pressFocus();

    TKxTimerSpeedBtn* up_;
    TKxTimerSpeedBtn* down_;
    QPointer<QWidget> focusControl_;
};

}  // namespace kx
