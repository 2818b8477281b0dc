#include <CommonAPI/blowfish.h>
#include <CommonAPI/logging.h>

#include <cstring>

#include "crypto/blowfish_kernel.h"
#include "crypto/blowfish_rounds.h"
#include "crypto/wipe.h"
#include "types/byte_array_access.h"

using namespace CommonAPI::internal;

namespace {

constexpr std::size_t blockSize = 8;

template <BlowfishDirection direction>
void TransformBlock(BlowfishSubkeys const& subkeys, BlowfishBoxes const& boxes,
                    Blowfish::Word* left, Blowfish::Word* right) {
    BlowfishBlocks<1> block = {{*left}, {*right}};
    BlowfishRounds<direction>(subkeys, boxes, block);
    *left = block.left[0];
    *right = block.right[0];
}

/// Mixes the key, repeated as often as needed, into the subkeys.
void MixKey(char const* key, std::size_t length, BlowfishSubkeys& subkeys) {
    std::size_t position = 0;
    for (Blowfish::Word& subkey : subkeys) {
        Blowfish::Word word = 0;
        for (int byte = 0; byte < 4; ++byte) {
            word = word << 8 | static_cast<unsigned char>(key[position]);
            position = position + 1 == length ? 0 : position + 1;
        }
        subkey ^= word;
    }
}

/// Replaces the words by the chain of encryptions that `block` is the latest of.
template <std::size_t count>
void FillFromChain(BlowfishSubkeys const& subkeys, BlowfishBoxes const& boxes,
                   BlowfishBlocks<1>& block, Blowfish::Word (&words)[count]) {
    for (std::size_t i = 0; i < count; i += 2) {
        BlowfishRounds<BlowfishDirection::encrypt>(subkeys, boxes, block);
        words[i] = block.left[0];
        words[i + 1] = block.right[0];
    }
}

bool Transform(ByteArray& data, BlowfishTransform* transform, BlowfishSubkeys const& subkeys,
               BlowfishBoxes const& boxes, int failureLevel, char const* failureModule) {
    std::vector<unsigned char>& bytes = ByteArrayAccess::bytes(data);
    if (bytes.size() % blockSize != 0) {
        LogMessage(failureLevel, failureModule,
                   "Blowfish requires the input to be a multiple of 8 bytes (64 bits) to work.");
        return false;
    }
    transform(subkeys, boxes, bytes.data(), bytes.size() / blockSize);
    return true;
}

}  // namespace

Blowfish::Blowfish() {
    reset();
}

Blowfish::~Blowfish() {
    reset();
    KeepStores(this);
}

void Blowfish::reset() {
    std::memcpy(subkeys, initialBlowfishSubkeys, sizeof subkeys);
    std::memcpy(sboxes, initialBlowfishBoxes, sizeof sboxes);
}

bool Blowfish::setPassword(char const* password) {
    if (password == nullptr || *password == '\0')
        return false;
    reset();
    generateSubKeys(password);
    return true;
}

void Blowfish::generateSubKeys(char const* key) {
    std::size_t const length = std::strlen(key);
    if (length == 0)
        return;
    MixKey(key, length, subkeys);
    BlowfishBlocks<1> block = {};
    FillFromChain(subkeys, sboxes, block, subkeys);
    for (Word(&box)[256] : sboxes)
        FillFromChain(subkeys, sboxes, block, box);
}

void Blowfish::BF_En(Word* left, Word* right) {
    TransformBlock<BlowfishDirection::encrypt>(subkeys, sboxes, left, right);
}

void Blowfish::BF_De(Word* left, Word* right) {
    TransformBlock<BlowfishDirection::decrypt>(subkeys, sboxes, left, right);
}

bool Blowfish::encryptData(ByteArray& data) {
    // "Encrptyion" is how clients' logging settings spell it; the level differs from decryption's.
    return Transform(data, ChosenBlowfishKernel().encrypt, subkeys, sboxes, 1, "Encrptyion");
}

bool Blowfish::decryptData(ByteArray& data) {
    return Transform(data, ChosenBlowfishKernel().decrypt, subkeys, sboxes, 2,
                     "Blowfish::decryptData()");
}
