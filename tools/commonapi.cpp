// The command for the people who look after installations.

#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>
#include <sys/eventfd.h>
#include <sys/wait.h>
#include <CLI/CLI.hpp>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <stdexcept>

#include "cipher.h"
#include "commonapi.h"
#include "help.h"
#include "output.h"
#include "password.h"
#include "terminal.h"
#include "text.h"
#include "values.h"

namespace {

constexpr char const* warning =
    "This hides values from a casual reader and no more: blocks are 64 bits wide, not chained and "
    "not authenticated, so equal values look equal and changed ones go unnoticed; and the "
    "passphrase of sealed keys ships in the library, so a sealed key is no better hidden than the "
    "library is.";

using Asked = PasswordSource::Asked;

void RemarkOnLength(Secret const& password) {
    if (password.size() > 72)
        Report("only the first 72 bytes of the password count");
}

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
                           "The values; as arguments, other users of the machine can see them. "
                           "Without any, one value a line from standard input");
    }

    Cipher cipher(std::string const& purpose, Asked asked) const {
        std::string const kind = sealed ? "Sealed key" : "Password";
        // A sealed key with a slip is refused, so that once is enough.
        Secret const given =
            password.read(kind + " to " + purpose + " with", sealed ? Asked::once : asked);
        Secret const key = sealed ? Open(given) : given;
        RemarkOnLength(key);
        return Cipher({key.data(), key.size()});
    }
};

char const* RemarkOnText(std::string_view value) {
    if (value.ends_with('\r'))
        return "the carriage return at its end is part of the value; decrypt wants --raw for it";
    if (!IsText(value))
        return "no text in UTF-8; decrypt wants --raw for it";
    if (WithoutFileMarks(value).size() != value.size())
        return "the byte order mark at its start is part of the value";
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
                     "Write what values decrypt to as it is, whether it is text or not, without "
                     "its padding: up to seven zero bytes");
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
            Secret const password = options->password.read("Password to seal", Asked::twice);
            RemarkOnLength(password);
            std::cout << Seal(password) << '\n';
        }
    });
}

std::string Published(void* plugin, char const* variable) {
    void* const address = FetchSharedLibraryResource(plugin, variable);
    char const* const text = address ? *static_cast<char const* const*>(address) : nullptr;
    return text ? std::string(" ") + text : "";
}

/// Writes a line on a plug-in; false, with the reason reported, if it does not load.
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
    std::string const published =
        Published(plugin, "_KeldaSODisplayName") + Published(plugin, "_KeldaSOVersion");
    std::cout << Printable(file + ":" + (published.empty() ? " publishes no name" : published))
              << std::endl;  // before code of the plug-in can end the process
    CloseSharedLibrary(plugin);
    return true;
}

/// The same in a process of its own, which a plug-in may end, with whatever status.
bool ShowPluginAside(std::string const& file) {
    enum Answer : eventfd_t { shown = 1, refused, notWritten };
    FinishOutput();  // of which the process would have a copy
    Descriptor const channel(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    pid_t const process = channel.number < 0 ? -1 : fork();
    if (process < 0)
        throw std::runtime_error(file + ": " + SystemError());
    if (process == 0) {
        Answer const loaded = ShowPlugin(file) ? shown : refused;
        eventfd_write(channel.number, std::cout ? loaded : notWritten);
        std::exit(0);
    }
    int status = 0;
    waitpid(process, &status, 0);
    eventfd_t answer = 0;
    if (WIFSIGNALED(status))
        Report(file + ": ended by " + strsignal(WTERMSIG(status)));
    else if (eventfd_read(channel.number, &answer) != 0)
        Report(file + ": ended the process while it was loaded");
    else if (answer == notWritten)
        std::cout.setstate(std::ios::badbit);
    return answer == shown;
}

void AddPlugin(CLI::App& app, bool& refused) {
    auto const files = std::make_shared<std::vector<std::string>>();
    CLI::App& command = *app.add_subcommand("plugin", "Show who plug-ins are");
    command.footer("");
    command.add_option("FILE", *files, "The plug-ins; their code runs as they load")->required();
    command.callback([=, &refused] {
        for (std::string const& file : *files)
            refused = !ShowPluginAside(file) || refused;
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
