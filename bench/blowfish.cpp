// Blowfish of every kernel beside other libraries'. Names are service/implementation[/bytes].
#include <CommonAPI/encryption_api.h>
#include <benchmark/benchmark.h>

#include "blowfish_peers.h"
#include "crypto/blowfish_kernel.h"
#include "crypto/blowfish_key_schedule.h"

using namespace CommonAPI::internal;

namespace {

struct Tables {
    BlowfishSubkeys subkeys;
    BlowfishBoxes boxes;
} tables;

void ScheduleKey() {
    std::copy_n(initialBlowfishSubkeys, std::size(tables.subkeys), tables.subkeys);
    std::copy_n(*initialBlowfishBoxes, sizeof tables.boxes / 4, *tables.boxes);
    ScheduleBlowfishKey(blowfishKey, sizeof blowfishKey - 1, tables.subkeys, tables.boxes);
}

std::vector<BlowfishPeer> OurKernels() {
    auto const transform = [](BlowfishTransform* blocks) {
        return [blocks](unsigned char* data, std::size_t size) {
            blocks(tables.subkeys, tables.boxes, data, size / 8);
        };
    };
    std::vector<BlowfishPeer> kernels;
    for (BlowfishKernel const& kernel : BlowfishKernels())
        if (kernel.supported())
            kernels.push_back(
                {kernel.name, transform(kernel.encrypt), transform(kernel.decrypt), nullptr});
    return kernels;
}

SettingPeer OurSetting() {
    static EncryptionAPI api;
    ByteArray key(blowfishKey);
    api.initializeAPI(key, 3);
    return {"ours",
            [](std::string const& in, std::string& out) {
                benchmark::DoNotOptimize(api.encryptString(in, out));
            },
            [](std::string const& in, std::string& out) {
                benchmark::DoNotOptimize(api.decryptString(in, out));
            }};
}

void Register(std::string const& service, std::string const& name,
              BlowfishPeer::Transform const& transform) {
    auto* const registered = benchmark::RegisterBenchmark(
        (service + "/" + name).c_str(), [transform](benchmark::State& state) {
            std::vector<unsigned char> data(static_cast<std::size_t>(state.range(0)), 'x');
            for (auto _ : state) {
                transform(data.data(), data.size());
                benchmark::ClobberMemory();
            }
            state.SetBytesProcessed(state.iterations() * state.range(0));
        });
    // The small ones are every remainder of the kernels' groups.
    for (int size :
         {8,   16,  24,  32,  40,  48,      56,      64,      72,      128,     192,    256,
          320, 384, 512, 672, 768, 1 << 10, 1 << 12, 1 << 14, 1 << 16, 1 << 18, 1 << 20})
        registered->Arg(size);
}

void RegisterKeySchedule(char const* name, std::function<void()> const& schedule) {
    benchmark::RegisterBenchmark((std::string("key schedule/") + name).c_str(),
                                 [schedule](benchmark::State& state) {
                                     for (auto _ : state) {
                                         schedule();
                                         benchmark::ClobberMemory();
                                     }
                                 });
}

void RegisterSetting(SettingPeer const& peer) {
    std::string const text = "a setting of exactly 32 letters.";
    std::string hex;
    peer.encrypt(text, hex);
    auto const add = [&](char const* service, SettingPeer::Convert const& convert,
                         std::string const& in) {
        benchmark::RegisterBenchmark((std::string(service) + "/" + peer.name).c_str(),
                                     [convert, in](benchmark::State& state) {
                                         std::string out;
                                         for (auto _ : state) {
                                             convert(in, out);
                                             benchmark::DoNotOptimize(out);
                                         }
                                     });
    };
    add("encrypt a setting", peer.encrypt, text);
    add("decrypt a setting", peer.decrypt, hex);
}

bool const registered = [] {
    ScheduleKey();
    std::vector<BlowfishPeer> all = OurKernels();
    for (BlowfishPeer& peer : BlowfishPeers())
        all.push_back(peer);
    for (BlowfishPeer const& peer : all) {
        Register("encrypt", peer.name, peer.encrypt);
        Register("decrypt", peer.name, peer.decrypt);
        if (peer.scheduleKey)
            RegisterKeySchedule(peer.name, peer.scheduleKey);
    }
    RegisterKeySchedule("ours", ScheduleKey);
    RegisterSetting(OurSetting());
    for (SettingPeer const& peer : SettingPeers())
        RegisterSetting(peer);
    return true;
}();

}  // namespace
