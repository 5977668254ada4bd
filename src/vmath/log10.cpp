// log10(x) in two accuracy classes.
#include "core/variant_exports.h"
#include "vmath/accurate_log.h"
#include "vmath/raise.h"

namespace zep::ZEP_VARIANT {
namespace vmath {
namespace {

// What is not a positive normal number; log10 of a denormal comes from one of its multiples.
template <class Log10OfDenormal>
[[gnu::always_inline]] inline void special(Zep32f* y, ZepStatus& status, Zep32f x,
                                           Log10OfDenormal log10OfDenormal) {
    if (x == 0.0f) {
        *y = -kInfinity;
        status = raiseSingularity();
    } else if (isNegative(x)) {
        *y = invalid();
        status = raiseDomain();
    } else if (isNan(x)) {
        *y = quiet(x);
    } else if (x == kInfinity) {
        *y = x;
    } else {
        *y = log10OfDenormal(x);
    }
}

struct Log10Accurate {
    static constexpr int kOutputs = 1;

    [[gnu::always_inline]] M usual(V (&y)[1], V x) const {
        y[0] = log10Of(x);
        return notPositiveNormal(x);
    }
    void exact(Zep32f* y, ZepStatus& status, Zep32f x) const {
        special(y, status, x, [](Zep32f d) {
            constexpr double kLog10E = 0.43429448190325182765;
            return static_cast<Zep32f>(accurateLn(static_cast<double>(d)) * kLog10E);
        });
    }
};

// One polynomial about 1, m between sqrt(1/2) and sqrt(2).
template <simd::FloatVec W>
[[gnu::always_inline]] inline W shortLog10(W x) {
    const auto [m, e, offset] = takeApart(x, 0x3F3504F3);
    const W f = m - 1.0f;
    const auto at = [](float c) { return W::broadcast(c); };
    const W p = mulAdd(mulAdd(mulAdd(mulAdd(f, at(0.07724829018115997f), at(-0.11838517338037491f)),
                                     f, at(0.1461581140756607f)),
                              f, at(-0.21687212586402893f)),
                       f, at(0.4342779815196991f));
    return mulAdd(f, p, e * at(0.3010300099849701f));
}

struct Log10Short {
    static constexpr int kOutputs = 1;

    [[gnu::always_inline]] M usual(V (&y)[1], V x) const {
        y[0] = shortLog10(x);
        return notPositiveNormal(x);
    }
    void exact(Zep32f* y, ZepStatus& status, Zep32f x) const {
        special(y, status, x, [](Zep32f d) {
            return first(shortLog10(V::broadcast(d * 0x1p126f))) - 37.929779052734375f;
        });
    }
};

template <class Kernel>
ZepStatus logarithms(const Zep32f* x, Zep32f* y, int len) {
    return overBlocks(Kernel{}, {{y}}, len, x);
}

}  // namespace
}  // namespace vmath

ZepStatus zepsLog10_32f_A11(const Zep32f* pSrc, Zep32f* pDst, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    return simd::withPlainArithmetic(vmath::logarithms<vmath::Log10Short>, pSrc, pDst, len);
}
ZepStatus zepsLog10_32f_A24(const Zep32f* pSrc, Zep32f* pDst, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    return simd::withPlainArithmetic(vmath::logarithms<vmath::Log10Accurate>, pSrc, pDst, len);
}

}  // namespace zep::ZEP_VARIANT
