#pragma once
// TKxLabel: one of up to 32 texts, chosen by Digit, as a status display whose texts the
// application defines ("RUNNING;FAULT;MAINTENANCE;").
//
// Texts: DigitText holds up to 32 texts separated by ";" (KxStrToken); text i is entry i,
// missing entries are empty, entries after the 32nd are ignored. The label shows text
// Digit when 0 <= Digit < 32 and that text is not empty, otherwise DefaultText.
//
// What lies behind the label: its surface is transparent except for the text, and Qt
// composes the parent (and any sibling under it) with the label in its backing store, so
// the background is always the current one and a switch of Digit reaches the screen in
// one flush, without a blank frame. Nothing is drawn before the label has been painted
// once; after that each change of Digit, DigitText, Spacing, TextPosH, TextPosV or Font
// redraws the label.
//
// Placement (tw = TextWidth(text), th = TextHeight("X"), M = the centre of the client
// rectangle, W x H its size):
//   X: phLeft Spacing; phRight W - tw - Spacing; phCenter M.X - tw div 2
//   Y: pvTop Spacing - Round(th * 0.25); pvBottom H - Round(th * 0.8) - Spacing - 1;
//      pvCenter M.Y - th div 2
// (the factors trim the font's internal leading and descent, so that the letters, not
// the text cell, keep the spacing from the edges). A text larger than the label is cut
// at its edges.
//
// Defaults: 60 x 20; DigitText "0;1;...;31;"; Digit 0; Spacing 3; TextPosH phCenter;
// TextPosV pvCenter; DefaultText "default"; Font "MS Sans Serif" as the other controls.
#include <QString>
#include <array>

#include "kx/framework/control.h"
#include "kx/framework/flatproperty.h"
#include "kx/host/graphics.h"

namespace kx {

class TKxLabel : public TKxGraphicControl {
    Q_OBJECT
    Q_PROPERTY(QString DigitText READ DigitText WRITE setDigitText)
    Q_PROPERTY(int Digit READ Digit WRITE setDigit)
    Q_PROPERTY(int Spacing READ Spacing WRITE setSpacing)
    Q_PROPERTY(TPosH TextPosH READ TextPosH WRITE setTextPosH)
    Q_PROPERTY(TPosV TextPosV READ TextPosV WRITE setTextPosV)
    Q_PROPERTY(QString DefaultText READ DefaultText WRITE setDefaultText)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont DESIGNABLE false)
  public:
    enum TPosH : int { phLeft, phRight, phCenter };
    Q_ENUM(TPosH)
    enum TPosV : int { pvTop, pvBottom, pvCenter };
    Q_ENUM(TPosV)
    static constexpr int kTexts = 32;

    explicit TKxLabel(QWidget* parent = nullptr);

    const QString& DigitText() const { return digitText_; }
    void SetDigitText(const QString& v);
    int32_t Digit() const { return digit_; }
    void SetDigit(int32_t v);
    int32_t Spacing() const { return spacing_; }
    void SetSpacing(int32_t v);
    TPosH TextPosH() const { return posH_; }
    void SetTextPosH(TPosH v);
    TPosV TextPosV() const { return posV_; }
    void SetTextPosV(TPosV v);
    const QString& DefaultText() const { return defaultText_; }
    // Stores only: shown at the next redraw.
    void SetDefaultText(const QString& v) { defaultText_ = v; }
    // The setter copies; null is ignored.
    TFont* Font() const { return font_; }
    void SetFont(const TFont* v);

    void setDigitText(const QString& v) { SetDigitText(v); }
    void setDigit(int v) { SetDigit(v); }
    void setSpacing(int v) { SetSpacing(v); }
    void setTextPosH(TPosH v) { SetTextPosH(v); }
    void setTextPosV(TPosV v) { SetTextPosV(v); }
    void setDefaultText(const QString& v) { SetDefaultText(v); }
    KX_FLAT_FONT(Font, Font())

    // Text i (0..31) as parsed; empty outside.
    QString Text(int32_t i) const;
    // The text shown now (see above).
    QString ShownText() const;
    // Where the shown text's cell starts, as the last drawing placed it.
    TPoint TextOrigin() const { return origin_; }
    bool PaintedOnce() const { return paintedOnce_; }

  protected:
    void ParamChange(QObject* sender) override;
    void Paint() override;

  private:
    void parse();
    // Redraws the label when it has been painted once (a full repaint: the surface is
    // transparent around the text).
    void draw();

    QString digitText_;
    int32_t digit_ = 0;
    int32_t spacing_ = 3;
    TPosH posH_ = phCenter;
    TPosV posV_ = pvCenter;
    QString defaultText_ = QStringLiteral("default");
    TFont* font_;
    std::array<QString, kTexts> texts_;
    TPoint origin_{};
    bool paintedOnce_ = false;
};

}  // namespace kx
