#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace quorl::test {

// A folder that goes with its object.
class TemporaryFolder {
public:
    TemporaryFolder() {
        auto name = (std::filesystem::temp_directory_path() / "quorl-platform-XXXXXX").string();
        if (!mkdtemp(name.data()))
            std::abort();
        path = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path); }

    std::filesystem::path path;
};

// A variable of the environment, set or unset for as long as the object lives.
class ScopedVariable {
public:
    ScopedVariable(const char* variable, const char* value) : name(variable) {
        if (const char* present = std::getenv(variable)) {
            wasSet = true;
            before = present;
        }
        if (value)
            setenv(variable, value, 1);
        else
            unsetenv(variable);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() {
        if (wasSet)
            setenv(name.c_str(), before.c_str(), 1);
        else
            unsetenv(name.c_str());
    }

private:
    std::string name;
    std::string before;
    bool wasSet = false;
};

} // namespace quorl::test
