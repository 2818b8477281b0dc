#include <CommonAPI/attribute_map.h>

#include "fuzz/target.h"

template <class Value>
Value Read(UnicodeString& text) {
    if constexpr (std::is_same_v<Value, bool>)
        return strcasecmp(text.c_str(), "True") == 0;
    else if constexpr (std::is_same_v<Value, int>)
        return std::atoi(text.c_str());
    else if constexpr (std::is_same_v<Value, double>)
        return std::strtod(text.c_str(), nullptr);
    else if constexpr (std::is_same_v<Value, UnicodeString>)
        return text;
    else
        return text.c_str();
}

/// The values have a model of their own.
struct AttributeMapModel : std::map<std::string, UnicodeString> {
    static inline UnicodeString shared;

    using std::map<std::string, UnicodeString>::operator[];

    AttributeMapModel() = default;
    AttributeMapModel(AttributeMapModel const& other) = default;
    AttributeMapModel& operator=(AttributeMapModel other) {
        swap(other);
        return *this;
    }
    bool fetchIteratorByIndex(long position, iterator& it) {
        bool const valid = !empty() && position < long(size());
        if (valid)
            it = std::next(begin(), std::max(position, 0L));
        return valid;
    }
    UnicodeString& operator[](long position) {
        iterator it;
        return fetchIteratorByIndex(position, it) ? it->second : shared;
    }
    std::string operator()(long position) {
        iterator it;
        return fetchIteratorByIndex(position, it) ? it->first : "";
    }
    template <class Value>
    bool fetchAttributeValueByIndex(long position, std::string& key, Value& value) {
        iterator it;
        if (!fetchIteratorByIndex(position, it))
            return false;
        key = it->first;
        Value read = Read<Value>(it->second);
        value = read;
        return true;
    }
    template <class Value, class Fallback = Value>
    bool loadMapVariable(std::string const& key, Value& value, Fallback fallback = Fallback()) {
        auto const it = find(key.c_str());  // up to its first zero
        bool const found = it != end();
        Value read = found ? Read<Value>(it->second) : Value(fallback);
        value = read;
        return found;
    }
    std::size_t removeMapVariable(std::string const& key) { return erase(key); }
};

/// The forms as they stand, without deriving one.
static std::string Forms(UnicodeString const& text) {
    UnicodeString wide(text);
    UnicodeString narrow(text);
    wide = "";
    narrow = L"";
    return Described(wide.wc_str(), narrow.c_str());
}

static std::string KeyOf(int number) {
    static std::string const keys[] = {"a", "A", "b", "", std::string("a\0b", 3), "\xFF", "bc"};
    return keys[(number & 0xFF) % std::size(keys)];
}

template <class Map, class Value, class Fallback>
std::string Load(Map& map, std::string const& key, Value value, Fallback fallback) {
    bool const found = map.loadMapVariable(key, value, fallback);
    return Described(found, value);
}

template <class Map>
std::string Apply(Map& it, Map& other, Line const& line) {
    std::string const key = KeyOf(line.at);
    std::string name = "old";
    std::string text = line.text;
    std::wstring const wide(text.begin(), text.end());
    if (line.is("set"))
        it[key] = text;
    if (line.is("setWide"))
        it[key] = wide.c_str();
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
               Load(it, key, "old", line.text.c_str()) + Load(it, key, text, "default");
    if (line.is("loadIntoKey")) {
        name = key;
        it.loadMapVariable(name, name, "default");
    }
    if (line.is("fetch"))
        it.fetchAttributeValueByIndex(line.at, name, other[long(line.count)]);
    if (line.is("fetchText"))
        return Described(it.fetchAttributeValueByIndex(line.at, name, text), name, text);
    if (line.is("remove"))
        return Described(it.removeMapVariable(key));
    if (line.is("removeAtPosition"))
        return Described(it.removeMapVariable(it(line.count)));
    if (line.is("clear"))
        it.clear();
    if (line.is("assignOther"))
        it = other;
    if (line.is("copy")) {
        Map copy(other);
        copy[key] = text;
        it = copy;
    }
    return name;
}

template <class Map>
std::string State(Map& map) {
    std::string state = Described(map.size(), map.empty()) + Forms(map[9L]);
    std::map<std::string, UnicodeString>::iterator entry;
    bool more = map.fetchIteratorByIndex(-1, entry);
    for (long position = 0; more; more = ++position < long(map.size()))
        state += Described(map(position)) + Forms(map[position]);
    return state;
}

static void Try(std::string const& input) {
    AttributeMap()[0L].clear();
    AttributeMapModel::shared.clear();
    CompareWithModel<AttributeMap, AttributeMapModel>(input);
}
