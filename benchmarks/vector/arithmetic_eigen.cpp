#include <Eigen/Core>
#include <complex>

#include "vector/arithmetic_loops.h"

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

template <class T>
auto in(const T* p, int n) {
    return Eigen::Map<const Eigen::Array<T, Eigen::Dynamic, 1>>(p, n);
}
template <class T>
auto out(T* p, int n) {
    return Eigen::Map<Eigen::Array<T, Eigen::Dynamic, 1>>(p, n);
}
auto in(const Zep32fc* p, int n) { return in(reinterpret_cast<const std::complex<float>*>(p), n); }
auto out(Zep32fc* p, int n) { return out(reinterpret_cast<std::complex<float>*>(p), n); }

void add(const Zep32f* a, const Zep32f* b, Zep32f* y, int n) { out(y, n) = in(a, n) + in(b, n); }
void addDouble(const Zep64f* a, const Zep64f* b, Zep64f* y, int n) {
    out(y, n) = in(a, n) + in(b, n);
}
void mul(const Zep32f* a, const Zep32f* b, Zep32f* y, int n) { out(y, n) = in(a, n) * in(b, n); }
void mulDouble(const Zep64f* a, const Zep64f* b, Zep64f* y, int n) {
    out(y, n) = in(a, n) * in(b, n);
}
void mulComplex(const Zep32fc* a, const Zep32fc* b, Zep32fc* y, int n) {
    out(y, n) = in(a, n) * in(b, n);
}
void div(const Zep32f* d, const Zep32f* x, Zep32f* y, int n) { out(y, n) = in(x, n) / in(d, n); }
void divComplex(const Zep32fc* d, const Zep32fc* x, Zep32fc* y, int n) {
    out(y, n) = in(x, n) / in(d, n);
}
void mulConstant(const Zep32f* a, Zep32f c, Zep32f* y, int n) { out(y, n) = in(a, n) * c; }
void sqrt(const Zep32f* a, Zep32f* y, int n) { out(y, n) = in(a, n).sqrt(); }
void sqrtComplex(Zep32fc* y, int n) { out(y, n) = out(y, n).sqrt(); }
void abs(const Zep32f* a, Zep32f* y, int n) { out(y, n) = in(a, n).abs(); }
void addProduct(const Zep32f* a, const Zep32f* b, Zep32f* y, int n) {
    out(y, n) += in(a, n) * in(b, n);
}

}  // namespace

extern constexpr ArithmeticPeers arithmeticEigen{add,        addDouble,   mul,        mulDouble,
                                                 mulComplex, div,         divComplex, mulConstant,
                                                 sqrt,       sqrtComplex, abs,        addProduct};

}  // namespace zep::bench::ZEP_PEER_LEVEL
