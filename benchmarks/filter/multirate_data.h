// Taps and samples of a rate change, and the taps as the compiled peers want them.
#pragma once

#include "filter/checked_rows.h"
#include "filter/multirate_loops.h"

namespace zep::bench {

struct Rates {
    int up, down, taps, periods;
    std::string name(const char* family) const {
        return family + std::to_string(up) + "_" + std::to_string(down) + "_" +
               std::to_string(taps);
    }
    int inputs() const { return down * periods; }
    int outputs() const { return up * periods; }
    double products() const { return double(taps / up) * outputs(); }
};

template <class Sample, class Tap = Sample, class Room = Sample>
struct RateData {
    AlignedArray<Tap> taps, rows;
    AlignedArray<Sample> line;
    AlignedArray<Room> room;
    Rates r;
    PolyphaseOf<Tap> filter;

    explicit RateData(Rates rates)
        : taps(std::size_t(rates.taps)),
          rows(std::size_t(rates.up * (rates.taps / rates.up + 16))),
          line(std::size_t(rates.taps + rates.inputs())),
          room(std::size_t(rates.down) * std::size_t(rates.periods + rates.taps + 128)),
          r(rates) {
        fillUniform(taps, -1, 1, 1);
        fillUniform(line, -1, 1, 2);
        fillUniform(room, -1, 1, 3);
        std::fill_n(line.begin(), r.taps, Sample{});
        std::fill(rows.begin(), rows.end(), Tap{});
        const int K = r.taps / r.up, rowLen = (K + 15) / 16 * 16;
        filter = {r.up, r.down, K, rows.data(), rowLen};
        for (int p = 0; p < r.up; ++p)
            for (int k = 0; k < K; ++k)
                rows[std::size_t((p + 1) * rowLen - 1 - k)] =
                    taps[std::size_t(p * r.down % r.up + k * r.up)];
    }
    Sample* x() { return line.data() + r.taps; }
    Sum expected(int q) {
        Sum sum;
        for (int i = 0; i < r.inputs(); ++i) {
            const int k = q * r.down - i * r.up;
            if (k >= 0 && k < r.taps) sum.add(wide(taps[std::size_t(k)]), wide(x()[i]));
        }
        return sum;
    }
};

}  // namespace zep::bench
