#include "support/machine.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

namespace zep::test {
namespace {

using Words = std::set<std::string>;

Words wordsOf(const std::string& text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

// The first "flags" line, in which the kernel lists no feature whose state it does not save.
Words flagsOfThisMachine() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with("flags")) return wordsOf(line.substr(line.find(':') + 1));
    std::fputs("/proc/cpuinfo names no features of the processor\n", stderr);
    std::abort();
}

// kAvx512vbmi2 -> avx512_vbmi2; empty for the states, which the flags imply.
std::string flagOf(const std::string& feature) {
    static constexpr const char* kOthers[][2] = {
        {"kSse3", "pni"},   {"kSse41", "sse4_1"},
        {"kLzcnt", "abm"},  {"kAvx512vbmi2", "avx512_vbmi2"},
        {"kAvxUsable", ""}, {"kAvx512Usable", ""}};
    for (const auto& [name, flag] : kOthers)
        if (feature == name) return flag;
    std::string flag;
    for (const char c : feature.substr(1)) flag += static_cast<char>(std::tolower(c));
    return flag;
}

}  // namespace

std::vector<Column> builtColumns() {
    std::vector<Column> built;
    for (const Column& c : kColumns)
        if (c.isBuilt()) built.push_back(c);
    return built;
}

bool runsHere(const Column& column) {
    // m7 is plain x86-64: slot 0 has its code on processors without SSE3.
    if (column.slot == 1) return true;
    static const Words flags = flagsOfThisMachine();
    std::string needs = column.needs;
    for (char& c : needs)
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = ' ';
    for (const std::string& feature : wordsOf(needs))
        if (const std::string flag = flagOf(feature); !flag.empty() && !flags.contains(flag))
            return false;
    return true;
}

}  // namespace zep::test
