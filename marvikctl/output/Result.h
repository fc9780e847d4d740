#pragma once

#include "Failure.h"

#include <utility>
#include <variant>

/// A value, or why there is none.
template <typename Value>
class Result
{
public:
    Result(Value value)
        : m_content(std::in_place_index<0>, std::move(value))
    {
    }
    Result(Failure failure)
        : m_content(std::in_place_index<1>, std::move(failure))
    {
    }

    explicit operator bool() const { return m_content.index() == 0; }
    /// @pre there is a value
    [[nodiscard]] const Value& value() const { return std::get<0>(m_content); }
    [[nodiscard]] Value& value() { return std::get<0>(m_content); }
    [[nodiscard]] const Value& operator*() const { return value(); }
    [[nodiscard]] Value& operator*() { return value(); }
    [[nodiscard]] const Value* operator->() const { return &value(); }
    [[nodiscard]] Value* operator->() { return &value(); }
    /// @pre there is none
    [[nodiscard]] const Failure& failure() const { return std::get<1>(m_content); }

private:
    std::variant<Value, Failure> m_content;
};
