#pragma once
// A showcase page: a title, then sections of labelled sample cards laid out in rows.
// The page grows downwards as sections are added and is cropped when saved.
#include <QString>
#include <functional>
#include <vector>

#include "kx/host/bitmap.h"

namespace kxshow {

class TSheet {
  public:
    TSheet(int32_t width, const QString& title, const QString& subtitle);

    kx::TCanvas& Canvas() { return bitmap_.Canvas(); }

    // A section heading with an optional note on the same line.
    void Section(const QString& heading, const QString& note = QString());
    // count cards of w x h (label strip included) in rows across the page; label(i) goes
    // under card i. Returns the sample area of each card, above its label.
    std::vector<kx::TRect> Cards(int32_t count, int32_t w, int32_t h,
                                 const std::function<QString(int32_t)>& label);
    // Writes the used part of the page.
    bool Save(const QString& path);

    // Standard fonts of the page; each sets the canvas font and a clear brush.
    void LabelFont();
    void SampleFont(int32_t points, bool bold = false);

    static constexpr kx::TColor kPage = kx::RGB(250, 250, 248);
    static constexpr kx::TColor kCard = kx::clBtnFace;
    static constexpr kx::TColor kCardLine = kx::RGB(208, 208, 204);
    static constexpr kx::TColor kInk = kx::RGB(48, 48, 48);
    static constexpr kx::TColor kNote = kx::RGB(110, 110, 110);

  private:
    kx::TBitmap bitmap_;
    int32_t width_;
    int32_t y_;
};

// Draws a small cross marking an anchor point (it does not change the pen afterwards
// beyond its colour and width).
void MarkAnchor(kx::TCanvas& canvas, kx::TPoint p, kx::TColor color = kx::clRed);
kx::TPoint CenterOf(const kx::TRect& r);

}  // namespace kxshow
