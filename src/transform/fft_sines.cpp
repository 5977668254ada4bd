#include "transform/fft_sines.h"

#include <cmath>

#include "transform/fft_sine_constants.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr int kQuarter = 1 << (kConstantSineOrder - 2);

struct ConstantTable {
    float s[kQuarter + 1];
};
constexpr ConstantTable makeConstantTable() {
    ConstantTable table{};
    for (int k = 0; k <= kQuarter; ++k) table.s[k] = quarterSine(k, 4 * kQuarter);
    return table;
}
constexpr ConstantTable kConstantTable = makeConstantTable();
static_assert(kConstantTable.s[kQuarter] == 1.0f);

}  // namespace

Sines constantSines() { return {kConstantTable.s, kConstantSineOrder}; }

Sines computedSines(float* table, int order) {
    const std::int64_t quarter = std::int64_t{1} << (order - 2);
    const double step = kTwoPi / static_cast<double>(4 * quarter);
    for (std::int64_t k = 0; k <= quarter / 2; ++k)
        table[k] = static_cast<float>(std::sin(static_cast<double>(k) * step));
    for (std::int64_t k = quarter / 2 + 1; k <= quarter; ++k)
        table[k] = static_cast<float>(std::cos(static_cast<double>(quarter - k) * step));
    return {table, order};
}

Twiddle directTwiddle(std::uint64_t k, int order) {
    const std::uint64_t quarter = std::uint64_t{1} << (order - 2);
    const double step = kTwoPi / static_cast<double>(4 * quarter);
    const auto quarterSine = [&](std::uint64_t i) {
        return static_cast<float>(i <= quarter / 2
                                      ? std::sin(static_cast<double>(i) * step)
                                      : std::cos(static_cast<double>(quarter - i) * step));
    };
    const std::uint64_t rest = k & (quarter - 1);
    const float s = quarterSine(rest), c = quarterSine(quarter - rest);
    switch ((k >> (order - 2)) & 3) {
        case 0:
            return {c, s};
        case 1:
            return {-s, c};
        case 2:
            return {-c, -s};
        default:
            return {s, -c};
    }
}

}  // namespace zep::ZEP_VARIANT
