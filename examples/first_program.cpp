#include <CommonAPI/attribute_map.h>
#include <CommonAPI/logging.h>
#include <CommonAPI/unicode_string.h>

#include <iostream>
#include <string>

int main() {
    AttributeMap settings;
    settings["Global"] = "2";   // errors and worse
    settings["Greeter"] = "4";  // information too
    if (!InitializeLogger("first_program.log", &settings, "First program", false))
        return 1;

    UnicodeString greeting("Grüße, 世界");
    greeting.wc_str();  // derives the wide form, whose length counts characters
    std::string message = std::to_string(greeting.length()) + " characters: " + greeting.c_str();
    std::cout << message << '\n';
    LogStringMessage(4, "Greeter", message);
}
