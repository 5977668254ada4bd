// Peers that the compiler makes: one source, compiled for each level into zep::bench::<level> as a table
// of functions (zep_peer_loops in benchmarks/CMakeLists.txt). Rows are named <peer>-<level>.
//
//   struct SumPeers { float (*sum)(const float*, int); };
//   ZEP_PEER_TABLE(SumPeers, sumLoops)                           declares it for all levels
//   for (auto [level, peers] : peerLevels(ZEP_PEERS(sumLoops)))  goes over those that run here
#pragma once

#include <string>
#include <utility>
#include <vector>

#define ZEP_PEER_TABLE(Table, name) \
    namespace avx {                 \
    extern const Table name;        \
    }                               \
    namespace v3 {                  \
    extern const Table name;        \
    }                               \
    namespace native {              \
    extern const Table name;        \
    }

#define ZEP_PEERS(name) &avx::name, &v3::name, &native::name

namespace zep::bench {

// The program is built on the machine that runs it, so `native` always does.
template <class Table>
std::vector<std::pair<std::string, const Table*>> peerLevels(const Table* avx, const Table* v3,
                                                             const Table* native) {
    std::vector<std::pair<std::string, const Table*>> levels{{"avx", avx}};
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))
        levels.push_back({"v3", v3});
    levels.push_back({"native", native});
    return levels;
}

}  // namespace zep::bench
