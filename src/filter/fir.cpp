// Single-rate filtering: direct sums, or overlap-save over the state's transform.
#include "core/checks.h"
#include "filter/correlate.h"
#include "filter/fir_multirate.h"
#include "filter/fir_state.h"
#include "transform/fft_convolve.h"

namespace zep::ZEP_VARIANT {
namespace {

using filter::FirTraits;
using filter::TransformOf;

template <class T>
void copy(T* to, const T* from, std::int64_t n) {
    constexpr std::int64_t kParts = std::int64_t{sizeof(T)} / std::int64_t{sizeof(float)};
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
          convolver_(static_cast<const fft::Convolver<float>*>(state.pConvolver)),
          b_(static_cast<T*>(state.pFFTBuf)),
          N_(state.fftLen),
          L_(state.tapsLen) {}

    ZepStatus run(const T* src, T* dst, std::int64_t count) {
        const ZepStatus s =
            convolver_ != nullptr ? byConvolver(src, dst, count) : byTransform(src, dst, count);
        if (s == zepStsNoErr) keepHistory(src, count);
        return s;
    }

private:
    std::int64_t step() const { return N_ - L_ + 1; }
    std::int64_t before() const { return L_ - 1; }

    // The inputs of the `results` outputs from `done` on, in buffer: behind their history, zeros
    // behind them.
    const T* block(const T* src, std::int64_t done, std::int64_t results, T* buffer) const {
        if (done > 0) {
            Of::copy(src + (done - before()), buffer, before() + results);
        } else {
            Of::copy(static_cast<const T*>(state_.pDlyLine) + 1, buffer, before());
            Of::copy(src, buffer + before(), results);
        }
        Of::zero(buffer + (before() + results), step() - results);
        return buffer;
    }

    // The first block begins with the history, the last may not be whole; what is between them is
    // read and written in place. There, where it costs few results, each block gives so many that
    // all stores are on vectors of a destination that begins on one. Where the arrays stand decides
    // nothing, so that it changes no bit of the results.
    struct Blocks {
        std::int64_t first, step;
        std::int64_t count;  // of those between
        std::int64_t last;   // results
    };
    Blocks divide(std::int64_t count) const {
        constexpr std::int64_t kVector = simd::Native<float>::bytes / sizeof(T);
        Blocks b{step(), step(), 0, 0};
        if (count > 2 * step() && step() % kVector * 16 < step()) {
            const std::int64_t first = step() - (step() - before()) % kVector;
            // All history of the next block is in the source.
            if (first >= before()) b = {first, step() - step() % kVector, 0, 0};
        }
        if (count <= b.first) return {count, b.step, 0, 0};
        // Each reads and writes all that a block has, also what the next one gives once more.
        if (count - b.first >= step()) b.count = (count - b.first - step()) / b.step + 1;
        b.last = count - b.first - b.count * b.step;
        return b;
    }

    ZepStatus byConvolver(const Zep32fc* src, Zep32fc* dst, std::int64_t count) const {
        const Blocks b = divide(count);
        const auto convolve = [&](const Zep32fc* x, Zep32fc* y, std::int64_t blocks) {
            fft::convolve(*convolver_, reinterpret_cast<const float*>(x),
                          reinterpret_cast<float*>(y), before(), b.step, blocks);
        };
        if (b.count > 0) convolve(src + (b.first - before()), dst + b.first, b.count);
        if (b.last > 0) {
            convolve(block(src, count - b.last, b.last, b_), b_, 1);
            Of::copy(b_, dst + (count - b.last), b.last);
        }
        convolve(block(src, 0, b.first, b_), b_, 1);
        Of::copy(b_, dst, b.first);
        return zepStsNoErr;
    }

    // Two blocks at a time, the first half of them beside the second; of those that are left over two
    // more; the transform of real samples alone does a single one at less cost.
    ZepStatus byConvolver(const Zep32f* src, Zep32f* dst, std::int64_t count) const {
        const Blocks b = divide(count);
        const std::int64_t half = b.count / 2, left = b.count - 2 * half;
        const auto pair = [&](const Zep32f* x1, const Zep32f* x2, Zep32f* y1, Zep32f* y2,
                              std::int64_t blocks) {
            fft::convolvePair<float>(*convolver_, {x1, x2}, {y1, y2}, before(), b.step, blocks);
        };
        if (half > 0) {
            const Zep32f* x = src + (b.first - before());
            Zep32f* y = dst + b.first;
            pair(x, x + half * b.step, y, y + half * b.step, half);
        }
        auto* second = static_cast<Zep32f*>(state_.pSecondBuf);
        std::int64_t last = b.last;
        if (left > 0) {
            const std::int64_t at = count - b.last - b.step;
            pair(block(src, 0, b.first, b_), src + (at - before()), b_, second, 1);
            Of::copy(second, dst + at, b.step);
        } else if (last > 0) {
            pair(block(src, 0, b.first, b_), block(src, count - last, last, second), b_, second, 1);
            Of::copy(second, dst + (count - last), last);
            last = 0;
        } else {
            return single(block(src, 0, b.first, b_), dst, b.first);
        }
        Of::copy(b_, dst, b.first);
        return last > 0 ? single(block(src, count - last, last, b_), dst + (count - last), last)
                        : zepStsNoErr;
    }

    // From the last block to the first: the wrapped results in front of a block's own stand where the
    // block before it writes next, so that a whole block goes to dst without a copy.
    ZepStatus byTransform(const T* src, T* dst, std::int64_t count) const {
        for (std::int64_t done = (count - 1) / step() * step(); done >= 0; done -= step()) {
            const std::int64_t rest = count - done;
            const ZepStatus s = done > 0 && rest >= step()
                                    ? filter(src + (done - before()), dst + (done - before()))
                                    : single(block(src, done, rest < step() ? rest : step(), b_),
                                             dst + done, rest < step() ? rest : step());
            if (s != zepStsNoErr) return s;
        }
        return zepStsNoErr;
    }

    ZepStatus single(const T* x, T* y, std::int64_t results) const {
        const ZepStatus s = filter(x, b_);
        if (s == zepStsNoErr) Of::copy(b_ + before(), y, results);
        return s;
    }

    // The N samples at x; the first L-1 results have wrapped.
    ZepStatus filter(const T* x, T* y) const {
        if (const ZepStatus s = Of::forward(x, b_, spec_, state_.pFFTWork); s != zepStsNoErr)
            return s;
        Of::multiply(static_cast<const T*>(state_.pFFTTaps), b_, static_cast<int>(N_));
        return Of::inverse(b_, y, spec_, state_.pFFTWork);
    }

    // The last L of the history and the inputs.
    void keepHistory(const T* src, std::int64_t count) {
        T* delay = static_cast<T*>(state_.pDlyLine);
        state_.dlyLineIndex = 0;
        if (count < L_) copy(delay, delay + count, L_ - count);
        const std::int64_t kept = count < L_ ? count : L_;
        Of::copy(src + (count - kept), delay + (L_ - kept), kept);
    }

    ZepFIRState& state_;
    const Spec* spec_;
    const fft::Convolver<float>* convolver_;
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
