#include "kx/framework/areacomposer.h"

#include <span>

#include "kx/drawing/geometry.h"
#include "kx/framework/analogcontrol.h"
#include "kx/framework/control.h"
#include "kx/framework/minmax.h"

namespace kx {

bool TKxAreaComposer::Begin(const TKxControl& control, TBitmap& background, bool whole) {
    const TRect all{0, 0, background.Width(), background.Height()};
    const bool fits = work_.Width() == all.Right && work_.Height() == all.Bottom &&
                      work_.DeviceRatio() == background.DeviceRatio();
    const bool reuse = valid_ && fits && !whole;
    count_ = 0;
    if (!reuse) {
        control.MakeCompatibleBitmap(work_, all.Right, all.Bottom, background.GridOrigin());
        dirty_[count_++] = all;
    }
    valid_ = true;
    return reuse;
}

void TKxAreaComposer::Add(const TRect& r) {
    if (count_ < dirty_.size() && !KxIsEmptyRect(r)) dirty_[count_++] = r;
}

TCanvas& TKxAreaComposer::Restore(TBitmap& background) {
    const TRect all{0, 0, background.Width(), background.Height()};
    TCanvas& w = work_.Canvas();
    w.SetCopyMode(cmSrcCopy);
    for (size_t i = 0; i < count_; ++i) {
        KxRectIntersection(dirty_[i], all, dirty_[i]);
        w.CopyRect(dirty_[i], background.Canvas(), dirty_[i]);  // an empty one copies nothing
    }
    return w;
}

void TKxAreaComposer::Put(TCanvas& canvas, TPoint at) {
    canvas.SetCopyMode(cmSrcCopy);
    for (size_t i = 0; i < count_; ++i)
        canvas.CopyRect(KxOffsetRect(dirty_[i], at.X, at.Y), work_.Canvas(), dirty_[i]);
}

void TKxPointerComposer::Compose(TCanvas& canvas, const TKxAnalogGControl& control,
                                 TBitmap& background, TPoint at, const std::array<TPoint, 3>& p,
                                 const std::array<TPoint, 6>& m, int32_t minPos, int32_t maxPos,
                                 TColor pointerFill) {
    const std::array<TRect, 3> now{KxPointsBounds(p.data(), 3, kKxOutlineReach),
                                   KxPointsBounds(m.data(), 3, kKxOutlineReach),
                                   KxPointsBounds(m.data() + 3, 3, kKxOutlineReach)};
    if (Begin(control, background))
        for (size_t i = 0; i < now.size(); ++i)
            Add(KxUnionRect(now[i], last_[i]));
    last_ = now;
    TCanvas& w = Restore(background);
    const TMinMax& mm = *control.MinMax();
    KxPaintMinMaxMarkers(w, m.data(), mm.MinVisible(), control.MarkerColor(minPos, mm.MinColor()),
                         mm.MaxVisible(), control.MarkerColor(maxPos, mm.MaxColor()));
    w.Brush().SetColor(pointerFill);
    w.Polygon(std::span<const TPoint>(p.data(), 3));
    Put(canvas, at);
}

void KxPaintMinMaxMarkers(TCanvas& canvas, const TPoint* m, bool minShown, TColor minFill,
                          bool maxShown, TColor maxFill) {
    canvas.Pen().SetMode(pmCopy);
    canvas.Pen().SetStyle(psSolid);
    canvas.Pen().SetWidth(1);
    canvas.Pen().SetColor(clBlack);
    canvas.Brush().SetStyle(bsSolid);
    if (minShown) {
        canvas.Brush().SetColor(minFill);
        canvas.Polygon(std::span<const TPoint>(m, 3));
    }
    if (maxShown) {
        canvas.Brush().SetColor(maxFill);
        canvas.Polygon(std::span<const TPoint>(m + 3, 3));
    }
}

}  // namespace kx
