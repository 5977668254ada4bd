// Transforms of any length, forward, out of place, beside FFTW: rows dft_c (complex), dft_r (real)
// and dft_c_64 (complex, double). Both sides use the same arrays, plans and objects are made apart;
// flops counts 5 N log2 N operations for a complex transform and half of that for a real one.
#include <cmath>
#include <map>

#include "support/buffers.h"
#include "support/rows.h"
#include "transform/dft_peers.h"

namespace zep::bench {
namespace {

// Short smooth lengths, powers of small primes, audio and video frames, primes by the definition
// and by convolution, powers of two among them.
constexpr int kLengths[] = {12,   60,   100,  243,  360,   480,   960,   1000,  1009,  1152,
                            1536, 1920, 4099, 7919, 10000, 44100, 48000, 65536, 100000};

// Source and destination of every row of one length. The peer's real spectrum has up to two values
// more than ours.
template <class T>
struct Arrays {
    explicit Arrays(int N)
        : src(static_cast<std::size_t>(N)), dst(static_cast<std::size_t>(N) + 2) {
        fillUniform(src, -1.0, 1.0);
        fillUniform(dst, -1.0, 1.0);
    }
    AlignedArray<T> src, dst;
};

template <class T>
Arrays<T>& arraysOf(int N) {
    static std::map<int, Arrays<T>> all;
    return all.try_emplace(N, N).first->second;
}

template <class Kind>
void countOperations(benchmark::State& state, int N) {
    const double operations = Kind::operationsPerLevel * N * std::log2(N);
    state.counters["flops"] =
        benchmark::Counter(operations, benchmark::Counter::kIsIterationInvariantRate);
}

template <class Kind>
void transformOurs(benchmark::State& state, int N) {
    auto& [src, dst] = arraysOf<typename Kind::Element>(N);
    typename Kind::Spec* spec = nullptr;
    int bytes = 0;
    if (Kind::create(&spec, N, ZEP_FFT_SCALE_NONE, zepAlgHintNone) != zepStsNoErr ||
        Kind::bufSize(spec, &bytes) != zepStsNoErr) {
        state.SkipWithError("no object");
        return;
    }
    Zep8u* scratch = bytes > 0 ? zepsMalloc_8u(bytes) : nullptr;
    for (auto _ : state) {
        Kind::forward(src.data(), dst.data(), spec, scratch);
        benchmark::ClobberMemory();
    }
    if (scratch != nullptr) zepsFree(scratch);
    Kind::release(spec);
    countOperations<Kind>(state, N);
}

template <class Kind>
void transformFftw(benchmark::State& state, int N) {
    using Plan = typename Kind::Plan;
    static std::map<int, Plan> plans;
    auto& [src, dst] = arraysOf<typename Kind::Element>(N);
    const Plan& plan = plans.try_emplace(N, Kind::plan, N).first->second;
    for (auto _ : state) {
        plan.run(src.data(), reinterpret_cast<typename Kind::Bin*>(dst.data()));
        benchmark::ClobberMemory();
    }
    countOperations<Kind>(state, N);
}

template <class Kind>
void registerRows(const std::string& family) {
    for (const int N : kLengths) {
        const auto row = [N](void (*body)(benchmark::State&, int)) {
            return [body, N](benchmark::State& state) { body(state, N); };
        };
        addOurs(family, N, row(transformOurs<Kind>));
        addPeer(family, "fftw", N, row(transformFftw<Kind>));
    }
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerRows<zep::bench::ComplexKind>("dft_c");
    zep::bench::registerRows<zep::bench::RealKind>("dft_r");
    zep::bench::registerRows<zep::bench::DoubleKind>("dft_c_64");
    return zep::bench::runAll(argc, argv);
}
