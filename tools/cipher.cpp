#include "cipher.h"

#include <algorithm>
#include <stdexcept>

#include "crypto/built_in_passphrase.h"
#include "text.h"

namespace {

constexpr int directPassword = 3;
constexpr std::size_t blockSize = 8;
constexpr std::size_t digitsPerBlock = 2 * blockSize;

Cipher Sealer() {
    return Cipher(CommonAPI::internal::BuiltInPassphrase().data());
}

void RequireLength(std::size_t length) {
    if (length > longestValue)
        throw std::runtime_error("longer than " + std::to_string(longestValue) + " characters");
}

/// The C library's own is called for each character, which takes a quarter of the time in all.
bool IsHexadecimalDigit(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F') ||
           (character >= 'a' && character <= 'f');
}

void RequireHexadecimal(std::string_view text) {
    auto const* const bad = std::find_if_not(text.begin(), text.end(), IsHexadecimalDigit);
    if (bad != text.end())
        throw std::runtime_error("no hexadecimal digit at character " +
                                 std::to_string(bad - text.begin() + 1));
    if (text.size() % digitsPerBlock != 0)
        throw std::runtime_error("not a multiple of 16 digits long");
}

}  // namespace

Cipher::Cipher(std::string_view password) {
    SecretBuffer key;
    key.append(password.data(), static_cast<long>(password.size()));
    api.initializeAPI(key, directPassword);
}

std::string_view Cipher::encrypt(std::string_view value) {
    RequireLength(value.size());
    if (value.find('\0') != std::string_view::npos)
        throw std::runtime_error("holds a zero character, at which it would end");
    // With its padding from the start: a buffer that grew later would leave a copy behind.
    std::vector<unsigned char>& bytes = ByteArrayAccess::bytes(from);
    bytes.assign((value.size() + blockSize - 1) / blockSize * blockSize, 0);
    std::copy(value.begin(), value.end(), bytes.begin());
    api.encryptData(from, to);
    to.getASCIIHex(encryptedText);
    return encryptedText;
}

std::string_view Cipher::decryptRaw(std::string_view encrypted) {
    std::string_view const text = WithoutFileMarks(encrypted);
    RequireLength(text.size() / 2);
    RequireHexadecimal(text);
    digits.assign(text.data(), static_cast<long>(text.size()));
    from.loadASCIIHex(digits);
    api.decryptData(from, to);
    std::vector<unsigned char> const& bytes = ByteArrayAccess::bytes(to);
    std::string_view value(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    for (std::size_t padding = 1; padding < blockSize && value.ends_with('\0'); ++padding)
        value.remove_suffix(1);
    return value;
}

std::string_view Cipher::decrypt(std::string_view encrypted) {
    std::string_view const value = decryptRaw(encrypted);
    if (!IsText(value))
        throw std::runtime_error(
            "does not decrypt to text: another password, or a value for --raw");
    return value;
}

std::string Seal(Secret const& password) {
    return std::string(Sealer().encrypt({password.data(), password.size()}));
}

Secret Open(Secret const& sealedKey) {
    Cipher sealer = Sealer();
    try {
        auto const password = sealer.decryptRaw({sealedKey.data(), sealedKey.size()});
        constexpr std::string_view neverInPasswords("\0\n", 2);
        if (!password.empty() && password.find_first_of(neverInPasswords) == password.npos)
            return {password.begin(), password.end()};
    } catch (std::runtime_error const&) {
        // The reason is in the key, which is not to be seen.
    }
    throw std::runtime_error("this is no sealed key in hexadecimal");
}
