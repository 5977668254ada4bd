// Power-of-two transforms, forward, out of place, beside FFTW: rows fft_c (complex) and fft_r
// (real). Both sides use the same arrays, plans and objects are made apart; flops counts 5 N log2 N
// operations for a complex transform and half of that for a real one. Rows fft_c_setup and
// fft_r_setup time the making of our objects.
#include <cmath>
#include <map>

#include "support/buffers.h"
#include "support/rows.h"
#include "transform/fftw_plan.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kMaxOrder = 20;

struct ComplexKind {
    using Spec = FFTSpecC32fc;
    using Element = Zep32fc;
    static constexpr int minOrder = 4;
    static constexpr double operationsPerLevel = 5;
    static constexpr auto create = zepsFFTInitAlloc_C_32fc;
    static constexpr auto release = zepsFFTFree_C_32fc;
    static constexpr auto bufSize = zepsFFTGetBufSize_C_32fc;
    static constexpr auto forward = zepsFFTFwd_CToC_32fc;
    static constexpr auto plan = FftwPlan<Zep32f>::complex;
};

struct RealKind {
    using Spec = FFTSpecR32f;
    using Element = Zep32f;
    static constexpr int minOrder = 5;
    static constexpr double operationsPerLevel = 2.5;
    static constexpr auto create = zepsFFTInitAlloc_R_32f;
    static constexpr auto release = zepsFFTFree_R_32f;
    static constexpr auto bufSize = zepsFFTGetBufSize_R_32f;
    static constexpr auto forward = zepsFFTFwd_RToPerm_32f;
    static constexpr auto plan = FftwPlan<Zep32f>::real;
};

// Source and destination of every row of one length. The peer's real spectrum has one bin more than
// ours.
template <class T>
struct Arrays {
    explicit Arrays(int order) : src(std::size_t{1} << order), dst((std::size_t{1} << order) + 2) {
        fillUniform(src, -1.0, 1.0);
        fillUniform(dst, -1.0, 1.0);
    }
    AlignedArray<T> src, dst;
};

template <class T>
Arrays<T>& arraysOf(int order) {
    static std::map<int, Arrays<T>> all;
    return all.try_emplace(order, order).first->second;
}

template <class Kind>
void countOperations(benchmark::State& state, int order) {
    const double operations = Kind::operationsPerLevel * std::exp2(order) * order;
    state.counters["flops"] =
        benchmark::Counter(operations, benchmark::Counter::kIsIterationInvariantRate);
}

template <class Kind>
void transformOurs(benchmark::State& state, int order) {
    auto& [src, dst] = arraysOf<typename Kind::Element>(order);
    typename Kind::Spec* spec = nullptr;
    int bytes = 0;
    if (Kind::create(&spec, order, ZEP_FFT_SCALE_NONE, zepAlgHintNone) != zepStsNoErr ||
        Kind::bufSize(spec, &bytes) != zepStsNoErr) {
        state.SkipWithError("no object");
        return;
    }
    Zep8u* scratch = zepsMalloc_8u(bytes);
    for (auto _ : state) {
        Kind::forward(src.data(), dst.data(), spec, scratch);
        benchmark::ClobberMemory();
    }
    zepsFree(scratch);
    Kind::release(spec);
    countOperations<Kind>(state, order);
}

template <class Kind>
void transformFftw(benchmark::State& state, int order) {
    static std::map<int, FftwPlan<Zep32f>> plans;
    auto& [src, dst] = arraysOf<typename Kind::Element>(order);
    const FftwPlan<Zep32f>& plan = plans.try_emplace(order, Kind::plan, 1 << order).first->second;
    for (auto _ : state) {
        plan.run(src.data(), reinterpret_cast<Zep32fc*>(dst.data()));
        benchmark::ClobberMemory();
    }
    countOperations<Kind>(state, order);
}

template <class Kind>
void setUpOurs(benchmark::State& state, int order) {
    for (auto _ : state) {
        typename Kind::Spec* spec = nullptr;
        Kind::create(&spec, order, ZEP_FFT_SCALE_NONE, zepAlgHintNone);
        benchmark::DoNotOptimize(spec);
        Kind::release(spec);
    }
}

template <class Kind>
void registerRows(const std::string& family) {
    for (int order = Kind::minOrder; order <= kMaxOrder; ++order) {
        const std::int64_t N = std::int64_t{1} << order;
        const auto row = [order](void (*body)(benchmark::State&, int)) {
            return [body, order](benchmark::State& state) { body(state, order); };
        };
        addOurs(family, N, row(transformOurs<Kind>));
        addPeer(family, "fftw", N, row(transformFftw<Kind>));
        addOurs(family + "_setup", N, row(setUpOurs<Kind>));
    }
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerRows<zep::bench::ComplexKind>("fft_c");
    zep::bench::registerRows<zep::bench::RealKind>("fft_r");
    return zep::bench::runAll(argc, argv);
}
