#define OPENSSL_SUPPRESS_DEPRECATED
#include <CommonAPI/encryption_api.h>
#include <openssl/blowfish.h>

#include <cstring>

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
            kernel.encrypt(subkeys, boxes, Bytes(copy) + copy.size() % 8, copy.size() / 8);
            Check(copy == encrypted);
            kernel.decrypt(subkeys, boxes, Bytes(copy) + copy.size() % 8, copy.size() / 8);
            Check(copy == data);
        }
}

static void TryTexts(std::string const& text) {
    static EncryptionAPI const api = [](ByteArray key) {
        EncryptionAPI keyed;
        keyed.initializeAPI(key, 3);
        return keyed;  // once, because its cipher is never freed
    }("k");
    std::string out;
    Check(api.encryptString(text, out) && api.decryptString(out, out) && out == text.c_str());

    out = "old";
    ByteArray bytes;
    bytes.loadASCIIHex(text);
    bool const whole = text.size() % 8 == 0, good = whole && bytes.size() % 8 == 0;
    Check(api.decryptString(text, out) == good);
    Check(good || out == (whole ? "old" : ""));
}

/// A line with a key, and data.
static void Try(std::string const& input) {
    std::string const key = input.substr(0, input.find('\n')).c_str();
    std::string const data = input.substr(std::min(key.size() + 1, input.size()));
    if (!key.empty())
        TryKernels(key, data);
    TryTexts(data);
}
