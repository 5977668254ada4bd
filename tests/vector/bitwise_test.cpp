#include <gtest/gtest.h>

#include "support/variant.h"
#include "vector/movement_cases.h"
#include "zeps.h"

namespace zep::test {
namespace {

class Bitwise : public VariantTest {};

// run(dst, src1, src2, len) against op on each element, at every length and alignment, apart and in
// place.
template <class T>
void expectMap(auto run, auto op) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const int bytes : byteLengths(sizeof(T)))
            for (const int skew : {0, 1, 5, 16}) {
                const int len = bytes / int{sizeof(T)};
                const Bytes a = randomBytes(static_cast<std::size_t>(bytes));
                const Bytes b = randomBytes(static_cast<std::size_t>(bytes));
                Bytes expected(static_cast<std::size_t>(bytes));
                for (std::size_t n = 0; n < expected.size(); n += sizeof(T)) {
                    T x, y;
                    std::memcpy(&x, &a[n], sizeof x), std::memcpy(&y, &b[n], sizeof y);
                    const T z = op(x, y);
                    std::memcpy(&expected[n], &z, sizeof z);
                }
                GuardedBuffer<std::uint8_t> src1(bytes, edge, skew), src2(bytes, edge),
                    dst(bytes, edge, 3 * skew);
                std::copy(a.begin(), a.end(), src1.begin()),
                    std::copy(b.begin(), b.end(), src2.begin());
                const auto elements = [](auto& buffer) {
                    return reinterpret_cast<T*>(buffer.data());
                };
                ASSERT_EQ(run(elements(src1), elements(src2), elements(dst), len), zepStsNoErr);
                expectBytes(dst.data(), expected.data(), expected.size(), "apart");
                ASSERT_EQ(run(elements(src1), elements(src2), elements(src1), len), zepStsNoErr);
                expectBytes(src1.data(), expected.data(), expected.size(),
                            "in place of the first source");
                ASSERT_FALSE(testing::Test::HasFailure()) << "bytes " << bytes << " skew " << skew;
            }
}

// The in-place forms overwrite their argument: the source is put there first.
template <class T>
auto inPlace(auto run) {
    return [run](const T* src1, const T* src2, T* dst, int len) {
        std::memmove(static_cast<void*>(dst), src1, static_cast<std::size_t>(len) * sizeof(T));
        return run(src2, dst, len);
    };
}

TEST_P(Bitwise, AndTakesTheMaskToEveryElement) {
    for (const Zep16u val : {Zep16u{0x5AF1}, Zep16u{0xFFFF}, Zep16u{0x8000}, Zep16u{0}}) {
        const auto op = [val](Zep16u x, Zep16u) { return static_cast<Zep16u>(x & val); };
        expectMap<Zep16u>([val](const Zep16u* a, const Zep16u*, Zep16u* dst,
                                int len) { return zepsAndC_16u(a, val, dst, len); },
                          op);
        expectMap<Zep16u>(inPlace<Zep16u>([val](const Zep16u*, Zep16u* dst, int len) {
                              return zepsAndC_16u_I(val, dst, len);
                          }),
                          op);
    }
    for (const Zep32u val : {0x12345678u, 0xFFFFFFFFu, 0x80000000u, 0u}) {
        const auto op = [val](Zep32u x, Zep32u) { return x & val; };
        expectMap<Zep32u>([val](const Zep32u* a, const Zep32u*, Zep32u* dst,
                                int len) { return zepsAndC_32u(a, val, dst, len); },
                          op);
        expectMap<Zep32u>(inPlace<Zep32u>([val](const Zep32u*, Zep32u* dst, int len) {
                              return zepsAndC_32u_I(val, dst, len);
                          }),
                          op);
    }
}

TEST_P(Bitwise, ExclusiveOrCombinesElements) {
    expectMap<Zep16u>(zepsXor_16u, [](Zep16u x, Zep16u y) { return static_cast<Zep16u>(x ^ y); });
    expectMap<Zep8u>(inPlace<Zep8u>(zepsXor_8u_I),
                     [](Zep8u x, Zep8u y) { return static_cast<Zep8u>(x ^ y); });
}

TEST_P(Bitwise, ExclusiveOrWithItselfClears) {
    Zep8u x[100];
    std::memset(x, 0xC3, sizeof x);
    EXPECT_EQ(zepsXor_8u_I(x, x, 100), zepStsNoErr);
    for (const Zep8u v : x) EXPECT_EQ(v, 0);
}

TEST_P(Bitwise, NotComplementsEveryElement) {
    expectMap<Zep32u>(inPlace<Zep32u>([](const Zep32u*, Zep32u* dst, int len) {
                          return zepsNot_32u_I(dst, len);
                      }),
                      [](Zep32u x, Zep32u) { return ~x; });
}

TEST_P(Bitwise, LargeBlocksTakeTheSameWay) {
    constexpr int kLen = 300001;
    Bytes a = randomBytes(kLen), b = randomBytes(kLen);
    const Bytes original = b;
    ASSERT_EQ(zepsXor_8u_I(a.data(), b.data(), kLen), zepStsNoErr);
    for (std::size_t n = 0; n < kLen; ++n) ASSERT_EQ(b[n], a[n] ^ original[n]) << n;
}

// check(run): run(src1, src2, dst, len) with null for any pointer, and wrong lengths.
template <class T>
void expectChecksOfTwo(auto run) {
    T a[4]{}, b[4]{}, dst[4];
    std::memset(dst, 0x5A, sizeof dst);
    const Bytes before(sizeof dst, 0x5A);
    EXPECT_EQ(run(nullptr, b, dst, 4), zepStsNullPtrErr);
    EXPECT_EQ(run(a, nullptr, dst, 4), zepStsNullPtrErr);
    EXPECT_EQ(run(a, b, nullptr, 4), zepStsNullPtrErr);
    EXPECT_EQ(run(a, b, nullptr, 0), zepStsNullPtrErr);
    EXPECT_EQ(run(a, b, dst, 0), zepStsSizeErr);
    EXPECT_EQ(run(a, b, dst, -7), zepStsSizeErr);
    EXPECT_EQ(run(a, b, dst, INT32_MIN + 1), zepStsSizeErr);
    expectBytes(dst, before.data(), before.size(), "written on an error");
}

TEST_P(Bitwise, ChecksPointersThenLength) {
    expectChecksOfTwo<Zep16u>(zepsXor_16u);
    Zep8u x[4]{};
    EXPECT_EQ(zepsXor_8u_I(nullptr, x, 4), zepStsNullPtrErr);
    EXPECT_EQ(zepsXor_8u_I(x, nullptr, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsXor_8u_I(x, x, 0), zepStsSizeErr);
    Zep32u y[4]{1, 2, 3, 4};
    EXPECT_EQ(zepsNot_32u_I(nullptr, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsNot_32u_I(y, 0), zepStsSizeErr);
    EXPECT_EQ(y[0], 1u);
    for (const Zep32u val : {0u, 3u}) {  // a mask of 0 takes another way to the same checks
        const auto val16 = static_cast<Zep16u>(val);
        Zep16u z[4]{};
        EXPECT_EQ(zepsAndC_16u(nullptr, val16, z, 4), zepStsNullPtrErr);
        EXPECT_EQ(zepsAndC_16u(z, val16, nullptr, 4), zepStsNullPtrErr);
        EXPECT_EQ(zepsAndC_16u(nullptr, val16, z, 0), zepStsNullPtrErr);
        EXPECT_EQ(zepsAndC_16u(z, val16, z, 0), zepStsSizeErr);
        EXPECT_EQ(zepsAndC_16u_I(val16, nullptr, 0), zepStsNullPtrErr);
        EXPECT_EQ(zepsAndC_16u_I(val16, z, -1), zepStsSizeErr);
        EXPECT_EQ(zepsAndC_32u(nullptr, val, y, 4), zepStsNullPtrErr);
        EXPECT_EQ(zepsAndC_32u(y, val, nullptr, 4), zepStsNullPtrErr);
        EXPECT_EQ(zepsAndC_32u(y, val, y, 0), zepStsSizeErr);
        EXPECT_EQ(zepsAndC_32u_I(val, nullptr, 0), zepStsNullPtrErr);
        EXPECT_EQ(zepsAndC_32u_I(val, y, -1), zepStsSizeErr);
    }
    EXPECT_EQ(y[0], 1u);
}

TEST_P(Bitwise, AMaskOfZeroDoesNotReadTheSource) {
    GuardedBuffer<Zep16u> src(1, Edge::Back);
    Zep16u dst[40];
    std::memset(dst, 0x77, sizeof dst);
    ASSERT_EQ(zepsAndC_16u(src.data(), 0, dst, 40),
              zepStsNoErr);  // reading 40 elements of src would fault
    for (const Zep16u v : dst) EXPECT_EQ(v, 0);
}

class LShift : public VariantTest {};

TEST_P(LShift, ShiftsEveryElementByEveryCount) {
    for (const int val : {0, 1, 2, 7, 16, 30, 31, 32, 33, 64, 1000000}) {
        const auto op = [val](Zep32u x, Zep32u) { return val < 32 ? x << val : 0u; };
        const auto run = [val](const Zep32u* a, const Zep32u*, Zep32u* dst, int len) {
            return zepsLShiftC_32s(reinterpret_cast<const Zep32s*>(a), val,
                                   reinterpret_cast<Zep32s*>(dst), len);
        };
        expectMap<Zep32u>(run, op);
        expectMap<Zep32u>(inPlace<Zep32u>([val](const Zep32u*, Zep32u* dst, int len) {
                              return zepsLShiftC_32s_I(val, reinterpret_cast<Zep32s*>(dst), len);
                          }),
                          op);
    }
}

TEST_P(LShift, TestsItsArgumentsInOrder) {
    Zep32s a[4]{1, 2, 3, 4}, dst[4]{5, 6, 7, 8};
    for (const int val : {-1, 0, 5, 31, 32, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(zepsLShiftC_32s(nullptr, val, dst, 4), zepStsNullPtrErr) << val;
        EXPECT_EQ(zepsLShiftC_32s(a, val, nullptr, 4), zepStsNullPtrErr) << val;
        EXPECT_EQ(zepsLShiftC_32s(a, val, nullptr, 0), zepStsNullPtrErr) << val;
        EXPECT_EQ(zepsLShiftC_32s(a, val, dst, 0), zepStsSizeErr) << val;
        EXPECT_EQ(zepsLShiftC_32s_I(val, nullptr, 0), zepStsNullPtrErr) << val;
        EXPECT_EQ(zepsLShiftC_32s_I(val, dst, 0), zepStsSizeErr) << val;
    }
    EXPECT_EQ(zepsLShiftC_32s(a, -1, dst, 4), zepStsShiftErr);
    EXPECT_EQ(zepsLShiftC_32s(a, -1, dst, -1), zepStsSizeErr);
    EXPECT_EQ(zepsLShiftC_32s_I(-1, dst, 4), zepStsShiftErr);
    EXPECT_EQ(zepsLShiftC_32s_I(INT32_MIN, dst, 4), zepStsShiftErr);
    for (int n = 0; n < 4; ++n) EXPECT_EQ(dst[n], n + 5);
}

ZEP_FOR_EACH_VARIANT(Bitwise);
ZEP_FOR_EACH_VARIANT(LShift);

}  // namespace
}  // namespace zep::test
