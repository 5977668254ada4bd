#include "vector/statistics_loops.h"

#include <algorithm>
#include <cmath>

// Without it a floating sum may not be vectorised.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC optimize("fast-math")
#endif

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

template <class Sum, class T>
Sum total(const T* x, int n) {
    Sum s = 0;
    for (int i = 0; i < n; ++i) s += x[i];
    return s;
}
template <class Sum, class A, class B>
Sum products(const A* x, const B* y, int n) {
    Sum s = 0;
    for (int i = 0; i < n; ++i) s += static_cast<Sum>(x[i]) * static_cast<Sum>(y[i]);
    return s;
}
template <class T>
T range(const T* x, int n) {
    T low = x[0], high = x[0];
    for (int i = 0; i < n; ++i) {
        low = x[i] < low ? x[i] : low;
        high = x[i] > high ? x[i] : high;
    }
    return static_cast<T>(high - low);
}

Zep32f sum(const Zep32f* x, int n) { return static_cast<Zep32f>(total<Zep64f>(x, n)); }
Zep64f sum64(const Zep64f* x, int n) { return total<Zep64f>(x, n); }
Zep32s sum32s(const Zep32s* x, int n) { return static_cast<Zep32s>(total<Zep64s>(x, n) >> 20); }
Zep32f meanStdDev(const Zep32f* x, int n) {
    Zep64f s = 0, q = 0;
    for (int i = 0; i < n; ++i) {
        const Zep64f v = x[i];
        s += v;
        q += v * v;
    }
    return static_cast<Zep32f>(s / n + std::sqrt((q * n - s * s) / (Zep64f(n) * (n - 1))));
}
template <class T>
T max(const T* x, int n) {
    T high = x[0];
    for (int i = 0; i < n; ++i) high = x[i] > high ? x[i] : high;
    return high;
}
Zep32s mean32s(const Zep32s* x, int n) { return static_cast<Zep32s>(total<Zep64s>(x, n) / n); }
int order(const Zep32f* x, int n) {
    Zep32f high = 0;
    for (int i = 0; i < n; ++i) high = std::fabs(x[i]) > high ? std::fabs(x[i]) : high;
    return std::ilogb(high) + 1;
}
Zep32f minMax(const Zep32f* x, int n) { return range(x, n); }
int minMax8u(const Zep8u* x, int n) { return range(x, n); }
int minMax16s(const Zep16s* x, int n) { return range(x, n); }
int maxIndx(const Zep32f* x, int n) {
    int at = 0;
    for (int i = 1; i < n; ++i)
        if (x[i] > x[at]) at = i;
    return at;
}
Zep32f norm(const Zep32f* x, int n) { return std::sqrt(products<Zep32f>(x, x, n)); }
Zep64f dot64(const Zep64f* x, const Zep64f* y, int n) { return products<Zep64f>(x, y, n); }
template <class C, class T = decltype(C::re)>
T dotComplex(const C* x, const C* y, int n) {
    T re = 0, im = 0;
    for (int i = 0; i < n; ++i) {
        re += x[i].re * y[i].re - x[i].im * y[i].im;
        im += x[i].re * y[i].im + x[i].im * y[i].re;
    }
    return re + im;
}
Zep32s dot32s(const Zep32s* x, const Zep32s* y, int n) {
    return static_cast<Zep32s>(products<Zep64f>(x, y, n) * 0x1p-50);
}
Zep32s dot16s32s(const Zep16s* x, const Zep32s* y, int n) {
    return static_cast<Zep32s>(products<Zep64s>(x, y, n) >> 31);
}
void maxEvery(const Zep32f* x, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = y[i] > x[i] ? y[i] : x[i];
}
void threshold(const Zep32f* x, Zep32f* __restrict y, int n, Zep32f level) {
    for (int i = 0; i < n; ++i) y[i] = x[i] < level ? level : x[i];
}
void thresholdValue(Zep32f* y, int n, Zep32f level, Zep32f value) {
    for (int i = 0; i < n; ++i) y[i] = y[i] < level ? value : y[i];
}

}  // namespace

extern const StatisticsPeers statisticsLoops{
    sum,        sum64,  sum32s,    meanStdDev, max,       minMax,        minMax8u, minMax16s,
    maxIndx,    norm,   max,       max,        mean32s,   order,         dot64,    dotComplex,
    dotComplex, dot32s, dot16s32s, maxEvery,   threshold, thresholdValue};

}  // namespace zep::bench::ZEP_PEER_LEVEL
