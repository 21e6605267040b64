#pragma once

#include <string>
#include <utility>
#include <variant>

namespace quorl {

// The result of a call that reaches the outside: the value, or one plain sentence that a person can be shown.
template <class Value>
class [[nodiscard]] Attempt {
public:
    static Attempt success(Value value) { return Attempt(std::in_place_index<0>, std::move(value)); }
    static Attempt failure(std::string message) {
        return Attempt(std::in_place_index<1>, std::move(message));
    }

    explicit operator bool() const { return state.index() == 0; }

    /// Only on a success.
    const Value& value() const& { return std::get<0>(state); }
    Value&& value() && { return std::get<0>(std::move(state)); }

    /// Only on a failure.
    const std::string& message() const { return std::get<1>(state); }

private:
    template <std::size_t index, class Content>
    Attempt(std::in_place_index_t<index> place, Content&& content)
        : state(place, std::forward<Content>(content)) {}

    std::variant<Value, std::string> state;
};

} // namespace quorl
