// Where the arrays lie never matters: every alignment, in place or not, own or given scratch gives
// the same bits, and nothing outside the arrays is touched.
#include "transform/fft_support.h"

namespace zep::test {
namespace {

constexpr int kLastShortOrder = 17;
constexpr int kFloat = static_cast<int>(sizeof(float));

class FftPlacement : public VariantTest {};

// Scratch of the size asked for, offsetBytes off a boundary; a negative offset stands for a null
// pointer.
class Scratch {
public:
    Scratch(int bytes, int offsetBytes)
        : null_(offsetBytes < 0), buffer_(bytes, std::max(offsetBytes, 0)) {}
    Zep8u* data() { return null_ ? nullptr : buffer_.data(); }
    bool intact() { return buffer_.intact(); }

private:
    bool null_;
    SkewedBuffer<Zep8u> buffer_;
};

// Transforms a signal at one placement after the other and compares with the first, plain call.
template <class Kind>
class Placements {
public:
    using T = typename Kind::Element;

    Placements(int order, int flag, Direction direction)
        : N_(1 << order),
          direction_(direction),
          fft_(order, flag),
          x_(randomSignal<T>(order)),
          X_(x_.size()),
          scratchBytes_(fft_.scratchBytes()) {
        EXPECT_EQ(fft_.run(direction_, x_.data(), X_.data()), zepStsNoErr);
    }

    void outOfPlace(int srcBytes, int dstBytes, int scratchOffset) {
        SkewedBuffer<T> src(N_, srcBytes), dst(N_, dstBytes);
        Scratch scratch(scratchBytes_, scratchOffset);
        std::copy(x_.begin(), x_.end(), src.begin());
        ASSERT_EQ(fft_.run(direction_, src.data(), dst.data(), scratch.data()), zepStsNoErr);
        ASSERT_TRUE(sameBits(dst.data(), X_.data(), X_.size()));
        ASSERT_TRUE(sameBits(src.data(), x_.data(), x_.size())) << "the source has changed";
        ASSERT_TRUE(src.intact() && dst.intact() && scratch.intact()) << "written outside";
    }

    void inPlace(int bytes, int scratchOffset) {
        SkewedBuffer<T> data(N_, bytes);
        Scratch scratch(scratchBytes_, scratchOffset);
        std::copy(x_.begin(), x_.end(), data.begin());
        ASSERT_EQ(fft_.run(direction_, data.data(), data.data(), scratch.data()), zepStsNoErr);
        ASSERT_TRUE(sameBits(data.data(), X_.data(), X_.size())) << "in place";
        ASSERT_TRUE(data.intact() && scratch.intact()) << "written outside";
    }

private:
    int N_;
    Direction direction_;
    Fft<Kind> fft_;
    std::vector<T> x_, X_;
    int scratchBytes_;
};

template <class Kind>
void placementNeverMatters(int order, int flag, Direction direction) {
    SCOPED_TRACE(testing::Message() << "order " << order << " flag " << flag << " direction "
                                    << static_cast<int>(direction));
    Placements<Kind> placements(order, flag, direction);
    // Every pair of offsets where that is cheap, every offset of either array elsewhere.
    for (int s = 0; s <= 8; ++s)
        for (int d = 0; d <= 8; ++d) {
            if (order > 9 && s != 0 && d != 0 && s != d) continue;
            const int scratchOffset = (9 * s + d) % 35 - 1;  // null, then every alignment
            SCOPED_TRACE(testing::Message()
                         << "offsets " << s << ' ' << d << " scratch " << scratchOffset);
            placements.outOfPlace(s * kFloat, d * kFloat, scratchOffset);
            if (s == d) placements.inPlace(d * kFloat, scratchOffset);
            if (testing::Test::HasFatalFailure()) return;
        }
    for (const int scratchOffset : {-1, 0, 1, 4, 16, 31, 32, 33, 63})
        placements.inPlace(0, scratchOffset);
    // Addresses that are no multiple of the element, nor of its parts.
    for (const int odd : {1, 2, 3, 5, 31, 33}) {
        SCOPED_TRACE(testing::Message() << "odd offset " << odd);
        placements.outOfPlace(odd, 0, odd);
        placements.outOfPlace(0, odd, -1);
        placements.outOfPlace(odd, 64 - odd, 0);
        placements.inPlace(odd, 1);
        if (testing::Test::HasFatalFailure()) return;
    }
}

TEST_P(FftPlacement, NeverChangesAComplexSpectrum) {
    for (int order = 0; order <= kLastShortOrder; ++order)
        for (const Direction direction : kDirections)
            placementNeverMatters<ComplexKind>(
                order, order % 2 == 0 ? ZEP_FFT_SCALE_NONE : ZEP_FFT_SCALE_SQRT, direction);
}

TEST_P(FftPlacement, NeverChangesARealSpectrum) {
    for (int order = 0; order <= kLastShortOrder + 1; ++order)
        placementNeverMatters<RealKind>(
            order, order % 2 == 0 ? ZEP_FFT_SCALE_NONE : ZEP_FFT_SCALE_SQRT, Direction::Forward);
}

// The long routes move data in tiles, in place by swapping: one placement of each kind is enough to
// tell them apart.
template <class Kind>
void placementNeverMattersForLong(int order, Direction direction) {
    SCOPED_TRACE(testing::Message() << "order " << order);
    Placements<Kind> placements(order, ZEP_FFT_SCALE_SQRT, direction);
    placements.outOfPlace(0, kFloat, 0);
    placements.outOfPlace(kFloat, 2 * kFloat, 3);
    placements.outOfPlace(3 * kFloat, 4 * kFloat, 17);
    placements.inPlace(0, 0);
    placements.inPlace(kFloat, -1);
    placements.inPlace(2 * kFloat, 1);
    placements.outOfPlace(1, 3, 32);
    placements.inPlace(5, 33);
}

TEST_P(FftPlacement, NeverChangesALongComplexSpectrum) {
    if (thin()) GTEST_SKIP() << "too long for a thin sweep";
    for (int order = kLastShortOrder + 1; order <= 22; ++order)
        placementNeverMattersForLong<ComplexKind>(order, kDirections[order % 2]);
}

TEST_P(FftPlacement, NeverChangesALongRealSpectrum) {
    if (thin()) GTEST_SKIP() << "too long for a thin sweep";
    for (int order = kLastShortOrder + 2; order <= 22; ++order)
        placementNeverMattersForLong<RealKind>(order, Direction::Forward);
}

ZEP_FOR_EACH_VARIANT(FftPlacement);

}  // namespace
}  // namespace zep::test
