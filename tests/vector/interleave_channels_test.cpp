// A channel that is null, at every place and by every route, before anything is written.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

class InterleaveChannels : public VariantTest {};

template <class T>
void expectRefusal(ZepStatus (*interleave)(const T* const*, int, int, T*)) {
    // One, two, three, four and eight channels have ways of their own; so have short lengths.
    for (const int ch : {1, 2, 3, 4, 5, 8, 9, 17})
        for (const int len : {1, 2, 3, 4, 7, 8, 15, 16, 31, 32, 33, 100}) {
            const std::vector<T> samples(static_cast<std::size_t>(len), T{3});
            std::vector<T> dst(static_cast<std::size_t>(ch * len), T{7});
            const std::vector<T> before = dst;
            for (int hole = 0; hole < ch; ++hole) {
                std::vector<const T*> src(static_cast<std::size_t>(ch), samples.data());
                src[static_cast<std::size_t>(hole)] = nullptr;
                ASSERT_EQ(interleave(src.data(), ch, len, dst.data()), zepStsNullPtrErr)
                    << "channel " << hole << " of " << ch << ", len " << len;
                ASSERT_EQ(dst, before) << "channel " << hole << " of " << ch << ", len " << len;
            }
        }
}

TEST_P(InterleaveChannels, AreAllTestedBeforeAnythingIsWritten) {
    expectRefusal<Zep16s>(zepsInterleave_16s);
    expectRefusal<Zep32f>(zepsInterleave_32f);
}

ZEP_FOR_EACH_VARIANT(InterleaveChannels);

}  // namespace
}  // namespace zep::test
