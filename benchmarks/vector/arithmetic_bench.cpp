// Element-wise arithmetic beside plain loops, Eigen and VOLK: families add_32f ... mul_64f over
// four sizes from the first-level cache to beyond the last, and call_add_32f for the cost of a
// call.
#include <volk/volk.h>

#include <cstring>

#include "support/buffers.h"
#include "support/rows.h"
#include "vector/arithmetic_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {64, 1024, 16384, 1 << 20};
constexpr int kCallSizes[] = {1, 4, 7, 16, 31};

// Runs f(a, b, y, size) on buffers that live as long as the row; y is where products are added, so
// it is small.
template <class T, class F>
Body onVectors(int size, F f) {
    return [size, f](benchmark::State& state) {
        const auto n = static_cast<std::size_t>(size);
        AlignedArray<T> a(n), b(n), y(n);
        fillUniform(a, 0.5, 1.5, 1);
        fillUniform(b, 0.5, 1.5, 2);
        fillUniform(y, 0.0, 0.1, 3);
        for (auto _ : state) {
            f(a.data(), b.data(), y.data(), size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

// theirs(peers, a, b, y, n) runs a function of the table.
template <class T, class Ours, class Theirs>
void addFamily(const char* family, const auto& sizes, Ours ours, Theirs theirs) {
    for (const int size : sizes) {
        addOurs(family, size, onVectors<T>(size, ours));
        const auto add = [&](const std::string& peer, const ArithmeticPeers* peers) {
            addPeer(family, peer, size,
                    onVectors<T>(size, [=](auto... x) { theirs(*peers, x...); }));
        };
        for (const auto& [level, peers] : peerLevels(ZEP_PEERS(arithmeticLoops)))
            add("loop-" + level, peers);
        for (const auto& [level, peers] : peerLevels(ZEP_PEERS(arithmeticEigen)))
            add("eigen-" + level, peers);
    }
}

template <class T, class F>
void addVolk(const char* family, const auto& sizes, F f) {
    for (const int size : sizes) addPeer(family, "volk", size, onVectors<T>(size, f));
}

constexpr auto volkAdd = [](auto a, auto b, auto y, int n) {
    volk_32f_x2_add_32f(y, a, b, static_cast<unsigned>(n));
};

void registerAddition() {
    constexpr auto ours = [](auto a, auto b, auto y, int n) { zepsAdd_32f(a, b, y, n); };
    addFamily<Zep32f>("add_32f", kSizes, ours, [](auto& p, auto... x) { p.add(x...); });
    addVolk<Zep32f>("add_32f", kSizes, volkAdd);
    addFamily<Zep32f>("call_add_32f", kCallSizes, ours, [](auto& p, auto... x) { p.add(x...); });
    addVolk<Zep32f>("call_add_32f", kCallSizes, volkAdd);
    addFamily<Zep64f>(
        "add_64f", kSizes, [](auto a, auto b, auto y, int n) { zepsAdd_64f(a, b, y, n); },
        [](auto& p, auto... x) { p.addDouble(x...); });
    addVolk<Zep64f>("add_64f", kSizes, [](auto a, auto b, auto y, int n) {
        volk_64f_x2_add_64f(y, a, b, static_cast<unsigned>(n));
    });
}

void registerMultiplication() {
    addFamily<Zep32f>(
        "mul_32f", kSizes, [](auto a, auto b, auto y, int n) { zepsMul_32f(a, b, y, n); },
        [](auto& p, auto... x) { p.mul(x...); });
    addVolk<Zep32f>("mul_32f", kSizes, [](auto a, auto b, auto y, int n) {
        volk_32f_x2_multiply_32f(y, a, b, static_cast<unsigned>(n));
    });
    addFamily<Zep64f>(
        "mul_64f", kSizes, [](auto a, auto b, auto y, int n) { zepsMul_64f(a, b, y, n); },
        [](auto& p, auto... x) { p.mulDouble(x...); });
    addVolk<Zep64f>("mul_64f", kSizes, [](auto a, auto b, auto y, int n) {
        volk_64f_x2_multiply_64f(y, a, b, static_cast<unsigned>(n));
    });
    addFamily<Zep32fc>(
        "mul_32fc", kSizes, [](auto a, auto b, auto y, int n) { zepsMul_32fc(a, b, y, n); },
        [](auto& p, auto... x) { p.mulComplex(x...); });
    addVolk<Zep32fc>("mul_32fc", kSizes, [](auto a, auto b, auto y, int n) {
        volk_32fc_x2_multiply_32fc(reinterpret_cast<lv_32fc_t*>(y),
                                   reinterpret_cast<const lv_32fc_t*>(a),
                                   reinterpret_cast<const lv_32fc_t*>(b), static_cast<unsigned>(n));
    });
    addFamily<Zep32f>(
        "mulc_32f", kSizes, [](auto a, auto, auto y, int n) { zepsMulC_32f(a, 1.25f, y, n); },
        [](auto& p, auto a, auto, auto y, int n) { p.mulConstant(a, 1.25f, y, n); });
    addVolk<Zep32f>("mulc_32f", kSizes, [](auto a, auto, auto y, int n) {
        volk_32f_s32f_multiply_32f(y, a, 1.25f, static_cast<unsigned>(n));
    });
    addFamily<Zep32f>(
        "addproduct_32f", kSizes,
        [](auto a, auto b, auto y, int n) { zepsAddProduct_32f(a, b, y, n); },
        [](auto& p, auto... x) { p.addProduct(x...); });
}

void registerDivisionAndRoots() {
    addFamily<Zep32f>(
        "div_32f", kSizes, [](auto a, auto b, auto y, int n) { zepsDiv_32f(a, b, y, n); },
        [](auto& p, auto... x) { p.div(x...); });
    addVolk<Zep32f>("div_32f", kSizes, [](auto a, auto b, auto y, int n) {
        volk_32f_x2_divide_32f(y, b, a, static_cast<unsigned>(n));
    });
    addFamily<Zep32fc>(
        "div_32fc", kSizes, [](auto a, auto b, auto y, int n) { zepsDiv_32fc(a, b, y, n); },
        [](auto& p, auto... x) { p.divComplex(x...); });
    addVolk<Zep32fc>("div_32fc", kSizes, [](auto a, auto b, auto y, int n) {
        volk_32fc_x2_divide_32fc(reinterpret_cast<lv_32fc_t*>(y),
                                 reinterpret_cast<const lv_32fc_t*>(b),
                                 reinterpret_cast<const lv_32fc_t*>(a), static_cast<unsigned>(n));
    });
    addFamily<Zep32f>(
        "sqrt_32f", kSizes, [](auto a, auto, auto y, int n) { zepsSqrt_32f(a, y, n); },
        [](auto& p, auto a, auto, auto y, int n) { p.sqrt(a, y, n); });
    addVolk<Zep32f>("sqrt_32f", kSizes, [](auto a, auto, auto y, int n) {
        volk_32f_sqrt_32f(y, a, static_cast<unsigned>(n));
    });
    // In place. Roots of roots tend to 1, so each call gets the same elements anew; the copy counts
    // on both sides.
    constexpr auto onCopy = [](auto rootInPlace) {
        return [=](auto a, auto, auto y, int n) {
            std::memcpy(y, a, sizeof(*a) * static_cast<std::size_t>(n));
            rootInPlace(y, n);
        };
    };
    addFamily<Zep32fc>("sqrt_32fc_I", kSizes, onCopy([](auto y, int n) { zepsSqrt_32fc_I(y, n); }),
                       [=](auto& p, auto... x) { onCopy(p.sqrtComplex)(x...); });
    addFamily<Zep32f>(
        "abs_32f", kSizes, [](auto a, auto, auto y, int n) { zepsAbs_32f(a, y, n); },
        [](auto& p, auto a, auto, auto y, int n) { p.abs(a, y, n); });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerAddition();
    zep::bench::registerMultiplication();
    zep::bench::registerDivisionAndRoots();
    return zep::bench::runAll(argc, argv);
}
