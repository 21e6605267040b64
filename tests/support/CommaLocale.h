#pragma once

#include "support/TempFolder.h"

#include <clocale>
#include <cstdlib>
#include <fstream>
#include <string>

namespace quorl::test {

// The C library's numbers have a decimal comma while it lives. Machines need not have such a locale
// installed, so it is made.
class CommaLocale {
public:
    CommaLocale() {
        const auto source = folder.path() / "comma.txt";
        std::ofstream(source)
            << "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3\nEND LC_NUMERIC\n";
        const std::string command =
            "localedef --quiet --force --no-archive --charmap=ANSI_X3.4-1968 --inputfile=" + source.string() +
            " " + (folder.path() / "comma").string();
        // The other categories are missing on purpose, which gives an exit status that is not zero.
        static_cast<void>(std::system(command.c_str()));
        setenv("LOCPATH", folder.path().c_str(), 1);
        isSet = std::setlocale(LC_NUMERIC, "comma") != nullptr;
    }
    ~CommaLocale() {
        std::setlocale(LC_NUMERIC, "C");
        unsetenv("LOCPATH");
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    bool isSet = false;

private:
    TempFolder folder;
};

} // namespace quorl::test
