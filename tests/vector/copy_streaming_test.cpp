// Copies past the cache read their source ahead: never behind its end, where an unreadable page
// stands.
#include <gtest/gtest.h>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "vector/movement_cases.h"
#include "zeps.h"

namespace zep::test {
namespace {

class CopyStreaming : public VariantTest {};

// Lines follow the destination's first boundary. Where they fill the rest of the block and the last
// read ahead ends with them, one more would lie behind the source.
TEST_P(CopyStreaming, ReadsNothingBehindTheSource) {
    const InventedCpu cpu = smallCacheCpu(1);
    for (const int around : {0x20000, 0x40000, 0x80000, 0x100000})
        for (int skew = 0; skew < 64; skew += thinStep(7))
            for (const int lines : {0, 64, 128}) {
                const int bytes = around + (64 - skew) + lines;
                GuardedBuffer<std::uint8_t> src(bytes, Edge::Back);
                GuardedBuffer<std::uint8_t> dst(bytes, Edge::Front, skew);
                for (int n = 0; n < bytes; n += 61) src[n] = static_cast<std::uint8_t>(n / 61);
                ASSERT_EQ(zepsCopy_8u(src.data(), dst.data(), bytes), zepStsNoErr);
                ASSERT_EQ(std::memcmp(src.data(), dst.data(), static_cast<std::size_t>(bytes)), 0)
                    << bytes << " bytes, skew " << skew;
            }
}

ZEP_FOR_EACH_VARIANT(CopyStreaming);

}  // namespace
}  // namespace zep::test
