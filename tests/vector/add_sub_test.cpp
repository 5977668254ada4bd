#include <gtest/gtest.h>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

class Add32f : public VariantTest {};

TEST_P(Add32f, AddsElementByElement) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (int len = 1; len <= 70; ++len) {
            GuardedBuffer<Zep32f> a(len, edge), b(len, edge), dst(len, edge);
            fillRandom(a, b);
            ASSERT_EQ(zepsAdd_32f(a.data(), b.data(), dst.data(), len), zepStsNoErr);
            for (int n = 0; n < len; ++n) ASSERT_EQ(dst[n], a[n] + b[n]) << "len " << len << " n " << n;
        }
}

ZEP_FOR_EACH_VARIANT(Add32f);

}  // namespace
}  // namespace zep::test
