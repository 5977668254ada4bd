// The set-up in its steps, sizes, object, memory of the owner's; the fields of a finished object.
#include "transform/fft_steps.h"

#include "transform/fft_support.h"

namespace zep::test {
namespace {

class FftSetUp : public VariantTest {
protected:
    const FftSteps& steps() const { return fftStepsOf(GetParam()); }
};

constexpr FftKind kKinds[] = {FftKind::Complex, FftKind::Real};

TEST_P(FftSetUp, SizesTestTheirArgumentsInOrder) {
    FftStepSizes sizes{};
    for (const FftKind kind : kKinds) {
        for (const int order : {-1, 31}) {
            EXPECT_EQ(steps().getSize(kind, order, 0, 0, nullptr), zepStsFftOrderErr);
            EXPECT_EQ(steps().getSize(kind, order, 8, 0, &sizes), zepStsFftOrderErr);
        }
        EXPECT_EQ(steps().getSize(kind, 30, 0, 0, nullptr), zepStsNullPtrErr);
        EXPECT_EQ(steps().getSize(kind, 30, 0, 0, &sizes), zepStsFftFlagErr);
        EXPECT_EQ(steps().getSize(kind, 30, 8, 0, &sizes), zepStsFftOrderErr);
    }
    EXPECT_EQ(steps().getSize(FftKind::Complex, 28, 8, 0, &sizes), zepStsNoErr);
    EXPECT_EQ(steps().getSize(FftKind::Complex, 29, 0, 0, &sizes), zepStsFftFlagErr);
    EXPECT_EQ(steps().getSize(FftKind::Complex, 29, 8, 0, &sizes), zepStsFftOrderErr);
    EXPECT_EQ(steps().getSize(FftKind::Real, 29, 8, 0, &sizes), zepStsNoErr);
}

// Binary logarithm of the scratch of a complex transform by order; 0: none.
// - The shortest need none, a single block its own size.
// - A split one needs its innermost block, or a tile of columns of any level, whichever is larger.
struct ScratchOfVariant {
    const char* tag;
    int log2Bytes[29];
};
constexpr ScratchOfVariant kScratch[] = {
    {"m7", {0,  0,  0,  0,  0,  0,  9,  10, 11, 12, 13, 14, 15, 16, 17,
            18, 19, 16, 17, 18, 19, 18, 18, 18, 19, 18, 18, 18, 19}},
    {"u8", {0,  0,  0,  0,  0,  0,  9,  10, 11, 12, 13, 14, 15, 16, 17,
            18, 19, 20, 17, 18, 17, 17, 17, 18, 19, 20, 17, 18, 17}},
    {"n8", {0,  0,  0,  0,  0,  0,  9,  10, 11, 12, 13, 14, 15, 16, 17,
            18, 15, 16, 17, 17, 17, 17, 17, 18, 17, 17, 17, 17, 17}},
    {"y8", {0,  0,  0,  0,  0,  0,  9,  10, 11, 12, 13, 14, 15, 16, 17,
            18, 19, 20, 17, 18, 17, 17, 17, 18, 19, 20, 17, 18, 17}},
    {"e9", {0,  0,  0,  0,  0,  0,  0,  10, 11, 12, 13, 14, 15, 16, 17,
            18, 19, 20, 21, 18, 19, 20, 21, 18, 19, 20, 21, 18, 19}},
};

std::size_t scratchOf(const Variant& v, FftKind kind, int order) {
    // A real transform is a complex one of half the length; the shortest are straight-line code.
    const int core = kind == FftKind::Real ? std::max(order - 1, 0) : order;
    for (const ScratchOfVariant& s : kScratch)
        if (std::strcmp(s.tag, v.tag) == 0)
            return s.log2Bytes[core] == 0 ? 0 : std::size_t{1} << s.log2Bytes[core];
    return 0;
}

TEST_P(FftSetUp, ScratchFollowsTheRoutesOfTheVariant) {
    for (const FftKind kind : kKinds)
        for (int order = 0; order <= (kind == FftKind::Real ? 29 : 28); ++order)
            for (const int flag : kFlags) {
                FftStepSizes sizes{};
                ASSERT_EQ(steps().getSize(kind, order, flag, 0, &sizes), zepStsNoErr);
                EXPECT_EQ(sizes.scratch, scratchOf(GetParam(), kind, order))
                    << "kind " << static_cast<int>(kind) << " order " << order;
                EXPECT_EQ(sizes.temporary > 0, order >= 11) << "order " << order;
                EXPECT_LT(sizes.object, std::size_t{1} << 31) << "order " << order;
                EXPECT_LT(sizes.temporary, std::size_t{1} << 31) << "order " << order;
            }
}

template <class Kind>
void callersSeeScratchWithRoomForItsAlignment(const Variant& v, FftKind kind) {
    for (int order = 0; order <= 21; ++order) {
        const std::size_t scratch = scratchOf(v, kind, order);
        EXPECT_EQ(Fft<Kind>(order).scratchBytes(),
                  scratch == 0 ? 0 : static_cast<int>(scratch) + 32)
            << "order " << order;
    }
}

TEST_P(FftSetUp, CallersSeeScratchWithRoomForItsAlignment) {
    callersSeeScratchWithRoomForItsAlignment<ComplexKind>(GetParam(), FftKind::Complex);
    callersSeeScratchWithRoomForItsAlignment<RealKind>(GetParam(), FftKind::Real);
}

TEST_P(FftSetUp, InitRefusesMissingMemory) {
    alignas(32) static Zep8u memory[1 << 17], temporary[1 << 14];
    for (const FftKind kind : kKinds) {
        FftObject<float>* object = nullptr;
        EXPECT_EQ(steps().init(kind, nullptr, 8, 8, 0, memory, nullptr), zepStsNullPtrErr);
        EXPECT_EQ(steps().init(kind, &object, 8, 8, 0, nullptr, nullptr), zepStsNullPtrErr);
        EXPECT_EQ(steps().init(kind, &object, 11, 8, 0, memory, nullptr), zepStsNullPtrErr);
        EXPECT_EQ(object, nullptr);
        EXPECT_EQ(steps().init(kind, &object, 10, 8, 0, memory, nullptr), zepStsNoErr);
        EXPECT_NE(object, nullptr);
        EXPECT_EQ(steps().init(kind, &object, 11, 8, 0, memory, temporary), zepStsNoErr);
        for (const int order : {-1, 30, 31})
            EXPECT_EQ(steps().init(kind, &object, order, 8, 0, memory, temporary),
                      zepStsFftOrderErr);
    }
}

// What was an object before is none any more.
TEST_P(FftSetUp, ABadFlagLeavesADeadObject) {
    alignas(32) Zep8u memory[4096];
    for (const FftKind kind : kKinds) {
        FftObject<float>* object = nullptr;
        ASSERT_EQ(steps().init(kind, &object, 3, 8, 0, memory, nullptr), zepStsNoErr);
        ASSERT_EQ(object->magic, static_cast<int>(kind));
        FftObject<float>* second = nullptr;
        EXPECT_EQ(steps().init(kind, &second, 3, 3, 0, memory, nullptr), zepStsFftFlagErr);
        EXPECT_EQ(object->magic, 0);
        EXPECT_EQ(second, nullptr);
    }
}

TEST_P(FftSetUp, FieldsSayWhatWasAskedFor) {
    for (const FftKind kind : kKinds)
        for (const int order : {0, 1, 2, 7, 8, 10})
            for (const int flag : kFlags) {
                FftStepSizes sizes{};
                ASSERT_EQ(steps().getSize(kind, order, flag, 5, &sizes), zepStsNoErr);
                std::vector<Zep8u> memory(sizes.object, 0xFF);
                FftObject<float>* object = nullptr;
                ASSERT_EQ(steps().init(kind, &object, order, flag, 5, memory.data(), nullptr),
                          zepStsNoErr);
                EXPECT_EQ(object->magic, static_cast<int>(kind));
                EXPECT_EQ(object->order, order);
                EXPECT_EQ(object->hint, 5);
                EXPECT_EQ(object->ownsMemory, 0);
                EXPECT_EQ(static_cast<std::size_t>(object->workSize), sizes.scratch);
                EXPECT_EQ(object->scaleForward, flag == 1 || flag == 4 ? 1 : 0);
                EXPECT_EQ(object->scaleInverse, flag == 2 || flag == 4 ? 1 : 0);
                if (flag == 8)
                    EXPECT_EQ(object->scale, 0.0f);
                else if (flag == 4)
                    EXPECT_NEAR(object->scale * std::exp2(0.5 * order), 1, kRootFactorError);
                else
                    EXPECT_EQ(object->scale, std::exp2(-order));
            }
}

// An object in memory of its owner's, of exactly the bytes asked for, at any alignment: it
// transforms like any other, and its release clears the identifying word and nothing else, so that
// a second release is refused.
template <class Kind>
void anObjectInGivenMemoryWorks(const FftSteps& steps, FftKind kind, int order, int offset) {
    SCOPED_TRACE(testing::Message() << "order " << order << " offset " << offset);
    FftStepSizes sizes{};
    ASSERT_EQ(steps.getSize(kind, order, ZEP_FFT_SCALE_INV, 0, &sizes), zepStsNoErr);
    SkewedBuffer<Zep8u> memory(static_cast<int>(sizes.object), offset);
    FftObject<float>* object = nullptr;
    {
        SkewedBuffer<Zep8u> temporary(static_cast<int>(sizes.temporary), offset);
        Zep8u* given = sizes.temporary > 0 ? temporary.data() : nullptr;
        ASSERT_EQ(steps.init(kind, &object, order, ZEP_FFT_SCALE_INV, 0, memory.data(), given),
                  zepStsNoErr);
        ASSERT_TRUE(temporary.intact() && memory.intact()) << "written outside";
    }  // the object keeps nothing of the temporary
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(object) % 32, 0u);
    ASSERT_GE(reinterpret_cast<Zep8u*>(object), memory.begin());

    auto* spec = static_cast<typename Kind::Spec*>(object);
    const auto x = randomSignal<typename Kind::Element>(order);
    auto X = x, want = x;
    ASSERT_EQ(Fft<Kind>(order, ZEP_FFT_SCALE_INV).forward(x.data(), want.data()), zepStsNoErr);
    if constexpr (std::is_same_v<Kind, ComplexKind>)
        ASSERT_EQ(zepsFFTFwd_CToC_32fc(x.data(), X.data(), spec, nullptr), zepStsNoErr);
    else
        ASSERT_EQ(zepsFFTFwd_RToPerm_32f(x.data(), X.data(), spec, nullptr), zepStsNoErr);
    EXPECT_TRUE(sameBits(X.data(), want.data(), x.size()));

    EXPECT_EQ(Kind::release(spec), zepStsNoErr);
    EXPECT_EQ(object->magic, 0);
    EXPECT_EQ(Kind::release(spec), zepStsContextMatchErr);
    int bytes = 0;
    EXPECT_EQ(Kind::bufSize(spec, &bytes), zepStsContextMatchErr);
    EXPECT_TRUE(memory.intact());
}

TEST_P(FftSetUp, AnObjectInGivenMemoryWorks) {
    for (const int order : {0, 4, 5, 6, 7, 9, 10, 11, 13, 16, 18, 19, 20, 21})
        for (const int offset : {0, 1, 8, 31}) {
            if (order > 13 && (offset > 1 || (thin() && order != 18))) continue;
            anObjectInGivenMemoryWorks<ComplexKind>(steps(), FftKind::Complex, order, offset);
            anObjectInGivenMemoryWorks<RealKind>(steps(), FftKind::Real, order, offset);
        }
}

ZEP_FOR_EACH_VARIANT(FftSetUp);

}  // namespace
}  // namespace zep::test
