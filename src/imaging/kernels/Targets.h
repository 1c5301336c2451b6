// Which processors the kernels are compiled for. Every kernel includes this before <hwy/foreach_target.h>.
#pragma once

// Highway distrusts its 128-bit emulation, the version for processors without SSSE3, under this compiler and would fall
// back to one lane, which lacks the operations on parts of a pixel. The tests run every version against the reference.
#define HWY_BROKEN_EMU128 0

// A processor with SSSE3 and without SSE4.1 was last sold about 2008; it takes the emulation. Each version costs build
// time in every kernel.
#define HWY_DISABLED_TARGETS HWY_SSSE3

namespace lumora {

/// Chooses the version of the kernels for this processor. Until then each call would detect the processor again, and a
/// kernel kept as a function pointer would do so for ever.
bool chooseKernelTarget();

/// Has it chosen before main() and before any kernel of a file that includes this.
inline const bool kernelTargetIsChosen = chooseKernelTarget();

/// The name of the version of the kernels that runs on this processor, such as "AVX3".
const char *chosenKernelTarget();

} // namespace lumora
