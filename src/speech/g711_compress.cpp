// G.711 compression of vectors. The code of a magnitude is the least of what the lines of all
// segments give (speech/g711.h), which needs no search for the segment.
#include <cstddef>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {
namespace {

using Samples = simd::Native<std::int16_t>;
using Codes = simd::Native<std::uint8_t>;

template <int e, int last>
[[gnu::always_inline]] inline Samples leastLine(Samples m) {
    const Samples line = (m >> e) + static_cast<std::int16_t>(16 * (e - 1));
    if constexpr (e == last)
        return line;
    else
        return simd::min(line, leastLine<e + 1, last>(m));
}

// Codes in 16 bits.
struct ALaw {
    [[gnu::always_inline]] static Samples compress(Samples x) {
        const Samples sign = x >> 15, m = (x >> 3) ^ sign;
        const Samples mask = (sign & Samples::broadcast(0x80)) ^ Samples::broadcast(0xD5);
        return leastLine<1, 7>(m) ^ mask;
    }
};
struct MuLaw {
    [[gnu::always_inline]] static Samples compress(Samples x) {
        const Samples sign = x >> 15;
        const Samples m = simd::min(((x ^ sign) >> 2) + 33, Samples::broadcast(8191));
        // 143 less the line, and 128 more for a positive sample.
        return (sign & Samples::broadcast(-128)) + 271 - leastLine<1, 8>(m);
    }
};

template <class Law>
ZepStatus compress(const Zep16s* pSrc, Zep8u* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    const auto pack = [](Samples low, Samples high) {
        return simd::narrowSaturated<std::uint8_t>(Law::compress(low), Law::compress(high));
    };
    std::ptrdiff_t n = 0;
    for (; n + Codes::lanes <= len; n += Codes::lanes)
        pack(Samples::load(pSrc + n), Samples::load(pSrc + n + Samples::lanes)).store(pDst + n);
    const int rest = static_cast<int>(len - n),
              first = rest < Samples::lanes ? rest : Samples::lanes;
    if (rest == 0) return zepStsNoErr;
    pack(Samples::loadPartial(pSrc + n, first),
         Samples::loadPartial(pSrc + n + first, rest - first))
        .storePartial(pDst + n, rest);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsLinToALaw_16s8u(const Zep16s* pSrc, Zep8u* pDst, int len) {
    return compress<ALaw>(pSrc, pDst, len);
}
ZepStatus zepsLinToMuLaw_16s8u(const Zep16s* pSrc, Zep8u* pDst, int len) {
    return compress<MuLaw>(pSrc, pDst, len);
}

}  // namespace zep::ZEP_VARIANT
