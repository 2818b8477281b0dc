#include <CommonAPI/text_utilities.h>

#include <cstdio>
#include <cstring>

#include "types/requirement.h"

char const* const pEmptyString = "";
char const* const pTrueString = "True";
char const* const pFalseString = "False";

namespace {

char numberText[256];

}  // namespace

char* itoa(int value) {
    std::snprintf(numberText, sizeof numberText, "%d", value);
    return numberText;
}

char* itoa(long value) {
    std::snprintf(numberText, sizeof numberText, "%ld", value);
    return numberText;
}

int ParseAttributeList_LowLevel(char const** names, int count, char const* name) {
    if (!name)
        return -1;
    CommonAPI::internal::NotNull(names, "ParseAttributeList_LowLevel");

    int low = 0;
    int high = count == 0 ? 1 : count;  // entry 0 is compared even in an empty table
    int middle = count / 2;
    bool lastProbe = false;
    while (low != high) {
        int const order = std::strcmp(names[middle], name);
        if (order == 0)
            return middle;
        if (lastProbe)
            return -1;

        int const lastLow = low;
        int const lastMiddle = middle;
        (order > 0 ? high : low) = middle;
        middle = low + (high - low) / 2;
        if (high - low == 1 && middle != (order > 0 ? 0 : count)) {
            // One more comparison beside the range: beyond the last name it reads names[count].
            middle += order > 0 ? -1 : 1;
            lastProbe = true;
        } else if (order < 0 && low == lastLow && middle == lastMiddle) {
            return -1;  // an empty table whose entry 0 sorts before the name: nothing moves any
                        // more
        }
    }
    return -1;
}

int ParseAttributeList_LowLevel(char const** names, int count, UnicodeString& name) {
    return ParseAttributeList_LowLevel(names, count, name.c_str());
}
