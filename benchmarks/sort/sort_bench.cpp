// Sorts beside the standard library's and Highway's. Every call gets data that it has not seen, out
// of a pool: of one array sorted again and again the branch predictor learns the way. Copying them
// is in the time of all rows alike. Sizes are elements. Highway's sort takes the widest level of the
// processor, and is named after it.
#include <hwy/contrib/sort/vqsort.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <vector>

#include "support/buffers.h"
#include "support/rows.h"
#include "zeps.h"

namespace zep::bench {
namespace {

constexpr int kSizes[] = {10, 30, 100, 250, 1000, 32768, 1 << 20};
constexpr std::size_t kPool = std::size_t{1} << 22;

enum class Data { Random, Rising, Falling, FewValues };

template <class T>
const AlignedArray<T>& pool(Data data) {
    static AlignedArray<T> pools[] = {AlignedArray<T>(2 * kPool), AlignedArray<T>(2 * kPool),
                                      AlignedArray<T>(2 * kPool), AlignedArray<T>(2 * kPool)};
    AlignedArray<T>& p = pools[static_cast<int>(data)];
    if (p[1] == p[0]) {
        fillUniform(p, -1e6, 1e6, 1);
        for (std::size_t n = 0; n < p.size(); ++n) {
            if (data == Data::Rising) p[n] = static_cast<T>(n);
            if (data == Data::Falling) p[n] = static_cast<T>(p.size() - n);
            if (data == Data::FewValues) p[n] = static_cast<T>(static_cast<int>(p[n]) & 7);
        }
    }
    return p;
}

// f(values, indices, scratch, n).
template <class T, class F>
Body onFresh(int size, Data data, F f) {
    return [=](benchmark::State& state) {
        const AlignedArray<T>& from = pool<T>(data);
        const auto n = static_cast<std::size_t>(size);
        AlignedArray<T> values(n);
        AlignedArray<int> indices(n), scratch(n);
        std::size_t at = 0;
        for (auto _ : state) {
            std::memcpy(values.data(), from.data() + at, n * sizeof(T));
            f(values.data(), indices.data(), scratch.data(), size);
            at = (at + n + 3) % kPool;
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * size);
    };
}

template <class T>
void addPlain(const char* name, Data data, ZepStatus (*ours)(T*, int)) {
    for (const int size : kSizes) {
        addOurs(name, size, onFresh<T>(size, data, [=](T* x, int*, int*, int n) { ours(x, n); }));
        addPeer(name, "std::sort", size,
                onFresh<T>(size, data, [](T* x, int*, int*, int n) { std::sort(x, x + n); }));
        addPeer(name, "vqsort-native", size, onFresh<T>(size, data, [](T* x, int*, int*, int n) {
                    static const hwy::Sorter sorter;
                    sorter(x, static_cast<std::size_t>(n), hwy::SortAscending());
                }));
    }
}

template <class T, class Compare>
void addIndexed(const char* name, const char* peer, auto ours, auto standard, Compare compare) {
    for (const int size : kSizes) {
        addOurs(name, size, onFresh<T>(size, Data::Random, ours));
        addPeer(name, peer, size,
                onFresh<T>(size, Data::Random, [=](const T* x, int* index, int*, int n) {
                    std::iota(index, index + n, 0);
                    standard(index, index + n, [=](int a, int b) { return compare(x[a], x[b]); });
                }));
    }
}

void registerAll() {
    addPlain<Zep32f>("sortascend_32f", Data::Random, zepsSortAscend_32f_I);
    addPlain<Zep32s>("sortascend_32s", Data::Random, zepsSortAscend_32s_I);
    addPlain<Zep32f>("sortascend_32f_rising", Data::Rising, zepsSortAscend_32f_I);
    addPlain<Zep32f>("sortascend_32f_falling", Data::Falling, zepsSortAscend_32f_I);
    addPlain<Zep32f>("sortascend_32f_few", Data::FewValues, zepsSortAscend_32f_I);
    addPlain<Zep32s>("sortascend_32s_few", Data::FewValues, zepsSortAscend_32s_I);

    const auto sort = [](auto first, auto last, auto less) { std::sort(first, last, less); };
    const auto stable = [](auto first, auto last, auto less) {
        std::stable_sort(first, last, less);
    };
    const auto indexed = [](auto f) {
        return [f](auto x, int* index, int*, int n) { f(x, index, n); };
    };
    addIndexed<Zep32f>("sortindexascend_32f", "std::sort", indexed(zepsSortIndexAscend_32f_I), sort,
                       [](auto a, auto b) { return a < b; });
    addIndexed<Zep32s>("sortindexdescend_32s", "std::sort", indexed(zepsSortIndexDescend_32s_I),
                       sort, [](auto a, auto b) { return a > b; });
    addIndexed<Zep64f>("sortindexdescend_64f", "std::sort", indexed(zepsSortIndexDescend_64f_I),
                       sort, [](auto a, auto b) { return a > b; });
    addIndexed<Zep32f>(
        "sortradixindexdescend_32f", "std::stable_sort",
        [](auto x, int* index, int* scratch, int n) {
            zepsSortRadixIndexDescend_32f(x, 4, index, scratch, n);
        },
        stable, [](auto a, auto b) { return a > b; });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    zep::bench::registerAll();
    return zep::bench::runAll(argc, argv);
}
