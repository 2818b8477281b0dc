/// @file
/// The Blowfish block cipher.
#ifndef COMMONAPI_BLOWFISH_H
#define COMMONAPI_BLOWFISH_H

#include <CommonAPI/byte_array.h>
#include <CommonAPI/export.h>

#include <string>

/// Blowfish with 64-bit blocks and 16 rounds, keyed by a text and applied block by block, without
/// chaining (ECB) and without padding: equal blocks encrypt to equal blocks.
///
/// Source: B. Schneier, "Description of a New Variable-Length Key, 64-Bit Block Cipher (Blowfish)",
/// Fast Software Encryption, Cambridge 1993, LNCS 809, Springer 1994.
///
/// The two halves of a block are big-endian words, the left one first, so that buffers agree with
/// other implementations in ECB mode for the same key bytes.
///
/// An object is usable at once: until it is keyed it encrypts with the initial tables. Destruction
/// overwrites the tables.
///
/// Threads: an object that is keyed and no longer changed may serve several threads. The memory
/// that the block functions read depends on the data, which an attacker on the same machine may
/// observe; so it does in `encryptData` and `decryptData`, except on processors for which the
/// library has a kernel without that property (see [Encryption](docs/encryption.md)).
class COMMONAPI_EXPORT Blowfish {
public:
    /// One half of a block.
    typedef unsigned int Word;

    /// With the initial tables.
    Blowfish();
    ~Blowfish();

    /// Returns to the initial tables: any key is forgotten.
    void reset();
    /// Keys the cipher. False, with an earlier key still in force, when `password` is null or
    /// empty. Bytes after the 72nd have no effect.
    bool setPassword(char const* password);
    /// The key schedule, applied to the tables as they stand; nothing for an empty key. REQUIRES:
    /// `key` is not null.
    void generateSubKeys(char const* key);

    /// Encrypts one block in place.
    void BF_En(Word* left, Word* right);
    /// Decrypts one block in place.
    void BF_De(Word* left, Word* right);

    /// Encrypts the whole buffer in place. False, with a line in the log and the buffer unchanged,
    /// when its length is not a multiple of 8.
    bool encryptData(ByteArray& data);
    /// Decrypts the whole buffer in place; otherwise the same.
    bool decryptData(ByteArray& data);

private:
    std::string unused;
    Word subkeys[18];
    Word sboxes[4][256];
};

#endif
