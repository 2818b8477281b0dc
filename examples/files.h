#pragma once

#include <CommonAPI/attribute_map.h>
#include <CommonAPI/paper_size.h>

#include <bit>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// What the sample client reads and writes. Each function that reads or writes throws
// `std::runtime_error` with a line for the user.

inline std::string ReadFile(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    std::string content(std::istreambuf_iterator<char>(file), {});
    if (!file.is_open() || file.bad())
        throw std::runtime_error(path + ": cannot be read");
    return content;
}

inline void WriteFile(std::string const& path, std::string const& content) {
    std::ofstream file(path, std::ios::binary);
    if (!file.write(content.data(), static_cast<std::streamsize>(content.size())).flush())
        throw std::runtime_error(path + ": cannot be written");
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

/// A conversion would wait for the rest of such a text, so no client may begin it.
inline bool EndsInsideCharacter(std::string const& text) {
    std::size_t following = 0;
    while (following < text.size() && (text[text.size() - 1 - following] & 0xC0) == 0x80)
        ++following;
    if (following == text.size())
        return false;
    auto const lead = static_cast<unsigned char>(text[text.size() - 1 - following]);
    return lead >= 0xC0 && std::countl_one(lead) > static_cast<int>(following) + 1;
}
