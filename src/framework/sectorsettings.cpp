#include "kx/framework/sectorsettings.h"

#include <algorithm>
#include <array>

#include "kx/framework/setfield.h"
#include "kx/host/numeric.h"

namespace kx {

void TSectorSettings::SetSector1Color(TColorArg v) {
    SetField(*this, sector1Color_, v);
}
void TSectorSettings::SetSector1From(int32_t v) {
    SetField(*this, sector1From_, v);
}
void TSectorSettings::SetSector1To(int32_t v) {
    SetField(*this, sector1To_, v);
}
void TSectorSettings::SetSector2Color(TColorArg v) {
    SetField(*this, sector2Color_, v);
}
void TSectorSettings::SetSector2From(int32_t v) {
    SetField(*this, sector2From_, v);
}
void TSectorSettings::SetSector2To(int32_t v) {
    SetField(*this, sector2To_, v);
}
void TSectorSettings::SetSector3Color(TColorArg v) {
    SetField(*this, sector3Color_, v);
}
void TSectorSettings::SetSector3From(int32_t v) {
    SetField(*this, sector3From_, v);
}
void TSectorSettings::SetSector3To(int32_t v) {
    SetField(*this, sector3To_, v);
}
void TSectorSettings::SetOffset(int32_t v) {
    SetField(*this, offset_, v);
}
void TSectorSettings::SetWidthOffset(int32_t v) {
    SetField(*this, widthOffset_, v);
}

bool TSectorSettings::CheckSectorColor(int32_t ppt, TColor& color) const {
    bool found = false;
    if (sector1From_ <= ppt && ppt <= sector1To_) {
        color = sector1Color_;
        found = true;
    }
    if (sector2From_ <= ppt && ppt <= sector2To_) {
        color = sector2Color_;
        found = true;
    }
    if (sector3From_ <= ppt && ppt <= sector3To_) {
        color = sector3Color_;
        found = true;
    }
    return found;
}

void TSectorSettings::AssignTo(TKxPersistent* dest) const {
    auto* d = qobject_cast<TSectorSettings*>(dest);
    if (!d) return TKxPersistent::AssignTo(dest);
    d->SetSector1Color(sector1Color_);
    d->SetSector2Color(sector2Color_);
    d->SetSector3Color(sector3Color_);
    d->SetSector1From(sector1From_);
    d->SetSector2From(sector2From_);
    d->SetSector3From(sector3From_);
    d->SetSector1To(sector1To_);
    d->SetSector2To(sector2To_);
    d->SetSector3To(sector3To_);
}

void KxDrawSectorBands(TCanvas& canvas, const TRect& rect, const TSectorSettings& s,
                       bool vertical) {
    struct TBand {
        int32_t from, to;
        TColor color;
    };
    const std::array<TBand, 3> bands{{{s.Sector1From(), s.Sector1To(), s.Sector1Color()},
                                      {s.Sector2From(), s.Sector2To(), s.Sector2Color()},
                                      {s.Sector3From(), s.Sector3To(), s.Sector3Color()}}};
    const int64_t span =
        vertical ? int64_t(rect.Bottom) - rect.Top : int64_t(rect.Right) - rect.Left;
    const float f = float(span) / 1000.0f;
    canvas.Brush().SetStyle(bsSolid);
    canvas.Pen().SetStyle(psClear);
    for (const TBand& b : bands) {
        if (int64_t(b.to) - b.from <= 0 || b.to <= 0 || b.from >= 1000) continue;
        canvas.Brush().SetColor(b.color);
        canvas.Pen().SetColor(b.color);
        const int32_t from = Round(double(f) * std::max(0, b.from));
        const int32_t to = Round(double(f) * std::min(1000, b.to));
        if (vertical)
            canvas.Rectangle(rect.Left, WrapSub(rect.Bottom, WrapSub(from, 1)), rect.Right,
                             WrapSub(rect.Bottom, to));
        else
            canvas.Rectangle(WrapAdd(rect.Left, from), rect.Top, WrapAdd(rect.Left, WrapAdd(to, 1)),
                             rect.Bottom);
    }
    canvas.Pen().SetStyle(psSolid);
}

}  // namespace kx
