// The outcome of an engine operation that can fail: a value, or the reason in words fit for a log line.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace qm {

enum class ErrorCategory {
    NotFound,
    Unreadable,
    Unwritable,
    Unsupported,
    Protected,
    Damaged,
    TooLong,
    Device,
    NoAnswer,
    GivenUp
};

struct Error {
    ErrorCategory category;
    std::string message;
};

template <typename T>
class Result {
public:
    Result(T value) : m_outcome(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : m_outcome(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return m_outcome.index() == 0; }
    T& value() { return std::get<0>(m_outcome); }
    const T& value() const { return std::get<0>(m_outcome); }
    const Error& error() const { return std::get<1>(m_outcome); }

private:
    std::variant<T, Error> m_outcome;
};

}  // namespace qm
