#include <CommonAPI/blowfish.h>
#include <CommonAPI/logging.h>

#include <cstring>

#include "crypto/blowfish_kernel.h"
#include "crypto/blowfish_key_schedule.h"
#include "crypto/blowfish_rounds.h"
#include "crypto/wipe.h"
#include "types/byte_array_access.h"
#include "types/requirement.h"

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
    if (*NotNull(key, "Blowfish::generateSubKeys") != '\0')
        ScheduleBlowfishKey(key, std::strlen(key), subkeys, sboxes);
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
