// Scaled sums, differences and products against exact integers of 128 bits: every scale from -70 to
// 70 and the extreme ones, the ends of the range, ties, every length and address, in place.
#include <sys/mman.h>

#include "support/variant.h"
#include "vector/conversion_subject.h"

namespace zep::test {
namespace {

using Wide = __int128;

// r / 2^k, ties to even, saturated to 32 bits; r has at most 64.
Zep32s scaledExactly(Wide r, int k) {
    constexpr Wide kMax = 0x7FFFFFFF, kMin = -kMax - 1;
    Wide y;
    if (k > 0) {
        const int shift = std::min(k, 100);
        y = r >> shift;
        const Wide rest = r - (y << shift), half = Wide{1} << (shift - 1);
        if (rest > half || (rest == half && (y & 1) != 0)) ++y;
    } else {
        const int shift = k < -40 ? 40 : -k;
        y = r << shift;
    }
    return static_cast<Zep32s>(std::clamp(y, kMin, kMax));
}

// Numbers near the ends, near powers of two, small ones and any.
std::vector<Zep32s> operands(int len, unsigned phase) {
    static constexpr Zep32s kSpecial[] = {0,           1,           -1,
                                          2,           -2,          3,
                                          -3,          0x7FFFFFFF,  -0x7FFFFFFF - 1,
                                          0x7FFFFFFE,  -0x7FFFFFFF, 0x40000000,
                                          -0x40000000, 0x3FFFFFFF,  0x8000,
                                          0x10000};
    std::vector<Zep32s> x;
    for (unsigned n = 0; n < static_cast<unsigned>(len); ++n) {
        const unsigned i = n * 7 + phase * 3;
        const auto random = static_cast<std::uint32_t>(rng()());
        if (i % 3 == 0)
            x.push_back(kSpecial[(i / 3 + (phase != 0 ? n / 16 : 0)) % std::size(kSpecial)]);
        else if (i % 3 == 1)
            x.push_back(static_cast<Zep32s>(random) >> (random % 32));
        else
            x.push_back(static_cast<Zep32s>(random));
    }
    return x;
}

// How a function is called, and the exact result before scaling.
struct Operation {
    const char* name;
    int sources;   // vectors, the destination in place being one
    bool inPlace;  // the last source is the destination
    ZepStatus (*call)(const Zep32s* a, const Zep32s* b, Zep32s* y, Zep32s val, int len, int k);
    Wide (*exact)(Zep32s a, Zep32s b, Zep32s val);
};

// One source is b, as in the in-place forms.
const Operation kOperations[] = {
    {"Add_32s_Sfs", 2, false,
     [](auto a, auto b, auto y, Zep32s, int len, int k) {
         return zepsAdd_32s_Sfs(a, b, y, len, k);
     },
     [](Zep32s a, Zep32s b, Zep32s) { return Wide{a} + b; }},
    {"Add_32s_ISfs", 2, true,
     [](auto a, auto, auto y, Zep32s, int len, int k) { return zepsAdd_32s_ISfs(a, y, len, k); },
     [](Zep32s a, Zep32s b, Zep32s) { return Wide{a} + b; }},
    {"Sub_32s_Sfs", 2, false,
     [](auto a, auto b, auto y, Zep32s, int len, int k) {
         return zepsSub_32s_Sfs(a, b, y, len, k);
     },
     [](Zep32s a, Zep32s b, Zep32s) { return Wide{b} - a; }},
    {"AddC_32s_Sfs", 1, false,
     [](auto, auto b, auto y, Zep32s val, int len, int k) {
         return zepsAddC_32s_Sfs(b, val, y, len, k);
     },
     [](Zep32s, Zep32s b, Zep32s val) { return Wide{b} + val; }},
    {"AddC_32s_ISfs", 1, true,
     [](auto, auto, auto y, Zep32s val, int len, int k) {
         return zepsAddC_32s_ISfs(val, y, len, k);
     },
     [](Zep32s, Zep32s b, Zep32s val) { return Wide{b} + val; }},
    {"SubC_32s_Sfs", 1, false,
     [](auto, auto b, auto y, Zep32s val, int len, int k) {
         return zepsSubC_32s_Sfs(b, val, y, len, k);
     },
     [](Zep32s, Zep32s b, Zep32s val) { return Wide{b} - val; }},
    {"SubC_32s_ISfs", 1, true,
     [](auto, auto, auto y, Zep32s val, int len, int k) {
         return zepsSubC_32s_ISfs(val, y, len, k);
     },
     [](Zep32s, Zep32s b, Zep32s val) { return Wide{b} - val; }},
    {"MulC_32s_ISfs", 1, true,
     [](auto, auto, auto y, Zep32s val, int len, int k) {
         return zepsMulC_32s_ISfs(val, y, len, k);
     },
     [](Zep32s, Zep32s b, Zep32s val) { return Wide{b} * val; }},
};

void expectExact(const Operation& f, Zep32s val, int k, int len, Edge edge = Edge::Back,
                 int skew = 0, bool aliased = false) {
    const auto a0 = operands(len, 1), b0 = operands(len, 0);
    const int bytes = len * 4;
    const std::size_t size = static_cast<std::size_t>(bytes);
    GuardedBuffer<std::byte> a(bytes, edge, skew % 13), b(bytes, edge, skew % 7),
        y(bytes, edge, skew);
    const bool yIsB = f.inPlace || aliased;
    std::memcpy(a.data(), a0.data(), size);
    std::memcpy(yIsB ? y.data() : b.data(), b0.data(), size);
    auto* const dst = reinterpret_cast<Zep32s*>(y.data());
    const auto* const second = yIsB ? dst : reinterpret_cast<const Zep32s*>(b.data());
    ASSERT_EQ(f.call(reinterpret_cast<const Zep32s*>(a.data()), second, dst, val, len, k),
              zepStsNoErr);
    for (int n = 0; n < len; ++n) {
        const auto i = static_cast<std::size_t>(n);
        Zep32s got;
        std::memcpy(&got, y.data() + 4 * n, 4);
        ASSERT_EQ(got, scaledExactly(f.exact(a0[i], b0[i], val), k))
            << f.name << " k " << k << " val " << val << " len " << len << " n " << n << ": "
            << a0[i] << ' ' << b0[i];
    }
}

constexpr Zep32s kMost = 0x7FFFFFFF, kLeast = -kMost - 1;
constexpr Zep32s kConstants[] = {0, 1, -1, 3, -5, 12345, -16384, 16383, 1 << 20, kMost, kLeast};

class FixedPoint : public VariantTest {};

TEST_P(FixedPoint, IsExactAtEveryScale) {
    for (const Operation& f : kOperations)
        for (int k = -70; k <= 70; ++k)
            for (const Zep32s val : kConstants) {
                expectExact(f, val, k, f.sources == 2 ? 613 : 131);
                if (f.sources == 2) break;
            }
    for (const Operation& f : kOperations)
        for (const int k : {std::numeric_limits<int>::min(), -1 << 30, -129, 127, 128, 1 << 30,
                            std::numeric_limits<int>::max()})
            for (const Zep32s val : {-7, kMost}) expectExact(f, val, k, 67);
}

// Constants beside every power of two take the product to either of its routes.
TEST_P(FixedPoint, ProductsAreExactBesideEveryPowerOfTwo) {
    const Operation& product = kOperations[std::size(kOperations) - 1];
    for (int k = 1; k <= 62; k += k < 34 ? 1 : 7)
        for (int e = std::max(0, k - 3); e <= std::min(30, k + 1); ++e)
            for (const int beside : {-1, 0, 1})
                for (const int sign : {-1, 1})
                    expectExact(product, sign * ((1 << e) + beside), k, 67);
}

TEST_P(FixedPoint, WorksAtEveryLengthAndAddressAndInPlace) {
    for (const Operation& f : kOperations)
        for (const int k : {0, 1, 2, 15, -3}) {
            for (const Edge edge : {Edge::Front, Edge::Back})
                for (int len = 1; len <= 150; len += len < 70 ? 1 : 11)
                    expectExact(f, 12345, k, len, edge);
            for (const int len : {3, 17, 40, 131})
                for (int skew = 1; skew < 64; skew += skew < 4 ? 1 : 6) {
                    expectExact(f, -77777, k, len, Edge::Front, skew);
                    expectExact(f, -77777, k, len, Edge::Back, skew, true);
                }
        }
}

TEST_P(FixedPoint, KnowsTheseValues) {
    const auto sum = [](Zep32s a, Zep32s b, int k) {
        Zep32s y = 99;
        EXPECT_EQ(zepsAdd_32s_Sfs(&a, &b, &y, 1, k), zepStsNoErr);
        return y;
    };
    EXPECT_EQ(sum(1, 2, 1), 2);
    EXPECT_EQ(sum(1, 0, 1), 0);
    EXPECT_EQ(sum(3, 0, 1), 2);
    EXPECT_EQ(sum(kMost, kMost, 1), kMost);
    EXPECT_EQ(sum(kMost, kMost, 32), 1);
    EXPECT_EQ(sum(kLeast, kLeast, 32), -1);
    EXPECT_EQ(sum(3, 3, 2), 2);
    EXPECT_EQ(sum(0, 0, -31), 0);
    EXPECT_EQ(sum(0, 1, -31), kMost);
    EXPECT_EQ(sum(0, -1, -31), kLeast);
    Zep32s x = 5;
    ASSERT_EQ(zepsAddC_32s_ISfs(0, &x, 1, 1), zepStsNoErr);
    EXPECT_EQ(x, 2);
}

// Of what is not read, the page may be unreadable.
TEST_P(FixedPoint, ShortCutsDoNotTouchTheSource) {
    void* const page = mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(page, MAP_FAILED);
    auto* const hidden = static_cast<Zep32s*>(page);
    Zep32s y[40];
    const auto expectCleared = [&](ZepStatus status) {
        EXPECT_EQ(status, zepStsNoErr);
        EXPECT_TRUE(std::all_of(y, y + 40, [](Zep32s v) { return v == 0; }));
        std::fill(y, y + 40, 7);
    };
    std::fill(y, y + 40, 7);
    for (const int k : {33, 100, std::numeric_limits<int>::max()}) {
        expectCleared(zepsAdd_32s_Sfs(hidden, hidden, y, 40, k));
        expectCleared(zepsSub_32s_Sfs(hidden, hidden, y, 40, k));
        expectCleared(zepsAddC_32s_Sfs(hidden, 3, y, 40, k));
        expectCleared(zepsSubC_32s_Sfs(hidden, 3, y, 40, k));
        expectCleared(zepsAdd_32s_ISfs(hidden, y, 40, k));
    }
    for (const int k : {std::numeric_limits<int>::min(), -5, 0, 5, 70})
        expectCleared(zepsMulC_32s_ISfs(0, y, 40, k));
    EXPECT_EQ(zepsAddC_32s_ISfs(0, hidden, 40, 0), zepStsNoErr);
    EXPECT_EQ(zepsSubC_32s_ISfs(0, hidden, 40, 0), zepStsNoErr);
    EXPECT_EQ(zepsMulC_32s_ISfs(1, hidden, 40, 0), zepStsNoErr);
    munmap(page, 4096);
}

TEST_P(FixedPoint, TestsPointersThenSizeAndWritesNothing) {
    for (const Operation& f : kOperations)
        for (const int k : {0, 1, 40, -40})
            for (const Zep32s val : {0, 3}) {
                Zep32s a[4] = {1, 2, 3, 4}, b[4] = {5, 6, 7, 8}, y[4] = {9, 9, 9, 9};
                for (const int len : {4, 0, -1}) {
                    EXPECT_EQ(f.call(a, b, nullptr, val, len, k), zepStsNullPtrErr) << f.name;
                    if (f.sources == 2) {
                        EXPECT_EQ(f.call(nullptr, b, y, val, len, k), zepStsNullPtrErr) << f.name;
                    }
                    if (!f.inPlace) {
                        EXPECT_EQ(f.call(a, nullptr, y, val, len, k), zepStsNullPtrErr) << f.name;
                    }
                }
                for (const int len : {0, -1, std::numeric_limits<int>::min()})
                    EXPECT_EQ(f.call(a, b, y, val, len, k), zepStsSizeErr) << f.name;
                for (const Zep32s v : y) EXPECT_EQ(v, 9) << f.name;
            }
}

ZEP_FOR_EACH_VARIANT(FixedPoint);

}  // namespace
}  // namespace zep::test
