// A client program as its author would write it: it reads its settings, opens the log with them,
// and puts a text and a file through the library's value types.

#include <CommonAPI/attribute_map.h>
#include <CommonAPI/byte_array.h>
#include <CommonAPI/encryption_api.h>
#include <CommonAPI/logging.h>
#include <CommonAPI/system_information.h>
#include <CommonAPI/unicode_string.h>
#include <CLI/CLI.hpp>

#include <bit>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace {

constexpr char const* module = "Client";

void Log(std::string text) {
    LogStringMessage(4, module, text);
}

std::string ReadFile(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    std::string content(std::istreambuf_iterator<char>(file), {});
    if (!file.is_open() || file.bad())
        throw std::runtime_error(path + ": cannot be read");
    return content;
}

void WriteFile(std::string const& path, std::string const& content) {
    std::ofstream file(path, std::ios::binary);
    if (!file.write(content.data(), static_cast<std::streamsize>(content.size())).flush())
        throw std::runtime_error(path + ": cannot be written");
}

std::string Trimmed(std::string const& text) {
    auto const first = text.find_first_not_of(" \t\r");
    auto const last = text.find_last_not_of(" \t\r");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

/// Reads lines of the form `key = value`; empty lines and those that begin with # are comments.
AttributeMap ReadSettings(std::string const& path) {
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

/// The settings named "log." and a module, without that prefix: what the logger wants.
AttributeMap LogLevels(AttributeMap& settings) {
    std::string const prefix = "log.";
    AttributeMap levels;
    std::string key;
    UnicodeString value;
    for (long i = 0; settings.fetchAttributeValueByIndex(i, key, value); ++i)
        if (key.compare(0, prefix.size(), prefix) == 0)
            levels[key.substr(prefix.size())] = value;
    return levels;
}

void ReportSurroundings() {
    std::string user;
    std::string host;
    std::string time;
    GetCurrentUserName(user, true, true);
    GetLocalHostname(host);
    GetCurrentTime(time, "%Y-%m-%d %H:%M:%S %z");
    Log("Started by " + user + " on " + host + " at " + time);
}

/// Logs the setting "greeting", which is encrypted under the sealed key that "key" holds.
void Greet(AttributeMap& settings) {
    std::string sealedKey;
    std::string encrypted;
    if (!settings.loadMapVariable("key", sealedKey, nullptr) ||
        !settings.loadMapVariable("greeting", encrypted, nullptr))
        return;
    ByteArray key;
    key.loadASCIIHex(sealedKey);
    EncryptionAPI encryption;
    encryption.initializeAPI(key, 4);
    std::string greeting;
    if (!encryption.decryptString(encrypted, greeting))
        throw std::runtime_error("the setting \"greeting\" cannot be decrypted");
    Log("Greeting: " + greeting);
}

/// A conversion would wait for the rest of such a text, so no client may begin it.
bool EndsInsideCharacter(std::string const& text) {
    std::size_t following = 0;
    while (following < text.size() && (text[text.size() - 1 - following] & 0xC0) == 0x80)
        ++following;
    if (following == text.size())
        return false;
    auto const lead = static_cast<unsigned char>(text[text.size() - 1 - following]);
    return lead >= 0xC0 && std::countl_one(lead) > static_cast<int>(following) + 1;
}

/// Converts a file of UTF-8 to wide characters and back into `copyPath`, unchanged.
void ConvertText(std::string const& path, std::string const& copyPath) {
    std::string const content = ReadFile(path);
    if (EndsInsideCharacter(content))
        throw std::runtime_error(path + ": the text ends inside a character");

    UnicodeString text(content);
    UnicodeString back(text.wc_str());
    if (back.c_str() != content)
        throw std::runtime_error(path + ": not UTF-8 text");
    WriteFile(copyPath, back.c_str());
    if (ReadFile(copyPath) != content)
        throw std::runtime_error(copyPath + ": differs from " + path);
    Log(path + ": " + std::to_string(content.size()) + " bytes hold " +
        std::to_string(content.empty() ? 0 : text.length()) +
        " characters, unchanged by a round trip");
}

/// Writes a file's bytes as hexadecimal text to `hexPath`, and proves that they can be had back.
void ConvertBytes(std::string const& path, std::string const& hexPath) {
    ByteArray bytes;
    bytes = ReadFile(path);
    std::string hexadecimal;
    bytes.getASCIIHex(hexadecimal);
    WriteFile(hexPath, hexadecimal);

    ByteArray back;
    back.loadASCIIHex(ReadFile(hexPath));
    if (back.size() != bytes.size() || back.find(bytes, 0) != (bytes.empty() ? -1 : 0))
        throw std::runtime_error(hexPath + ": does not give back " + path);
    Log(path + ": " + std::to_string(bytes.size()) + " bytes as " +
        std::to_string(hexadecimal.size()) + " hexadecimal digits and back");
}

void Run(std::string const& settingsPath, std::string const& textPath, std::string const& folder) {
    AttributeMap settings = ReadSettings(settingsPath);
    AttributeMap levels = LogLevels(settings);
    std::string application;
    settings.loadMapVariable("application", application, "client");
    if (!InitializeLogger(folder + "/client.log", &levels, application.c_str(), false))
        throw std::runtime_error(folder + "/client.log: cannot be opened");

    Log(settingsPath + ": " + std::to_string(settings.size()) + " settings");
    ReportSurroundings();
    Greet(settings);
    ConvertText(textPath, folder + "/copy.txt");
    bool hexadecimal;
    settings.loadMapVariable("hexadecimal", hexadecimal, true);
    if (hexadecimal)
        ConvertBytes(textPath, folder + "/copy.hex");
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Puts a text through the library and logs what it does.");
    std::string settings;
    std::string text;
    std::string folder = ".";
    app.add_option("settings", settings, "file of lines \"key = value\"")->required();
    app.add_option("text", text, "file of UTF-8 text")->required();
    app.add_option("--output", folder, "folder for client.log, copy.txt and copy.hex");
    CLI11_PARSE(app, argc, argv);
    try {
        Run(settings, text, folder);
    } catch (std::exception const& failure) {
        LogMessage(1, module, failure.what());
        std::cerr << "client: " << failure.what() << '\n';
        return 1;
    }
}
