#include "gnuplot.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "commands.h"

namespace mozep_program {
namespace {

[[noreturn]] void fail(int error) {
    throw Failure(std::string("cannot run gnuplot: ") + std::strerror(error));
}

class Descriptor {
public:
    explicit Descriptor(int file = -1) : file_(file) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return file_; }
    void reset(int file = -1) {
        if (file_ >= 0) close(file_);
        file_ = file;
    }

private:
    int file_;
};

std::string readAll(int file) {
    std::string text;
    char part[16384];
    for (ssize_t got = 1; got != 0;) {
        got = read(file, part, sizeof part);
        if (got < 0 && errno != EINTR) fail(errno);
        if (got > 0) text.append(part, static_cast<std::size_t>(got));
    }
    return text;
}

// The commands stand in memory, not in a pipe, which nobody would empty while we wait for output.
void fill(int file, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t now = write(file, text.data() + done, text.size() - done);
        if (now < 0 && errno != EINTR) fail(errno);
        if (now > 0) done += static_cast<std::size_t>(now);
    }
    lseek(file, 0, SEEK_SET);
}

pid_t start(int commands, int output, int complaints, const std::vector<std::string>& texts) {
    // Without the user's settings; "-c" hands over what follows the file as ARG1 and so on.
    std::vector<std::string> words{"gnuplot", "-d", "-c", "/dev/stdin"};
    words.insert(words.end(), texts.begin(), texts.end());
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, commands, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, complaints, STDERR_FILENO);
    pid_t pid = 0;
    const int error = posix_spawnp(&pid, "gnuplot", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error == ENOENT) throw Failure("a plot needs gnuplot, which is not installed");
    if (error != 0) fail(error);
    return pid;
}

int waitFor(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

std::string lastLine(const std::string& text) {
    const std::size_t end = text.find_last_not_of(" \t\r\n");
    if (end == std::string::npos) return "";
    const std::size_t lineEnd = text.rfind('\n', end);
    const std::size_t line = lineEnd == std::string::npos ? 0 : lineEnd + 1;
    const std::size_t begin = text.find_first_not_of(" \t", line);
    return text.substr(begin, end + 1 - begin);
}

}  // namespace

std::string runGnuplot(const std::string& commands, const std::vector<std::string>& texts) {
    const Descriptor script(memfd_create("commands", MFD_CLOEXEC));
    const Descriptor complaints(memfd_create("complaints", MFD_CLOEXEC));
    if (script.get() < 0 || complaints.get() < 0) fail(errno);
    fill(script.get(), commands);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) fail(errno);
    const Descriptor output(ends[0]);
    Descriptor input(ends[1]);
    const pid_t pid = start(script.get(), input.get(), complaints.get(), texts);
    input.reset();

    const std::string drawn = readAll(output.get());
    const int status = waitFor(pid);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return drawn;
    lseek(complaints.get(), 0, SEEK_SET);
    const std::string complaint = lastLine(readAll(complaints.get()));
    throw Failure("gnuplot failed" + (complaint.empty() ? "" : ": " + complaint));
}

}  // namespace mozep_program
