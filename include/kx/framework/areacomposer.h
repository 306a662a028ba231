#pragma once
// TKxAreaComposer: the moving parts of an instrument (pointer, markers, a column) are
// composed on a work copy of the cached background, and only the areas they covered
// before or cover now are restored and put on the surface. A reading then costs a few
// small row copies instead of the whole instrument.
//
// KxPaintMinMaxMarkers draws the two extreme markers the way every instrument shows them.
#include <array>
#include <cstddef>
#include <cstdint>

#include "kx/host/bitmap.h"
#include "kx/host/canvas.h"
#include "kx/host/color.h"
#include "kx/host/types.h"

namespace kx {

class TKxAnalogGControl;
class TKxControl;

class TKxAreaComposer {
  public:
    static constexpr size_t kMaxAreas = 4;

    // Starts a composition over background. True when the work bitmap still holds the last
    // composition at background's size and device ratio: the caller then marks what to
    // restore with Add. Otherwise, or with whole, the work bitmap is made on control's
    // device grid when it does not fit, and the whole background is marked.
    bool Begin(const TKxControl& control, TBitmap& background, bool whole = false);
    // Marks an area (background coordinates) to restore and put; an empty one is dropped,
    // and more than kMaxAreas are ignored.
    void Add(const TRect& r);
    // Copies the marked areas, clipped to background, from background onto the work
    // bitmap; returns its canvas for the moving parts.
    TCanvas& Restore(TBitmap& background);
    // Copies the marked areas from the work bitmap to canvas, which shows background's
    // top-left corner at `at`.
    void Put(TCanvas& canvas, TPoint at);
    // The next Begin marks the whole background (the background or the parts that only
    // change with a full composition have changed).
    void Invalidate() { valid_ = false; }

  private:
    TBitmap work_;
    std::array<TRect, kMaxAreas> dirty_{};
    size_t count_ = 0;
    bool valid_ = false;
};

// A straight meter's moving parts: the pointer triangle p over the marker triangles m,
// in background coordinates; each reading restores what they covered last time and now.
class TKxPointerComposer : public TKxAreaComposer {
  public:
    // Markers as control's MinMax shows them at the positions minPos and maxPos.
    void Compose(TCanvas& canvas, const TKxAnalogGControl& control, TBitmap& background, TPoint at,
                 const std::array<TPoint, 3>& p, const std::array<TPoint, 6>& m, int32_t minPos,
                 int32_t maxPos, TColor pointerFill);

  private:
    std::array<TRect, 3> last_{};
};

// The minimum and maximum markers, the triangles m[0..2] and m[3..5], each shown or not,
// filled in its colour with a one-pixel black outline. Leaves that pen and a solid brush.
void KxPaintMinMaxMarkers(TCanvas& canvas, const TPoint* m, bool minShown, TColor minFill,
                          bool maxShown, TColor maxFill);

}  // namespace kx
