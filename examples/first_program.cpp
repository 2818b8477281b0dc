#include <CommonAPI/attribute_map.h>
#include <CommonAPI/logging.h>
#include <CommonAPI/unicode_string.h>

#include <cstdio>
#include <iostream>
#include <string>

int main() {
    AttributeMap settings;
    settings["Global"] = "2";   // errors and worse
    settings["Greeter"] = "4";  // information too
    char const* const log = "first_program.log";
    if (!InitializeLogger(log, &settings, "First program", false)) {
        std::perror(log);
        return 1;
    }

    UnicodeString greeting("Grüße, 世界");
    greeting.wc_str();  // derives the wide form, whose length counts characters
    std::string message = std::to_string(greeting.length()) + " characters: " + greeting.c_str();
    std::cout << message << '\n';
    LogStringMessage(4, "Greeter", message);
    std::cout << "The log is " << log << '\n';
}
