#include <CommonAPI/encryption_api.h>
#include <CommonAPI/logging.h>

#include <string_view>

#include "crypto/built_in_passphrase.h"
#include "crypto/wipe.h"
#include "types/byte_array_access.h"

using CommonAPI::internal::BuiltInPassphrase;
using CommonAPI::internal::Wipe;

namespace {

using Bytes = std::vector<unsigned char>;

enum Mode { noEncryption = 2, directPassword = 3, encipheredPassword = 4 };

constexpr std::size_t blockSize = 8;

bool Encrypts(int mode) {
    return mode == directPassword || mode == encipheredPassword;
}

std::size_t PaddedSize(std::size_t size) {
    return (size + blockSize - 1) / blockSize * blockSize;
}

/// An empty buffer stays empty, whether there is a cipher or not.
bool PadAndEncrypt(Blowfish* cipher, ByteArray& data) {
    if (data.empty())
        return true;
    Bytes& bytes = ByteArrayAccess::bytes(data);
    bytes.resize(PaddedSize(bytes.size()));
    return cipher != nullptr && cipher->encryptData(data);
}

/// Decrypts the key in place and ends it with a zero byte.
bool OpenKey(ByteArray& key) {
    Bytes& bytes = ByteArrayAccess::bytes(key);
    // All the room at once: a buffer that grew later would leave an opened key behind.
    bytes.reserve(PaddedSize(bytes.size()) + 1);
    bytes.resize(PaddedSize(bytes.size()));
    Blowfish cipher;
    cipher.setPassword(BuiltInPassphrase().data());
    if (!cipher.decryptData(key))
        return false;
    bytes.push_back(0);
    return true;
}

}  // namespace

EncryptionAPI::EncryptionAPI() : mode(noEncryption), cipher(nullptr) {}

// Leaves the cipher alive, as the class promises.
EncryptionAPI::~EncryptionAPI() = default;

void EncryptionAPI::initializeAPI(ByteArray& key, int newMode) {
    mode = newMode;
    if (mode == directPassword) {
        char const* const password = key.c_str();
        cipher = new Blowfish;  // an earlier one is left alive too
        cipher->setPassword(password);
    } else if (mode == encipheredPassword) {
        ByteArray opened;
        opened = key;
        if (!OpenKey(opened)) {
            LogMessage(1, "Encryption", "Unable to set Encryption Salt");
            return;
        }
        Bytes& password = ByteArrayAccess::bytes(opened);
        cipher = new Blowfish;
        cipher->setPassword(reinterpret_cast<char const*>(password.data()));
        Wipe(password.data(), password.size());
    }
}

bool EncryptionAPI::encryptData(ByteArray const& in, ByteArray& out) const {
    out = in;  // empties it if both are one buffer, and so the result
    return !Encrypts(mode) || PadAndEncrypt(cipher, out);
}

bool EncryptionAPI::decryptData(ByteArray const& in, ByteArray& out) const {
    out = in;
    if (!Encrypts(mode) || out.empty())
        return true;
    if (ByteArrayAccess::bytes(out).size() % blockSize != 0) {
        out.clear();
        return false;
    }
    return cipher != nullptr && cipher->decryptData(out);
}

bool EncryptionAPI::encryptDataList(std::vector<ByteArray> const& in,
                                    std::vector<ByteArray>& out) const {
    ByteArray encrypted;
    for (ByteArray const& item : in) {
        if (!encryptData(item, encrypted))
            return false;
        out.push_back(encrypted);
    }
    return true;
}

bool EncryptionAPI::decryptDataList(std::vector<ByteArray> const& in,
                                    std::vector<ByteArray>& out) const {
    out.resize(in.size());  // replaces by position where encryptDataList appends
    ByteArray decrypted;
    for (std::size_t i = 0; i < in.size(); ++i) {
        if (!decryptData(in[i], decrypted))
            return false;
        out[i] = decrypted;
    }
    return true;
}

bool EncryptionAPI::encryptString(std::string const& in, std::string& out) const {
    if (mode == noEncryption)
        out = in;
    if (!Encrypts(mode))
        return true;
    ByteArray data;
    ByteArrayAccess::bytes(data).reserve(PaddedSize(in.size()));
    data.append(in.data(), static_cast<long>(in.size()));
    if (!PadAndEncrypt(cipher, data))
        return false;
    data.getASCIIHex(out);
    return true;
}

bool EncryptionAPI::decryptString(std::string const& in, std::string& out) const {
    if (mode == noEncryption)
        out = in;
    if (!Encrypts(mode))
        return true;
    // The characters are counted here, and the bytes that they stand for by the cipher.
    if (in.empty() || in.size() % blockSize != 0) {
        out.clear();
        return in.empty();
    }
    ByteArray data;
    data.loadASCIIHex(in);
    if (cipher == nullptr || !cipher->decryptData(data))
        return false;
    Bytes const& bytes = ByteArrayAccess::bytes(data);
    std::string_view const text(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    out = text.substr(0, text.find('\0'));
    return true;
}

bool EncryptionAPI::encryptStringList(std::vector<std::string> const& in,
                                      std::vector<std::string>& out) const {
    std::string encrypted;
    for (std::string const& item : in) {
        if (!encryptString(item, encrypted))
            return false;
        out.push_back(encrypted);
    }
    return true;
}

// Encrypts, in spite of its name: clients rely on it.
bool EncryptionAPI::decryptStringList(std::vector<std::string> const& in,
                                      std::vector<std::string>& out) const {
    return encryptStringList(in, out);
}
