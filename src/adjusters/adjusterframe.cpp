#include "kx/adjusters/adjusterframe.h"

#include "kx/framework/names.h"
#include "kx/framework/valuebox.h"
#include "kx/host/numeric.h"

namespace kx {

TKxAdjusterFrame KxPaintAdjusterFrame(TCanvas& canvas, const TRect& client,
                                      const TKxAdjusterFrameSpec& spec) {
    TKxAdjusterFrame out;
    TRect r = client;
    if (spec.OuterBevel) {
        spec.Outer.PaintFilledBevel(canvas, r);
    } else {
        canvas.Brush().SetStyle(bsSolid);
        canvas.Brush().SetColor(spec.Outer.Color());
        canvas.FillRect(r);
    }
    const TNameSizes names = KxMeasureNames(canvas, spec.Font, spec.Signal);
    const int64_t namesH = (spec.Name1 ? names.Name1H : 0) + (spec.Name2 ? names.Name2H : 0);
    bool value = spec.Value, showNames = namesH > 0;
    const TKxValueBoxSize box =
        value ? KxMeasureValueBox(canvas, spec.FontValue, spec.Signal.SampleValueText(), spec.Font,
                                  spec.Unit ? spec.Signal.ValueUnit() : QString(), spec.ValueBevel)
              : TKxValueBoxSize{};
    const int64_t boxH = int64_t(box.BoxH) + spec.Outer.Spacing();
    if (value && box.BoxW > r.Width()) value = false;
    if (showNames && r.Height() - namesH - (value ? boxH : 0) < spec.MinRest) showNames = false;
    if (value && r.Height() - boxH < spec.MinRest) value = false;
    if (value) {
        out.Number = KxPaintFittedValueBox(canvas, r, box, spec.ValueBevel, spec.Font);
        r.Top = Saturate(int64_t(r.Top) + boxH);
    }
    KxPaintNames(canvas, spec.Font, spec.Signal, r, Div(spec.Outer.Spacing(), 2),
                 showNames && spec.Name1, showNames && spec.Name2, names);
    out.Rest = r;
    return out;
}

}  // namespace kx
