#include "support/sweep.h"

#include <cstdlib>

namespace zep::test {

bool thin() {
    static const bool asked = std::getenv("ZEP_TEST_THIN") != nullptr;
    return kInstrumented || asked;
}

std::vector<int> sweepLengths(int last) {
    std::vector<int> lengths;
    for (int len = 1; len <= last; ++len) {
        const int toMultiple = (len + 2) % 16;
        const bool besideAVector = toMultiple >= 1 && toMultiple <= 3;  // 16 k - 1, 16 k, 16 k + 1
        if (!thin() || len <= 5 || (len >= 7 && len <= 9) || besideAVector || len == last)
            lengths.push_back(len);
    }
    return lengths;
}

}  // namespace zep::test
