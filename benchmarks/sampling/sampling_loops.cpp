#include "sampling/sampling_loops.h"

#include <algorithm>
#include <vector>

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

[[gnu::always_inline]] inline void exchange(float& a, float& b) {
    const float low = a < b ? a : b, high = a < b ? b : a;
    a = low;
    b = high;
}

void networkMedian3(const Zep32f* __restrict x, Zep32f* __restrict y, int len) {
    for (int n = 1; n < len - 1; ++n) {
        float a = x[n - 1], b = x[n], c = x[n + 1];
        exchange(a, b);
        exchange(b, c);
        exchange(a, b);
        y[n] = b;
    }
}

// The networks of seven and nineteen exchanges that Devillard, Fast median search, 1998, lists.
void networkMedian5(const Zep32f* __restrict x, Zep32f* __restrict y, int len) {
    for (int n = 2; n < len - 2; ++n) {
        float a = x[n - 2], b = x[n - 1], c = x[n], d = x[n + 1], e = x[n + 2];
        exchange(a, b);
        exchange(d, e);
        exchange(a, d);
        exchange(b, e);
        exchange(b, c);
        exchange(c, d);
        exchange(b, c);
        y[n] = c;
    }
}
void networkMedian9(const Zep32f* __restrict x, Zep32f* __restrict y, int len) {
    for (int n = 4; n < len - 4; ++n) {
        float a = x[n - 4], b = x[n - 3], c = x[n - 2], d = x[n - 1], e = x[n], f = x[n + 1],
              g = x[n + 2], h = x[n + 3], i = x[n + 4];
        exchange(b, c), exchange(e, f), exchange(h, i);
        exchange(a, b), exchange(d, e), exchange(g, h);
        exchange(b, c), exchange(e, f), exchange(h, i);
        exchange(a, d), exchange(f, i), exchange(e, h);
        exchange(d, g), exchange(b, e), exchange(c, f);
        exchange(e, h), exchange(e, c), exchange(g, e);
        exchange(e, c);
        y[n] = e;
    }
}

void slidingMedian(const Zep32f* x, Zep32f* y, int len, int mask) {
    const int h = mask / 2;
    const auto at = [=](int n) { return x[std::clamp(n, 0, len - 1)]; };
    std::vector<float> window;
    for (int k = -h; k <= h; ++k) window.push_back(at(k));
    std::sort(window.begin(), window.end());
    for (int n = 0;; ++n) {
        y[n] = window[static_cast<std::size_t>(h)];
        if (n == len - 1) return;
        window.erase(std::lower_bound(window.begin(), window.end(), at(n - h)));
        const float next = at(n + h + 1);
        window.insert(std::lower_bound(window.begin(), window.end(), next), next);
    }
}

void selectedMedian(const Zep32f* x, Zep32f* y, int len, int mask) {
    const int h = mask / 2;
    std::vector<float> window(static_cast<std::size_t>(mask));
    for (int n = 0; n < len; ++n) {
        for (int k = 0; k < mask; ++k)
            window[static_cast<std::size_t>(k)] = x[std::clamp(n - h + k, 0, len - 1)];
        std::nth_element(window.begin(), window.begin() + h, window.end());
        y[n] = window[static_cast<std::size_t>(h)];
    }
}

void preemphasize(Zep32f* x, int n, Zep32f val) {
    float before = 0;
    for (int i = 0; i < n; ++i) {
        const float now = x[i];
        x[i] = now - val * before;
        before = now;
    }
}

void up(const Zep32fc* __restrict x, int n, Zep32fc* __restrict y, int factor, int phase) {
    for (int i = 0; i < n; ++i)
        for (int k = 0; k < factor; ++k) y[i * factor + k] = k == phase ? x[i] : Zep32fc{0, 0};
}
template <class T>
void down(const T* __restrict x, int n, T* __restrict y, int factor, int phase) {
    for (int i = phase, k = 0; i < n; i += factor, ++k) y[k] = x[i];
}

}  // namespace

extern const SamplingPeers samplingLoops{
    networkMedian3, networkMedian5, networkMedian9, slidingMedian, selectedMedian, preemphasize, up,
    down<Zep32f>,   down<Zep32fc>};

}  // namespace zep::bench::ZEP_PEER_LEVEL
