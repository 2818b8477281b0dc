#include <clocale>
#include <cstring>
#include <cwctype>
#include <stdexcept>

#include "fuzz/text_model.h"

static constexpr std::size_t toTheEnd = 1 << 20;
static char const* const locale = std::setlocale(LC_CTYPE, "C.UTF-8");

static int Sign(int difference) {
    return (difference > 0) - (difference < 0);
}

static int Compared(char const* a, char const* b, std::size_t count, bool exact) {
    return Sign(exact ? std::strncmp(a, b, count) : strncasecmp(a, b, count));
}

/// The second text is read as far as the first one's length.
static int ComparedFolded(std::wstring a, std::wstring b) {
    b.resize(a.size());
    for (std::wstring* const text : {&a, &b})
        for (wchar_t& c : *text)
            c = static_cast<wchar_t>(std::towupper(c));
    return Sign(a.compare(b));
}

struct Pair {
    UnicodeString real;
    TextModel model;

    /// A position in what `c_str()` hands out.
    std::size_t inNarrow(int position) {
        model.fillNarrow();
        return Within(position, model.narrow.size());
    }
    std::size_t inWide(int position) {
        model.fillWide();
        return Within(position, model.wide.size());
    }

    void appendNarrow(std::string const& text) {
        model.narrow += text.c_str();
        if (!model.wide.empty())
            model.toWide();
    }
    void appendWide(std::wstring const& text) {
        model.wide += text;
        if (!model.narrow.empty())
            model.narrowFromQuarter();
    }

    template <class Call>
    void checkPosition(Call const& call, bool valid) {
        try {
            call();
            Same(true, valid, "the position is valid");
        } catch (std::out_of_range const&) {
            Same(false, valid, "the position is valid");
        }
    }

    void checkFind(Pair& other, std::string const& text, int at) {
        std::wstring const wide = Widened(text);
        other.model.fillWide();
        Same(real.find(other.real), long(model.wide.find(other.model.wide)), "other");
        Same(real.find(text.c_str(), at), long(model.narrow.find(text.c_str(), at)), "text");
        Same(real.find(text[0], at), long(model.narrow.find(text[0], at)), "character");
        Same(real.find(wide.c_str()), long(model.wide.find(wide)), "wide text");
        Same(real.find(wide[0]), long(model.wide.find(wide[0])), "wide character");
    }

    void checkCompare(char const* text, int position, std::size_t count, bool exact) {
        auto const at = inNarrow(position);
        char const* const all = model.narrow.c_str();
        Same(Sign(real.compare(text, exact)), Compared(all, text, toTheEnd, exact), "compare");
        Same(Sign(real.compare(text, at, count, exact)),
             Compared(all + at, text, count == 0 ? toTheEnd : count, exact), "compare a part");
        Same(real == text, std::strcmp(all, text) == 0, "equal");
    }

    void checkCompareWide(std::wstring const& text) {
        bool const held = !model.wide.empty();
        wchar_t const* const null = nullptr;
        Same(real.compare(null, true), held ? 1 : 0, "null");
        Same(Sign(real.compare(text.c_str(), true)), held ? Sign(model.wide.compare(text)) : -1,
             "exact");
        Same(Sign(real.compare(text.c_str(), false)), held ? ComparedFolded(model.wide, text) : -1,
             "folded");
    }

    void checkRead(int position) {
        auto const at = inNarrow(position);
        std::ostringstream stream;
        stream << real;
        Same(stream.str(), model.narrow.c_str(), "written");
        Same(real[at], model.narrow[at], "byte");
        Same(std::string(*real), model.narrow.c_str(), "text");
    }

    void transcode(char const* text, std::string const& copy, int wanted) {
        bool const all = wanted < 0;
        auto const count = Within(wanted, copy.size());
        model.narrow = all ? copy.c_str() : copy.substr(0, count);
        model.toWide();
        model.narrow = copy.c_str();
        Same<std::wstring>(real.transcodeMessage(text, all ? 0xFFFFFFFF : count), model.wide,
                           "returned");
    }

    void apply(Pair& other, Line const& line) {
        std::string const& text = line.text;
        if (model.narrow.size() > 3000)
            throw NotAllowed();  // or it would double without end
        if (line.is("assignText")) {
            real = text;
            model.narrow = text.c_str();
        } else if (line.is("assignWide")) {
            model.wide = Widened(text);
            real = model.wide.c_str();
        } else if (line.is("assignNumber")) {
            long const number = 10007L * line.at * line.count;
            real = number;
            model.narrow = std::to_string(number);
            model.narrow.insert(0, 511 - model.narrow.size(), ' ');
        } else if (line.is("assignOther")) {
            real = other.real;
            model = TextModel(other.model);
        } else if (line.is("assignPart")) {
            auto const at = other.inNarrow(line.at);
            real = other.real.c_str() + at;
            model.narrow = std::string(other.model.narrow.c_str() + at);
        } else if (line.is("assignWidePart")) {
            auto const at = other.inWide(line.at);
            real = other.real.wc_str() + at;
            model.wide = other.model.wide.substr(at);
        } else if (line.is("make")) {
            SameForms(UnicodeString(text), {L"", text.c_str()});
            SameForms(UnicodeString("ISO-8859-1", text.c_str()), {L"", text.c_str()});
            SameForms(UnicodeString(Widened(text).c_str()), {Widened(text), ""});
        } else if (line.is("appendString")) {
            appendNarrow(text);
            real += text;
        } else if (line.is("appendNumber")) {
            appendNarrow(std::to_string(line.count / 2.0f));
            real += line.count / 2.0f;
        } else if (line.is("appendNull")) {
            real += static_cast<char const*>(nullptr);
            real += static_cast<wchar_t const*>(nullptr);
        } else if (line.is("appendOther")) {
            TextModel const copy = other.model;
            if (copy.wide.empty())
                appendNarrow(copy.narrow);
            else
                appendWide(copy.wide);
            real += other.real;
        } else if (line.is("appendPart")) {
            auto const at = other.inNarrow(line.at);
            char const* const part = other.real.c_str() + at;
            appendNarrow(std::string(other.model.narrow.c_str() + at));
            real += part;
        } else if (line.is("appendWidePart")) {
            auto const at = other.inWide(line.at);
            wchar_t const* const part = other.real.wc_str() + at;
            appendWide(other.model.wide.substr(at));
            real += part;
        } else if (line.is("insert")) {
            if (model.narrow.empty())
                model.narrowFromQuarter();
            bool const valid = line.at == int(Within(line.at, model.narrow.size()));
            long const count = line.count == -1 ? -1 : long(Within(line.count, text.size()));
            checkPosition([&] { real.insert(text, line.at, count); }, valid);
            if (valid)
                model.narrow.insert(line.at, text, 0, count);
        } else if (line.is("erase")) {
            bool const valid = line.at == int(Within(line.at, model.wide.size()));
            checkPosition([&] { real.erase(line.at, line.count); }, valid);
            if (valid)
                model.wide.erase(line.at, line.count);
            if (valid && !model.narrow.empty())
                model.narrowFromQuarter();
        } else if (line.is("substr")) {
            if (model.narrow.empty())
                model.narrowFromQuarter();
            bool const valid = line.at == int(Within(line.at, model.narrow.size()));
            std::string part;
            checkPosition([&] { part = real.substr(line.at, line.count); }, valid);
            Same(part, valid ? model.narrow.substr(line.at, line.count) : "", "part");
        } else if (line.is("clear")) {
            real.clear();
            model = TextModel();
        } else if (line.is("wc_str")) {
            model.fillWide();
            Same<std::wstring>(real.wc_str(), model.wide, "wc_str");
        } else if (line.is("equal")) {
            other.model.fillWide();
            model.fillWide();
            Same(real == other.real, model.wide == other.model.wide, "equal");
        } else if (line.is("compare")) {
            checkCompare(text.c_str(), line.at, Within(line.count, 9), line.number(1) % 2 == 0);
        } else if (line.is("compareWide")) {
            checkCompareWide(Widened(text));
        } else if (line.is("find")) {
            checkFind(other, text, line.at);
        } else if (line.is("read")) {
            checkRead(line.at);
        } else if (line.is("transcodePart")) {
            auto const at = other.inNarrow(line.at);
            char const* const part = other.real.c_str() + at;
            transcode(part, other.model.narrow.substr(at), line.count);
        } else if (line.is("transcodeWidePart")) {
            auto const at = other.inWide(line.at);
            wchar_t const* const part = other.real.wc_str() + at;
            auto const bytes = Within(line.count, 4 * (other.model.wide.size() - at));
            model.narrow = Converted<char>(other.model.wide.data() + at, bytes, bytes + 1);
            Same<std::string>(real.transcodeMessage(part, bytes), model.narrow, "returned");
        }
    }

    void compare() {
        SameForms(real, model);
        long const length = model.wide.empty() ? model.narrow.size() : model.wide.size();
        Same(real.length(), length == 0 ? -1 : length, "length");
        Same(real.empty(), length == 0, "empty");
        Same(!real, length == 0, "!");
    }
};

#include "fuzz/driver.h"
