// The control frame: update phases, Loaded, the surface and painting.
#include <gtest/gtest.h>

#include <QApplication>
#include <functional>
#include <memory>

#include "kx/framework/control.h"

namespace kx {
namespace {

class ProbeControl : public TKxGraphicControl {
  public:
    using TKxGraphicControl::TKxGraphicControl;
    int paramChanges = 0;
    int paints = 0;
    int loads = 0;
    QObject* lastSender = nullptr;
    QSize ownSize;
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
        // Sizes itself first, as an auto-sized control does.
        if (ownSize.isValid() && size() != ownSize)
            SetBounds(x(), y(), ownSize.width(), ownSize.height());
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

// A canvas handed to the control and aimed at its surface keeps drawing into the surface
// the control has now, however the surface was replaced (the sanitizer run checks that no
// freed image is touched).
TEST(ControlFrame, CanvasAimedAtTheSurfaceFollowsItAcrossResizes) {
    const struct {
        const char* name;
        std::function<void(ProbeControl&)> resize;
    } cases[] = {
        {"SetBounds", [](ProbeControl& c) { c.SetBounds(0, 0, 40, 30); }},
        {"own size in Paint",
         [](ProbeControl& c) {
             c.ownSize = QSize(40, 30);
             c.Invalidate();
         }},
    };
    for (const auto& k : cases) {
        SCOPED_TRACE(k.name);
        ProbeControl c;
        c.SetBounds(0, 0, 20, 10);
        c.Loaded();
        TCanvas canvas(&c.SurfaceImage());
        c.SetCanvas(&canvas);
        c.PaintToSurface();
        EXPECT_EQ(c.Surface().Pixel(19, 9), clRed);
        k.resize(c);
        c.PaintToSurface();
        EXPECT_EQ(c.Surface().Width(), 40);
        EXPECT_EQ(c.Surface().Pixel(39, 29), clRed);
        c.SetCanvas(nullptr);
    }
}

// A canvas destroyed after the control must not end painting on the control's freed surface.
TEST(ControlFrame, CanvasAimedAtTheSurfaceMayOutliveTheControl) {
    std::unique_ptr<TCanvas> canvas;
    {
        ProbeControl c;
        c.SetBounds(0, 0, 20, 10);
        c.Loaded();
        canvas = std::make_unique<TCanvas>(&c.SurfaceImage());
        c.SetCanvas(canvas.get());
        c.PaintToSurface();
        EXPECT_EQ(c.Surface().Pixel(0, 0), clRed);
    }
    canvas.reset();
}

TEST(ControlFrame, VisibleUnlessExplicitlyHidden) {
    ProbeControl c;
    EXPECT_TRUE(c.Visible());  // a control not yet shown is still visible
    c.hide();
    EXPECT_FALSE(c.Visible());
}

}  // namespace
}  // namespace kx

namespace kx {
namespace {

TEST(ControlFrame, AutoSizeIsCappedAndGrowingNeverShrinks) {
    constexpr int64_t cap = TKxControl::kKxMaxAutoSize;
    const struct {
        const char* what;
        bool grow;
        int w, h;
        int64_t askW, askH;
        int expectW, expectH;
    } cases[] = {
        {"set: exact", false, 50, 50, 120, 30, 120, 30},
        {"set: shrinks", false, 500, 500, 120, 30, 120, 30},
        {"set: capped", false, 50, 50, int64_t(1) << 40, cap + 1, int(cap), int(cap)},
        {"set: negative is 0", false, 50, 50, -5, 7, 0, 7},
        {"grow: only the smaller side", true, 300, 10, 300, 40, 300, 40},
        {"grow: keeps what is larger", true, 300, 10, 100, 40, 300, 40},
        {"grow: to the cap at most", true, 10, 10, int64_t(1) << 40, 20, int(cap), 20},
        {"grow: a larger control stays", true, 5000, 10, int64_t(1) << 40, 20, 5000, 20},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ProbeControl control;
        control.SetBounds(0, 0, c.w, c.h);
        if (c.grow)
            control.GrowToAtLeast(c.askW, c.askH);
        else
            control.SetAutoSize(c.askW, c.askH);
        EXPECT_EQ(control.width(), c.expectW);
        EXPECT_EQ(control.height(), c.expectH);
    }
}

}  // namespace
}  // namespace kx
