#pragma once
// TKxNumSpin: the numeric edit (numedit.h) with a spin button inside its right edge. The
// buttons step the value with UpClick and DownClick, each only while a step is possible:
// the edit is enabled, its entry is confirmed (esNormal) and that side's limit is not
// reached. While an entry is being typed or is in error both buttons are disabled, so
// an unconfirmed entry cannot be stepped.
//
// Properties added to the edit's:
//   Interval    int32: the spin button's repeat interval (spinbutton.h), 100
//   StartDelay  int32: its delay before repeating, 500
//
// Geometry: the spin button stands inside the edit's frame at its right edge, 15 pixels
// wide (its minimum) and as high as the frame's inside; the text margin on the right
// keeps typed text from running under it. The edit is never lower than its minimum
// height, the font's line height + (the smaller of the application font's and the edit
// font's line heights) div 4 + 6: it is the widget's minimumHeight, so Qt raises a
// smaller height given to it (layouts included). The button is placed on every resize
// event, which Qt delivers to a hidden widget when it is shown.
//
// Choices where the classic behaviour is silent: the classic placed the button by the
// platform's edit border; here it is placed by the style's frame width (QStyle::
// PM_DefaultFrameWidth), which is what the edit's frame takes. When the focus leaves
// while a button is held, the hold ends without a click.
#include "kx/entry/numedit.h"
#include "kx/framework/spinbutton.h"

namespace kx {

class TKxNumSpin : public TKxNumEdit {
    Q_OBJECT
    Q_PROPERTY(int Interval READ Interval WRITE setInterval)
    Q_PROPERTY(int StartDelay READ StartDelay WRITE setStartDelay)
  public:
    explicit TKxNumSpin(QWidget* parent = nullptr);

    int32_t Interval() const { return spin_->Interval(); }
    void SetInterval(int32_t ms) { spin_->SetInterval(ms); }
    int32_t StartDelay() const { return spin_->StartDelay(); }
    void SetStartDelay(int32_t ms) { spin_->SetStartDelay(ms); }
    TKxSpinButton* SpinButton() const { return spin_; }
    int32_t MinimumHeight() const;

    void setInterval(int ms) { SetInterval(ms); }
    void setStartDelay(int ms) { SetStartDelay(ms); }

  protected:
    void Limit() override;
    void SetState(TNumEditState s) override;
    void resizeEvent(QResizeEvent* e) override;
    void changeEvent(QEvent* e) override;
    void focusOutEvent(QFocusEvent* e) override;

  private:
    void placeButton();
    void enableButtons();

    TKxSpinButton* spin_;
};

}  // namespace kx
