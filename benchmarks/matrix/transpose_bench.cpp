// Transposition beside blocked loops and Eigen: squares from one tile to beyond every cache, and a
// flat matrix. Rows are named by the height; flat ones are 100 wide.
#include "matrix/transpose_peers.h"
#include "support/buffers.h"
#include "support/rows.h"
#include "zepm.h"

namespace zep::bench {
namespace {

template <class T, class F>
Body onMatrices(int width, int height, F f) {
    return [=](benchmark::State& state) {
        const auto n = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        AlignedArray<T> src(n), dst(n);
        fillUniform(src, -1.0, 1.0, 1);
        fillUniform(dst, -1.0, 1.0, 2);
        for (auto _ : state) {
            f(src.data(), width, height, dst.data());
            benchmark::ClobberMemory();
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(2 * n * sizeof(T)));
    };
}

template <class T>
void addFamily(const char* family, int width, int height, auto ours, auto loop, auto eigen) {
    addOurs(family, height, onMatrices<T>(width, height, ours));
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(transposePeers))) {
        addPeer(family, "loop-" + level, height, onMatrices<T>(width, height, peers->*loop));
        addPeer(family, "eigen-" + level, height, onMatrices<T>(width, height, peers->*eigen));
    }
}

void addShape(const char* family32, const char* family64, int width, int height) {
    constexpr auto strides = [](auto f, auto src, int w, int h, auto dst) {
        constexpr int kElement = sizeof *src;
        f(src, kElement * w, kElement, w, h, dst, kElement * h, kElement);
    };
    addFamily<Zep32f>(
        family32, width, height, [=](auto... x) { strides(zepmTranspose_m_32f, x...); },
        &TransposePeers::loop32, &TransposePeers::eigen32);
    addFamily<Zep64f>(
        family64, width, height, [=](auto... x) { strides(zepmTranspose_m_64f, x...); },
        &TransposePeers::loop64, &TransposePeers::eigen64);
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    for (const int size : {16, 64, 200, 1000, 4096})
        zep::bench::addShape("transpose_32f", "transpose_64f", size, size);
    zep::bench::addShape("transpose_32f_flat", "transpose_64f_flat", 100, 100000);
    return zep::bench::runAll(argc, argv);
}
