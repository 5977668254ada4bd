#include "full_scale.h"

#include <zeps.h>

#include <algorithm>
#include <cmath>

#include "library_status.h"

namespace mozep_program {
namespace {

int beyondFullScale(const float* samples, int count) {
    return static_cast<int>(
        std::count_if(samples, samples + count, [](float x) { return std::abs(x) > 1; }));
}

}  // namespace

int toUInt8(const float* samples, std::uint8_t* integers, int count) {
    constexpr int kTimes128 = -7;
    requireSuccess(zepsConvert_32f8s_Sfs(samples, reinterpret_cast<Zep8s*>(integers), count,
                                         zepRoundNearest, kTimes128));
    std::for_each(integers, integers + count, [](std::uint8_t& byte) { byte ^= 0x80; });
    return beyondFullScale(samples, count);
}

int toInt16(const float* samples, std::int16_t* integers, int count) {
    constexpr int kTimes32768 = -15;
    requireSuccess(zepsConvert_32f16s_Sfs(samples, integers, count, zepRoundNearest, kTimes32768));
    return beyondFullScale(samples, count);
}

int toInt24(const float* samples, std::uint8_t* packed, int count) {
    constexpr int kTimes8388608 = -23;
    requireSuccess(zepsConvert_32f24s_Sfs(samples, packed, count, kTimes8388608));
    return beyondFullScale(samples, count);
}

int toInt32(const float* samples, std::int32_t* integers, int count) {
    constexpr int kTimes2147483648 = -31;
    requireSuccess(
        zepsConvert_32f32s_Sfs(samples, integers, count, zepRoundNearest, kTimes2147483648));
    return beyondFullScale(samples, count);
}

}  // namespace mozep_program
