#include <Eigen/Core>

#include "vector/statistics_loops.h"

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

template <class T>
auto on(const T* x, int n) {
    return Eigen::Map<const Eigen::Array<T, Eigen::Dynamic, 1>>(x, n);
}

Zep64f sum64(const Zep64f* x, int n) { return on(x, n).sum(); }
Zep32f max(const Zep32f* x, int n) { return on(x, n).maxCoeff(); }
Zep32f minMax(const Zep32f* x, int n) { return on(x, n).maxCoeff() - on(x, n).minCoeff(); }
Zep32f norm(const Zep32f* x, int n) { return on(x, n).matrix().norm(); }
Zep64f dot64(const Zep64f* x, const Zep64f* y, int n) {
    return on(x, n).matrix().dot(on(y, n).matrix());
}

}  // namespace

extern const StatisticsEigenPeers statisticsEigen{sum64, max, minMax, norm, dot64};

}  // namespace zep::bench::ZEP_PEER_LEVEL
