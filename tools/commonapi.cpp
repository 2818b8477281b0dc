// The command for the people who look after installations.

#include <CommonAPI/byte_array.h>
#include <CommonAPI/encryption_api.h>
#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "commonapi.h"
#include "crypto/built_in_passphrase.h"
#include "password.h"
#include "values.h"

namespace {

constexpr char const* warning =
    "This hides values from a casual reader and no more: blocks are 64 bits wide, not chained and "
    "not authenticated, so equal values look equal and changed ones go unnoticed; and the "
    "passphrase of sealed keys ships in the library, so a sealed key is no better hidden than the "
    "library is.";

constexpr int directPassword = 3;
constexpr std::size_t digitsPerBlock = 16;

/// The converting half of the command: a cipher that clients key in the same way.
class Cipher {
public:
    explicit Cipher(std::string const& password) {
        ByteArray key;
        key = password;
        api.initializeAPI(key, directPassword);
    }

    std::string encrypt(std::string const& value) const {
        if (value.find('\0') != std::string::npos)
            throw std::runtime_error("holds a zero character, at which it would end");
        std::string encrypted;
        api.encryptString(value, encrypted);
        return encrypted;
    }

    std::string decrypt(std::string const& encrypted) const {
        std::size_t const bad = encrypted.find_first_not_of("0123456789ABCDEFabcdef");
        if (bad != std::string::npos)
            throw std::runtime_error("no hexadecimal digit at character " +
                                     std::to_string(bad + 1));
        if (encrypted.size() % digitsPerBlock != 0)
            throw std::runtime_error("not a multiple of 16 digits long");
        std::string value;
        api.decryptString(encrypted, value);
        if (value.find('\n') != std::string::npos || encrypt(value) != UpperCase(encrypted))
            throw std::runtime_error(
                "holds a zero character or a line end, or was encrypted with another password");
        return value;
    }

private:
    static std::string UpperCase(std::string text) {
        std::transform(text.begin(), text.end(), text.begin(), [](char digit) {
            return static_cast<char>(std::toupper(static_cast<unsigned char>(digit)));
        });
        return text;
    }

    EncryptionAPI api;
};

void FinishOutput() {
    if (!std::cout.flush())
        throw std::runtime_error("the output cannot be written");
}

/// Seals keys for mode 4, and opens them.
Cipher Sealer() {
    return Cipher(CommonAPI::internal::BuiltInPassphrase().data());
}

std::string Open(std::string const& sealedKey) {
    try {
        return Sealer().decrypt(sealedKey);
    } catch (std::runtime_error const&) {
        throw std::runtime_error("this is no sealed key in hexadecimal");
    }
}

/// `encrypt` or `decrypt`, as the member function says.
void AddConversion(CLI::App& app, char const* name, char const* description,
                   std::string (Cipher::*convert)(std::string const&) const, bool& refused) {
    struct Options {
        PasswordSource password;
        bool sealed = false;
        std::vector<std::string> values;
    };
    auto const options = std::make_shared<Options>();
    CLI::App& command = *app.add_subcommand(name, description)->footer(warning);
    options->password.addOptions(command);
    command.add_flag("--sealed", options->sealed,
                     "What is given as the password is a sealed key, in hexadecimal");
    command.add_option("values", options->values,
                       "The values; none: one value a line from standard input");
    command.callback([=, &refused] {
        std::string const password = options->password.read("Password: ");
        Cipher const cipher(options->sealed ? Open(password) : password);
        refused = !ConvertValues(
            options->values, [&](std::string const& value) { return (cipher.*convert)(value); });
    });
}

void AddSealKey(CLI::App& app) {
    struct Options {
        PasswordSource password;
        bool open = false;
    };
    auto const options = std::make_shared<Options>();
    CLI::App& command =
        *app.add_subcommand("seal-key", "Turn a password into a sealed key for clients")
             ->footer(warning);
    options->password.addOptions(command);
    command.add_flag("--open", options->open,
                     "Show the password that a sealed key, given as the password, stands for");
    command.callback([=] {
        std::string const password = options->password.read("Password or sealed key: ");
        std::cout << (options->open ? Open(password) : Sealer().encrypt(password)) << '\n';
        FinishOutput();
    });
}

std::string Published(void* plugin, char const* variable) {
    void* const address = FetchSharedLibraryResource(plugin, variable);
    char const* const text = address ? *static_cast<char const* const*>(address) : nullptr;
    return text ? std::string(" ") + text : "";
}

/// False if the plug-in does not load.
bool ShowPlugin(std::string const& file) {
    // Never a search in the system's folders: a file is meant.
    std::string const path = std::filesystem::absolute(file);
    void* const plugin = OpenSharedLibrary(path.c_str(), RTLD_NOW);
    if (!plugin) {
        dlopen(path.c_str(), RTLD_NOW);  // the loader has read the first error already
        std::cerr << "commonapi: " << dlerror() << '\n';
        return false;
    }
    std::cout << file << ":" << Published(plugin, "_KeldaSODisplayName")
              << Published(plugin, "_KeldaSOVersion") << '\n';
    CloseSharedLibrary(plugin);
    return true;
}

void AddPlugin(CLI::App& app, bool& refused) {
    auto const files = std::make_shared<std::vector<std::string>>();
    CLI::App& command = *app.add_subcommand("plugin", "Show who plug-ins are");
    command.add_option("files", *files, "The plug-ins; their code runs as they load")->required();
    command.callback([=, &refused] {
        for (std::string const& file : *files)
            refused = !ShowPlugin(file) || refused;
        FinishOutput();
    });
}

}  // namespace

int RunCommand(int argc, char** argv) {
    CLI::App app("Looks after the settings and plug-ins of programs that use libCommonAPI.",
                 "commonapi");
    app.set_version_flag("--version", "commonapi " COMMONAPI_VERSION);
    app.require_subcommand(1);
    app.footer(warning);
    bool refused = false;
    AddConversion(app, "encrypt", "Encrypt values as clients read them", &Cipher::encrypt, refused);
    AddConversion(app, "decrypt", "Decrypt values that clients read", &Cipher::decrypt, refused);
    AddSealKey(app);
    AddPlugin(app, refused);
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
        return app.exit(error);
    } catch (std::exception const& failure) {
        std::cerr << "commonapi: " << failure.what() << '\n';
        return 1;
    }
    return refused;
}
