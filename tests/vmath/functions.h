// The functions of vector mathematics in one form, with what each promises.
#pragma once

#include <cmath>
#include <cstring>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "zeps.h"

namespace zep::test {

inline constexpr float kInf = std::numeric_limits<float>::infinity();
inline constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

// At any address.
inline float anyFloat(const float* p) {
    float x;
    std::memcpy(&x, p, sizeof x);
    return x;
}

// y (and z) of x (and b, or the constant b[0]). In place functions work on y.
struct MathFunction {
    const char* name;
    int inputs, outputs;
    bool constant;  // b is one number
    bool inPlace;   // has no other form
    ZepStatus (*run)(const float* x, const float* b, float* y, float* z, int len);
    double (*first)(double x, double b);
    double (*second)(double x, double b);
    double ulp;       // largest error in units in the last place; 0: see bits
    double bits;      // or correct bits: -log2 of the largest relative error, and of the absolute
                      // one where the result is below 2^-12 (sine and cosine near their zeros)
    double from, to;  // usual arguments
};

inline std::ostream& operator<<(std::ostream& out, const MathFunction& f) { return out << f.name; }

inline ZepStatus inPlaceOn(ZepStatus (*f)(float*, int), const float* x, float* y, int len) {
    if (len > 0 && x != y) std::memcpy(y, x, static_cast<std::size_t>(len) * sizeof(float));
    return f(y, len);
}

inline const std::vector<MathFunction>& mathFunctions() {
    using F = const float*;
    static const std::vector<MathFunction> all = {
        {"Exp_32f_A24", 1, 1, false, false,
         [](F x, F, float* y, float*, int n) { return zepsExp_32f_A24(x, y, n); },
         [](double x, double) { return std::exp(x); }, nullptr, 0.81, 0, -20, 20},
        {"Exp_32f_I", 1, 1, false, true,
         [](F x, F, float* y, float*, int n) { return inPlaceOn(zepsExp_32f_I, x, y, n); },
         [](double x, double) { return std::exp(x); }, nullptr, 6, 0, -20, 20},
        {"Ln_32f_I", 1, 1, false, true,
         [](F x, F, float* y, float*, int n) { return inPlaceOn(zepsLn_32f_I, x, y, n); },
         [](double x, double) { return std::log(x); }, nullptr, 3, 0, 0.01, 100},
        {"Log10_32f_A11", 1, 1, false, false,
         [](F x, F, float* y, float*, int n) { return zepsLog10_32f_A11(x, y, n); },
         [](double x, double) { return std::log10(x); }, nullptr, 0, 14, 0.01, 100},
        {"Log10_32f_A24", 1, 1, false, false,
         [](F x, F, float* y, float*, int n) { return zepsLog10_32f_A24(x, y, n); },
         [](double x, double) { return std::log10(x); }, nullptr, 0.65, 0, 0.01, 100},
        {"SinCos_32f_A11", 1, 2, false, false,
         [](F x, F, float* y, float* z, int n) { return zepsSinCos_32f_A11(x, y, z, n); },
         [](double x, double) { return std::sin(x); }, [](double x, double) { return std::cos(x); },
         0, 15.9, -100, 100},
        {"SinCos_32f_A21", 1, 2, false, false,
         [](F x, F, float* y, float* z, int n) { return zepsSinCos_32f_A21(x, y, z, n); },
         [](double x, double) { return std::sin(x); }, [](double x, double) { return std::cos(x); },
         0, 22.4, -100, 100},
        {"SinCos_32f_A24", 1, 2, false, false,
         [](F x, F, float* y, float* z, int n) { return zepsSinCos_32f_A24(x, y, z, n); },
         [](double x, double) { return std::sin(x); }, [](double x, double) { return std::cos(x); },
         0.57, 0, -100, 100},
        {"Pow_32f_A24", 2, 1, false, false,
         [](F x, F b, float* y, float*, int n) { return zepsPow_32f_A24(x, b, y, n); },
         [](double x, double b) { return std::pow(x, b); }, nullptr, 0.55, 0, 0.01, 20},
        {"Powx_32f_A24", 1, 1, true, false,
         [](F x, F b, float* y, float*, int n) { return zepsPowx_32f_A24(x, anyFloat(b), y, n); },
         [](double x, double b) { return std::pow(x, b); }, nullptr, 0.55, 0, 0.01, 20},
    };
    return all;
}

inline float fromBits(std::uint32_t bits) {
    float x;
    std::memcpy(&x, &bits, sizeof x);
    return x;
}
inline std::uint32_t bitsOf(float x) {
    std::uint32_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    return bits;
}

// Error of y against the exact value in units of the last place of a single precision number.
inline double ulpError(float y, double exact) {
    if (std::isnan(exact)) return std::isnan(y) ? 0 : 1e9;
    if (std::isinf(static_cast<float>(exact))) return y == static_cast<float>(exact) ? 0 : 1e9;
    if (!std::isfinite(y)) return 1e9;
    int e = -125;
    std::frexp(exact, &e);
    return std::fabs(static_cast<double>(y) - exact) / std::ldexp(1.0, std::max(e, -125) - 24);
}

}  // namespace zep::test
