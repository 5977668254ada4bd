// The files of tests/speech/data.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zep::test {

std::vector<std::uint8_t> readBytes(const std::string& name);
std::vector<std::int16_t> readWords(const std::string& name);  // little-endian
bool dataExists(const std::string& name);

// Rows of a table without its first line, split at the commas.
std::vector<std::vector<std::string>> readTable(const std::string& name);

}  // namespace zep::test
