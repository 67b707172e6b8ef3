// The UTF-8 kernels built for the baseline instruction set, for the fuzz target.
#include "Utf8KernelBuild.h"

#include "text/Utf8Kernels.h"

namespace fuzz {

KernelBuild baselineBuild() {
    return {"baseline", [] { return true; }, decodeUtf8, encodeSpan, kEncodeMaxStep};
}

} // namespace fuzz
