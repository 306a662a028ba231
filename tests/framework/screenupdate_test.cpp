// What a control asks Qt to repaint after drawing on its surface, and whether it paints
// opaquely: only the changed rectangles reach the screen, and a surface without a
// transparent pixel is copied over nothing.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPaintEvent>
#include <memory>
#include <vector>

#include "kx/framework/control.h"

namespace kx {
namespace {

class PatchControl : public TKxGraphicControl {
  public:
    using TKxGraphicControl::TKxGraphicControl;
    bool leaveHole = false;
    std::vector<QRegion> painted;

    // A reading's kind of drawing: one copy of a small bitmap onto the surface.
    void Patch(const TRect& r) {
        TBitmap patch(r.Width(), r.Height());
        patch.Canvas().Brush().SetColor(clBlue);
        patch.Canvas().FillRect(TRect{0, 0, r.Width(), r.Height()});
        Canvas().Draw(r.Left, r.Top, patch);
    }

  protected:
    void Paint() override {
        // The surface starts transparent; the hole is the pixel at (0, 0) left unpainted.
        Canvas().Brush().SetColor(clRed);
        const TRect r = ClientRect();
        Canvas().FillRect(TRect{leaveHole ? 1 : 0, 0, r.Right, r.Bottom});
        if (leaveHole) Canvas().FillRect(TRect{0, 1, 1, r.Bottom});
    }
    void paintEvent(QPaintEvent* e) override {
        painted.push_back(e->region());
        TKxGraphicControl::paintEvent(e);
    }
};

std::unique_ptr<PatchControl> shown(bool hole = false) {
    auto c = std::make_unique<PatchControl>();
    c->leaveHole = hole;
    c->SetBounds(0, 0, 100, 80);
    c->show();
    QApplication::processEvents();
    c->painted.clear();
    return c;
}

struct PatchCase {
    const char* name;
    std::vector<TRect> patches;
    QRegion expected;
};

class ScreenUpdate : public testing::TestWithParam<PatchCase> {};

TEST_P(ScreenUpdate, RepaintsOnlyWhatChanged) {
    const PatchCase& p = GetParam();
    auto c = shown();
    for (const TRect& r : p.patches)
        c->Patch(r);
    QApplication::processEvents();
    ASSERT_EQ(c->painted.size(), 1u);
    EXPECT_EQ(c->painted[0], p.expected);
}

std::vector<TRect> scattered(int n) {
    std::vector<TRect> out;
    for (int i = 0; i < n; ++i)
        out.push_back(TRect{i * 10, (i % 2) * 40, i * 10 + 5, (i % 2) * 40 + 5});
    return out;
}

INSTANTIATE_TEST_SUITE_P(
    Patches, ScreenUpdate,
    testing::Values(
        PatchCase{"one", {TRect{10, 10, 30, 30}}, QRegion(10, 10, 20, 20)},
        PatchCase{"twoApart",
                  {TRect{0, 0, 10, 10}, TRect{80, 60, 100, 80}},
                  QRegion(0, 0, 10, 10) + QRegion(80, 60, 20, 20)},
        PatchCase{
            "inside", {TRect{10, 10, 50, 50}, TRect{20, 20, 30, 30}}, QRegion(10, 10, 40, 40)},
        PatchCase{"rowsJoin",
                  {TRect{5, 5, 25, 6}, TRect{5, 6, 25, 7}, TRect{5, 7, 25, 8}},
                  QRegion(5, 5, 20, 3)},
        PatchCase{"clippedAtTheEdge", {TRect{90, 70, 130, 90}}, QRegion(90, 70, 10, 10)},
        // Beyond a handful of scattered parts the whole control is one request.
        PatchCase{"many", scattered(10), QRegion(0, 0, 100, 80)}),
    [](const testing::TestParamInfo<PatchCase>& i) { return std::string(i.param.name); });

TEST(ScreenUpdateWhole, DrawingThroughThePainterRepaintsTheWholeControl) {
    auto c = shown();
    c->Canvas().Pen().SetColor(clBlack);
    c->Canvas().TextOut(2, 2, QStringLiteral("x"));
    c->Patch(TRect{10, 10, 20, 20});
    QApplication::processEvents();
    ASSERT_EQ(c->painted.size(), 1u);
    EXPECT_EQ(c->painted[0], QRegion(0, 0, 100, 80));
}

TEST(ScreenUpdateWhole, RequestsStartAfreshAfterEachPaint) {
    auto c = shown();
    c->Patch(TRect{10, 10, 50, 50});
    QApplication::processEvents();
    c->Patch(TRect{20, 20, 30, 30});  // inside the last request, but that one is served
    QApplication::processEvents();
    ASSERT_EQ(c->painted.size(), 2u);
    EXPECT_EQ(c->painted[1], QRegion(20, 20, 10, 10));
}

TEST(ScreenOpacity, AFullyCoveredSurfacePaintsOpaquely) {
    auto c = shown();
    EXPECT_TRUE(c->testAttribute(Qt::WA_OpaquePaintEvent));
    auto holed = shown(true);
    EXPECT_FALSE(holed->testAttribute(Qt::WA_OpaquePaintEvent));
    // The next paint without the hole makes it opaque, and back.
    holed->leaveHole = false;
    holed->Invalidate();
    QApplication::processEvents();
    EXPECT_TRUE(holed->testAttribute(Qt::WA_OpaquePaintEvent));
    holed->leaveHole = true;
    holed->Invalidate();
    QApplication::processEvents();
    EXPECT_FALSE(holed->testAttribute(Qt::WA_OpaquePaintEvent));
}

TEST(ScreenOpacity, AClassThatPaintsOpaquelyByItselfKeepsItsChoice) {
    PatchControl c;
    c.setAttribute(Qt::WA_OpaquePaintEvent, true);
    c.leaveHole = true;
    c.SetBounds(0, 0, 20, 20);
    c.PaintToSurface();
    EXPECT_TRUE(c.testAttribute(Qt::WA_OpaquePaintEvent));
}

TEST(ScreenOpacity, TheScreenShowsTheSurfacePixelForPixel) {
    QWidget window;
    window.resize(120, 100);
    auto* c = new PatchControl(&window);
    c->SetBounds(10, 10, 100, 80);
    window.show();
    QApplication::processEvents();
    c->Patch(TRect{20, 20, 40, 40});
    QApplication::processEvents();
    const QImage shot = c->grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(shot, c->Surface().Image().convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

TEST(AllOpaque, EmptyTransparentAndOpaqueBitmaps) {
    TBitmap empty;
    EXPECT_FALSE(KxAllOpaque(empty));
    TBitmap b(3, 2);
    b.ClearTransparent();
    EXPECT_FALSE(KxAllOpaque(b));
    b.Canvas().Brush().SetColor(clWhite);
    b.Canvas().FillRect(TRect{0, 0, 3, 2});
    EXPECT_TRUE(KxAllOpaque(b));
    b.MutableImage().setPixel(2, 1, qRgba(0, 0, 0, 254));
    EXPECT_FALSE(KxAllOpaque(b));
}

}  // namespace
}  // namespace kx
