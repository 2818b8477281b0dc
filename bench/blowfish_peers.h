#ifndef COMMONAPI_BENCH_BLOWFISH_PEERS_H
#define COMMONAPI_BENCH_BLOWFISH_PEERS_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

constexpr char blowfishKey[] = "sixteen byte key";

/// One implementation of Blowfish in ECB mode, keyed with `blowfishKey`, that works in place.
struct BlowfishPeer {
    using Transform = std::function<void(unsigned char* data, std::size_t size)>;

    char const* name;
    Transform encrypt;
    Transform decrypt;
    std::function<void()> scheduleKey;
};
std::vector<BlowfishPeer> BlowfishPeers();

/// Encryption of a setting to hexadecimal text and back.
struct SettingPeer {
    using Convert = std::function<void(std::string const& in, std::string& out)>;

    char const* name;
    Convert encrypt;
    Convert decrypt;
};
std::vector<SettingPeer> SettingPeers();

#endif
