// Round meters at device pixel ratios, and in a new application palette.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPixmap>

#include "kx/blink/flashtimer.h"
#include "kx/host/color.h"
#include "kx/indicators/rmeter.h"

namespace kx {
namespace {

class RatioMeter : public TKx270Meter {
  public:
    explicit RatioMeter(double r) : ratio(r) {}
    double ratio;

  protected:
    int metric(PaintDeviceMetric m) const override {
        if (m == PdmDevicePixelRatioScaled) return int(ratio * devicePixelRatioFScale());
        if (m == PdmDevicePixelRatio) return int(std::ceil(ratio));
        return TKx270Meter::metric(m);
    }
};

class MeterHiDpi : public ::testing::TestWithParam<double> {
  protected:
    void TearDown() override { ClearFlashList(); }
};

TEST_P(MeterHiDpi, DrawsAtDeviceResolution) {
    const double ratio = GetParam();
    RatioMeter hi(ratio), flat(1.0);
    for (RatioMeter* m : {&hi, &flat}) {
        m->Loaded();
        m->SetLimitUpper(200.0f);
        m->SetValue(30.0f);
        m->PaintToSurface();
    }
    const QImage& img = hi.Surface().Image();
    EXPECT_EQ(hi.width(), flat.width());  // the layout stays logical
    EXPECT_EQ(hi.ScaleRect(), flat.ScaleRect());
    EXPECT_EQ(img.size(), QSize(hi.Canvas().DeviceX(hi.width()), hi.Canvas().DeviceY(hi.height())));
    EXPECT_EQ(hi.Background().DeviceRatio(), ratio);
    const QImage scaledUp =
        flat.Surface().Image().scaled(img.size(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
    EXPECT_FALSE(img == scaledUp);
    // The same picture in logical terms: the needle points the same way.
    const TRect s = hi.ScaleRect();
    const TPoint pivot = hi.ArrowField()[1];
    EXPECT_EQ(hi.Surface().Pixel(s.Left + pivot.X, s.Top + pivot.Y),
              flat.Surface().Pixel(s.Left + pivot.X, s.Top + pivot.Y));
}

// A reading composes only the needle's areas; at any ratio that must give the very
// pixels of a full repaint at the same reading.
TEST_P(MeterHiDpi, ReadingsComposeTheSamePixelsAsAFullPaint) {
    RatioMeter m(GetParam());
    m.Loaded();
    m.SetLimitUpper(200.0f);
    m.PaintToSurface();
    for (const float v : {10.0f, 47.0f, 83.0f, 52.0f}) {
        m.SetValue(v);
        const QImage composed = m.Surface().Image().copy();
        m.Invalidate();
        m.PaintToSurface();
        EXPECT_TRUE(composed == m.Surface().Image()) << v;
    }
}

INSTANTIATE_TEST_SUITE_P(Ratios, MeterHiDpi, ::testing::Values(2.0, 1.5));

TEST(MeterPalette, AnApplicationPaletteChangeRepaintsTheMeterOnScreen) {
    const QPalette original = QApplication::palette();
    TKx270Meter m;
    m.show();
    QCoreApplication::processEvents();
    const QImage before = m.grab().toImage().convertToFormat(QImage::Format_RGB32);
    std::vector<QPoint> face;
    for (int y = 0; y < before.height(); ++y)
        for (int x = 0; x < before.width(); ++x)
            if ((before.pixel(x, y) & 0xFFFFFF) == 0xF0F0F0) face.emplace_back(x, y);
    ASSERT_GT(face.size(), 100u);
    QPalette p = original;
    p.setColor(QPalette::Button, QColor(0x30, 0x60, 0x90));
    QApplication::setPalette(p);
    QCoreApplication::processEvents();
    const QImage after = m.grab().toImage().convertToFormat(QImage::Format_RGB32);
    size_t changed = 0;
    for (const QPoint& pt : face)
        changed += (after.pixel(pt) & 0xFFFFFF) == 0x306090;
    EXPECT_EQ(changed, face.size());
    QApplication::setPalette(original);
    ResetSystemColors();
}

}  // namespace
}  // namespace kx
