// One object of any length serves several threads at once.
#include "transform/dft_support.h"
#include "transform/threads_support.h"

namespace zep::test {
namespace {

class DftThreads : public VariantTest {};

template <class Kind>
void threadsShareAnObject(int N) {
    using T = typename Kind::Element;
    const Dft<Kind> dft(N, ZEP_FFT_SCALE_SQRT);
    std::vector<T> x(static_cast<std::size_t>(N)), want(x.size());
    fillRandom(x);
    ASSERT_EQ(Kind::forward(x.data(), want.data(), dft.spec(), nullptr), zepStsNoErr);
    expectSameOnThreads(x, want, dft.scratchBytes(), 4, [&](const T* src, T* dst, Zep8u* scratch) {
        return Kind::forward(src, dst, dft.spec(), scratch);
    });
}

// Straight-line code, the definition, passes of two and of many, generic radices, a nested
// transform of a power of two, and a convolution with either kind of inner transform.
TEST_P(DftThreads, ShareAnObjectOfEachRoute) {
    for (const int N : {12, 43, 60, 64, 106, 323, 596, 1009, 2187, 4099, 10000}) {
        threadsShareAnObject<DftComplex>(N);
        threadsShareAnObject<DftInverse>(N);
        threadsShareAnObject<DftDouble>(N);
        threadsShareAnObject<DftReal>(N);
    }
}

// Set-up shares nothing.
TEST_P(DftThreads, CreateObjectsAtTheSameTime) {
    expectCreationOnThreads([](std::size_t t) {
        DFTSpecC32fc* spec = nullptr;
        const ZepStatus status = zepsDFTInitAlloc_C_32fc(&spec, t % 2 == 0 ? 1009 : 1920, 8, 0);
        return status == zepStsNoErr ? zepsDFTFree_C_32fc(spec) : status;
    });
}

ZEP_FOR_EACH_VARIANT(DftThreads);

}  // namespace
}  // namespace zep::test
