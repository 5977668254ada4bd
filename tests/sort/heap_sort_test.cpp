// The heap sort behind the quicksort. Data that reach it through the exports are hard to make, so it
// is compiled here, for a namespace of its own.
#define ZEP_VARIANT heap_sort_test
#include "sort/heap_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"

namespace zep::test {
namespace {

TEST(HeapSort, SortsAllLengthsAtAnyAddress) {
    for (int len = 1; len <= 300; ++len)
        for (const std::uint64_t values : {3u, 1u << 31}) {
            std::vector<std::int32_t> x;
            for (int n = 0; n < len; ++n)
                x.push_back(static_cast<std::int32_t>(rng()() % values) - 1);
            const std::size_t bytes = x.size() * sizeof x[0];
            GuardedBuffer<unsigned char> y(static_cast<int>(bytes), Edge::Back, len % 3);
            std::memcpy(y.data(), x.data(), bytes);
            heap_sort_test::heapSort(reinterpret_cast<std::int32_t*>(y.data()), len);
            std::sort(x.begin(), x.end());
            ASSERT_EQ(std::memcmp(y.data(), x.data(), bytes), 0) << len;
        }
}

}  // namespace
}  // namespace zep::test
