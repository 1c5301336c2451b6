// lumora-bench: prints for each operation milliseconds, nanoseconds a pixel and the ratio to a plain copy (x_copy).
// Read docs/performance.md for what the rows say; --benchmark_filter=Sepia runs some of them.
#include "BenchRows.h"

#include "imaging/kernels/Targets.h"

#include <benchmark/benchmark.h>

int main(int argc, char **argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::AddCustomContext("kernels", lumora::chosenKernelTarget());
    lumora::addImagingRows();
    lumora::addTransformRows();
    lumora::addFileRows();
    lumora::addClickRows();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
