#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/blowfish.h>

#include "crypto/blowfish_kernel.h"
#include "crypto/blowfish_key_schedule.h"
#include "fuzz/target.h"

using namespace CommonAPI::internal;

static unsigned char* Bytes(std::string& text) {
    return reinterpret_cast<unsigned char*>(text.data());
}

static std::string Transformed(std::string data, std::string key, int direction) {
    BF_KEY schedule;
    BF_set_key(&schedule, static_cast<int>(key.size()), Bytes(key));
    for (std::size_t i = data.size() % 8; i < data.size(); i += 8)
        BF_ecb_encrypt(Bytes(data) + i, Bytes(data) + i, &schedule, direction);
    return data;
}

/// What fills no block stands in front, so that the blocks begin at any address.
static void TryKernels(std::string const& key, std::string const& data) {
    std::string const encrypted = Transformed(data, key, BF_ENCRYPT);
    BlowfishSubkeys subkeys;
    BlowfishBoxes boxes;
    std::memcpy(subkeys, initialBlowfishSubkeys, sizeof subkeys);
    std::memcpy(boxes, initialBlowfishBoxes, sizeof boxes);
    ScheduleBlowfishKey(key.data(), key.size(), subkeys, boxes);
    for (BlowfishKernel const& kernel : BlowfishKernels())
        if (kernel.supported()) {
            std::string copy = data;
            unsigned char* const blocks = Bytes(copy) + copy.size() % 8;
            kernel.encrypt(subkeys, boxes, blocks, copy.size() / 8), Check(copy == encrypted);
            kernel.decrypt(subkeys, boxes, blocks, copy.size() / 8), Check(copy == data);
        }
}

/// A line with a key, and data.
static void Try(std::string const& input) {
    std::string const key = input.substr(0, input.find('\n')).c_str();
    if (!key.empty())
        TryKernels(key, input.substr(key.size()));
}
