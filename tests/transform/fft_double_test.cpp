// The double transform inside the library, against one in extended precision.
#include <complex>

#include "transform/fft_steps.h"
#include "transform/fft_support.h"

namespace zep::test {
namespace {

using Extended = std::complex<long double>;

// Radix 2, by halves.
std::vector<Extended> extendedFft(const std::vector<Extended>& x, Direction direction) {
    const std::size_t N = x.size();
    if (N == 1) return x;
    std::vector<Extended> even(N / 2), odd(N / 2), X(N);
    for (std::size_t n = 0; n < N / 2; ++n) {
        even[n] = x[2 * n];
        odd[n] = x[2 * n + 1];
    }
    even = extendedFft(even, direction);
    odd = extendedFft(odd, direction);
    const long double step = (direction == Direction::Forward ? -2 : 2) *
                             3.14159265358979323846264338327950288L / static_cast<long double>(N);
    for (std::size_t k = 0; k < N / 2; ++k) {
        const long double angle = step * static_cast<long double>(k);
        const Extended turned = odd[k] * Extended(std::cos(angle), std::sin(angle));
        X[k] = even[k] + turned;
        X[k + N / 2] = even[k] - turned;
    }
    return X;
}

class FftDouble : public VariantTest {
protected:
    const DoubleFft& fft() const { return doubleFftOf(GetParam()); }

    ZepStatus run(Direction direction, const Zep64fc* src, Zep64fc* dst, const FFTSpecC64fc* spec,
                  Zep8u* scratch) const {
        return (direction == Direction::Forward ? fft().forward : fft().inverse)(src, dst, spec,
                                                                                 scratch);
    }
};

// Root mean square error relative to the spectrum, over several arrays.
class DoubleError {
public:
    void add(const std::vector<Extended>& want, const Zep64fc* got, long double factor) {
        for (std::size_t k = 0; k < want.size(); ++k) {
            difference_ += std::norm(Extended(got[k].re, got[k].im) - factor * want[k]);
            norm_ += std::norm(factor * want[k]);
        }
    }
    double rms() const { return static_cast<double>(std::sqrt(difference_ / norm_)); }

private:
    long double difference_ = 0, norm_ = 0;
};

TEST_P(FftDouble, MatchesExtendedPrecisionAnywhere) {
    for (int order = 0; order <= (thin() ? 13 : 17); ++order) {
        if (order == 14 || order == 15) continue;  // as 16
        const int N = 1 << order;
        const int flag = kFlags[order % 4];
        FFTSpecC64fc* spec = nullptr;
        ASSERT_EQ(fft().create(&spec, order, flag, 0), zepStsNoErr);
        int bytes = -1;
        ASSERT_EQ(fft().bufSize(spec, &bytes), zepStsNoErr);
        for (const Direction direction : kDirections) {
            SCOPED_TRACE(testing::Message()
                         << "order " << order << " direction " << static_cast<int>(direction));
            const double factor = documentedFactor(order, flag, direction);
            DoubleError error;
            // Short transforms have few errors to average over.
            for (int signals = std::max(1, 512 >> order); signals > 0; --signals) {
                std::vector<Zep64fc> x(static_cast<std::size_t>(N));
                fillRandom(x);
                std::vector<Extended> wide;
                for (const Zep64fc& v : x) wide.emplace_back(v.re, v.im);
                const int odd = direction == Direction::Forward ? 1 : 24;
                SkewedBuffer<Zep64fc> src(N, odd), dst(N, 0), both(N, odd);
                SkewedBuffer<Zep8u> scratch(bytes, 1);
                std::copy(x.begin(), x.end(), src.begin());
                std::copy(x.begin(), x.end(), both.begin());
                ASSERT_EQ(run(direction, src.data(), dst.data(), spec, scratch.data()),
                          zepStsNoErr);
                ASSERT_EQ(run(direction, both.data(), both.data(), spec, nullptr), zepStsNoErr);
                ASSERT_TRUE(sameBits(both.data(), dst.data(), x.size())) << "in place";
                ASSERT_TRUE(sameBits(src.data(), x.data(), x.size())) << "the source has changed";
                ASSERT_TRUE(src.intact() && dst.intact() && both.intact() && scratch.intact());
                error.add(extendedFft(wide, direction), dst.data(), factor);
            }
            // 2^-53 for 2^-24; the factor 1/sqrt(N) has roundings of its own.
            EXPECT_LE(error.rms(),
                      rmsBound(order) * 0x1p-29 + (flag == ZEP_FFT_SCALE_SQRT ? 0x1p-53 : 0.0));
        }
        EXPECT_EQ(fft().release(spec), zepStsNoErr);
    }
}

// Bytes by order: a block of the whole length up to 2^16 points, the innermost block or the tiles
// above.
TEST_P(FftDouble, ScratchFollowsTheRoutes) {
    for (int order = 0; order <= 18; ++order) {
        FFTSpecC64fc* spec = nullptr;
        ASSERT_EQ(fft().create(&spec, order, ZEP_FFT_SCALE_NONE, 0), zepStsNoErr);
        int bytes = -1;
        ASSERT_EQ(fft().bufSize(spec, &bytes), zepStsNoErr);
        const int log2Bytes = order <= 5 ? 0 : order <= 16 ? order + 4 : order;
        EXPECT_EQ(bytes, log2Bytes == 0 ? 0 : (1 << log2Bytes) + 32) << "order " << order;
        EXPECT_EQ(fft().release(spec), zepStsNoErr);
    }
}

TEST_P(FftDouble, TestsItsArgumentsInOrder) {
    FFTSpecC64fc* spec = nullptr;
    EXPECT_EQ(fft().create(nullptr, 31, 0, 0), zepStsNullPtrErr);
    EXPECT_EQ(fft().create(&spec, 31, 0, 0), zepStsFftOrderErr);
    EXPECT_EQ(fft().create(&spec, 28, 0, 0), zepStsFftFlagErr);
    EXPECT_EQ(fft().create(&spec, 28, 8, 0), zepStsFftOrderErr);
    EXPECT_EQ(spec, nullptr);
    ASSERT_EQ(fft().create(&spec, 3, 8, 0), zepStsNoErr);
    EXPECT_EQ(spec->magic, 7);
    Zep64fc x[8] = {};
    EXPECT_EQ(fft().forward(x, x, nullptr, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(fft().forward(nullptr, x, spec, nullptr), zepStsNullPtrErr);
    spec->magic = 4;
    EXPECT_EQ(fft().forward(nullptr, x, spec, nullptr), zepStsContextMatchErr);
    EXPECT_EQ(fft().release(spec), zepStsContextMatchErr);
    spec->magic = 7;
    EXPECT_EQ(fft().release(spec), zepStsNoErr);
}

ZEP_FOR_EACH_VARIANT(FftDouble);

}  // namespace
}  // namespace zep::test
