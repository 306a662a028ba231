// Binary elements and the dial's neighbours at device pixel ratios: a state change or
// blink phase gives the same device pixels as a full paint in that state.
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "binary_fixture.h"
#include "common/ratio.h"
#include "kx/binary/colbitbtn.h"
#include "kx/binary/kxled.h"
#include "kx/binary/leverswitch.h"
#include "kx/binary/rockerswitch.h"

namespace kx {
namespace {

template <class T>
using TAtRatio = test::AtRatio<T>;

using BinaryHiDpi = test::BinaryFixture;

TEST_F(BinaryHiDpi, StateChangesMatchAFullPaint) {
    const struct {
        const char* name;
        std::function<TKxBinGControl*(double, QWidget*)> make;
    } kinds[] = {
        {"led", [](double r, QWidget* p) { return new TAtRatio<TKxLED>(r, p); }},
        {"rocker", [](double r, QWidget* p) { return new TAtRatio<TKxRockerSwitch>(r, p); }},
        {"toggle", [](double r, QWidget* p) { return new TAtRatio<TKxToggleSwitch>(r, p); }},
        {"colbit", [](double r, QWidget* p) { return new TAtRatio<TKxColBitBtn>(r, p); }},
    };
    for (double ratio : {1.25, 1.5, 2.0})
        for (const auto& k : kinds) {
            std::unique_ptr<TKxBinGControl> c(k.make(ratio, &form_));
            c->SetCaption("Pump");
            c->PaintToSurface();
            ASSERT_EQ(c->SurfaceRatio(), ratio) << k.name;
            c->SetChecked(true);
            const QImage changed = c->Surface().Image().copy();
            c->Invalidate();
            c->PaintToSurface();
            EXPECT_EQ(changed, c->Surface().Image()) << k.name << " at " << ratio;
            c->SetChecked(false);
            const QImage back = c->Surface().Image().copy();
            c->Invalidate();
            c->PaintToSurface();
            EXPECT_EQ(back, c->Surface().Image()) << k.name << " at " << ratio;
        }
}

}  // namespace
}  // namespace kx
