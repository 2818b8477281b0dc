#include "values.h"

#include <unistd.h>

#include <chrono>
#include <iostream>
#include <limits>
#include <stdexcept>

namespace {

constexpr std::size_t longestLine = 1 << 20;

/// A count on the standard error of a terminal, renewed a few times a second.
class Progress {
public:
    ~Progress() {
        if (shown)
            std::cerr << "\r\033[K";
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
    Run(char const* kindOfValue, std::function<std::string(std::string const&)> const& conversion)
        : kind(kindOfValue), convert(conversion) {}

    template <class Get>
    void add(Get get) {
        ++number;
        try {
            std::cout << convert(get()) << '\n';
        } catch (std::runtime_error const& refusal) {
            std::cerr << "commonapi: " << kind << ' ' << number << ": " << refusal.what() << '\n';
            refused = true;
        }
        if (!std::cout)
            throw std::runtime_error("the output cannot be written");
        progress.count(number);
    }

    bool finish() const {
        if (!std::cout.flush())
            throw std::runtime_error("the output cannot be written");
        return !refused;
    }

private:
    char const* kind;
    std::function<std::string(std::string const&)> const& convert;
    std::size_t number = 0;
    bool refused = false;
    Progress progress;
};

/// The line in `room`, which was just read; the rest of one that did not fit is passed over.
std::string TakeLine(std::string const& room) {
    auto const count = static_cast<std::size_t>(std::cin.gcount());
    if (!std::cin.fail())
        return room.substr(0, count - (std::cin.eof() ? 0 : 1));  // the line's end is counted
    std::cin.clear();
    std::cin.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    throw std::runtime_error("longer than " + std::to_string(longestLine) + " characters");
}

}  // namespace

bool ConvertValues(std::vector<std::string> const& arguments,
                   std::function<std::string(std::string const&)> const& convert) {
    if (!arguments.empty()) {
        Run run("argument", convert);
        for (std::string const& argument : arguments)
            run.add([&] { return argument; });
        return run.finish();
    }

    if (!isatty(STDIN_FILENO))
        std::cin.tie(nullptr);
    Run run("line", convert);
    std::string room(longestLine + 1, '\0');
    while (std::cin.getline(room.data(), static_cast<std::streamsize>(room.size())) ||
           std::cin.gcount() > 0)
        run.add([&] { return TakeLine(room); });
    return run.finish();
}
