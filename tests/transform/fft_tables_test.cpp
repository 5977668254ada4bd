// The folding tables of the real transforms, value for value. All come from a quarter-wave table S
// of 2^order points a turn: sines in double precision of angles up to an eighth of a turn, rounded
// to float.
#include "transform/fft_spec.h"
#include "transform/fft_support.h"

namespace zep::test {
namespace {

class FftTables : public VariantTest {};

// S[k] = sin(2*pi*k/2^order), k = 0 .. 2^order/4.
class QuarterWave {
public:
    explicit QuarterWave(int order) : quarter_(std::size_t{1} << (order - 2)) {
        const double step = 6.283185307179586 / static_cast<double>(4 * quarter_);
        for (std::size_t k = 0; k <= quarter_; ++k)
            s_.push_back(static_cast<float>(
                k <= quarter_ / 2 ? std::sin(static_cast<double>(k) * step)
                                  : std::cos(static_cast<double>(quarter_ - k) * step)));
    }
    float sin(std::size_t k) const { return s_[k]; }
    float cos(std::size_t k) const { return s_[quarter_ - k]; }

private:
    std::size_t quarter_;
    std::vector<float> s_;
};

// Columns order the entries within a group of sixteen by their vectors, hence the comparison of
// sorted groups.
constexpr std::size_t kWidest = 16;

template <class First, class Second>
void expectEntries(const float* table, std::size_t firstK, std::size_t count, First first,
                   Second second) {
    const std::size_t group = std::min(kWidest, count);
    for (std::size_t e = 0; e < count; e += group) {
        std::vector<float> got(table + 2 * e, table + 2 * (e + group)), want;
        for (std::size_t k = firstK + e; k < firstK + e + group; ++k) {
            want.push_back(first(k));
            want.push_back(second(k));
        }
        std::sort(got.begin(), got.end());
        std::sort(want.begin(), want.end());
        ASSERT_EQ(got, want) << "from entry " << e;
    }
}

TEST_P(FftTables, FoldAndUnfoldHoldTheTwiddlesOfTheRealLength) {
    for (int order = 5; order <= 20; order += order < 15 ? 1 : thinStep(4)) {
        SCOPED_TRACE(testing::Message() << "order " << order);
        const RealFft fft(order);
        const FftObject<float>& object = *fft.spec();
        const QuarterWave S(order);
        const std::size_t entries = std::size_t{1} << (order - 2);
        expectEntries(
            object.foldTwiddles, 1, entries, [&](std::size_t k) { return 0.5f * S.cos(k); },
            [&](std::size_t k) { return 0.5f - 0.5f * S.sin(k); });
        expectEntries(
            object.unfoldTwiddles, 1, entries, [&](std::size_t k) { return S.cos(k); },
            [&](std::size_t k) { return -S.sin(k); });
    }
}

// From order 21 on: the angles 1 .. 1024, then the multiples of 1024.
TEST_P(FftTables, LongFoldIsSplitIntoFineAndCoarseAngles) {
    for (const int order : {21, 22}) {
        SCOPED_TRACE(testing::Message() << "order " << order);
        const RealFft fft(order);
        const FftObject<float>& object = *fft.spec();
        const QuarterWave S(order);
        for (const float* table : {object.foldTwiddles, object.unfoldTwiddles}) {
            expectEntries(
                table, 1, 1024, [&](std::size_t k) { return S.cos(k); },
                [&](std::size_t k) { return -S.sin(k); });
            const float* coarse = table + 2 * 1024;
            const std::size_t coarseEntries = std::size_t{1} << (order - 12);
            for (std::size_t b = 0; b < coarseEntries; ++b) {
                ASSERT_EQ(coarse[2 * b], S.cos(1024 * b)) << b;
                ASSERT_EQ(coarse[2 * b + 1], -S.sin(1024 * b)) << b;
            }
        }
    }
}

TEST_P(FftTables, TablesBeginOnBoundariesBehindTheObject) {
    for (const int order : {5, 8, 12, 18, 19, 21}) {
        const RealFft fft(order);
        const FftObject<float>& object = *fft.spec();
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&object) % 32, 0u);
        for (const void* table : {static_cast<const void*>(object.bitReversal),
                                  static_cast<const void*>(object.blockTwiddles),
                                  static_cast<const void*>(object.foldTwiddles),
                                  static_cast<const void*>(object.unfoldTwiddles),
                                  static_cast<const void*>(object.levelTwiddles[0])}) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(table) % 64, 0u) << "order " << order;
            if (table == nullptr) continue;
            EXPECT_GT(table, static_cast<const void*>(&object));
        }
    }
}

ZEP_FOR_EACH_VARIANT(FftTables);

}  // namespace
}  // namespace zep::test
