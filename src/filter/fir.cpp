// Single-rate filtering: direct sums, or overlap-save over the state's transform.
#include "core/checks.h"
#include "filter/correlate.h"
#include "filter/fir_multirate.h"
#include "filter/fir_state.h"

namespace zep::ZEP_VARIANT {
namespace {

using filter::FirTraits;
using filter::TransformOf;

template <class T>
void copy(T* to, const T* from, std::int64_t n) {
    constexpr std::int64_t kParts = sizeof(T) / sizeof(float);
    filter::copyFew(reinterpret_cast<float*>(to), reinterpret_cast<const float*>(from), kParts * n);
}

template <class T>
ZepStatus direct(const T* src, T* dst, int n, ZepFIRState& state) {
    const int L = state.tapsLen;
    const T* taps = static_cast<const T*>(state.pTapsRev);
    T* delay = static_cast<T*>(state.pDlyLine) + state.dlyLineIndex;
    state.dlyLineIndex = 0;
    if (filter::isShortCall<T>(L, n)) {
        // Entry 0, the oldest, meets no tap. What lies behind the new samples meets outputs that are
        // not stored.
        copy(delay + L, src, n);
        const std::int64_t samples = std::int64_t{L} - 1 + n + filter::kDelaySlack<T>;
        filter::correlate(taps, L, delay + 1, samples, 0, dst, n);
        copy(delay, delay + n, L);
        return zepStsNoErr;
    }
    // What is read from the delay buffer comes last: a load that spans two stores waits until they
    // have left for the cache.
    const std::int64_t head = filter::headOutputs<T>(L);
    copy(delay + L, src, head);
    filter::correlateInside(taps, L, src + (head - (L - 1)), dst + head, n - head);
    if (head > 0) filter::correlateInside(taps, L, delay + 1, dst, head);
    copy(delay, src + (n - L), L);
    return zepStsNoErr;
}

template <class T>
class OverlapSave {
    using Of = TransformOf<T>;
    using Spec = typename Of::Spec;

public:
    explicit OverlapSave(ZepFIRState& state)
        : state_(state),
          spec_(static_cast<const Spec*>(state.pFFTSpec)),
          b_(static_cast<T*>(state.pFFTBuf)),
          N_(state.fftLen),
          L_(state.tapsLen) {}

    // From the last block to the first: the wrapped results in front of a block's own stand where the
    // block before it writes next, so that whole blocks go to dst without a copy.
    ZepStatus run(const T* src, T* dst, std::int64_t count) {
        const std::int64_t step = N_ - L_ + 1, before = L_ - 1;
        for (std::int64_t done = (count - 1) / step * step; done > 0; done -= step) {
            const std::int64_t rest = count - done;
            const T* from = src + (done - before);
            if (rest < step) {
                Of::copy(from, b_, before + rest);
                Of::zero(b_ + (before + rest), step - rest);
                from = b_;
            }
            T* to = rest < step ? b_ : dst + (done - before);
            if (const ZepStatus s = filter(from, to); s != zepStsNoErr) return s;
            if (rest < step) Of::copy(b_ + before, dst + done, rest);
        }
        auto* delay = static_cast<T*>(state_.pDlyLine);
        state_.dlyLineIndex = 0;
        Of::copy(delay + 1, b_, before);
        const std::int64_t first = count < step ? count : step;
        Of::copy(src, b_ + before, first);
        if (count <= step)
            Of::copy(b_ + (count - 1), delay, L_);
        else
            Of::copy(src + (count - L_), delay, L_);
        Of::zero(b_ + (before + first), step - first);
        if (const ZepStatus s = filter(b_, b_); s != zepStsNoErr) return s;
        Of::copy(b_ + before, dst, first);
        return zepStsNoErr;
    }

private:
    // The N samples at x; the first L-1 results have wrapped.
    ZepStatus filter(const T* x, T* y) {
        if (const ZepStatus s = Of::forward(x, b_, spec_, state_.pFFTWork); s != zepStsNoErr)
            return s;
        Of::multiply(static_cast<const T*>(state_.pFFTTaps), b_, static_cast<int>(N_));
        return Of::inverse(b_, y, spec_, state_.pFFTWork);
    }

    ZepFIRState& state_;
    const Spec* spec_;
    T* b_;
    std::int64_t N_, L_;
};

// `deciding` is the count of samples that chooses the route.
template <class T>
ZepStatus filterBlock(const T* src, T* dst, int n, int deciding, ZepFIRState& state) {
    if (deciding < FirTraits<T>::transformFromSamples || state.fftLen < 1)
        return direct(src, dst, n, state);
    return OverlapSave<T>(state).run(src, dst, n);
}

template <class T>
ZepStatus apply(const T* src, T* dst, int n, ZepFIRState* state) {
    if (anyNull(state, src, dst)) return zepStsNullPtrErr;
    if (n < 1) return zepStsSizeErr;
    if (filter::isMultirate<T>(*state)) return filter::multirate(src, dst, n, *state);
    if (!filter::isSingleRate<T>(*state)) return zepStsContextMatchErr;
    return filterBlock(src, dst, n, n, *state);
}

template <class T>
ZepStatus applyInPlace(T* x, int n, ZepFIRState* state) {
    if (anyNull(state, x)) return zepStsNullPtrErr;
    if (n < 1) return zepStsSizeErr;
    if (filter::isMultirate<T>(*state)) return filter::multirateInPlace(x, n, *state);
    if (!filter::isSingleRate<T>(*state)) return zepStsContextMatchErr;
    constexpr int kBlock = Tuned<filter::FirTuning>::inPlaceBlock;
    T* block = static_cast<T*>(state->pBlockBuf);
    while (n > 0) {
        const int count = n < kBlock ? n : kBlock;
        n -= count;
        // What is left behind this block decides.
        if (const ZepStatus s = filterBlock(x, block, count, n, *state); s != zepStsNoErr) return s;
        TransformOf<T>::copy(block, x, count);
        x += count;
    }
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsFIR_32f(const Zep32f* pSrc, Zep32f* pDst, int numIters, ZepFIRState* pState) {
    return apply(pSrc, pDst, numIters, pState);
}
ZepStatus zepsFIR_32fc(const Zep32fc* pSrc, Zep32fc* pDst, int numIters, ZepFIRState* pState) {
    return apply(pSrc, pDst, numIters, pState);
}
ZepStatus zepsFIR_32f_I(Zep32f* pSrcDst, int numIters, ZepFIRState* pState) {
    return applyInPlace(pSrcDst, numIters, pState);
}
ZepStatus zepsFIR_32fc_I(Zep32fc* pSrcDst, int numIters, ZepFIRState* pState) {
    return applyInPlace(pSrcDst, numIters, pState);
}

}  // namespace zep::ZEP_VARIANT
