#include "values.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <limits>
#include <memory>
#include <stdexcept>

#include "output.h"

namespace {

constexpr std::streamsize roomForLine = 1 << 22;

/// A count on the standard error of a terminal, renewed a few times a second.
class Progress {
public:
    ~Progress() { clear(); }

    void clear() {
        if (shown)
            std::cerr << "\r\033[K";
        shown = false;
    }

    void count(std::size_t values) {
        if (!terminal || values % 1024 != 0 || Clock::now() < next)
            return;
        std::cerr << '\r' << values << " values";
        next = Clock::now() + std::chrono::milliseconds(200);
        shown = true;
    }

private:
    using Clock = std::chrono::steady_clock;

    bool terminal = isatty(STDERR_FILENO) && !isatty(STDOUT_FILENO);
    bool shown = false;
    Clock::time_point next = Clock::now() + std::chrono::seconds(1);
};

/// One run over values, which remembers whether one was refused.
class Run {
public:
    Run(char const* kindOfValue, ValueRemark const& remarkOnValue,
        ValueConversion const& conversion)
        : kind(kindOfValue), remark(remarkOnValue), convert(conversion) {}

    void add(std::string_view value) {
        ++number;
        try {
            std::cout << convert(value) << '\n';
            pointOut(remark(value));
        } catch (std::runtime_error const& refusal) {
            report(refusal.what());
            refused = true;
        }
        if (!std::cout)
            FinishOutput();
        progress.count(number);
    }

    bool allAccepted() const { return !refused; }

private:
    void pointOut(char const* what) {
        if (!what || std::find(pointedOut.begin(), pointedOut.end(), what) != pointedOut.end())
            return;
        pointedOut.push_back(what);
        report(what);
    }

    void report(std::string const& what) {
        progress.clear();
        Report(std::string(kind) + ' ' + std::to_string(number) + ": " + what);
    }

    char const* kind;
    ValueRemark const& remark;
    ValueConversion const& convert;
    std::size_t number = 0;
    bool refused = false;
    std::vector<std::string> pointedOut;
    Progress progress;
};

/// The line in `room`, which was just read; the rest of one that did not fit is passed over.
std::string_view TakeLine(char const* room) {
    auto const count = static_cast<std::size_t>(std::cin.gcount());
    if (!std::cin.fail())
        return {room, count - (std::cin.eof() ? 0 : 1)};  // the line's end is counted
    std::cin.clear();
    std::cin.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    return {room, count};
}

}  // namespace

bool ConvertValues(std::vector<std::string> const& arguments, ValueRemark const& remark,
                   ValueConversion const& convert) {
    if (!arguments.empty()) {
        Run run("argument", remark, convert);
        for (std::string const& argument : arguments)
            run.add(argument);
        return run.allAccepted();
    }

    if (isatty(STDIN_FILENO))
        std::cerr << "Values, one a line; Ctrl-D on an empty line ends them.\n";
    else
        std::cin.tie(nullptr);
    Run run("line", remark, convert);
    std::unique_ptr<char[]> const room(new char[roomForLine]);
    while ((std::cin.getline(room.get(), roomForLine) || std::cin.gcount() > 0) && !std::cin.bad())
        run.add(TakeLine(room.get()));
    if (std::cin.bad())
        throw std::runtime_error("standard input: " + SystemError());
    return run.allAccepted();
}
