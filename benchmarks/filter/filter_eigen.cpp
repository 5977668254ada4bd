#include <Eigen/Core>

#include "filter/filter_loops.h"

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

using Vector = Eigen::Map<Eigen::VectorXf>;
using Source = Eigen::Map<const Eigen::VectorXf>;

void convolve(const Zep32f* a, int aLen, const Zep32f* b, int bLen, Zep32f* y) {
    const Source longer(a, aLen);
    Vector result(y, aLen + bLen - 1);
    result.setZero();
    for (int j = 0; j < bLen; ++j) result.segment(j, aLen) += b[j] * longer;
}

void correlate(const Zep32f* a, const Zep32f* b, int len, Zep32f* y, int n) {
    const Source first(a, len), second(b, len);
    for (int k = 0; k < n; ++k) y[k] = first.head(len - k).dot(second.tail(len - k));
}

void correlateComplex(const Zep32fc* a, const Zep32fc* b, int len, Zep32fc* y, int n) {
    using Complex = Eigen::Map<const Eigen::VectorXcf>;
    using Value = std::complex<float>;
    const Complex first(reinterpret_cast<const Value*>(a), len),
        second(reinterpret_cast<const Value*>(b), len);
    // dot conjugates its first factor.
    for (int k = 0; k < n; ++k) {
        const Value sum = first.head(len - k).dot(second.tail(len - k));
        y[k] = {sum.real(), sum.imag()};
    }
}

}  // namespace

extern constexpr FilterEigen filterEigen{convolve, correlate, correlateComplex};

}  // namespace zep::bench::ZEP_PEER_LEVEL
