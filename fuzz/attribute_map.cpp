#include <CommonAPI/attribute_map.h>

#include "fuzz/target.h"

/// The values have a model of their own.
struct AttributeMapModel : std::map<std::string, UnicodeString> {
    static inline UnicodeString shared;

    using std::map<std::string, UnicodeString>::operator[];

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
    bool fetchAttributeValueByIndex(long position, std::string& key, UnicodeString& value) {
        iterator it;
        if (!fetchIteratorByIndex(position, it))
            return false;
        key = it->first;
        value = it->second;
        return true;
    }
    bool loadMapVariable(std::string const& key, UnicodeString& value, UnicodeString fallback) {
        auto const it = find(key.c_str());  // up to its first zero
        value = it != end() ? it->second : fallback;
        return it != end();
    }
    bool loadMapVariable(std::string const& key, std::string& value, char const* fallback) {
        auto const it = find(key.c_str());
        bool const found = it != end();
        value = found ? it->second.c_str() : fallback ? fallback : "";
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
    if (line.is("setAtPosition"))
        it[long(line.count)] = text;
    if (line.is("load"))
        return Described(it.loadMapVariable(key, other[long(line.count)], other[0L]));
    if (line.is("loadIntoKey")) {
        name = key;
        it.loadMapVariable(name, name, line.count == 0 ? nullptr : "default");
    }
    if (line.is("fetch"))
        it.fetchAttributeValueByIndex(line.at, name, other[long(line.count)]);
    if (line.is("removeAtPosition"))
        return Described(it.removeMapVariable(it(line.count)));
    if (line.is("assignOther"))
        it = other;
    return name;
}

template <class Map>
std::string State(Map& map) {
    std::string state = Described(map.size()) + Forms(map[9L]);
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
