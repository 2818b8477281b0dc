#ifndef COMMONAPI_TOOLS_CIPHER_H
#define COMMONAPI_TOOLS_CIPHER_H

#include <CommonAPI/encryption_api.h>

#include <string>
#include <string_view>

#include "secret.h"

constexpr std::size_t longestValue = 1 << 20;

/// Encrypts and decrypts as clients do. What is refused throws `std::runtime_error`; what is
/// returned lives until the next call.
class Cipher {
public:
    /// The password is a text without zero characters.
    explicit Cipher(std::string_view password);

    /// The value in hexadecimal.
    std::string_view encrypt(std::string_view value);
    /// The value that hexadecimal text stands for, refused if it is no text.
    std::string_view decrypt(std::string_view encrypted);
    /// Whatever hexadecimal text stands for, without its padding.
    std::string_view decryptRaw(std::string_view encrypted);

private:
    EncryptionAPI api;
    SecretBuffer digits;
    SecretBuffer from;
    SecretBuffer to;
    std::string encryptedText;
};

/// A password in hexadecimal, as clients take it in mode 4.
std::string Seal(Secret const& password);

/// The inverse.
Secret Open(Secret const& sealedKey);

#endif
