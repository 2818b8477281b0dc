/// @file
/// Small text and number utilities.
///
/// The library also defines the C library's `strtof`, under that plain name, for everything that
/// binds to it: each call returns 0 with `errno` set to `EINVAL` and leaves `*end` alone. A static
/// library does so only for what is linked together with it. It is declared where it always was, in
/// <stdlib.h>.
#ifndef COMMONAPI_TEXT_UTILITIES_H
#define COMMONAPI_TEXT_UTILITIES_H

#include <CommonAPI/export.h>
#include <CommonAPI/unicode_string.h>

/// ""
extern COMMONAPI_EXPORT char const* const pEmptyString;
/// "True"
extern COMMONAPI_EXPORT char const* const pTrueString;
/// "False"
extern COMMONAPI_EXPORT char const* const pFalseString;

/// Decimal text in one static buffer, which the next call of either overload overwrites. Not for
/// use from several threads at once.
COMMONAPI_EXPORT char* itoa(int value);
/// The same for a `long`.
COMMONAPI_EXPORT char* itoa(long value);

/// The index of `name` in `names`, which holds `count` texts sorted by `strcmp`, or -1; also -1 for
/// a null `name`. Logarithmic time.
///
/// REQUIRES: a readable entry at `names[count]`, which is compared when `name` sorts after the last
/// text, and at `names[0]` even when `count` is 0.
COMMONAPI_EXPORT int ParseAttributeList_LowLevel(char const** names, int count, char const* name);
/// The same for `name.c_str()`.
COMMONAPI_EXPORT int ParseAttributeList_LowLevel(char const** names, int count,
                                                 UnicodeString& name);

#endif
