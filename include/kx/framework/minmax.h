#pragma once
// TMinMax: the lowest and highest reading recorded so far, when they occurred, and how
// their marks are shown. The value tracking drives Min and Max many times a second and
// notifies its control once itself, so those two setters never call Change.
#include <cstdint>

#include "kx/framework/flatproperty.h"
#include "kx/framework/persistent.h"
#include "kx/host/color.h"
#include "kx/host/datetime.h"

namespace kx {

class TMinMax : public TKxPersistent {
    Q_OBJECT
    Q_PROPERTY(float Max READ Max WRITE SetMax)
    Q_PROPERTY(double MaxDateTime READ MaxDateTime WRITE SetMaxDateTime)
    Q_PROPERTY(float Min READ Min WRITE SetMin)
    Q_PROPERTY(double MinDateTime READ MinDateTime WRITE SetMinDateTime)
    Q_PROPERTY(int MaxColor READ MaxColor WRITE SetMaxColor)
    Q_PROPERTY(int MinColor READ MinColor WRITE SetMinColor)
    Q_PROPERTY(bool UseSectorCol READ UseSectorCol WRITE SetUseSectorCol)
    Q_PROPERTY(bool MinVisible READ MinVisible WRITE SetMinVisible)
    Q_PROPERTY(bool MaxVisible READ MaxVisible WRITE SetMaxVisible)
  public:
    // Sentinels meaning "nothing recorded yet".
    static constexpr float kNoMax = -9999999.0f;
    static constexpr float kNoMin = 9999999.0f;

    // Both time stamps start at the current date and time.
    explicit TMinMax(QObject* parent = nullptr);

    float Max() const { return max_; }
    // Stores the value and stamps MaxDateTime with Now(); no notification. A NaN is
    // ignored (nothing stored, nothing stamped).
    void SetMax(float v);
    TDateTime MaxDateTime() const { return maxDateTime_; }
    // Stores the time stamp only (restoring a saved record); no notification.
    void SetMaxDateTime(TDateTime v);
    float Min() const { return min_; }
    // As SetMax, for the minimum and MinDateTime.
    void SetMin(float v);
    TDateTime MinDateTime() const { return minDateTime_; }
    void SetMinDateTime(TDateTime v);

    // Direct writes for the value tracking: value and time stamp, no notification, no
    // clock read, no check.
    void SetMaxDirect(float v, TDateTime when);
    void SetMinDirect(float v, TDateTime when);

    TColor MaxColor() const { return maxColor_; }
    void SetMaxColor(TColorArg v);
    TColor MinColor() const { return minColor_; }
    void SetMinColor(TColorArg v);
    // The owner draws the marks in the colour of the sector that holds them.
    bool UseSectorCol() const { return useSectorCol_; }
    void SetUseSectorCol(bool v);
    bool MinVisible() const { return minVisible_; }
    void SetMinVisible(bool v);
    bool MaxVisible() const { return maxVisible_; }
    void SetMaxVisible(bool v);

    // To another TMinMax: all nine fields directly, then one Change.
    void AssignTo(TKxPersistent* dest) const override;

  private:
    float max_ = kNoMax;
    TDateTime maxDateTime_ = 0.0;
    float min_ = kNoMin;
    TDateTime minDateTime_ = 0.0;
    TColor maxColor_ = clAqua;
    TColor minColor_ = clAqua;
    bool useSectorCol_ = true;
    bool minVisible_ = true;
    bool maxVisible_ = true;
};

// The flat properties of a TMinMax (the recorded extremes are run-time data and not among them)
// (see flatproperty.h).
#define KX_FLAT_MINMAX(Prefix, Object)                         \
    KX_FLAT_COLOR(Prefix##_MaxColor, Object, MaxColor)         \
    KX_FLAT_COLOR(Prefix##_MinColor, Object, MinColor)         \
    KX_FLAT(bool, Prefix##_UseSectorCol, Object, UseSectorCol) \
    KX_FLAT(bool, Prefix##_MinVisible, Object, MinVisible)     \
    KX_FLAT(bool, Prefix##_MaxVisible, Object, MaxVisible)

}  // namespace kx
