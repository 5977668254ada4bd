// Windows and filter designs beside loops over the C library's functions. Families `ready_*` are the
// product with a window that was computed before: what applying one costs when it is kept.
//
// Windows are applied in place; so that the samples do not vanish in call after call, each call gets
// them anew. The copy is in the time of all rows alike.
#include <cstring>

#include "design/design_loops.h"
#include "support/buffers.h"
#include "support/rows.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {64, 1024, 4096};
constexpr int kTaps[] = {31, 101, 1001};
constexpr Zep32f kAlpha = 0.004f;  // 8.2 times half of 4095 samples

// f(x, window, n) on a fresh x.
template <class T, class F>
Body onSamples(int size, F f) {
    return [size, f](benchmark::State& state) {
        const auto n = static_cast<std::size_t>(size);
        AlignedArray<T> x(n), y(n);
        AlignedArray<Zep32f> window(n);
        fillUniform(x, -1, 1);
        fillUniform(window, 0, 1);
        for (auto _ : state) {
            std::memcpy(y.data(), x.data(), n * sizeof(T));
            f(y.data(), window.data(), size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

template <class T, class Ours, class Theirs>
void addWindow(const std::string& family, const char* peer, Ours ours, Theirs theirs) {
    for (const int size : kSizes) {
        addOurs(family, size, onSamples<T>(size, ours));
        for (const auto& [level, loops] : peerLevels(ZEP_PEERS(designLoops))) {
            const DesignPeers* const p = loops;
            addPeer(family, peer + level, size,
                    onSamples<T>(size, [=](T* x, const Zep32f* w, int n) { theirs(*p, x, w, n); }));
        }
    }
}

void registerWindows() {
    const auto bartlett = [](auto x, auto, int n) { zepsWinBartlett_32f_I(x, n); };
    const auto hann = [](auto x, auto, int n) { zepsWinHann_32f_I(x, n); };
    const auto hamming = [](auto x, auto, int n) { zepsWinHamming_32f_I(x, n); };
    const auto kaiser = [](auto x, auto, int n) { zepsWinKaiser_32f_I(x, n, kAlpha); };
    const auto ready = [](auto& p, auto x, auto w, int n) { p.multiply(x, w, n); };
    addWindow<Zep32f>("bartlett_32f", "loop-", bartlett,
                      [](auto& p, auto x, auto, int n) { p.bartlett(x, n); });
    addWindow<Zep32f>("hann_32f", "cosine-", hann,
                      [](auto& p, auto x, auto, int n) { p.hann(x, n); });
    addWindow<Zep32f>("hamming_32f", "cosine-", hamming,
                      [](auto& p, auto x, auto, int n) { p.hamming(x, n); });
    addWindow<Zep32f>(
        "blackman_32f", "cosine-", [](auto x, auto, int n) { zepsWinBlackmanStd_32f_I(x, n); },
        [](auto& p, auto x, auto, int n) { p.blackman(x, n); });
    addWindow<Zep32fc>(
        "hamming_32fc", "cosine-", [](auto x, auto, int n) { zepsWinHamming_32fc_I(x, n); },
        [](auto& p, auto x, auto, int n) { p.hammingComplex(x, n); });
    addWindow<Zep32f>("kaiser_32f", "series-", kaiser,
                      [](auto& p, auto x, auto, int n) { p.kaiser(x, n, kAlpha); });
    addWindow<Zep32f>("ready_hamming_32f", "multiply-", hamming, ready);
    addWindow<Zep32f>("ready_kaiser_32f", "multiply-", kaiser, ready);
}

template <class Ours, class Theirs>
void addDesign(const std::string& family, Ours ours, Theirs theirs) {
    const auto body = [](int size, auto f) {
        return [=](benchmark::State& state) {
            AlignedArray<Zep64f> taps(static_cast<std::size_t>(size));
            for (auto _ : state) {
                f(taps.data(), size);
                benchmark::ClobberMemory();
            }
            state.SetItemsProcessed(state.iterations() * size);
        };
    };
    for (const int size : kTaps) {
        addOurs(family, size, body(size, ours));
        for (const auto& [level, loops] : peerLevels(ZEP_PEERS(designLoops))) {
            const DesignPeers* const p = loops;
            addPeer(family, "sines-" + level, size,
                    body(size, [=](Zep64f* taps, int n) { theirs(*p, taps, n); }));
        }
    }
}

void registerDesigns() {
    addDesign(
        "firgenlowpass_64f",
        [](Zep64f* taps, int n) { zepsFIRGenLowpass_64f(0.11, taps, n, zepWinHamming, 1); },
        [](auto& p, auto taps, int n) { p.lowpass(0.11, taps, n); });
    addDesign(
        "firgenbandpass_64f",
        [](Zep64f* taps, int n) { zepsFIRGenBandpass_64f(0.11, 0.2, taps, n, zepWinHamming, 1); },
        [](auto& p, auto taps, int n) { p.bandpass(0.11, 0.2, taps, n); });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerWindows();
    zep::bench::registerDesigns();
    return zep::bench::runAll(argc, argv);
}
