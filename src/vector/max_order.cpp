// Binary order of the largest magnitude, from the exponent bits.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/control_word.h"
#include "vector/reduce.h"

namespace zep::ZEP_VARIANT {
namespace {

using V = simd::Native<std::int32_t>;

constexpr std::int32_t kInfinity = 0x7F800000;

// As integers, magnitudes have the order of the numbers, infinity above them and not-a-numbers
// above that.
struct LargestMagnitude {
    V magnitude = V::zero();
    [[gnu::always_inline]] void add(V x) {
        magnitude = max(magnitude, x & V::broadcast(0x7FFFFFFF));
    }
    [[gnu::always_inline]] void merge(const LargestMagnitude& other) {
        magnitude = max(magnitude, other.magnitude);
    }
};

struct LargestFinite {
    V magnitude = V::zero();
    [[gnu::always_inline]] void add(V x) {
        const V m = x & V::broadcast(0x7FFFFFFF);
        magnitude = max(magnitude, keepIf(m < V::broadcast(kInfinity), m));
    }
    [[gnu::always_inline]] void merge(const LargestFinite& other) {
        magnitude = max(magnitude, other.magnitude);
    }
};

template <class Accumulator>
inline std::int32_t largest(const Zep32f* src, int len) {
    const auto* bits = reinterpret_cast<const std::int32_t*>(src);
    return reduceMax(foldSum<8>(len, Accumulator{}, bits).magnitude);
}

}  // namespace

ZepStatus zepsMaxOrder_32f(const Zep32f* pSrc, int len, int* pOrder) {
    if (len <= 0) return zepStsSizeErr;
    if (anyNull(pSrc, pOrder)) return zepStsNullPtrErr;
    std::int32_t bits = largest<LargestMagnitude>(pSrc, len);
    const bool finite = bits < kInfinity;
    if (!finite) bits = largest<LargestFinite>(pSrc, len);
    simd::writeAny(pOrder, bits == 0 ? 0 : (bits >> 23) - 126);
    const unsigned word = simd::mxcsr::read();
    if ((word & simd::mxcsr::kFlagInvalid) != 0)
        simd::mxcsr::write(word & ~simd::mxcsr::kFlagInvalid);
    return finite ? zepStsNoErr : zepStsNanArg;
}

}  // namespace zep::ZEP_VARIANT
