#ifndef COMMONAPI_TOOLS_HELP_H
#define COMMONAPI_TOOLS_HELP_H

#include <CLI/CLI.hpp>
#include <string>

/// Help as wide as the terminal.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter();

    std::string make_help(CLI::App const* app, std::string name,
                          CLI::AppFormatMode mode) const override;
    std::string make_option_opts(CLI::Option const* option) const override;
};

/// What is wrong with the command line, and how it should look.
void ReportMistake(CLI::App const& app, CLI::ParseError const& error);

#endif
