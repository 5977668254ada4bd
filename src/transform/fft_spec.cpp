#include "transform/fft_spec.h"

#include "core/checks.h"
#include "simd/reciprocal_root.h"
#include "transform/fft_tables.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr int kMaxOrderAnyKind = 30;

constexpr int maxOrder(FftKind kind) { return kind == FftKind::Complex ? 28 : 29; }

constexpr std::size_t roundUp(std::size_t bytes) {
    return (bytes + kFftAlignment - 1) & ~std::size_t{kFftAlignment - 1};
}

constexpr std::size_t kFixedBytes = roundUp(sizeof(FftObject));

// The sines, from the order on for which no compiled table serves.
std::size_t temporaryBytes(FftKind kind, int order) {
    if (order <= kConstantSineOrder) return 0;
    const std::size_t entries = (std::size_t{1} << (sineOrder(kind, order) - 2)) + 1;
    return roundUp(entries * sizeof(float)) + kFftAlignment;
}

constexpr bool validFlag(int flag) { return flag == 1 || flag == 2 || flag == 4 || flag == 8; }

// A long transform needs room for one block or for one tile of columns, whichever is larger, at
// every level, and its bit reversal for two tiles.
constexpr std::size_t complexScratch(int order) {
    if (order <= Tuning::directMaxOrder) return 0;
    if (order <= Tuning::blockMaxOrder) return std::size_t{8} << order;
    std::size_t bytes =
        order >= Tuning::tiledFromOrder ? std::size_t{16} << 2 * Tuning::tileOrder : 0;
    int rest = order;
    while (rest > Tuning::blockMaxOrder) {
        const FftSplit split = Tuning::split(rest);
        const std::size_t tile = std::size_t{8} << split.t;
        if (tile > bytes) bytes = tile;
        rest -= split.r;
    }
    const std::size_t block = std::size_t{8} << rest;
    return block > bytes ? block : bytes;
}

std::size_t scratchBytes(FftKind kind, int order) {
    if (kind == FftKind::Complex) return complexScratch(order);
    return order >= 5 ? complexScratch(order - 1) : 0;
}

void decodeFlag(FftObject& spec, FftKind kind, int flag) {
    spec.magic = static_cast<std::int32_t>(kind);
    const float length = static_cast<float>(std::int64_t{1} << spec.order);
    spec.scaleForward = flag == ZEP_FFT_SCALE_FWD || flag == ZEP_FFT_SCALE_SQRT;
    spec.scaleInverse = flag == ZEP_FFT_SCALE_INV || flag == ZEP_FFT_SCALE_SQRT;
    if (flag == ZEP_FFT_SCALE_SQRT)
        spec.scale = simd::refinedReciprocalRoot(length);
    else if (flag != ZEP_FFT_SCALE_NONE)
        spec.scale = 1.0f / length;
}

template <FftKind kKind, class Spec>
ZepStatus initAlloc(Spec** ppSpec, int order, int flag, int hint) {
    if (ppSpec == nullptr) return zepStsNullPtrErr;
    FftSizes sizes{};
    if (const ZepStatus s = FFTGetSize(kKind, order, flag, hint, &sizes); s != zepStsNoErr)
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
    FftObject* object = nullptr;
    const ZepStatus status = FFTInit(kKind, &object, order, flag, hint, memory, temporary);
    zepFree(temporary);
    if (status != zepStsNoErr) {
        zepFree(memory);
        return status;
    }
    object->ownsMemory = 1;
    *ppSpec = static_cast<Spec*>(object);
    return zepStsNoErr;
}

template <FftKind kKind, class Spec>
ZepStatus release(Spec* pSpec) {
    if (pSpec == nullptr) return zepStsNullPtrErr;
    if (pSpec->magic != static_cast<std::int32_t>(kKind)) return zepStsContextMatchErr;
    pSpec->magic = 0;
    // The allocator's blocks begin on 32-byte boundaries, so the object begins where its block
    // does.
    if (pSpec->ownsMemory == 1) zepFree(pSpec);
    return zepStsNoErr;
}

template <FftKind kKind, class Spec>
ZepStatus bufSize(const Spec* pSpec, int* pBufSize) {
    if (anyNull(pSpec, pBufSize)) return zepStsNullPtrErr;
    if (pSpec->magic != static_cast<std::int32_t>(kKind)) return zepStsContextMatchErr;
    *pBufSize = pSpec->workSize > 0 ? pSpec->workSize + kFftAlignment : 0;
    return zepStsNoErr;
}

}  // namespace

ZepStatus FFTGetSize(FftKind kind, int order, int flag, int, FftSizes* sizes) {
    if (order < 0 || order > kMaxOrderAnyKind) return zepStsFftOrderErr;
    if (sizes == nullptr) return zepStsNullPtrErr;
    if (!validFlag(flag)) return zepStsFftFlagErr;
    if (order > maxOrder(kind)) return zepStsFftOrderErr;
    sizes->object = kFixedBytes + tableBytes(kind, order) + kFftAlignment;
    sizes->temporary = temporaryBytes(kind, order);
    sizes->scratch = roundUp(scratchBytes(kind, order));
    return zepStsNoErr;
}

ZepStatus FFTInit(FftKind kind, FftObject** object, int order, int flag, int hint, void* memory,
                  void* temporary) {
    if (anyNull(object, memory)) return zepStsNullPtrErr;
    if (order < 0 || order > maxOrder(kind)) return zepStsFftOrderErr;
    if (temporaryBytes(kind, order) > 0 && temporary == nullptr) return zepStsNullPtrErr;
    FftObject* spec = alignUp(static_cast<FftObject*>(memory));
    // Whatever stood here is no valid object from now on, even where the flag is refused.
    *spec = FftObject{};
    if (!validFlag(flag)) return zepStsFftFlagErr;
    spec->order = order;
    spec->hint = hint;
    decodeFlag(*spec, kind, flag);
    spec->workSize = static_cast<std::int32_t>(roundUp(scratchBytes(kind, order)));
    float* tables = reinterpret_cast<float*>(reinterpret_cast<char*>(spec) + kFixedBytes);
    const Sines sines =
        temporaryBytes(kind, order) > 0
            ? computedSines(alignUp(static_cast<float*>(temporary)), sineOrder(kind, order))
            : constantSines();
    buildTables(*spec, kind, tables, sines);
    *object = spec;
    return zepStsNoErr;
}

ZepStatus zepsFFTInitAlloc_C_32fc(FFTSpecC32fc** ppSpec, int order, int flag, int hint) {
    return initAlloc<FftKind::Complex>(ppSpec, order, flag, hint);
}
ZepStatus zepsFFTInitAlloc_R_32f(FFTSpecR32f** ppSpec, int order, int flag, int hint) {
    return initAlloc<FftKind::Real>(ppSpec, order, flag, hint);
}

ZepStatus zepsFFTFree_C_32fc(FFTSpecC32fc* pSpec) { return release<FftKind::Complex>(pSpec); }
ZepStatus zepsFFTFree_R_32f(FFTSpecR32f* pSpec) { return release<FftKind::Real>(pSpec); }

ZepStatus zepsFFTGetBufSize_C_32fc(const FFTSpecC32fc* pSpec, int* pBufSize) {
    return bufSize<FftKind::Complex>(pSpec, pBufSize);
}
ZepStatus zepsFFTGetBufSize_R_32f(const FFTSpecR32f* pSpec, int* pBufSize) {
    return bufSize<FftKind::Real>(pSpec, pBufSize);
}

}  // namespace zep::ZEP_VARIANT
