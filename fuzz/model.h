#pragma once

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// A model is plain code of a class's rules, kept beside an object of that class: the same
// operations are applied to both, and the two are compared after each. An input has an operation a
// line.

/// An operation's name, a blank, numbers as single characters ('0' is 0 and '/' is -1), and a text.
struct Line {
    explicit Line(std::string_view line)
        : name(line.substr(0, line.find(' '))), rest(line.substr(name.size())) {}

    bool is(std::string_view operation) const {
        if (allNames)
            allNames->emplace_back(operation);
        return name == operation;
    }
    int number(std::size_t index) const {
        return index < rest.size() ? static_cast<unsigned char>(rest[index]) - '0' : 0;
    }

    std::string_view name;
    std::string_view rest;
    int at = number(3);
    int count = number(4);
    std::string text{rest.substr(std::min<std::size_t>(5, rest.size()))};
    static inline std::vector<std::string>* allNames = nullptr;  ///< collects what is asked for
};

/// Ends an input at what callers may not do.
struct NotAllowed {};

inline std::vector<std::string_view> applied;  ///< lines of the present input

template <class Value>
std::string Described(Value const& value) {
    std::ostringstream stream;
    if constexpr (std::is_arithmetic_v<Value>)
        stream << value;
    else
        for (auto const c : value)
            if (c >= ' ' && c <= '~')
                stream << static_cast<char>(c);
            else
                stream << "\\x{" << std::hex << (c & (sizeof c == 1 ? 0xFFu : ~0u)) << '}';
    return stream.str();
}

inline void PrintApplied() {
    std::cerr << "after these operations:\n";
    for (std::string_view const line : applied)
        std::cerr << "    " << Described(line) << std::endl;
}

template <class Value>
void Same(Value const& library, std::type_identity_t<Value> const& model, char const* what) {
    if (library == model)
        return;
    std::cerr << what << "\n    library: " << Described(library)
              << "\n    model:   " << Described(model) << std::endl;
    PrintApplied();
    std::abort();
}

/// The nearest position, or count, that there is.
inline std::size_t Within(int position, std::size_t size) {
    return position < 0 ? 0 : std::min<std::size_t>(position, size);
}
