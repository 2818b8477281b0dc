// The conversions between the two forms of a text, and the process-wide converters behind them.

#include <CommonAPI/unicode_string.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <memory>

#include "types/converter.h"

namespace {

using namespace CommonAPI::internal;

char const* const utf8 = "UTF-8";
char const* const wide = "WCHAR_T";
char const* const keySeparator = "-->";

constexpr std::size_t scratchLength = 65536;
char narrowScratch[scratchLength];
wchar_t wideScratch[scratchLength];

bool baseTranscodersReady = false;
bool transcodersClosed = false;
std::map<std::string const, Converter>* transcoderRegistry = nullptr;  // never freed
Converter utf8ToWideTranscoder = nullptr;
Converter wideToUtf8Transcoder = nullptr;

void closeAllTranscoders() {
    for (auto const& [key, converter] : *transcoderRegistry)
        CloseConverter(converter);
    transcodersClosed = true;
}

std::string RegistryKey(char const* first, char const* second) {
    return std::string(first) + keySeparator + second;
}

/// Opens a base converter; a failure stores nothing.
bool OpenBase(Converter& converter, char const* to, char const* from) {
    converter = OpenConverter(to, from);
    if (converter == FailedConverter())
        return false;
    (*transcoderRegistry)[RegistryKey(to, from)] = converter;  // the destination stands first
    return true;
}

bool CanConvert(Converter converter) {
    return converter && converter != FailedConverter() && !transcodersClosed;
}

/// Where a conversion puts its output: the scratch area, or memory of its own for what the area
/// cannot hold together with a terminator.
template <class Unit>
class Output {
public:
    Output(Unit (&scratch)[scratchLength], std::size_t room)
        : own(room < scratchLength ? nullptr : new Unit[room]),
          begin(own ? own.get() : scratch),
          end(reinterpret_cast<char*>(begin)),
          bytesLeft(room * sizeof(Unit)) {}

    /// No text stays behind in a scratch area.
    ~Output() {
        if (!own)
            std::memset(begin, 0, length() * sizeof(Unit));
    }

    Output(Output const&) = delete;
    Output& operator=(Output const&) = delete;

    std::size_t convert(Converter converter, char const** input, std::size_t* inputLeft) {
        return Convert(converter, input, inputLeft, &end, &bytesLeft);
    }

    /// Like a C string, the text ends at its first zero, which it can only have from the input.
    void assignTo(std::basic_string<Unit>& text, bool inputHoldsZero) const {
        Unit const* const zero =
            inputHoldsZero ? std::char_traits<Unit>::find(begin, length(), Unit()) : nullptr;
        text.assign(begin, zero ? static_cast<std::size_t>(zero - begin) : length());
    }

private:
    std::size_t length() const {
        return static_cast<std::size_t>(reinterpret_cast<Unit*>(end) - begin);
    }

    std::unique_ptr<Unit[]> own;
    Unit* begin;
    char* end;
    std::size_t bytesLeft;
};

}  // namespace

bool UnicodeString::instantiateBaseTranscoders() {
    transcoderRegistry = new std::map<std::string const, Converter>;
    return OpenBase(utf8ToWideTranscoder, wide, utf8) && OpenBase(wideToUtf8Transcoder, utf8, wide);
}

void UnicodeString::startTranscoding() {
    if (baseTranscodersReady)
        return;
    instantiateBaseTranscoders();
    std::atexit(closeAllTranscoders);
    baseTranscodersReady = true;
}

void UnicodeString::instantiateTargetTranscoder(char const* first, char const* second) {
    startTranscoding();
    // The source stands first here, so the pair UTF-8, WCHAR_T finds the base converter of the
    // opposite direction: harmless, as no target converter is ever used.
    Converter& registered = (*transcoderRegistry)[RegistryKey(first, second)];
    targetTranscoder = registered;
    if (targetTranscoder)
        return;
    targetTranscoder = OpenConverter(second, first);
    if (targetTranscoder != FailedConverter())
        registered = targetTranscoder;
}

char const* UnicodeString::transcodeMessage(wchar_t const* text, unsigned int count) {
    startTranscoding();
    narrowString.clear();
    if (CanConvert(wideToUtf8Transcoder)) {
        Output<char> output(narrowScratch, std::size_t(count) + 1);
        auto input = reinterpret_cast<char const*>(text);
        std::size_t inputLeft = count;
        std::size_t const result = output.convert(wideToUtf8Transcoder, &input, &inputLeft);
        if (!transcodingError(static_cast<int>(result)))
            output.assignTo(narrowString, true);
    }
    return narrowString.c_str();
}

wchar_t const* UnicodeString::transcodeMessage(char const* text, unsigned int count) {
    startTranscoding();
    // Mostly it is the narrow form that is converted, which need not be copied onto itself.
    if (text != narrowString.c_str() || std::strlen(text) != narrowString.size())
        narrowString = text;
    if (count == std::numeric_limits<unsigned int>::max())
        count = static_cast<unsigned int>(std::strlen(text));
    wideString.clear();
    if (CanConvert(utf8ToWideTranscoder)) {
        Output<wchar_t> output(wideScratch, count);
        std::size_t inputLeft = count;
        bool failed = false;
        // Text that ends inside a sequence is not an error: the loop then waits for ever.
        while (inputLeft != 0 && !failed)
            failed = transcodingError(
                static_cast<int>(output.convert(utf8ToWideTranscoder, &text, &inputLeft)));
        if (!failed)
            output.assignTo(wideString, count > narrowString.size());
    }
    return wideString.c_str();
}

bool UnicodeString::transcodingError(int result) const {
    return result == -1 && errno == EILSEQ;
}
