#include "crypto/blowfish_kernel.h"
#include "crypto/blowfish_rounds.h"

namespace CommonAPI::internal {
namespace {

// Measured with gcc 12 on an AMD EPYC of the Zen 4 generation: of 4 to 8 blocks together, 5 are the
// fastest each, as beyond it the halves no longer fit in the registers. What remains of them is
// best taken at once or as 4 + 4: 5 and a few, each of which waits for its look-ups, would take
// longer.
constexpr std::size_t lanesInFlight = 5;
constexpr std::size_t longestRest = 8;

std::uint32_t LoadWord(unsigned char const* bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
           std::uint32_t{bytes[2]} << 8 | bytes[3];
}

void StoreWord(std::uint32_t word, unsigned char* bytes) {
    bytes[0] = static_cast<unsigned char>(word >> 24);
    bytes[1] = static_cast<unsigned char>(word >> 16);
    bytes[2] = static_cast<unsigned char>(word >> 8);
    bytes[3] = static_cast<unsigned char>(word);
}

template <BlowfishDirection direction, std::size_t... lane>
[[gnu::always_inline]] inline void TransformLanes(BlowfishSubkeys const& subkeys,
                                                  BlowfishBoxes const& boxes, unsigned char* data,
                                                  std::index_sequence<lane...>) {
    BlowfishBlocks<sizeof...(lane)> blocks = {{LoadWord(data + 8 * lane)...},
                                              {LoadWord(data + 8 * lane + 4)...}};
    BlowfishRounds<direction>(subkeys, boxes, blocks);
    (StoreWord(blocks.left[lane], data + 8 * lane), ...);
    (StoreWord(blocks.right[lane], data + 8 * lane + 4), ...);
}

/// In a function of its own, so that it takes no registers from the others.
template <BlowfishDirection direction, std::size_t lanes>
[[gnu::noinline]] void TransformAtOnce(BlowfishSubkeys const& subkeys, BlowfishBoxes const& boxes,
                                       unsigned char* data) {
    TransformLanes<direction>(subkeys, boxes, data, std::make_index_sequence<lanes>());
}

template <BlowfishDirection direction>
[[gnu::always_inline]] inline void Transform(BlowfishSubkeys const& subkeys,
                                             BlowfishBoxes const& boxes, unsigned char* data,
                                             std::size_t blocks) {
    constexpr std::size_t step = 8 * lanesInFlight;
    for (; blocks > longestRest || blocks == lanesInFlight; blocks -= lanesInFlight, data += step)
        TransformLanes<direction>(subkeys, boxes, data, std::make_index_sequence<lanesInFlight>());
    switch (blocks) {
        case 8:
            TransformAtOnce<direction, 4>(subkeys, boxes, data);
            return TransformAtOnce<direction, 4>(subkeys, boxes, data + 32);
        case 7:
            return TransformAtOnce<direction, 7>(subkeys, boxes, data);
        case 6:
            return TransformAtOnce<direction, 6>(subkeys, boxes, data);
        case 4:
            return TransformAtOnce<direction, 4>(subkeys, boxes, data);
        case 3:
            return TransformAtOnce<direction, 3>(subkeys, boxes, data);
        case 2:
            return TransformAtOnce<direction, 2>(subkeys, boxes, data);
        case 1:
            return TransformAtOnce<direction, 1>(subkeys, boxes, data);
    }
}

}  // namespace

void EncryptBlowfishPortable(BlowfishSubkeys const& subkeys, BlowfishBoxes const& boxes,
                             unsigned char* data, std::size_t blocks) {
    Transform<BlowfishDirection::encrypt>(subkeys, boxes, data, blocks);
}

void DecryptBlowfishPortable(BlowfishSubkeys const& subkeys, BlowfishBoxes const& boxes,
                             unsigned char* data, std::size_t blocks) {
    Transform<BlowfishDirection::decrypt>(subkeys, boxes, data, blocks);
}

}  // namespace CommonAPI::internal
