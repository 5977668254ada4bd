// Plans of the peer, FFTW in single and double precision, at its best documented setting: PATIENT to
// 2^13 points, MEASURE above, three seconds a plan. ZEP_BENCH_WISDOM=FILE keeps what planning found
// from one run to the next, in FILE for floats and FILE.double for doubles.
#pragma once

#include <fftw3.h>

#include <cstdlib>
#include <string>

#include "support/buffers.h"
#include "zeptypes.h"

namespace zep::bench {

// The peer's names by scalar type.
template <class T>
struct Fftw;
template <>
struct Fftw<float> {
    using Plan = fftwf_plan;
    using Complex = fftwf_complex;
    using Element = Zep32fc;
    static constexpr const char* wisdomSuffix = "";
    static constexpr auto planComplex = fftwf_plan_dft_1d;
    static constexpr auto planReal = fftwf_plan_dft_r2c_1d;
    static constexpr auto planRealInverse = fftwf_plan_dft_c2r_1d;
    static constexpr auto executeComplex = fftwf_execute_dft;
    static constexpr auto executeReal = fftwf_execute_dft_r2c;
    static constexpr auto executeRealInverse = fftwf_execute_dft_c2r;
    static constexpr auto destroy = fftwf_destroy_plan;
    static constexpr auto setTimeLimit = fftwf_set_timelimit;
    static constexpr auto importWisdom = fftwf_import_wisdom_from_filename;
    static constexpr auto exportWisdom = fftwf_export_wisdom_to_filename;
};
template <>
struct Fftw<double> {
    using Plan = fftw_plan;
    using Complex = fftw_complex;
    using Element = Zep64fc;
    static constexpr const char* wisdomSuffix = ".double";
    static constexpr auto planComplex = fftw_plan_dft_1d;
    static constexpr auto planReal = fftw_plan_dft_r2c_1d;
    static constexpr auto planRealInverse = fftw_plan_dft_c2r_1d;
    static constexpr auto executeComplex = fftw_execute_dft;
    static constexpr auto executeReal = fftw_execute_dft_r2c;
    static constexpr auto executeRealInverse = fftw_execute_dft_c2r;
    static constexpr auto destroy = fftw_destroy_plan;
    static constexpr auto setTimeLimit = fftw_set_timelimit;
    static constexpr auto importWisdom = fftw_import_wisdom_from_filename;
    static constexpr auto exportWisdom = fftw_export_wisdom_to_filename;
};

// Out of place; a plan serves all arrays on cache line boundaries.
template <class T>
class FftwPlan {
    using Peer = Fftw<T>;
    using Bin = typename Peer::Complex;

public:
    using Make = typename Peer::Plan (*)(int N, T* src, Bin* dst, unsigned effort);

    static typename Peer::Plan complex(int N, T* src, Bin* dst, unsigned effort) {
        return Peer::planComplex(N, reinterpret_cast<Bin*>(src), dst, FFTW_FORWARD, effort);
    }
    // N samples to N/2 + 1 bins.
    static typename Peer::Plan real(int N, T* src, Bin* dst, unsigned effort) {
        return Peer::planReal(N, src, dst, effort);
    }

    // Backward: `src` holds the samples, `dst` the spectrum here too. The real one overwrites its
    // spectrum.
    static typename Peer::Plan complexInverse(int N, T* src, Bin* dst, unsigned effort) {
        return Peer::planComplex(N, dst, reinterpret_cast<Bin*>(src), FFTW_BACKWARD, effort);
    }
    static typename Peer::Plan realInverse(int N, T* src, Bin* dst, unsigned effort) {
        return Peer::planRealInverse(N, dst, src, effort);
    }

    FftwPlan(Make make, int N) {
        const char* path = std::getenv("ZEP_BENCH_WISDOM");
        const std::string wisdom = path == nullptr ? "" : path + std::string(Peer::wisdomSuffix);
        if (!wisdom.empty()) Peer::importWisdom(wisdom.c_str());
        Peer::setTimeLimit(3.0);
        // Planning overwrites its arrays.
        const auto points = static_cast<std::size_t>(N);
        AlignedArray<T> src(2 * points), dst(2 * points + 2);
        plan_ = make(N, src.data(), reinterpret_cast<Bin*>(dst.data()),
                     N <= 8192 ? FFTW_PATIENT : FFTW_MEASURE);
        if (!wisdom.empty()) Peer::exportWisdom(wisdom.c_str());
    }

    ~FftwPlan() { Peer::destroy(plan_); }
    FftwPlan(const FftwPlan&) = delete;
    FftwPlan& operator=(const FftwPlan&) = delete;

    void run(typename Peer::Element* src, typename Peer::Element* dst) const {
        Peer::executeComplex(plan_, reinterpret_cast<Bin*>(src), reinterpret_cast<Bin*>(dst));
    }
    void run(T* src, typename Peer::Element* dst) const {
        Peer::executeReal(plan_, src, reinterpret_cast<Bin*>(dst));
    }
    void run(typename Peer::Element* src, T* dst) const {
        Peer::executeRealInverse(plan_, reinterpret_cast<Bin*>(src), dst);
    }

private:
    typename Peer::Plan plan_;
};

}  // namespace zep::bench
