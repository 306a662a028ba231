#pragma once
// TKxRScale: a stand-alone description of a round scale (start and sweep angle, offset,
// direction, step counts and diameter) for controls that draw their own round scale.
// Each setter stores a value that passes its range test and differs from the current
// one, then calls Change; anything else is ignored silently.
//
// Initial values, those of a three-quarter-circle meter: AlphaStart 225, Alpha 270,
// OffsetX 0, OffsetY 0, SwapDir false, Steps 10, SubSteps 2, Diameter 100.
#include <cstdint>

#include "kx/framework/customscale.h"

namespace kx {

class TKxRScale : public TKxScale {
    Q_OBJECT
    Q_PROPERTY(int AlphaStart READ AlphaStart WRITE SetAlphaStart)
    Q_PROPERTY(int Alpha READ Alpha WRITE SetAlpha)
    Q_PROPERTY(int OffsetX READ OffsetX WRITE SetOffsetX)
    Q_PROPERTY(int OffsetY READ OffsetY WRITE SetOffsetY)
    Q_PROPERTY(bool SwapDir READ SwapDir WRITE SetSwapDir)
    Q_PROPERTY(int Steps READ Steps WRITE SetSteps)
    Q_PROPERTY(int SubSteps READ SubSteps WRITE SetSubSteps)
    Q_PROPERTY(int Diameter READ Diameter WRITE SetDiameter)
  public:
    explicit TKxRScale(QObject* parent = nullptr) : TKxScale(parent) {}

    // Start angle in degrees (0 up, clockwise), 0..360.
    int32_t AlphaStart() const { return alphaStart_; }
    void SetAlphaStart(int32_t v);
    // Sweep in degrees, 1..360.
    int32_t Alpha() const { return alpha_; }
    void SetAlpha(int32_t v);
    int32_t OffsetX() const { return offsetX_; }
    void SetOffsetX(int32_t v);
    int32_t OffsetY() const { return offsetY_; }
    void SetOffsetY(int32_t v);
    // Runs the values counter-clockwise.
    bool SwapDir() const { return swapDir_; }
    void SetSwapDir(bool v);
    // 1..30 each.
    int32_t Steps() const { return steps_; }
    void SetSteps(int32_t v);
    int32_t SubSteps() const { return subSteps_; }
    void SetSubSteps(int32_t v);
    // Pixels, 10 and above.
    int32_t Diameter() const { return diameter_; }
    void SetDiameter(int32_t v);

  protected:
    void copyTo(TKxCustomScale& dest) const override;

  private:
    int32_t alphaStart_ = 225;
    int32_t alpha_ = 270;
    int32_t offsetX_ = 0;
    int32_t offsetY_ = 0;
    bool swapDir_ = false;
    int32_t steps_ = 10;
    int32_t subSteps_ = 2;
    int32_t diameter_ = 100;
};

}  // namespace kx
