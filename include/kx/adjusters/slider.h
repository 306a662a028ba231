#pragma once
// Sliders: TKxHSlider and TKxVSlider set a value with a thumb that slides along a sunken
// track beside a straight scale. The track carries the coloured sectors; a value box with
// the unit stands at the top and the signal names at the bottom, as on the dial. Value
// model, keys and wheel come from TKxAnalogCControl (adjuster.h); TKxSlider holds what the
// two share.
//
// Properties in declaration order, after the frame's (framedadjuster.h: BevelOuter,
// BevelValue, FontValue, Options):
//   BevelTrack     TKxSBevel: Style bsLowered, Width 1, Spacing 0, BevelLine blNone,
//                  Color clBtnShadow: the track
//   ScaleSettings  TScaleSettings: font size 8; PosLeftTop puts the scale above the track
//                  (TKxHSlider) or left of it (TKxVSlider)
//   SectorSettings TSectorSettings: the three sectors, drawn on the track with opSector
//   ThumbSize      int32, 20 (8..200; other values are ignored): the thumb's length across
//                  the track; along it the thumb is 2 Round(0.2 ThumbSize) + 1 pixels
//   TrackWidth     int32, 6 (2..100; other values are ignored): the track's depth across,
//                  bevel included
// Options: all eight, opBevelOuter, opUnit, opValue, opName1, opName2, opScale,
// opScaleText, opSector.
// Initial size: TKxHSlider 240 x 128, TKxVSlider 112 x 240.
//
// Layout (Paint), TKxHSlider; TKxVSlider is the same turned upright, the range's start at
// the bottom:
//  - the frame of every adjuster (adjusterframe.h): outer bevel, value box and unit at the
//    top, names at the bottom, each giving way to the track when there is no room;
//  - in the rest, a block of the thumb strip (ThumbSize + 1 high), a 2-pixel gap and the
//    scale is centred vertically; the scale takes ScaleThickness and the half label height
//    + 1 by which its labels reach beyond it (StepLength + 1 without labels);
//    the scale is left out when the block does not fit, its labels when the track is
//    shorter than they need without crowding (ScaleMinLength);
//  - the track's positions run from ScaleStart to ScaleEnd: m = max(a, label width div 2)
//    + 1 pixels in from either side, a = Round(0.2 ThumbSize) being the thumb's half
//    width, so that neither thumb nor label leaves the control;
//  - the track is TrackWidth deep, centred on the thumb's middle, from a pixels before
//    the first position to a + 1 after the last; the sectors fill its inside between the
//    first and the last position (KxDrawSectorBands);
//  - the thumb (KxThumb) is centred on the track at ScaleStart + Round(f x ppt), f =
//    (ScaleEnd - ScaleStart) / 1000 in single precision; its grip is ColorFocus with the
//    focus, ColorNonFocus without, clBtnShadow while disabled.
// A rest too small for the thumb strip, or a track of fewer than 2 positions, shows the
// frame only: no track, no thumb, no mouse area.
//
// A reading (or focus change) composes the thumb on a copy of the thumb strip's
// background and puts the union of the old and the new thumb on the surface in one copy;
// the value box's digits are drawn in one copy too. Nothing else is redrawn.
//
// Mouse: a press on the thumb grabs it without changing the value; while it is held the
// digit is the one at the press plus Round(TotalDigit x d / (ScaleEnd - ScaleStart)) in
// double, d being how far the mouse has moved along the track since the press, clamped
// to the range (the thumb follows the mouse without jumping to it). A press on the strip
// beside the thumb moves by ChangeLarge towards the press, once per press. Either reports
// OnValueChanged on the release.
#include "kx/adjusters/framedadjuster.h"
#include "kx/framework/sbevel.h"
#include "kx/framework/scalesettings.h"
#include "kx/framework/sectorsettings.h"
#include "kx/host/bitmap.h"

namespace kx {

class TKxSlider : public TKxFramedAdjuster {
    Q_OBJECT
  public:
    enum TSliderOption : int {
        opBevelOuter,
        opUnit,
        opValue,
        opName1,
        opName2,
        opScale,
        opScaleText,
        opSector
    };
    Q_ENUM(TSliderOption)
    using TSliderOptions = uint8_t;
    static constexpr TSliderOptions SliderOption(TSliderOption o) {
        return TSliderOptions(1u << o);
    }
    static constexpr TSliderOptions kAllOptions = 255;

  private:
    Q_PROPERTY(kx::TKxSBevel* BevelTrack READ BevelTrack WRITE SetBevelTrack DESIGNABLE false)
    Q_PROPERTY(kx::TScaleSettings* ScaleSettings READ ScaleSettings WRITE SetScaleSettings
                   DESIGNABLE false)
    Q_PROPERTY(kx::TSectorSettings* SectorSettings READ SectorSettings WRITE SetSectorSettings
                   DESIGNABLE false)
    Q_PROPERTY(int ThumbSize READ ThumbSize WRITE setThumbSize)
    Q_PROPERTY(int TrackWidth READ TrackWidth WRITE setTrackWidth)

  public:
    // The settings setters copy the given object; null is ignored.
    void Loaded() override;

    TKxSBevel* BevelTrack() const { return bevelTrack_; }
    void SetBevelTrack(const TKxSBevel* v);
    bool HasOption(TSliderOption o) const { return HasOptionBit(o); }
    TScaleSettings* ScaleSettings() const { return scaleSettings_; }
    void SetScaleSettings(const TScaleSettings* v);
    TSectorSettings* SectorSettings() const { return sectorSettings_; }
    void SetSectorSettings(const TSectorSettings* v);
    int32_t ThumbSize() const { return thumbSize_; }
    void SetThumbSize(int32_t v);
    int32_t TrackWidth() const { return trackWidth_; }
    void SetTrackWidth(int32_t v);

    bool Vertical() const { return vertical_; }
    // Layout results of the last Paint, in control coordinates; empty when too small.
    TRect TrackRect() const { return track_; }
    TRect StripRect() const { return strip_; }
    // The first and the last position of the track (ScaleStart, ScaleEnd).
    int32_t TrackStart() const { return start_; }
    int32_t TrackEnd() const { return end_; }
    // The thumb's centre along the track and its box, for the current value.
    int32_t ThumbPosition() const;
    TRect ThumbRect() const;

    void setThumbSize(int v) { SetThumbSize(v); }
    void setTrackWidth(int v) { SetTrackWidth(v); }

    KX_FLAT_SBEVEL(BevelTrack, BevelTrack())
    KX_FLAT_SCALESETTINGS(ScaleSettings, ScaleSettings())
    KX_FLAT_SECTORSETTINGS(SectorSettings, SectorSettings())

  protected:
    TKxSlider(QWidget* parent, bool vertical);
    void Paint() override;
    void ValueChange() override;
    void MouseSlide(Qt::KeyboardModifiers shift, int32_t x, int32_t y, TPoint lastPos) override;
    void mousePressEvent(QMouseEvent* e) override;

  private:
    // The rectangle a and b (along the track, a <= b) and c and d (across it) describe.
    TRect oriented(int32_t a, int32_t b, int32_t c, int32_t d) const;
    // Along and across the track.
    int32_t along(TPoint p) const { return vertical_ ? p.Y : p.X; }
    int32_t halfThumb() const;
    bool layOut(TCanvas& c, const TRect& rest);
    void paintTrack(TCanvas& c);
    void drawThumb();

    TKxSBevel* bevelTrack_;
    TScaleSettings* scaleSettings_;
    TSectorSettings* sectorSettings_;
    TBitmap background_;
    TBitmap work_;
    TRect strip_{};
    TRect track_{};
    TRect lastThumb_{};
    int32_t start_ = 0, end_ = 0;  // the track's first and last position
    int32_t middle_ = 0;           // the thumb's centre across the track
    int32_t pressAt_ = 0;          // where the press was, along the track
    int32_t pressDigit_ = 0;       // the digit at the press
    int32_t thumbSize_ = 20;
    int32_t trackWidth_ = 6;
    bool vertical_;
    bool painted_ = false;
    bool grabbed_ = false;
    bool pressed_ = false;  // a press whose step beside the thumb is still to come
};

class TKxHSlider : public TKxSlider {
    Q_OBJECT
  public:
    explicit TKxHSlider(QWidget* parent = nullptr);
};

class TKxVSlider : public TKxSlider {
    Q_OBJECT
  public:
    explicit TKxVSlider(QWidget* parent = nullptr);
};

}  // namespace kx
