// Runs the check over files and directories of inputs, without libFuzzer, so that any compiler's
// build can replay a corpus.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "inflate_check.h"

namespace {

int replayed = 0;

void replay(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
    // The last name on a failure is the culprit's.
    std::printf("%s\r", path.c_str());
    std::fflush(stdout);
    zep::fuzz::checkInflate({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    ++replayed;
}

}  // namespace

int main(int argc, char** argv) {
    for (int n = 1; n < argc; ++n) {
        if (std::filesystem::is_directory(argv[n]))
            for (const auto& entry : std::filesystem::directory_iterator(argv[n]))
                replay(entry.path());
        else
            replay(argv[n]);
    }
    std::printf("\n%d inputs, no disagreement\n", replayed);
    return replayed > 0 ? 0 : 1;
}
