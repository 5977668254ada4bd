// Where mozep gunzip reads from and writes to: names, links, pipes, permissions, interruption.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>

#include "gunzip_support.h"

namespace zep::test {
namespace {

using GunzipFilesTest = GunzipTest;

TEST_F(GunzipFilesTest, NamesTheOutputAfterTheInput) {
    const Bytes data = textLike(100);
    ASSERT_EQ(run({write("a.txt.gz", gzipped(data))}).code, 0);
    EXPECT_TRUE(read(path("a.txt")) == data);
    EXPECT_TRUE(fs::exists(path("a.txt.gz")));
    ASSERT_EQ(run({write("b.tgz", gzipped(data))}).code, 0);
    EXPECT_TRUE(read(path("b.tar")) == data);
    const ProgramResult unknown = run({write("c.bin", gzipped(data))});
    EXPECT_EQ(unknown.code, 1);
    EXPECT_NE(unknown.error.find("-o"), std::string::npos);
}

TEST_F(GunzipFilesTest, KnowsExtensionsInCapitalLetters) {
    const Bytes data = textLike(100);
    for (const auto& [name, expected] : {std::pair{"a.txt.GZ", "a.txt"},
                                         {"b.Gz", "b"},
                                         {"c.TGZ", "c.TAR"},
                                         {"d.tgz", "d.tar"},
                                         {"e.ZLIB", "e"}}) {
        ASSERT_EQ(run({write(name, gzipped(data))}).code, 0) << name;
        EXPECT_TRUE(read(path(expected)) == data) << name;
    }
}

TEST_F(GunzipFilesTest, ReadsTheStandardInput) {
    const Bytes data = textLike(100000);
    const std::string file = write("in.gz", gzipped(data));
    const auto piped = [&](const std::string& arguments) {
        return runProgram(
            {"/bin/sh", "-c", "cat '" + file + "' | '" ZEP_PROGRAM "' gunzip " + arguments});
    };
    for (const char* arguments : {"-", "- --stdout", "- -o -"}) {
        const ProgramResult result = piped(arguments);
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_TRUE(Bytes(result.out.begin(), result.out.end()) == data) << arguments;
    }
    EXPECT_EQ(piped("- -o '" + path("out") + "'").code, 0);
    EXPECT_TRUE(read(path("out")) == data);
    // What is wrong with it has a name.
    const ProgramResult empty = run({"-"});
    EXPECT_EQ(empty.code, 1);
    EXPECT_EQ(empty.error, "mozep gunzip: standard input: is empty\n");
}

TEST_F(GunzipFilesTest, WritesTheTargetOfALink) {
    const Bytes data = textLike(100);
    const std::string file = write("a.gz", gzipped(data));
    fs::create_directory(path("deep"));
    write("deep/target", {'o', 'l', 'd'});
    fs::create_symlink("deep/target", path("near"));
    fs::create_symlink(path("near"), path("far"));
    fs::create_symlink("deep/new", path("dangling"));
    for (const auto& [link, target] : {std::pair{"far", "deep/target"}, {"dangling", "deep/new"}}) {
        const ProgramResult result = run({file, "-o", path(link)});
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_TRUE(fs::is_symlink(path(link)));
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path(target))));
        EXPECT_TRUE(read(path(target)) == data);
    }
    // A link in the place of the default name is not followed unasked.
    fs::create_symlink("deep/other", path("a"));
    EXPECT_EQ(run({file}).code, 1);
    EXPECT_FALSE(fs::exists(path("deep/other")));
    fs::create_symlink("circle", path("circle"));
    EXPECT_EQ(run({file, "-o", path("circle")}).code, 1);
}

TEST_F(GunzipFilesTest, ReplacesAFileOnlyWhenTold) {
    const Bytes data = textLike(100);
    const std::string file = write("a.gz", gzipped(data));
    write("a", {'o', 'l', 'd'});
    EXPECT_EQ(run({file}).code, 1);
    EXPECT_EQ(read(path("a")), (Bytes{'o', 'l', 'd'}));
    EXPECT_EQ(run({file, "-f"}).code, 0);
    EXPECT_TRUE(read(path("a")) == data);
    write("b", {'o', 'l', 'd'});
    EXPECT_EQ(run({file, "-o", path("b")}).code, 0);
    EXPECT_TRUE(read(path("b")) == data);
    // A failure leaves the old file as it was.
    write("c", {'o', 'l', 'd'});
    EXPECT_EQ(run({write("bad.gz", {0x1F, 0x8B, 8, 0, 0, 0, 0, 0, 0, 3, 7}), "-o", path("c")}).code,
              1);
    EXPECT_EQ(read(path("c")), (Bytes{'o', 'l', 'd'}));
}

TEST_F(GunzipFilesTest, SaysWhatStandsInTheWay) {
    const std::string file = write("a.gz", gzipped(textLike(10)));
    const auto expectLine = [&](const std::vector<std::string>& arguments, int code,
                                const std::string& words) {
        const ProgramResult result = run(arguments);
        EXPECT_EQ(result.code, code);
        EXPECT_TRUE(result.error.starts_with("mozep gunzip: ")) << result.error;
        EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
        EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
    };
    expectLine({path("none.gz")}, 1, "No such file");
    expectLine({path("."), "-o", path("x")}, 1, "is a directory");
    expectLine({file, "-o", path("no/such/folder")}, 1, "No such file");
    expectLine({file, "-o", path(".")}, 1, "is a directory");
    expectLine({}, 2, "FILE");
    expectLine({file, "--stdout", "-o", path("x")}, 2, "");
}

TEST_F(GunzipFilesTest, OutputHasThePermissionsAndTheTimeOfTheInput) {
    for (const mode_t mode : {0600u, 0644u, 0440u, 0755u}) {
        const std::string file = write("a.gz", gzipped(textLike(10)));
        const timespec times[2] = {{1000000000, 5}, {1111111111, 123456789}};
        ASSERT_EQ(chmod(file.c_str(), mode), 0);
        ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
        ASSERT_EQ(run({file, "-f"}).code, 0);
        struct stat input {
        }, output{};
        ASSERT_EQ(stat(file.c_str(), &input), 0);
        ASSERT_EQ(stat(path("a").c_str(), &output), 0);
        EXPECT_EQ(output.st_mode, input.st_mode);
        EXPECT_EQ(output.st_mtim.tv_sec, 1111111111);
        EXPECT_EQ(output.st_mtim.tv_nsec, 123456789);
        fs::remove(file);
        fs::remove(path("a"));
    }
}

TEST_F(GunzipFilesTest, OutputOfAPipeHasTheUsualPermissions) {
    const std::string file = write("a.gz", gzipped(textLike(10)));
    ASSERT_EQ(runProgram({"/bin/sh", "-c",
                          "umask 027; cat '" + file + "' | '" ZEP_PROGRAM "' gunzip - -o '" +
                              path("a") + "'"})
                  .code,
              0);
    struct stat output {};
    ASSERT_EQ(stat(path("a").c_str(), &output), 0);
    EXPECT_EQ(output.st_mode & 0777, 0640u);
}

// Stopped in the midst of its work, by a signal that a user or the system sends.
TEST_F(GunzipFilesTest, LeavesNothingBehindWhenInterrupted) {
    const Bytes compressed = gzipped(noise(2'000'000));
    const auto files = [this] {
        return std::distance(fs::directory_iterator(path("")), fs::directory_iterator());
    };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGXCPU}) {
        const std::string fifo = path("in.gz");
        ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
        const pid_t program = fork();
        ASSERT_GE(program, 0);
        if (program == 0) {
            execl(ZEP_PROGRAM, "mozep", "gunzip", fifo.c_str(), "-o", path("out").c_str(), nullptr);
            _exit(127);
        }
        // More than its buffers hold, so that it has begun to write when all this has been read.
        const int pipe = open(fifo.c_str(), O_WRONLY | O_CLOEXEC);
        ASSERT_GE(pipe, 0);
        for (std::size_t at = 0; at < 1'500'000;) {
            const ssize_t done = ::write(pipe, compressed.data() + at, 1'500'000 - at);
            ASSERT_GT(done, 0);
            at += static_cast<std::size_t>(done);
        }
        EXPECT_EQ(files(), 2);  // the input and a partial output
        ASSERT_EQ(kill(program, signal), 0);
        int status = 0;
        ASSERT_EQ(waitpid(program, &status, 0), program);
        close(pipe);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        EXPECT_EQ(files(), 1);
        fs::remove(fifo);
    }
}

// The program that zeps/deflate.h prints.
TEST_F(GunzipFilesTest, TheExampleDecompressesARawStream) {
    const Bytes data = textLike(100000);
    const std::string raw = write("raw", zlibDeflate(data, {.flushEvery = 777, .flush = Z_BLOCK}));
    EXPECT_EQ(runProgram({ZEP_INFLATE_EXAMPLE, raw, path("out")}).code, 0);
    EXPECT_TRUE(read(path("out")) == data);
    for (const auto& [input, output] : {std::pair{path("none"), path("out")},
                                        {raw, path("no/folder")},
                                        {raw, std::string("/dev/full")},
                                        {write("bad", {7}), path("out")}}) {
        const ProgramResult result = runProgram({ZEP_INFLATE_EXAMPLE, input, output});
        EXPECT_EQ(result.code, 1);
        EXPECT_TRUE(result.error.starts_with("inflate: ")) << result.error;
    }
}

}  // namespace
}  // namespace zep::test
