// Standard deviation and mean of a sample in one pass, and the Euclidean norm.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/load_as.h"
#include "vector/reduce.h"

namespace zep::ZEP_VARIANT {
namespace {

using F = simd::Native<Zep32f>;
using D = simd::Native<Zep64f>;

struct SingleMoments {
    F sum = F::zero(), squares = F::zero();
    [[gnu::always_inline]] void add(F x) {
        simd::keepInRegister(x);
        sum = sum + x;
        squares = mulAdd(x, x, squares);
    }
    [[gnu::always_inline]] void merge(const SingleMoments& other) {
        sum = sum + other.sum;
        squares = squares + other.squares;
    }
};

// The square of a float is exact in double precision.
struct DoubleMoments {
    D sum = D::zero(), squares = D::zero();
    [[gnu::always_inline]] void add(D x) {
        simd::keepInRegister(x);
        sum = sum + x;
        squares = mulAdd(x, x, squares);
    }
    [[gnu::always_inline]] void merge(const DoubleMoments& other) {
        sum = sum + other.sum;
        squares = squares + other.squares;
    }
};

template <class T>
inline T rootOf(T x) {
    return first(sqrt(simd::Narrow<T>::broadcast(x)));
}

struct Moments {
    double sum, squares;
};

// Not a call: two results of one go through memory.
[[gnu::always_inline]] inline Moments moments(const Zep32f* src, int len, int hint) {
    if (hint == zepAlgHintFast) {
        const SingleMoments m = foldSum<4>(len, SingleMoments{}, src);
        return {reduceAdd(m.sum), reduceAdd(m.squares)};
    }
    const DoubleMoments m = fold<4, D::lanes>(
        len, DoubleMoments{},
        [=](DoubleMoments & a, std::ptrdiff_t n)
            __attribute__((always_inline)) { a.add(simd::loadAs<D>(src + n)); },
        [=](DoubleMoments & a, std::ptrdiff_t n, int count)
            __attribute__((always_inline)) { a.add(widenLow(F::loadPartial(src + n, count))); });
    return {reduceAdd(m.sum), reduceAdd(m.squares)};
}

// The difference is raised to zero where cancellation leaves less, and so is never the square of
// an imaginary number; a not-a-number stays one.
inline Zep32f deviation(const Moments& m, int len) {
    const double n = len;
    const double difference = m.squares * n - m.sum * m.sum;
    const double raised = difference < 0.0 ? 0.0 : difference;
    return static_cast<Zep32f>(rootOf(raised / (n * (n - 1.0))));
}

inline ZepStatus checkSample(int len, const auto*... p) {
    if (anyNull(p...)) return zepStsNullPtrErr;
    if (len < 2) return zepStsSizeErr;
    return zepStsNoErr;
}

struct SquareTotal {
    F squares = F::zero();
    [[gnu::always_inline]] void add(F x) { squares = mulAdd(x, x, squares); }
    [[gnu::always_inline]] void merge(const SquareTotal& other) {
        squares = squares + other.squares;
    }
};

}  // namespace

ZepStatus zepsStdDev_32f(const Zep32f* pSrc, int len, Zep32f* pStdDev, int hint) {
    if (const ZepStatus s = checkSample(len, pSrc, pStdDev); s != zepStsNoErr) return s;
    simd::writeAny(pStdDev, deviation(moments(pSrc, len, hint), len));
    return zepStsNoErr;
}

ZepStatus zepsMeanStdDev_32f(const Zep32f* pSrc, int len, Zep32f* pMean, Zep32f* pStdDev,
                             int hint) {
    if (const ZepStatus s = checkSample(len, pSrc, pMean, pStdDev); s != zepStsNoErr) return s;
    const Moments m = moments(pSrc, len, hint);
    simd::writeAny(pMean, static_cast<Zep32f>(m.sum / len));
    simd::writeAny(pStdDev, deviation(m, len));
    return zepStsNoErr;
}

ZepStatus zepsNorm_L2_32f(const Zep32f* pSrc, int len, Zep32f* pNorm) {
    if (const ZepStatus s = checkVectors(len, pSrc, pNorm); s != zepStsNoErr) return s;
    simd::writeAny(pNorm, rootOf(reduceAdd(foldSum<8>(len, SquareTotal{}, pSrc).squares)));
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
