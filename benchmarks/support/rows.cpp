#include "support/rows.h"

#include <cstdlib>
#include <sstream>

#include "core/columns.h"
#include "core/selection.h"

namespace zep::bench {
namespace {

std::vector<Column> columnsAsked() {
    const char* text = std::getenv("ZEP_BENCH_VARIANTS");
    if (text == nullptr) {
        zepSelectVariantAuto();
        return {kColumns[variantIndex > 0 ? variantIndex - 1 : 0]};
    }
    std::vector<Column> columns;
    std::istringstream in{text};
    for (std::string name; std::getline(in, name, ',');)
        for (const Column& c : kColumns)
            if (c.isBuilt() && name == c.name) columns.push_back(c);
    return columns;
}

}  // namespace

void addPeer(const std::string& family, const std::string& peer, std::int64_t size, Body body) {
    benchmark::RegisterBenchmark((family + "/" + peer + "/" + std::to_string(size)).c_str(),
                                 std::move(body));
}

void addOurs(const std::string& family, std::int64_t size, Body body) {
    for (const Column& c : columnsAsked())
        addPeer(family, std::string("zep_") + c.name, size,
                [slot = c.slot, body](benchmark::State& state) {
                    zepSelectColumn(slot);
                    body(state);
                });
}

int runAll(int argc, char** argv) {
    std::string variants;
    for (const Column& c : columnsAsked())
        variants += (variants.empty() ? "" : ",") + std::string(c.name);
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
