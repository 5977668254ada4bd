#include "channel_stats.h"

#include <zeps.h>

#include <algorithm>
#include <cmath>

#include "library_status.h"

namespace mozep_program {

void CompensatedSum::add(double x) {
    const double sum = sum_ + x;
    // Exact: the smaller one's part that did not reach the sum.
    lost_ += std::abs(sum_) >= std::abs(x) ? (sum_ - sum) + x : (x - sum) + sum_;
    sum_ = sum;
}

// Not finite where a sample is not: no square of a float is beyond the doubles.
double ChannelStats::sumOfSquares(const std::vector<float>& block) {
    const int len = static_cast<int>(block.size());
    exact_.resize(block.size());
    double sum = 0;
    requireSuccess(zepsConvert_32f64f(block.data(), exact_.data(), len));
    requireSuccess(zepsDotProd_64f(exact_.data(), exact_.data(), len, &sum));
    return sum;
}

void ChannelStats::dropOthers(std::vector<float>& block) {
    std::size_t kept = 0;
    for (std::size_t n = 0; n < block.size(); ++n) {
        if (!std::isfinite(block[n])) continue;
        places_.push_back(seen_ + static_cast<long long>(n));
        block[kept++] = block[n];
    }
    block.resize(kept);
}

void ChannelStats::takePeak(const std::vector<float>& block) {
    const int len = static_cast<int>(block.size());
    float low = 0, high = 0;
    int lowAt = 0, highAt = 0;
    requireSuccess(zepsMinMaxIndx_32f(block.data(), len, &low, &lowAt, &high, &highAt));
    const float peak = std::max(-low, high);
    if (peak <= peak_) return;
    peak_ = peak;
    const int at = -low == high ? std::min(lowAt, highAt) : -low > high ? lowAt : highAt;
    peakIndex_ = places_.empty() ? seen_ + at : places_[static_cast<std::size_t>(at)];
}

void ChannelStats::add(std::vector<float>& block) {
    const auto size = static_cast<long long>(block.size());
    places_.clear();
    double squares = sumOfSquares(block);
    if (!std::isfinite(squares)) {
        dropOthers(block);
        if (!block.empty()) squares = sumOfSquares(block);
    }
    if (!block.empty()) {
        takePeak(block);
        double sum = 0;
        requireSuccess(zepsSum_64f(exact_.data(), static_cast<int>(block.size()), &sum));
        sum_.add(sum);
        squares_.add(squares);
        counted_ += static_cast<long long>(block.size());
    }
    seen_ += size;
}

}  // namespace mozep_program
