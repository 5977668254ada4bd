// Plans of the peer, FFTW in single precision, at its best documented setting: PATIENT to 2^13,
// MEASURE above, three seconds a plan. ZEP_BENCH_WISDOM=FILE keeps what planning found from one run
// to the next.
#pragma once

#include <fftw3.h>

#include <cstdlib>

#include "support/buffers.h"
#include "zeptypes.h"

namespace zep::bench {

// Out of place; a plan serves all arrays on cache line boundaries.
class FftwPlan {
public:
    using Make = fftwf_plan (*)(int N, float* src, fftwf_complex* dst, unsigned effort);

    static fftwf_plan complex(int N, float* src, fftwf_complex* dst, unsigned effort) {
        return fftwf_plan_dft_1d(N, reinterpret_cast<fftwf_complex*>(src), dst, FFTW_FORWARD,
                                 effort);
    }
    // N samples to N/2 + 1 bins.
    static fftwf_plan real(int N, float* src, fftwf_complex* dst, unsigned effort) {
        return fftwf_plan_dft_r2c_1d(N, src, dst, effort);
    }

    // Backward: `src` holds the samples, `dst` the spectrum here too. The real one overwrites its
    // spectrum.
    static fftwf_plan complexInverse(int N, float* src, fftwf_complex* dst, unsigned effort) {
        return fftwf_plan_dft_1d(N, dst, reinterpret_cast<fftwf_complex*>(src), FFTW_BACKWARD,
                                 effort);
    }
    static fftwf_plan realInverse(int N, float* src, fftwf_complex* dst, unsigned effort) {
        return fftwf_plan_dft_c2r_1d(N, dst, src, effort);
    }

    FftwPlan(Make make, int order) {
        const char* wisdom = std::getenv("ZEP_BENCH_WISDOM");
        if (wisdom != nullptr) fftwf_import_wisdom_from_filename(wisdom);
        fftwf_set_timelimit(3.0);
        // Planning overwrites its arrays.
        AlignedArray<float> src(std::size_t{2} << order), dst((std::size_t{2} << order) + 2);
        plan_ = make(1 << order, src.data(), reinterpret_cast<fftwf_complex*>(dst.data()),
                     order <= 13 ? FFTW_PATIENT : FFTW_MEASURE);
        if (wisdom != nullptr) fftwf_export_wisdom_to_filename(wisdom);
    }

    ~FftwPlan() { fftwf_destroy_plan(plan_); }
    FftwPlan(const FftwPlan&) = delete;
    FftwPlan& operator=(const FftwPlan&) = delete;

    void run(Zep32fc* src, Zep32fc* dst) const {
        fftwf_execute_dft(plan_, reinterpret_cast<fftwf_complex*>(src),
                          reinterpret_cast<fftwf_complex*>(dst));
    }
    void run(Zep32f* src, Zep32fc* dst) const {
        fftwf_execute_dft_r2c(plan_, src, reinterpret_cast<fftwf_complex*>(dst));
    }
    void run(Zep32fc* src, Zep32f* dst) const {
        fftwf_execute_dft_c2r(plan_, reinterpret_cast<fftwf_complex*>(src), dst);
    }

private:
    fftwf_plan plan_;
};

}  // namespace zep::bench
