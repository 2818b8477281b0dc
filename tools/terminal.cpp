#include "terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <termios.h>

#include <cerrno>
#include <stdexcept>

#include "output.h"

namespace {

/// Terminals cut lines at 4,095 characters without a word.
constexpr std::size_t longestTyped = 1023;

/// Holds back the signals that users send, until the terminal is as it was.
class HeldSignals {
public:
    HeldSignals() : held(UserSignals()), arrived(signalfd(-1, &held, SFD_CLOEXEC)) {
        sigprocmask(SIG_BLOCK, &held, &before);
    }
    ~HeldSignals() { sigprocmask(SIG_SETMASK, &before, nullptr); }

    /// Can be read once there is one.
    int descriptor() const { return arrived.number; }

private:
    static sigset_t UserSignals() {
        sigset_t signals;
        sigemptyset(&signals);
        for (int const signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGTSTP})
            sigaddset(&signals, signal);
        return signals;
    }

    sigset_t const held;
    sigset_t before;
    Descriptor const arrived;
};

class HiddenTyping {
public:
    HiddenTyping(int file, std::string const& prompt) : terminal(file) {
        tcgetattr(terminal, &before);
        termios hidden = before;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
        tcsetattr(terminal, TCSAFLUSH, &hidden);
        show(prompt);
    }
    ~HiddenTyping() {
        show("\n");
        tcsetattr(terminal, TCSAFLUSH, &before);
    }

private:
    void show(std::string const& text) const {
        [[maybe_unused]] auto const written = write(terminal, text.data(), text.size());
    }

    int terminal;
    termios before;
};

bool ReadHidden(int terminal, std::string const& prompt, Secret& line) {
    HeldSignals const signals;
    HiddenTyping const typing(terminal, prompt);
    return ReadLine(terminal, longestTyped, line, signals.descriptor());
}

}  // namespace

bool ReadLine(int file, std::size_t longest, Secret& line, int interruption) {
    pollfd watched[] = {{file, POLLIN, 0}, {interruption, POLLIN, 0}};
    for (;;) {
        if (poll(watched, 2, -1) < 0)
            continue;  // the process was stopped and continues
        if (watched[1].revents != 0)
            return false;
        char character;
        ssize_t const count = read(file, &character, 1);
        if (count < 0)
            throw std::runtime_error(SystemError());
        if (count == 0 || character == '\n')
            return true;
        if (line.size() == longest)
            throw std::runtime_error("a password of more than " + std::to_string(longest) +
                                     " characters");
        line.push_back(character);
    }
}

Secret ReadHiddenLine(std::string const& prompt) {
    Descriptor const terminal(open("/dev/tty", O_RDWR | O_CLOEXEC));
    if (terminal.number < 0)
        throw std::runtime_error(
            "no terminal to ask at; name a source with --password-file or --password-env");
    for (;;) {
        Secret line;
        if (ReadHidden(terminal.number, prompt, line))
            return line;
        // A signal arrives now. If the process still goes on, it was stopped and asks again.
    }
}
