#include "transform/fft_spec.h"

#include "core/checks.h"
#include "simd/reciprocal_root.h"
#include "transform/fft_tables.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

constexpr int kMaxOrderAnyKind = 30;

constexpr int maxOrder(FftKind kind) {
    return kind == FftKind::Complex ? 28 : kind == FftKind::Real ? 29 : 27;
}

constexpr std::size_t roundUp(std::size_t bytes) {
    return (bytes + kObjectAlignment - 1) & ~(kObjectAlignment - 1);
}

// The fixed part, and from there to the tables: an object on an odd multiple of 32 leaves a gap.
template <class T>
constexpr std::size_t kFixedBytes = sizeof(FftObject<T>);
template <class T>
constexpr std::size_t kMaxFixedBytes = roundUp(kFixedBytes<T>) + kLine - kObjectAlignment;

// The sines, from the order on for which no compiled table serves.
template <class T>
std::size_t temporaryBytes(FftKind kind, int order) {
    if (order <= kConstantSineOrder) return 0;
    return roundUp(waveEntries(sineOrder<T>(kind, order)) * sizeof(T)) + kObjectAlignment;
}

constexpr bool validFlag(int flag) { return flag == 1 || flag == 2 || flag == 4 || flag == 8; }

// A long transform needs room for one block or for one tile of columns, whichever is larger, at
// every level, and its bit reversal for two tiles.
template <class T>
constexpr std::size_t complexScratch(int order) {
    using Tuning = TuningOf<T>;
    constexpr std::size_t element = 2 * sizeof(T);
    if (order <= Tuning::directMaxOrder) return 0;
    if (order <= Tuning::blockMaxOrder) return element << order;
    std::size_t bytes = order >= Tuning::tiledFromOrder ? 2 * element << 2 * Tuning::tileOrder : 0;
    int rest = order;
    while (rest > Tuning::blockMaxOrder) {
        const Split split = Tuning::split(rest);
        const std::size_t tile = element << split.t;
        if (tile > bytes) bytes = tile;
        rest -= split.r;
    }
    const std::size_t block = element << rest;
    return block > bytes ? block : bytes;
}

// What the routes use, whatever callers are told: the tiles of a split transform.
template <class T>
constexpr bool scratchHoldsTheTiles() {
    using Tuning = TuningOf<T>;
    for (int order = Tuning::splitFromOrder; order <= maxOrder(FftKind::Complex); ++order) {
        std::size_t needed = 4 * sizeof(T) << 2 * Tuning::tileOrder;
        int rest = order;
        for (int level = 0; splitAt<T>(level, rest).r > 0; ++level) {
            const Split split = splitAt<T>(level, rest);
            if (needed < 2 * sizeof(T) << split.t) needed = 2 * sizeof(T) << split.t;
            rest -= split.r;
        }
        if (complexScratch<T>(order) < needed) return false;
    }
    return true;
}
static_assert(scratchHoldsTheTiles<float>() && scratchHoldsTheTiles<double>());

template <class T>
std::size_t scratchBytes(FftKind kind, int order) {
    if (kind != FftKind::Real) return complexScratch<T>(order);
    return order >= kFirstFoldedOrder ? complexScratch<T>(order - 1) : 0;
}

inline float reciprocalRoot(float N) { return simd::refinedReciprocalRoot(N); }
inline double reciprocalRoot(double N) { return 1.0 / __builtin_sqrt(N); }

template <class T>
void decodeFlag(FftObject<T>& spec, FftKind kind, int flag) {
    spec.magic = static_cast<std::int32_t>(kind);
    const T length = static_cast<T>(std::int64_t{1} << spec.order);
    spec.scaleForward = flag == ZEP_FFT_SCALE_FWD || flag == ZEP_FFT_SCALE_SQRT;
    spec.scaleInverse = flag == ZEP_FFT_SCALE_INV || flag == ZEP_FFT_SCALE_SQRT;
    if (flag == ZEP_FFT_SCALE_SQRT)
        spec.scale = reciprocalRoot(length);
    else if (flag != ZEP_FFT_SCALE_NONE)
        spec.scale = 1 / length;
}

}  // namespace

template <class T>
ZepStatus FFTGetSize(FftKind kind, int order, int flag, int, FftSizes* sizes) {
    if (order < 0 || order > kMaxOrderAnyKind) return zepStsFftOrderErr;
    if (sizes == nullptr) return zepStsNullPtrErr;
    if (!validFlag(flag)) return zepStsFftFlagErr;
    if (order > maxOrder(kind)) return zepStsFftOrderErr;
    sizes->object = kMaxFixedBytes<T> + tableBytes<T>(kind, order) + kObjectAlignment;
    sizes->temporary = temporaryBytes<T>(kind, order);
    sizes->scratch = roundUp(scratchBytes<T>(kind, order));
    return zepStsNoErr;
}

template <class T>
ZepStatus FFTInit(FftKind kind, FftObject<T>** object, int order, int flag, int hint, void* memory,
                  void* temporary) {
    if (anyNull(object, memory)) return zepStsNullPtrErr;
    if (order < 0 || order > maxOrder(kind)) return zepStsFftOrderErr;
    if (temporaryBytes<T>(kind, order) > 0 && temporary == nullptr) return zepStsNullPtrErr;
    auto* spec = static_cast<FftObject<T>*>(alignUp(memory));
    // Whatever stood here is no valid object from now on, even where the flag is refused.
    *spec = FftObject<T>{};
    if (!validFlag(flag)) return zepStsFftFlagErr;
    spec->order = order;
    spec->hint = hint;
    decodeFlag(*spec, kind, flag);
    spec->workSize = static_cast<std::int32_t>(roundUp(scratchBytes<T>(kind, order)));
    void* tables = alignUp<void>(reinterpret_cast<char*>(spec) + kFixedBytes<T>, kLine);
    const Sines<T> sines =
        temporaryBytes<T>(kind, order) > 0
            ? computedSines(static_cast<T*>(alignUp(temporary)), sineOrder<T>(kind, order))
            : constantSines<T>();
    buildTables(*spec, kind, tables, sines);
    *object = spec;
    return zepStsNoErr;
}

template <class Spec>
ZepStatus initAlloc(Spec** ppSpec, int order, int flag, int hint) {
    using T = typename SpecTraits<Spec>::Scalar;
    constexpr FftKind kKind = SpecTraits<Spec>::kind;
    if (ppSpec == nullptr) return zepStsNullPtrErr;
    FftSizes sizes{};
    if (const ZepStatus s = FFTGetSize<T>(kKind, order, flag, hint, &sizes); s != zepStsNoErr)
        return s;
    void* memory = zepMalloc(static_cast<int>(sizes.object));
    if (memory == nullptr) return zepStsMemAllocErr;
    void* temporary = nullptr;
    if (sizes.temporary > 0) {
        temporary = zepMalloc(static_cast<int>(sizes.temporary));
        if (temporary == nullptr) {
            zepFree(memory);
            return zepStsMemAllocErr;
        }
    }
    FftObject<T>* object = nullptr;
    const ZepStatus status = FFTInit<T>(kKind, &object, order, flag, hint, memory, temporary);
    zepFree(temporary);
    if (status != zepStsNoErr) {
        zepFree(memory);
        return status;
    }
    object->ownsMemory = 1;
    *ppSpec = static_cast<Spec*>(object);
    return zepStsNoErr;
}

template <class Spec>
ZepStatus release(Spec* pSpec) {
    if (const ZepStatus s = checkObject<SpecTraits<Spec>::kind>(pSpec); s != zepStsNoErr) return s;
    pSpec->magic = 0;
    // The allocator's blocks begin on 32-byte boundaries, so the object begins where its block
    // does.
    if (pSpec->ownsMemory == 1) zepFree(pSpec);
    return zepStsNoErr;
}

template <class Spec>
ZepStatus bufSize(const Spec* pSpec, int* pBufSize) {
    if (pBufSize == nullptr) return zepStsNullPtrErr;
    if (const ZepStatus s = checkObject<SpecTraits<Spec>::kind>(pSpec); s != zepStsNoErr) return s;
    constexpr int kSlack = static_cast<int>(kObjectAlignment);
    *pBufSize = pSpec->workSize > 0 ? pSpec->workSize + kSlack : 0;
    return zepStsNoErr;
}

template ZepStatus FFTGetSize<float>(FftKind, int, int, int, FftSizes*);
template ZepStatus FFTGetSize<double>(FftKind, int, int, int, FftSizes*);
template ZepStatus FFTInit<float>(FftKind, FftObject<float>**, int, int, int, void*, void*);
template ZepStatus FFTInit<double>(FftKind, FftObject<double>**, int, int, int, void*, void*);
template ZepStatus initAlloc(FFTSpecC32fc**, int, int, int);
template ZepStatus initAlloc(FFTSpecR32f**, int, int, int);
template ZepStatus initAlloc(FFTSpecC64fc**, int, int, int);
template ZepStatus release(FFTSpecC32fc*);
template ZepStatus release(FFTSpecR32f*);
template ZepStatus release(FFTSpecC64fc*);
template ZepStatus bufSize(const FFTSpecC32fc*, int*);
template ZepStatus bufSize(const FFTSpecR32f*, int*);
template ZepStatus bufSize(const FFTSpecC64fc*, int*);

}  // namespace zep::ZEP_VARIANT::fft

namespace zep::ZEP_VARIANT {

ZepStatus zepsFFTInitAlloc_C_32fc(FFTSpecC32fc** ppSpec, int order, int flag, int hint) {
    return fft::initAlloc(ppSpec, order, flag, hint);
}
ZepStatus zepsFFTInitAlloc_R_32f(FFTSpecR32f** ppSpec, int order, int flag, int hint) {
    return fft::initAlloc(ppSpec, order, flag, hint);
}

ZepStatus zepsFFTFree_C_32fc(FFTSpecC32fc* pSpec) { return fft::release(pSpec); }
ZepStatus zepsFFTFree_R_32f(FFTSpecR32f* pSpec) { return fft::release(pSpec); }

ZepStatus zepsFFTGetBufSize_C_32fc(const FFTSpecC32fc* pSpec, int* pBufSize) {
    return fft::bufSize(pSpec, pBufSize);
}
ZepStatus zepsFFTGetBufSize_R_32f(const FFTSpecR32f* pSpec, int* pBufSize) {
    return fft::bufSize(pSpec, pBufSize);
}

}  // namespace zep::ZEP_VARIANT
