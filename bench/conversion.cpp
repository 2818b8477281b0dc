// The first conversion between the forms of a text. Names are service/implementation/bytes of
// UTF-8.
#include <CommonAPI/unicode_string.h>
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <string>
#include <vector>

namespace {

std::string Ascii(std::size_t size) {
    return std::string(size, 'x');
}

std::string Mixed(std::size_t size) {
    std::string text;
    while (text.size() + 7 <= size)
        text += "a\u20ac\u00e9b";
    return text + std::string(size - text.size(), 'x');
}

std::wstring Wide(std::string const& text) {
    return UnicodeString(text).wc_str();
}

/// The converter's own work, on buffers that are ready.
void Bare(benchmark::State& state, char const* to, char const* from, void const* input,
          std::size_t size) {
    iconv_t const converter = iconv_open(to, from);
    std::vector<char> room(4 * size + 4);
    for (auto _ : state) {
        char* in = static_cast<char*>(const_cast<void*>(input));
        char* out = room.data();
        std::size_t inLeft = size;
        std::size_t outLeft = room.size();
        benchmark::DoNotOptimize(iconv(converter, &in, &inLeft, &out, &outLeft));
        benchmark::ClobberMemory();
    }
    iconv_close(converter);
}

void Register(std::string const& kind, std::string (*make)(std::size_t)) {
    using State = benchmark::State;
    auto const add = [&](std::string const& name, auto body) {
        auto* const benchmark = benchmark::RegisterBenchmark(name.c_str(), [=](State& state) {
            body(state, make(static_cast<std::size_t>(state.range(0))));
            state.SetBytesProcessed(state.iterations() * state.range(0));
        });
        for (int const size : {8, 64, 1 << 10, 1 << 14, 1 << 16})
            benchmark->Arg(size);
    };
    add("c_str of " + kind + "/ours", [](State& state, std::string const& text) {
        std::wstring const wide = Wide(text);
        UnicodeString unicode;
        auto const size = static_cast<unsigned>(wide.size() * sizeof(wchar_t));
        for (auto _ : state)  // what the first c_str() of a wide text calls
            benchmark::DoNotOptimize(unicode.transcodeMessage(wide.c_str(), size));
    });
    add("c_str of " + kind + "/bare converter", [](State& state, std::string const& text) {
        std::wstring const wide = Wide(text);
        Bare(state, "UTF-8", "WCHAR_T", wide.data(), wide.size() * sizeof(wchar_t));
    });
    add("wc_str of " + kind + "/ours", [](State& state, std::string const& text) {
        UnicodeString unicode;
        for (auto _ : state)  // what the first wc_str() of a narrow text calls
            benchmark::DoNotOptimize(
                unicode.transcodeMessage(text.c_str(), static_cast<unsigned>(text.size())));
    });
    add("wc_str of " + kind + "/bare converter", [](State& state, std::string const& text) {
        Bare(state, "WCHAR_T", "UTF-8", text.data(), text.size());
    });
}

bool const registered = [] {
    Register("ASCII", Ascii);
    Register("mixed text", Mixed);
    return true;
}();

}  // namespace
