// Linear meter costs: a reading on a default horizontal meter beside a plain copy of the
// control's pixels.
#include "kx/indicators/linearmeter.h"
#include "readingbench.h"

namespace kx {
namespace {

KX_READING_BENCHMARKS(LinearMeter, TKxHMeter, true);

}  // namespace
}  // namespace kx
