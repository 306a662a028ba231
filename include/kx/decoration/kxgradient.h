#pragma once
// TKxGradient: an area filled with a two-colour gradient (KxGradFill) in any of the
// toolkit's fourteen styles, from GradSettings.ColorFrom to GradSettings.ColorTo over the
// whole client rectangle. A change of the settings repaints. The gradient is drawn
// whether or not GradSettings.Visible is set (that flag belongs to the surfaces of other
// components, which draw the gradient only when it is set).
//
// Defaults: 50 x 50; ColorFrom RGB E2E2E2, ColorTo RGB 8F8F8F, Style gsHorizontal1.
#include "kx/framework/control.h"
#include "kx/framework/flatproperty.h"
#include "kx/framework/gradsettings.h"

namespace kx {

class TKxGradient : public TKxGraphicControl {
    Q_OBJECT
    Q_PROPERTY(
        kx::TKxGradSettings* GradSettings READ GradSettings WRITE SetGradSettings DESIGNABLE false)
  public:
    explicit TKxGradient(QWidget* parent = nullptr);

    // The setter copies; null is ignored.
    TKxGradSettings* GradSettings() const { return grad_; }
    void SetGradSettings(const TKxGradSettings* v);
    KX_FLAT_GRADSETTINGS(GradSettings, GradSettings())

  protected:
    void ParamChange(QObject* sender) override;
    void Paint() override;

  private:
    TKxGradSettings* grad_;
};

}  // namespace kx
