// What the tests of single commands share: a folder of their own, and runs of the program in it.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/program.h"

namespace zep::test {

class ProgramTest : public testing::Test {
protected:
    explicit ProgramTest(std::string command) : command_(std::move(command)) {}

    void SetUp() override {
        directory_ = testing::TempDir() + "mozep_" + command_ + "_" + std::to_string(getpid());
        std::filesystem::create_directory(directory_);
    }
    void TearDown() override { std::filesystem::remove_all(directory_); }

    std::string path(const std::string& name) const { return directory_ + "/" + name; }

    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
    }

    ProgramResult run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {ZEP_PROGRAM, command_});
        return runProgram(arguments);
    }

    // From a pipe that holds the file: the standard input of the program.
    ProgramResult runPiped(const std::string& file, const std::string& arguments) const {
        return runProgram({"/bin/sh", "-c",
                           "cat '" + file + "' | '" ZEP_PROGRAM "' " + command_ + " " + arguments});
    }

    // What a run without a word on the standard error prints.
    std::string printed(const std::vector<std::string>& arguments) const {
        const ProgramResult result = run(arguments);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.error, "");
        return result.out;
    }

    // One line that says what went wrong, and nothing on the standard output.
    void expectFailure(const std::vector<std::string>& arguments, const std::string& words,
                       int code = 1) const {
        const ProgramResult result = run(arguments);
        EXPECT_EQ(result.code, code) << result.error;
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.error.starts_with("mozep " + command_ + ": ")) << result.error;
        EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
        EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
    }

private:
    std::string command_, directory_;
};

}  // namespace zep::test
