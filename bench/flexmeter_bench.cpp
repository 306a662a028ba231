// Flex meter costs: a reading on a default horizontal flex meter beside a plain copy of
// the control's pixels.
#include "kx/indicators/flexmeter.h"
#include "readingbench.h"

namespace kx {
namespace {

KX_READING_BENCHMARKS(FlexHMeter, TKxFlexHMeter, true);

}  // namespace
}  // namespace kx
