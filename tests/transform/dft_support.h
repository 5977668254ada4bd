// What the tests of transforms of any length share: the three kinds, owners of objects, and bins by
// the definition in extended precision.
#pragma once

#include <complex>

#include "transform/dft_spec.h"
#include "transform/fft_support.h"

namespace zep::test {

struct DftComplex {
    using Spec = DFTSpecC32fc;
    using Element = Zep32fc;
    static constexpr double unit = 0x1p-24;
    static constexpr auto create = zepsDFTInitAlloc_C_32fc;
    static constexpr auto release = zepsDFTFree_C_32fc;
    static constexpr auto bufSize = zepsDFTGetBufSize_C_32fc;
    static constexpr auto forward = zepsDFTFwd_CToC_32fc;
};
// The same object run backwards.
struct DftInverse : DftComplex {
    static constexpr auto forward = zepsDFTInv_CToC_32fc;
};
struct DftDouble {
    using Spec = DFTSpecC64fc;
    using Element = Zep64fc;
    // Chirp convolutions included, whose tables are no more exact than the data.
    static constexpr double unit = 0x1.8p-53;
    static constexpr auto create = zepsDFTInitAlloc_C_64fc;
    static constexpr auto release = zepsDFTFree_C_64fc;
    static constexpr auto bufSize = zepsDFTGetBufSize_C_64fc;
    static constexpr auto forward = zepsDFTFwd_CToC_64fc;
};
struct DftReal {
    using Spec = DFTSpecR32f;
    using Element = Zep32f;
    static constexpr double unit = 0x1p-24;
    static constexpr auto create = zepsDFTInitAlloc_R_32f;
    static constexpr auto release = zepsDFTFree_R_32f;
    static constexpr auto bufSize = zepsDFTGetBufSize_R_32f;
    static constexpr auto forward = zepsDFTFwd_RToPerm_32f;
};

template <class Kind>
class Dft {
public:
    explicit Dft(int len, int flag = ZEP_FFT_SCALE_NONE) {
        EXPECT_EQ(Kind::create(&spec_, len, flag, 3), zepStsNoErr) << "len " << len;
        EXPECT_EQ(Kind::bufSize(spec_, &bytes_), zepStsNoErr);
    }
    ~Dft() { EXPECT_EQ(Kind::release(spec_), zepStsNoErr); }
    Dft(const Dft&) = delete;
    Dft& operator=(const Dft&) = delete;

    const typename Kind::Spec* spec() const { return spec_; }
    int scratchBytes() const { return bytes_; }

private:
    typename Kind::Spec* spec_ = nullptr;
    int bytes_ = -1;
};

using Extended = std::complex<long double>;

inline Extended toExtended(Zep32fc x) { return {x.re, x.im}; }
inline Extended toExtended(Zep64fc x) { return {x.re, x.im}; }
inline Extended toExtended(Zep32f x) { return {x, 0}; }

// Bins of a signal by the definition.
class Definition {
public:
    explicit Definition(std::size_t N) : roots_(N) {
        const long double step = 6.283185307179586476925286766559L / static_cast<long double>(N);
        for (std::size_t k = 0; k < N; ++k) {
            const long double angle = step * static_cast<long double>(k);
            roots_[k] = {std::cos(angle), -std::sin(angle)};
        }
    }
    std::size_t length() const { return roots_.size(); }
    template <class T>
    Extended bin(const std::vector<T>& x, std::size_t k, bool inverse) const {
        Extended sum = 0;
        std::size_t i = 0;
        for (const T& v : x) {
            const Extended a = toExtended(v), w = inverse ? std::conj(roots_[i]) : roots_[i];
            sum += Extended(a.real() * w.real() - a.imag() * w.imag(),
                            a.real() * w.imag() + a.imag() * w.real());
            i += k;
            if (i >= roots_.size()) i -= roots_.size();
        }
        return sum;
    }

private:
    std::vector<Extended> roots_;
};

// Bin k of a computed spectrum; a packed one holds the lower half.
template <class T>
Extended computedBin(const T* X, std::size_t, std::size_t k) {
    return toExtended(X[k]);
}
inline Extended computedBin(const Zep32f* X, std::size_t N, std::size_t k) {
    if (2 * k > N) return std::conj(computedBin(X, N, N - k));
    if (k == 0) return X[0];
    if (2 * k == N) return X[1];
    return N % 2 == 0 ? Extended(X[2 * k], X[2 * k + 1]) : Extended(X[2 * k - 1], X[2 * k]);
}

}  // namespace zep::test
