// Natural logarithm and exponential in double precision lanes, for powers: what each loses is far
// below single precision even where an exponent of tens of thousands multiplies it.
//
// Where a level permutes doubles by indices the tables are registers of 16 entries; elsewhere ln c
// and 1/c for c = 1 + i/256, and 2^(j/128), lie in memory.
#pragma once

#include <cstdint>

#include "simd/look_up.h"
#include "vmath/log_kernel.h"

namespace zep::ZEP_VARIANT::vmath {

namespace power {
using simd::DoublePair;
using simd::FloatPair;
#include "vmath/exp_tables.inc"
}  // namespace power

// 1.5 * 2^52: adding it rounds to a whole number, which then stands in the low bits.
inline constexpr double kDoubleRounder = 6755399441055744.0;
inline constexpr double kLn2 = 0.6931471805599453;

// What a logarithm is for: relative error below 2^-37, or an absolute one below 2^-48.
enum class LnFor { RealPower, ComplexPower };

template <class W>
using LongsOf = simd::Vec<std::int64_t, W::lanes>;

// ln x, x positive and normal.
template <LnFor use, simd::FloatVec W>
[[gnu::always_inline]] inline W doubleLn(W x) {
    const auto at = [](double c) { return W::broadcast(c); };
    using Longs = LongsOf<W>;
    const auto bits = simd::lanesAs<std::uint64_t>(x);
    using Bits = decltype(bits);
    // An exponent field in the low bits of 2^52 is a number: no conversion of 64-bit integers.
    const auto exponent = [&](auto field, double bias) {
        const auto tagged = field | Bits::broadcast(0x4330'0000'0000'0000);
        return simd::lanesAs<double>(tagged) - (0x1p52 + bias);
    };
    if constexpr (simd::kRegisterTable<typename W::Scalar> == 16) {
        // m from 0.703125 on: the step at which the table begins.
        const auto offset = bits - Bits::broadcast(0x3FE6'8000'0000'0000 - 0x3FF0'0000'0000'0000);
        const W e = exponent(offset >> 52, 1023.0);
        const auto fraction = offset & Bits::broadcast(0x000F'FFFF'FFFF'FFFF);
        const W m = simd::lanesAs<double>(fraction + Bits::broadcast(0x3FE6'8000'0000'0000));
        const auto index = simd::lanesAs<std::int64_t>(offset >> 48);
        const W z = mulSub(m, lookUp(kRegisterPowerFactor, index), at(1.0));
        const W a = mulAdd(e, at(kLn2), lookUp(kRegisterPowerLog, index));
        const W zz = z * z;
        if constexpr (use == LnFor::RealPower) {
            const auto& c = kRegisterPowerLogCoefficients;
            const W q = mulAdd(mulAdd(z, at(c[4]), at(c[3])), zz, mulAdd(z, at(c[2]), at(c[1])));
            return a + mulAdd(mulAdd(q, z, at(c[0])), zz, z);
        } else {
            const auto& c = kRegisterComplexLogCoefficients;
            const W q =
                mulAdd(mulAdd(mulAdd(z, at(c[6]), at(c[5])), zz, mulAdd(z, at(c[4]), at(c[3]))), zz,
                       mulAdd(z, at(c[2]), at(c[1])));
            return a + mulAdd(mulAdd(q, z, at(c[0])), zz, z);
        }
    } else {
        const W e = exponent(bits >> 52, 1023.0);
        const W m = simd::lanesAs<double>((bits & Bits::broadcast(0x000F'FFFF'FFFF'FFFF)) |
                                          Bits::broadcast(0x3FF0'0000'0000'0000));
        constexpr double kTo256ths = 17592186044416.0;  // 2^44
        const W shifted = m + kTo256ths;
        const auto index =
            (simd::lanesAs<std::int64_t>(shifted) & Longs::broadcast(1023)) - Longs::broadcast(256);
        const auto entry = entriesAt(kPowerLog256, index);
        const W f = (m - (shifted - kTo256ths)) * entry.second;
        // The cubic alone leaves 3 ULP of single precision for bases within 2^-9 of one and
        // exponents of tens of thousands.
        const W p = mulAdd(mulAdd(mulAdd(f, at(0.2), at(-0.25)), f, at(0.33333333333238757)), f,
                           at(-0.4999999999992423));
        return mulAdd(e, at(kLn2), entry.first) + mulAdd(p, f * f, f);
    }
}

// exp(w) for |w| to 708; relative error below 2^-29.
template <simd::FloatVec W>
[[gnu::always_inline]] inline W doubleExp(W w) {
    const auto at = [](double c) { return W::broadcast(c); };
    using Longs = LongsOf<W>;
    if constexpr (simd::kRegisterTable<typename W::Scalar> == 16) {
        const W t = mulAdd(w, at(16.0 / kLn2), at(kDoubleRounder));
        const W r = negMulAdd(t - kDoubleRounder, at(kLn2 / 16), w);
        const auto n = simd::lanesAs<std::int64_t>(t);
        const W scale = simd::lanesAs<double>(lookUp(power::kRegisterPowerExp, n) + (n << 48));
        const auto& c = power::kRegisterPowerExpCoefficients;
        const W p = mulAdd(mulAdd(mulAdd(r, at(c[2]), at(c[1])), r, at(c[0])), r * r, r);
        return mulAdd(scale, p, scale);
    } else {
        const W t = mulAdd(w, at(184.6649652337873), at(kDoubleRounder));
        const W r = negMulAdd(t - kDoubleRounder, at(0.0054152123481245725), w);
        const auto n = simd::lanesAs<std::int64_t>(t);
        const Longs low = Longs::broadcast(127);
        const W entry = entriesAt(power::kPowerExp128, n & low);
        const W scale =
            simd::lanesAs<double>(simd::lanesAs<std::int64_t>(entry) + (clearBits(n, low) << 45));
        const W p = mulAdd(mulAdd(r, at(0.16666666666666666), at(0.5)), r * r, r);
        return mulAdd(scale, p, scale);
    }
}

}  // namespace zep::ZEP_VARIANT::vmath
