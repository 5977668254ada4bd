// Scaled fixed-point arithmetic beside plain loops: families add_32s_Sfs0 (no scale), Sfs1, Sfs5,
// products by a small and a large constant, and the 16-bit forms.
#include <cstdlib>
#include <string>
#include <tuple>

#include "support/buffers.h"
#include "support/rows.h"
#include "vector/fixed_point_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {64, 1024, 16384, 1 << 20};

// Runs f(a, b, y, size); y begins as b. What works in place does so again and again.
template <class T, class F>
Body onVectors(int size, F f) {
    return [size, f](benchmark::State& state) {
        const auto n = static_cast<std::size_t>(size);
        AlignedArray<T> a(n), b(n), y(n);
        const double limit = sizeof(T) == 2 ? 32767.0 : 2.0e9;
        fillUniform(a, -limit, limit, 1);
        fillUniform(b, -limit, limit, 2);
        fillUniform(y, -limit, limit, 2);
        for (auto _ : state) {
            f(a.data(), b.data(), y.data(), size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

// theirs(peers, a, b, y, n) runs a function of the table.
template <class T>
void addFamily(const std::string& family, auto ours, auto theirs) {
    for (const int size : kSizes) {
        addOurs(family, size, onVectors<T>(size, ours));
        for (const auto& [level, peers] : peerLevels(ZEP_PEERS(fixedPointLoops)))
            addPeer(family, "loop-" + level, size,
                    onVectors<T>(size, [=](auto... x) { theirs(*peers, x...); }));
    }
}

void registerAll() {
    for (const int k : {0, 1, 5, -3})
        addFamily<Zep32s>(
            "add_32s_Sfs" + std::string(k < 0 ? "m" : "") + std::to_string(std::abs(k)),
            [k](auto a, auto b, auto y, int n) { zepsAdd_32s_Sfs(a, b, y, n, k); },
            [k](const auto& peers, auto a, auto b, auto y, int n) { peers.add(a, b, y, n, k); });
    for (const int k : {0, 1, 5})
        addFamily<Zep32s>(
            "addc_32s_ISfs" + std::to_string(k),
            [k](auto, auto, auto y, int n) { zepsAddC_32s_ISfs(12345, y, n, k); },
            [k](const auto& peers, auto, auto, auto y, int n) {
                peers.addConstant(12345, y, n, k);
            });
    addFamily<Zep32s>(
        "sub_32s_Sfs0", [](auto a, auto b, auto y, int n) { zepsSub_32s_Sfs(a, b, y, n, 0); },
        [](const auto& peers, auto a, auto b, auto y, int n) { peers.sub(a, b, y, n); });
    // Gains below and above one in Q15.
    for (const auto& [name, val, k] :
         {std::tuple{"mulc_32s_Sfs15_small", 12345, 15},
          std::tuple{"mulc_32s_Sfs15_large", 45678, 15}, std::tuple{"mulc_32s_Sfs0", 3, 0}})
        addFamily<Zep32s>(
            name,
            [val = val, k = k](auto, auto, auto y, int n) { zepsMulC_32s_ISfs(val, y, n, k); },
            [val = val, k = k](const auto& peers, auto, auto, auto y, int n) {
                peers.mulConstant(val, y, n, k);
            });
    addFamily<Zep16s>(
        "mul_16s", [](auto a, auto b, auto y, int n) { zepsMul_16s(a, b, y, n); },
        [](const auto& peers, auto a, auto b, auto y, int n) { peers.mul16(a, b, y, n); });
    addFamily<Zep16s>(
        "divc_16s_Sfs0", [](auto, auto, auto y, int n) { zepsDivC_16s_ISfs(3, y, n, 0); },
        [](const auto& peers, auto, auto, auto y, int n) { peers.divConstant16(3, y, n); });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerAll();
    return zep::bench::runAll(argc, argv);
}
