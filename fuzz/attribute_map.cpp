#include <CommonAPI/attribute_map.h>

#include <map>

#include "fuzz/model.h"

/// The values have a model of their own.
struct AttributeMapModel : std::map<std::string, UnicodeString> {
    static inline UnicodeString shared;

    using std::map<std::string, UnicodeString>::operator[];

    AttributeMapModel() = default;
    AttributeMapModel(AttributeMapModel const& other) = default;
    void operator=(AttributeMapModel other) { swap(other); }

    value_type* entry(long position) {
        bool const valid = !empty() && position < long(size());
        return valid ? &*std::next(begin(), std::max(position, 0L)) : nullptr;
    }
    UnicodeString& operator[](long position) {
        return entry(position) ? entry(position)->second : shared;
    }
    std::string operator()(long position) { return entry(position) ? entry(position)->first : ""; }

    static void read(UnicodeString& text, UnicodeString& value) { value = text; }
    static void read(UnicodeString& text, bool& value) { value = !strcasecmp(*text, "True"); }
    static void read(UnicodeString& text, int& value) { value = std::atoi(*text); }
    static void read(UnicodeString& text, double& value) { value = std::strtod(*text, nullptr); }
    static void read(UnicodeString& text, auto& value) { value = *text; }

    bool fetchAttributeValueByIndex(long position, std::string& key, auto& value) {
        if (!entry(position))
            return false;
        key = entry(position)->first;
        read(entry(position)->second, value);
        return true;
    }
    template <class Value, class Fallback = Value>
    bool loadMapVariable(std::string const& key, Value& value, Fallback fallback = Fallback()) {
        auto const it = find(key.c_str());  // up to its first zero
        Value copy(fallback);
        if (it != end())
            read(it->second, copy);
        value = copy;
        return it != end();
    }
    bool loadMapVariable(std::string const& key, std::string& value, char const* fallback) {
        return loadMapVariable<std::string, std::string>(key, value, fallback ? fallback : "");
    }
    std::size_t removeMapVariable(std::string const& key) { return erase(key); }
};

static std::string KeyOf(int number) {
    static std::string const keys[] = {"a", "A", "b", "", std::string("a\0b", 3), "\xFF", "bc"};
    return keys[std::abs(number) % std::size(keys)];
}

template <class Map, class Value, class Fallback>
std::string Load(Map& map, std::string const& key, Value value, Fallback fallback) {
    bool const found = map.loadMapVariable(key, value, fallback);
    return Described(found, value);
}

template <class Map>
std::string Apply(Map& it, Map& other, Line const& line) {
    std::string key = KeyOf(line.at);
    std::string text = line.text;
    char const* const fallback = line.count == 0 ? nullptr : line.text.c_str();
    if (line.is("set"))
        it[key] = text;
    if (line.is("setWide"))
        it[key] = std::wstring(text.begin(), text.end()).c_str();
    if (line.is("setFromOther"))
        it[key] = other[KeyOf(line.count)];
    if (line.is("setAtPosition"))
        it[long(line.count)] = text;
    if (line.is("load"))
        return Described(it.loadMapVariable(key, other[long(line.count)]));
    if (line.is("loadOrDefault"))
        return Described(it.loadMapVariable(key, other[long(line.count)], other[0L]));
    if (line.is("loadEach"))
        return Load(it, key, false, true) + Load(it, key, 7, 9) + Load(it, key, 7.0, 9.5) +
               Load(it, key, "old", fallback) + Load(it, key, text, fallback);
    if (line.is("loadIntoKey"))
        it.loadMapVariable(key, key, fallback);
    if (line.is("fetch"))
        return Described(it.fetchAttributeValueByIndex(line.at, key, other[long(line.count)]), key);
    if (line.is("fetchText"))
        return Described(it.fetchAttributeValueByIndex(line.at, key, text), key, text);
    if (line.is("remove"))
        return Described(it.removeMapVariable(line.count == 0 ? it(line.at) : key));
    if (line.is("clear"))
        it.clear();
    if (line.is("assignOther"))
        it = other;
    if (line.is("copy"))
        it = Map(other);
    return key;
}

template <class Map>
std::string State(Map& map) {
    std::string state = Described(map.size(), map.empty());
    for (long position = -1; position <= long(map.size()); ++position)
        state += Described(map(position)) + Forms(map[position]);
    return state;
}

void Try(std::string const& input) {
    AttributeMap()[0L].clear();
    AttributeMapModel::shared.clear();
    CompareWithModel<AttributeMap, AttributeMapModel>(input);
}
