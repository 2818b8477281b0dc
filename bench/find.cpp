// The search for bytes in 1 MiB. Names are service/implementation/bytes of the pattern.
#include <CommonAPI/byte_array.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>
#include <string>

namespace {

constexpr std::size_t contentSize = 1 << 20;

struct Texts {
    std::string content;
    std::string pattern;
};

/// Bytes at random, the pattern at their end.
Texts Random(std::size_t patternSize) {
    std::mt19937 generator(1);
    std::string content;
    while (content.size() < contentSize)
        content += static_cast<char>(generator() % 255 + 1);
    std::string pattern = content.substr(contentSize - patternSize);
    pattern.back() = '\0';  // so that no earlier match ends the search
    content.back() = '\0';
    return {content, pattern};
}

/// All bytes equal but the last one of the content and of the pattern.
Texts Adversarial(std::size_t patternSize) {
    std::string const equal(contentSize, 'a');
    return {equal.substr(1) + 'b', equal.substr(0, patternSize - 1) + 'b'};
}

template <class Search>
void Run(benchmark::State& state, Texts const& texts, Search const& search) {
    for (auto _ : state)
        if (search() != static_cast<long>(contentSize - texts.pattern.size()))
            state.SkipWithError("not found");
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(contentSize));
}

void Register(std::string const& service, Texts (*make)(std::size_t)) {
    using State = benchmark::State;
    auto const add = [&](char const* name, auto body) {
        benchmark::RegisterBenchmark(
            (service + "/" + name).c_str(),
            [=](State& state) { body(state, make(static_cast<std::size_t>(state.range(0)))); })
            ->Arg(1)
            ->Arg(8)
            ->Arg(64);
    };
    add("ours", [](State& state, Texts const& texts) {
        ByteArray content;
        ByteArray pattern;
        content = texts.content;
        pattern = texts.pattern;
        Run(state, texts, [&] { return content.find(pattern, 0); });
    });
    add("memmem", [](State& state, Texts const& texts) {
        char const* const begin = texts.content.data();
        Run(state, texts, [&] {
            return static_cast<char const*>(
                       memmem(begin, contentSize, texts.pattern.data(), texts.pattern.size())) -
                   begin;
        });
    });
    add("Boyer-Moore", [](State& state, Texts const& texts) {
        Run(state, texts, [&] {
            std::boyer_moore_searcher const searcher(texts.pattern.begin(), texts.pattern.end());
            auto const match = std::search(texts.content.begin(), texts.content.end(), searcher);
            return match - texts.content.begin();
        });
    });
}

bool const registered = [] {
    Register("find in random bytes", Random);
    Register("find in equal bytes", Adversarial);
    return true;
}();

}  // namespace
