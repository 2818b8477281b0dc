#ifndef COMMONAPI_CRYPTO_BUILT_IN_PASSPHRASE_H
#define COMMONAPI_CRYPTO_BUILT_IN_PASSPHRASE_H

#include <array>
#include <cstddef>

namespace CommonAPI::internal {

inline constexpr std::size_t passphraseLength = 40;

inline constexpr wchar_t widePassphrase[passphraseLength + 1] =
    L"Tq8-Lm2vZr5-Kx9wPn3-Hc7yJd4-Fs6uBg1-We0R";
static_assert(widePassphrase[passphraseLength - 1] != L'\0', "exactly 40 characters");

/// What keys of mode 4 are encrypted under: the low 8 bits of each wide character, terminated. It
/// is no secret, as it ships in the library.
constexpr std::array<char, passphraseLength + 1> BuiltInPassphrase() {
    std::array<char, passphraseLength + 1> narrow = {};
    for (std::size_t i = 0; i < passphraseLength; ++i)
        narrow[i] = static_cast<char>(widePassphrase[i]);
    return narrow;
}

}  // namespace CommonAPI::internal

#endif
