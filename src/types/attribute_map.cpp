#include <CommonAPI/attribute_map.h>

#include <CommonAPI/text_utilities.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <ostream>
#include <string_view>

#include "types/immortal.h"
#include "types/standard_streams.h"

namespace {

/// The one object that every map yields for a position that is not valid.
template <class Type>
Type& Fallback() {
    static CommonAPI::internal::Immortal<Type> fallback;
    return *fallback;
}

/// "True" in any case. No locale maps another character to one of these letters.
bool IsTrue(char const* text) {
    return (text[0] | ' ') == 't' && (text[1] | ' ') == 'r' && (text[2] | ' ') == 'u' &&
           (text[3] | ' ') == 'e' && text[4] == '\0';
}

/// As `atoi` has it, but faster where a number that fits stands at the beginning.
int ToInteger(char const* text) {
    int number;
    auto const result = std::from_chars(text, text + std::strlen(text), number);
    return result.ec == std::errc() ? number : std::atoi(text);
}

}  // namespace

AttributeMap::AttributeMap() = default;

AttributeMap::~AttributeMap() = default;

AttributeMap& AttributeMap::operator=(AttributeMap const& other) {
    if (this != &other)
        attributes = std::map(other.attributes);  // not in place: values are assigned without const
    return *this;
}

UnicodeString* AttributeMap::findValue(std::string const& key) {
    if (std::string_view(key).find('\0') != std::string_view::npos)
        return findTerminated(key.c_str());
    auto const entry = attributes.find(key);
    return entry == attributes.end() ? nullptr : &entry->second;
}

// Apart, so that the usual look-up has no text to make room for and to guard.
[[gnu::noinline]] UnicodeString* AttributeMap::findTerminated(char const* key) {
    return findValue(key);
}

bool AttributeMap::loadMapVariable(std::string const& key, UnicodeString& value) {
    UnicodeString* const stored = findValue(key);
    if (stored)
        value = *stored;
    else
        value.clear();
    return stored;
}

bool AttributeMap::loadMapVariable(std::string const& key, UnicodeString& value,
                                   UnicodeString const& defaultValue) {
    UnicodeString* const stored = findValue(key);
    // The assignment takes its source without const, though it only reads it.
    value = stored ? *stored : const_cast<UnicodeString&>(defaultValue);
    return stored;
}

bool AttributeMap::loadMapVariable(std::string const& key, bool& value, bool defaultValue) {
    UnicodeString* const stored = findValue(key);
    value = stored ? IsTrue(stored->c_str()) : defaultValue;
    return stored;
}

bool AttributeMap::loadMapVariable(std::string const& key, int& value, int defaultValue) {
    UnicodeString* const stored = findValue(key);
    value = stored ? ToInteger(stored->c_str()) : defaultValue;
    return stored;
}

bool AttributeMap::loadMapVariable(std::string const& key, double& value, double defaultValue) {
    UnicodeString* const stored = findValue(key);
    value = stored ? std::strtod(stored->c_str(), nullptr) : defaultValue;
    return stored;
}

bool AttributeMap::loadMapVariable(std::string const& key, char const*& value,
                                   char const* defaultValue) {
    UnicodeString* const stored = findValue(key);
    value = stored ? stored->c_str() : defaultValue;
    return stored;
}

bool AttributeMap::loadMapVariable(std::string const& key, std::string& value,
                                   char const* defaultValue) {
    char const* text;
    bool const found = loadMapVariable(key, text, defaultValue);
    value = text ? text : pEmptyString;
    return found;
}

std::size_t AttributeMap::removeMapVariable(std::string const& key) {
    return attributes.erase(key);
}

UnicodeString& AttributeMap::operator[](std::string const& key) {
    return attributes[key];
}

std::string const& AttributeMap::operator()(long position) {
    std::map<std::string, UnicodeString>::iterator entry;
    return fetchIteratorByIndex(position, entry) ? entry->first : Fallback<std::string>();
}

UnicodeString& AttributeMap::operator[](long position) {
    std::map<std::string, UnicodeString>::iterator entry;
    return fetchIteratorByIndex(position, entry) ? entry->second : Fallback<UnicodeString>();
}

void AttributeMap::clear() {
    attributes.clear();
}

bool AttributeMap::empty() const {
    return attributes.empty();
}

long AttributeMap::size() const {
    return static_cast<long>(attributes.size());
}

void AttributeMap::dumpStringMapContents() {
    std::ostream& output = CommonAPI::internal::StandardOutput();
    for (auto const& [key, stored] : attributes) {
        UnicodeString value(stored);  // so that reading it leaves the stored forms as they are
        output << key << " == " << value << std::endl;
    }
}

bool AttributeMap::fetchAttributeValueByIndex(long const& position, std::string& key,
                                              UnicodeString& value) {
    std::map<std::string, UnicodeString>::iterator entry;
    if (!fetchIteratorByIndex(position, entry))
        return false;
    key = entry->first;
    value = entry->second;
    return true;
}

bool AttributeMap::fetchAttributeValueByIndex(long const& position, std::string& key,
                                              std::string& value) {
    std::map<std::string, UnicodeString>::iterator entry;
    if (!fetchIteratorByIndex(position, entry))
        return false;
    key = entry->first;
    value = entry->second.c_str();
    return true;
}

bool AttributeMap::fetchIteratorByIndex(long const& position,
                                        std::map<std::string, UnicodeString>::iterator& it) {
    if (empty() || position >= size())
        return false;
    it = attributes.begin();
    if (position > 0)  // a negative position means the first entry
        std::advance(it, position);
    return true;
}
