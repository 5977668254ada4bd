#include "reference/g728_model.h"

#include <algorithm>
#include <cstdlib>

namespace zep::reference {
namespace {

std::size_t at(int i) { return static_cast<std::size_t>(i); }

}  // namespace

Int limited(Int v, int bits) {
    const Int high = (Int{1} << (bits - 1)) - 1;
    return std::clamp(v, -high - 1, high);
}

Int shifted(Int v, int left) {
    for (; left > 0 && v > -(Int{1} << 100) && v < Int{1} << 100; --left) v *= 2;
    for (; left < 0 && v != 0 && v != -1; ++left) v = v >= 0 ? v / 2 : -((1 - v) / 2);
    return v;
}

int rounded16(Int v) { return static_cast<int>(limited(shifted(limited(v, 32) + 32768, -16), 16)); }

int normaliser(Int v, int bits) {
    if (v == 0) return bits - 1;
    int shift = 0;
    const auto fits = [&](Int w) { return w == limited(w, bits); };
    while (!fits(shifted(v, shift))) --shift;
    while (fits(shifted(v, shift + 1))) ++shift;
    return shift;
}

int largest(const Ints& v) {
    const int high = *std::max_element(v.begin(), v.end()),
              low = *std::min_element(v.begin(), v.end());
    return low < -high ? low : high;
}

Ints HybridWindowModel::update(const Ints& samples, const Ints& newExponents, bool block,
                               bool& usable) {
    history.erase(history.begin(), history.begin() + L);
    history.insert(history.end(), samples.begin(), samples.end());
    const int total = M + N + L;
    int q;
    if (block) {
        exponents.erase(exponents.begin(),
                        exponents.begin() + static_cast<long>(newExponents.size()));
        exponents.insert(exponents.end(), newExponents.begin(), newExponents.end());
        q = *std::min_element(exponents.begin(), exponents.end());
    } else {
        q = normaliser(largest(history), 15);
    }
    Ints ws(at(total));
    for (int k = 0; k < total; ++k) {
        const Int product = Int{history[at(k)]} * window[at(total - 1 - k)];
        const int left = block ? q + 1 - exponents[at(k / div)] : q;
        ws[at(k)] = rounded16(shifted(product, left));
    }
    const auto lag = [&](int i, int from, int to) {
        Int sum = 0;
        for (int k = from; k < to; ++k) sum += Int{ws[at(k)]} * ws[at(k - i)];
        return sum;
    };
    const int a = 2 * q;
    // Both sides one place right, and the finer one by the difference more.
    const auto add = [&](Int coarse, int e, Int fresh) {
        const int left = e > a ? -std::min(1 + e - a, 31) : -1;
        const int right = e > a ? -1 : -std::min(1 + a - e, 31);
        return shifted(coarse, left) + shifted(fresh, right);
    };
    Ints lags;
    const int e0 = exponent;
    int n = 0, n2 = 0, e1 = 0;
    Int last = 0;
    for (int i = 0; i <= M; ++i) {
        Int& r = last;
        const Int kept = Int{recursive[at(i)]} * 65536;
        r = add(kept - shifted(kept, -halvings), e0, lag(i, M, M + L));
        if (i == 0) n = normaliser(r, 32), e1 = std::min(e0, a) + n - 1;
        recursive[at(i)] = rounded16(limited(shifted(r, n), 32));
        Int s = add(Int{recursive[at(i)]} * 65536, e1, lag(i, M + L, total));
        if (i == 0) {
            s = limited(s + shifted(s, -8), 32);
            n2 = normaliser(s, 32);
        }
        last = limited(shifted(s, n2), 32);
        lags.push_back(rounded16(last));
    }
    exponent = std::clamp(e1, -32768, 41);  // in one word
    usable = last != 0;
    return lags;
}

LevinsonModel levinsonContinue(const Ints& lags, int start, int end, LevinsonModel from) {
    LevinsonModel m = from;
    int residual = from.residual, shift = 15 - from.scale;
    for (int order = start + 1; order <= end; ++order) {
        Int sum = 0;
        for (int i = 1; i < order; ++i)
            sum = limited(sum + Int{m.a[at(i - 1)]} * lags[at(order - i)], 32);
        sum = limited(shifted(sum, shift + 1), 32);
        const int t = rounded16(limited(Int{lags[at(order)]} * 65536 + sum, 32));
        m.end = LevinsonModel::End::Failed;
        m.failedAt = order;
        if (std::abs(t) >= residual) return m;
        const Int wide = Int{std::abs(t)} * 65536 / residual * 32768;  // |k| in Q31
        const int k = t > 0 ? -rounded16(wide) : rounded16(wide);
        const Int next = limited(Int{residual} * 65536 + Int{2} * k * t, 32);
        if (next <= 0) return m;
        residual = rounded16(next);
        for (int i = 1, j = order - 1; i <= j; ++i, --j) {
            const auto mix = [&](int p, int q) {
                return Int{m.a[at(p - 1)]} * 65536 + Int{2} * k * m.a[at(q - 1)];
            };
            const auto overflows = [](Int v) { return v != limited(v, 32); };
            if (overflows(mix(i, j)) || overflows(mix(j, i))) {
                for (int c = 0; c < order - 1; ++c)
                    m.a[at(c)] = static_cast<int>(shifted(m.a[at(c)], -1));
                ++shift;
            }
            const Int left = mix(i, j), right = mix(j, i);
            m.a[at(i - 1)] = rounded16(left);
            m.a[at(j - 1)] = rounded16(right);
        }
        const int newest = rounded16(shifted(wide, -shift));
        m.a.resize(at(order));
        m.a[at(order - 1)] = t > 0 ? -newest : newest;
    }
    m.scale = 15 - shift;
    m.end = m.scale > 12 ? LevinsonModel::End::Good : LevinsonModel::End::OutOfScale;
    if (m.end == LevinsonModel::End::Good) m.residual = residual;
    return m;
}

LevinsonModel levinsonFirst(const Ints& lags, int order) {
    LevinsonModel m;
    const Int q = Int{std::abs(lags[1])} * 65536 / lags[0];
    const int k = q >= 65536 ? 32767 : rounded16(limited(q * 32768, 32));
    m.reflect = lags[1] > 0 ? -k : k;
    m.a = {m.reflect};
    m.residual = rounded16(limited(Int{lags[0]} * 65536 + Int{2} * lags[1] * m.reflect, 32));
    return levinsonContinue(lags, 1, order, m);
}

VectorModel ringingModel(const Ints& a, const PastModel& past) {
    VectorModel z{past[0].exponent, Ints(5)};
    for (const VectorModel& v : past) z.exponent = std::min(z.exponent, v.exponent);
    for (int n = 0; n < 5; ++n) {
        Int t = 0;
        for (int k = 1; k <= n; ++k) t = limited(t - Int{a[at(k - 1)]} * z.x[at(n - k)], 32);
        for (int j = 0; j < 10; ++j) {
            Int part = 0;
            // Tap i (from 1) meets the sample that many places before n.
            for (int i = n + 5 * j + 1; i <= std::min(n + 5 * j + 5, 50); ++i)
                part -= Int{a[at(i - 1)]} * past[at(j)].x[at(n + 5 * j + 5 - i)];
            const int right = past[at(j)].exponent - z.exponent;
            if (j == 9 && right >= 30) part = 0;
            t = limited(t + shifted(part, -right), 32);
        }
        z.x[at(n)] = static_cast<int>(limited(shifted(t, -14), 16));
    }
    const int high = *std::max_element(z.x.begin(), z.x.end()),
              low = *std::min_element(z.x.begin(), z.x.end());
    int shift = 0;
    if (high == 0 && low == 0) {
        z.exponent += 14;
        return z;
    }
    while (shifted(high, shift) >= 16384 || shifted(low, shift) <= -16385) --shift;
    while (shifted(std::max(high, -low), shift) < 8192 && shift >= 0) ++shift;
    for (int& v : z.x) v = static_cast<int>(shifted(v, shift));
    z.exponent += shift;
    return z;
}

VectorModel restModel(const Ints& a, VectorModel e) {
    for (;;) {
        VectorModel u{e.exponent, {}};
        for (int n = 0; n < 5; ++n) {
            Int sum = Int{e.x[at(n)]} * 16384;
            for (int k = 1; k <= n; ++k) sum -= Int{a[at(k - 1)]} * u.x[at(n - k)];
            if (sum != limited(sum, 29)) break;
            u.x.push_back(static_cast<int>(shifted(sum, -14)));
        }
        if (u.x.size() == 5) return u;
        for (int& v : e.x) v = static_cast<int>(shifted(v, -1));
        --e.exponent;
    }
}

VectorModel speechModel(const VectorModel& z, const VectorModel& u) {
    VectorModel s{std::min(z.exponent, u.exponent), {}};
    const Int high = shifted(4095, s.exponent);
    for (std::size_t n = 0; n < 5; ++n) {
        const Int sum =
            shifted(z.x[n], s.exponent - z.exponent) + shifted(u.x[n], s.exponent - u.exponent);
        s.x.push_back(static_cast<int>(limited(std::clamp(sum, -high, high), 16)));
    }
    const int shift = normaliser(largest(s.x), 14);
    for (int& v : s.x) v = static_cast<int>(shifted(v, shift));
    s.exponent += shift;
    return s;
}

int inQ2(int word, int exponent) {
    return static_cast<int>(limited(shifted(word, 2 - exponent), 16));
}

namespace {

// The pole-zero sum in Q14, limited with each term.
Int poleZeroSum(const Ints& bc, int x, const Ints& inputs, const Ints& outputs) {
    Int sum = Int{x} * 16384;
    for (std::size_t i = 0; i < 10; ++i) sum = limited(sum + Int{bc[i]} * inputs[i], 32);
    for (std::size_t i = 0; i < 10; ++i) sum = limited(sum - Int{bc[10 + i]} * outputs[i], 32);
    return sum;
}

void remember(Ints& memory, int x) {
    memory.insert(memory.begin(), x);
    memory.pop_back();
}

}  // namespace

int poleZeroModel(const Ints& bc, int x, Ints& inputs, Ints& outputs) {
    const int y = static_cast<int>(limited(shifted(poleZeroSum(bc, x, inputs, outputs), -14), 16));
    remember(inputs, x);
    remember(outputs, y);
    return y;
}

Ints energiesModel(const std::vector<Ints>& shapes, const Ints& impulse) {
    Ints energies;
    for (const Ints& y : shapes) {
        Int energy = 0;
        for (int n = 0; n < 5; ++n) {
            Int sum = 0;
            for (int k = 0; k <= n; ++k) sum += Int{impulse[at(k)]} * y[at(n - k)];
            const Int z = limited(shifted(sum, -14), 16);
            energy += z * z;
        }
        energies.push_back(static_cast<int>(std::min<Int>(shifted(energy, -15), 65535)));
    }
    return energies;
}

SearchModel searchModel(const std::vector<Ints>& shapes, const Ints& target, const Ints& energies,
                        int rate) {
    const std::vector<Int> thresholds = rate == 17   ? std::vector<Int>{5808, 10164, 17787}
                                        : rate == 14 ? std::vector<Int>{7126}
                                                     : std::vector<Int>{8253};
    const std::vector<Int> a = rate == 17   ? std::vector<Int>{-4224, -7392, -12936, -22638}
                               : rate == 14 ? std::vector<Int>{-4308, -12800}
                                            : std::vector<Int>{-4626, -15874};
    const std::vector<Int> b = rate == 17   ? std::vector<Int>{545, 1668, 5107, 15640}
                               : rate == 14 ? std::vector<Int>{566, 5000}
                                            : std::vector<Int>{653, 7690};
    const int count = rate == 17 ? 128 : rate == 14 ? 64 : 16;
    SearchModel best{0, 0, 0};
    Int least = 0x7FFFFFFF;
    for (int j = 0; j < count; ++j) {
        Int p = 0;
        for (std::size_t n = 0; n < 5; ++n) p += Int{target[n]} * shapes[at(j)][n];
        const Int q = p < 0 ? -p : p, energy = energies[at(j)];
        std::size_t level = thresholds.size();
        while (level > 0 && q < thresholds[level - 1] * energy) --level;
        const Int d = a[level] * limited(shifted(q, -14), 16) + b[level] * energy;
        if (d >= least) continue;
        least = d;
        best = {j, static_cast<int>(level) + (p < 1 ? 4 : 0), 0};
    }
    best.code = 8 * best.shape + best.gain;
    return best;
}

namespace {

struct Divided {
    int word, exponent;
};

// num and den not negative, den not 0.
Divided divided(int num, int numExponent, int den, int denExponent) {
    int exponent = numExponent - denExponent + 14;
    if (num < den) num *= 2, ++exponent;
    int quotient = 0;
    for (int i = 0; i < 15; ++i) {
        const bool above = num > den;
        quotient = 2 * quotient + above;
        num = 2 * (above ? num - den : num);
    }
    return {std::min(quotient + (num > den), 32767), exponent};
}

}  // namespace

Ints PostfilterModel::filter(int gl, int glb, int kp, int tilt, const Ints& coefficients,
                             const Ints& x) {
    const auto fromQ14 = [](Int v) { return limited(shifted(limited(v, 32) + 8192, -14), 32); };
    Ints w;
    int in = 0, out = 0;
    for (int n = 0; n < 5; ++n) {
        const int now = x[at(kp + n)], past = x[at(n)];
        const Int sum = fromQ14(Int{now} * 16384 + Int{glb} * past);
        const int u = static_cast<int>(limited(fromQ14(gl * sum), 16));
        const Int v = poleZeroSum(coefficients, u, inputs, outputs);
        w.push_back(
            static_cast<int>(limited(shifted(limited(v + Int{tilt} * outputs[0], 32), -14), 16)));
        remember(inputs, u);
        remember(outputs, static_cast<int>(limited(shifted(v, -14), 16)));
        in += std::abs(now);
        out += std::abs(w.back());
    }
    Divided ratio{16384, 14};
    if (out > 4) {
        const int ni = normaliser(in, 32), no = normaliser(out, 32);
        ratio = divided(rounded16(shifted(in, ni)), ni - 16, rounded16(shifted(out, no)), no - 16);
    }
    const int right = ratio.exponent - 14 + 7;
    const Int step = right > 30 ? 0 : limited(shifted(Int{20972} * ratio.word, -right), 32);
    Ints y;
    for (const int v : w) {
        gain = rounded16(limited((step + Int{16220} * gain) * 4, 32));
        y.push_back(rounded16(limited(Int{gain} * v * 4, 32)));
    }
    return y;
}

int PitchModel::extract(const Ints& residual) {
    const int zeros[] = {18721, -3668, -3668, 18721}, poles[] = {-19172, 16481, -5031};
    for (int n = 220; n < 240; ++n) {
        Int sum = 0;
        for (int i = 0; i < 4; ++i) sum = limited(sum + Int{zeros[i]} * residual[at(n - i)], 32);
        sum = shifted(sum, -6);
        for (std::size_t i = 0; i < 3; ++i) sum = limited(sum - Int{poles[i]} * past[i], 32);
        remember(past, rounded16(limited(sum * 8, 32)));
        if (n % 4 == 3) {
            decimated.erase(decimated.begin());
            decimated.push_back(past[0]);
        }
    }
    const auto correlate = [](const Ints& x, int window, int lag, bool self) {
        Int sum = 0;
        const int size = static_cast<int>(x.size());
        for (int k = size - window; k < size; ++k)
            sum += Int{x[at(self ? k - lag : k)]} * x[at(k - lag)];
        return sum;
    };
    const auto best = [&](const Ints& x, int window, int low, int high) {
        int lag = high;
        for (int l = high; l >= low; --l)
            if (correlate(x, window, l, false) >= correlate(x, window, lag, false)) lag = l;
        return lag;
    };
    const auto around = [&](int p) {
        return best(residual, 100, std::max(p - 6, 20), std::min(p + 6, 140));
    };
    const int found = around(4 * best(decimated, 25, 5, 35)), other = around(period);
    const Int e = limited(correlate(residual, 100, found, true), 32),
              eOther = limited(correlate(residual, 100, other, true), 32),
              c = std::clamp<Int>(correlate(residual, 100, found, false), 0, e),
              cOther = std::clamp<Int>(correlate(residual, 100, other, false), 0, eOther);
    const int n = normaliser(std::max(e, eOther), 32);
    const auto top = [n](Int v) { return shifted(shifted(v, n), -16); };
    period = top(cOther) * top(e) > shifted(top(c) * top(eOther), -16) * 26214 ? other : found;
    return period;
}

}  // namespace zep::reference
