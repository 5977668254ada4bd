// Set-up of the transforms of any length: routes, factors, scratch, limits, statuses, short memory.
#include "support/failing_heap.h"
#include "transform/dft_support.h"

namespace zep::test {
namespace {

class DftSetUp : public VariantTest {};

struct PlanCase {
    int len;
    std::vector<int> radices;  // of the records, then the first stage
    int convLen, workSize;
};

template <class Kind>
void plansAre(const std::vector<PlanCase>& cases) {
    for (const PlanCase& c : cases) {
        SCOPED_TRACE(testing::Message() << "len " << c.len);
        const Dft<Kind> dft(c.len);
        const auto& spec = *dft.spec();
        EXPECT_EQ(spec.len, c.len);
        EXPECT_EQ(spec.hint, 3);
        EXPECT_EQ(spec.convLen, c.convLen);
        EXPECT_EQ(spec.mixedRadix, c.radices.empty() ? 0 : 1);
        if (c.workSize >= 0) {
            EXPECT_EQ(dft.scratchBytes(), c.workSize);
        }
        if (c.radices.empty()) continue;
        ASSERT_EQ(spec.lastFactor, static_cast<int>(c.radices.size()) - 2);
        int p = 1, n = c.len, blocks = 1;
        for (int i = 0; i <= spec.lastFactor; ++i) {
            const auto& f = spec.factors[i];
            EXPECT_EQ(f.radix, c.radices[static_cast<std::size_t>(i)]);
            EXPECT_EQ(f.stride, p);
            EXPECT_EQ(f.blockCount, blocks);
            blocks = n > 2000 ? 1 : blocks * f.radix;
            n /= f.radix;
            p *= f.radix;
            EXPECT_EQ(f.subLength, n);
        }
        EXPECT_EQ(n, c.radices.back());
        // The passes make up the same length, in no more steps than there are records.
        int product = 1, steps = 0;
        for (const std::int32_t* r = spec.digitPermutation; *r != 0; ++r, ++steps) product *= *r;
        EXPECT_EQ(product, c.len);
        EXPECT_LE(steps, spec.lastFactor + 2);
    }
}

TEST_P(DftSetUp, PlansOfSinglePrecision) {
    plansAre<DftComplex>({
        {1, {}, 0, 0},
        {16, {}, 0, 0},
        {17, {}, 0, 17 * 8 + 32},
        {18, {3, 6}, 0, 18 * 8 + 64},
        {47, {}, 0, 47 * 8 + 32},
        {51, {3, 17}, 0, (17 + 51) * 8 + 64},
        {53, {}, 128, -1},
        {60, {5, 3, 4}, 0, 60 * 8 + 64},
        {298, {}, 640, -1},
        {596, {149, 4}, 0, (4 * 149 + 596) * 8 + 64},
        {768, {3, 4, 4, 16}, 0, 768 * 8 + 64},
        {1000, {5, 5, 5, 8}, 0, 1000 * 8 + 64},
        {2187, {3, 3, 3, 3, 3, 3, 3}, 0, 2187 * 8 + 64},
        {3127, {}, 6400, -1},
        {4099, {}, 16384, -1},
    });
    EXPECT_EQ(Dft<DftComplex>(32).spec()->usesFFT, 1);
    EXPECT_EQ(Dft<DftComplex>(16).spec()->usesFFT, 0);
}

TEST_P(DftSetUp, PlansOfDoublePrecision) {
    plansAre<DftDouble>({
        {17, {}, 0, 17 * 16 + 32},
        {89, {}, 0, 89 * 16 + 32},
        {97, {}, 200, -1},
        {298, {149, 2}, 0, (149 + 298) * 16 + 64},
        {24, {4, 6}, 0, 24 * 16 + 64},
        {3127, {53, 59}, 0, (59 + 3127) * 16 + 64},
    });
}

TEST_P(DftSetUp, PlansOfRealTransforms) {
    EXPECT_EQ(Dft<DftReal>(34).scratchBytes(), 17 * 8 + 32);
    EXPECT_EQ(Dft<DftReal>(32).spec()->usesFFT, 1);
    EXPECT_EQ(Dft<DftReal>(30).scratchBytes(), 0);
    EXPECT_EQ(Dft<DftReal>(17).scratchBytes(), 17 * 4 + 32);
    EXPECT_EQ(Dft<DftReal>(45).spec()->realOdd, 1);
    EXPECT_EQ(Dft<DftReal>(45).scratchBytes(), 45 * 8 + 64);
    EXPECT_EQ(Dft<DftReal>(90).spec()->realOdd, 0);
}

template <class Kind>
void testsItsArgumentsInOrder(int magic, int tooLong) {
    using T = typename Kind::Element;
    typename Kind::Spec* spec = nullptr;
    EXPECT_EQ(Kind::create(nullptr, 0, 0, 0), zepStsNullPtrErr);
    EXPECT_EQ(Kind::create(&spec, 0, 0, 0), zepStsSizeErr);
    EXPECT_EQ(Kind::create(&spec, -5, 8, 0), zepStsSizeErr);
    for (const int flag : {0, 3, 5, 16, -1})
        EXPECT_EQ(Kind::create(&spec, tooLong, flag, 0), zepStsFftFlagErr);
    EXPECT_EQ(Kind::create(&spec, tooLong, 8, 0), zepStsSizeErr);
    EXPECT_EQ(Kind::create(&spec, 1 << 30, 8, 0), zepStsFftOrderErr);
    EXPECT_EQ(spec, nullptr);
    ASSERT_EQ(Kind::create(&spec, 20, 8, 7), zepStsNoErr);
    EXPECT_EQ(spec->magic, magic);
    EXPECT_EQ(spec->hint, 7);
    T x[20] = {}, y[20];
    std::memset(y, 0x5A, sizeof y);
    T before[20];
    std::memcpy(before, y, sizeof y);
    int bytes = -1;
    EXPECT_EQ(Kind::bufSize(nullptr, &bytes), zepStsNullPtrErr);
    EXPECT_EQ(Kind::bufSize(spec, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(Kind::forward(x, y, nullptr, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(Kind::forward(nullptr, y, spec, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(Kind::forward(x, nullptr, spec, nullptr), zepStsNullPtrErr);
    spec->magic = 4;
    EXPECT_EQ(Kind::forward(nullptr, y, spec, nullptr), zepStsContextMatchErr);
    EXPECT_EQ(Kind::bufSize(spec, &bytes), zepStsContextMatchErr);
    EXPECT_EQ(Kind::release(spec), zepStsContextMatchErr);
    EXPECT_EQ(bytes, -1);
    spec->magic = magic;
    {
        FailingHeap heap(0);
        EXPECT_EQ(Kind::forward(x, y, spec, nullptr), zepStsMemAllocErr);
    }
    EXPECT_EQ(std::memcmp(y, before, sizeof y), 0);
    EXPECT_EQ(Kind::release(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(Kind::release(spec), zepStsNoErr);
}

TEST_P(DftSetUp, TestsItsArgumentsInOrder) {
    testsItsArgumentsInOrder<DftComplex>(13, 134217729);
    testsItsArgumentsInOrder<DftDouble>(16, 67108865);
}

TEST_P(DftSetUp, TestsTheArgumentsOfRealTransformsInOrder) {
    DFTSpecR32f* spec = nullptr;
    EXPECT_EQ(DftReal::create(&spec, 0, 0, 0), zepStsSizeErr);
    EXPECT_EQ(DftReal::create(&spec, 134217729, 0, 0), zepStsFftFlagErr);
    EXPECT_EQ(DftReal::create(&spec, 134217729, 8, 0), zepStsSizeErr);
    EXPECT_EQ(DftReal::create(&spec, 1 << 30, 8, 0), zepStsFftOrderErr);
    EXPECT_EQ(spec, nullptr);
    ASSERT_EQ(DftReal::create(&spec, 45, 8, 0), zepStsNoErr);
    EXPECT_EQ(spec->magic, 15);
    Zep32f x[45] = {};
    EXPECT_EQ(DftReal::forward(x, nullptr, spec, nullptr), zepStsNullPtrErr);
    {
        FailingHeap heap(0);
        EXPECT_EQ(DftReal::forward(x, x, spec, nullptr), zepStsMemAllocErr);
    }
    EXPECT_EQ(DftReal::release(spec), zepStsNoErr);
}

// Each allocation of a set-up fails in turn: the status says so, nothing is written or leaked.
template <class Kind>
void survivesShortMemory(int len) {
    SCOPED_TRACE(testing::Message() << "len " << len);
    for (int allowed = 0;; ++allowed) {
        FailingHeap heap(allowed);
        typename Kind::Spec* spec = nullptr;
        const ZepStatus status = Kind::create(&spec, len, 8, 0);
        if (status == zepStsNoErr) {
            ASSERT_GT(allowed, 0);
            ASSERT_EQ(Kind::release(spec), zepStsNoErr);
            EXPECT_EQ(heap.live(), 0);
            return;
        }
        ASSERT_EQ(status, zepStsMemAllocErr) << "allowed " << allowed;
        EXPECT_EQ(spec, nullptr);
        ASSERT_EQ(heap.live(), 0) << "allowed " << allowed;
        ASSERT_LT(allowed, 100);
    }
}

TEST_P(DftSetUp, SurvivesShortMemoryAtEveryAllocation) {
    for (const int len : {8, 17, 60, 64, 106, 289, 578, 1009, 2048}) {
        survivesShortMemory<DftComplex>(len);
        survivesShortMemory<DftDouble>(len);
        survivesShortMemory<DftReal>(len);
        survivesShortMemory<DftReal>(len + 1);
    }
}

ZEP_FOR_EACH_VARIANT(DftSetUp);

}  // namespace
}  // namespace zep::test
