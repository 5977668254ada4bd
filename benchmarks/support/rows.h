// Rows of a benchmark program, named family/implementation/size. Our own implementation runs once
// for each column asked for (ZEP_BENCH_VARIANTS=e9,e9_avx512; the machine's best by default) as
// zep_<column>.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zep::bench {

using Body = std::function<void(benchmark::State&)>;

// A row of a peer.
void addPeer(const std::string& family, const std::string& peer, std::int64_t size, Body body);

// A row of ours for each variant asked for; the body runs with that variant's index.
void addOurs(const std::string& family, std::int64_t size, Body body);

// Runs the rows that are registered; the body of every main. The output says the variant, compiler
// and flags.
int runAll(int argc, char** argv);

}  // namespace zep::bench
