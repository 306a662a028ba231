#pragma once
// TSectorSettings: three coloured sectors of an instrument's range. Bounds are per-mille
// positions (0..1000 of the digit span), inclusive at both ends; sectors may overlap or
// leave gaps.
#include <cstdint>

#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/host/canvas.h"
#include "kx/host/color.h"

namespace kx {

class TSectorSettings : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(int Sector1Color READ Sector1Color WRITE SetSector1Color)
    Q_PROPERTY(int Sector1From READ Sector1From WRITE SetSector1From)
    Q_PROPERTY(int Sector1To READ Sector1To WRITE SetSector1To)
    Q_PROPERTY(int Sector2Color READ Sector2Color WRITE SetSector2Color)
    Q_PROPERTY(int Sector2From READ Sector2From WRITE SetSector2From)
    Q_PROPERTY(int Sector2To READ Sector2To WRITE SetSector2To)
    Q_PROPERTY(int Sector3Color READ Sector3Color WRITE SetSector3Color)
    Q_PROPERTY(int Sector3From READ Sector3From WRITE SetSector3From)
    Q_PROPERTY(int Sector3To READ Sector3To WRITE SetSector3To)
    Q_PROPERTY(int Offset READ Offset WRITE SetOffset)
    Q_PROPERTY(int WidthOffset READ WidthOffset WRITE SetWidthOffset)
  public:
    explicit TSectorSettings(QObject* parent = nullptr) : TKxPersistent(parent) {}

    TColor Sector1Color() const { return sector1Color_; }
    void SetSector1Color(TColorArg v);
    int32_t Sector1From() const { return sector1From_; }
    void SetSector1From(int32_t v);
    int32_t Sector1To() const { return sector1To_; }
    void SetSector1To(int32_t v);
    TColor Sector2Color() const { return sector2Color_; }
    void SetSector2Color(TColorArg v);
    int32_t Sector2From() const { return sector2From_; }
    void SetSector2From(int32_t v);
    int32_t Sector2To() const { return sector2To_; }
    void SetSector2To(int32_t v);
    TColor Sector3Color() const { return sector3Color_; }
    void SetSector3Color(TColorArg v);
    int32_t Sector3From() const { return sector3From_; }
    void SetSector3From(int32_t v);
    int32_t Sector3To() const { return sector3To_; }
    void SetSector3To(int32_t v);

    // Geometry adjustments of the sector band; descendants interpret them.
    int32_t Offset() const { return offset_; }
    void SetOffset(int32_t v);
    int32_t WidthOffset() const { return widthOffset_; }
    void SetWidthOffset(int32_t v);

    // Mirrors the owning control's LogScale; stores only.
    bool LogScale() const { return logScale_; }
    void SetLogScale(bool v) { logScale_ = v; }

    // Whether ppt lies in a sector (From <= ppt <= To). Sectors 1, 2, 3 are tested in
    // that order and the last one that holds ppt gives color; when none does, color is
    // left alone and the result is false.
    bool CheckSectorColor(int32_t ppt, TColor& color) const;

    // To another TSectorSettings through the setters: the three colours, the three From
    // bounds, the three To bounds (one Change per property that differs). Offset and
    // WidthOffset are not copied.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    TColor sector1Color_ = clYellow;
    int32_t sector1From_ = 0;
    int32_t sector1To_ = 333;
    TColor sector2Color_ = clGreen;
    int32_t sector2From_ = 334;
    int32_t sector2To_ = 666;
    TColor sector3Color_ = clRed;
    int32_t sector3From_ = 667;
    int32_t sector3To_ = 1000;
    int32_t offset_ = 0;
    int32_t widthOffset_ = 0;
    bool logScale_ = false;
};

// The sectors as bands along a straight scale whose ends are rect's edges: left to right
// (horizontal) or bottom to top (vertical). A sector is drawn when To > From, To > 0 and
// From < 1000, clipped to 0..1000 per mille, as a rectangle without a pen (which fills
// one pixel less to the right and below): with f = length / 1000 in single precision,
// horizontally the columns Left + Round(f From) .. Left + Round(f To) - 1, upright the
// rows Bottom - Round(f To) .. Bottom - Round(f From) - 1, across from rect's top (left)
// to one pixel before its bottom (right).
void KxDrawSectorBands(TCanvas& canvas, const TRect& rect, const TSectorSettings& sectors,
                       bool vertical);

// The flat properties of a TSectorSettings (see flatproperty.h).
#define KX_FLAT_SECTORSETTINGS(Prefix, Object)                 \
    KX_FLAT_COLOR(Prefix##_Sector1Color, Object, Sector1Color) \
    KX_FLAT(int, Prefix##_Sector1From, Object, Sector1From)    \
    KX_FLAT(int, Prefix##_Sector1To, Object, Sector1To)        \
    KX_FLAT_COLOR(Prefix##_Sector2Color, Object, Sector2Color) \
    KX_FLAT(int, Prefix##_Sector2From, Object, Sector2From)    \
    KX_FLAT(int, Prefix##_Sector2To, Object, Sector2To)        \
    KX_FLAT_COLOR(Prefix##_Sector3Color, Object, Sector3Color) \
    KX_FLAT(int, Prefix##_Sector3From, Object, Sector3From)    \
    KX_FLAT(int, Prefix##_Sector3To, Object, Sector3To)        \
    KX_FLAT(int, Prefix##_Offset, Object, Offset)              \
    KX_FLAT(int, Prefix##_WidthOffset, Object, WidthOffset)

}  // namespace kx
