#include "help.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <regex>
#include <sstream>

#include "output.h"

namespace {

constexpr std::size_t descriptionColumn = 24;

std::size_t TerminalWidth() {
    constexpr std::size_t least = 2 * descriptionColumn;
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return 80;
    return std::max<std::size_t>(size.ws_col, least);
}

/// Lines that do not fit go on below; what is indented, in the column of descriptions.
std::string Wrapped(std::string const& text, std::size_t width) {
    std::string wrapped;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::size_t const indent = line.starts_with(' ') ? descriptionColumn : 0;
        while (line.size() > width) {
            std::size_t const blank = line.rfind(' ', width);
            if (blank == std::string::npos || blank <= indent)
                break;
            wrapped += line.substr(0, blank) + '\n';
            line.replace(0, blank + 1, indent, ' ');
        }
        wrapped += line + '\n';
    }
    return wrapped;
}

/// "--password-file: 1 required FILE missing" in plain words.
std::string Reworded(std::string const& message) {
    return std::regex_replace(message, std::regex(": 1 required (.*) missing$"), ": needs a $1");
}

std::string Complaint(CLI::App const& app, CLI::ParseError const& error) {
    std::vector<std::string> const unexpected = app.remaining(true);
    if (unexpected.empty())
        return app.get_subcommands().empty() ? "no command" : Reworded(error.what());
    char const* const kind = unexpected[0].starts_with('-')  ? "unknown option"
                             : app.get_subcommands().empty() ? "unknown command"
                                                             : "unexpected argument";
    return std::string(kind) + " '" + unexpected[0] + "'";
}

}  // namespace

HelpFormatter::HelpFormatter() {
    column_width(descriptionColumn);
    label("OPTIONS", "OPTION...");
    label("SUBCOMMAND", "COMMAND");
    label("Positionals", "Arguments");
}

std::string HelpFormatter::make_help(CLI::App const* app, std::string name,
                                     CLI::AppFormatMode mode) const {
    return Wrapped(CLI::Formatter::make_help(app, std::move(name), mode), TerminalWidth());
}

std::string HelpFormatter::make_option_opts(CLI::Option const* option) const {
    bool const isOptionWithValue = !option->get_positional() && option->get_type_size() != 0;
    return isOptionWithValue ? " " + option->get_type_name() : "";
}

void ReportMistake(CLI::App const& app, CLI::ParseError const& error) {
    Report(Complaint(app, error));
    std::vector<CLI::App*> const commands = app.get_subcommands();
    CLI::App const& meant = commands.empty() ? app : *commands[0];
    std::string const name =
        commands.empty() ? app.get_name() : app.get_name() + ' ' + meant.get_name();
    std::cerr << HelpFormatter().make_usage(&meant, name) << "See " << name << " --help.\n";
}
