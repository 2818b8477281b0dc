#include <CommonAPI/attribute_map.h>
#include <CommonAPI/byte_array.h>
#include <CommonAPI/unicode_string.h>

#include <iostream>

int main() {
    AttributeMap settings;
    settings["copies"] = "3";
    settings["duplex"] = "true";
    int copies;
    bool duplex;
    bool const found = settings.loadMapVariable("copies", copies, 1);
    settings.loadMapVariable("duplex", duplex, false);
    std::cout << copies << " copies" << (found ? "" : " by default") << ", duplex " << duplex
              << "\n";

    UnicodeString text(L"Grüße");  // the wide form; c_str() derives the other one
    std::cout << text << " has " << text.length() << " characters\n";

    ByteArray bytes(text.c_str());
    std::string hexadecimal;
    bytes.getASCIIHex(hexadecimal);
    std::cout << bytes.size() << " bytes: " << hexadecimal << "\n";
}
