// What the tests of mozep spectrum share: a folder of their own, runs of the program, its rows.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "support/program.h"
#include "tools/wav_file.h"

namespace zep::test {

inline constexpr int kRate = 48000;

class Spectrum : public testing::Test {
protected:
    void SetUp() override {
        directory_ = testing::TempDir() + "mozep_spectrum_" + std::to_string(getpid());
        std::filesystem::create_directory(directory_);
    }
    void TearDown() override { std::filesystem::remove_all(directory_); }

    std::string path(const std::string& name) const { return directory_ + "/" + name; }

    static ProgramResult run(std::vector<std::string> arguments,
                             const std::vector<std::string>& environment = {}) {
        arguments.insert(arguments.begin(), {ZEP_PROGRAM, "spectrum"});
        return runProgram(arguments, environment);
    }

    // One line that says what went wrong, and nothing on the standard output.
    static void expectFailure(const std::vector<std::string>& arguments, const std::string& words,
                              int code = 1) {
        const ProgramResult result = run(arguments);
        EXPECT_EQ(result.code, code) << result.error;
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.error.starts_with("mozep spectrum: ")) << result.error;
        EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
        EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
    }

private:
    std::string directory_;
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
