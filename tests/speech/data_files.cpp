#include "speech/data_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace zep::test {
namespace {

std::ifstream open(const std::string& name) {
    std::ifstream file(std::string(ZEP_SPEECH_DATA "/") + name, std::ios::binary);
    if (!file) ADD_FAILURE() << "cannot read " << name;
    return file;
}

}  // namespace

std::vector<std::uint8_t> readBytes(const std::string& name) {
    std::ifstream file = open(name);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::int16_t> readWords(const std::string& name) {
    const std::vector<std::uint8_t> bytes = readBytes(name);
    std::vector<std::int16_t> words(bytes.size() / 2);
    for (std::size_t n = 0; n < words.size(); ++n)
        words[n] = static_cast<std::int16_t>(bytes[2 * n] | bytes[2 * n + 1] << 8);
    return words;
}

bool dataExists(const std::string& name) {
    return std::filesystem::exists(std::string(ZEP_SPEECH_DATA "/") + name);
}

std::vector<std::vector<std::string>> readTable(const std::string& name) {
    std::ifstream file = open(name);
    std::vector<std::vector<std::string>> rows;
    std::string line, field;
    std::getline(file, line);
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        rows.emplace_back();
        while (std::getline(fields, field, ',')) rows.back().push_back(field);
    }
    return rows;
}

}  // namespace zep::test
