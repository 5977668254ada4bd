// And, exclusive or and complement. They do not care for lanes, so they run over bytes in the
// widest registers.
#include "core/variant_exports.h"
#include "vector/block_map.h"
#include "vector/byte_count.h"
#include "vector/pattern.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr auto exclusiveOr = [](auto a, auto b) { return a ^ b; };

// op over the bytes of len elements; pDst may be a source.
template <class Op, class T>
inline ZepStatus checkedMapBytes(Op op, T* pDst, int len, const auto*... pSrc) {
    const auto map = [=](std::size_t bytes) {
        mapBytes<simd::WideBlock, sizeof(T)>(op, reinterpret_cast<std::uint8_t*>(pDst), bytes,
                                             reinterpret_cast<const std::uint8_t*>(pSrc)...);
        return zepStsNoErr;
    };
    return withByteCount<T>(len, map, pSrc..., pDst);
}

template <class T>
inline ZepStatus checkedAndC(const T* pSrc, T val, T* pDst, int len) {
    const auto pattern = repeated(val);
    const auto andPattern = [=]<class B>(B x) { return x & pattern.template block<B>(); };
    return checkedMapBytes(andPattern, pDst, len, pSrc);
}

}  // namespace

// With a mask of 0 the source is not read.
ZepStatus zepsAndC_16u(const Zep16u* pSrc, Zep16u val, Zep16u* pDst, int len) {
    if (val != 0) return checkedAndC(pSrc, val, pDst, len);
    if (pSrc == nullptr) return zepStsNullPtrErr;
    return zepsZero_16s(reinterpret_cast<Zep16s*>(pDst), len);
}
ZepStatus zepsAndC_32u(const Zep32u* pSrc, Zep32u val, Zep32u* pDst, int len) {
    if (val != 0) return checkedAndC(pSrc, val, pDst, len);
    if (pSrc == nullptr) return zepStsNullPtrErr;
    return zepsZero_32s(reinterpret_cast<Zep32s*>(pDst), len);
}
ZepStatus zepsAndC_16u_I(Zep16u val, Zep16u* pSrcDst, int len) {
    return zepsAndC_16u(pSrcDst, val, pSrcDst, len);
}
ZepStatus zepsAndC_32u_I(Zep32u val, Zep32u* pSrcDst, int len) {
    return zepsAndC_32u(pSrcDst, val, pSrcDst, len);
}

ZepStatus zepsXor_16u(const Zep16u* pSrc1, const Zep16u* pSrc2, Zep16u* pDst, int len) {
    return checkedMapBytes(exclusiveOr, pDst, len, pSrc1, pSrc2);
}
ZepStatus zepsXor_8u_I(const Zep8u* pSrc, Zep8u* pSrcDst, int len) {
    return checkedMapBytes(exclusiveOr, pSrcDst, len, pSrc, static_cast<const Zep8u*>(pSrcDst));
}

ZepStatus zepsNot_32u_I(Zep32u* pSrcDst, int len) {
    const auto complement = []<class B>(B x) { return x ^ B::broadcast(~std::uint64_t{0}); };
    return checkedMapBytes(complement, pSrcDst, len, static_cast<const Zep32u*>(pSrcDst));
}

}  // namespace zep::ZEP_VARIANT
