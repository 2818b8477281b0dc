#ifndef COMMONAPI_EXAMPLES_FILES_H
#define COMMONAPI_EXAMPLES_FILES_H

#include <CommonAPI/attribute_map.h>
#include <CommonAPI/paper_size.h>

#include <cerrno>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

// What the samples read and write. Each function that reads or writes throws
// `std::runtime_error` with a line for the user.

inline std::string ReadFile(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    std::string content;
    char block[4096];
    while (file.read(block, sizeof block), file.gcount() > 0)
        content.append(block, static_cast<std::size_t>(file.gcount()));
    if (!file.is_open() || file.bad())
        throw std::system_error(errno, std::generic_category(), path);
    return content;
}

inline void WriteFile(std::string const& path, std::string const& content) {
    std::ofstream file(path, std::ios::binary);
    if (!file.write(content.data(), static_cast<std::streamsize>(content.size())).flush())
        throw std::system_error(errno, std::generic_category(), path);
}

inline std::string Trimmed(std::string const& text) {
    auto const first = text.find_first_not_of(" \t\r");
    auto const last = text.find_last_not_of(" \t\r");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

/// Reads lines of the form `key = value`; empty lines and those that begin with # are comments.
inline AttributeMap ReadSettings(std::string const& path) {
    AttributeMap settings;
    std::istringstream lines(ReadFile(path));
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        line = Trimmed(line);
        if (line.empty() || line[0] == '#')
            continue;
        auto const separator = line.find('=');
        if (separator == std::string::npos)
            throw std::runtime_error(path + ":" + std::to_string(number) + ": no '=' in this line");
        settings[Trimmed(line.substr(0, separator))] = Trimmed(line.substr(separator + 1));
    }
    return settings;
}

/// Reads lines of a name and a size, in points and in millimetres, with tabs between them.
inline std::vector<PaperSizeData> ReadPaperSizes(std::string const& path) {
    std::vector<PaperSizeData> sizes;
    std::istringstream lines(ReadFile(path));
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        PaperSizeData& data = sizes.emplace_back();
        std::istringstream fields(line);
        std::getline(fields, data.name, '\t');
        fields >> data.widthPts >> data.heightPts >> data.widthMM >> data.heightMM;
        if (!fields)
            throw std::runtime_error(path + ": no paper size in the line \"" + line + "\"");
    }
    return sizes;
}

/// Whether a conversion would wait for the rest of the text, which no client may let it: at the end, or
/// in front of the first zero, stands the first byte of a sequence that is longer than what is left.
inline bool EndsInsideCharacter(std::string_view text) {
    auto const zero = text.find('\0');
    if (zero != text.npos && EndsInsideCharacter(text.substr(0, zero)))
        return true;
    // From the text's last byte on: the least one that begins a sequence which goes beyond the end.
    unsigned char const firstBytes[] = {0xC0, 0xE0, 0xF0, 0xF8, 0xFC};
    for (unsigned char const first : firstBytes) {
        if (text.empty())
            return false;
        if (static_cast<unsigned char>(text.back()) >= first)
            return true;
        text.remove_suffix(1);
    }
    return false;
}

#endif
