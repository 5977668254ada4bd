#include "rational_resampler.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

#include "commands.h"
#include "library_status.h"

namespace mozep_program {
namespace {

// In units of half the lower rate.
constexpr double kPassband = 0.91, kStopband = 1;
constexpr double kRejection = 120;  // dB

// J. F. Kaiser, Nonrecursive Digital Filter Design Using the I0-Sinh Window Function, 1974.
constexpr double kShape = 0.1102 * (kRejection - 8.7);
constexpr double kHalfLength = (kRejection - 7.95) / 14.36 / (kStopband - kPassband);

// An odd number of taps, symmetric, with a sum of `up`.
std::vector<float> lowpass(int up, int down) {
    const int factor = std::max(up, down);
    const int half = static_cast<int>(std::ceil(kHalfLength * factor));
    const int length = 2 * half + 1;
    constexpr int kNoWindow = -1, kAsItIs = 0;
    const double cutoff = (kPassband + kStopband) / 4 / factor;
    std::vector<double> taps(static_cast<std::size_t>(length));
    requireSuccess(zepsFIRGenLowpass_64f(cutoff, taps.data(), length, kNoWindow, kAsItIs));
    std::vector<float> windowed(taps.size(), 1.0F);
    requireSuccess(zepsWinKaiser_32f_I(windowed.data(), length, static_cast<float>(kShape / half)));
    double sum = 0;
    for (std::size_t n = 0; n < taps.size(); ++n) {
        taps[n] *= static_cast<double>(windowed[n]);
        sum += taps[n];
    }
    const double gain = up / sum;
    std::transform(taps.begin(), taps.end(), windowed.begin(),
                   [gain](double tap) { return static_cast<float>(tap * gain); });
    return windowed;
}

}  // namespace

RationalResampler::RationalResampler(int fromRate, int toRate) {
    const int common = std::gcd(fromRate, toRate);
    const int up = toRate / common, down = fromRate / common;
    if (std::max(up, down) > kLargestFactor)
        throw Failure("cannot resample " + std::to_string(fromRate) + " Hz to " +
                      std::to_string(toRate) + " Hz: their ratio, " + std::to_string(down) + ':' +
                      std::to_string(up) + ", has a number above " +
                      std::to_string(kLargestFactor));
    up_ = up;
    down_ = down;
    if (up == down) return;
    const std::vector<float> taps = lowpass(up, down);
    const int length = static_cast<int>(taps.size()), centre = length / 2;
    ZepFIRState* filter = nullptr;
    requireSuccess(
        zepsFIRMRInitAlloc_32f(&filter, taps.data(), length, up, 0, down, centre % down, nullptr));
    filter_.reset(filter);
    ahead_ = centre / down;
    constexpr int kAtOnce = 16384;  // inputs or outputs, unless a single turn has more
    room_ = static_cast<std::size_t>(std::max(kAtOnce / std::max(up, down), 1) * down);
    waiting_.reserve(room_);
}

void RationalResampler::add(std::span<const float> in, std::vector<float>& out) {
    received_ += static_cast<long long>(in.size());
    if (filter_ == nullptr) {
        out.insert(out.end(), in.begin(), in.end());
        return;
    }
    while (!in.empty()) {
        const auto taken = in.first(std::min(in.size(), room_ - waiting_.size()));
        waiting_.insert(waiting_.end(), taken.begin(), taken.end());
        in = in.subspan(taken.size());
        filterWaiting(out);
    }
}

void RationalResampler::finish(std::vector<float>& out) {
    if (filter_ == nullptr) return;
    while (produced_ < lengthAfter(received_)) {
        waiting_.resize(room_);
        filterWaiting(out);
    }
    out.resize(out.size() - static_cast<std::size_t>(produced_ - lengthAfter(received_)));
    produced_ = lengthAfter(received_);
}

// As much of the inputs that wait as the filter can take.
void RationalResampler::filterWaiting(std::vector<float>& out) {
    const auto up = static_cast<std::size_t>(up_), down = static_cast<std::size_t>(down_);
    const std::size_t turns = waiting_.size() / down, count = turns * up, before = out.size();
    if (turns == 0) return;
    out.resize(before + count);
    requireSuccess(
        zepsFIR_32f(waiting_.data(), out.data() + before, static_cast<int>(turns), filter_.get()));
    const auto at = [](auto& values, std::size_t n) {
        return values.begin() + static_cast<std::ptrdiff_t>(n);
    };
    waiting_.erase(waiting_.begin(), at(waiting_, turns * down));
    const auto early = std::min(static_cast<std::size_t>(ahead_), count);
    out.erase(at(out, before), at(out, before + early));
    ahead_ -= static_cast<long long>(early);
    produced_ += static_cast<long long>(count - early);
}

}  // namespace mozep_program
