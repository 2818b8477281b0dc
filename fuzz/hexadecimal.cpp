#include "fuzz/target.h"
#include "types/byte_array_access.h"

static std::string Text(ByteArray const& array) {
    auto const& bytes = ByteArrayAccess::bytes(array);
    return {bytes.begin(), bytes.end()};
}

static void Try(std::string const& input) {
    std::string read, digits = "old", written;
    unsigned int number;
    for (std::size_t i = 0; i < input.size(); i += 2) {
        if (std::sscanf(input.substr(i, 2).c_str(), "%02X", &number) != 1)
            break;
        read += static_cast<char>(number);
    }
    char pair[3];
    for (char const byte : input)
        std::snprintf(pair, sizeof pair, "%02X", byte & 0xFF), written += pair;
    ByteArray bytes, fromText("old"), fromBytes("old"), back;
    (bytes = input).getASCIIHex(digits);
    fromText.loadASCIIHex(input), fromBytes.loadASCIIHex(bytes), back.loadASCIIHex(digits);
    Check(Text(fromText) == read && Text(fromBytes) == read);
    Check(digits == written && Text(back) == input);

    // The first line is the pattern, and half its length is where the search begins.
    std::string const pattern = input.substr(0, input.find('\n'));
    std::string const content = input.substr(pattern.size());
    std::size_t const start = pattern.size() / 2;
    long const found = start < content.size() ? content.find(pattern, start) : std::string::npos;
    Check((ByteArray() += content).find(ByteArray() += pattern, start) == found);
}
