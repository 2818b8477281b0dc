#define OPENSSL_SUPPRESS_DEPRECATED
#include "blowfish_peers.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#ifdef PEER_OPENSSL
#include <openssl/blowfish.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/provider.h>
#endif
#ifdef PEER_GCRYPT
#include <gcrypt.h>
#endif
#ifdef PEER_NETTLE
#include <nettle/blowfish.h>
#endif
#ifdef PEER_BOTAN
#include <botan/block_cipher.h>
#endif
#ifdef PEER_CRYPTOPP
#include <cryptopp/blowfish.h>
#include <cryptopp/modes.h>
#endif

namespace {

constexpr std::size_t keySize = std::string_view(blowfishKey).size();
constexpr std::size_t blockSize = 8;

[[maybe_unused]] unsigned char const* Key() {
    return reinterpret_cast<unsigned char const*>(blowfishKey);
}

[[maybe_unused]] void Check(bool succeeded) {
    if (!succeeded)
        std::abort();
}

#ifdef PEER_OPENSSL
BlowfishPeer MakeOpenSsl() {
    auto const key = std::make_shared<BF_KEY>();
    auto const schedule = [key] { BF_set_key(key.get(), static_cast<int>(keySize), Key()); };
    auto const transform = [key](int direction) {
        return [key, direction](unsigned char* data, std::size_t size) {
            for (unsigned char* const end = data + size; data != end; data += blockSize)
                BF_ecb_encrypt(data, data, key.get(), direction);
        };
    };
    schedule();
    return {"openssl", transform(BF_ENCRYPT), transform(BF_DECRYPT), schedule};
}

EVP_CIPHER_CTX* Context(int encrypt) {
    static bool const loaded = OSSL_PROVIDER_load(nullptr, "legacy") != nullptr;
    Check(loaded);
    EVP_CIPHER_CTX* const context = EVP_CIPHER_CTX_new();
    Check(EVP_CipherInit_ex(context, EVP_bf_ecb(), nullptr, Key(), nullptr, encrypt) == 1);
    EVP_CIPHER_CTX_set_padding(context, 0);
    return context;
}

/// As its manual has it: each message from initialisation to finalisation, keeping the key. The
/// other way skips both, which ECB without padding happens to allow.
enum class Use { wholeMessages, updatesOnly };

void Transform(EVP_CIPHER_CTX* context, Use use, std::string& text) {
    auto* const bytes = reinterpret_cast<unsigned char*>(text.data());
    int size = static_cast<int>(text.size());
    int rest = 0;
    if (use == Use::wholeMessages)
        Check(EVP_CipherInit_ex(context, nullptr, nullptr, nullptr, nullptr, -1) == 1);
    Check(EVP_CipherUpdate(context, bytes, &size, bytes, size) == 1);
    if (use == Use::wholeMessages)
        Check(EVP_CipherFinal_ex(context, bytes + size, &rest) == 1);
}

SettingPeer MakeOpenSslSetting(char const* name, Use use) {
    auto const encrypt = [use, context = Context(1)](std::string const& in, std::string& out) {
        std::string text = in;
        text.resize((in.size() + blockSize - 1) / blockSize * blockSize);
        Transform(context, use, text);
        out.resize(2 * text.size() + 1);
        Check(OPENSSL_buf2hexstr_ex(out.data(), out.size(), nullptr,
                                    reinterpret_cast<unsigned char const*>(text.data()),
                                    text.size(), '\0') == 1);
        out.pop_back();
    };
    auto const decrypt = [use, context = Context(0)](std::string const& in, std::string& out) {
        std::string text(in.size() / 2, '\0');
        Check(OPENSSL_hexstr2buf_ex(reinterpret_cast<unsigned char*>(text.data()), text.size(),
                                    nullptr, in.c_str(), '\0') == 1);
        Transform(context, use, text);
        out = text.c_str();
    };
    return {name, encrypt, decrypt};
}
#endif

#ifdef PEER_GCRYPT
BlowfishPeer MakeGcrypt() {
    gcry_check_version(nullptr);
    gcry_cipher_hd_t handle;
    Check(gcry_cipher_open(&handle, GCRY_CIPHER_BLOWFISH, GCRY_CIPHER_MODE_ECB, 0) == 0);
    auto const schedule = [handle] { Check(gcry_cipher_setkey(handle, Key(), keySize) == 0); };
    schedule();
    return {"libgcrypt",
            [handle](unsigned char* data, std::size_t size) {
                Check(gcry_cipher_encrypt(handle, data, size, nullptr, 0) == 0);
            },
            [handle](unsigned char* data, std::size_t size) {
                Check(gcry_cipher_decrypt(handle, data, size, nullptr, 0) == 0);
            },
            schedule};
}
#endif

#ifdef PEER_NETTLE
BlowfishPeer MakeNettle() {
    auto const context = std::make_shared<blowfish_ctx>();
    auto const schedule = [context] { blowfish_set_key(context.get(), keySize, Key()); };
    schedule();
    return {"nettle",
            [context](unsigned char* data, std::size_t size) {
                blowfish_encrypt(context.get(), size, data, data);
            },
            [context](unsigned char* data, std::size_t size) {
                blowfish_decrypt(context.get(), size, data, data);
            },
            schedule};
}
#endif

#ifdef PEER_BOTAN
BlowfishPeer MakeBotan() {
    std::shared_ptr<Botan::BlockCipher> const cipher =
        Botan::BlockCipher::create_or_throw("Blowfish");
    auto const schedule = [cipher] { cipher->set_key(Key(), keySize); };
    schedule();
    return {"botan",
            [cipher](unsigned char* data, std::size_t size) {
                cipher->encrypt_n(data, data, size / blockSize);
            },
            [cipher](unsigned char* data, std::size_t size) {
                cipher->decrypt_n(data, data, size / blockSize);
            },
            schedule};
}
#endif

#ifdef PEER_CRYPTOPP
BlowfishPeer MakeCryptoPlusPlus() {
    using namespace CryptoPP;
    auto const encryption = std::make_shared<ECB_Mode<Blowfish>::Encryption>(Key(), keySize);
    auto const decryption = std::make_shared<ECB_Mode<Blowfish>::Decryption>(Key(), keySize);
    return {"crypto++",
            [encryption](unsigned char* data, std::size_t size) {
                encryption->ProcessData(data, data, size);
            },
            [decryption](unsigned char* data, std::size_t size) {
                decryption->ProcessData(data, data, size);
            },
            [encryption] { encryption->SetKey(Key(), keySize); }};
}
#endif

}  // namespace

std::vector<BlowfishPeer> BlowfishPeers() {
    return {
#ifdef PEER_OPENSSL
        MakeOpenSsl(),
#endif
#ifdef PEER_GCRYPT
        MakeGcrypt(),
#endif
#ifdef PEER_NETTLE
        MakeNettle(),
#endif
#ifdef PEER_BOTAN
        MakeBotan(),
#endif
#ifdef PEER_CRYPTOPP
        MakeCryptoPlusPlus(),
#endif
    };
}

std::vector<SettingPeer> SettingPeers() {
    return {
#ifdef PEER_OPENSSL
        MakeOpenSslSetting("openssl", Use::wholeMessages),
        MakeOpenSslSetting("openssl updates", Use::updatesOnly),
#endif
    };
}
