#include "full_scale.h"

#include <algorithm>
#include <cmath>

#include "library_status.h"

namespace mozep_program {

int toInt16(const float* samples, std::int16_t* integers, int count) {
    constexpr int kTimes32768 = -15;
    requireSuccess(zepsConvert_32f16s_Sfs(samples, integers, count, zepRoundNearest, kTimes32768));
    return static_cast<int>(
        std::count_if(samples, samples + count, [](float x) { return std::abs(x) > 1; }));
}

}  // namespace mozep_program
