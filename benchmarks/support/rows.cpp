#include "support/rows.h"

#include <cstdlib>
#include <map>
#include <sstream>

#include "core/selection.h"

namespace zep::bench {
namespace {

const std::map<std::string, int> kCpuOfTag = {
    {"m7", 66}, {"u8", 67}, {"n8", 36}, {"y8", 68}, {"e9", 70}};

std::vector<std::string> variantsAsked() {
    const char* text = std::getenv("ZEP_BENCH_VARIANTS");
    if (text == nullptr) {
        static constexpr const char* kTagOfSlot[kVariantSlots] = {"m7", "m7", "u8",
                                                                  "n8", "y8", "e9"};
        zepSelectVariantAuto();
        return {kTagOfSlot[variantIndex]};
    }
    std::vector<std::string> tags;
    std::istringstream in{text};
    for (std::string tag; std::getline(in, tag, ',');)
        if (kCpuOfTag.contains(tag)) tags.push_back(tag);
    return tags;
}

}  // namespace

void addPeer(const std::string& family, const std::string& peer, std::int64_t size, Body body) {
    benchmark::RegisterBenchmark((family + "/" + peer + "/" + std::to_string(size)).c_str(),
                                 std::move(body));
}

void addOurs(const std::string& family, std::int64_t size, Body body) {
    for (const std::string& tag : variantsAsked())
        addPeer(family, "zep_" + tag, size,
                [cpu = kCpuOfTag.at(tag), body](benchmark::State& state) {
                    zepSelectVariantForCpu(cpu);
                    body(state);
                });
}

int runAll(int argc, char** argv) {
    std::string variants;
    for (const std::string& tag : variantsAsked()) variants += (variants.empty() ? "" : ",") + tag;
    benchmark::AddCustomContext("variants", variants);
    benchmark::AddCustomContext("compiler", ZEP_BENCH_COMPILER);
    benchmark::AddCustomContext("flags", ZEP_BENCH_FLAGS);
    benchmark::AddCustomContext("peer_flags", ZEP_BENCH_PEER_FLAGS);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

}  // namespace zep::bench
