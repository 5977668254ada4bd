// Complex and polar operations beside plain loops and VOLK, angles beside loops over SLEEF. Sizes are
// complex elements.
#include "support/buffers.h"
#include "support/rows.h"
#include "support/volk_level.h"
#include "vector/complex_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {64, 1024, 16384, 1 << 20};

// Complex and real vectors of T for sources (x, a, b) and destinations (y, c, d).
template <class C>
struct Vectors {
    using Part = decltype(C::re);
    AlignedArray<C> x, y;
    AlignedArray<Part> a, b, c, d;
    static constexpr double kLimit = std::is_integral_v<Part> ? 32767.0 : 1.0;

    explicit Vectors(std::size_t n) : x(n), y(n), a(n), b(n), c(n), d(n) {
        fillUniform(x, -kLimit, kLimit, 1), fillUniform(a, 0.0, 1.0, 2),
            fillUniform(b, -3.2, 3.2, 3);
        fillUniform(y, 0.0, 1.0, 4), fillUniform(c, 0.0, 1.0, 5), fillUniform(d, 0.0, 1.0, 6);
    }
};

template <class C, class F>
Body on(int size, F f) {
    return [=](benchmark::State& state) {
        Vectors<C> v(static_cast<std::size_t>(size));
        for (auto _ : state) {
            f(v, size);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

// f(function, vectors, n) calls ours or the peer's.
template <class C = Zep32fc, class F>
void addFamily(const char* name, auto ours, auto member, const std::string& peer, F f) {
    for (const int size : kSizes) {
        addOurs(name, size, on<C>(size, [=](auto& v, int n) { f(ours, v, n); }));
        for (const auto& [level, peers] : peerLevels(ZEP_PEERS(complexLoops)))
            addPeer(name, peer + level, size,
                    on<C>(size, [f, g = peers->*member](auto& v, int n) { f(g, v, n); }));
    }
}

void registerAll() {
    using Peers = ComplexPeers;
    const auto toReal = [](auto f, auto& v, int n) { f(v.x.data(), v.c.data(), n); };
    const auto toComplex = [](auto f, auto& v, int n) { f(v.x.data(), v.y.data(), n); };
    const auto apart = [](auto f, auto& v, int n) { f(v.x.data(), v.c.data(), v.d.data(), n); };
    const auto together = [](auto f, auto& v, int n) { f(v.a.data(), v.b.data(), v.y.data(), n); };
    addFamily("magnitude_32fc", zepsMagnitude_32fc, &Peers::magnitude, "loop-", toReal);
    addFamily("magnitude_32f", zepsMagnitude_32f, &Peers::magnitudeOfParts, "loop-",
              [](auto f, auto& v, int n) { f(v.a.data(), v.b.data(), v.c.data(), n); });
    addFamily("powerspectr_32fc", zepsPowerSpectr_32fc, &Peers::power, "loop-", toReal);
    addFamily("phase_32fc", zepsPhase_32fc, &Peers::phase, "sleef-u35-", toReal);
    addFamily("carttopolar_32fc", zepsCartToPolar_32fc, &Peers::toPolar, "sleef-u35-", apart);
    addFamily("polartocart_32fc", zepsPolarToCart_32fc, &Peers::toCartesian, "sleef-u35-",
              together);
    addFamily("real_32fc", zepsReal_32fc, &Peers::real, "loop-", toReal);
    addFamily("cplxtoreal_32fc", zepsCplxToReal_32fc, &Peers::parts, "loop-", apart);
    addFamily("realtocplx_32f", zepsRealToCplx_32f, &Peers::join, "loop-", together);
    addFamily<Zep64fc>("real_64fc", zepsReal_64fc, &Peers::real64, "loop-", toReal);
    addFamily<Zep64fc>("cplxtoreal_64fc", zepsCplxToReal_64fc, &Peers::parts64, "loop-", apart);
    addFamily<Zep64fc>("realtocplx_64f", zepsRealToCplx_64f, &Peers::join64, "loop-", together);
    addFamily<Zep16sc>("cplxtoreal_16sc", zepsCplxToReal_16sc, &Peers::parts16, "loop-", apart);
    addFamily("conj_32fc", zepsConj_32fc, &Peers::conj, "loop-", toComplex);
    addFamily("conjflip_32fc", zepsConjFlip_32fc, &Peers::conjFlip, "loop-", toComplex);
}

void addVolk(const char* name, const volk_func_desc_t& forms, auto f) {
    for (const int size : kSizes)
        addPeer(name, volkPeer(forms), size, on<Zep32fc>(size, [=](auto& v, int n) {
                    f(v, reinterpret_cast<lv_32fc_t*>(v.x.data()),
                      reinterpret_cast<lv_32fc_t*>(v.y.data()), static_cast<unsigned>(n));
                }));
}

void registerVolk() {
    addVolk("magnitude_32fc", volk_32fc_magnitude_32f_get_func_desc(),
            [](auto& v, auto x, auto, auto n) { volk_32fc_magnitude_32f(v.c.data(), x, n); });
    addVolk(
        "powerspectr_32fc", volk_32fc_magnitude_squared_32f_get_func_desc(),
        [](auto& v, auto x, auto, auto n) { volk_32fc_magnitude_squared_32f(v.c.data(), x, n); });
    addVolk(
        "real_32fc", volk_32fc_deinterleave_real_32f_get_func_desc(),
        [](auto& v, auto x, auto, auto n) { volk_32fc_deinterleave_real_32f(v.c.data(), x, n); });
    addVolk("cplxtoreal_32fc", volk_32fc_deinterleave_32f_x2_get_func_desc(),
            [](auto& v, auto x, auto, auto n) {
                volk_32fc_deinterleave_32f_x2(v.c.data(), v.d.data(), x, n);
            });
    addVolk("realtocplx_32f", volk_32f_x2_interleave_32fc_get_func_desc(),
            [](auto& v, auto, auto y, auto n) {
                volk_32f_x2_interleave_32fc(y, v.a.data(), v.b.data(), n);
            });
    addVolk("conj_32fc", volk_32fc_conjugate_32fc_get_func_desc(),
            [](auto&, auto x, auto y, auto n) { volk_32fc_conjugate_32fc(y, x, n); });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerAll();
    zep::bench::registerVolk();
    return zep::bench::runAll(argc, argv);
}
