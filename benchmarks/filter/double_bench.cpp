// Float samples, double taps and sums, in place: families fir64_32f_<taps> at one rate and
// mr64_<up>_<down>_<taps>; a row's size is the count of inputs. Ours filters a copy of the input where
// it stands, the peers filter from a copy behind a history.
#include "filter/double_loops.h"
#include "filter/fftw_filter.h"
#include "filter/multirate_data.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kTaps[] = {16, 64, 512};
constexpr int kSizes[] = {256, 65536};
constexpr Rates kRates[] = {{1, 4, 64, 8192}, {4, 1, 64, 32768}, {3, 2, 72, 16384},
                            {1, 4, 64, 64},   {4, 1, 64, 256},   {3, 2, 72, 128}};

// No function releases these states; the program ends soon.
ZepFIRState* create(const Zep64f* taps, const Rates& r) {
    ZepFIRState* p = nullptr;
    zepsFIRMRInitAlloc64f_32f(&p, taps, r.taps, r.up, 0, r.down, 0, nullptr);
    return p;
}

struct Single : RateData<Zep32f, Zep64f, Zep64f> {
    AlignedArray<Zep64f> reversed, wideLine, wideResult;
    explicit Single(Rates rates)
        : RateData(rates),
          reversed(std::size_t(r.taps)),
          wideLine(line.size()),
          wideResult(std::size_t(r.periods)) {
        std::reverse_copy(taps.begin(), taps.end(), reversed.begin());
        std::fill(wideLine.begin(), wideLine.end(), 0.0);
    }
    Zep64f* wideX() { return wideLine.data() + r.taps; }
};

void addSingleRate(int L, int n) {
    const Rates r{1, 1, L, n};
    const auto d = std::make_shared<Single>(r);
    const auto copy = std::make_shared<AlignedArray<Zep32f>>(d->line.size());
    std::fill(copy->begin(), copy->end(), 0.0f);
    Zep32f* const x = copy->data() + L;
    const Case<Zep32f> rows{"fir64_32f_" + std::to_string(L), n, n, 2.0 * L * n,
                            [=](int q) { return d->expected(q); }};
    rows.ours([=] {
        return [=, state = create(d->taps.data(), r)](Zep32f* y) {
            std::copy_n(d->x(), n, y);
            zepsFIR64f_32f_I(y, n, state);
        };
    });
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(doubleLoops))) {
        rows.peer("block-" + level, [=, block = peers->block] {
            return [=](Zep32f* y) {
                std::copy_n(d->x(), n, x);
                block(d->reversed.data(), L, x - (L - 1), y, n);
                benchmark::DoNotOptimize(copy.get());
            };
        });
        rows.peer("wide-" + level, [=, peers = peers] {
            return [=](Zep32f* y) {
                peers->widen(d->x(), d->wideX(), n);
                peers->blockWide(d->reversed.data(), L, d->wideX() - (L - 1), y, n);
            };
        });
    }
    rows.peer("fftw-os", [=] {
        static std::map<std::pair<int, int>, int> orders;
        int& order = orders[{L, n}];
        native::doubleLoops.widen(d->x(), d->wideX(), n);
        if (order == 0)
            order = FftwOverlapSave<Zep64f>::bestOrder(d->taps.data(), L, d->wideX(), n);
        const auto filter = std::make_shared<FftwOverlapSave<Zep64f>>(d->taps.data(), L, order);
        return [=](Zep32f* y) {
            native::doubleLoops.widen(d->x(), d->wideX(), n);
            filter->run(d->wideX(), d->wideResult.data(), n);
            native::doubleLoops.narrow(d->wideResult.data(), y, n);
        };
    });
}

void addRates(Rates r) {
    const auto d = std::make_shared<RateData<Zep32f, Zep64f, Zep64f>>(r);
    const auto copy = std::make_shared<AlignedArray<Zep32f>>(d->line.size());
    std::fill(copy->begin(), copy->end(), 0.0f);
    Zep32f* const x = copy->data() + r.taps;
    Case<Zep32f> rows{r.name("mr64_"), r.inputs(), r.outputs(), 2.0 * r.products(),
                      [=](int q) { return d->expected(q); }};
    rows.room = std::size_t(r.inputs());
    rows.ours([=] {
        return [=, state = create(d->taps.data(), r)](Zep32f* y) {
            std::copy_n(d->x(), r.inputs(), y);
            zepsFIR64f_32f_I(y, r.periods, state);
        };
    });
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(doubleLoops))) {
        rows.peer("dots-" + level, [=, dots = peers->dots] {
            return [=](Zep32f* y) {
                std::copy_n(d->x(), r.inputs(), x);
                dots(d->filter, x, y, r.periods);
                benchmark::DoNotOptimize(copy.get());
            };
        });
        rows.peer("phases-" + level, [=, phases = peers->phases] {
            return [=](Zep32f* y) { phases(d->filter, d->x(), y, r.periods, d->room.data()); };
        });
    }
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    using namespace zep::bench;
    for (const int taps : kTaps)
        for (const int size : kSizes) addSingleRate(taps, size);
    for (const auto rates : kRates) addRates(rates);
    return runAll(argc, argv);
}
