#ifndef COMMONAPI_TOOLS_TEXT_H
#define COMMONAPI_TOOLS_TEXT_H

#include <string>
#include <string_view>

/// Whether this is UTF-8 without control characters other than tabs, and, if it is as short as a
/// block of the cipher, without Latin letters beside ones of most other alphabets: a block that is
/// decrypted with a wrong password passes for text once in 1,250 times, and twice as often without
/// that.
bool IsText(std::string_view value);

/// With control characters, and bytes that are not UTF-8, as \xHH.
std::string Printable(std::string_view text);

/// Without what editors add to a line of a file: a byte order mark before, a carriage return after.
std::string_view WithoutFileMarks(std::string_view line);

#endif
