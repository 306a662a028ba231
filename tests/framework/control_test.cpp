// The control frame: update phases, Loaded, the surface and painting.
#include <gtest/gtest.h>

#include <QApplication>

#include "framework/control.h"

namespace kx {
namespace {

class ProbeControl : public TKxGraphicControl {
  public:
    using TKxGraphicControl::TKxGraphicControl;
    int paramChanges = 0;
    int paints = 0;
    int loads = 0;
    QObject* lastSender = nullptr;
    void Loaded() override {
        TKxGraphicControl::Loaded();
        ++loads;
    }

  protected:
    void ParamChange(QObject* sender) override {
        ++paramChanges;
        lastSender = sender;
        Invalidate();
    }
    void Paint() override {
        ++paints;
        Canvas().Brush().SetColor(clRed);
        Canvas().FillRect(ClientRect());
    }
};

TEST(ControlFrame, UpdatePhaseCoalescesChangesIntoOneParamChange) {
    ProbeControl c;
    for (int i = 0; i < 3; ++i)
        c.BeginUpdate();
    for (int i = 0; i < 5; ++i)
        c.Change();
    c.EndUpdate();
    c.EndUpdate();
    EXPECT_EQ(c.paramChanges, 0);
    c.EndUpdate();
    EXPECT_EQ(c.paramChanges, 1);
    EXPECT_EQ(c.lastSender, &c);
    // An unmatched EndUpdate stays at zero and changes once more.
    c.EndUpdate();
    EXPECT_EQ(c.UpdateCount(), 0);
    EXPECT_EQ(c.paramChanges, 2);
}

TEST(ControlFrame, LoadedRunsByItselfOnFirstPolishOnly) {
    ProbeControl c;
    EXPECT_FALSE(c.IsLoaded());
    c.ensurePolished();
    c.ensurePolished();
    EXPECT_TRUE(c.IsLoaded());
    EXPECT_EQ(c.loads, 1);
    ProbeControl d;
    d.Loaded();
    d.ensurePolished();
    EXPECT_EQ(d.loads, 1);
}

TEST(ControlFrame, PaintRunsOncePerInvalidateOrResizeIntoTheSurface) {
    ProbeControl c;
    c.SetBounds(0, 0, 20, 10);
    c.PaintToSurface();
    EXPECT_EQ(c.Surface().Pixel(19, 9), clRed);
    c.PaintToSurface();
    EXPECT_EQ(c.paints, 1);  // nothing pending
    c.Invalidate();
    EXPECT_TRUE(c.RedrawNeeded());
    c.PaintToSurface();
    EXPECT_EQ(c.paints, 2);
    c.SetBounds(5, 5, 30, 12);
    EXPECT_EQ(c.Surface().Width(), 30);
    EXPECT_EQ(c.Surface().Height(), 12);
    c.PaintToSurface();
    EXPECT_EQ(c.paints, 3);
    EXPECT_EQ(c.Surface().Pixel(29, 11), clRed);
}

TEST(ControlFrame, GrabShowsTheSurface) {
    QWidget parent;
    parent.resize(40, 30);
    auto* c = new ProbeControl(&parent);
    c->SetBounds(10, 5, 20, 10);
    QImage shot = parent.grab().toImage();
    EXPECT_EQ(c->paints, 1);
    EXPECT_TRUE(c->IsLoaded());
    EXPECT_EQ(QColor(shot.pixel(15, 10)), QColor(Qt::red));
}

TEST(ControlFrame, VisibleUnlessExplicitlyHidden) {
    ProbeControl c;
    EXPECT_TRUE(c.Visible());  // a control not yet shown is still visible
    c.hide();
    EXPECT_FALSE(c.Visible());
}

}  // namespace
}  // namespace kx
