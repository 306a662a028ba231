// The control's surface at device pixel ratios, and palette changes.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPixmap>

#include "kx/framework/control.h"
#include "kx/host/color.h"

namespace kx {
namespace {

// A control whose widget reports the ratio the test gives it, as a screen would.
class RatioControl : public TKxGraphicControl {
  public:
    using TKxGraphicControl::TKxGraphicControl;
    double ratio = 1.0;
    int paints = 0;
    TColor face = clBtnFace;

  protected:
    int metric(PaintDeviceMetric m) const override {
        if (m == PdmDevicePixelRatioScaled) return int(ratio * devicePixelRatioFScale());
        if (m == PdmDevicePixelRatio) return int(std::ceil(ratio));
        return TKxGraphicControl::metric(m);
    }
    void Paint() override {
        ++paints;
        TCanvas& c = Canvas();
        c.Brush().SetColor(face);
        c.FillRect(ClientRect());
        c.Brush().SetColor(clRed);
        c.Pen().SetColor(clBlack);
        c.Ellipse(1, 1, 15, 9);
        c.Font().SetName(QStringLiteral("Arial"));
        c.Font().SetSize(8);
        c.Brush().SetStyle(bsClear);
        c.TextOut(3, 1, QStringLiteral("Kx"));
    }
};

TEST(ControlHiDpi, SurfaceFollowsTheWidgetRatio) {
    const struct {
        double ratio;
        QSize device;
    } cases[] = {{1.0, {20, 10}}, {2.0, {40, 20}}, {1.5, {30, 15}}};
    for (const auto& c : cases) {
        RatioControl w;
        w.ratio = c.ratio;
        w.SetBounds(0, 0, 20, 10);
        w.PaintToSurface();
        EXPECT_EQ(w.SurfaceRatio(), c.ratio);
        EXPECT_EQ(w.Surface().Width(), 20);
        EXPECT_EQ(w.Surface().Image().size(), c.device);
        EXPECT_EQ(w.Surface().Pixel(19, 9), ColorToRGB(clBtnFace));
        // Cached bitmaps made compatible take the ratio and the area's grid position.
        TBitmap cache;
        w.MakeCompatibleBitmap(cache, 5, 3, TPoint{1, 1});
        EXPECT_EQ(cache.DeviceRatio(), c.ratio);
        EXPECT_EQ(cache.GridOrigin(), (TPoint{1, 1}));
        EXPECT_EQ(cache.Width(), 5);
    }
}

TEST(ControlHiDpi, ANewRatioRecreatesAndRepaintsTheSurface) {
    RatioControl w;
    w.SetBounds(0, 0, 20, 10);
    w.PaintToSurface();
    ASSERT_EQ(w.paints, 1);
    // The same ratio on another screen: nothing to do.
    QEvent same(QEvent::ScreenChangeInternal);
    QCoreApplication::sendEvent(&w, &same);
    w.PaintToSurface();
    EXPECT_EQ(w.paints, 1);
    w.ratio = 1.5;
    QEvent moved(QEvent::ScreenChangeInternal);
    QCoreApplication::sendEvent(&w, &moved);
    EXPECT_TRUE(w.RedrawNeeded());
    EXPECT_EQ(w.Surface().Image().size(), QSize(30, 15));
    w.PaintToSurface();
    EXPECT_EQ(w.paints, 2);
    // A change the widget was not told about is caught before the next paint.
    w.ratio = 2.0;
    w.PaintToSurface();
    EXPECT_EQ(w.paints, 3);
    EXPECT_EQ(w.Surface().Image().size(), QSize(40, 20));
}

// The screen gets the surface's device pixels one to one.
TEST(ControlHiDpi, PaintEventCopiesDevicePixelsUnscaled) {
    for (const double ratio : {1.0, 2.0, 1.5}) {
        RatioControl w;
        w.ratio = ratio;
        w.SetBounds(0, 0, 20, 10);
        const QImage shown = w.grab().toImage().convertToFormat(QImage::Format_RGB32);
        const QImage surface = w.Surface().Image().convertToFormat(QImage::Format_RGB32);
        ASSERT_EQ(shown.size(), surface.size()) << ratio;
        EXPECT_TRUE(shown == surface) << ratio;
    }
}

class PaletteChange : public ::testing::Test {
  protected:
    void SetUp() override { original = QApplication::palette(); }
    void TearDown() override {
        QApplication::setPalette(original);
        SetSystemColorsFollowPalette(true);
        ResetSystemColors();
    }
    static QPalette withButton(QColor c) {
        QPalette p = QApplication::palette();
        p.setColor(QPalette::Button, c);
        return p;
    }
    QPalette original;
};

TEST_F(PaletteChange, ApplicationPaletteRepaintsInTheNewSystemColours) {
    RatioControl w;
    w.SetBounds(0, 0, 20, 10);
    w.PaintToSurface();
    ASSERT_EQ(w.Surface().Pixel(19, 9), 0xF0F0F0);  // the classic button face
    QApplication::setPalette(withButton(QColor(10, 20, 30)));
    // The table follows at once; the widgets hear of it through posted events.
    EXPECT_EQ(ColorToRGB(clBtnFace), RGB(10, 20, 30));
    w.PaintToSurface();
    EXPECT_EQ(w.paints, 1);
    QCoreApplication::sendPostedEvents();
    w.PaintToSurface();
    EXPECT_EQ(w.paints, 2);
    EXPECT_EQ(w.Surface().Pixel(19, 9), RGB(10, 20, 30));
}

TEST_F(PaletteChange, TheTableFollowsOnlyWhenAskedTo) {
    RatioControl w;
    w.SetBounds(0, 0, 20, 10);
    w.PaintToSurface();
    SetSystemColorsFollowPalette(false);
    EXPECT_FALSE(SystemColorsFollowPalette());
    QApplication::setPalette(withButton(QColor(10, 20, 30)));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(ColorToRGB(clBtnFace), 0xF0F0F0);
    w.PaintToSurface();
    EXPECT_EQ(w.paints, 2);  // repainted all the same
    SetSystemColorsFollowPalette(true);
    SyncSystemColorsWithApplicationPalette();
    EXPECT_EQ(ColorToRGB(clBtnFace), RGB(10, 20, 30));
}

TEST_F(PaletteChange, AWidgetPaletteRepaintsButKeepsTheSystemColours) {
    RatioControl w;
    w.SetBounds(0, 0, 20, 10);
    w.PaintToSurface();
    w.setPalette(withButton(QColor(10, 20, 30)));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(ColorToRGB(clBtnFace), 0xF0F0F0);
    w.PaintToSurface();
    EXPECT_EQ(w.paints, 2);
}

}  // namespace
}  // namespace kx
