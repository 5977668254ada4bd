// What the tests of mozep spectrum share: signals and the rows of its output.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "tools/program_test.h"
#include "tools/wav_file.h"

namespace zep::test {

inline constexpr int kRate = 48000;

class Spectrum : public ProgramTest {
protected:
    Spectrum() : ProgramTest("spectrum") {}
};

inline std::vector<float> sine(double Hz, double amplitude, std::size_t length) {
    std::vector<float> x(length);
    for (std::size_t n = 0; n < length; ++n)
        x[n] = static_cast<float>(
            amplitude * std::sin(2 * std::numbers::pi * Hz * static_cast<double>(n) / kRate + 0.3));
    return x;
}

struct Row {
    double Hz, dBFS;
};

inline std::vector<Row> peakRows(const std::string& text) {
    std::istringstream in(text.substr(text.find("dBFS\n") + 5));
    std::vector<Row> rows;
    for (int index; in >> index;) {
        rows.emplace_back();
        in >> rows.back().Hz >> rows.back().dBFS;
        EXPECT_EQ(index, static_cast<int>(rows.size()));
    }
    return rows;
}

inline std::vector<Row> csvRows(const std::string& text) {
    std::istringstream in(text);
    std::string line;
    std::getline(in, line);
    EXPECT_EQ(line, "Hz,dBFS");
    std::vector<Row> rows;
    char comma = 0;
    for (Row row{}; in >> row.Hz >> comma >> row.dBFS;) {
        EXPECT_EQ(comma, ',');
        rows.push_back(row);
    }
    return rows;
}

}  // namespace zep::test
