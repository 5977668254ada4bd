#include "matrix/transpose_peers.h"

#include <Eigen/Core>
#include <algorithm>

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

// Tiles of 16 by 16, so that a tile's lines stay in the first-level cache.
template <class T>
void loop(const T* __restrict src, int width, int height, T* __restrict dst) {
    constexpr int kTile = 16;
    for (int r0 = 0; r0 < height; r0 += kTile)
        for (int c0 = 0; c0 < width; c0 += kTile) {
            const int rEnd = std::min(r0 + kTile, height), cEnd = std::min(c0 + kTile, width);
            for (int c = c0; c < cEnd; ++c)
                for (int r = r0; r < rEnd; ++r)
                    dst[static_cast<std::ptrdiff_t>(c) * height + r] =
                        src[static_cast<std::ptrdiff_t>(r) * width + c];
        }
}

template <class T>
void eigen(const T* src, int width, int height, T* dst) {
    using M = Eigen::Matrix<T, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
    Eigen::Map<M>(dst, width, height) = Eigen::Map<const M>(src, height, width).transpose();
}

}  // namespace

extern constexpr TransposePeers transposePeers{loop<Zep32f>, loop<Zep64f>, eigen<Zep32f>,
                                               eigen<Zep64f>};

}  // namespace zep::bench::ZEP_PEER_LEVEL
