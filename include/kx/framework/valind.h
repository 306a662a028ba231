#pragma once
// TKxValInd: a boxed numeric readout that an instrument shows beside or inside its scale:
// the number in a coloured box, framed by a sunken bevel, with an optional caption above.
// Draw lays the readout out around an anchor point and paints it; DrawValue then repaints
// only the number, off-screen and in one copy, so a fast-changing value never flickers.
//
// Layout of Draw(canvas, point, anchor):
//  - The number's cell is as wide as the widest text the readout expects (SampleText
//    when set, else FormatFloat(FormatStr, -88888.888): a sign and five integer digits)
//    and as high as a line of Font, plus TxtSpacing on each side: that is the text
//    rectangle (TextRect()), filled with Color.
//  - The bevel (Bevel.Width rings, ColorFrom on the top and left, ColorTo on the bottom
//    and right: sunken by default) surrounds the text rectangle; together they are the
//    box (BoxRect()).
//  - With a visible, non-empty Caption, its text stands centred above the box in the
//    caption's font, shifted by the caption's OffsetX and OffsetY (the shift does not
//    move the box).
//  - The block of caption and box is placed by anchor (toTopLeft .. toBotRight) at the
//    point moved by (OffsetX, OffsetY): toTopLeft puts the block's top-left corner there,
//    toMidCenter its centre, toBotRight its bottom-right corner (halves truncate).
//  - Nothing is drawn while Visible is false; the rectangles are still laid out.
// DrawValue(canvas, value): FormatFloat(FormatStr, value) right-aligned in the text
// rectangle, one pixel in from its right edge less TxtSpacing.Right, at its top; a text
// too wide for the rectangle shows as a row of '#' (see KxDrawNumberBox).
#include <QString>

#include "kx/drawing/text.h"
#include "kx/framework/bevelsettings.h"
#include "kx/framework/offset.h"
#include "kx/framework/persistent.h"
#include "kx/framework/textsettings.h"
#include "kx/host/bitmap.h"
#include "kx/host/graphics.h"
#include "kx/host/types.h"

namespace kx {

class TKxValInd : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(QString FormatStr READ FormatStr WRITE SetFormatStr)
    Q_PROPERTY(kx::TKxBevelSettings* Bevel READ Bevel WRITE SetBevel)
    Q_PROPERTY(kx::TKxText* Caption READ Caption WRITE SetCaption)
    Q_PROPERTY(int Color READ Color WRITE SetColor)
    Q_PROPERTY(kx::TFont* Font READ Font WRITE SetFont)
    Q_PROPERTY(int OffsetX READ OffsetX WRITE SetOffsetX)
    Q_PROPERTY(int OffsetY READ OffsetY WRITE SetOffsetY)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)
    Q_PROPERTY(kx::TKxOffset* TxtSpacing READ TxtSpacing WRITE SetTxtSpacing)
  public:
    explicit TKxValInd(QObject* parent = nullptr);
    ~TKxValInd() override;

    QString FormatStr() const { return formatStr_; }
    void SetFormatStr(const QString& v);
    // The owned objects notify through ChangeObject; their setters copy (null ignored).
    TKxBevelSettings* Bevel() const { return bevel_; }
    void SetBevel(const TKxBevelSettings* v);
    TKxText* Caption() const { return caption_; }
    void SetCaption(const TKxText* v);
    TColor Color() const { return color_; }
    void SetColor(TColorArg v);
    TFont* Font() const { return font_; }
    void SetFont(const TFont* v);
    int32_t OffsetX() const { return offsetX_; }
    void SetOffsetX(int32_t v);
    int32_t OffsetY() const { return offsetY_; }
    void SetOffsetY(int32_t v);
    bool Visible() const { return visible_; }
    void SetVisible(bool v);
    TKxOffset* TxtSpacing() const { return txtSpacing_; }
    void SetTxtSpacing(const TKxOffset* v);

    // The text the number's cell is sized for; empty: FormatFloat(FormatStr, -88888.888).
    QString SampleText;

    void Draw(TCanvas& canvas, TPoint point, toPos anchor);
    void DrawValue(TCanvas& canvas, double value);

    // From the last Draw.
    TRect TextRect() const { return textRect_; }
    TRect BoxRect() const { return boxRect_; }

    // To another TKxValInd: every published setting, then one Change.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    void hookOwned();
    void unhookOwned();

    QString formatStr_ = QStringLiteral("##0.0");
    TKxBevelSettings* bevel_;
    TKxText* caption_;
    TColor color_ = clBlack;
    TFont* font_;
    int32_t offsetX_ = 0;
    int32_t offsetY_ = 0;
    bool visible_ = true;
    TKxOffset* txtSpacing_;

    TRect textRect_{};
    TRect boxRect_{};
    TBitmap number_;
};

}  // namespace kx
