// Creation and release of single-rate filters.
#include "core/checks.h"
#include "filter/fir_multirate.h"
#include "filter/fir_state.h"
#include "simd/vec.h"
#include "transform/fft_convolve.h"

namespace zep::ZEP_VARIANT {
namespace {

using filter::FirTraits;
using filter::TransformOf;

// Hands out pieces of a block on 64-byte boundaries of it; without a block it only counts.
class Layout {
public:
    explicit Layout(void* memory) : memory_(static_cast<char*>(memory)) {}

    template <class P>
    P* piece(std::int64_t count) {
        char* p = memory_ == nullptr ? nullptr : memory_ + used_;
        used_ += (count * static_cast<std::int64_t>(sizeof(P)) + 63) & ~std::int64_t{63};
        return reinterpret_cast<P*>(p);
    }
    std::int64_t bytes() const { return used_; }

private:
    char* memory_;
    std::int64_t used_ = 0;
};

using Convolver = fft::Convolver<float>;
constexpr std::int64_t kLineFloats = fft::kLine / sizeof(float);

// Both routes of complex samples are limited by the sums of their butterflies, which are as many.
// Where vectors are of 32 bytes the transforms of the object wait less for them, but in the shortest
// and in long blocks; everywhere else the convolver's fewer sweeps and shuffles count. Pairs of real
// blocks save half the sums.
template <class T>
constexpr bool convolverPays(int order) {
    const bool waits = FirTraits<T>::kind == filter::FirKind::Complex &&
                       simd::Native<float>::bytes == 32 && order > 6 && order < 13;
    return fft::hasConvolver<float>(order) && !waits;
}

// The record, then its arrays. fftLen is 0 without a transform route, its order then of no
// importance.
template <class T>
ZepFIRState* layOut(Layout& layout, std::int64_t L, std::int64_t fftLen, int order, int workBytes) {
    auto* state = layout.piece<ZepFIRState>(1);
    T* taps = layout.piece<T>(L);
    T* delay = layout.piece<T>(filter::delayLength<T>(L));
    T* spectrum = layout.piece<T>(fftLen);
    Zep8u* work = layout.piece<Zep8u>(workBytes);
    T* buffer = layout.piece<T>(fftLen);
    T* block = layout.piece<T>(Tuned<filter::FirTuning>::inPlaceBlock);
    const bool convolves = fftLen > 0 && convolverPays<T>(order);
    auto* convolver = layout.piece<Convolver>(convolves ? 1 : 0);
    // The block itself begins on half a cache line.
    float* tables = layout.piece<float>(
        convolves ? static_cast<std::int64_t>(fft::convolverScalars<float>(order)) + kLineFloats
                  : 0);
    const bool pairs = convolves && FirTraits<T>::kind == filter::FirKind::Real;
    T* second = layout.piece<T>(pairs ? fftLen : 0);
    if (state == nullptr) return nullptr;
    *state = ZepFIRState{};
    state->pTapsRev = taps;
    state->pDlyLine = delay;
    state->pFFTTaps = fftLen > 0 ? spectrum : nullptr;
    state->pFFTWork = workBytes > 0 ? work : nullptr;
    state->pFFTBuf = fftLen > 0 ? buffer : nullptr;
    state->pBlockBuf = block;
    if (convolves) {
        *convolver = fft::makeConvolver(order, fft::alignUp(tables, fft::kLine));
        state->pConvolver = convolver;
        state->pSecondBuf = second;
    }
    return state;
}

template <class T>
void reversed(const T* src, T* dst, std::int64_t n) {
    for (std::int64_t i = 0; i < n; ++i) dst[i] = simd::readAny(src + (n - 1 - i));
}

void setTaps(const Convolver& convolver, const Zep32f* taps, int count) {
    fft::setTaps(convolver, taps, count);
}
void setTaps(const Convolver& convolver, const Zep32fc* taps, int count) {
    fft::setComplexTaps(convolver, reinterpret_cast<const float*>(taps), count);
}

// Releases a transform object unless it is handed over.
template <class T>
struct SpecHolder {
    typename TransformOf<T>::Spec* spec = nullptr;
    ~SpecHolder() {
        if (spec != nullptr) TransformOf<T>::release(spec);
    }
};

template <class T>
ZepStatus create(ZepFIRState** ppState, const T* taps, int L, const T* history) {
    using Of = TransformOf<T>;
    if (anyNull(ppState, taps)) return zepStsNullPtrErr;
    if (L < 1) return zepStsFIRLenErr;
    SpecHolder<T> holder;
    std::int64_t N = 0;
    int workBytes = 0, order = 0;
    if (L >= FirTraits<T>::transformFromTaps) {
        // From 2L+2 to 4L points. An object that is not made shows in the query.
        order = filter::orderFor(std::int64_t{L} + 1, 2) + 1;
        N = std::int64_t{1} << order;
        (void)Of::create(&holder.spec, order);
        if (const ZepStatus s = Of::bytes(holder.spec, &workBytes); s != zepStsNoErr) return s;
    }
    Layout counted(nullptr);
    layOut<T>(counted, L, N, order, workBytes);
    filter::Scratch<Zep8u> memory;
    if (!memory.allocate(static_cast<std::size_t>(counted.bytes()))) return zepStsMemAllocErr;
    Layout layout(memory.data());
    ZepFIRState* state = layOut<T>(layout, L, N, order, workBytes);
    state->idFIR = static_cast<std::uint32_t>(FirTraits<T>::kind);
    state->tapsLen = state->dlyLineLen = L;
    state->splitCount = static_cast<std::int32_t>(FirTraits<T>::splitCount(L));
    state->upFactor = state->downFactor = 1;
    state->fftLen = N > 0 ? static_cast<std::int32_t>(N) : -1;
    state->fftWorkSize = workBytes;
    state->ownsMemory = 1;
    reversed(taps, static_cast<T*>(state->pTapsRev), L);
    auto* delay = static_cast<T*>(state->pDlyLine);
    Of::zero(delay, filter::delayLength<T>(L));
    if (history != nullptr) reversed(history, delay, L);
    *ppState = state;
    if (N > 0) {
        auto* spectrum = static_cast<T*>(state->pFFTTaps);
        Of::copy(taps, spectrum, L);
        Of::zero(spectrum + L, N - L);
        if (const ZepStatus s = Of::forward(spectrum, spectrum, holder.spec, state->pFFTWork);
            s != zepStsNoErr)
            return s;
        if (state->pConvolver != nullptr)
            setTaps(*static_cast<const Convolver*>(state->pConvolver), taps, L);
        state->pFFTSpec = holder.spec;
        holder.spec = nullptr;
    }
    memory.release();
    return zepStsNoErr;
}

template <class T>
ZepStatus release(ZepFIRState* state) {
    if (state == nullptr) return zepStsNullPtrErr;
    if (!filter::isSingleRate<T>(*state) && !filter::isMultirate<T>(*state))
        return zepStsContextMatchErr;
    if (state->ownsMemory == 0) return zepStsNoErr;
    if (state->pFFTSpec != nullptr)
        TransformOf<T>::release(static_cast<typename TransformOf<T>::Spec*>(state->pFFTSpec));
    state->idFIR = 0;
    zepFree(state);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsFIRInitAlloc_32f(ZepFIRState** ppState, const Zep32f* pTaps, int tapsLen,
                               const Zep32f* pDlyLine) {
    return create(ppState, pTaps, tapsLen, pDlyLine);
}
ZepStatus zepsFIRInitAlloc_32fc(ZepFIRState** ppState, const Zep32fc* pTaps, int tapsLen,
                                const Zep32fc* pDlyLine) {
    return create(ppState, pTaps, tapsLen, pDlyLine);
}
ZepStatus zepsFIRFree_32f(ZepFIRState* pState) { return release<Zep32f>(pState); }
ZepStatus zepsFIRFree_32fc(ZepFIRState* pState) { return release<Zep32fc>(pState); }

}  // namespace zep::ZEP_VARIANT
