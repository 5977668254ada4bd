#include "support/program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace zep::test {
namespace {

// Outputs go through files: no pipe can fill up.
struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

File temporaryFile() {
    File file(std::tmpfile());
    if (file == nullptr) throw std::runtime_error("no temporary file");
    return file;
}

std::string contents(std::FILE* file) {
    std::string text;
    std::rewind(file);
    char part[4096];
    while (const std::size_t got = std::fread(part, 1, sizeof part, file)) text.append(part, got);
    return text;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> list;
    for (std::string& text : texts) list.push_back(text.data());
    list.push_back(nullptr);
    return list;
}

std::vector<std::string> joined(std::vector<std::string> settings) {
    const std::size_t given = settings.size();
    for (char** e = environ; *e != nullptr; ++e) {
        const std::string inherited = *e, name = inherited.substr(0, inherited.find('=') + 1);
        bool replaced = false;
        for (std::size_t i = 0; i < given; ++i) replaced |= settings[i].starts_with(name);
        if (!replaced) settings.push_back(inherited);
    }
    return settings;
}

// Starts the program with these standard outputs.
pid_t start(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
            int out, int error) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, error, STDERR_FILENO);
    std::vector<std::string> argumentTexts = arguments, environmentTexts = joined(environment);
    pid_t pid = 0;
    const int failed =
        posix_spawn(&pid, arguments[0].c_str(), &actions, nullptr, pointers(argumentTexts).data(),
                    pointers(environmentTexts).data());
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) throw std::runtime_error("cannot run " + arguments[0]);
    return pid;
}

int exitCode(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

ProgramResult runProgram(const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment) {
    const File out = temporaryFile(), error = temporaryFile();
    const int code =
        exitCode(start(arguments, environment, fileno(out.get()), fileno(error.get())));
    return {code, contents(out.get()), contents(error.get())};
}

ProgramResult runProgramOnTerminal(const std::vector<std::string>& arguments) {
    const File out = temporaryFile();
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0)
        throw std::runtime_error("no terminal");
    const int terminal = open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    const pid_t pid = start(arguments, {}, fileno(out.get()), terminal);
    close(terminal);
    // Reading fails when the program, the last to hold the terminal, has ended.
    std::string shown;
    char part[4096];
    for (ssize_t got; (got = read(master, part, sizeof part)) > 0;)
        shown.append(part, static_cast<std::size_t>(got));
    close(master);
    const int code = exitCode(pid);
    return {code, contents(out.get()), shown};
}

}  // namespace zep::test
