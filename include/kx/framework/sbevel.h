#pragma once
// TKxSBevel: the sunken or raised frame in which most instruments sit: an optional
// outer line, graded rings, an optional inner line, a spacing and a final offset.
// PaintBevel returns the inner area that remains for the instrument.
#include <cstdint>
#include <memory>

#include "kx/framework/bevelpaint.h"
#include "kx/framework/flatproperty.h"
#include "kx/framework/gradsettings.h"
#include "kx/framework/offset.h"
#include "kx/framework/persistent.h"
#include "kx/host/bitmap.h"
#include "kx/host/canvas.h"
#include "kx/host/color.h"
#include "kx/host/types.h"

namespace kx {

class TKxSBevel : public TKxPersistent {
    Q_OBJECT
  public:
    enum TBevelStyle : int { bsLowered, bsRaised };
    Q_ENUM(TBevelStyle)
    enum TBevelLine : int { blNone, blOuter, blInner, blBoth };
    Q_ENUM(TBevelLine)

  private:
    Q_PROPERTY(kx::TKxOffset* Offset READ Offset WRITE SetOffset)
    Q_PROPERTY(TBevelStyle Style READ Style WRITE SetStyle)
    Q_PROPERTY(int Spacing READ Spacing WRITE SetSpacing)
    Q_PROPERTY(TBevelLine BevelLine READ BevelLine WRITE SetBevelLine)
    Q_PROPERTY(int Width READ Width WRITE SetWidth)
    Q_PROPERTY(int Color READ Color WRITE SetColor)
    Q_PROPERTY(int ColorShadowFrom READ ColorShadowFrom WRITE SetColorShadowFrom)
    Q_PROPERTY(int ColorShadowTo READ ColorShadowTo WRITE SetColorShadowTo)
    Q_PROPERTY(int ColorHighLightFrom READ ColorHighLightFrom WRITE SetColorHighLightFrom)
    Q_PROPERTY(int ColorHighLightTo READ ColorHighLightTo WRITE SetColorHighLightTo)
    Q_PROPERTY(int PenColor READ PenColor WRITE SetPenColor)
    Q_PROPERTY(kx::TKxGradSettings* SurfaceGrad READ SurfaceGrad WRITE SetSurfaceGrad)

  public:
    static constexpr int32_t kGradBitmapSize = 30;

    explicit TKxSBevel(QObject* parent = nullptr);
    ~TKxSBevel() override;

    // Owned; changes of its margins reach this bevel's Change. The setter copies.
    TKxOffset* Offset() const { return offset_; }
    void SetOffset(const TKxOffset* v);
    TBevelStyle Style() const { return style_; }
    void SetStyle(TBevelStyle v);
    int32_t Spacing() const { return spacing_; }
    void SetSpacing(int32_t v);
    TBevelLine BevelLine() const { return bevelLine_; }
    void SetBevelLine(TBevelLine v);
    // Negative widths are ignored; 0 draws no rings.
    int32_t Width() const { return width_; }
    void SetWidth(int32_t v);
    TColor Color() const { return color_; }
    void SetColor(TColorArg v);
    TColor ColorShadowFrom() const { return colorShadowFrom_; }
    void SetColorShadowFrom(TColorArg v);
    TColor ColorShadowTo() const { return colorShadowTo_; }
    void SetColorShadowTo(TColorArg v);
    TColor ColorHighLightFrom() const { return colorHighLightFrom_; }
    void SetColorHighLightFrom(TColorArg v);
    TColor ColorHighLightTo() const { return colorHighLightTo_; }
    void SetColorHighLightTo(TColorArg v);
    TColor PenColor() const { return penColor_; }
    void SetPenColor(TColorArg v);
    // Owned; changes reach this bevel's Change. The setter copies (see
    // TKxGradSettings::AssignTo for the notifications that gives).
    TKxGradSettings* SurfaceGrad() const { return surfaceGrad_; }
    void SetSurfaceGrad(const TKxGradSettings* v);

    // Pixels the frame occupies on each side: Spacing + Width, + 1 for an outer or an
    // inner line, + 2 for both (the Offset is not included).
    int32_t TotalWidth() const { return totalWidth_; }

    // When set, every Change (re)fills a 30 x 30 bitmap with the shadow gradient
    // (ColorShadowFrom to ColorShadowTo, gsTopLeft) for owners that tile it. Off by
    // default; switching it on takes effect at the next Change.
    bool UseGradBitmap = false;
    // The cached gradient, or null while none has been made.
    const TBitmap* GradBitmap() const { return gradBitmap_.get(); }

    // Recomputes TotalWidth and the gradient bitmap, then notifies.
    void Change() override;

    // Draws the complete frame into rect and returns in rect the inner area: outer line
    // (blOuter, blBoth), rings, inner line (blInner, blBoth), Spacing, then Offset.
    // Lines are drawn in PenColor with a clear brush; the inside is not painted.
    void PaintBevel(TCanvas& canvas, TRect& rect) const;
    // The graded rings alone (see KxPaintGradFrame) in this bevel's colours and Width.
    void PaintGradBevel(TCanvas& canvas, TRect& rect, bool raised, bool fill,
                        TColor fillColor) const;
    // As PaintBevel, with the surface painted: the area inside the outer line is first
    // filled with Color, then the rings and lines are drawn over it, and when
    // SurfaceGrad is visible its gradient finally fills the returned inner area.
    void PaintFilledBevel(TCanvas& canvas, TRect& rect) const;
    // The rounded variant of PaintFilledBevel without gradient: the whole rect is first
    // filled with Color as a RoundRect with corners a x b, then the outer line, the
    // rings (KxPaintRoundGradFrame) and the inner line are rounded outlines whose
    // corners shrink by 2 per pixel inward; Spacing and Offset as in PaintBevel.
    // Negative corner sizes count as 0.
    void PaintRoundBevel(TCanvas& canvas, TRect& rect, int32_t a, int32_t b) const;

    // To another TKxSBevel: every published property including the owned Offset and
    // SurfaceGrad (their own notifications muted), then exactly one Change.
    void AssignTo(TKxPersistent* dest) const override;

  protected:
    // The handler of the owned Offset and SurfaceGrad.
    void ParamChange(QObject* sender);

  private:
    bool hasOuterLine() const { return bevelLine_ == blOuter || bevelLine_ == blBoth; }
    bool hasInnerLine() const { return bevelLine_ == blInner || bevelLine_ == blBoth; }
    TKxRingColors ringColors() const;
    void hookOwned();
    void updateTotalWidth();
    void fillGradBitmap();
    void paintFrame(TCanvas& canvas, TRect& rect, bool fill) const;

    TKxOffset* offset_;  // child of this object
    TBevelStyle style_ = bsRaised;
    int32_t spacing_ = 5;
    TBevelLine bevelLine_ = blNone;
    int32_t width_ = 2;
    TColor color_ = clBtnFace;
    TColor colorShadowFrom_ = clBtnShadow;
    TColor colorShadowTo_ = clBtnShadow;
    TColor colorHighLightFrom_ = clBtnHighlight;
    TColor colorHighLightTo_ = clBtnHighlight;
    TColor penColor_ = clBlack;
    TKxGradSettings* surfaceGrad_;  // child of this object
    int32_t totalWidth_ = 0;
    std::unique_ptr<TBitmap> gradBitmap_;
};

using TBevelStyle = TKxSBevel::TBevelStyle;
using TBevelLine = TKxSBevel::TBevelLine;
inline constexpr TBevelStyle bsLowered = TKxSBevel::bsLowered;
inline constexpr TBevelStyle bsRaised = TKxSBevel::bsRaised;
inline constexpr TBevelLine blNone = TKxSBevel::blNone;
inline constexpr TBevelLine blOuter = TKxSBevel::blOuter;
inline constexpr TBevelLine blInner = TKxSBevel::blInner;
inline constexpr TBevelLine blBoth = TKxSBevel::blBoth;

// The frame pair most instruments start with: a lowered inner bevel with its inner line
// and an outer bevel with its outer line (spacing and width stay the bevels' own).
void KxSetDefaultBevels(TKxSBevel& inner, TKxSBevel& outer);

// The flat properties of a TKxSBevel (see flatproperty.h).
#define KX_FLAT_SBEVEL(Prefix, Object)                                                  \
    KX_FLAT_OFFSET(Prefix##_Offset, (Object)->Offset())                                 \
    KX_FLAT_ENUM(Prefix##_Style, Object, Style, ::kx::TBevelStyle, ::kx::bsRaised)      \
    KX_FLAT(int, Prefix##_Spacing, Object, Spacing)                                     \
    KX_FLAT_ENUM(Prefix##_BevelLine, Object, BevelLine, ::kx::TBevelLine, ::kx::blBoth) \
    KX_FLAT(int, Prefix##_Width, Object, Width)                                         \
    KX_FLAT_COLOR(Prefix##_Color, Object, Color)                                        \
    KX_FLAT_COLOR(Prefix##_ColorShadowFrom, Object, ColorShadowFrom)                    \
    KX_FLAT_COLOR(Prefix##_ColorShadowTo, Object, ColorShadowTo)                        \
    KX_FLAT_COLOR(Prefix##_ColorHighLightFrom, Object, ColorHighLightFrom)              \
    KX_FLAT_COLOR(Prefix##_ColorHighLightTo, Object, ColorHighLightTo)                  \
    KX_FLAT_COLOR(Prefix##_PenColor, Object, PenColor)                                  \
    KX_FLAT_GRADSETTINGS(Prefix##_SurfaceGrad, (Object)->SurfaceGrad())

}  // namespace kx
