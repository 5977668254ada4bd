// G.711 compression of vectors. With e the segment of a magnitude m the code without sign is
// 16 * (e - 1) + (m >> e) (speech/g711.h). Where bytes are looked up, e follows from the two
// nibbles that hold the leading one, and m >> e is a product. Elsewhere the code is the least of
// what this line gives for all segments, which needs no search.
#include <cstddef>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/byte_table.h"
#include "simd/vec.h"
#include "speech/fixed_point.h"

namespace zep::ZEP_VARIANT {
namespace {

using Samples = simd::Native<std::int16_t>;
using Codes = simd::Native<std::uint8_t>;

template <int e, int last>
[[gnu::always_inline]] inline Samples leastLine(Samples m) {
    const Samples line = (m >> e) + static_cast<std::int16_t>(16 * e);
    if constexpr (e == last)
        return line;
    else
        return simd::min(line, leastLine<e + 1, last>(m));
}

// Segments by nibble, and the factor 2^(8-e) of a segment e, 0 for none.
struct SegmentTables {
    alignas(16) std::uint8_t upper[16], lower[16], factor[16];
};

// Two nibbles from bit `shift` on; magnitudes have up to shift + 8 bits.
constexpr SegmentTables makeSegmentTables(int shift) {
    SegmentTables t{};
    for (int nibble = 1; nibble < 16; ++nibble) {
        const int length = bitLength(static_cast<std::uint32_t>(nibble)) + shift;
        t.upper[nibble] = static_cast<std::uint8_t>(length + 4 - 5);
        t.lower[nibble] = static_cast<std::uint8_t>(length < 6 ? 1 : length - 5);
    }
    for (int e = 1; e <= 8; ++e) t.factor[e] = static_cast<std::uint8_t>(1 << (8 - e));
    return t;
}

// 16 * e + (m >> e). The magnitudes have `segments` segments.
template <int segments>
class Lines {
    static constexpr int kShift = segments - 3;
    static constexpr SegmentTables kTables = makeSegmentTables(kShift);

public:
    [[gnu::always_inline]] Samples operator()(Samples m) const {
        if constexpr (simd::kLooksUpBytes) {
            const Samples nibbles = m >> kShift;
            // Magnitudes without a one in the nibbles are of the first segment; the bytes between
            // stay 0.
            const Samples low = (nibbles & Samples::broadcast(15)) | Samples::broadcast(1);
            const Codes e = simd::max(lookUp(upper_, nibbles >> 4), lookUp(lower_, low));
            const Samples segment = simd::bitsIn<std::int16_t>(e);
            const Samples factor = simd::bitsIn<std::int16_t>(lookUp(factor_, segment));
            return ((m * factor) >> 8) + (segment << 4);
        } else {
            return leastLine<1, segments>(m);
        }
    }

private:
    [[gnu::always_inline]] static Codes lookUp(Codes table, Samples index) {
        return simd::lookUp(table, simd::bitsIn<std::uint8_t>(index));
    }

    Codes upper_ = simd::loadTable<Codes>(kTables.upper),
          lower_ = simd::loadTable<Codes>(kTables.lower),
          factor_ = simd::loadTable<Codes>(kTables.factor);
};

// Codes in 16 bits.
class ALaw {
public:
    [[gnu::always_inline]] Samples operator()(Samples x) const {
        const Samples sign = x >> 15, m = (x >> 3) ^ sign;
        const Samples mask = (sign & Samples::broadcast(0x80)) ^ Samples::broadcast(0xD5);
        return (lines_(m) - 16) ^ mask;
    }

private:
    Lines<7> lines_;
};
class MuLaw {
public:
    [[gnu::always_inline]] Samples operator()(Samples x) const {
        const Samples sign = x >> 15;
        const Samples m = simd::min(((x ^ sign) >> 2) + 33, Samples::broadcast(8191));
        // 143 less the code, and 128 more for a positive sample.
        return (sign & Samples::broadcast(-128)) + (271 + 16) - lines_(m);
    }

private:
    Lines<8> lines_;
};

template <class Law>
ZepStatus compress(const Zep16s* pSrc, Zep8u* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    const Law law;
    const auto pack = [&law](Samples low, Samples high) {
        return simd::narrowSaturated<std::uint8_t>(law(low), law(high));
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
