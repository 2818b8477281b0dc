// Hexadecimal text beside other libraries'. Names are service/implementation/bytes. A result has
// room already, or it grows: each time it is a new one.
#include <CommonAPI/byte_array.h>
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#ifdef PEER_OPENSSL
#include <openssl/crypto.h>
#endif
#ifdef PEER_BOTAN
#include <botan/hex.h>
#endif

namespace {

std::string Bytes(benchmark::State const& state) {
    std::string bytes;
    for (std::int64_t i = 0; i < state.range(0); ++i)
        bytes += static_cast<char>(i * 167 + 13);
    return bytes;
}

std::string Digits(benchmark::State const& state) {
    ByteArray bytes;
    bytes = Bytes(state);
    std::string digits;
    bytes.getASCIIHex(digits);
    return digits;
}

template <class Body>
void Run(benchmark::State& state, Body const& body) {
    for (auto _ : state) {
        body();
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    for (int const size : {16, 64, 256, 1 << 10, 1 << 14, 1 << 20})
        benchmark->Arg(size);
}

void OurEncode(benchmark::State& state) {
    ByteArray bytes;
    bytes = Bytes(state);
    std::string digits;
    Run(state, [&] { bytes.getASCIIHex(digits); });
}
BENCHMARK(OurEncode)->Name("getASCIIHex/ours")->Apply(Sizes);

void OurDecode(benchmark::State& state) {
    std::string const digits = Digits(state);
    ByteArray bytes;
    Run(state, [&] { bytes.loadASCIIHex(digits); });
}
BENCHMARK(OurDecode)->Name("loadASCIIHex/ours")->Apply(Sizes);

void OurGrowingEncode(benchmark::State& state) {
    ByteArray bytes;
    bytes = Bytes(state);
    Run(state, [&] {
        std::string digits;
        bytes.getASCIIHex(digits);
        benchmark::DoNotOptimize(digits);
    });
}
BENCHMARK(OurGrowingEncode)->Name("getASCIIHex, growing/ours")->Apply(Sizes);

void OurGrowingDecode(benchmark::State& state) {
    std::string const digits = Digits(state);
    Run(state, [&] {
        ByteArray bytes;
        bytes.loadASCIIHex(digits);
        benchmark::DoNotOptimize(bytes);
    });
}
BENCHMARK(OurGrowingDecode)->Name("loadASCIIHex, growing/ours")->Apply(Sizes);

#ifdef PEER_OPENSSL
void OpensslEncode(benchmark::State& state) {
    std::string const bytes = Bytes(state);
    std::vector<char> digits(2 * bytes.size() + 1);
    Run(state, [&] {
        OPENSSL_buf2hexstr_ex(digits.data(), digits.size(), nullptr,
                              reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size(),
                              '\0');
    });
}
BENCHMARK(OpensslEncode)->Name("getASCIIHex/OpenSSL")->Apply(Sizes);

void OpensslDecode(benchmark::State& state) {
    std::string const digits = Digits(state);
    std::vector<unsigned char> bytes(digits.size() / 2);
    Run(state,
        [&] { OPENSSL_hexstr2buf_ex(bytes.data(), bytes.size(), nullptr, digits.c_str(), '\0'); });
}
BENCHMARK(OpensslDecode)->Name("loadASCIIHex/OpenSSL")->Apply(Sizes);

void OpensslGrowingEncode(benchmark::State& state) {
    std::string const bytes = Bytes(state);
    Run(state, [&] {
        std::unique_ptr<char[]> const digits(new char[2 * bytes.size() + 1]);
        OPENSSL_buf2hexstr_ex(digits.get(), 2 * bytes.size() + 1, nullptr,
                              reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size(),
                              '\0');
    });
}
BENCHMARK(OpensslGrowingEncode)->Name("getASCIIHex, growing/OpenSSL")->Apply(Sizes);

void OpensslGrowingDecode(benchmark::State& state) {
    std::string const digits = Digits(state);
    Run(state, [&] {
        long size;
        OPENSSL_free(OPENSSL_hexstr2buf(digits.c_str(), &size));
    });
}
BENCHMARK(OpensslGrowingDecode)->Name("loadASCIIHex, growing/OpenSSL")->Apply(Sizes);
#endif

#ifdef PEER_BOTAN
void BotanEncode(benchmark::State& state) {
    std::string const bytes = Bytes(state);
    std::vector<char> digits(2 * bytes.size());
    Run(state, [&] {
        Botan::hex_encode(digits.data(), reinterpret_cast<std::uint8_t const*>(bytes.data()),
                          bytes.size());
    });
}
BENCHMARK(BotanEncode)->Name("getASCIIHex/Botan")->Apply(Sizes);

void BotanDecode(benchmark::State& state) {
    std::string const digits = Digits(state);
    std::vector<std::uint8_t> bytes(digits.size() / 2);
    Run(state, [&] { Botan::hex_decode(bytes.data(), digits.data(), digits.size()); });
}
BENCHMARK(BotanDecode)->Name("loadASCIIHex/Botan")->Apply(Sizes);

void BotanGrowingEncode(benchmark::State& state) {
    std::string const bytes = Bytes(state);
    Run(state, [&] {
        benchmark::DoNotOptimize(
            Botan::hex_encode(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size()));
    });
}
BENCHMARK(BotanGrowingEncode)->Name("getASCIIHex, growing/Botan")->Apply(Sizes);

void BotanGrowingDecode(benchmark::State& state) {
    std::string const digits = Digits(state);
    Run(state, [&] { benchmark::DoNotOptimize(Botan::hex_decode(digits)); });
}
BENCHMARK(BotanGrowingDecode)->Name("loadASCIIHex, growing/Botan")->Apply(Sizes);
#endif

}  // namespace
