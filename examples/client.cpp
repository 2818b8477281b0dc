// A client program as its author would write it, from its settings to its exit.

#include <CommonAPI/attribute_map.h>
#include <CommonAPI/byte_array.h>
#include <CommonAPI/encryption_api.h>
#include <CommonAPI/logging.h>
#include <CommonAPI/paper_size.h>
#include <CommonAPI/shared_object_loader.h>
#include <CommonAPI/signal_trap.h>
#include <CommonAPI/system_information.h>
#include <CommonAPI/unicode_string.h>
#include <dlfcn.h>
#include <CLI/CLI.hpp>

#include <cerrno>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "files.h"

namespace {

constexpr char const* module = "Client";

struct Arguments {
    std::string settings;
    std::string text;
    std::string output = ".";
    std::string plugin;
    std::string media;
    bool crash = false;
};

void Log(std::string text) {
    LogStringMessage(4, module, text);
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

/// Converts a file of UTF-8 to wide characters and back into `copyPath`, unchanged.
void ConvertText(std::string const& path, std::string const& copyPath) {
    std::string const content = ReadFile(path);
    if (EndsInsideCharacter(content))
        throw std::runtime_error(path + ": not UTF-8 text, or cut inside a character");

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

/// Has a plug-in describe the text.
void Describe(std::string const& pluginPath, std::string const& textPath) {
    // Whole, as a bare name would be looked for in the system's folders only.
    std::string const path = std::filesystem::absolute(pluginPath);
    void* const plugin = OpenSharedLibrary(path.c_str(), RTLD_NOW);
    if (!plugin) {
        dlopen(path.c_str(), RTLD_NOW);  // for the reason, which has gone into the log alone
        throw std::runtime_error(dlerror());
    }
    using EntryPoint = void (*)(UnicodeString&, std::string&);
    auto const describe =
        reinterpret_cast<EntryPoint>(FetchSharedLibraryResource(plugin, "DescribeText"));
    if (!describe)
        throw std::runtime_error(pluginPath + ": has no DescribeText");
    UnicodeString text(ReadFile(textPath));
    std::string description;
    describe(text, description);
    Log("The plug-in says: " + description);
    CloseSharedLibrary(plugin);
}

/// Registers the paper sizes of a file and looks up the one that the setting "paper" names.
void LookUpPaper(std::string const& mediaPath, AttributeMap& settings) {
    auto const records = ReadPaperSizes(mediaPath);  // the registry only points to them
    PaperSize sizes;
    for (PaperSizeData const& data : records)
        sizes.addPaperSizeToList(&data);
    std::string paper;
    settings.loadMapVariable("paper", paper, "A4");
    int width;
    int height;
    if (!sizes.getPaperSizeInPts(paper, width, height))
        throw std::runtime_error(mediaPath + ": has no paper \"" + paper + "\"");
    Log(paper + " is " + std::to_string(width) + " by " + std::to_string(height) + " points");
}

void Run(Arguments const& arguments) {
    AttributeMap settings = ReadSettings(arguments.settings);
    AttributeMap levels = LogLevels(settings);
    std::string application;
    settings.loadMapVariable("application", application, "client");
    std::string const log = arguments.output + "/client.log";
    if (!InitializeLogger(log, &levels, application.c_str(), false))
        throw std::system_error(errno, std::generic_category(), log);
    std::cout << "The log is " << log << '\n';
    for (int const signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        TrapExceptionSignal(signal, nullptr);

    Log(arguments.settings + ": " + std::to_string(settings.size()) + " settings");
    ReportSurroundings();
    Greet(settings);
    std::string const copy = arguments.output + "/copy.txt";
    ConvertText(arguments.text, copy);
    std::cout << "The copy is " << copy << '\n';
    bool hexadecimal;
    settings.loadMapVariable("hexadecimal", hexadecimal, true);
    if (hexadecimal) {
        std::string const digits = arguments.output + "/copy.hex";
        ConvertBytes(arguments.text, digits);
        std::cout << "In hexadecimal it is " << digits << '\n';
    }
    if (!arguments.plugin.empty())
        Describe(arguments.plugin, arguments.text);
    if (!arguments.media.empty())
        LookUpPaper(arguments.media, settings);
    if (arguments.crash) {
        std::cout << "Crashes now, on purpose: the log tells how" << std::endl;
        int volatile* volatile nowhere = nullptr;
        *nowhere = 1;
    }
}

}  // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    CLI::App app("Puts a text through the library and logs what it does.");
    app.add_option("settings", arguments.settings, "file of lines \"key = value\"")->required();
    app.add_option("text", arguments.text, "file of UTF-8 text")->required();
    app.add_option("--output", arguments.output, "folder for client.log, copy.txt and copy.hex");
    app.add_option("--plugin", arguments.plugin, "plug-in to describe the text");
    app.add_option("--media", arguments.media, "file of paper sizes");
    app.add_flag("--crash", arguments.crash, "crash at the end, to see the report in the log");
    CLI11_PARSE(app, argc, argv);
    try {
        Run(arguments);
    } catch (std::exception const& failure) {
        LogMessage(1, module, failure.what());
        std::cerr << "client: " << failure.what() << '\n';
        return 1;
    }
}
