// Transposition against the definition, element by element: every small size, strides, addresses
// between unreadable pages, and the routes of large matrices.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/variant.h"
#include "zepm.h"

namespace zep::test {
namespace {

template <class T>
struct Function;
template <>
struct Function<Zep32f> {
    static constexpr auto call = zepmTranspose_m_32f;
};
template <>
struct Function<Zep64f> {
    static constexpr auto call = zepmTranspose_m_64f;
};

// A number for each element, whose bits a comparison of floats would not tell apart from others: every
// seventh is a NaN with a payload.
template <class T>
T element(int row, int column) {
    using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    const Bits number = static_cast<Bits>(row) * 65599 + static_cast<Bits>(column) * 8191 + 1;
    constexpr Bits kNan = sizeof(T) == 4 ? Bits{0x7FC00000} : static_cast<Bits>(0x7FF8000000000000);
    const Bits exponent = (row + column) % 7 == 0 ? kNan : 0;
    const Bits bits = number ^ exponent;
    T x;
    std::memcpy(&x, &bits, sizeof x);
    return x;
}

struct Layout {
    int gapSrcRow = 0, gapDstRow = 0;  // elements between rows
    int srcStep = 1, dstStep = 1;      // elements from one of a row to the next
    int srcSkew = 0, dstSkew = 0;      // bytes
};

constexpr std::byte kUntouched{0xA5};

template <class T>
void checkTranspose(int width, int height, Edge edge, Layout l = {}) {
    constexpr int kBytes = sizeof(T);
    const int srcRow = width * l.srcStep + l.gapSrcRow, dstRow = height * l.dstStep + l.gapDstRow;
    // The last row ends with its last element.
    const int srcLen = (height - 1) * srcRow + (width - 1) * l.srcStep + 1;
    const int dstLen = (width - 1) * dstRow + (height - 1) * l.dstStep + 1;
    GuardedBuffer<std::byte> src(srcLen * kBytes, edge, l.srcSkew);
    GuardedBuffer<std::byte> dst(dstLen * kBytes, edge, l.dstSkew);
    for (int r = 0; r < height; ++r)
        for (int c = 0; c < width; ++c) {
            const T x = element<T>(r, c);
            std::memcpy(src.data() + (r * srcRow + c * l.srcStep) * kBytes, &x, kBytes);
        }
    ASSERT_EQ(Function<T>::call(reinterpret_cast<const T*>(src.data()), srcRow * kBytes,
                                l.srcStep * kBytes, width, height, reinterpret_cast<T*>(dst.data()),
                                dstRow * kBytes, l.dstStep * kBytes),
              zepStsNoErr);
    std::vector<std::byte> expected(static_cast<std::size_t>(dstLen * kBytes), kUntouched);
    for (int r = 0; r < height; ++r)
        for (int c = 0; c < width; ++c) {
            const T x = element<T>(r, c);
            std::memcpy(&expected[static_cast<std::size_t>((c * dstRow + r * l.dstStep) * kBytes)],
                        &x, kBytes);
        }
    const auto wrong =
        std::mismatch(expected.begin(), expected.end(), dst.data()).first - expected.begin();
    ASSERT_EQ(wrong, static_cast<std::ptrdiff_t>(expected.size()))
        << "byte " << wrong << " of " << width << " by " << height << " gaps " << l.gapSrcRow << ' '
        << l.gapDstRow << " steps " << l.srcStep << ' ' << l.dstStep << " skews " << l.srcSkew
        << ' ' << l.dstSkew;
}

class Transpose : public VariantTest {
protected:
    template <class F>
    void forBothTypes(F f) {
        f(Zep32f{});
        f(Zep64f{});
    }
};

TEST_P(Transpose, IsExactAtEverySmallSize) {
    forBothTypes([]<class T>(T) {
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (int width = 1; width <= 35; ++width)
                for (int height = 1; height <= 35; ++height) {
                    checkTranspose<T>(width, height, edge);
                    if (width % 3 == 0) checkTranspose<T>(width, height, edge, {3, 5});
                }
    });
}

// Blocks of rows and what is left of them, thin and flat matrices, strides of a power of two.
TEST_P(Transpose, IsExactAcrossBlocks) {
    forBothTypes([]<class T>(T) {
        for (const int width : {1, 3, 17, 63, 64, 65, 130})
            for (const int height : {1, 2, 31, 63, 64, 65, 79, 80, 129, 200})
                checkTranspose<T>(width, height, Edge::Back, {width % 2, height % 3});
        checkTranspose<T>(5, 3, Edge::Front);
        checkTranspose<T>(3, 5, Edge::Front);
        checkTranspose<T>(200, 200, Edge::Back);
        checkTranspose<T>(2, 3000, Edge::Back);
        checkTranspose<T>(3000, 2, Edge::Back);
        checkTranspose<T>(100, 2000, Edge::Back);
        checkTranspose<T>(128, 128, Edge::Front, {1024 - 128, 1024 - 128});
    });
}

TEST_P(Transpose, WorksAtEveryAddress) {
    forBothTypes([]<class T>(T) {
        for (int skew = 1; skew < 64; skew += skew < 9 ? 1 : 5)
            for (const int size : {3, 8, 17, 40}) {
                checkTranspose<T>(size, size + 1, Edge::Front, {0, 0, 1, 1, skew, 0});
                checkTranspose<T>(size + 1, size, Edge::Back, {1, 2, 1, 1, 0, skew});
            }
    });
}

TEST_P(Transpose, FollowsStridesBetweenElements) {
    forBothTypes([]<class T>(T) {
        for (const int srcStep : {1, 2, 5})
            for (const int dstStep : {1, 3})
                for (const int size : {1, 4, 7, 20}) {
                    checkTranspose<T>(size, 9, Edge::Back, {0, 0, srcStep, dstStep, 3, 5});
                    checkTranspose<T>(9, size, Edge::Front, {2, 1, srcStep, dstStep});
                }
    });
}

// Rows may lie in each other's gaps: an interleaved source, and rows that overlap.
TEST_P(Transpose, ReadsRowsThatShareMemory) {
    std::vector<Zep32f> src(60);
    for (int n = 0; n < 60; ++n) src[static_cast<std::size_t>(n)] = static_cast<Zep32f>(n);
    std::vector<Zep32f> dst(40 * 20);
    // Row r begins one element after row r - 1.
    ASSERT_EQ(zepmTranspose_m_32f(src.data(), 4, 4, 40, 20, dst.data(), 80, 4), zepStsNoErr);
    for (int c = 0; c < 40; ++c)
        for (int r = 0; r < 20; ++r)
            ASSERT_EQ(dst[static_cast<std::size_t>(c * 20 + r)], static_cast<Zep32f>(r + c));
}

// Beyond a core's cache, beyond every cache; lines begin with rows, and not.
TEST_P(Transpose, IsExactWhereTheMatricesExceedTheCaches) {
    checkTranspose<Zep32f>(700, 500, Edge::Back);
    checkTranspose<Zep64f>(400, 390, Edge::Back, {1, 1});
    struct Large {
        int width, height;
    };
    for (const auto [width, height] : {Large{2500, 2048}, Large{1531, 2832}}) {
        const auto n = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        std::vector<Zep32f> src(n);
        GuardedBuffer<Zep32f> dst(static_cast<int>(n), Edge::Front);
        for (std::size_t i = 0; i < n; ++i) src[i] = static_cast<Zep32f>(i % 16777213);
        ASSERT_EQ(
            zepmTranspose_m_32f(src.data(), 4 * width, 4, width, height, dst.data(), 4 * height, 4),
            zepStsNoErr);
        for (int c = 0; c < width; ++c)
            for (int r = 0; r < height; ++r)
                ASSERT_EQ(dst[c * height + r], src[static_cast<std::size_t>(r * width + c)])
                    << c << ' ' << r;
    }
}

TEST_P(Transpose, TestsPointersThenSizesThenStridesAndWritesNothing) {
    forBothTypes([]<class T>(T) {
        constexpr int E = sizeof(T);
        const T src[4] = {1, 2, 3, 4};
        T dst[4] = {9, 9, 9, 9};
        const auto f = Function<T>::call;
        EXPECT_EQ(f(nullptr, 0, 0, 0, 0, dst, 0, 0), zepStsNullPtrErr);
        EXPECT_EQ(f(src, 0, 0, 0, 0, nullptr, 0, 0), zepStsNullPtrErr);
        constexpr int kLeast = std::numeric_limits<int>::min();
        for (const int bad : {0, -1, kLeast}) {
            EXPECT_EQ(f(src, 6, E, bad, 2, dst, 2 * E, E), zepStsSizeErr);
            EXPECT_EQ(f(src, 2 * E, E, 2, bad, dst, 0, E), zepStsSizeErr);
        }
        for (const int bad : {0, -E, -2 * E, kLeast, E / 2, E + 2, 6 + E / 8, 1}) {
            if (bad > 0 && bad % E == 0) continue;
            EXPECT_EQ(f(src, bad, E, 2, 2, dst, 2 * E, E), zepStsStrideMatrixErr) << bad;
            EXPECT_EQ(f(src, 2 * E, bad, 2, 2, dst, 2 * E, E), zepStsStrideMatrixErr) << bad;
            EXPECT_EQ(f(src, 2 * E, E, 2, 2, dst, bad, E), zepStsStrideMatrixErr) << bad;
            EXPECT_EQ(f(src, 2 * E, E, 2, 2, dst, 2 * E, bad), zepStsStrideMatrixErr) << bad;
        }
        for (const T x : dst) EXPECT_EQ(x, T{9});
        EXPECT_EQ(f(src, E, E, 1, 1, dst, E, E), zepStsNoErr);
        EXPECT_EQ(dst[0], T{1});
        EXPECT_EQ(dst[1], T{9});
    });
    const Zep32f x[4] = {};
    Zep32f y[4];
    EXPECT_EQ(zepmTranspose_m_32f(x, 6, 4, 1, 1, y, 4, 4), zepStsStrideMatrixErr);
    const Zep64f x64[4] = {};
    Zep64f y64[4];
    EXPECT_EQ(zepmTranspose_m_64f(x64, 8, 4, 1, 1, y64, 8, 8), zepStsStrideMatrixErr);
}

ZEP_FOR_EACH_VARIANT(Transpose);

}  // namespace
}  // namespace zep::test
