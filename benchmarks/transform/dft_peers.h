// The kinds of transforms of any length beside their peers.
#pragma once

#include "transform/dft_kinds.h"
#include "transform/fftw_plan.h"

namespace zep::bench {

struct ComplexKind : test::DftComplex {
    using Bin = Zep32fc;
    using Plan = FftwPlan<Zep32f>;
    static constexpr double operationsPerLevel = 5;
    static constexpr auto plan = Plan::complex;
    static std::size_t bins(std::size_t N) { return N; }
};

struct RealKind : test::DftReal {
    using Bin = Zep32fc;
    using Plan = FftwPlan<Zep32f>;
    static constexpr double operationsPerLevel = 2.5;
    static constexpr auto plan = Plan::real;
    static std::size_t bins(std::size_t N) { return N / 2 + 1; }
};

struct DoubleKind : test::DftDouble {
    using Bin = Zep64fc;
    using Plan = FftwPlan<Zep64f>;
    static constexpr double operationsPerLevel = 5;
    static constexpr auto plan = Plan::complex;
    static std::size_t bins(std::size_t N) { return N; }
};

}  // namespace zep::bench
