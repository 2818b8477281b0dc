#include "logging/signal_clock.h"

#include <langinfo.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::time_t hour = 60 * 60;
constexpr std::time_t day = 24 * hour;
constexpr std::time_t freshness = hour;
// A process may be silent for long before it crashes.
constexpr std::time_t horizon = 4 * 366 * day;
// No zone changes its clocks twice in less.
constexpr std::time_t stride = 14 * day;

std::tm LocalTime(std::time_t time) {
    std::tm local = {};
    localtime_r(&time, &local);
    return local;
}

/// A time in which the zone's offset and name stay the same.
struct Period {
    explicit Period(std::time_t time) : begin(time), local(LocalTime(time)), zone(local.tm_zone) {}

    bool holds(std::tm const& other) const {
        return other.tm_gmtoff == local.tm_gmtoff && other.tm_zone == zone;
    }

    std::time_t begin;
    std::tm local;
    std::string zone;  ///< the C library may forget the name in `local`
};

/// What chooses the text of a piece.
enum Unit { always, byHour, byMinute, bySecond, byPeriod, unitCount };

/// A part of the locale's format, with its text for each value of its unit.
struct Piece {
    Unit unit;
    std::vector<std::string> texts;
};

/// The environment and the locale, as far as the text of a time depends on them.
using Setting = std::array<char const*, 6>;
using KeptSetting = std::array<std::string, 6>;

struct SignalClock {
    std::time_t made;
    KeptSetting setting;
    std::vector<Period> periods;
    std::vector<Piece> pieces;
};

/// Replaced as a whole, so that a signal finds it whole.
std::atomic<SignalClock const*> published = nullptr;

Setting CurrentSetting() {
    char const* const zone = std::getenv("TZ");
    return {zone ? zone : "unset", nl_langinfo(T_FMT),  nl_langinfo(T_FMT_AMPM),
            nl_langinfo(AM_STR),   nl_langinfo(PM_STR), nl_langinfo(ALT_DIGITS)};
}

/// What follows `period`, which holds the time `inside` but no longer `outside`.
Period NextPeriod(Period const& period, std::time_t inside, std::time_t outside) {
    while (outside - inside > 1) {
        std::time_t const middle = inside + (outside - inside) / 2;
        (period.holds(LocalTime(middle)) ? inside : outside) = middle;
    }
    return Period(outside);
}

std::vector<Period> PeriodsFrom(std::time_t now) {
    constexpr std::time_t lastTime = std::numeric_limits<std::time_t>::max();
    std::time_t const end = now < lastTime - horizon ? now + horizon : lastTime;
    std::vector<Period> periods = {Period(now)};
    for (std::time_t time = now; time < end - stride; time += stride)
        if (!periods.back().holds(LocalTime(time + stride)))
            periods.push_back(NextPeriod(periods.back(), time, time + stride));
    return periods;
}

Unit UnitOf(char conversion) {
    switch (conversion) {
        case 'H':
        case 'I':
        case 'k':
        case 'l':
        case 'p':
        case 'P':
            return byHour;
        case 'M':
            return byMinute;
        case 'S':
            return bySecond;
        case 'Z':
        case 'z':
            return byPeriod;
        default:
            return always;
    }
}

/// All texts that a piece of the format may stand for.
Piece MakePiece(Unit unit, std::string const& format, std::vector<Period> const& periods) {
    std::size_t const values[unitCount] = {1, 24, 60, 60, periods.size()};
    Piece piece = {unit, {}};
    for (std::size_t value = 0; value < values[unit]; ++value) {
        std::tm local = periods[unit == byPeriod ? value : 0].local;
        int const number = static_cast<int>(value);
        if (unit == byHour)
            local.tm_hour = number;
        else if (unit == byMinute)
            local.tm_min = number;
        else if (unit == bySecond)
            local.tm_sec = number;
        char text[128];
        piece.texts.emplace_back(text, std::strftime(text, sizeof text, format.c_str(), &local));
    }
    return piece;
}

/// What a conversion that stands for several others stands for.
std::string Expanded(char conversion) {
    std::string const amPm = nl_langinfo(T_FMT_AMPM);
    switch (conversion) {
        case 'T':
            return "%H:%M:%S";
        case 'R':
            return "%H:%M";
        case 'r':
            return amPm.empty() ? "%I:%M:%S %p" : amPm;
        default:
            return "";
    }
}

void AppendPieces(std::string const& format, std::vector<Period> const& periods,
                  std::vector<Piece>& pieces) {
    std::size_t position = 0;
    while (position < format.size()) {
        std::size_t const begin = position;
        position = std::min(format.find('%', begin), format.size());
        if (position == begin)  // after the sign come flags, a width and a modifier
            position = std::min(format.find_first_not_of("-_0^#+123456789EO", begin + 1),
                                format.size() - 1) +
                       1;
        std::string const part = format.substr(begin, position - begin);
        char const conversion = part[0] == '%' ? part.back() : '\0';
        std::string const expanded = Expanded(conversion);
        if (expanded.empty())
            pieces.push_back(MakePiece(UnitOf(conversion), part, periods));
        else
            AppendPieces(expanded, periods, pieces);
    }
}

bool IsFresh(SignalClock const& clock, std::time_t now, std::tm const& local) {
    Setting const setting = CurrentSetting();
    auto const next = std::upper_bound(
        clock.periods.begin(), clock.periods.end(), now,
        [](std::time_t time, Period const& period) { return time < period.begin; });
    return now >= clock.made && now - clock.made < freshness && std::prev(next)->holds(local) &&
           std::equal(setting.begin(), setting.end(), clock.setting.begin());
}

void Publish(std::time_t now) {
    Setting const setting = CurrentSetting();
    auto clock = std::make_unique<SignalClock>();
    clock->made = now;
    std::copy(setting.begin(), setting.end(), clock->setting.begin());
    clock->periods = PeriodsFrom(now);
    AppendPieces(nl_langinfo(T_FMT), clock->periods, clock->pieces);
    delete published.exchange(clock.release());
}

}  // namespace

void CommonAPI::internal::PrepareSignalClock() {
    std::time_t const now = std::time(nullptr);
    std::tm const* const local = std::localtime(&now);  // which reads TZ again
    if (!published)
        Publish(now);
    RefreshSignalClock(now, *local);
}

void CommonAPI::internal::RefreshSignalClock(std::time_t now, std::tm const& local) {
    if (published && !IsFresh(*published, now, local))
        Publish(now);
}

std::string_view CommonAPI::internal::TimeOfDayInSignal() {
    static char text[512];
    SignalClock const& clock = *published;
    std::time_t const now = std::time(nullptr);
    std::size_t period = clock.periods.size() - 1;
    while (period > 0 && now < clock.periods[period].begin)
        --period;
    std::time_t const local = now + clock.periods[period].local.tm_gmtoff;
    auto const second = static_cast<std::size_t>((local % day + day) % day);
    std::size_t const values[unitCount] = {0, second / 3600, second / 60 % 60, second % 60, period};
    char* end = text;
    for (Piece const& piece : clock.pieces) {
        std::string const& part = piece.texts[values[piece.unit]];
        if (part.size() <= static_cast<std::size_t>(std::end(text) - end))
            end = std::copy(part.begin(), part.end(), end);
    }
    return {text, static_cast<std::size_t>(end - text)};
}
