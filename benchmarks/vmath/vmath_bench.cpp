// Vector mathematics beside Eigen, SLEEF, VOLK and the C library, vectors and single numbers: families exp_32f_A24 ... pow_32fc_A24
// over three sizes, on arguments of everyday ranges. The in-place functions get a fresh copy each
// time, and so do their peers.
#include <volk/volk.h>

#include <complex>
#include <cstring>

#include "support/buffers.h"
#include "support/rows.h"
#include "vmath/vmath_peers.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {64, 1024, 65536};

struct Range {
    double from, to;
};

// f(x, b, y, z, n), all floats.
template <class Function>
Body onVectors(int size, Range range, bool fresh, Function f) {
    return [=](benchmark::State& state) {
        const auto n = static_cast<std::size_t>(size);
        AlignedArray<float> x(n), b(n), y(n), z(n);
        fillUniform(x, range.from, range.to, 1);
        fillUniform(b, -8.0, 8.0, 2);
        for (auto _ : state) {
            if (fresh) std::memcpy(y.data(), x.data(), n * sizeof(float));
            f(fresh ? y.data() : x.data(), b.data(), y.data(), z.data(), size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

void addFamily(const char* family, Range range, bool fresh, MathPeers::One ours,
               MathPeers::One MathPeers::*theirs, MathPeers::One volk = nullptr) {
    for (const int size : kSizes) {
        addOurs(family, size, onVectors(size, range, fresh, ours));
        const auto add = [&](const char* name, const auto& levels) {
            for (const auto& [level, peers] : levels)
                addPeer(family, name + level, size, onVectors(size, range, fresh, peers->*theirs));
        };
        add("eigen-", peerLevels(ZEP_PEERS(mathEigen)));
        add("sleef-", peerLevels(ZEP_PEERS(mathSleef)));
        add("libmvec-", peerLevels(ZEP_PEERS(mathVectors)));
        add("libm-", peerLevels(ZEP_PEERS(mathScalar)));
        if (volk != nullptr) addPeer(family, "volk", size, onVectors(size, range, fresh, volk));
    }
}

Body onComplex(int size, auto f) {
    return [=](benchmark::State& state) {
        const auto n = static_cast<std::size_t>(size);
        AlignedArray<float> z(2 * n), w(2 * n), y(2 * n);
        fillUniform(z, -2.0, 2.0, 1);
        fillUniform(w, -2.0, 2.0, 2);
        for (auto _ : state) {
            f(z.data(), w.data(), y.data(), size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

void addComplex() {
    using F = const float*;
    const auto pairs = [](auto* p) { return reinterpret_cast<const Zep32fc*>(p); };
    for (const int size : kSizes) {
        addOurs("pow_32fc_A24", size, onComplex(size, [=](F z, F w, float* y, int n) {
                    zepsPow_32fc_A24(pairs(z), pairs(w), reinterpret_cast<Zep32fc*>(y), n);
                }));
        addPeer("pow_32fc_A24", "std", size, onComplex(size, [](F z, F w, float* y, int n) {
                    for (int i = 0; i < 2 * n; i += 2) {
                        const auto p = std::pow(std::complex<float>(z[i], z[i + 1]),
                                                std::complex<float>(w[i], w[i + 1]));
                        y[i] = p.real();
                        y[i + 1] = p.imag();
                    }
                }));
    }
}

void addAll() {
    using F = const float*;
    // The logarithm to base 2 stands for those that differ from it by a factor.
    const auto log2 = [](F x, F, float* y, float*, int n) {
        volk_32f_log2_32f(y, x, static_cast<unsigned>(n));
    };
    constexpr Range kExp{-20, 20}, kLog{0.01, 100}, kAngle{-100, 100}, kBase{0.05, 20};
    addFamily(
        "exp_32f_A24", kExp, false,
        [](F x, F, float* y, float*, int n) { zepsExp_32f_A24(x, y, n); }, &MathPeers::exp);
    addFamily(
        "exp_32f_I", kExp, true, [](F, F, float* y, float*, int n) { zepsExp_32f_I(y, n); },
        &MathPeers::exp);
    addFamily(
        "ln_32f_I", kLog, true, [](F, F, float* y, float*, int n) { zepsLn_32f_I(y, n); },
        &MathPeers::ln, log2);
    addFamily(
        "log10_32f_A11", kLog, false,
        [](F x, F, float* y, float*, int n) { zepsLog10_32f_A11(x, y, n); }, &MathPeers::log10,
        log2);
    addFamily(
        "log10_32f_A24", kLog, false,
        [](F x, F, float* y, float*, int n) { zepsLog10_32f_A24(x, y, n); }, &MathPeers::log10);
    addFamily(
        "sincos_32f_A11", kAngle, false,
        [](F x, F, float* y, float* z, int n) { zepsSinCos_32f_A11(x, y, z, n); },
        &MathPeers::sinCosShort);
    addFamily(
        "sincos_32f_A21", kAngle, false,
        [](F x, F, float* y, float* z, int n) { zepsSinCos_32f_A21(x, y, z, n); },
        &MathPeers::sinCosShort);
    addFamily(
        "sincos_32f_A24", kAngle, false,
        [](F x, F, float* y, float* z, int n) { zepsSinCos_32f_A24(x, y, z, n); },
        &MathPeers::sinCosLong);
    addFamily(
        "pow_32f_A24", kBase, false,
        [](F x, F b, float* y, float*, int n) { zepsPow_32f_A24(x, b, y, n); }, &MathPeers::pow);
    addFamily(
        "powx_32f_A24", kBase, false,
        [](F x, F b, float* y, float*, int n) { zepsPowx_32f_A24(x, *b, y, n); }, &MathPeers::powx);
    addComplex();
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::addAll();
    return zep::bench::runAll(argc, argv);
}
