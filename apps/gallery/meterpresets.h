#pragma once
// The round meters the gallery shows: one table row per meter with everything that
// makes it look and behave like an instrument in a plant (range, names, sectors,
// limits, needle, the simulated process that drives it).
#include <QString>
#include <array>
#include <cstdint>
#include <vector>

#include "kx/host/color.h"
#include "processsimulator.h"

namespace kx {
class TKxRMeter;
}
class QWidget;

namespace kxgallery {

enum class MeterKind { k120, k180, k270 };

struct SectorPreset {
    int32_t from = 0;  // per mille of the range
    int32_t to = 0;
    kx::TColor color = kx::clBlack;
};

struct MeterPreset {
    MeterKind kind = MeterKind::k270;
    QString name1;  // the measured quantity
    QString name2;  // the instrument tag
    QString unit;
    QString valueFormat;
    float from = 0.0f;
    float to = 100.0f;
    bool logarithmic = false;
    float limitLower = 10.0f;
    float limitUpper = 90.0f;
    std::array<SectorPreset, 3> sectors{};
    int32_t sectorOffset = 0;  // negative: the sector ring reaches into the scale
    int32_t sectorWidthOffset = 0;
    int32_t shape = 0;
    int32_t steps = 0;  // 0 keeps the meter type's own step count
    int32_t scaleFontSize = 9;
    kx::TColor needleColor = kx::clLime;  // needle fill
    ProcessProfile process;
};

// The gallery's meters, in reading order of the page (three per row).
const std::vector<MeterPreset>& GalleryMeters();
// Index into GalleryMeters() of the meter the "Logarithmic" switch acts on.
int32_t LogSwitchMeter();
// Index into GalleryMeters() of the meter the manual slider drives.
int32_t ManualMeter();

// "TKx120Meter", "TKx180Meter" or "TKx270Meter".
QString MeterClassName(MeterKind kind);

// Creates the meter, applies the preset with the value at `fraction` of the range,
// ends its update phase (Loaded) and sizes it.
kx::TKxRMeter* CreateMeter(const MeterPreset& preset, double fraction, QWidget* parent);

}  // namespace kxgallery
