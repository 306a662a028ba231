#pragma once
// TKxCustomSwitch: the base of the switches (not registered). A switch is a binary
// element (binarycontrol.h) that the operator works with the mouse or, having the focus,
// with the space bar; it draws a body that shows the state, and the caption below it.
//
// Properties in declaration order (besides the base's):
//   Orientation  TOrientation, orVertical: vertical switches are on at the top,
//                horizontal ones on at the right
//   Color        TColor, clBtnFace: the body's face
//   ColorOn      TColor, clLime: the lit part while on (blinking alternates it with
//                ColorOff)
//   ColorOff     TColor, clBtnFace: the lit part while off
//   CaptionOn    text, set by each switch: the legend of the on position
//   CaptionOff   text, set by each switch: the legend of the off position
// Mode is mSwitch. The switches take the focus (Qt::StrongFocus); the space bar works
// them as the mouse does (binarycontrol.h).
//
// Layout: a two-pixel margin all round holds the focus mark (dotted, while focused). The
// caption ("|" separates lines, drawn in Font, centred) sits at the bottom of the rest;
// the body fills what remains. A caption that would leave the body lower than
// kMinBodySize is not drawn, a caption line wider than the control is shortened with
// "…", and legends that do not fit their place are left out, so texts never overlap the
// body's moving parts or leave the control.
//
// Painting: Paint draws the static parts (margin, caption, everything the switch draws
// in PaintStatic) and keeps a copy of the body; a state change or a blink phase composes
// the moving part (PaintMoving) on a copy of that and puts the body on the surface in
// one copy. Focus changes repaint the whole switch.
#include "kx/framework/binarycontrol.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxCustomSwitch : public TKxBinGControl {
    Q_OBJECT
  public:
    enum TOrientation : int { orVertical, orHorizontal };
    Q_ENUM(TOrientation)

  private:
    Q_PROPERTY(TOrientation Orientation READ Orientation WRITE SetOrientation)
    Q_PROPERTY(QColor Color READ QColorOf WRITE SetQColor)
    Q_PROPERTY(QColor ColorOn READ QColorOn WRITE SetQColorOn)
    Q_PROPERTY(QColor ColorOff READ QColorOff WRITE SetQColorOff)
    Q_PROPERTY(QString CaptionOn READ CaptionOn WRITE SetCaptionOn)
    Q_PROPERTY(QString CaptionOff READ CaptionOff WRITE SetCaptionOff)

  public:
    static constexpr int32_t kFocusMargin = 2;
    static constexpr int32_t kMinBodySize = 8;

    explicit TKxCustomSwitch(QWidget* parent = nullptr);

    TOrientation Orientation() const { return orientation_; }
    // Values outside the two are ignored.
    void SetOrientation(TOrientation o);
    TColor Color() const { return color_; }
    void SetColor(TColorArg c);
    TColor ColorOn() const { return colorOn_; }
    void SetColorOn(TColorArg c);
    TColor ColorOff() const { return colorOff_; }
    void SetColorOff(TColorArg c);
    QString CaptionOn() const { return captionOn_; }
    void SetCaptionOn(const QString& s);
    QString CaptionOff() const { return captionOff_; }
    void SetCaptionOff(const QString& s);

    bool Vertical() const { return orientation_ == orVertical; }
    // The body's rectangle as the last Paint laid it out.
    TRect BodyRect() const { return body_; }
    // The colour the lit part has now: ColorOn while on and not in a dark blink phase.
    TColor LitColor() const;

    QColor QColorOf() const { return EncodeQColor(color_); }
    void SetQColor(const QColor& c) { SetColor(c); }
    QColor QColorOn() const { return EncodeQColor(colorOn_); }
    void SetQColorOn(const QColor& c) { SetColorOn(c); }
    QColor QColorOff() const { return EncodeQColor(colorOff_); }
    void SetQColorOff(const QColor& c) { SetColorOff(c); }
    // Qt-style setters for uic.
    void setOrientation(TOrientation o) { SetOrientation(o); }
    void setColor(const QColor& c) { SetColor(c); }
    void setColorOn(const QColor& c) { SetColorOn(c); }
    void setColorOff(const QColor& c) { SetColorOff(c); }
    void setCaptionOn(const QString& s) { SetCaptionOn(s); }
    void setCaptionOff(const QString& s) { SetCaptionOff(s); }

  protected:
    // The static parts inside body (on the surface's canvas).
    virtual void PaintStatic(TCanvas& canvas, const TRect& body) = 0;
    // The moving part, drawn on a copy of the body whose top-left corner is (0, 0).
    virtual void PaintMoving(TCanvas& canvas, const TRect& body) = 0;

    void Paint() override;
    void ParamChange(QObject* sender) override;
    void StatusChanged() override;
    void Flash(bool on) override;
    void focusInEvent(QFocusEvent* e) override;
    void focusOutEvent(QFocusEvent* e) override;

  private:
    void setColorField(TColor& field, TColorArg c);
    void drawState();

    TBitmap background_;
    TBitmap work_;
    TRect body_{};
    QString captionOn_;
    QString captionOff_;
    TColor color_ = clBtnFace;
    TColor colorOn_ = clLime;
    TColor colorOff_ = clBtnFace;
    TOrientation orientation_ = orVertical;
    bool lit_ = true;
    bool painting_ = false;
};

inline constexpr auto orVertical = TKxCustomSwitch::orVertical;
inline constexpr auto orHorizontal = TKxCustomSwitch::orHorizontal;

// A legend centred at p if its box fits inside room, else nothing; true when drawn.
bool KxTextOutIfFits(TCanvas& canvas, TPoint p, const QString& text, const TRect& room);

}  // namespace kx
