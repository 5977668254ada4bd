// Set-up: which tables a length needs, and their release.
#include <type_traits>

#include "transform/dft_object.h"
#include "transform/dft_odd.h"
#include "transform/dft_real.h"
#include "transform/dft_tables.h"
#include "transform/fft_driver.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

template <class P>
void freeTable(P* p) {
    if (p != nullptr) zepFree(p);
}

constexpr int orderOf(int powerOfTwo) {
    int order = 0;
    while (1 << order < powerOfTwo) ++order;
    return order;
}

template <class T>
bool decodeFlag(DftObject<T>& spec, int flag) {
    if (flag != ZEP_FFT_SCALE_FWD && flag != ZEP_FFT_SCALE_INV && flag != ZEP_FFT_SCALE_SQRT &&
        flag != ZEP_FFT_SCALE_NONE)
        return false;
    spec.scaleForward = flag == ZEP_FFT_SCALE_FWD || flag == ZEP_FFT_SCALE_SQRT;
    spec.scaleInverse = flag == ZEP_FFT_SCALE_INV || flag == ZEP_FFT_SCALE_SQRT;
    if (flag == ZEP_FFT_SCALE_SQRT)
        spec.scale = static_cast<T>(1.0 / __builtin_sqrt(static_cast<double>(spec.len)));
    else if (flag != ZEP_FFT_SCALE_NONE)
        spec.scale = T{1} / static_cast<T>(spec.len);
    return true;
}

// A power of two above the straight-line lengths.
template <class Spec>
ZepStatus planFft(DftObject<typename SpecTraits<Spec>::Scalar>& spec, int flag, int hint) {
    using FftSpec = typename SpecTraits<Spec>::Fft;
    spec.usesFFT = 1;
    FftSpec* nested = nullptr;
    if (const ZepStatus s = fft::initAlloc(&nested, orderOf(spec.len), flag, hint);
        s != zepStsNoErr)
        return s;
    spec.fftSpec = nested;
    return fft::bufSize(nested, &spec.workSize);
}

// spectrum, of convLen pairs, becomes its transform times 1/convLen.
template <class T>
ZepStatus transformChirp(T* spectrum, const DftObject<T>& inner) {
    const fft::Scratch scratch(nullptr, inner.workSize);
    if (scratch.missing()) return zepStsMemAllocErr;
    const ZepStatus s = Run<Direction::Forward, T>::points(spectrum, spectrum, inner.len, inner,
                                                           scratch.template as<T>(), 1);
    if (s != zepStsNoErr) return s;
    const T factor = T{1} / static_cast<T>(inner.len);
    for (std::int64_t n = 0; n < 2 * std::int64_t{inner.len}; ++n) spectrum[n] *= factor;
    return zepStsNoErr;
}

// Up to this length the spectrum of a float chirp is computed in double precision: its rounding
// errors would be a third of all. Longer transforms have more of their own.
constexpr int kMaxExactConvolution = 1 << 17;

ZepStatus transformChirpExactly(DftObject<float>& spec, int len) {
    DFTSpecC64fc exact{};
    exact.convLen = spec.convLen;
    ZepStatus status = zepStsMemAllocErr;
    if (buildChirp<double>(exact, len)) {
        DFTSpecC64fc* inner = nullptr;
        status = initAlloc(&inner, spec.convLen, ZEP_FFT_SCALE_NONE, 0);
        if (status == zepStsNoErr) {
            status = transformChirp<double>(exact.chirpSpectrum, *inner);
            release(inner);
        }
    }
    if (status == zepStsNoErr)
        for (std::int64_t n = 0; n < 2 * std::int64_t{spec.convLen}; ++n)
            spec.chirpSpectrum[n] = static_cast<float>(exact.chirpSpectrum[n]);
    freeTable(exact.chirp);
    freeTable(exact.chirpSpectrum);
    return status;
}

// The convolution's transform, and the spectrum of the chirp with 1/convLen in it.
template <class T>
ZepStatus planConvolution(DftObject<T>& spec, int len) {
    using Inner = typename ComplexSpec<T>::Type;
    spec.convLen = convolutionLength(len);
    if (!buildChirp(spec, len)) return zepStsMemAllocErr;
    Inner* inner = nullptr;
    if (const ZepStatus s = initAlloc(&inner, spec.convLen, ZEP_FFT_SCALE_NONE, 0);
        s != zepStsNoErr)
        return s;
    spec.convSpec = inner;
    const std::size_t bytes = static_cast<std::size_t>(inner->workSize) + 32 +
                              static_cast<std::size_t>(spec.convLen) * 2 * sizeof(T);
    if (bytes > 0x7FFFFFFF) return zepStsMemAllocErr;
    spec.workSize = static_cast<std::int32_t>(bytes);
    if constexpr (std::is_same_v<T, float>)
        if (spec.convLen <= kMaxExactConvolution) return transformChirpExactly(spec, len);
    return transformChirp<T>(spec.chirpSpectrum, *inner);
}

template <class T>
ZepStatus planPoints(DftObject<T>& spec, int len) {
    const Factors factors = factorise<T>(len);
    switch (routeOf<T>(len, factors)) {
        case Route::MixedRadix:
            spec.workSize = static_cast<std::int32_t>(mixedRadixScratch<T>(len, factors));
            return buildPasses(spec, len, factors) ? zepStsNoErr : zepStsMemAllocErr;
        case Route::Odd:
            spec.workSize = len * static_cast<int>(2 * sizeof(T)) + 32;
            return buildDirect(spec, len) ? zepStsNoErr : zepStsMemAllocErr;
        case Route::Chirp:
            return planConvolution(spec, len);
        default:
            return zepStsSizeErr;
    }
}

ZepStatus planRealOdd(DftObject<float>& spec) {
    const int len = spec.len;
    const Factors factors = factorise<float>(len);
    if (factors.count > 0) {
        spec.realOdd = 1;
        spec.workSize = static_cast<std::int32_t>(mixedRadixScratch<float>(len, factors));
        return buildRealPasses(spec, factors) ? zepStsNoErr : zepStsMemAllocErr;
    }
    if (len > Limits<float>::oddLength) return planPoints(spec, len);
    spec.workSize = len * static_cast<int>(sizeof(float)) + 32;
    return buildDirect(spec, len) ? zepStsNoErr : zepStsMemAllocErr;
}

ZepStatus planRealEven(DftObject<float>& spec) {
    const int h = spec.len / 2;
    if (h <= kDirectMaxLength) return zepStsNoErr;
    return buildFold(spec) ? planPoints(spec, h) : zepStsMemAllocErr;
}

template <class Spec>
ZepStatus plan(Spec& spec, int flag, int hint) {
    using T = typename SpecTraits<Spec>::Scalar;
    if (!decodeFlag<T>(spec, flag)) return zepStsFftFlagErr;
    const int len = spec.len;
    if (len <= kDirectMaxLength) return zepStsNoErr;
    if ((len & (len - 1)) == 0) return planFft<Spec>(spec, flag, hint);
    if (len > Limits<T>::length) return zepStsSizeErr;
    if constexpr (SpecTraits<Spec>::kind == DftKind::Real)
        return len % 2 == 0 ? planRealEven(spec) : planRealOdd(spec);
    else
        return planPoints<T>(spec, len);
}

// Whatever has been made so far.
template <class Spec>
void releaseAll(Spec* spec) {
    using T = typename SpecTraits<Spec>::Scalar;
    using Inner = typename ComplexSpec<T>::Type;
    if (spec->fftSpec != nullptr)
        fft::release(static_cast<typename SpecTraits<Spec>::Fft*>(spec->fftSpec));
    freeTable(spec->directTable);
    freeTable(spec->foldTwiddles);
    freeTable(spec->unfoldTwiddles);
    freeTable(spec->chirp);
    freeTable(spec->chirpSpectrum);
    freeTable(spec->digitPermutation);
    if (spec->convSpec != nullptr) release(static_cast<Inner*>(spec->convSpec));
    const T* shared = nullptr;
    for (DftFactor<T>& f : spec->factors) {
        freeTable(f.twiddles);
        if (f.oddTable != shared) freeTable(f.oddTable);
        shared = f.oddTable;
    }
    spec->magic = 0;
    zepFree(spec);
}

}  // namespace

template <class Spec>
ZepStatus initAlloc(Spec** ppSpec, int len, int flag, int hint) {
    if (ppSpec == nullptr) return zepStsNullPtrErr;
    if (len < 1) return zepStsSizeErr;
    Spec* spec = allocate<Spec>(1);
    if (spec == nullptr) return zepStsMemAllocErr;
    *spec = Spec{};
    spec->magic = static_cast<std::int32_t>(SpecTraits<Spec>::kind);
    spec->len = len;
    spec->hint = hint;
    if (const ZepStatus s = plan(*spec, flag, hint); s != zepStsNoErr) {
        releaseAll(spec);
        return s;
    }
    *ppSpec = spec;
    return zepStsNoErr;
}

template <class Spec>
ZepStatus release(Spec* pSpec) {
    if (const ZepStatus s = fft::checkObject<SpecTraits<Spec>::kind>(pSpec); s != zepStsNoErr)
        return s;
    releaseAll(pSpec);
    return zepStsNoErr;
}

template <class Spec>
ZepStatus bufSize(const Spec* pSpec, int* pBufSize) {
    if (pBufSize == nullptr) return zepStsNullPtrErr;
    if (const ZepStatus s = fft::checkObject<SpecTraits<Spec>::kind>(pSpec); s != zepStsNoErr)
        return s;
    *pBufSize = pSpec->workSize;
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT::dft

namespace zep::ZEP_VARIANT {

ZepStatus zepsDFTInitAlloc_C_32fc(DFTSpecC32fc** ppSpec, int len, int flag, int hint) {
    return dft::initAlloc(ppSpec, len, flag, hint);
}
ZepStatus zepsDFTInitAlloc_C_64fc(DFTSpecC64fc** ppSpec, int len, int flag, int hint) {
    return dft::initAlloc(ppSpec, len, flag, hint);
}
ZepStatus zepsDFTInitAlloc_R_32f(DFTSpecR32f** ppSpec, int len, int flag, int hint) {
    return dft::initAlloc(ppSpec, len, flag, hint);
}

ZepStatus zepsDFTFree_C_32fc(DFTSpecC32fc* pSpec) { return dft::release(pSpec); }
ZepStatus zepsDFTFree_C_64fc(DFTSpecC64fc* pSpec) { return dft::release(pSpec); }
ZepStatus zepsDFTFree_R_32f(DFTSpecR32f* pSpec) { return dft::release(pSpec); }

ZepStatus zepsDFTGetBufSize_C_32fc(const DFTSpecC32fc* pSpec, int* pBufSize) {
    return dft::bufSize(pSpec, pBufSize);
}
ZepStatus zepsDFTGetBufSize_C_64fc(const DFTSpecC64fc* pSpec, int* pBufSize) {
    return dft::bufSize(pSpec, pBufSize);
}
ZepStatus zepsDFTGetBufSize_R_32f(const DFTSpecR32f* pSpec, int* pBufSize) {
    return dft::bufSize(pSpec, pBufSize);
}

}  // namespace zep::ZEP_VARIANT
