// mozep noise: a file of white, normally distributed noise.
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "commands.h"
#include "generated_file.h"
#include "library_status.h"

namespace mozep_program {
namespace {

constexpr double kLargest = 1e30;

struct Options {
    GeneratedFile file;
    float deviation = 0.1F;
    std::int64_t seed = 1;
};

struct Free {
    void operator()(ZepRandGaussState* state) const { zepsRandGaussFree_32f(state); }
};

void run(const Options& options) {
    ZepRandGaussState* made = nullptr;
    requireSuccess(
        zepsRandGaussInitAlloc_32f(&made, 0, options.deviation, static_cast<Zep32u>(options.seed)));
    const std::unique_ptr<ZepRandGaussState, Free> stream(made);
    writeGenerated("noise", options.file, [&](std::vector<float>& block) {
        requireSuccess(
            zepsRandGauss_32f(block.data(), static_cast<int>(block.size()), stream.get()));
    });
}

}  // namespace

void addNoise(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand(
        "noise",
        "Write white, normally distributed noise of mean 0 to a WAV file. The same options give "
        "the same file on every processor.");
    addFileOptions(*command, options->file);
    command->add_option("--deviation", options->deviation, "standard deviation; 1 is full scale")
        ->check(within(0, kLargest))
        ->capture_default_str();
    command->add_option("--seed", options->seed, "number from which the noise follows")
        ->check(
            CLI::Range(std::int64_t{0}, std::int64_t{std::numeric_limits<std::uint32_t>::max()}))
        ->capture_default_str();
    command->callback([options] { run(*options); });
}

}  // namespace mozep_program
