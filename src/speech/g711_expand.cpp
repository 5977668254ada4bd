// G.711 expansion of vectors. Both laws are, but for a final shift, p * b + q * c: p and q follow
// from the segment, b from the mantissa, c is a constant, and b and c carry the sign. All are bytes
// in tables of 16, looked up by the halves of a code; p and q are not negative.
#include <cstddef>

#include "core/checks.h"
#include "simd/byte_table.h"
#include "simd/vec.h"
#include "speech/g711.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {
namespace {

struct LawTables {
    // By the upper half of a code, which holds sign and segment, and by the lower one.
    alignas(16) std::uint8_t p[16], q[16];
    alignas(16) std::int8_t c[16], b[16];
    int shift;
};

// A value is ((2 * m + 33) << s) - 33 times 4.
constexpr LawTables makeMuLaw() {
    LawTables t{{}, {}, {}, {}, 2};
    for (int half = 0; half < 16; ++half) {
        t.p[half] = static_cast<std::uint8_t>(1 << (~half & 7));
        t.q[half] = 1;
        t.c[half] = static_cast<std::int8_t>(half & 8 ? -33 : 33);
        t.b[half] = static_cast<std::int8_t>(2 * (15 - half) + 33);
    }
    return t;
}

// A value is 2 * m + 1 for s = 0, else (2 * m + 1 + 32) << (s - 1), times 8.
constexpr LawTables makeALaw() {
    LawTables t{{}, {}, {}, {}, 3};
    for (int half = 0; half < 16; ++half) {
        const int s = (half ^ 5) & 7;
        t.p[half] = static_cast<std::uint8_t>(s == 0 ? 1 : 1 << (s - 1));
        t.q[half] = static_cast<std::uint8_t>(s == 0 ? 0 : 1 << (s - 1));
        t.c[half] = static_cast<std::int8_t>(half & 8 ? 32 : -32);
        t.b[half] = static_cast<std::int8_t>(2 * (half ^ 5) + 1);
    }
    return t;
}

struct MuLaw {
    [[maybe_unused]] static constexpr LawTables tables = makeMuLaw();
    [[maybe_unused]] static constexpr auto expand = g711::expandMuLaw;
};
struct ALaw {
    [[maybe_unused]] static constexpr LawTables tables = makeALaw();
    [[maybe_unused]] static constexpr auto expand = g711::expandALaw;
};

using Codes = simd::Native<std::uint8_t>;
using SignedBytes = simd::Native<std::int8_t>;
using Samples = simd::Native<std::int16_t>;

struct Expanded {
    Samples low, high;
};

template <class Law>
class Expander {
public:
    [[gnu::always_inline]] Expanded operator()(Codes inMemory) const {
        const Codes codes = simd::alternateHalves(inMemory);
        const Codes nibble = Codes::broadcast(15);
        const Codes upper =
            simd::bitsIn<std::uint8_t>(simd::bitsIn<std::uint16_t>(codes) >> 4) & nibble;
        const SignedBytes magnitude = simd::lookUp(b_, codes & nibble);
        // The top bit of a code means plus.
        const SignedBytes b = simd::select(simd::lanesAs<std::int8_t>(codes) < SignedBytes::zero(),
                                           magnitude, SignedBytes::zero() - magnitude);
        const SignedBytes c = simd::lookUp(c_, upper);
        const Codes p = simd::lookUp(p_, upper), q = simd::lookUp(q_, upper);
        return {simd::mulAddPairs(simd::zipLow(p, q), simd::zipLow(b, c)) << Law::tables.shift,
                simd::mulAddPairs(simd::zipHigh(p, q), simd::zipHigh(b, c)) << Law::tables.shift};
    }

private:
    Codes p_ = simd::loadTable<Codes>(Law::tables.p), q_ = simd::loadTable<Codes>(Law::tables.q);
    SignedBytes c_ = simd::loadTable<SignedBytes>(Law::tables.c),
                b_ = simd::loadTable<SignedBytes>(Law::tables.b);
};

struct Table {
    std::int16_t at[256];
};
template <class Law>
constexpr Table makeTable() {
    Table t{};
    for (int code = 0; code < 256; ++code)
        t.at[code] = Law::expand(static_cast<std::uint8_t>(code));
    return t;
}

template <class Law>
ZepStatus expand(const Zep8u* pSrc, Zep16s* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    if constexpr (simd::kLooksUpBytes) {
        const Expander<Law> expander;
        std::ptrdiff_t n = 0;
        for (; n + Codes::lanes <= len; n += Codes::lanes) {
            const Expanded y = expander(Codes::load(pSrc + n));
            y.low.store(pDst + n);
            y.high.store(pDst + n + Samples::lanes);
        }
        const int rest = static_cast<int>(len - n);
        if (rest == 0) return zepStsNoErr;
        const Expanded y = expander(Codes::loadPartial(pSrc + n, rest));
        y.low.storePartial(pDst + n, rest < Samples::lanes ? rest : Samples::lanes);
        if (rest > Samples::lanes)
            y.high.storePartial(pDst + n + Samples::lanes, rest - Samples::lanes);
    } else {
        static constexpr Table table = makeTable<Law>();
        for (std::ptrdiff_t n = 0; n < len; ++n) put(table.at[pSrc[n]], pDst + n);
    }
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsALawToLin_8u16s(const Zep8u* pSrc, Zep16s* pDst, int len) {
    return expand<ALaw>(pSrc, pDst, len);
}
ZepStatus zepsMuLawToLin_8u16s(const Zep8u* pSrc, Zep16s* pDst, int len) {
    return expand<MuLaw>(pSrc, pDst, len);
}

}  // namespace zep::ZEP_VARIANT
