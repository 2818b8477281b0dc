// The command for the people who look after installations.

#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>
#include <CLI/CLI.hpp>

#include <iostream>
#include <stdexcept>

#include "cipher.h"
#include "commonapi.h"
#include "help.h"
#include "output.h"
#include "password.h"
#include "text.h"
#include "values.h"

namespace {

constexpr char const* warning =
    "This hides values from a casual reader and no more: blocks are 64 bits wide, not chained and "
    "not authenticated, so equal values look equal and changed ones go unnoticed; and the "
    "passphrase of sealed keys ships in the library, so a sealed key is no better hidden than the "
    "library is.";

using Asked = PasswordSource::Asked;

struct ConversionOptions {
    PasswordSource password;
    bool sealed = false;
    bool raw = false;
    std::vector<std::string> values;

    void addTo(CLI::App& command) {
        command.footer(warning);
        password.addOptions(command);
        command.add_flag("--sealed", sealed,
                         "What is given as the password is a sealed key, in hexadecimal");
        command.add_option("VALUE", values,
                           "The values, which other users can see here; without any, one value a "
                           "line from standard input");
    }

    Cipher cipher(std::string const& purpose, Asked asked) const {
        std::string const kind = sealed ? "Sealed key" : "Password";
        Secret const given = password.read(kind + " to " + purpose + " with", asked);
        Secret const key = sealed ? Open(given) : given;
        return Cipher({key.data(), key.size()});
    }
};

char const* RemarkOnText(std::string_view value) {
    if (value.ends_with('\r'))
        return "the carriage return at its end is part of the value; decrypt wants --raw for it";
    if (WithoutFileMarks(value).size() != value.size())
        return "the byte order mark at its start is part of the value";
    if (!IsText(value))
        return "no text in UTF-8; decrypt wants --raw for it";
    return nullptr;
}

void AddEncrypt(CLI::App& app, bool& refused) {
    auto const options = std::make_shared<ConversionOptions>();
    CLI::App& command = *app.add_subcommand("encrypt", "Encrypt values as clients read them");
    options->addTo(command);
    command.callback([=, &refused] {
        Cipher cipher = options->cipher("encrypt", Asked::twice);
        refused = !ConvertValues(options->values, RemarkOnText,
                                 [&](std::string_view value) { return cipher.encrypt(value); });
    });
}

void AddDecrypt(CLI::App& app, bool& refused) {
    auto const options = std::make_shared<ConversionOptions>();
    CLI::App& command = *app.add_subcommand("decrypt", "Decrypt values that clients read");
    options->addTo(command);
    command.add_flag("--raw", options->raw,
                     "Write a value even if it is no text, as that of a wrong password is");
    command.callback([=, &refused] {
        Cipher cipher = options->cipher("decrypt", Asked::once);
        auto const decrypt = options->raw ? &Cipher::decryptRaw : &Cipher::decrypt;
        auto const noRemark = [](std::string_view) { return nullptr; };
        refused = !ConvertValues(options->values, noRemark,
                                 [&](std::string_view value) { return (cipher.*decrypt)(value); });
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
        if (options->open) {
            Secret const password = Open(options->password.read("Sealed key to open", Asked::once));
            std::cout << std::string_view(password.data(), password.size()) << '\n';
        } else {
            std::cout << Seal(options->password.read("Password to seal", Asked::twice)) << '\n';
        }
    });
}

std::string Published(void* plugin, char const* variable) {
    void* const address = FetchSharedLibraryResource(plugin, variable);
    char const* const text = address ? *static_cast<char const* const*>(address) : nullptr;
    return text ? std::string(" ") + text : "";
}

/// False if the plug-in does not load.
bool ShowPlugin(std::string const& file) {
    // Without a slash, the system's folders would be searched: a file is meant.
    std::string const path = file == "-"                           ? "/dev/stdin"
                             : file.find('/') == std::string::npos ? "./" + file
                                                                   : file;
    void* const plugin = OpenSharedLibrary(path.c_str(), RTLD_NOW);
    if (!plugin) {
        dlopen(path.c_str(), RTLD_NOW);  // the loader has read the first error already
        Report(dlerror());
        return false;
    }
    std::cout << Printable(file + ":" + Published(plugin, "_KeldaSODisplayName") +
                           Published(plugin, "_KeldaSOVersion"))
              << '\n';
    CloseSharedLibrary(plugin);
    return true;
}

void AddPlugin(CLI::App& app, bool& refused) {
    auto const files = std::make_shared<std::vector<std::string>>();
    CLI::App& command = *app.add_subcommand("plugin", "Show who plug-ins are");
    command.add_option("FILE", *files, "The plug-ins; their code runs as they load")->required();
    command.callback([=, &refused] {
        for (std::string const& file : *files)
            refused = !ShowPlugin(file) || refused;
    });
}

/// Does what the command line says, or shows the help or version that it asks for.
void Execute(CLI::App& app, int argc, char** argv) {
    try {
        if (argc > 1)
            app.parse(argc, argv);
        else
            std::cout << app.help();
    } catch (CLI::Success const& request) {
        app.exit(request);
    }
    FinishOutput();
}

}  // namespace

int RunCommand(int argc, char** argv) {
    CLI::App app("Looks after the settings and plug-ins of programs that use libCommonAPI.",
                 "commonapi");
    app.formatter(std::make_shared<HelpFormatter>());
    app.set_help_flag("-h,--help", "Show this help");
    app.set_version_flag("--version", "commonapi " COMMONAPI_VERSION, "Show the version");
    app.require_subcommand(1);
    app.footer(warning);
    bool refused = false;
    AddEncrypt(app, refused);
    AddDecrypt(app, refused);
    AddSealKey(app);
    AddPlugin(app, refused);
    for (CLI::App* command : app.get_subcommands({}))
        command->group("Commands");
    try {
        Execute(app, argc, argv);
    } catch (CLI::ParseError const& mistake) {
        ReportMistake(app, mistake);
        return 2;
    } catch (std::exception const& failure) {
        Report(failure.what());
        return 1;
    }
    return refused;
}
