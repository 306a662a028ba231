// Tank costs: a reading on a default tank beside a plain copy of the control's pixels.
#include "kx/indicators/tank.h"
#include "readingbench.h"

namespace kx {
namespace {

KX_READING_BENCHMARKS(Tank, TKxTank, true);

}  // namespace
}  // namespace kx
