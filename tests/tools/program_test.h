// What the tests of the program share: a folder of their own, and runs of one command.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/program.h"

namespace zep::test {

class FolderTest : public testing::Test {
protected:
    explicit FolderTest(const std::string& name)
        : directory_(testing::TempDir() + "mozep_" + name + "_" + std::to_string(getpid())) {}

    void SetUp() override {
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directory(directory_);
    }
    void TearDown() override { std::filesystem::remove_all(directory_); }

    const std::string& directory() const { return directory_; }
    std::string path(const std::string& name) const { return directory_ + "/" + name; }

    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
    }

private:
    std::string directory_;
};

// One line that says what went wrong with the command, and nothing on the standard output.
inline void expectOneLine(const ProgramResult& result, const std::string& command,
                          const std::string& words, int code) {
    EXPECT_EQ(result.code, code) << result.error;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.error.starts_with("mozep " + command + ": ")) << result.error;
    EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
    EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
}

class ProgramTest : public FolderTest {
protected:
    explicit ProgramTest(const std::string& command) : FolderTest(command), command_(command) {}

    ProgramResult run(std::vector<std::string> arguments,
                      const std::vector<std::string>& environment = {}) const {
        arguments.insert(arguments.begin(), {ZEP_PROGRAM, command_});
        return runProgram(arguments, environment);
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

    void expectFailure(const std::vector<std::string>& arguments, const std::string& words,
                       int code = 1) const {
        expectOneLine(run(arguments), command_, words, code);
    }

private:
    std::string command_;
};

}  // namespace zep::test
