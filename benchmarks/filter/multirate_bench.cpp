// Rational rate changes: families mr_<up>_<down>_<taps> and mrc_... of complex samples and taps, a
// row's size is the count of inputs. Of the peers libsamplerate alone computes another filter (its
// shortest windowed sinc); it is there for scale.
#include <liquid/liquid.h>
#include <samplerate.h>

#include "filter/multirate_data.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr Rates kRates[] = {{1, 4, 64, 8192},  {4, 1, 64, 32768},     {3, 2, 72, 16384},
                            {2, 3, 72, 10922}, {160, 147, 3200, 222}, {147, 160, 2940, 204},
                            {1, 4, 64, 64},    {4, 1, 64, 256},       {3, 2, 72, 128}};
constexpr Rates kComplexRates[] = {{1, 4, 64, 8192}, {4, 1, 64, 32768}, {3, 2, 72, 16384},
                                   {1, 4, 64, 64},   {4, 1, 64, 256},   {3, 2, 72, 128}};

struct Real {
    using T = Zep32f;
    using Liquid = float;
    static constexpr const char* family = "mr_";
    static constexpr double operations = 2;  // of a product and its sum
    static constexpr auto create = zepsFIRMRInitAlloc_32f;
    static constexpr auto filter = zepsFIR_32f;
    static constexpr auto release = zepsFIRFree_32f;
    static constexpr auto decimCreate = firdecim_rrrf_create;
    static constexpr auto decim = firdecim_rrrf_execute_block;
    static constexpr auto decimRelease = firdecim_rrrf_destroy;
    static constexpr auto interpCreate = firinterp_rrrf_create;
    static constexpr auto interp = firinterp_rrrf_execute_block;
    static constexpr auto interpRelease = firinterp_rrrf_destroy;
};
struct Complex {
    using T = Zep32fc;
    using Liquid = liquid_float_complex;
    static constexpr const char* family = "mrc_";
    static constexpr double operations = 8;
    static constexpr auto create = zepsFIRMRInitAlloc_32fc;
    static constexpr auto filter = zepsFIR_32fc;
    static constexpr auto release = zepsFIRFree_32fc;
    static constexpr auto decimCreate = firdecim_cccf_create;
    static constexpr auto decim = firdecim_cccf_execute_block;
    static constexpr auto decimRelease = firdecim_cccf_destroy;
    static constexpr auto interpCreate = firinterp_cccf_create;
    static constexpr auto interp = firinterp_cccf_execute_block;
    static constexpr auto interpRelease = firinterp_cccf_destroy;
};

// An object of the peer, released with the row.
template <class Q, class Release>
auto owned(Q* q, Release release) {
    return std::shared_ptr<Q>(q, release);
}

template <class Kind, class T = typename Kind::T>
void addLiquid(const Case<T>& rows, const std::shared_ptr<RateData<T>>& d) {
    using L = typename Kind::Liquid;
    const auto liquid = [](T* p) { return reinterpret_cast<L*>(p); };
    const Rates r = d->r;
    const auto up = static_cast<unsigned>(r.up), down = static_cast<unsigned>(r.down),
               taps = static_cast<unsigned>(r.taps), periods = static_cast<unsigned>(r.periods);
    if (r.up == 1)
        rows.peer("liquid", [=] {
            const auto q =
                owned(Kind::decimCreate(down, liquid(d->taps.data()), taps), Kind::decimRelease);
            return [=](T* y) { Kind::decim(q.get(), liquid(d->x()), periods, liquid(y)); };
        });
    else if (r.down == 1)
        rows.peer("liquid", [=] {
            const auto q =
                owned(Kind::interpCreate(up, liquid(d->taps.data()), taps), Kind::interpRelease);
            return [=](T* y) { Kind::interp(q.get(), liquid(d->x()), periods, liquid(y)); };
        });
    else if constexpr (std::is_same_v<Kind, Real>)
        rows.unlike("liquid", [=] {
            const auto q = owned(rresamp_rrrf_create(up, down, taps / (2 * up), d->taps.data()),
                                 rresamp_rrrf_destroy);
            return [=](Zep32f* y) {
                for (unsigned m = 0; m < periods; ++m)
                    rresamp_rrrf_execute(q.get(), d->x() + m * down, y + m * up);
            };
        });
}

template <class Kind>
void addFamily(Rates r) {
    using T = typename Kind::T;
    const auto d = std::make_shared<RateData<T>>(r);
    const Case<T> rows{r.name(Kind::family), r.inputs(), r.outputs(),
                       Kind::operations * r.products(), [=](int q) { return d->expected(q); }};
    rows.ours([=] {
        ZepFIRState* p = nullptr;
        Kind::create(&p, d->taps.data(), r.taps, r.up, 0, r.down, 0, nullptr);
        const auto state = owned(p, Kind::release);
        return [=](T* y) { Kind::filter(d->x(), y, r.periods, state.get()); };
    });
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(multirateLoops))) {
        const auto dots = [&](const char* form, auto filter) {
            rows.peer(form + ("-" + level),
                      [=] { return [=](T* y) { filter(d->filter, d->x(), y, r.periods); }; });
        };
        const auto phases = [&](auto filter) {
            rows.peer("phases-" + level, [=] {
                return [=](T* y) { filter(d->filter, d->x(), y, r.periods, d->room.data()); };
            });
        };
        if constexpr (std::is_same_v<Kind, Real>) {
            dots("dots4", peers->dots4);
            dots("dots8", peers->dots8);
            dots("dots16", peers->dots16);
            phases(peers->phases);
        } else {
            dots("dots", peers->dotsComplex);
            phases(peers->phasesComplex);
        }
    }
    addLiquid<Kind>(rows, d);
    if constexpr (std::is_same_v<Kind, Real>)
        rows.unlike("samplerate", [=] {
            int error = 0;
            const std::shared_ptr<SRC_STATE> state(src_new(SRC_SINC_FASTEST, 1, &error),
                                                   src_delete);
            return [=](Zep32f* y) {
                SRC_DATA data{};
                data.data_in = d->x();
                data.data_out = y;
                data.input_frames = r.inputs();
                data.output_frames = r.outputs();
                data.src_ratio = double(r.up) / r.down;
                src_process(state.get(), &data);
            };
        });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    using namespace zep::bench;
    for (const auto rates : kRates) addFamily<Real>(rates);
    for (const auto rates : kComplexRates) addFamily<Complex>(rates);
    return runAll(argc, argv);
}
