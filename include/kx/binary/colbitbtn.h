#pragma once
// TKxColBitBtn: a push button whose face shows one bit: ColorOn while checked, ColorOff
// while not, with the caption in Font on it. It works in all four modes of the binary
// base (binarycontrol.h): a momentary button (mButton), a latching one (mSwitch, the
// default), a display (mIndicator) or one of a radio group (mRadioButton); a row of them
// with one GroupIndex edits or selects bits of a shared status word.
//
// Properties in declaration order (besides the base's):
//   ColorOn    TColor, clLime: the face while checked (blinking alternates it with
//              ColorOff)
//   ColorOff   TColor, clBtnFace: the face while not checked
//   BevelWidth int32, 2: width of the button frame (0..8; other values are ignored)
// Initial size 75 x 25. It takes the focus (Qt::StrongFocus); the space bar works it as
// the mouse does.
//
// Drawing: a button frame (the graded frame of TKxBtnBevel, BevelWidth rings) raised
// while not checked and lowered while checked; the face inside; the caption ("|"
// separates lines) centred on the face, one pixel down and right while lowered, in
// Font's colour; the focus mark a dotted frame one pixel inside the face while focused.
// A caption line wider than the face (less a pixel each side) is shortened with "…"; a
// caption higher than the face is cut at the face's edge.
//
// What changes with the state is the whole button, so a state change or blink phase
// redraws it into the surface at once (there is no static part worth keeping).
#include "kx/framework/binarycontrol.h"
#include "kx/framework/btnbevel.h"

namespace kx {

class TKxColBitBtn : public TKxBinGControl {
    Q_OBJECT
    Q_PROPERTY(QColor ColorOn READ QColorOn WRITE SetQColorOn)
    Q_PROPERTY(QColor ColorOff READ QColorOff WRITE SetQColorOff)
    Q_PROPERTY(int BevelWidth READ BevelWidth WRITE SetBevelWidth)
  public:
    static constexpr int32_t kMaxBevelWidth = 8;

    explicit TKxColBitBtn(QWidget* parent = nullptr);

    TColor ColorOn() const { return colorOn_; }
    void SetColorOn(TColorArg c);
    TColor ColorOff() const { return colorOff_; }
    void SetColorOff(TColorArg c);
    int32_t BevelWidth() const { return bevel_->Width(); }
    void SetBevelWidth(int32_t w);

    // The face's colour now.
    TColor FaceColor() const;
    // The face as the last drawing laid it out.
    TRect FaceRect() const { return face_; }

    QColor QColorOn() const { return EncodeQColor(colorOn_); }
    void SetQColorOn(const QColor& c) { SetColorOn(c); }
    QColor QColorOff() const { return EncodeQColor(colorOff_); }
    void SetQColorOff(const QColor& c) { SetColorOff(c); }
    // Qt-style setters for uic.
    void setColorOn(const QColor& c) { SetColorOn(c); }
    void setColorOff(const QColor& c) { SetColorOff(c); }
    void setBevelWidth(int w) { SetBevelWidth(w); }

  protected:
    void Paint() override;
    void ParamChange(QObject* sender) override;
    void StatusChanged() override;
    void Flash(bool on) override;
    void focusInEvent(QFocusEvent* e) override;
    void focusOutEvent(QFocusEvent* e) override;

  private:
    void drawButton();
    void redraw();

    TKxBtnBevel* bevel_;
    TRect face_{};
    TColor colorOn_ = clLime;
    TColor colorOff_ = clBtnFace;
    bool lit_ = true;
    bool painting_ = false;
};

}  // namespace kx
