#include "vector/arithmetic_loops.h"

#include <cmath>
#include <complex>

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

void add(const Zep32f* a, const Zep32f* b, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = a[i] + b[i];
}
void addDouble(const Zep64f* a, const Zep64f* b, Zep64f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = a[i] + b[i];
}
void mul(const Zep32f* a, const Zep32f* b, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = a[i] * b[i];
}
void mulDouble(const Zep64f* a, const Zep64f* b, Zep64f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = a[i] * b[i];
}
void mulComplex(const Zep32fc* a, const Zep32fc* b, Zep32fc* __restrict y, int n) {
    for (int i = 0; i < n; ++i)
        y[i] = {a[i].re * b[i].re - a[i].im * b[i].im, a[i].re * b[i].im + a[i].im * b[i].re};
}
void div(const Zep32f* d, const Zep32f* x, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = x[i] / d[i];
}
void divComplex(const Zep32fc* d, const Zep32fc* x, Zep32fc* __restrict y, int n) {
    for (int i = 0; i < n; ++i) {
        const Zep32f squares = d[i].re * d[i].re + d[i].im * d[i].im;
        y[i] = {(x[i].re * d[i].re + x[i].im * d[i].im) / squares,
                (x[i].im * d[i].re - x[i].re * d[i].im) / squares};
    }
}
void mulConstant(const Zep32f* a, Zep32f c, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = a[i] * c;
}
void sqrt(const Zep32f* a, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = std::sqrt(a[i]);
}
void sqrtComplex(Zep32fc* y, int n) {
    for (int i = 0; i < n; ++i) {
        const std::complex<Zep32f> root = std::sqrt(std::complex<Zep32f>(y[i].re, y[i].im));
        y[i] = {root.real(), root.imag()};
    }
}
void abs(const Zep32f* a, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = std::fabs(a[i]);
}
void addProduct(const Zep32f* a, const Zep32f* b, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] += a[i] * b[i];
}

}  // namespace

extern constexpr ArithmeticPeers arithmeticLoops{add,        addDouble,   mul,        mulDouble,
                                                 mulComplex, div,         divComplex, mulConstant,
                                                 sqrt,       sqrtComplex, abs,        addProduct};

}  // namespace zep::bench::ZEP_PEER_LEVEL
