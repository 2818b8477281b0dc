#ifndef COMMONAPI_FUZZ_MODEL_H
#define COMMONAPI_FUZZ_MODEL_H

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// A model is plain code of a class's rules under the class's names. Operations, written once for
// both, are applied to three objects of the class and to three models: what they return, and what
// the objects hold afterwards, must be the same. An input has an operation a line.

/// Puts the input through the library and through the model of the target that defines this.
void Try(std::string const& input);

/// An operation's name, a blank, numbers as single characters ('0' is 0 and '/' is -1), and a text.
struct Line {
    explicit Line(std::string const& line)
        : name(line.substr(0, line.find(' '))), rest(line.substr(name.size())) {}

    bool is(char const* operation) const {
        if (name.empty())
            allNames.insert(operation);
        return name == operation;
    }
    int number(std::size_t index) const {
        return index < rest.size() ? static_cast<unsigned char>(rest[index]) - '0' : 0;
    }

    std::string name;
    std::string rest;
    std::size_t own = std::abs(number(1)) % 3;
    std::size_t other = std::abs(number(2)) % 3;
    int at = number(3);
    int count = number(4);
    std::string text = rest.substr(std::min<std::size_t>(5, rest.size()));
    static inline std::set<std::string> allNames;  ///< which a line without a name collects
};

inline std::vector<std::string> applied;  ///< lines of the present input

template <class Value>
void Describe(std::string& text, Value const& value) {
    if constexpr (std::is_arithmetic_v<Value>)
        text += std::to_string(value);
    else if constexpr (std::is_pointer_v<Value>)
        return value ? Describe(text, std::basic_string_view(value)) : Describe(text, false);
    else
        for (auto const c : value)
            if (c >= ' ' && c <= '~')
                text += static_cast<char>(c);
            else
                text += '<' + std::to_string(c) + '>';
    text += "; ";
}

/// Numbers, texts of both widths and null.
template <class... Values>
std::string Described(Values const&... values) {
    std::string text;
    (Describe(text, values), ...);
    return text;
}

/// The forms of a text as they stand, without deriving one.
template <class Text>
std::string Forms(Text const& text) {
    Text wide(text);
    Text narrow(text);
    wide = "";
    narrow = L"";
    return Described(wide.wc_str(), narrow.substr(0, -1));
}

inline void Same(std::string const& library, std::string const& model, char const* what) {
    if (library == model)
        return;
    std::cerr << what << "\n    library: " << Described(library)
              << "\n    model:   " << Described(model) << "\nafter these operations:\n";
    for (std::string const& line : applied)
        std::cerr << "    " << Described(line) << std::endl;
    std::abort();
}

/// The nearest position, or count, that there is.
inline std::size_t Within(int position, std::size_t size) {
    return position < 0 ? 0 : std::min<std::size_t>(position, size);
}

template <class Type>
std::string ReturnedOrThrown(Type (&objects)[3], Line const& line) try {
    return Apply(objects[line.own], objects[line.other], line);
} catch (std::out_of_range const&) {
    return "out of range";
}

/// With `Apply`, which describes what an operation returns, and `State` of the target.
template <class Class, class Model>
void CompareWithModel(std::string const& input) try {
    Class objects[3];
    Model models[3];
    std::istringstream lines(input);
    applied.clear();
    for (std::string text; std::getline(lines, text);) {
        Line const line(applied.emplace_back(text));
        std::string const returned = ReturnedOrThrown(models, line);
        Same(ReturnedOrThrown(objects, line), returned, "returned");
        for (std::size_t const index : {line.own, line.other}) {
            std::string const held = State(models[index]);
            Same(State(objects[index]), held, "held");
            if (held.size() > 9000)
                return;  // or it would double without end
        }
    }
} catch (std::invalid_argument const&) {
    // An input ends at what callers may not do.
}

#endif
