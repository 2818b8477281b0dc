/// @file
/// `EncryptionAPI`, the encryption facade over `Blowfish`.
#ifndef COMMONAPI_ENCRYPTION_API_H
#define COMMONAPI_ENCRYPTION_API_H

#include <CommonAPI/blowfish.h>
#include <CommonAPI/byte_array.h>
#include <CommonAPI/export.h>

#include <string>
#include <vector>

/// Encrypts and decrypts buffers, texts and lists of them, by a mode chosen once:
///
/// | mode | meaning |
/// |---|---|
/// | 2 | no encryption, the default: everything is copied and succeeds |
/// | 3 | Blowfish, keyed with the bytes given |
/// | 4 | Blowfish, keyed with what the bytes given decrypt to under a built-in passphrase |
/// | other | buffers are copied; texts stay untouched; everything succeeds |
///
/// In modes 3 and 4 a password ends at its first zero byte, and an empty one leaves the cipher with
/// its initial tables. Encrypted text is upper-case hexadecimal, two characters a byte, in
/// multiples of 16. Data is padded with zero bytes to a multiple of 8, and the padding is not
/// marked.
///
/// This hides values from a casual reader and no more: blocks are 64 bits wide, not chained and not
/// authenticated, and the passphrase of mode 4 ships in the library.
///
/// Ownership: `initializeAPI` creates a cipher that is never freed.
///
/// Threads: the const operations only read, so one initialised object may serve several threads,
/// but `decryptString` logs a line for bytes that are not a multiple of 8, without a lock;
/// `initializeAPI` must not run at the same time as anything else on the object.
class COMMONAPI_EXPORT EncryptionAPI {
public:
    /// In mode 2.
    EncryptionAPI();
    ~EncryptionAPI();

    /// Sets the mode and, in modes 3 and 4, creates and keys a cipher. The key's bytes are not
    /// changed, but in mode 3 its `c_str()` text is.
    void initializeAPI(ByteArray& key, int mode);

    /// Sets `out` to `in`, padded and encrypted. Given one buffer as both, empties it.
    bool encryptData(ByteArray const& in, ByteArray& out) const;
    /// Sets `out` to `in` decrypted, padding included. False, with `out` empty, when the length of
    /// `in` is not a multiple of 8. Given one buffer as both, empties it.
    bool decryptData(ByteArray const& in, ByteArray& out) const;
    /// Appends the encrypted items to `out`; on failure those before the failing one stay. Given
    /// one list as both, encrypts the items that it holds at first.
    bool encryptDataList(std::vector<ByteArray> const& in, std::vector<ByteArray>& out) const;
    /// Gives `out` the size of `in` and replaces its items by the decrypted ones; on failure those
    /// from the failing one on stay as they were.
    bool decryptDataList(std::vector<ByteArray> const& in, std::vector<ByteArray>& out) const;

    /// Sets `out` to the encrypted text in hexadecimal.
    bool encryptString(std::string const& in, std::string& out) const;
    /// Sets `out` to the text that hexadecimal of either case stands for, up to its first zero
    /// character. False, with `out` empty, when the length of `in` is not a multiple of 8; false,
    /// with `out` untouched and a line in the log, when the bytes that it stands for are not a
    /// multiple of 8.
    bool decryptString(std::string const& in, std::string& out) const;
    /// Appends the encrypted texts to `out`; on failure those before the failing one stay.
    bool encryptStringList(std::vector<std::string> const& in, std::vector<std::string>& out) const;
    /// Encrypts, exactly as `encryptStringList` does. To decrypt, call `decryptString` per item.
    bool decryptStringList(std::vector<std::string> const& in, std::vector<std::string>& out) const;

private:
    int mode;
    Blowfish* cipher;
};

#endif
