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

/// Groups of `lanes` blocks, and what is left over in the largest groups that fit.
template <BlowfishDirection direction, std::size_t lanes>
[[gnu::always_inline]] inline void TransformGroups(BlowfishSubkeys const& subkeys,
                                                   BlowfishBoxes const& boxes, unsigned char* data,
                                                   std::size_t blocks) {
    for (; blocks >= lanes; blocks -= lanes, data += 8 * lanes)
        TransformLanes<direction>(subkeys, boxes, data, std::make_index_sequence<lanes>());
    if constexpr (lanes > 1)
        TransformGroups<direction, lanes - 1>(subkeys, boxes, data, blocks);
}

template <BlowfishDirection direction>
[[gnu::always_inline]] inline void Transform(BlowfishSubkeys const& subkeys,
                                             BlowfishBoxes const& boxes, unsigned char* data,
                                             std::size_t blocks) {
    constexpr std::size_t step = 8 * lanesInFlight;
    for (; blocks > longestRest || blocks == lanesInFlight; blocks -= lanesInFlight, data += step)
        TransformLanes<direction>(subkeys, boxes, data, std::make_index_sequence<lanesInFlight>());
    if (blocks == 7)
        TransformAtOnce<direction, 7>(subkeys, boxes, data);
    else if (blocks == 6)
        TransformAtOnce<direction, 6>(subkeys, boxes, data);
    else
        TransformGroups<direction, 4>(subkeys, boxes, data, blocks);
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
