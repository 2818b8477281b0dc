// The conversions between the two forms of a text, and the process-wide converters behind them.

#include <CommonAPI/unicode_string.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <limits>
#include <map>
#include <memory>

#include "types/converter.h"
#include "types/requirement.h"

namespace {

using namespace CommonAPI::internal;

char const* const utf8 = "UTF-8";
char const* const wide = "WCHAR_T";
char const* const keySeparator = "-->";

constexpr std::size_t scratchLength = 65536;
char narrowScratch[scratchLength];

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

/// What is converted is read like a C string.
void EndAtZero(std::wstring& text) {
    text.erase(std::wcslen(text.c_str()));
}

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
    NotNull(first, "UnicodeString::instantiateTargetTranscoder");
    NotNull(second, "UnicodeString::instantiateTargetTranscoder");
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
    NotNull(text, "UnicodeString::transcodeMessage");
    deriveNarrow(text, count);
    return narrowString.c_str();
}

wchar_t const* UnicodeString::transcodeMessage(char const* text, unsigned int count) {
    NotNull(text, "UnicodeString::transcodeMessage");
    std::size_t const length = std::strlen(text);
    bool const all = count == std::numeric_limits<unsigned int>::max();
    // The text may lie in a form that changes, so it is converted before.
    std::wstring converted;
    convertToWide(text, all ? length : count, converted);
    if (!all && count > length)
        EndAtZero(converted);
    narrowString.assign(text, length);
    wideString.swap(converted);
    return wideString.c_str();
}

void UnicodeString::deriveNarrow(wchar_t const* text, std::size_t count) {
    startTranscoding();
    if (!CanConvert(wideToUtf8Transcoder))
        return narrowString.clear();

    std::size_t room = count + 1;
    std::unique_ptr<char[]> const own(room < scratchLength ? nullptr : new char[room]);
    char* const begin = own ? own.get() : narrowScratch;
    char* end = begin;
    auto input = reinterpret_cast<char const*>(text);
    std::size_t inputLeft = count;
    if (transcodingError(Convert(wideToUtf8Transcoder, &input, &inputLeft, &end, &room)))
        narrowString.clear();
    else
        narrowString.assign(begin, strnlen(begin, static_cast<std::size_t>(end - begin)));
    if (!own)
        std::memset(begin, 0, static_cast<std::size_t>(end - begin));
}

void UnicodeString::deriveWide() {
    convertToWide(narrowString.c_str(), narrowString.size(), wideString);
    std::size_t const length = std::strlen(narrowString.c_str());
    if (length == narrowString.size())
        return;
    narrowString.erase(length);
    EndAtZero(wideString);
}

void UnicodeString::convertToWide(char const* text, std::size_t count, std::wstring& converted) {
    startTranscoding();
    converted.clear();
    if (!CanConvert(utf8ToWideTranscoder))
        return;

    auto const convert = [&](wchar_t* begin, std::size_t) {
        auto end = reinterpret_cast<char*>(begin);
        std::size_t inputLeft = count;
        std::size_t room = count * sizeof(wchar_t);
        while (inputLeft != 0) {
            int const result = Convert(utf8ToWideTranscoder, &text, &inputLeft, &end, &room);
            if (transcodingError(result))
                return std::size_t(0);
            // No error, so the loop waits for ever for the rest: but in the hardened library.
            if (hardened && result == -1 && errno == EINVAL)
                return std::size_t(0);
        }
        return count - room / sizeof(wchar_t);
    };
#ifdef __cpp_lib_string_resize_and_overwrite
    converted.resize_and_overwrite(count, convert);
#else
    converted.resize(count);
    converted.resize(convert(converted.data(), count));
#endif
}

bool UnicodeString::transcodingError(int result) const {
    return result == -1 && errno == EILSEQ;
}
