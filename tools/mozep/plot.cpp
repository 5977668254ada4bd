#include "plot.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "commands.h"

namespace mozep_program {
namespace {

// A gnuplot that reads its commands from us. What it complains about comes with the failure.
class Gnuplot {
public:
    Gnuplot() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) throw Failure(std::strerror(errno));
        complaints_ = std::tmpfile();
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
        if (complaints_ != nullptr)
            posix_spawn_file_actions_adddup2(&actions, fileno(complaints_), STDERR_FILENO);
        char name[] = "gnuplot";
        char* arguments[] = {name, nullptr};
        const int error = posix_spawnp(&pid_, name, &actions, nullptr, arguments, environ);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[0]);
        if (error != 0) {
            close(ends[1]);
            closeComplaints();
            throw Failure(error == ENOENT
                              ? "a plot needs gnuplot, which is not installed"
                              : std::string("cannot run gnuplot: ") + std::strerror(error));
        }
        // A gnuplot that dies early shows in its exit code, not by a signal to us.
        std::signal(SIGPIPE, SIG_IGN);
        commands_ = fdopen(ends[1], "w");
    }

    ~Gnuplot() {
        if (commands_ != nullptr) wait();
        closeComplaints();
    }
    Gnuplot(const Gnuplot&) = delete;
    Gnuplot& operator=(const Gnuplot&) = delete;

    std::FILE* commands() { return commands_; }

    void finish() {
        const int status = wait();
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
            throw Failure("gnuplot failed" + firstComplaint());
    }

private:
    int wait() {
        std::fclose(commands_);
        commands_ = nullptr;
        int status = 0;
        while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
        }
        return status;
    }

    std::string firstComplaint() {
        if (complaints_ == nullptr) return "";
        std::rewind(complaints_);
        char line[200];
        while (std::fgets(line, sizeof line, complaints_) != nullptr) {
            const std::string text(line, std::strcspn(line, "\n"));
            if (text.find_first_not_of(" ^\t") != std::string::npos) return ": " + text;
        }
        return "";
    }

    void closeComplaints() {
        if (complaints_ != nullptr) std::fclose(complaints_);
        complaints_ = nullptr;
    }

    pid_t pid_ = 0;
    std::FILE* commands_ = nullptr;
    std::FILE* complaints_ = nullptr;
};

// In gnuplot's single quotes nothing is special but the quote itself, which is doubled.
std::string quoted(const std::string& text) {
    std::string out = "'";
    for (const char c : text) {
        out += c;
        if (c == '\'') out += c;
    }
    return out + "'";
}

}  // namespace

void plotSvg(const Curve& curve, const std::string& file) {
    Gnuplot gnuplot;
    // Tried here, since gnuplot would complain in four lines.
    std::FILE* out = std::fopen(file.c_str(), "w");
    if (out == nullptr) throw Failure(file + ": " + std::strerror(errno));
    std::fclose(out);

    std::FILE* to = gnuplot.commands();
    std::fprintf(
        to,
        "set terminal svg size 1000,600 background 'white' font 'sans-serif,14'\n"
        "set output %s\n"
        "set title %s noenhanced\nset xlabel %s\nset ylabel %s\n"
        "set grid linecolor 'gray80'\nset border linecolor 'gray40'\nset tics out nomirror\n"
        "unset key\nset xrange [%.10g:%.10g]\nset offsets 0,0,graph 0.05,graph 0.02\n"
        "plot '-' using 1:2 with lines linewidth 1.2 linecolor '#1f5fa8'\n",
        quoted(file).c_str(), quoted(curve.title).c_str(), quoted(curve.xLabel).c_str(),
        quoted(curve.yLabel).c_str(), curve.x.front(), curve.x.back());
    for (std::size_t i = 0; i < curve.x.size(); ++i)
        std::fprintf(to, "%.10g %.6f\n", curve.x[i], curve.y[i]);
    std::fputs("e\nunset output\n", to);
    gnuplot.finish();
}

}  // namespace mozep_program
