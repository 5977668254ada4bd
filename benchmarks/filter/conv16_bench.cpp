// Convolution of 16-bit samples, scaled and saturated: families conv_16s_x<shorter>, a row's size is
// the length of the longer sequence. The peers compute in floats between conversions by compiled
// loops, as ours does.
#include "filter/checked_rows.h"
#include "filter/fftw_filter.h"
#include "filter/filter_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kLong = 4096;
constexpr int kShorts[] = {32, 64, 1024};
constexpr int kScale = 18;  // keeps all results within range

struct Data {
    AlignedArray<Zep16s> a, b;
    AlignedArray<Zep32f> wideB, reversed, padded, result;  // padded: a between zeros
    explicit Data(int B)
        : a(kLong),
          b(std::size_t(B)),
          wideB(std::size_t(B)),
          reversed(std::size_t(B)),
          padded(std::size_t(kLong + 2 * B)),
          result(std::size_t(kLong + B)) {
        fillUniform(a, -10000, 10000, 1);
        fillUniform(b, -10000, 10000, 2);
        std::fill(padded.begin(), padded.end(), 0.0f);
    }
    Zep32f* wideA() { return padded.data() + (b.size() - 1); }
};

void addConvolution(int B) {
    const int A = kLong, F = A + B - 1;
    const float scale = std::ldexp(1.0f, -kScale);
    const auto d = std::make_shared<Data>(B);
    const Case<Zep16s> rows{"conv_16s_x" + std::to_string(B), A, F, 2.0 * A * B, [=](int n) {
                                Sum sum;
                                for (int k = std::max(0, n - A + 1); k <= std::min(n, B - 1); ++k)
                                    sum.add(double(scale) * d->b[std::size_t(k)],
                                            wide(d->a[std::size_t(n - k)]));
                                return sum;
                            }};
    rows.ours([=] {
        return [=](Zep16s* y) { zepsConv_16s_Sfs(d->a.data(), A, d->b.data(), B, y, kScale); };
    });
    // compute(x, y): from both sequences as floats to the sums.
    const auto add = [&](const std::string& name, const FilterLoops* loops, auto make) {
        rows.peer(name, [=] {
            return [=, compute = make()](Zep16s* y) {
                loops->widen16(d->a.data(), d->wideA(), A);
                loops->widen16(d->b.data(), d->wideB.data(), B);
                compute(d->result.data());
                loops->narrow16(d->result.data(), y, F, scale);
            };
        });
    };
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(filterLoops))) {
        const auto loops = [&, peers = peers](const char* form, auto filter) {
            add(form + ("-" + level), peers, [=] {
                return [=](Zep32f* y) {
                    std::reverse_copy(d->wideB.begin(), d->wideB.end(), d->reversed.begin());
                    filter(d->reversed.data(), B, d->padded.data(), y, F);
                };
            });
        };
        loops("plain", peers->plain);
        loops("block32", peers->block32);
        loops("block64", peers->block64);
    }
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(filterEigen)))
        add("eigen-" + level, &native::filterLoops, [=, convolve = peers->convolve] {
            return [=](Zep32f* y) { convolve(d->wideA(), A, d->wideB.data(), B, y); };
        });
    add("fftw-whole", &native::filterLoops, [=] {
        const auto block = std::make_shared<FftwBlock<Zep32f>>(orderAtLeast(F));
        return [=](Zep32f* y) {
            block->keep(d->wideB.data(), B, true);
            block->load(d->wideA(), A);
            block->convolve();
            std::copy_n(block->samples.begin(), F, y);
        };
    });
    add("fftw-os", &native::filterLoops, [=] {
        static std::map<int, int> orders;
        int& order = orders[B];
        native::filterLoops.widen16(d->b.data(), d->wideB.data(), B);
        if (order == 0)
            order = FftwOverlapSave<Zep32f>::bestOrder(d->wideB.data(), B, d->wideA(), F);
        const auto filter = std::make_shared<FftwOverlapSave<Zep32f>>(d->wideB.data(), B, order);
        return [=](Zep32f* y) {
            filter->prepare();
            filter->run(d->wideA(), y, F);
        };
    });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    using namespace zep::bench;
    for (const int shorter : kShorts) addConvolution(shorter);
    return runAll(argc, argv);
}
