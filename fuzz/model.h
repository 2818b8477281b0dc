#ifndef COMMONAPI_FUZZ_MODEL_H
#define COMMONAPI_FUZZ_MODEL_H

#include <charconv>
#include <cstdlib>
#include <iostream>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// A model is plain code of a class's rules under the class's names. Operations, written once for
// both, are applied to three objects of the class and to three models: what they return, and what
// the objects hold afterwards, must be the same. An input has an operation a line.

/// An operation's name, a blank, numbers as single characters ('0' is 0 and '/' is -1), and a text.
struct Line {
    explicit Line(std::string_view line)
        : name(line.substr(0, line.find(' '))), rest(line.substr(name.size())) {}

    bool is(char const* operation) const {
        if (name.empty())
            allNames.insert(operation);
        return name == operation;
    }
    int number(std::size_t index) const {
        return index < rest.size() ? static_cast<unsigned char>(rest[index]) - '0' : 0;
    }

    std::string_view name;
    std::string_view rest;
    std::size_t own = (number(1) & 0xFF) % 3;
    std::size_t other = (number(2) & 0xFF) % 3;
    int at = number(3);
    int count = number(4);
    std::string text{rest.substr(std::min<std::size_t>(5, rest.size()))};
    static inline std::set<std::string> allNames;  ///< which a line without a name collects
};

/// Ends an input at what callers may not do.
struct NotAllowed {};

inline std::vector<std::string_view> applied;  ///< lines of the present input

template <class Value>
void Describe(std::string& text, Value const& value) {
    if constexpr (std::is_arithmetic_v<Value>)
        text += std::to_string(value);
    else if constexpr (std::is_pointer_v<Value>)
        return value ? Describe(text, std::basic_string_view(value)) : Describe(text, false);
    else
        for (auto const c : value) {
            char code[8];
            auto const bits = c & (sizeof c == 1 ? 0xFFu : ~0u);
            if (c >= ' ' && c <= '~')
                text += static_cast<char>(c);
            else
                text.append("\\x").append(code, std::to_chars(code, code + 8, bits, 16).ptr);
        }
    text += "; ";
}

/// Numbers, texts of both widths and null.
template <class... Values>
std::string Described(Values const&... values) {
    std::string text;
    (Describe(text, values), ...);
    return text;
}

inline void Same(std::string const& library, std::string const& model, char const* what) {
    if (library == model)
        return;
    std::cerr << what << "\n    library: " << Described(library)
              << "\n    model:   " << Described(model) << "\nafter these operations:\n";
    for (std::string_view const line : applied)
        std::cerr << "    " << Described(line) << std::endl;
    std::abort();
}

/// The nearest position, or count, that there is.
inline std::size_t Within(int position, std::size_t size) {
    return position < 0 ? 0 : std::min<std::size_t>(position, size);
}

template <class Type>
std::string ReturnedOrThrown(Type (&objects)[3], Line const& line) {
    try {
        return Apply(objects[line.own], objects[line.other], line);
    } catch (std::out_of_range const&) {
        return "out of range";
    }
}

/// With `Apply`, which describes what an operation returns, and `State` of the target.
template <class Class, class Model>
void CompareWithModel(std::string_view input) {
    Class objects[3];
    Model models[3];
    applied.clear();
    while (!input.empty()) {
        applied.push_back(input.substr(0, input.find('\n')));
        input.remove_prefix(std::min(applied.back().size() + 1, input.size()));
        Line const line(applied.back());
        try {
            std::string const returned = ReturnedOrThrown(models, line);
            Same(ReturnedOrThrown(objects, line), returned, "returned");
        } catch (NotAllowed const&) {
            return;
        }
        for (std::size_t const index : {line.own, line.other})
            Same(State(objects[index]), State(models[index]), "held");
    }
}

#endif
