// Complex and polar operations beside plain loops, angles beside loops over SLEEF. Sizes are complex
// elements.
#include "support/buffers.h"
#include "support/rows.h"
#include "vector/complex_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {64, 1024, 65536};

// Complex and real vectors for sources (x, a, b) and destinations (y, c, d).
struct Vectors {
    AlignedArray<Zep32fc> x, y;
    AlignedArray<Zep32f> a, b, c, d;

    explicit Vectors(std::size_t n) : x(n), y(n), a(n), b(n), c(n), d(n) {
        fillUniform(x, -1.0, 1.0, 1), fillUniform(a, 0.0, 1.0, 2), fillUniform(b, -3.2, 3.2, 3);
        fillUniform(y, 0.0, 1.0, 4), fillUniform(c, 0.0, 1.0, 5), fillUniform(d, 0.0, 1.0, 6);
    }
};

template <class F>
Body on(int size, F f) {
    return [=](benchmark::State& state) {
        Vectors v(static_cast<std::size_t>(size));
        for (auto _ : state) {
            f(v, size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

// f(function, vectors, n) calls ours or the peer's.
template <class F>
void addFamily(const char* name, auto ours, auto member, const std::string& peer, F f) {
    for (const int size : kSizes) {
        addOurs(name, size, on(size, [=](Vectors& v, int n) { f(ours, v, n); }));
        for (const auto& [level, peers] : peerLevels(ZEP_PEERS(complexLoops)))
            addPeer(name, peer + level, size,
                    on(size, [f, g = peers->*member](Vectors& v, int n) { f(g, v, n); }));
    }
}

void registerAll() {
    using Peers = ComplexPeers;
    const auto toReal = [](auto f, Vectors& v, int n) { f(v.x.data(), v.c.data(), n); };
    const auto toComplex = [](auto f, Vectors& v, int n) { f(v.x.data(), v.y.data(), n); };
    const auto apart = [](auto f, Vectors& v, int n) { f(v.x.data(), v.c.data(), v.d.data(), n); };
    const auto together = [](auto f, Vectors& v, int n) {
        f(v.a.data(), v.b.data(), v.y.data(), n);
    };
    addFamily("magnitude_32fc", zepsMagnitude_32fc, &Peers::magnitude, "loop-", toReal);
    addFamily("powerspectr_32fc", zepsPowerSpectr_32fc, &Peers::power, "loop-", toReal);
    addFamily("phase_32fc", zepsPhase_32fc, &Peers::phase, "sleef-u35-", toReal);
    addFamily("carttopolar_32fc", zepsCartToPolar_32fc, &Peers::toPolar, "sleef-u35-", apart);
    addFamily("polartocart_32fc", zepsPolarToCart_32fc, &Peers::toCartesian, "sleef-u35-",
              together);
    addFamily("real_32fc", zepsReal_32fc, &Peers::real, "loop-", toReal);
    addFamily("cplxtoreal_32fc", zepsCplxToReal_32fc, &Peers::parts, "loop-", apart);
    addFamily("realtocplx_32f", zepsRealToCplx_32f, &Peers::join, "loop-", together);
    addFamily("conj_32fc", zepsConj_32fc, &Peers::conj, "loop-", toComplex);
    addFamily("conjflip_32fc", zepsConjFlip_32fc, &Peers::conjFlip, "loop-", toComplex);
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerAll();
    return zep::bench::runAll(argc, argv);
}
