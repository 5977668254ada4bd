// What the tests of filters that change the rate share.
#pragma once

#include <ostream>

#include "filter/filter_support.h"

namespace zep::test {

struct Rates {
    int taps = 1, up = 1, upPhase = 0, down = 1, downPhase = 0;
    int history() const { return (taps + up - 1) / up; }
};

inline std::ostream& operator<<(std::ostream& out, const Rates& r) {
    return out << "taps " << r.taps << " up " << r.up << '+' << r.upPhase << " down " << r.down
               << '+' << r.downPhase;
}

// From 1 to n.
inline int draw(int n) { return 1 + static_cast<int>(rng()() % unsigned(n)); }

// check(rates) for all factors to 7 in all phases, mostly with few taps, until one fails.
template <class Check>
void forEveryRateAndPhase(Check check) {
    for (int up = 1; up <= 7; up += thinStep(2))
        for (int down = 1; down <= 7; down += thinStep(3))
            for (int upPhase = 0; upPhase < up; ++upPhase)
                for (int downPhase = 0; downPhase < down; ++downPhase) {
                    const int most = rng()() % 8 == 0 ? 300 : 40;
                    check(Rates{draw(most), up, upPhase, down, downPhase});
                    if (testing::Test::HasFatalFailure()) return;
                }
}

}  // namespace zep::test
