// Numbers, times and durations skip text shaping: the glyphs must come out exactly where
// the full text layout puts them, in every font and size, and with the same width.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "kx/host/bitmap.h"
#include "kx/host/graphics.h"

namespace kx {
namespace {

TEST(TextLayout, PlainTextsMatchTheFullLayout) {
    const struct {
        const char* name;
        int size;
        TFontStyles style;
    } fonts[] = {{"Arial", 8, 0},           {"System", 10, 0},         {"Arial", 13, fsBold},
                 {"Times New Roman", 11, 0}, {"Courier New", 9, fsItalic}, {"Arial", 28, 0}};
    const char* texts[] = {"0012h:05m:07s", "12:05:07", "-1,234.5E+7", "99%", "h", "mss:hm",
                           "10:00:00 AM", "25 Nov 2026"};  // the last two are shaped
    for (const auto& f : fonts) {
        for (const char* text : texts) {
            SCOPED_TRACE(std::string(f.name) + " " + std::to_string(f.size) + " " + text);
            TBitmap ours;
            ours.SetSize(300, 60);
            TCanvas& c = ours.Canvas();
            c.Brush().SetColor(clWhite);
            c.FillRect(TRect{0, 0, 300, 60});
            c.Font().SetName(f.name);
            c.Font().SetSize(f.size);
            c.Font().SetStyle(f.style);
            c.Brush().SetStyle(bsClear);
            c.TextOut(3, 2, text);

            QImage full(300, 60, QImage::Format_RGB32);
            full.fill(Qt::white);
            QPainter p(&full);
            p.setFont(c.Font().ToQFont());
            p.setPen(Qt::black);
            p.drawText(QPoint(3, 2 + c.Font().Metrics().ascent()), text);
            p.end();

            EXPECT_EQ(ours.Image().convertToFormat(QImage::Format_RGB32), full);
            EXPECT_EQ(c.TextWidth(text), c.Font().Metrics().horizontalAdvance(text));
        }
    }
    // The cases above take the short way in the pinned fonts.
    TFont f;
    f.SetName("Arial");
    int w = 0;
    for (const char* text : {"0012h:05m:07s", "12:05:07", "-1,234.5E+7"})
        EXPECT_TRUE(f.LayOutNumber(text, nullptr, w)) << text;
    EXPECT_FALSE(f.LayOutNumber("10:00:00 AM", nullptr, w));
}

}  // namespace
}  // namespace kx
