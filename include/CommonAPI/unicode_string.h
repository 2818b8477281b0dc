/// @file
/// `UnicodeString`, text in two forms: wide characters and UTF-8.
#ifndef COMMONAPI_UNICODE_STRING_H
#define COMMONAPI_UNICODE_STRING_H

#include <CommonAPI/export.h>

#include <cstddef>
#include <iosfwd>
#include <string>

/// The empty base of `UnicodeString`.
class AbstractUnicodeString {};

/// A text held in a wide form (one 32-bit `wchar_t` per character, UTF-32 in the machine's byte
/// order) and a narrow form (UTF-8 bytes). Either may be empty, which means that it is not held.
///
/// The forms are not kept alike. An operation works on the form that it names; `c_str()` and
/// `wc_str()` derive a missing form from the other one, and a form once held is handed out as it
/// stands, even if the other has changed since. What is derived after an edit is stated per
/// operation. A conversion that meets illegal input leaves the form that it was producing empty.
///
/// Where an operation says "narrow form from the first quarter", the wide form is converted with
/// its length in characters given as a length in bytes, so that only length / 4 characters arrive.
///
/// Null texts are allowed only where stated. Positions are handed to the standard string, which
/// throws `std::out_of_range` (`insert`, `erase`, `substr`), or are not checked (`compare`, `[]`).
///
/// Narrow text that ends inside a UTF-8 sequence must not be converted: the conversion to the wide
/// form waits for the rest and does not return. Where the library was built with COMMONAPI_HARDENED
/// it takes such text for illegal, and null texts that are not allowed end the process.
///
/// Ownership: the object owns both forms, and what `c_str()` and `wc_str()` return is valid until
/// the form changes. Converters belong to the process and are closed at its exit; a conversion
/// after that finds none and leaves its form empty.
///
/// Threads: conversions use process-wide state without locks, so the caller serialises them, even
/// those of distinct objects.
class COMMONAPI_EXPORT UnicodeString : public AbstractUnicodeString {
public:
    /// Holds neither form.
    UnicodeString();
    /// Opens, or finds, the converter from `encoding` to wide characters. `text` is not converted:
    /// it becomes the narrow form, byte for byte.
    UnicodeString(char const* encoding, char const* text);
    /// Holds the narrow form only.
    UnicodeString(char const* text);
    /// The same, with the text up to its first zero character.
    UnicodeString(std::string const& text);
    /// Holds the wide form only.
    UnicodeString(wchar_t const* text);
    /// Copies both forms.
    UnicodeString(UnicodeString const& other);
    ~UnicodeString();

    /// Sets the narrow form; the wide form stays.
    UnicodeString& operator=(char const* text);
    /// The same, with the text up to its first zero character.
    UnicodeString& operator=(std::string const& text);
    /// Sets the wide form; the narrow form stays.
    UnicodeString& operator=(wchar_t const* text);
    /// Copies both forms.
    UnicodeString& operator=(UnicodeString& other);
    /// Sets the narrow form to the number in decimal, right-aligned in 511 characters.
    UnicodeString& operator=(long const& value);

    /// Appends to the narrow form (nothing if null), then derives the wide form again if one is
    /// held: a text held only in wide form is lost.
    UnicodeString& operator+=(char const* text);
    /// Appends to the wide form (nothing if null); if a narrow form is held, derives the narrow
    /// form from the first quarter: a text held only in narrow form is lost.
    UnicodeString& operator+=(wchar_t const* text);
    /// The same as for `text.c_str()`.
    UnicodeString& operator+=(std::string const& text);
    /// Appends the wide form of `other` if it holds one, else its narrow form.
    UnicodeString& operator+=(UnicodeString const& other);
    /// Appends the number as "%f" writes it, as narrow text.
    UnicodeString& operator+=(float const& value);

    /// Inserts the first `count` bytes of `text` (not checked), or all of it if `count` is -1, into
    /// the narrow form; if that is empty, first derives the narrow form from the first quarter. The
    /// wide form stays.
    void insert(std::string const& text, long const& position, long const& count);
    /// Removes `count` characters (-1: all that follow) from the wide form; if a narrow form is
    /// held, derives the narrow form from the first quarter.
    void erase(int position, int count);
    /// Empties both forms.
    void clear();

    /// The narrow form, derived from the whole wide form if missing.
    char const* c_str();
    /// The wide form, derived from the narrow form if missing.
    wchar_t const* wc_str();
    /// The same as `c_str()`.
    char const* operator*();
    /// The byte at `index` of `c_str()`, by value. Not checked.
    char operator[](int index);

    /// The same as `empty()`.
    bool operator!() const;
    /// True when neither form is held.
    bool empty() const;
    /// The number of characters of the wide form if held, else of bytes of the narrow form if held,
    /// else -1.
    long length() const;
    /// Part of the narrow form; if that is empty, first derives the narrow form from the first
    /// quarter.
    std::string substr(long const& position, long const& count);

    /// True when `c_str()` and `text` are equal, byte by byte.
    bool operator==(char const* text);
    /// Compares the wide forms, deriving those that are missing.
    bool operator==(UnicodeString& other);
    /// `strcmp` or `strcasecmp` of `c_str()` and `text`.
    int compare(char const* text, bool caseSensitive);
    /// The same from the byte at `position` on, for at most `count` bytes; 0 means to the end.
    int compare(char const* text, long const& position, long const& count, bool caseSensitive);
    /// `wcscmp` or `CommonAPI::wcscasecmp` of the wide form as it stands and `text`. If no wide
    /// form is held: 0 for a null `text`, else -1. If one is held and `text` is null: 1.
    int compare(wchar_t const* text, bool caseSensitive);

    /// Position of the first match in the narrow form as it stands, in bytes, or -1. The search
    /// starts at `position`.
    long find(char c, long const& position);
    /// The same for a text.
    long find(char const* text, long const& position);
    /// Position of the first match in the wide form as it stands, in characters, or -1.
    long find(wchar_t c);
    /// The same for a text.
    long find(wchar_t const* text);
    /// The same for the wide form of `other`, which is derived if missing.
    long find(UnicodeString& other);

    /// Opens the two converters between UTF-8 and wide characters; the first conversion does this
    /// by itself, once, whatever comes of it. True when both could be opened.
    bool instantiateBaseTranscoders();
    /// Gives the object the process-wide converter of the pair, opening it if there is none yet;
    /// one that cannot be opened is tried again at the next request. No conversion uses it.
    void instantiateTargetTranscoder(char const* first, char const* second);
    /// Sets the narrow form to `text` and the wide form to what its first `count` bytes
    /// (0xFFFFFFFF: all) convert to. Returns the wide form. The text may lie in the object.
    wchar_t const* transcodeMessage(char const* text, unsigned int count);
    /// Sets the narrow form to what the first `count` bytes of `text` convert to, and returns it.
    /// The count is in bytes, four to a character.
    char const* transcodeMessage(wchar_t const* text, unsigned int count);
    /// True when `result` is -1 and `errno` is `EILSEQ`.
    bool transcodingError(int result) const;

private:
    void startTranscoding();
    void deriveNarrow(wchar_t const* text, std::size_t count);
    void deriveWide();
    void convertToWide(char const* text, std::size_t count, std::wstring& converted);
    void narrowFromFirstQuarter();

    std::wstring wideString;
    std::string narrowString;
    void* targetTranscoder;
};

/// Writes `text.c_str()`.
COMMONAPI_EXPORT std::ostream& operator<<(std::ostream& stream, UnicodeString& text);

namespace CommonAPI {

/// Compares two wide texts with both upper-cased by `towupper`, as far as the length of `a`:
/// characters of `b` beyond that are not looked at, so "ab" equals "ABC". Returns a negative
/// number, zero or a positive number.
///
/// The C library has a function of this name, so ours keeps its decorated global name for the
/// linker only and stands in a namespace for the compiler.
COMMONAPI_EXPORT int wcscasecmp(wchar_t const* a, wchar_t const* b) __asm__("_Z10wcscasecmpPKwS0_");

}  // namespace CommonAPI

#endif
