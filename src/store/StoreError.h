#pragma once

#include <exception>
#include <string>
#include <utility>

namespace quorl {

// The one error of the library layer; its text is shown as it stands.
class StoreError : public std::exception {
public:
    explicit StoreError(std::string message) : text(std::move(message)) {}

    [[nodiscard]] const std::string& message() const { return text; }
    [[nodiscard]] const char* what() const noexcept override { return text.c_str(); }

private:
    std::string text;
};

} // namespace quorl
