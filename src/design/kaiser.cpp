// Kaiser window in place.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "design/bessel.h"
#include "design/window_pairs.h"

namespace zep::ZEP_VARIANT {
namespace design {
namespace {

// I0(alpha * sqrt(n * (len - 1 - n))) / I0(alpha * (len - 1) / 2)
struct Kaiser {
    Count n{0};
    double last, alpha, factor;

    Kaiser(int len, double a) : last(len - 1), alpha(a) {
        factor = 1 / first(besselI0(D::broadcast(alpha * last * 0.5)));
    }
    [[gnu::always_inline]] void next(Block& w) {
        simd::unroll<kRegisters>([&](auto r) {
            const D k = n.n[r];
            // Behind the last sample, where factors are computed but not used, none is negative.
            const D product = max(k * (D::broadcast(last) - k), D::zero());
            w[r] = besselI0(D::broadcast(alpha) * sqrt(product)) * D::broadcast(factor);
        });
        n.advance();
    }
};

}  // namespace
}  // namespace design

ZepStatus zepsWinKaiser_32f_I(Zep32f* pSrcDst, int len, Zep32f alpha) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    if (len == 1) return zepStsNoErr;
    const double a = std::fabs(static_cast<double>(alpha));
    if (a * (len - 1) * 0.5 > 38.0) return zepStsHugeWinErr;
    design::applyWindow(pSrcDst, len, design::Kaiser(len, a));
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
