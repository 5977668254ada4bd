#include "filter/fir_wide.h"

#include "core/checks.h"
#include "filter/output_rows.h"
#include "simd/complex.h"
#include "simd/unroll.h"
#include "transform/fft_routes.h"
#include "transform/fft_scratch.h"

namespace zep::ZEP_VARIANT::filter {
namespace {

using Index = std::ptrdiff_t;
using V = simd::Native<double>;
using F = simd::Vec<float, 2 * V::lanes>;

// Samples that are widened at a time; they stay in the first cache.
constexpr Index kBlock = 1024;
constexpr Index kMinFftTaps = 64, kMinFftLen = 512;
// What the last vectors may read or write behind an array.
constexpr Index kSlack = 4 * V::lanes;

// 2^order samples, at least twice the taps.
int fftOrder(Index taps) {
    int k = 2;
    while (Index{1} << k <= taps) ++k;
    return k + 1;
}

double* line(const ZepFIRState& state) { return static_cast<double*>(state.pDlyLine); }

void filterDirect(const ZepFIRState& state, float* dst, Index len) {
    const auto* reversed = static_cast<const double*>(state.pTapsRev);
    const double* x = line(state) + 1;
    const auto add = [&](auto& sums, Index n) __attribute__((always_inline)) {
        sums.add({reversed, x + n, state.tapsLen});
    };
    OutputRows<DoubleSums, decltype(add)>(add).run(dst, len);
}

// Real taps filter both parts of a complex signal alike, so one complex transform takes two blocks.
void filterByFft(const ZepFIRState& state, float* dst, Index len) {
    const Index N = state.fftLen, wrapped = state.tapsLen - 1, step = N - wrapped;
    const double* x = line(state) + 1;
    auto* z = static_cast<double*>(state.pFFTBuf);
    for (Index n = 0; n < N; n += V::lanes) {
        const V re = V::load(x + n), im = V::load(x + step + n);
        interleaveFront(re, im).store(z + 2 * n);
        interleaveBack(re, im).store(z + 2 * n + V::lanes);
    }
    const auto& spec = *static_cast<const FFTSpecC64fc*>(state.pFFTSpec);
    const fft::Scratch scratch(state.pFFTWork, state.fftWorkSize);
    fft::Routes<fft::Direction::Forward, double>::complex(z, z, spec.order, spec,
                                                          scratch.as<double>(), false);
    const auto* taps = static_cast<const double*>(state.pFFTTaps);
    for (Index n = 0; n < 2 * N; n += V::lanes)
        complexMul(V::load(z + n), V::load(taps + n)).store(z + n);
    fft::Routes<fft::Direction::Inverse, double>::complex(z, z, spec.order, spec,
                                                          scratch.as<double>(), true);
    const auto take = [&](float* to, Index count, auto part) __attribute__((always_inline)) {
        const double* from = z + 2 * wrapped;
        for (Index n = 0; n < count; n += F::lanes, from += 2 * F::lanes) {
            const V lo = part(V::load(from), V::load(from + V::lanes));
            const V hi = part(V::load(from + 2 * V::lanes), V::load(from + 3 * V::lanes));
            const F y = narrow(lo, hi);
            if (count - n >= F::lanes)
                y.store(to + n);
            else
                y.storePartial(to + n, static_cast<int>(count - n));
        }
    };
    take(dst, len < step ? len : step, [](V a, V b) { return allEvens(a, b); });
    if (len > step) take(dst + step, len - step, [](V a, V b) { return allOdds(a, b); });
}

// The transform of the taps, if there is memory for its object.
void addFft(ZepFIRState& state, int order, const double* taps) {
    FFTSpecC64fc* spec = nullptr;
    if (fft::initAlloc(&spec, order, ZEP_FFT_SCALE_INV, 0) != zepStsNoErr) return;
    state.pFFTSpec = spec;
    state.fftLen = std::int32_t{1} << order;
    auto* z = static_cast<double*>(state.pFFTTaps);
    for (Index n = 0; n < state.tapsLen; ++n) z[2 * n] = simd::readAny(taps + n);
    const fft::Scratch scratch(state.pFFTWork, state.fftWorkSize);
    fft::Routes<fft::Direction::Forward, double>::complex(z, z, order, *spec, scratch.as<double>(),
                                                          false);
}

}  // namespace

ZepFIRState* createWide(const double* taps, std::int32_t tapsLen, const float* delayLine) {
    const Index L = tapsLen;
    const int order = fftOrder(L);
    fft::FftSizes sizes{};
    const bool planned =
        L >= kMinFftTaps && fft::FFTGetSize<double>(FftKind::ComplexDouble, order,
                                                    ZEP_FFT_SCALE_INV, 0, &sizes) == zepStsNoErr;
    const Index N = planned ? Index{1} << order : 0;
    // History and one block of either path.
    const Index direct = L + kBlock, wide = 1 + N + (N - L + 1);
    BlockPlan plan;
    const auto count = [](Index n) { return static_cast<std::size_t>(n); };
    const std::size_t reversed = plan.add(count(L), sizeof(double));
    const std::size_t delay =
        plan.add(count((direct > wide ? direct : wide) + kSlack), sizeof(double));
    const std::size_t spectrum = plan.add(count(2 * N), sizeof(double));
    const std::size_t buffer = plan.add(count(planned ? 2 * N + kSlack : 0), sizeof(double));
    const std::size_t work = plan.add(planned ? sizes.scratch + fft::kObjectAlignment : 0, 1);
    char* memory = plan.allocate();
    if (memory == nullptr) return nullptr;
    auto* state = reinterpret_cast<ZepFIRState*>(memory);
    state->idFIR = idFIR64f_32f;
    state->pTapsRev = memory + reversed;
    state->pDlyLine = memory + delay;
    state->tapsLen = state->dlyLineLen = tapsLen;
    state->upFactor = state->downFactor = 1;
    state->splitCount = static_cast<std::int32_t>((L + 3) & ~Index{3}) + 1;
    state->fftLen = -1;
    storeReversed<1>(static_cast<double*>(state->pTapsRev), taps, L);
    if (delayLine != nullptr) storeReversed<1>(line(*state), delayLine, L);
    if (planned) {
        state->pFFTTaps = memory + spectrum;
        state->pFFTBuf = memory + buffer;
        state->pFFTWork = reinterpret_cast<Zep8u*>(memory + work);
        state->fftWorkSize = static_cast<std::int32_t>(sizes.scratch);
        addFft(*state, order, taps);
        if (state->fftLen < 0) state->pFFTTaps = nullptr;
    }
    state->ownsMemory = 1;
    return state;
}

void filterWide(ZepFIRState& state, float* data, std::ptrdiff_t len) {
    const Index L = state.tapsLen, N = state.fftLen;
    const bool byFft = N >= 1 && len >= kMinFftLen;
    const Index step = N - L + 1, most = byFft ? 2 * step : kBlock;
    state.dlyLineIndex = 0;
    double* const x = line(state);
    while (len > 0) {
        const Index n = len < most ? len : most;
        zepsConvert_32f64f(data, x + L, static_cast<int>(n));
        if (byFft) {
            const Index end = 1 + N + step;
            __builtin_memset(x + L + n, 0, sizeof(double) * static_cast<std::size_t>(end - L - n));
            filterByFft(state, data, n);
        } else {
            filterDirect(state, data, n);
        }
        __builtin_memmove(x, x + n, sizeof(double) * static_cast<std::size_t>(L));
        data += n;
        len -= n;
    }
}

}  // namespace zep::ZEP_VARIANT::filter
