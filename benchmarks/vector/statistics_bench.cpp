// Reductions, statistics and thresholds beside plain loops that the compiler may reorder, Eigen and VOLK
// where they have the like. Sizes are elements.
#include "support/buffers.h"
#include "support/rows.h"
#include "support/volk_level.h"
#include "vector/statistics_loops.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {64, 1024, 16384, 1 << 20};

// f(x, y, size) on two vectors; its result, if any, is used.
template <class T, class U, class F>
Body onTwo(int size, F f) {
    return [=](benchmark::State& state) {
        const auto n = static_cast<std::size_t>(size);
        AlignedArray<T> x(n);
        AlignedArray<U> y(n);
        const double limit = std::is_floating_point_v<T> ? 1.0 : sizeof(T) == 1 ? 127 : 30000;
        fillUniform(x, std::is_unsigned_v<T> ? 0.0 : -limit, limit, 1);
        fillUniform(y, -limit, limit, 2);
        for (auto _ : state) {
            if constexpr (std::is_void_v<decltype(f(x.data(), y.data(), size))>)
                f(x.data(), y.data(), size);
            else
                benchmark::DoNotOptimize(f(x.data(), y.data(), size));
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

// ours and theirs take (x, y, n); theirs is made of the peers' table.
template <class T, class U = T>
void addFamily(const char* name, auto ours, auto theirs) {
    for (const int size : kSizes) {
        addOurs(name, size, onTwo<T, U>(size, ours));
        for (const auto& [level, peers] : peerLevels(ZEP_PEERS(statisticsLoops)))
            addPeer(name, "loop-" + level, size, onTwo<T, U>(size, theirs(peers)));
    }
}

// A reduction (source, len, result) and its peer (source, len).
template <class T, class R = T>
void addReduction(const char* name, auto ours, auto member) {
    addFamily<T>(
        name,
        [=](const T* x, T*, int n) {
            R result;
            ours(x, n, &result);
            return result;
        },
        [=](const StatisticsPeers* p) {
            return [f = p->*member](const T* x, T*, int n) { return f(x, n); };
        });
}

// A dot product (source, source, len, result) and its peer (source, source, len).
template <class T, class U, class R>
void addDot(const char* name, auto ours, auto member) {
    addFamily<T, U>(
        name,
        [=](const T* x, const U* y, int n) {
            R result;
            ours(x, y, n, &result);
            return result;
        },
        [=](const StatisticsPeers* p) {
            return [f = p->*member](const T* x, const U* y, int n) { return f(x, y, n); };
        });
}

void registerSums() {
    using Peers = StatisticsPeers;
    addReduction<Zep32f>(
        "sum_32f", [](auto x, int n, auto r) { zepsSum_32f(x, n, r, zepAlgHintFast); },
        &Peers::sum);
    addReduction<Zep32f>(
        "sum_32f_accurate", [](auto x, int n, auto r) { zepsSum_32f(x, n, r, zepAlgHintAccurate); },
        &Peers::sum);
    addReduction<Zep64f>("sum_64f", zepsSum_64f, &Peers::sum64);
    addReduction<Zep32s>(
        "sum_32s_Sfs", [](auto x, int n, auto r) { zepsSum_32s_Sfs(x, n, r, 20); }, &Peers::sum32s);
    const auto deviation = [](int hint) {
        return [hint](auto x, int n, auto r) {
            Zep32f mean;
            zepsMeanStdDev_32f(x, n, &mean, r, hint);
            *r += mean;
        };
    };
    addReduction<Zep32f>("meanstddev_32f", deviation(zepAlgHintFast), &Peers::meanStdDev);
    addReduction<Zep32f>("meanstddev_32f_accurate", deviation(zepAlgHintAccurate),
                         &Peers::meanStdDev);
    addReduction<Zep32s>(
        "mean_32s_Sfs", [](auto x, int n, auto r) { zepsMean_32s_Sfs(x, n, r, 0); },
        &Peers::mean32s);
    addReduction<Zep32f>("norm_l2_32f", zepsNorm_L2_32f, &Peers::norm);
    addDot<Zep64f, Zep64f, Zep64f>("dotprod_64f", zepsDotProd_64f, &Peers::dot64);
    addDot<Zep32fc, Zep32fc, Zep32fc>("dotprod_32fc", zepsDotProd_32fc, &Peers::dotComplex);
    addDot<Zep64fc, Zep64fc, Zep64fc>("dotprod_64fc", zepsDotProd_64fc, &Peers::dotComplex64);
    addDot<Zep32s, Zep32s, Zep32s>(
        "dotprod_32s_Sfs",
        [](auto x, auto y, int n, auto r) { zepsDotProd_32s_Sfs(x, y, n, r, 50); }, &Peers::dot32s);
    addDot<Zep16s, Zep32s, Zep32s>(
        "dotprod_16s32s_Sfs",
        [](auto x, auto y, int n, auto r) { zepsDotProd_16s32s_Sfs(x, y, n, r, 31); },
        &Peers::dot16s32s);
}

void registerExtremes() {
    using Peers = StatisticsPeers;
    addReduction<Zep32f>("max_32f", zepsMax_32f, &Peers::max);
    addReduction<Zep32s>("max_32s", zepsMax_32s, &Peers::max32s);
    addReduction<Zep64f>("max_64f", zepsMax_64f, &Peers::max64);
    addReduction<Zep32f, int>("maxorder_32f", zepsMaxOrder_32f, &Peers::order);
    addReduction<Zep32f, int>(
        "minmaxindx_32f",
        [](auto x, int n, auto r) {
            Zep32f low, high;
            int lowIndex;
            zepsMinMaxIndx_32f(x, n, &low, &lowIndex, &high, r);
        },
        &Peers::maxIndx);
    addReduction<Zep32f, int>(
        "maxindx_32f",
        [](auto x, int n, auto r) {
            Zep32f value;
            zepsMaxIndx_32f(x, n, &value, r);
        },
        &Peers::maxIndx);
    const auto range = [](auto minMax) {
        return [minMax](auto x, int n, auto r) {
            auto low = *x;
            minMax(x, n, &low, r);
            *r -= low;
        };
    };
    addReduction<Zep32f>("minmax_32f", range(zepsMinMax_32f), &Peers::minMax);
    addReduction<Zep8u>("minmax_8u", range(zepsMinMax_8u), &Peers::minMax8u);
    addReduction<Zep16s>("minmax_16s", range(zepsMinMax_16s), &Peers::minMax16s);
}

void registerThresholds() {
    addFamily<Zep32f>(
        "maxevery_32f_I", [](auto x, auto y, int n) { zepsMaxEvery_32f_I(x, y, n); },
        [](auto p) { return p->maxEvery; });
    addFamily<Zep32f>(
        "threshold_32f", [](auto x, auto y, int n) { zepsThreshold_32f(x, y, n, 0.1f, 0); },
        [](auto p) { return [p](auto x, auto y, int n) { p->threshold(x, y, n, 0.1f); }; });
    addFamily<Zep32f>(
        "threshold_ltval_32f_I",
        [](auto, auto y, int n) { zepsThreshold_LTVal_32f_I(y, n, 0.1f, 0.5f); },
        [](auto p) { return [p](auto, auto y, int n) { p->thresholdValue(y, n, 0.1f, 0.5f); }; });
}

template <class T>
void addEigen(const char* name, auto member) {
    for (const int size : kSizes)
        for (const auto& [level, peers] : peerLevels(ZEP_PEERS(statisticsEigen)))
            addPeer(name, "eigen-" + level, size,
                    onTwo<T, T>(size, [f = peers->*member](const T* x, const T* y, int n) {
                        if constexpr (requires { f(x, y, n); })
                            return f(x, y, n);
                        else
                            return f(x, n);
                    }));
}

void registerEigen() {
    using Peers = StatisticsEigenPeers;
    addEigen<Zep64f>("sum_64f", &Peers::sum64);
    addEigen<Zep32f>("max_32f", &Peers::max);
    addEigen<Zep32f>("minmax_32f", &Peers::minMax);
    addEigen<Zep32f>("norm_l2_32f", &Peers::norm);
    addEigen<Zep64f>("dotprod_64f", &Peers::dot64);
}

template <class T>
void addVolk(const char* name, const volk_func_desc_t& forms, auto f) {
    for (const int size : kSizes)
        addPeer(name, volkPeer(forms), size, onTwo<T, T>(size, [=](T* x, T* y, int n) {
                    return f(x, y, static_cast<unsigned>(n));
                }));
}

void registerVolk() {
    addVolk<Zep32f>("maxindx_32f", volk_32f_index_max_32u_get_func_desc(),
                    [](auto x, auto, auto n) {
                        std::uint32_t index;
                        volk_32f_index_max_32u(&index, x, n);
                        return index;
                    });
    addVolk<Zep32f>("maxevery_32f_I", volk_32f_x2_max_32f_get_func_desc(),
                    [](auto x, auto y, auto n) { volk_32f_x2_max_32f(y, y, x, n); });
    addVolk<Zep32f>("meanstddev_32f", volk_32f_stddev_and_mean_32f_x2_get_func_desc(),
                    [](auto x, auto, auto n) {
                        Zep32f deviation, mean;
                        volk_32f_stddev_and_mean_32f_x2(&deviation, &mean, x, n);
                        return deviation + mean;
                    });
    addVolk<Zep32fc>("dotprod_32fc", volk_32fc_x2_dot_prod_32fc_get_func_desc(),
                     [](auto x, auto y, auto n) {
                         lv_32fc_t result;
                         volk_32fc_x2_dot_prod_32fc(&result, reinterpret_cast<lv_32fc_t*>(x),
                                                    reinterpret_cast<const lv_32fc_t*>(y), n);
                         return result;
                     });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerSums();
    zep::bench::registerExtremes();
    zep::bench::registerThresholds();
    zep::bench::registerEigen();
    zep::bench::registerVolk();
    return zep::bench::runAll(argc, argv);
}
