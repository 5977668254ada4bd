// mozep spectrum --plot: pictures, and what names and full disks may not do.
#include <sys/stat.h>

#include "tools/spectrum_support.h"

namespace zep::test {
namespace {

class Plot : public Spectrum {
protected:
    static bool gnuplotIsMissing(const ProgramResult& result) {
        return result.error.find("gnuplot, which is not installed") != std::string::npos;
    }

    static std::string contents(const std::string& name) {
        std::ostringstream text;
        text << std::ifstream(name).rdbuf();
        return text.str();
    }

    std::string sineFile() const {
        writeWav(path("sine.wav"), sine(3000, 1, kRate), kRate);
        return path("sine.wav");
    }

    // Runs with a gnuplot of our own, a shell script.
    ProgramResult runWithGnuplot(const std::string& script, const std::string& picture) const {
        const std::string folder = path("bin");
        std::filesystem::create_directory(folder);
        std::ofstream(folder + "/gnuplot") << "#!/bin/sh\n" << script;
        chmod((folder + "/gnuplot").c_str(), 0755);
        return run({sineFile(), "--plot", picture}, {"PATH=" + folder + ":/usr/bin:/bin"});
    }

    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path("")))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(Plot, DrawsAnSvg) {
    writeWav(path("it's a sine.wav"), sine(3000, 1, kRate), kRate);
    const std::string svg = path("it's a plot.svg");
    const ProgramResult result = run({path("it's a sine.wav"), "--plot", svg});
    if (gnuplotIsMissing(result)) GTEST_SKIP() << "no gnuplot here";
    ASSERT_EQ(result.code, 0) << result.error;
    const std::string text = contents(svg);
    for (const char* part :
         {"<svg", "</svg>", "Frequency in Hz", "Level in dBFS", "Spectrum of", "<path"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
}

// More bins than the picture has columns: the peak is still in it, the file stays small.
TEST_F(Plot, DrawsLongBlocksInASmallSvg) {
    writeWav(path("sine.wav"), sine(3000, 1, 1 << 18), kRate);
    const std::string svg = path("plot.svg");
    const ProgramResult result = run({path("sine.wav"), "--fft", "262144", "--plot", svg});
    if (gnuplotIsMissing(result)) GTEST_SKIP() << "no gnuplot here";
    ASSERT_EQ(result.code, 0) << result.error;
    EXPECT_LT(std::filesystem::file_size(svg), 400000u);
    const std::string text = contents(svg);
    // The scale reaches up to the tone's level.
    EXPECT_NE(text.find("> 0<"), std::string::npos);
}

TEST_F(Plot, SaysThatGnuplotIsMissing) {
    writeWav(path("sine.wav"), sine(3000, 1, kRate), kRate);
    const ProgramResult result =
        run({path("sine.wav"), "--plot", path("plot.svg")}, {"PATH=/nonexistent"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.error, "mozep spectrum: a plot needs gnuplot, which is not installed\n");
    EXPECT_FALSE(std::filesystem::exists(path("plot.svg"))) << "an empty plot is left behind";
}

// gnuplot reads its commands line by line, and runs what stands behind "!" and in system "...".
TEST_F(Plot, RunsNoCommandOfAName) {
    const std::string tricks[] = {"a\n!touch pwned\n.wav",
                                  "a'\nsystem \"touch pwned\"\n.wav",
                                  "`touch pwned`.wav",
                                  "$(touch pwned).wav",
                                  "a\r!touch pwned\r.wav",
                                  "@ARG1 '.system('touch pwned').'.wav",
                                  "\"; system 'touch pwned' #.wav"};
    std::vector<std::string> expected;
    for (const std::string& name : tricks) {
        writeWav(path(name), sine(3000, 1, kRate), kRate);
        const std::string picture = name + ".svg";
        const ProgramResult result =
            runProgram({"/bin/sh", "-c", "cd \"$1\" && exec \"$0\" spectrum \"$2\" --plot \"$3\"",
                        ZEP_PROGRAM, path(""), name, picture});
        if (gnuplotIsMissing(result)) GTEST_SKIP() << "no gnuplot here";
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_NE(contents(path(picture)).find("</svg>"), std::string::npos) << name;
        expected.insert(expected.end(), {name, picture});
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(files(), expected);
}

TEST_F(Plot, ShowsControlCharactersOfANameAsEscapes) {
    const std::string name = path("a\n\x01 \xff \xc3\xa9.wav");
    writeWav(name, sine(3000, 1, kRate), kRate);
    const ProgramResult result = run({name, "--plot", path("plot.svg")});
    if (gnuplotIsMissing(result)) GTEST_SKIP() << "no gnuplot here";
    ASSERT_EQ(result.code, 0) << result.error;
    EXPECT_NE(contents(path("plot.svg")).find("a\\n\\x01 \\xff \xc3\xa9.wav"), std::string::npos);
}

TEST_F(Plot, AFullDiskIsAnError) {
    const ProgramResult full = run({sineFile(), "--plot", "/dev/full"});
    if (gnuplotIsMissing(full)) GTEST_SKIP() << "no gnuplot here";
    EXPECT_EQ(full.code, 1);
    EXPECT_EQ(full.out, "");
    EXPECT_EQ(full.error, "mozep spectrum: /dev/full: No space left on device\n");

    // A limit of 8 blocks in place of a disk that fills up: the old picture stays, nothing beside it.
    std::ofstream(path("plot.svg")) << "old";
    const auto before = files();
    const ProgramResult limited =
        runProgram({"/bin/sh", "-c", "ulimit -f 8; exec \"$0\" spectrum \"$1\" --plot \"$2\"",
                    ZEP_PROGRAM, path("sine.wav"), path("plot.svg")});
    EXPECT_EQ(limited.code, 1);
    EXPECT_NE(limited.error.find("File too large"), std::string::npos) << limited.error;
    EXPECT_EQ(contents(path("plot.svg")), "old");
    EXPECT_EQ(files(), before);
}

TEST_F(Plot, AFailingGnuplotLeavesTheOldPictureAlone) {
    std::ofstream(path("plot.svg")) << "old";
    const ProgramResult failed = runWithGnuplot(
        "echo '<svg'; echo 'first complaint' >&2; echo '   last complaint' >&2; echo >&2; exit 3\n",
        path("plot.svg"));
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(failed.out, "");
    EXPECT_EQ(failed.error, "mozep spectrum: gnuplot failed: last complaint\n");
    EXPECT_EQ(contents(path("plot.svg")), "old");

    const ProgramResult killed = runWithGnuplot("echo '<svg'; kill -9 $$\n", path("plot.svg"));
    EXPECT_EQ(killed.error, "mozep spectrum: gnuplot failed\n");
    const ProgramResult cut = runWithGnuplot("echo '<svg>'\n", path("plot.svg"));
    EXPECT_EQ(cut.error, "mozep spectrum: gnuplot drew no whole picture\n");
    EXPECT_EQ(contents(path("plot.svg")), "old");
    EXPECT_EQ(files(), (std::vector<std::string>{"bin", "plot.svg", "sine.wav"}));
}

TEST_F(Plot, KeepsPermissionsAndLinks) {
    const std::string script = "echo '<svg></svg>'\n";
    std::ofstream(path("target.svg")) << "old";
    chmod(path("target.svg").c_str(), 0600);
    std::filesystem::create_symlink("target.svg", path("link.svg"));
    ASSERT_EQ(runWithGnuplot(script, path("link.svg")).code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.svg")));
    EXPECT_EQ(contents(path("target.svg")), "<svg></svg>\n");
    struct stat status {};
    ASSERT_EQ(stat(path("target.svg").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);

    // A link that leads nowhere yet.
    std::filesystem::create_symlink("new.svg", path("early.svg"));
    ASSERT_EQ(runWithGnuplot(script, path("early.svg")).code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(path("early.svg")));
    EXPECT_EQ(contents(path("new.svg")), "<svg></svg>\n");

    const ProgramResult folder = runWithGnuplot(script, path(""));
    EXPECT_EQ(folder.code, 1);
    EXPECT_NE(folder.error.find("is a directory"), std::string::npos) << folder.error;
}

}  // namespace
}  // namespace zep::test
