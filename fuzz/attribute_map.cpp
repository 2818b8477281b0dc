#include <cmath>

#include "fuzz/target.h"

using Model = std::map<std::string, std::string>;

static void CheckReaders(AttributeMap& map, Model const& model, std::string const& key) {
    auto const entry = model.find(key.c_str());  // up to the first zero
    bool const found = entry != model.end();
    char const *const text = found ? entry->second.c_str() : "", *const none = nullptr;
    auto const load = [&](auto value, auto fallback) {
        Check(map.loadMapVariable(key, value, fallback) == found);
        return value;
    };
    Check(load(false, true) == (!found || strcasecmp(text, "True") == 0));
    Check(load(7, 9) == (found ? static_cast<int>(std::strtol(text, nullptr, 10)) : 9));
    double const real = load(7.0, 9.5), expected = found ? std::strtod(text, nullptr) : 9.5;
    Check(real == expected || (std::isnan(real) && std::isnan(expected)));
    Check(load(none, none) == (found ? map[entry->first].c_str() : none));  // into the map
    Check(load(std::string("old"), none) == text);
    Check(load(std::string("old"), "default") == (found ? text : "default"));
    Check(load(UnicodeString("old"), UnicodeString("default")) == (found ? text : "default"));
    UnicodeString value("old");
    Check(map.loadMapVariable(key, value) == found && value == text);
}

static void CheckPosition(AttributeMap& map, Model const& model, long position) {
    AttributeMap()[0L] = "shared";  // what all maps yield for a position that is not valid
    bool const valid = !model.empty() && position < map.size();
    auto const entry = valid ? std::next(model.begin(), std::max(position, 0L)) : model.end();
    std::string const expected = valid ? entry->first + "=" + entry->second : "old=old";
    std::string key = "old", text = "old";
    UnicodeString value("old");
    Check(map.fetchAttributeValueByIndex(position, key, text) == valid &&
          key + "=" + text == expected);
    Check(map.fetchAttributeValueByIndex(position, key, value) == valid && value == text.c_str());
    Check(map(position) == (valid ? entry->first : ""));
    Check(map[position] == (valid ? entry->second.c_str() : "shared"));
}

/// Lines of a letter, a position as a digit, a key, '=' and a value.
static void Try(std::string const& input) {
    AttributeMap map;
    Model model;
    std::istringstream lines(input);
    for (std::string line; std::getline(lines, line) && line.size() > 1;) {
        std::string const key = line.substr(2, line.find('=', 2) - 2);
        if (line[0] == 's')
            map[key] = model[key] = line.substr(std::min(key.size() + 3, line.size())).c_str();
        if (line[0] == 'r')
            Check(map.removeMapVariable(key) == model.erase(key));
        AttributeMap copy(map);
        Check(copy.size() == static_cast<long>(model.size()) && copy.empty() == model.empty());
        CheckReaders(copy, model, key), CheckPosition(copy, model, line[1] - '0');
        map = copy;
    }
    map.clear(), Check(map.empty());
}
