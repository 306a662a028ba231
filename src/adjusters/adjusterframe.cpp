#include "kx/adjusters/adjusterframe.h"

#include "kx/framework/names.h"
#include "kx/framework/valuebox.h"
#include "kx/host/numeric.h"

namespace kx {

TKxAdjusterFrame KxPaintAdjusterFrame(TCanvas& canvas, const TRect& client,
                                      const TKxAdjusterFrameParts& parts) {
    TKxAdjusterFrame out;
    TRect r = client;
    if (parts.OuterBevel) {
        parts.Outer.PaintFilledBevel(canvas, r);
    } else {
        canvas.Brush().SetStyle(bsSolid);
        canvas.Brush().SetColor(parts.Outer.Color());
        canvas.FillRect(r);
    }
    const TNameSizes names = KxMeasureNames(canvas, parts.Font, parts.Signal);
    const int64_t namesH = (parts.Name1 ? names.Name1H : 0) + (parts.Name2 ? names.Name2H : 0);
    bool value = parts.Value, showNames = namesH > 0;
    const TKxValueBoxSize box =
        value
            ? KxMeasureValueBox(canvas, parts.FontValue, parts.Signal.SampleValueText(), parts.Font,
                                parts.Unit ? parts.Signal.ValueUnit() : QString(), parts.ValueBevel)
            : TKxValueBoxSize{};
    const int64_t boxH = int64_t(box.BoxH) + parts.Outer.Spacing();
    if (value && box.BoxW > r.Width()) value = false;
    if (showNames && r.Height() - namesH - (value ? boxH : 0) < parts.MinRest) showNames = false;
    if (value && r.Height() - boxH < parts.MinRest) value = false;
    if (value) {
        out.Number = KxPaintFittedValueBox(canvas, r, box, parts.ValueBevel, parts.Font);
        r.Top = Saturate(int64_t(r.Top) + boxH);
    }
    KxPaintNames(canvas, parts.Font, parts.Signal, r, Div(parts.Outer.Spacing(), 2),
                 showNames && parts.Name1, showNames && parts.Name2, names);
    out.Rest = r;
    return out;
}

}  // namespace kx
