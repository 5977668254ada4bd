// Rational rate changes: families mr_<up>_<down>_<taps>, a row's size is the count of inputs. Of the
// peers libsamplerate alone computes another filter (its shortest windowed sinc); it is there for scale.
#include <liquid/liquid.h>
#include <samplerate.h>

#include "filter/checked_rows.h"
#include "filter/multirate_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

struct Rates {
    int up, down, taps, periods;
};
constexpr Rates kRates[] = {{1, 4, 64, 8192},      {4, 1, 64, 32768}, {3, 2, 72, 16384},
                            {160, 147, 3200, 222}, {1, 4, 64, 64},    {4, 1, 64, 256},
                            {3, 2, 72, 128}};

struct Data {
    AlignedArray<Zep32f> taps, line, rows, room;
    Rates r;
    Polyphase filter;
    explicit Data(Rates rates)
        : taps(std::size_t(rates.taps)),
          line(std::size_t(rates.taps + rates.down * rates.periods)),
          rows(std::size_t(rates.up * (rates.taps / rates.up + 16))),
          room(std::size_t(rates.down) * std::size_t(rates.periods + rates.taps + 128)),
          r(rates) {
        fillUniform(taps, -1, 1, 1);
        fillUniform(line, -1, 1, 2);
        fillUniform(room, -1, 1, 3);
        std::fill_n(line.begin(), r.taps, 0.0f);
        std::fill(rows.begin(), rows.end(), 0.0f);
        const int K = r.taps / r.up, rowLen = (K + 15) / 16 * 16;
        filter = {r.up, rates.down, K, rows.data(), rowLen};
        for (int p = 0; p < r.up; ++p)
            for (int k = 0; k < K; ++k)
                rows[std::size_t((p + 1) * rowLen - 1 - k)] =
                    taps[std::size_t(p * rates.down % r.up + k * r.up)];
    }
    Zep32f* x() { return line.data() + r.taps; }
    int inputs() const { return r.down * r.periods; }
};

void addLiquid(const Case<Zep32f>& rows, const std::shared_ptr<Data>& d) {
    const Rates r = d->r;
    const auto up = static_cast<unsigned>(r.up), down = static_cast<unsigned>(r.down),
               taps = static_cast<unsigned>(r.taps), periods = static_cast<unsigned>(r.periods);
    if (r.up == 1)
        rows.peer("liquid", [=] {
            const std::shared_ptr<firdecim_rrrf_s> q(
                firdecim_rrrf_create(down, d->taps.data(), taps), firdecim_rrrf_destroy);
            return [=](Zep32f* y) { firdecim_rrrf_execute_block(q.get(), d->x(), periods, y); };
        });
    else if (r.down == 1)
        rows.peer("liquid", [=] {
            const std::shared_ptr<firinterp_rrrf_s> q(
                firinterp_rrrf_create(up, d->taps.data(), taps), firinterp_rrrf_destroy);
            return [=](Zep32f* y) { firinterp_rrrf_execute_block(q.get(), d->x(), periods, y); };
        });
    else
        rows.unlike("liquid", [=] {
            const std::shared_ptr<rresamp_rrrf_s> q(
                rresamp_rrrf_create(up, down, taps / (2 * up), d->taps.data()),
                rresamp_rrrf_destroy);
            return [=](Zep32f* y) {
                for (unsigned m = 0; m < periods; ++m)
                    rresamp_rrrf_execute(q.get(), d->x() + m * down, y + m * up);
            };
        });
}

void addFamily(Rates r) {
    const auto d = std::make_shared<Data>(r);
    const int outputs = r.up * r.periods, K = r.taps / r.up;
    const Case<Zep32f> rows{
        "mr_" + std::to_string(r.up) + "_" + std::to_string(r.down) + "_" + std::to_string(r.taps),
        d->inputs(), outputs, 2.0 * K * outputs, [=](int q) {
            Sum sum;
            for (int i = 0; i < d->inputs(); ++i) {
                const int k = q * r.down - i * r.up;
                if (k >= 0 && k < r.taps) sum.add(d->taps[std::size_t(k)], d->x()[i]);
            }
            return sum;
        }};
    rows.ours([=] {
        ZepFIRState* p = nullptr;
        zepsFIRMRInitAlloc_32f(&p, d->taps.data(), r.taps, r.up, 0, r.down, 0, nullptr);
        const std::shared_ptr<ZepFIRState> state(p, zepsFIRFree_32f);
        return [=](Zep32f* y) { zepsFIR_32f(d->x(), y, r.periods, state.get()); };
    });
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(multirateLoops))) {
        const auto add = [&](const char* form, auto filter) {
            rows.peer(form + ("-" + level),
                      [=] { return [=](Zep32f* y) { filter(d->filter, d->x(), y, r.periods); }; });
        };
        add("dots4", peers->dots4);
        add("dots8", peers->dots8);
        add("dots16", peers->dots16);
        rows.peer("phases-" + level, [=, phases = peers->phases] {
            return [=](Zep32f* y) { phases(d->filter, d->x(), y, r.periods, d->room.data()); };
        });
    }
    addLiquid(rows, d);
    rows.unlike("samplerate", [=] {
        int error = 0;
        const std::shared_ptr<SRC_STATE> state(src_new(SRC_SINC_FASTEST, 1, &error), src_delete);
        return [=](Zep32f* y) {
            SRC_DATA data{};
            data.data_in = d->x();
            data.data_out = y;
            data.input_frames = d->inputs();
            data.output_frames = outputs;
            data.src_ratio = double(r.up) / r.down;
            src_process(state.get(), &data);
        };
    });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    for (const auto rates : zep::bench::kRates) zep::bench::addFamily(rates);
    return zep::bench::runAll(argc, argv);
}
