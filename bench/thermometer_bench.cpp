// Thermometer costs: a reading on a default thermometer beside a plain copy of the
// control's pixels.
#include "kx/indicators/thermometer.h"
#include "readingbench.h"

namespace kx {
namespace {

KX_READING_BENCHMARKS(Thermometer, TKxThermometer, true);

}  // namespace
}  // namespace kx
