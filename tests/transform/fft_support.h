// What the transform tests share: owners of transform objects, arrays at any alignment between
// guard pages, and the error measure.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "core/selection.h"
#include "reference/dft.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {

inline constexpr int kFlags[] = {ZEP_FFT_SCALE_FWD, ZEP_FFT_SCALE_INV, ZEP_FFT_SCALE_SQRT,
                                 ZEP_FFT_SCALE_NONE};
inline constexpr Direction kDirections[] = {Direction::Forward, Direction::Inverse};

struct ComplexKind {
    using Spec = FFTSpecC32fc;
    using Element = Zep32fc;
    static constexpr int maxOrder = 28;
    static constexpr auto create = zepsFFTInitAlloc_C_32fc;
    static constexpr auto release = zepsFFTFree_C_32fc;
    static constexpr auto bufSize = zepsFFTGetBufSize_C_32fc;
};

struct RealKind {
    using Spec = FFTSpecR32f;
    using Element = Zep32f;
    static constexpr int maxOrder = 29;
    static constexpr auto create = zepsFFTInitAlloc_R_32f;
    static constexpr auto release = zepsFFTFree_R_32f;
    static constexpr auto bufSize = zepsFFTGetBufSize_R_32f;
};

// Owns one transform object.
template <class Kind>
class Fft {
public:
    using Element = typename Kind::Element;

    explicit Fft(int order, int flag = ZEP_FFT_SCALE_NONE, int hint = zepAlgHintNone) {
        EXPECT_EQ(Kind::create(&spec_, order, flag, hint), zepStsNoErr)
            << "order " << order << " flag " << flag;
    }
    ~Fft() { EXPECT_EQ(Kind::release(spec_), zepStsNoErr); }
    Fft(const Fft&) = delete;
    Fft& operator=(const Fft&) = delete;

    typename Kind::Spec* spec() const { return spec_; }

    int scratchBytes() const {
        int bytes = -1;
        EXPECT_EQ(Kind::bufSize(spec_, &bytes), zepStsNoErr);
        return bytes;
    }

    ZepStatus forward(const Element* src, Element* dst, Zep8u* scratch = nullptr) const {
        if constexpr (std::is_same_v<Kind, ComplexKind>)
            return zepsFFTFwd_CToC_32fc(src, dst, spec_, scratch);
        else
            return zepsFFTFwd_RToPerm_32f(src, dst, spec_, scratch);
    }

    ZepStatus inverse(const Element* src, Element* dst, Zep8u* scratch = nullptr) const {
        static_assert(std::is_same_v<Kind, ComplexKind>);
        return zepsFFTInv_CToC_32fc(src, dst, spec_, scratch);
    }

    ZepStatus run(Direction direction, const Element* src, Element* dst,
                  Zep8u* scratch = nullptr) const {
        if constexpr (std::is_same_v<Kind, ComplexKind>)
            return direction == Direction::Forward ? forward(src, dst, scratch)
                                                   : inverse(src, dst, scratch);
        else
            return forward(src, dst, scratch);
    }

private:
    typename Kind::Spec* spec_ = nullptr;
};

using ComplexFft = Fft<ComplexKind>;
using RealFft = Fft<RealKind>;

// len elements of T that begin offsetBytes behind a 64-byte boundary. The bytes before and behind,
// up to 64 each, hold a pattern that intact() looks for; behind them follows an unreadable page.
template <class T>
class SkewedBuffer {
public:
    SkewedBuffer(int len, int offsetBytes)
        : bytes_((len * static_cast<int>(sizeof(T)) + 2 * kMargin) / kMargin * kMargin + kMargin,
                 Edge::Back),
          data_(reinterpret_cast<T*>(bytes_.data() + kMargin + offsetBytes)),
          len_(len) {}

    T* data() { return data_; }
    T& operator[](std::size_t n) { return data_[n]; }
    T* begin() { return data_; }
    T* end() { return data_ + len_; }

    bool intact() {
        const auto untouched = [](const Zep8u* p, const Zep8u* last) {
            return std::all_of(p, last, [](Zep8u byte) { return byte == 0xA5; });
        };
        return untouched(bytes_.begin(), reinterpret_cast<const Zep8u*>(data_)) &&
               untouched(reinterpret_cast<const Zep8u*>(data_ + len_), bytes_.end());
    }

private:
    static constexpr int kMargin = 64;
    GuardedBuffer<Zep8u> bytes_;
    T* data_;
    int len_;
};

inline Complex toDouble(Zep32fc x) { return {x.re, x.im}; }
inline Complex toDouble(Zep32f x) { return x; }

template <class T>
std::vector<Complex> toDouble(const T* x, std::size_t len) {
    std::vector<Complex> out(len);
    for (std::size_t n = 0; n < len; ++n) out[n] = toDouble(x[n]);
    return out;
}

// A random float signal of 2^order elements.
template <class T>
std::vector<T> randomSignal(int order) {
    std::vector<T> x(std::size_t{1} << order);
    fillRandom(x);
    return x;
}

// The double reference of either kind, in the layout of the transform's output.
inline std::vector<Complex> reference(const std::vector<Zep32fc>& x, Direction direction) {
    return fft(toDouble(x.data(), x.size()), direction);
}
inline std::vector<Complex> reference(const std::vector<Zep32f>& x, Direction) {
    const std::vector<double> packed = toPerm(fft(toDouble(x.data(), x.size())));
    return {packed.begin(), packed.end()};
}

// Error of computed values against their reference, gathered over any number of arrays.
class ErrorNorm {
public:
    template <class T>
    void add(const T* got, const std::vector<Complex>& want, double factor = 1) {
        double norm = 0, worst = 0;
        for (std::size_t k = 0; k < want.size(); ++k) {
            const double error = std::norm(toDouble(got[k]) - factor * want[k]);
            difference_ += error;
            worst = std::max(worst, std::isnan(error) ? HUGE_VAL : error);
            norm += std::norm(factor * want[k]);
        }
        norm_ += norm;
        worst_ = std::max(worst_, worst / (norm / static_cast<double>(want.size())));
    }

    double rms() const { return std::sqrt(difference_ / norm_); }
    // Of one element, relative to the root mean square of its array.
    double worst() const { return std::sqrt(worst_); }

private:
    double difference_ = 0, norm_ = 0, worst_ = 0;
};

// Each of the order's radix-2 levels adds a rounding error of independent sign, so that the
// relative error grows with sqrt(order); the factor is what a float transform with correctly
// rounded twiddles stays below.
inline double rmsBound(int order) { return 0.70 * 0x1p-24 * std::sqrt(std::max(order, 1)); }

// The errors of single elements are sums of many roundings, near to normal: none of 2^23 reaches 8
// deviations. A single misplaced or unscaled element is off by 10^6 of them.
inline double worstBound(int order) { return 8 * rmsBound(order); }

template <class T>
bool sameBits(const T* a, const T* b, std::size_t len) {
    return std::memcmp(a, b, len * sizeof(T)) == 0;
}

// The factor that the transform applies. An impulse at 0 gives it in every bin, since nothing but
// zeros is added.
inline float factorOf(const ComplexFft& fft, Direction direction, int order) {
    std::vector<Zep32fc> x(std::size_t{1} << order);
    x[0] = {1, 0};
    EXPECT_EQ(fft.run(direction, x.data(), x.data()), zepStsNoErr);
    for (const Zep32fc& X : x) EXPECT_TRUE(X.re == x[0].re && X.im == 0) << "order " << order;
    return x[0].re;
}
inline float factorOf(const RealFft& fft, Direction, int order) {
    std::vector<Zep32f> x(std::size_t{1} << order);
    x[0] = 1;
    EXPECT_EQ(fft.forward(x.data(), x.data()), zepStsNoErr);
    for (std::size_t k = 0; k < x.size(); ++k)
        EXPECT_EQ(x[k], k > 1 && k % 2 == 1 ? 0.0f : x[0])
            << "order " << order << " position " << k;
    return x[0];
}

// The factor as documented: 1/N where the flag asks for it in this direction, 1/sqrt(N), or 1.
inline double documentedFactor(int order, int flag, Direction direction) {
    if (flag == ZEP_FFT_SCALE_SQRT) return std::exp2(-0.5 * order);
    const int scaling = direction == Direction::Forward ? ZEP_FFT_SCALE_FWD : ZEP_FFT_SCALE_INV;
    return flag == scaling ? std::exp2(-order) : 1.0;
}

// 1/sqrt(N) comes from an estimate with a relative error e below 1.5 * 2^-12 and one Newton step,
// which leaves 1.5 * e^2 < 3.4 * 2^-24 and four roundings of at most 2^-24 each: less than 2^-21.
inline constexpr double kRootFactorError = 0x1p-21;

}  // namespace zep::test
