// A program of one map of settings, to be started beside start_without.cpp.
#include <CommonAPI/attribute_map.h>

int main() {
    AttributeMap settings;
    settings["Global"] = "2";
    return settings["Global"].length() == 1 ? 0 : 1;
}
