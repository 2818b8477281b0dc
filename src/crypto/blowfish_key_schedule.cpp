#include "crypto/blowfish_key_schedule.h"

#include "crypto/blowfish_rounds.h"

namespace CommonAPI::internal {
namespace {

/// Mixes the key, repeated as often as needed, into the subkeys.
void MixKey(char const* key, std::size_t length, BlowfishSubkeys& subkeys) {
    std::size_t position = 0;
    for (std::uint32_t& subkey : subkeys) {
        std::uint32_t word = 0;
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
                   BlowfishBlocks<1>& block, std::uint32_t (&words)[count]) {
    for (std::size_t i = 0; i < count; i += 2) {
        BlowfishRounds<BlowfishDirection::encrypt>(subkeys, boxes, block);
        words[i] = block.left[0];
        words[i + 1] = block.right[0];
    }
}

}  // namespace

void ScheduleBlowfishKey(char const* key, std::size_t length, BlowfishSubkeys& subkeys,
                         BlowfishBoxes& boxes) {
    MixKey(key, length, subkeys);
    BlowfishBlocks<1> block = {};
    FillFromChain(subkeys, boxes, block, subkeys);
    for (std::uint32_t(&box)[256] : boxes)
        FillFromChain(subkeys, boxes, block, box);
}

}  // namespace CommonAPI::internal
