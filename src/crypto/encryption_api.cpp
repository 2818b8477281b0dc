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

/// A buffer of the library's own for what is secret: wiped before its memory is given back. It must
/// not grow beyond the room that it is given at first.
class SecretBuffer {
public:
    explicit SecretBuffer(std::size_t room) { bytes().reserve(room); }
    SecretBuffer(SecretBuffer const&) = delete;
    SecretBuffer& operator=(SecretBuffer const&) = delete;
    ~SecretBuffer() { Wipe(bytes().data(), bytes().size()); }

    Bytes& bytes() { return ByteArrayAccess::bytes(array); }

    ByteArray array;
};

/// An empty buffer stays empty, whether there is a cipher or not.
bool PadAndEncrypt(Blowfish* cipher, ByteArray& data) {
    if (data.empty())
        return true;
    Bytes& bytes = ByteArrayAccess::bytes(data);
    bytes.resize(PaddedSize(bytes.size()));
    return cipher != nullptr && cipher->encryptData(data);
}

/// Decrypts the key in place and ends it with a zero byte, for which there is room.
bool OpenKey(SecretBuffer& key) {
    key.bytes().resize(PaddedSize(key.bytes().size()));
    Blowfish cipher;
    cipher.setPassword(BuiltInPassphrase().data());
    if (!cipher.decryptData(key.array))
        return false;
    key.bytes().push_back(0);
    return true;
}

/// Moves the bytes into an item, without a copy that would stay behind.
void Deliver(ByteArray& bytes, ByteArray& item) {
    item = "";
    ByteArrayAccess::bytes(item).swap(ByteArrayAccess::bytes(bytes));
}

/// Appends the encrypted items that `in`, which may be `out`, holds now.
template <class Item>
bool AppendEncrypted(EncryptionAPI const& api,
                     bool (EncryptionAPI::*encrypt)(Item const&, Item&) const,
                     std::vector<Item> const& in, std::vector<Item>& out) {
    Item encrypted;
    std::size_t const count = in.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (!(api.*encrypt)(in[i], encrypted))
            return false;
        out.push_back(encrypted);
    }
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
        Bytes const& sealed = ByteArrayAccess::bytes(key);
        SecretBuffer opened(PaddedSize(sealed.size()) + 1);
        opened.array = key;
        if (!OpenKey(opened)) {
            LogMessage(1, "Encryption", "Unable to set Encryption Salt");
            return;
        }
        cipher = new Blowfish;
        cipher->setPassword(reinterpret_cast<char const*>(opened.bytes().data()));
    }
}

bool EncryptionAPI::encryptData(ByteArray const& in, ByteArray& out) const {
    // At once, as a buffer that grew for the padding would leave the plain data behind.
    if (Encrypts(mode) && &in != &out)
        ByteArrayAccess::bytes(out).reserve(PaddedSize(ByteArrayAccess::bytes(in).size()));
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
    return AppendEncrypted(*this, &EncryptionAPI::encryptData, in, out);
}

bool EncryptionAPI::decryptDataList(std::vector<ByteArray> const& in,
                                    std::vector<ByteArray>& out) const {
    out.resize(in.size());  // replaces by position where encryptDataList appends
    ByteArray decrypted;
    for (std::size_t i = 0; i < in.size(); ++i) {
        if (!decryptData(in[i], decrypted))
            return false;
        Deliver(decrypted, out[i]);
    }
    return true;
}

bool EncryptionAPI::encryptString(std::string const& in, std::string& out) const {
    if (mode == noEncryption)
        out = in;
    if (!Encrypts(mode))
        return true;
    if (!in.empty() && cipher == nullptr)
        return false;
    ByteArray data;
    ByteArrayAccess::bytes(data).reserve(PaddedSize(in.size()));
    data += in;
    PadAndEncrypt(cipher, data);
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
        bool const nothingToDo = in.empty();
        out.clear();  // which may be `in`
        return nothingToDo;
    }
    SecretBuffer data((in.size() + 1) / 2);
    data.array.loadASCIIHex(in);
    if (cipher == nullptr || !cipher->decryptData(data.array))
        return false;
    std::string_view const text(reinterpret_cast<char const*>(data.bytes().data()),
                                data.bytes().size());
    out = text.substr(0, text.find('\0'));
    return true;
}

bool EncryptionAPI::encryptStringList(std::vector<std::string> const& in,
                                      std::vector<std::string>& out) const {
    return AppendEncrypted(*this, &EncryptionAPI::encryptString, in, out);
}

// Encrypts, in spite of its name: clients rely on it.
bool EncryptionAPI::decryptStringList(std::vector<std::string> const& in,
                                      std::vector<std::string>& out) const {
    return encryptStringList(in, out);
}
