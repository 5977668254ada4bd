#include "taps_file.h"

#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <string_view>

#include "commands.h"
#include "filter_design.h"
#include "output_file.h"

namespace mozep_program {
namespace {

constexpr std::size_t kLongestLine = 1000;

std::string_view trimmed(std::string_view line) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t begin = line.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return {};
    return line.substr(begin, line.find_last_not_of(kBlanks) + 1 - begin);
}

double number(std::string_view text, const std::string& where) {
    std::string_view digits = text;
    if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-') digits.remove_prefix(1);
    double value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, value);
    constexpr std::size_t kQuoted = 40;
    const std::string quoted =
        '"' + std::string(text.substr(0, kQuoted)) + (text.size() > kQuoted ? "...\"" : "\"");
    if (rest != end || error == std::errc::invalid_argument)
        throw Failure(where + quoted + " is no number");
    // Too large, or so small that it counts as 0.
    if (error != std::errc()) value = std::strtod(std::string(digits).c_str(), nullptr);
    if (!(std::abs(value) <= std::numeric_limits<float>::max()))
        throw Failure(where + quoted + " is out of range");
    return value;
}

}  // namespace

std::vector<double> readTaps(const std::string& name) {
    struct stat status {};
    if (stat(name.c_str(), &status) != 0) throw Failure(name + ": " + std::strerror(errno));
    if (S_ISDIR(status.st_mode)) throw Failure(name + ": is a directory");
    std::ifstream file(name);
    if (!file) throw Failure(name + ": " + std::strerror(errno));
    std::vector<double> taps;
    char line[kLongestLine];
    for (long long count = 1; file.getline(line, sizeof line) || file.gcount() > 0; ++count) {
        const std::string where = name + ": line " + std::to_string(count) + ": ";
        if (file.fail() && !file.eof()) throw Failure(where + "is too long");
        const auto length = static_cast<std::size_t>(file.gcount() - (file.eof() ? 0 : 1));
        const std::string_view text = trimmed({line, length});
        if (text.empty() || text.front() == '#') continue;
        if (taps.size() == kMostTaps)
            throw Failure(name + ": has more than " + std::to_string(kMostTaps) + " taps");
        taps.push_back(number(text, where));
    }
    if (file.bad()) throw Failure(name + ": cannot be read");
    if (taps.empty()) throw Failure(name + ": holds no taps");
    return taps;
}

void writeTaps(const std::vector<double>& taps, const std::string& name) {
    std::string text;
    for (const double tap : taps) {
        char digits[32];
        const auto [end, error] = std::to_chars(digits, digits + sizeof digits, tap);
        text.append(digits, end).push_back('\n');
    }
    OutputFile out(name == "-" ? "" : name, OutputFile::Existing::Replace);
    out.write(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    out.commit();
}

}  // namespace mozep_program
