#include "transform/dft_schedule.h"

#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

// Radices that are products, or powers of two, by their exponents of 2, 3, 5 and 7.
struct Composite {
    int radix;
    int exponents[4];
};
constexpr Composite kComposites[] = {
    {16, {4, 0, 0, 0}}, {15, {0, 1, 1, 0}}, {14, {1, 0, 0, 1}}, {12, {2, 1, 0, 0}},
    {10, {1, 0, 1, 0}}, {9, {0, 2, 0, 0}},  {8, {3, 0, 0, 0}},  {7, {0, 0, 0, 1}},
    {6, {1, 1, 0, 0}},  {5, {0, 0, 1, 0}},  {4, {2, 0, 0, 0}},  {3, {0, 1, 0, 0}},
    {2, {1, 0, 0, 0}},
};
constexpr int kCompositeCount = sizeof kComposites / sizeof *kComposites;

// Nanoseconds of a pass for each vector of complex elements and leg, by radix: fitted to some
// thousands of whole transforms on Zen 5; 7, 11, 13 and 14 by their operations. The first stage has
// its own for each width of elements, which are turned in squares, and bears what whole vectors from
// it on save the last pass.
struct PassCosts {
    double firstFloat[17], firstDouble[17], join[17];
};
constexpr PassCosts kFewRegisters = {
    {0, 0, 1.6, 2.5, 1.55, 2.45, 2.2, 2.9, 1.85, 2.2, 2.15, 3.3, 2.15, 3.7, 2.9, 2.5, 2.2},
    {0, 0, 0.8, 1.1, 0.65, 1.0, 1.1, 1.6, 1.0, 1.3, 1.45, 2.2, 1.2, 2.6, 1.9, 1.6, 1.45},
    {0, 0, 0.55, 0.65, 0.7, 1.05, 0.85, 1.55, 1.0, 1.4, 1.45, 2.4, 1.4, 2.8, 1.95, 1.85, 1.7}};
constexpr PassCosts kManyRegisters = {
    {0, 0, 1.5, 1.5, 1.5, 1.6, 1.7, 1.8, 1.6, 2.0, 2.0, 2.4, 1.9, 3.0, 2.4, 2.4, 1.5},
    {0, 0, 1.5, 1.5, 1.5, 1.6, 1.7, 1.8, 1.6, 2.0, 2.0, 2.4, 1.9, 3.0, 2.4, 2.4, 1.5},
    {0, 0, 1.1, 1.25, 1.3, 1.5, 1.5, 1.8, 1.5, 1.9, 1.8, 2.4, 1.8, 3.0, 2.4, 2.4, 2.1}};
constexpr PassCosts kCosts = simd::kVectorRegisters > 16 ? kManyRegisters : kFewRegisters;
template <class T>
constexpr const double (&kFirstCosts)[17] = sizeof(T) == 4 ? kCosts.firstFloat : kCosts.firstDouble;
constexpr double kCallCost = 4;
// A vector that the columns do not fill is loaded and stored in pieces.
constexpr double kPartialFactor = simd::kMaskedMemory ? 1.0 : 1.5;

// Columns of whole vectors, of whole 16 bytes, and others, where every load may cross a line.
template <class T>
constexpr double alignmentFactor(std::int64_t columns) {
    constexpr int W = fft::kLanes<T>;
    const std::int64_t odd = columns % W;
    return odd == 0 ? 1.0 : odd % (16 / int{sizeof(T)}) == 0 ? 1.1 : 1.3;
}

constexpr double costOfRadix(const double (&costs)[17], int radix) {
    return radix * (radix <= 16 ? costs[radix] : 0.2 * radix);
}

// Chooses among all ways to write a length as a product of radices.
template <class T>
class Chooser {
public:
    Chooser(const Factors& factors) : limit_(factors.count + 1) {
        take(factors.first);
        for (int i = 0; i < factors.count; ++i) take(factors.radix[i]);
    }
    Schedule choose() {
        extend(0);
        return best_;
    }

private:
    static constexpr int W = fft::kLanes<T>;

    void take(int radix) {
        len_ *= radix;
        static constexpr int kPrimes[] = {2, 3, 5, 7};
        for (int p = 0; p < 4; ++p)
            for (; radix % kPrimes[p] == 0; radix /= kPrimes[p]) ++exponents_[p];
        if (radix > 1) current_.radix[current_.count++] = radix;
    }

    void extend(int from) {
        if (exponents_[0] + exponents_[1] + exponents_[2] + exponents_[3] == 0) return consider();
        if (current_.count == limit_) return;
        for (int c = from; c < kCompositeCount; ++c) {
            const Composite& k = kComposites[c];
            bool fits = true;
            for (int p = 0; p < 4; ++p) fits = fits && exponents_[p] >= k.exponents[p];
            if (!fits) continue;
            for (int p = 0; p < 4; ++p) exponents_[p] -= k.exponents[p];
            current_.radix[current_.count++] = k.radix;
            extend(c);
            --current_.count;
            for (int p = 0; p < 4; ++p) exponents_[p] += k.exponents[p];
        }
    }

    // Any of the radices may be the first stage.
    void consider() {
        if (current_.count < 2) return;
        for (int i = 0; i < current_.count; ++i) {
            Schedule s = current_;
            s.radix[s.count] = 0;
            s.radix[0] = current_.radix[i];
            for (int j = 0, to = 1; j < s.count; ++j)
                if (j != i) s.radix[to++] = current_.radix[j];
            if (!runs(s)) continue;
            const double cost = costOf(s);
            if (best_.count == 0 || cost < bestCost_) {
                best_ = s;
                bestCost_ = cost;
            }
        }
    }

    // Outside the short ones the first stage of a radix with code of its own and the last pass take
    // whole vectors only. A stage of the largest radix in between leaves them both enough.
    bool runs(const Schedule& s) const {
        if (isShort(s.radix)) return true;
        std::int64_t columns = s.radix[0];
        for (int i = 1; i + 1 < s.count; columns *= s.radix[i++])
            if (columns < W && !joinsFewColumns(s.radix[i])) return false;
        const std::int64_t lastColumns = len_ / s.radix[s.count - 1];
        return lastColumns >= W && (isGeneric(s.radix[0]) || len_ / s.radix[0] >= W);
    }

    double costOf(const Schedule& s) const {
        const auto vectors = [](std::int64_t n) { return static_cast<double>((n + W - 1) / W); };
        std::int64_t product = s.radix[0];
        double cost = vectors(len_ / product) * costOfRadix(kFirstCosts<T>, s.radix[0]);
        // Transposed squares beyond what a large radix fills.
        if (isShort(s.radix) && s.radix[0] >= 14) cost *= 1.3;
        for (int i = 1; i < s.count; ++i) {
            const int r = s.radix[i];
            const auto groups = static_cast<double>(len_ / (product * r));
            const double factor = isShort(s.radix) ? 1.0
                                  : product < W    ? kPartialFactor
                                                   : alignmentFactor<T>(product);
            cost += kCallCost + groups * vectors(product) * factor * costOfRadix(kCosts.join, r);
            product *= r;
        }
        return cost;
    }

    std::int64_t len_ = 1;
    int limit_;
    int exponents_[4] = {};
    Schedule current_, best_;
    double bestCost_ = 0;
};

}  // namespace

template <class T>
Schedule scheduleOf(const Factors& factors) {
    return Chooser<T>(factors).choose();
}

template Schedule scheduleOf<float>(const Factors&);
template Schedule scheduleOf<double>(const Factors&);

}  // namespace zep::ZEP_VARIANT::dft
