#include "transform/dft_tables.h"

#include "transform/dft_gain.h"
#include "transform/dft_odd.h"
#include "transform/dft_passes.h"
#include "transform/dft_real.h"
#include "transform/dft_short.h"

namespace zep::ZEP_VARIANT::dft {

namespace {

// exp(-2*pi*i*k/N), k ascending, in extended precision: so many roots of the smallest angles, times
// one that they are counted from. Rounded to double they are right but for one in a thousand that
// lies between two values.
class ExactRoots {
public:
    explicit ExactRoots(std::int64_t N) : length_(N) {
        for (int k = 0; k < kFine; ++k) fine_[k] = {unitCosine(k, N), unitSine(k, N)};
    }
    long double cosine() const { return at_.cosine * base_.cosine - at_.sine * base_.sine; }
    long double sine() const { return at_.sine * base_.cosine + at_.cosine * base_.sine; }
    void moveTo(std::int64_t k) {
        if (k / kFine != block_) {
            block_ = k / kFine;
            base_ = {unitCosine(block_ * kFine, length_), unitSine(block_ * kFine, length_)};
        }
        at_ = fine_[k % kFine];
    }

private:
    static constexpr int kFine = 32;
    struct Root {
        long double cosine, sine;
    };
    std::int64_t length_, block_ = 0;
    Root fine_[kFine], base_{1, 0}, at_{1, 0};
};

}  // namespace

// Computed is an eighth of the circle, a quarter or a half, as the length divides; the rest follows
// by symmetry.
template <class T>
Roots<T>::Roots(std::int64_t T0, long double scale)
    : length_(T0), w_(allocate<T>(2 * static_cast<std::size_t>(T0))) {
    if (w_ == nullptr) return;
    const std::int64_t N = length_;
    const std::int64_t computed = N % 4 == 0 ? N / 8 : N % 2 == 0 ? N / 4 : N / 2;
    ExactRoots root(N);
    for (std::int64_t k = 0; k <= computed; ++k) {
        root.moveTo(k);
        w_[2 * k] = static_cast<T>(root.cosine() * scale);
        w_[2 * k + 1] = static_cast<T>(0 - root.sine() * scale);
    }
    if (N % 4 == 0)
        for (std::int64_t k = N / 8 + 1; k <= N / 4; ++k) {
            w_[2 * k] = -w_[2 * (N / 4 - k) + 1];
            w_[2 * k + 1] = -w_[2 * (N / 4 - k)];
        }
    if (N % 2 == 0)
        for (std::int64_t k = N / 4 + 1; k <= N / 2; ++k) {
            w_[2 * k] = -w_[2 * (N / 2 - k)];
            w_[2 * k + 1] = w_[2 * (N / 2 - k) + 1];
        }
    for (std::int64_t k = N / 2 + 1; k < N; ++k) {
        w_[2 * k] = w_[2 * (N - k)];
        w_[2 * k + 1] = -w_[2 * (N - k) + 1];
    }
}

namespace {

// W of r points stands every `stride` roots.
template <class T>
bool buildOdd(T*& table, int r, const Roots<T>& roots) {
    table = allocate<T>(oddTableScalars(r));
    if (table == nullptr) return false;
    const std::int64_t stride = roots.length() / r;
    T* out = table;
    for (int j = 1; j <= (r - 1) / 2; ++j)
        for (int k = 1; k <= (r - 1) / 2; ++k, out += 2) {
            const std::int64_t i = std::int64_t{j} * k % r * stride;
            out[0] = roots.re(i);
            out[1] = -roots.im(i);
        }
    return true;
}

// W(k * (column + firstColumn)) of radix * s points for legs k = 1 .. radix-1 of each vector.
template <class T>
bool buildTwiddles(T*& table, int radix, std::int64_t s, std::int64_t columns,
                   std::int64_t firstColumn, const Roots<T>& roots) {
    const std::int64_t step = roots.length() / (radix * s);
    bool made = true;
    withColumnVector<T>(columns, [&]<class V>(V) {
        constexpr int W = V::lanes;
        const std::int64_t vectors = vectorsOf(columns, W);
        // A table of nothing is still one: one column more than none.
        table = allocate<T>(static_cast<std::size_t>(vectors * (radix - 1) * 2 * W + 1));
        made = table != nullptr;
        if (!made) return;
        T* out = table;
        for (std::int64_t v = 0; v < vectors; ++v)
            for (int k = 1; k < radix; ++k, out += 2 * W)
                for (int slot = 0; slot < W; ++slot) {
                    const std::int64_t q =
                        firstColumn + vectorBegin(v, columns, W) + slotElementOf<V>(slot);
                    out[slot] = roots.re(k * q * step);
                    out[slot + W] = roots.im(k * q * step);
                }
    });
    return made;
}

// The same for the columns 0 .. s-1 of a complex pass, whose last vector begins early; where the
// columns fill none it has lanes behind them. inSlots: the columns of a vector stand in slot order.
template <class T>
bool buildJoinTwiddles(T*& table, int radix, std::int64_t s, bool inSlots, const Roots<T>& roots) {
    constexpr int W = kLanes<T>;
    const std::int64_t step = roots.length() / (radix * s), vectors = vectorsOf(s, W);
    table = allocate<T>(static_cast<std::size_t>(vectors * (radix - 1) * 2 * W));
    if (table == nullptr) return false;
    T* out = table;
    for (std::int64_t v = 0; v < vectors; ++v)
        for (int k = 1; k < radix; ++k, out += 2 * W)
            for (int lane = 0; lane < W; ++lane) {
                const std::int64_t column = (s < W ? v * W : vectorBegin(v, s, W)) +
                                            (inSlots ? simd::slotElement<Real<T>>(lane) : lane);
                const std::int64_t q = column < s ? column : s - 1;
                out[lane] = roots.re(k * q * step);
                out[lane + W] = roots.im(k * q * step);
            }
    return true;
}

constexpr int kBreadth = 2000;  // points that the nearest cache holds

template <class T>
void fillRecords(DftObject<T>& spec, int len, const Factors& factors) {
    spec.mixedRadix = 1;
    spec.lastFactor = factors.count - 1;
    std::int32_t p = 1, n = len, blocks = 1;
    for (int i = 0; i < factors.count; ++i) {
        DftFactor<T>& f = spec.factors[i];
        f.radix = factors.radix[i];
        f.blockCount = blocks;
        blocks = n > kBreadth ? 1 : blocks * f.radix;
        n /= f.radix;
        f.subLength = n;
        f.stride = p;
        p *= f.radix;
    }
}

template <class T>
bool buildOddTables(DftObject<T>& spec, const Factors& factors, const Roots<T>& roots) {
    for (int i = 0; i <= factors.count; ++i) {
        const int r = i < factors.count ? factors.radix[i] : factors.first;
        if (!isGeneric(r)) continue;
        if (i > 0 && factors.radix[i - 1] == r)
            spec.factors[i].oddTable = spec.factors[i - 1].oddTable;
        else if (!buildOdd(spec.factors[i].oddTable, r, roots))
            return false;
    }
    return true;
}

// The order of the passes, and their tables: that of a pass which joins `columns` bins by
// make(table, radix, columns, roots).
template <class T, class Make>
bool buildSchedule(DftObject<T>& spec, int len, const Factors& factors, const Schedule& schedule,
                   Make make) {
    const auto count = static_cast<std::size_t>(schedule.count);
    const Roots<T> roots(len, rootScale<T>(schedule));
    spec.digitPermutation = allocate<std::int32_t>(count + 1);
    if (roots.missing() || spec.digitPermutation == nullptr ||
        !buildOddTables(spec, factors, roots))
        return false;
    __builtin_memcpy(spec.digitPermutation, schedule.radix, count * sizeof(std::int32_t));
    spec.digitPermutation[count] = 0;
    std::int64_t columns = schedule.radix[0];
    for (int i = 1; i < schedule.count; ++i) {
        const int r = schedule.radix[i];
        if (!make(spec.factors[factors.count - i].twiddles, r, columns, roots)) return false;
        columns *= r;
    }
    return true;
}

}  // namespace

template <class T>
bool buildPasses(DftObject<T>& spec, int len, const Factors& factors) {
    fillRecords(spec, len, factors);
    if (const Schedule schedule = shortSchedule<T>(len); schedule.count > 0)
        return buildSchedule(spec, len, factors, schedule,
                             [&](T*& table, int r, std::int64_t s, const Roots<T>& roots) {
                                 return buildShortFactors(
                                     table, r, static_cast<int>(s),
                                     spec.scaleForward != 0 ? spec.scale : T{1},
                                     spec.scaleInverse != 0 ? spec.scale : T{1}, roots);
                             });
    const Schedule schedule = scheduleOf<T>(factors);
    const bool inSlots = isInSlots<T>(schedule.radix[0]);
    return buildSchedule(spec, len, factors, schedule,
                         [=](T*& table, int r, std::int64_t s, const Roots<T>& roots) {
                             return buildJoinTwiddles(table, r, s, inSlots, roots);
                         });
}

// Column 0 has no twiddles, and the upper half of the columns is conjugate to the lower.
bool buildRealPasses(DftObject<float>& spec, const Factors& factors) {
    fillRecords(spec, spec.len, factors);
    return buildSchedule(spec, spec.len, factors, scheduleOf<float>(factors),
                         [](float*& table, int r, std::int64_t s, const Roots<float>& roots) {
                             return buildTwiddles<float>(table, r, s, (s - 1) / 2, 1, roots);
                         });
}

template <class T>
bool buildDirect(DftObject<T>& spec, int len) {
    const Roots<T> roots(len);
    spec.directTable = allocate<T>(directTableScalars<T>(len));
    if (roots.missing() || spec.directTable == nullptr) return false;
    const std::ptrdiff_t padded = paddedPairs<T>(len);
    T* out = spec.directTable;
    for (int k = 1; k <= (len - 1) / 2; ++k, out += 2 * padded)
        for (std::ptrdiff_t j = 0; j < padded; ++j) {
            const std::int64_t i = (j + 1) * k % len;
            out[j] = roots.re(i);
            out[j + padded] = -roots.im(i);
        }
    return true;
}

// k = 1, 2 ..: (1 - i*W(k)) / 2 for the fold; unfolding: W(k).
bool buildFold(DftObject<float>& spec) {
    const std::int64_t count = foldCount(spec.len);
    spec.foldTwiddles = allocate<float>(static_cast<std::size_t>(2 * count));
    spec.unfoldTwiddles = allocate<float>(static_cast<std::size_t>(2 * count));
    if (spec.foldTwiddles == nullptr || spec.unfoldTwiddles == nullptr) return false;
    ExactRoots root(spec.len);
    for (std::int64_t k = 1; k <= count; ++k) {
        float* fold = spec.foldTwiddles + 2 * (k - 1);
        float* unfold = spec.unfoldTwiddles + 2 * (k - 1);
        root.moveTo(k);
        fold[0] = static_cast<float>((1 - root.sine()) / 2);
        fold[1] = static_cast<float>(-root.cosine() / 2);
        unfold[0] = static_cast<float>(root.cosine());
        unfold[1] = static_cast<float>(-root.sine());
    }
    return true;
}

// exp(-i*pi*n^2/len) is root n^2 of 2*len; squares differ by 2n + 1.
template <class T>
bool buildChirp(DftObject<T>& spec, int len) {
    const std::int64_t turn = 2 * std::int64_t{len};
    const Roots<T> roots(turn);
    spec.chirp = allocate<T>(2 * static_cast<std::size_t>(len));
    spec.chirpSpectrum = allocate<T>(2 * static_cast<std::size_t>(spec.convLen));
    if (roots.missing() || spec.chirp == nullptr || spec.chirpSpectrum == nullptr) return false;
    std::int64_t square = 0;
    for (std::int64_t n = 0; n < len; ++n) {
        spec.chirp[2 * n] = roots.re(square);
        spec.chirp[2 * n + 1] = roots.im(square);
        square += 2 * n + 1;
        if (square >= turn) square -= turn;
    }
    T* c = spec.chirpSpectrum;
    const std::int64_t M = spec.convLen;
    for (std::int64_t n = 0; n < 2 * M; ++n) c[n] = 0;
    for (std::int64_t n = 0; n < len; ++n) {
        c[2 * n] = spec.chirp[2 * n];
        c[2 * n + 1] = -spec.chirp[2 * n + 1];
    }
    for (std::int64_t n = 1; n < len; ++n) {
        c[2 * (M - n)] = c[2 * n];
        c[2 * (M - n) + 1] = c[2 * n + 1];
    }
    return true;
}

template <class T>
std::size_t mixedRadixScratch(int len, const Factors& factors) {
    int maxOdd = isGeneric(factors.first) ? factors.first : 0, n = len;
    for (int i = 0; i < factors.count; ++i) {
        const int r = factors.radix[i];
        n /= r;
        const int odd = !isGeneric(r) ? 0 : n % 4 == 0 ? 4 * r : r;
        if (odd > maxOdd) maxOdd = odd;
    }
    return (static_cast<std::size_t>(maxOdd) + static_cast<std::size_t>(len)) * 2 * sizeof(T) + 64;
}

template class Roots<float>;
template class Roots<double>;
template bool buildPasses(DftObject<float>&, int, const Factors&);
template bool buildPasses(DftObject<double>&, int, const Factors&);
template bool buildDirect(DftObject<float>&, int);
template bool buildDirect(DftObject<double>&, int);
template bool buildChirp(DftObject<float>&, int);
template bool buildChirp(DftObject<double>&, int);
template std::size_t mixedRadixScratch<float>(int, const Factors&);
template std::size_t mixedRadixScratch<double>(int, const Factors&);

}  // namespace zep::ZEP_VARIANT::dft
