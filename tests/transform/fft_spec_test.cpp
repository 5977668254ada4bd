// Set-up, release and scratch sizes of the transform objects, and every status in its order.
#include <limits>

#include "support/failing_heap.h"
#include "transform/fft_support.h"

namespace zep::test {
namespace {

// A typed suite would hide the variant; each test runs its body for both kinds instead.
class FftSpec : public VariantTest {};

template <class Kind>
typename Kind::Spec* untouched() {
    return reinterpret_cast<typename Kind::Spec*>(std::uintptr_t{0x5A5A5A40});
}

template <class Kind>
void refuses(int order, int flag, ZepStatus status) {
    typename Kind::Spec* spec = untouched<Kind>();
    EXPECT_EQ(Kind::create(&spec, order, flag, 0), status) << "order " << order << " flag " << flag;
    EXPECT_EQ(spec, untouched<Kind>()) << "written on failure";
}

template <class Kind>
void creationTestsItsArgumentsInOrder() {
    EXPECT_EQ(Kind::create(nullptr, -1, 0, 0), zepStsNullPtrErr);
    for (const int order :
         {-1, 31, 64, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        for (const int flag : {0, 8}) refuses<Kind>(order, flag, zepStsFftOrderErr);
    for (const int flag : {0, 3, 5, 6, 7, 9, 16, -1})
        for (const int order : {0, 1, 12, Kind::maxOrder, Kind::maxOrder + 1, 30})
            refuses<Kind>(order, flag, zepStsFftFlagErr);
    for (const int flag : kFlags)
        for (int order = Kind::maxOrder + 1; order <= 30; ++order)
            refuses<Kind>(order, flag, zepStsFftOrderErr);
}

TEST_P(FftSpec, CreationTestsItsArgumentsInOrder) {
    creationTestsItsArgumentsInOrder<ComplexKind>();
    creationTestsItsArgumentsInOrder<RealKind>();
}

TEST_P(FftSpec, ReleaseTestsItsArgumentInOrder) {
    EXPECT_EQ(zepsFFTFree_C_32fc(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsFFTFree_R_32f(nullptr), zepStsNullPtrErr);
    const ComplexFft complex(4);
    const RealFft real(4);
    EXPECT_EQ(zepsFFTFree_C_32fc(reinterpret_cast<FFTSpecC32fc*>(real.spec())),
              zepStsContextMatchErr);
    EXPECT_EQ(zepsFFTFree_R_32f(reinterpret_cast<FFTSpecR32f*>(complex.spec())),
              zepStsContextMatchErr);
}

TEST_P(FftSpec, ScratchSizeTestsItsArgumentsInOrder) {
    const ComplexFft complex(4);
    const RealFft real(4);
    int bytes = 77;
    EXPECT_EQ(zepsFFTGetBufSize_C_32fc(nullptr, &bytes), zepStsNullPtrErr);
    EXPECT_EQ(zepsFFTGetBufSize_R_32f(nullptr, &bytes), zepStsNullPtrErr);
    // The null result pointer goes before the wrong kind.
    auto* realAsComplex = reinterpret_cast<FFTSpecC32fc*>(real.spec());
    auto* complexAsReal = reinterpret_cast<FFTSpecR32f*>(complex.spec());
    EXPECT_EQ(zepsFFTGetBufSize_C_32fc(realAsComplex, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsFFTGetBufSize_R_32f(complexAsReal, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsFFTGetBufSize_C_32fc(realAsComplex, &bytes), zepStsContextMatchErr);
    EXPECT_EQ(zepsFFTGetBufSize_R_32f(complexAsReal, &bytes), zepStsContextMatchErr);
    EXPECT_EQ(bytes, 77) << "written on failure";
}

// The object, its kind, the arrays: all wrong at once, then one mended after the other.
template <class Kind, class Other>
void executionTestsItsArgumentsInOrder(ZepStatus (*transform)(const typename Kind::Element*,
                                                              typename Kind::Element*,
                                                              const typename Kind::Spec*, Zep8u*)) {
    const int order = 7;
    const Fft<Kind> fft(order);
    const Fft<Other> other(order);
    const auto* wrong = reinterpret_cast<const typename Kind::Spec*>(other.spec());
    auto x = randomSignal<typename Kind::Element>(order), X = x;
    const auto before = X;
    EXPECT_EQ(transform(nullptr, nullptr, nullptr, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(transform(x.data(), X.data(), nullptr, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(transform(nullptr, nullptr, wrong, nullptr), zepStsContextMatchErr);
    EXPECT_EQ(transform(x.data(), X.data(), wrong, nullptr), zepStsContextMatchErr);
    EXPECT_EQ(transform(nullptr, X.data(), fft.spec(), nullptr), zepStsNullPtrErr);
    EXPECT_EQ(transform(x.data(), nullptr, fft.spec(), nullptr), zepStsNullPtrErr);
    EXPECT_TRUE(sameBits(X.data(), before.data(), X.size())) << "written on failure";
    EXPECT_EQ(transform(x.data(), X.data(), fft.spec(), nullptr), zepStsNoErr);
}

TEST_P(FftSpec, ExecutionTestsItsArgumentsInOrder) {
    executionTestsItsArgumentsInOrder<ComplexKind, RealKind>(zepsFFTFwd_CToC_32fc);
    executionTestsItsArgumentsInOrder<ComplexKind, RealKind>(zepsFFTInv_CToC_32fc);
    executionTestsItsArgumentsInOrder<RealKind, ComplexKind>(zepsFFTFwd_RToPerm_32f);
}

// hint is kept, without effect.
TEST_P(FftSpec, TheHintHasNoEffect) {
    for (const int order : {3, 9, 12}) {
        const auto x = randomSignal<Zep32fc>(order);
        std::vector<Zep32fc> want(x.size()), X(x.size());
        ASSERT_EQ(ComplexFft(order).forward(x.data(), want.data()), zepStsNoErr);
        for (const int hint : {1, 2, 3, -1, std::numeric_limits<int>::max()}) {
            ASSERT_EQ(ComplexFft(order, ZEP_FFT_SCALE_NONE, hint).forward(x.data(), X.data()),
                      zepStsNoErr);
            EXPECT_TRUE(sameBits(X.data(), want.data(), X.size())) << "order " << order;
        }
    }
}

constexpr int kEveryAllocation = 1000;

template <class Kind>
void creationWithoutMemoryLeavesNothing() {
    for (const int order : {0, 4, 6, 10, 11, 14, 18, 20}) {
        int needed = 0;
        {
            FailingHeap heap(kEveryAllocation);
            typename Kind::Spec* spec = nullptr;
            ASSERT_EQ(Kind::create(&spec, order, ZEP_FFT_SCALE_NONE, 0), zepStsNoErr);
            needed = heap.asked();
            EXPECT_EQ(heap.live(), 1) << "a finished object is one block";
            ASSERT_EQ(Kind::release(spec), zepStsNoErr);
            EXPECT_EQ(heap.live(), 0);
        }
        EXPECT_EQ(needed, order >= 11 ? 2 : 1) << "the object, and the sines from order 11 on";
        for (int allowed = 0; allowed < needed; ++allowed) {
            FailingHeap heap(allowed);
            typename Kind::Spec* spec = untouched<Kind>();
            EXPECT_EQ(Kind::create(&spec, order, ZEP_FFT_SCALE_NONE, 0), zepStsMemAllocErr)
                << "order " << order;
            EXPECT_EQ(spec, untouched<Kind>());
            EXPECT_EQ(heap.live(), 0);
        }
    }
}

TEST_P(FftSpec, CreationWithoutMemoryLeavesNothingAllocated) {
    creationWithoutMemoryLeavesNothing<ComplexKind>();
    creationWithoutMemoryLeavesNothing<RealKind>();
}

template <class Kind>
void executionAllocatesScratchOnlyWhereNoneIsGiven(Direction direction) {
    for (const int order : {0, 3, 5, 6, 7, 8, 12, 17, 18, 19, 20}) {
        SCOPED_TRACE(testing::Message() << "order " << order);
        const Fft<Kind> fft(order);
        const int bytes = fft.scratchBytes();
        const auto x = randomSignal<typename Kind::Element>(order);
        auto X = randomSignal<typename Kind::Element>(order);
        const auto before = X;
        std::vector<Zep8u> scratch(static_cast<std::size_t>(bytes) + 1);
        {
            FailingHeap heap(0);
            EXPECT_EQ(fft.run(direction, x.data(), X.data(), nullptr),
                      bytes > 0 ? zepStsMemAllocErr : zepStsNoErr);
            if (bytes > 0) {
                EXPECT_TRUE(sameBits(X.data(), before.data(), X.size())) << "written on failure";
            }
            EXPECT_EQ(fft.run(direction, x.data(), X.data(), scratch.data()), zepStsNoErr);
            EXPECT_EQ(heap.asked(), bytes > 0 ? 1 : 0) << "own scratch needs no heap";
        }
        FailingHeap heap(kEveryAllocation);
        EXPECT_EQ(fft.run(direction, x.data(), X.data(), nullptr), zepStsNoErr);
        EXPECT_EQ(heap.asked(), bytes > 0 ? 1 : 0);
        EXPECT_EQ(heap.live(), 0);
    }
}

TEST_P(FftSpec, ExecutionAllocatesScratchOnlyWhereNoneIsGiven) {
    for (const Direction direction : kDirections)
        executionAllocatesScratchOnlyWhereNoneIsGiven<ComplexKind>(direction);
    executionAllocatesScratchOnlyWhereNoneIsGiven<RealKind>(Direction::Forward);
}

ZEP_FOR_EACH_VARIANT(FftSpec);

}  // namespace
}  // namespace zep::test
