// Sums and filters of order 10 on vectors of 5 samples, as several G.728 blocks need them.
#pragma once

#include <cstdint>

#include "speech/fixed_point.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT::g728 {

// 32-bit accumulator that saturates with each product.
class Accumulator {
public:
    explicit constexpr Accumulator(std::int64_t v = 0) : v_(sat32(v)) {}
    constexpr Accumulator& add(int a, int b) { return addTerm(std::int64_t{a} * b); }
    constexpr Accumulator& subtract(int a, int b) { return addTerm(-(std::int64_t{a} * b)); }
    constexpr Accumulator& addTerm(std::int64_t term) {
        v_ = sat32(v_ + term);
        return *this;
    }
    constexpr std::int32_t value() const { return v_; }
    constexpr std::int16_t fromQ14() const { return sat16(v_ >> 14); }

private:
    std::int32_t v_;
};

constexpr int kOrder = 10;
using Memory = Words<kOrder>;  // past samples, newest first

inline void push(Memory& memory, std::int16_t x) {
    for (int i = kOrder - 1; i > 0; --i) memory[i] = memory[i - 1];
    memory[0] = x;
}

// Zero section, then pole section, Q14 without the leading 1.
struct PoleZero {
    Words<kOrder> zeros, poles;

    // Response to x in Q14, from the past inputs and outputs.
    std::int32_t response(int x, const Memory& inputs, const Memory& outputs) const {
        Accumulator sum(std::int64_t{x} * 16384);
        for (int i = 0; i < kOrder; ++i) sum.add(zeros[i], inputs[i]);
        for (int i = 0; i < kOrder; ++i) sum.subtract(poles[i], outputs[i]);
        return sum.value();
    }

    Vector5 filter(const Vector5& x, Memory& inputs, Memory& outputs) const {
        Vector5 y;
        for (int n = 0; n < 5; ++n) {
            y[n] = sat16(response(x[n], inputs, outputs) >> 14);
            push(inputs, x[n]);
            push(outputs, y[n]);
        }
        return y;
    }
};

}  // namespace zep::ZEP_VARIANT::g728
