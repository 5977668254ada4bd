// What the tests of transforms of any length share beside the kinds: owners of objects, and bins by
// the definition in extended precision.
#pragma once

#include "transform/dft_kinds.h"
#include "transform/dft_spec.h"
#include "transform/fft_support.h"

namespace zep::test {

// The same object run backwards.
struct DftInverse : DftComplex {
    static constexpr auto forward = zepsDFTInv_CToC_32fc;
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

}  // namespace zep::test
