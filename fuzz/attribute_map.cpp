#include <CommonAPI/attribute_map.h>

#include <cstring>

#include "fuzz/text_model.h"

using Entries = std::map<std::string, TextModel>;

static TextModel shared;  ///< what every map yields for a position that is not valid

static std::string KeyOf(int number) {
    static std::string const keys[] = {"a", "A", "b", "", std::string("a\0b", 3), "\xFF", "bc"};
    return keys[(number & 0xFF) % std::size(keys)];
}

/// The text of an entry, which reading it derives.
static char const* Read(TextModel& value) {
    value.fillNarrow();
    return value.narrow.c_str();
}

struct Pair {
    AttributeMap real;
    Entries model;

    Pair() {
        shared = TextModel();
        real[0L].clear();
    }

    Entries::iterator at(long position) {
        bool const valid = position < long(model.size());
        return valid ? std::next(model.begin(), std::max(position, 0L)) : model.end();
    }
    TextModel& valueAt(long position) {
        return at(position) == model.end() ? shared : at(position)->second;
    }

    void checkReaders(std::string key) {
        auto const entry = model.find(key.c_str());  // up to its first zero
        bool const found = entry != model.end();
        char const* const text = found ? Read(entry->second) : "";
        char const* const null = nullptr;
        auto const load = [&](auto value, auto fallback) {
            Same(real.loadMapVariable(key, value, fallback), found, "found");
            return value;
        };
        Same(load(false, true), !found || strcasecmp(text, "True") == 0, "bool");
        Same(load(7, 9), found ? std::atoi(text) : 9, "int");
        double const number = found ? std::strtod(text, nullptr) : 9.5;
        Same(std::to_string(load(7.0, 9.5)), std::to_string(number), "double");
        char const* const pointer = found ? real[entry->first].c_str() : null;
        Same(load("old", null) == pointer, true, "pointer into the map");
        Same(load(std::string("old"), null), text, "text, or nothing");
        std::string value = "old";
        real.loadMapVariable(key, value, value.c_str());
        Same(value, found ? text : "old", "text, or its own");
        real.loadMapVariable(key, key, null);
        Same(key, text, "text in place of its key");
    }

    void checkPosition(long position) {
        auto const entry = at(position);
        bool const valid = entry != model.end();
        std::string key = "old";
        std::string value = "old";
        Same(real(position), valid ? entry->first : "", "key");
        Same(real.fetchAttributeValueByIndex(position, key, value), valid, "valid");
        Same(key, valid ? entry->first : "old", "key fetched");
        Same(value, valid ? Read(entry->second) : "old", "text fetched");
        UnicodeString forms("old");
        Same(real.fetchAttributeValueByIndex(position, key, forms), valid, "valid");
        SameForms(forms, valid ? entry->second : TextModel{L"", "old"});
    }

    void checkDump() {
        std::ostringstream lines;
        std::streambuf* const output = std::cout.rdbuf(lines.rdbuf());
        real.dumpStringMapContents();
        std::cout.rdbuf(output);
        std::string expected;
        for (auto [key, value] : model)
            expected += key + " == " + Read(value) + "\n";
        Same(lines.str(), expected, "dump");
    }

    void apply(Pair& other, Line const& line) {
        std::string const& text = line.text;
        std::string const key = KeyOf(line.at);
        auto const found = model.find(key.c_str());
        if (line.is("set")) {
            real[key] = text;
            model[key].narrow = text.c_str();
        } else if (line.is("setWide")) {
            real[key] = Widened(text).c_str();
            model[key].wide = Widened(text);
        } else if (line.is("setFromOther")) {
            real[key] = other.real[KeyOf(line.count)];
            TextModel const value = other.model[KeyOf(line.count)];
            model[key] = value;
        } else if (line.is("setAtPosition")) {
            real[long(line.count)] = text;
            valueAt(line.count).narrow = text.c_str();
        } else if (line.is("load")) {
            Same(real.loadMapVariable(key, other.real[long(line.count)]), found != model.end(),
                 "found");
            other.valueAt(line.count) =
                found == model.end() ? TextModel() : TextModel(found->second);
        } else if (line.is("loadOrDefault")) {
            Same(real.loadMapVariable(key, other.real[long(line.count)], other.real[0L]),
                 found != model.end(), "found");
            other.valueAt(line.count) =
                TextModel(found == model.end() ? other.valueAt(0) : found->second);
        } else if (line.is("fetch")) {
            std::string name;
            real.fetchAttributeValueByIndex(line.at, name, other.real[long(line.count)]);
            if (at(line.at) != model.end())
                other.valueAt(line.count) = TextModel(valueAt(line.at));
        } else if (line.is("remove")) {
            Same(real.removeMapVariable(key), model.erase(key), "removed");
        } else if (line.is("removeAtPosition")) {
            std::string const own = real(line.count);
            Same(real.removeMapVariable(real(line.count)), model.erase(own), "removed");
        } else if (line.is("clear")) {
            real.clear();
            model.clear();
        } else if (line.is("assignOther")) {
            real = other.real;
            model = Entries(other.model);
        } else if (line.is("copy")) {
            AttributeMap copy(other.real);
            copy[key] = text;
            real = copy;
            model = Entries(other.model);
            model[key].narrow = text.c_str();
        } else if (line.is("read")) {
            checkReaders(key);
        } else if (line.is("readPosition")) {
            checkPosition(line.count);
        } else if (line.is("dump")) {
            checkDump();
        }
    }

    void compare() {
        Same(real.size(), model.size(), "size");
        Same(real.empty(), model.empty(), "empty");
        std::map<std::string, UnicodeString>::iterator entry;
        Same(real.fetchIteratorByIndex(0, entry), !model.empty(), "first entry");
        for (auto const& [key, value] : model) {
            Same(entry->first, key, "key");
            SameForms(entry->second, value);
            ++entry;
        }
        SameForms(AttributeMap()[0L], shared);
    }
};

#include "fuzz/driver.h"
