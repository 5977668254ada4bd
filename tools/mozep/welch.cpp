#include "welch.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>
#include <numeric>

#include "library_status.h"

namespace mozep_program {
namespace {

// Sums of squares stay in float for so many blocks, which costs them 2^-24 * sqrt(256) of relative
// accuracy.
constexpr int kBlocksInFloat = 256;

constexpr double kLowestPower = 1e-20;

float* allocate(int len) {
    float* block = zepsMalloc_32f(len);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

DFTSpecR32f* makeSpec(int N) {
    DFTSpecR32f* spec = nullptr;
    requireSuccess(zepsDFTInitAlloc_R_32f(&spec, N, ZEP_FFT_SCALE_NONE, zepAlgHintNone));
    return spec;
}

// Main lobe of the Hann window's spectrum, relative to its middle, `offset` bins away from it.
double hannLobe(double offset) {
    if (std::abs(offset) < 1e-9) return 1;
    const double x = std::numbers::pi * offset;
    return std::sin(x) / (x * (1 - offset * offset));
}

}  // namespace

Welch::Welch(int N)
    : N_(N),
      spec_(makeSpec(N)),
      window_(allocate(N_)),
      samples_(allocate(N_)),
      spectrum_(allocate(N_)),
      squares_(allocate(N_)),
      sums_(static_cast<std::size_t>(N_)) {
    int bytes = 0;
    requireSuccess(zepsDFTGetBufSize_R_32f(spec_.get(), &bytes));
    scratch_.reset(allocate(bytes / 4 + 1));
    for (int n = 0; n < N_; ++n) {
        const double w = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * n / N_);
        window_.get()[n] = static_cast<float>(w);
        windowSum_ += w;
    }
    requireSuccess(zepsZero_32f(squares_.get(), N_));
}

void Welch::add(std::span<const float> samples) {
    while (!samples.empty()) {
        const std::size_t room = static_cast<std::size_t>(N_ - filled_);
        const auto part = samples.first(std::min(samples.size(), room));
        const int count = static_cast<int>(part.size());
        requireSuccess(zepsCopy_32f(part.data(), samples_.get() + filled_, count));
        filled_ += count;
        unseen_ += count;
        samples = samples.subspan(part.size());
        if (filled_ == N_) transformBlock(windowSum_);
    }
}

void Welch::transformBlock(double windowSum) {
    requireSuccess(zepsMul_32f(samples_.get(), window_.get(), spectrum_.get(), N_));
    requireSuccess(zepsDFTFwd_RToPerm_32f(spectrum_.get(), spectrum_.get(), spec_.get(),
                                          reinterpret_cast<Zep8u*>(scratch_.get())));
    requireSuccess(zepsAddProduct_32f(spectrum_.get(), spectrum_.get(), squares_.get(), N_));
    ++blocks_;
    weight_ += windowSum * windowSum;
    if (++unflushed_ == kBlocksInFloat) flush();
    const int kept = N_ / 2;
    requireSuccess(zepsMove_32f(samples_.get() + N_ - kept, samples_.get(), kept));
    filled_ = kept;
    unseen_ = 0;
}

void Welch::flush() {
    for (std::size_t n = 0; n < sums_.size(); ++n)
        sums_[n] += static_cast<double>(squares_.get()[n]);
    requireSuccess(zepsZero_32f(squares_.get(), N_));
    unflushed_ = 0;
}

void Welch::finish() {
    if (unseen_ > 0) {
        double filledSum = windowSum_;
        if (blocks_ > 0) filledSum = std::accumulate(window_.get(), window_.get() + filled_, 0.0);
        requireSuccess(zepsZero_32f(samples_.get() + filled_, N_ - filled_));
        transformBlock(filledSum);
        filledUp_ = true;
    }
    flush();
}

std::vector<double> Welch::power() const {
    const std::size_t half = sums_.size() / 2;
    const bool even = sums_.size() % 2 == 0;
    // A sine of amplitude 1 gives a bin of half the window's sum. Bin 0 has no mirror image, nor has
    // bin N/2 of an even N, whose only part stands second.
    const double end = blocks_ > 0 ? 1 / weight_ : 0, inner = 4 * end;
    std::vector<double> power(half + 1);
    power[0] = end * sums_[0];
    if (even) power[half] = end * sums_[1];
    const std::size_t pairs = even ? half - 1 : half;
    const double* pair = sums_.data() + (even ? 2 : 1);
    for (std::size_t k = 1; k <= pairs; ++k, pair += 2) power[k] = inner * (pair[0] + pair[1]);
    return power;
}

std::vector<Peak> strongestPeaks(const std::vector<double>& power, std::size_t count) {
    std::vector<Peak> peaks;
    for (std::size_t k = 1; k + 1 < power.size(); ++k) {
        if (power[k] <= kLowestPower || power[k] < power[k - 1] || power[k] <= power[k + 1])
            continue;
        // A tone at offset d in 0 .. 1/2 from bin k has the larger neighbour at the ratio a = (1 +
        // d) / (2 - d) of bin k's magnitude.
        const bool right = power[k + 1] > power[k - 1];
        const double a = std::sqrt(std::max(power[k - 1], power[k + 1]) / power[k]);
        const double offset = std::max(0.0, (2 * a - 1) / (1 + a));
        const double lobe = hannLobe(offset);
        peaks.push_back(
            {static_cast<double>(k) + (right ? offset : -offset), power[k] / (lobe * lobe)});
    }
    std::sort(peaks.begin(), peaks.end(),
              [](const Peak& a, const Peak& b) { return a.level > b.level; });
    if (peaks.size() > count) peaks.resize(count);
    return peaks;
}

double decibel(double power) { return 10 * std::log10(std::max(power, kLowestPower)); }

}  // namespace mozep_program
