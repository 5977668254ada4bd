// Streaming filters at one rate, real and complex, on long blocks and on those of a real-time caller:
// families fir_32f_<taps> and fir_32fc_<taps>.
#include <liquid/liquid.h>

#include "filter/checked_rows.h"
#include "filter/fftw_filter.h"
#include "filter/filter_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kTaps[] = {8, 16, 32, 64, 128, 512, 1000, 2048};
constexpr int kSizes[] = {256, 65536};

struct Real {
    using T = Zep32f;
    static constexpr const char* name = "fir_32f_";
    static constexpr double operations = 2;  // of a product and its sum
    static constexpr auto create = zepsFIRInitAlloc_32f;
    static constexpr auto filter = zepsFIR_32f;
    static constexpr auto release = zepsFIRFree_32f;
    static constexpr auto liquidCreate = firfilt_rrrf_create;
    static constexpr auto liquidFilter = firfilt_rrrf_execute_block;
    static constexpr auto liquidRelease = firfilt_rrrf_destroy;
    using Liquid = float;
};
struct Complex {
    using T = Zep32fc;
    static constexpr const char* name = "fir_32fc_";
    static constexpr double operations = 8;
    static constexpr auto create = zepsFIRInitAlloc_32fc;
    static constexpr auto filter = zepsFIR_32fc;
    static constexpr auto release = zepsFIRFree_32fc;
    static constexpr auto liquidCreate = firfilt_cccf_create;
    static constexpr auto liquidFilter = firfilt_cccf_execute_block;
    static constexpr auto liquidRelease = firfilt_cccf_destroy;
    using Liquid = liquid_float_complex;
};

// Taps in both orders, samples behind a history of zeros; shared by all rows of a family.
template <class T>
struct Data {
    AlignedArray<T> taps, reversed, line;
    int history;
    Data(int L, int n)
        : taps(std::size_t(L)),
          reversed(std::size_t(L)),
          line(std::size_t(L - 1 + n), std::size_t(64 - (L - 1) % 16)),
          history(L - 1) {
        fillUniform(taps, -1, 1, 1);
        std::reverse_copy(taps.begin(), taps.end(), reversed.begin());
        fillUniform(line, -1, 1, 2);
        std::fill_n(line.begin(), history, T{});
    }
    T* x() { return line.data() + history; }
};

template <class Kind>
void addFamily(int L, int n) {
    using T = typename Kind::T;
    const auto data = std::make_shared<Data<T>>(L, n);
    const Case<T> rows{Kind::name + std::to_string(L), n, n, Kind::operations * L * n, [=](int i) {
                           Sum sum;
                           for (int k = 0; k < L; ++k)
                               sum.add(wide(data->taps[std::size_t(k)]), wide(data->x()[i - k]));
                           return sum;
                       }};
    rows.ours([=] {
        ZepFIRState* p = nullptr;
        Kind::create(&p, data->taps.data(), L, nullptr);
        const std::shared_ptr<ZepFIRState> state(p, Kind::release);
        return [=](T* y) { Kind::filter(data->x(), y, n, state.get()); };
    });
    for (const auto& [level, peers] : peerLevels(ZEP_PEERS(filterLoops))) {
        const auto add = [&](const char* form, auto filter) {
            rows.peer(form + ("-" + level), [=] {
                return [=](T* y) { filter(data->reversed.data(), L, data->line.data(), y, n); };
            });
        };
        if constexpr (std::is_same_v<T, Zep32f>) {
            add("plain", peers->plain);
            add("block32", peers->block32);
            add("block64", peers->block64);
        } else {
            add("plain", peers->plainComplex);
            add("block", peers->blockComplex);
        }
    }
    rows.peer("liquid", [=] {
        using L_ = typename Kind::Liquid;
        const auto filter =
            Kind::liquidCreate(reinterpret_cast<L_*>(data->taps.data()), static_cast<unsigned>(L));
        const std::shared_ptr<std::remove_pointer_t<decltype(filter)>> owner(filter,
                                                                             Kind::liquidRelease);
        return [=](T* y) {
            Kind::liquidFilter(owner.get(), reinterpret_cast<L_*>(data->x()),
                               static_cast<unsigned>(n), reinterpret_cast<L_*>(y));
        };
    });
    rows.peer("fftw-os", [=] {
        static std::map<std::pair<int, int>, int> orders;
        int& order = orders[{L, n}];
        if (order == 0) order = FftwOverlapSave<T>::bestOrder(data->taps.data(), L, data->x(), n);
        const auto filter = std::make_shared<FftwOverlapSave<T>>(data->taps.data(), L, order);
        return [=](T* y) { filter->run(data->x(), y, n); };
    });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    using namespace zep::bench;
    for (const int taps : kTaps)
        for (const int size : kSizes) {
            addFamily<Real>(taps, size);
            addFamily<Complex>(taps, size);
        }
    return runAll(argc, argv);
}
