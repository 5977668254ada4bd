#include "support/program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
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

}  // namespace

ProgramResult runProgram(const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment) {
    const File out = temporaryFile(), error = temporaryFile();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, fileno(out.get()), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fileno(error.get()), STDERR_FILENO);
    std::vector<std::string> argumentTexts = arguments, environmentTexts = joined(environment);
    pid_t pid = 0;
    const int failed =
        posix_spawn(&pid, arguments[0].c_str(), &actions, nullptr, pointers(argumentTexts).data(),
                    pointers(environmentTexts).data());
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) throw std::runtime_error("cannot run " + arguments[0]);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents(out.get()),
            contents(error.get())};
}

}  // namespace zep::test
