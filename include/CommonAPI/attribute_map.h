/// @file
/// `AttributeMap`, settings: an ordered map from a text key to a text value, with typed readers.
#ifndef COMMONAPI_ATTRIBUTE_MAP_H
#define COMMONAPI_ATTRIBUTE_MAP_H

#include <CommonAPI/export.h>
#include <CommonAPI/unicode_string.h>

#include <cstddef>
#include <map>
#include <string>

/// The empty base of `AttributeMap`.
class AbstractAttributeMap {};

/// An ordered map from a `std::string` key, compared byte by byte (so case counts), to a
/// `UnicodeString` value.
///
/// Positions count from 0 in key order and take linear time. A negative position means the first
/// entry; one at or beyond `size()`, and any position of an empty map, is not valid.
///
/// Wherever a value is read as narrow text, number or truth, its `UnicodeString::c_str()` is meant.
/// No operation reports an error beyond its result.
///
/// Threads: no locks. Several threads may read a map only while none changes it; `operator[]` by
/// key counts as a change, and so does a reader of a value whose narrow form must still be derived.
class COMMONAPI_EXPORT AttributeMap : public AbstractAttributeMap {
public:
    /// Without entries.
    AttributeMap();
    /// Copies all entries, with both forms of their values.
    AttributeMap(AttributeMap const& other) = default;
    ~AttributeMap();
    /// Replaces all entries by copies of those of `other`, with both forms of their values.
    AttributeMap& operator=(AttributeMap const& other);

    /// @name Readers by key
    /// True when the key, up to its first zero character, is present: `value` then comes from the
    /// entry. Otherwise `value` becomes `defaultValue`. No reader inserts a key.
    /// @{

    /// Empties `value` when the key is absent.
    bool loadMapVariable(std::string const& key, UnicodeString& value);
    /// Copies both forms, of the entry or of the default.
    bool loadMapVariable(std::string const& key, UnicodeString& value,
                         UnicodeString const& defaultValue);
    /// True for the text "True" in any case, false for every other text.
    bool loadMapVariable(std::string const& key, bool& value, bool defaultValue);
    /// As `atoi` reads it: 0 for text that is no number.
    bool loadMapVariable(std::string const& key, int& value, int defaultValue);
    /// As `strtod` reads it under the numeric locale in force: 0.0 for text that is no number.
    bool loadMapVariable(std::string const& key, double& value, double defaultValue);
    /// Hands out the text inside the map, valid until that entry changes. The default may be null.
    bool loadMapVariable(std::string const& key, char const*& value, char const* defaultValue);
    /// A copy of the text. A null default empties `value`.
    bool loadMapVariable(std::string const& key, std::string& value, char const* defaultValue);
    /// @}

    /// Removes the entry and returns the number removed, 1 or 0.
    std::size_t removeMapVariable(std::string const& key);
    /// The value under `key`, inserted empty if absent.
    UnicodeString& operator[](std::string const& key);
    /// The key at `position`, or an empty text shared by all maps.
    std::string const& operator()(long position);
    /// The value at `position`, or an empty value shared by all maps: what a caller writes into
    /// that one, every later caller with a position that is not valid gets.
    UnicodeString& operator[](long position);

    /// Removes all entries. Texts and values that were handed out are no longer valid.
    void clear();
    /// True without entries.
    bool empty() const;
    /// The number of entries.
    long size() const;

    /// Writes each entry as a line, key, " == ", value, to standard output.
    void dumpStringMapContents();

    /// Copies the entry at `position`. False, with nothing written, when that is not valid.
    bool fetchAttributeValueByIndex(long const& position, std::string& key, UnicodeString& value);
    /// The same, with the narrow form of the value.
    bool fetchAttributeValueByIndex(long const& position, std::string& key, std::string& value);
    /// Sets `it` to the entry at `position`. False, with `it` unchanged, when that is not valid.
    bool fetchIteratorByIndex(long const& position,
                              std::map<std::string, UnicodeString>::iterator& it);

private:
    UnicodeString* findValue(std::string const& key);
    UnicodeString* findTerminated(char const* key);

    std::map<std::string, UnicodeString> attributes;
};

#endif
