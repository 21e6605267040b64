#pragma once

#include "support/TempFolder.h"

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace quorl::test {

// An environment variable, put back at the end of the scope.
class ScopedVariable {
public:
    ScopedVariable(std::string variable, const std::optional<std::string>& value)
        : name(std::move(variable)) {
        if (const char* former = std::getenv(name.c_str()))
            formerValue = former;
        set(value);
    }
    ~ScopedVariable() { set(formerValue); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    void set(const std::optional<std::string>& value) const {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }

    std::string name;
    std::optional<std::string> formerValue;
};

inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::vector<std::string> splitAtNUL(const std::string& text) {
    std::vector<std::string> pieces;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\0', start);
        pieces.push_back(text.substr(start, end - start));
        start = end == std::string::npos ? text.size() : end + 1;
    }
    return pieces;
}

inline std::set<std::string> namesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

/// Yields until `isTrue`, at most for a minute; answers it.
template <class Condition>
bool eventually(Condition isTrue) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!isTrue()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::yield();
    }
    return true;
}

// A home, a PATH of one empty folder and a scratch folder, all temporary, and small scripts to run in them.
class ToolStage {
public:
    ToolStage() {
        for (const auto& folder : {home, scratch, bin, notes})
            std::filesystem::create_directories(folder);
    }

    /// A shell script at `path`, executable.
    static std::string script(const std::filesystem::path& path, const std::string& body) {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << "#!/bin/sh\nPATH=/usr/bin:/bin\n" << body << '\n';
        chmod(path.c_str(), 0755);
        return path.string();
    }

    [[nodiscard]] std::string tool(const std::string& body, const std::string& name = "tool") const {
        return script(bin / name, body);
    }

    /// A tool that notes what it was given and then does `body`.
    [[nodiscard]] std::string recordingTool(const std::string& body, const std::string& name = "tool") const {
        const std::string folder = notes.string();
        return tool("cd -P . && pwd -P > " + folder + "/folder\n" +                          //
                        "[ $# = 0 ] || printf '%s\\0' \"$@\" > " + folder + "/arguments\n" + //
                        "cat /proc/$$/environ > " + folder + "/environment\n" + "cat > " + folder +
                        "/input\n" + body,
                    name);
    }

    [[nodiscard]] std::vector<std::string> arguments() const {
        return splitAtNUL(contentOf(notes / "arguments"));
    }
    [[nodiscard]] std::string input() const { return contentOf(notes / "input"); }
    [[nodiscard]] std::string folder() const {
        const std::string line = contentOf(notes / "folder");
        return line.substr(0, line.find('\n'));
    }
    [[nodiscard]] std::map<std::string, std::string> environment() const {
        std::map<std::string, std::string> variables;
        for (const std::string& entry : splitAtNUL(contentOf(notes / "environment")))
            variables.emplace(entry.substr(0, entry.find('=')), entry.substr(entry.find('=') + 1));
        return variables;
    }

    TempFolder root;
    const std::filesystem::path top = std::filesystem::canonical(root.path());
    const std::filesystem::path home = top / "home";
    const std::filesystem::path scratch = top / "scratch";
    const std::filesystem::path bin = top / "bin";
    const std::filesystem::path notes = top / "notes"; // what recording tools have written

private:
    ScopedVariable homeVariable{"HOME", home.string()};
    ScopedVariable pathVariable{"PATH", bin.string()};
};

} // namespace quorl::test
