#ifndef COMMONAPI_CRYPTO_BLOWFISH_ROUNDS_H
#define COMMONAPI_CRYPTO_BLOWFISH_ROUNDS_H

#include "crypto/blowfish_tables.h"

#include <cstddef>
#include <utility>

namespace CommonAPI::internal {

enum class BlowfishDirection { encrypt, decrypt };

/// Some blocks that go through the rounds together, so that one's look-ups hide another's latency.
template <std::size_t lanes>
struct BlowfishBlocks {
    std::uint32_t left[lanes];
    std::uint32_t right[lanes];
};

/// The entry at an index of which four times the value is given.
[[gnu::always_inline]] inline std::uint32_t BlowfishEntry(std::uint32_t const (&box)[256],
                                                          std::uint32_t offset) {
    return *reinterpret_cast<std::uint32_t const*>(reinterpret_cast<char const*>(box) + offset);
}

template <std::size_t lanes>
[[gnu::always_inline]] inline std::uint32_t BlowfishF(BlowfishBoxes const& boxes, std::uint32_t x) {
    // A block alone waits for the shortest chain, and processors add an unscaled offset to an
    // address a cycle sooner than a scaled one; many blocks want the fewest instructions.
    if constexpr (lanes == 1)
        return ((BlowfishEntry(boxes[0], x >> 22 & 0x3FC) +
                 BlowfishEntry(boxes[1], x >> 14 & 0x3FC)) ^
                BlowfishEntry(boxes[2], x >> 6 & 0x3FC)) +
               boxes[3][x & 0xFF];
    else
        return ((boxes[0][x >> 24] + boxes[1][x >> 16 & 0xFF]) ^ boxes[2][x >> 8 & 0xFF]) +
               boxes[3][x & 0xFF];
}

template <std::size_t... lane>
[[gnu::always_inline]] inline void BlowfishRound(std::uint32_t subkey, BlowfishBoxes const& boxes,
                                                 std::uint32_t const* from, std::uint32_t* to,
                                                 std::index_sequence<lane...>) {
    // The subkey first: it is known early, and the look-ups are what everything waits for.
    ((to[lane] = to[lane] ^ subkey ^ BlowfishF<sizeof...(lane)>(boxes, from[lane])), ...);
}

/// Written out, as compilers make a loop over few words into vectors that the rounds then wait for.
template <std::size_t... lane>
[[gnu::always_inline]] inline void XorEach(std::uint32_t* words, std::uint32_t subkey,
                                           std::index_sequence<lane...>) {
    ((words[lane] ^= subkey), ...);
}

template <BlowfishDirection direction, std::size_t lanes>
[[gnu::always_inline]] inline void BlowfishRounds(BlowfishSubkeys const& subkeys,
                                                  BlowfishBoxes const& boxes,
                                                  BlowfishBlocks<lanes>& blocks) {
    constexpr std::make_index_sequence<lanes> all;
    std::uint32_t* const left = blocks.left;
    std::uint32_t* const right = blocks.right;
    auto const subkey = [&](int step) {
        return subkeys[direction == BlowfishDirection::encrypt ? step : 17 - step];
    };
    XorEach(left, subkey(0), all);
    BlowfishRound(subkey(1), boxes, left, right, all);
    BlowfishRound(subkey(2), boxes, right, left, all);
    BlowfishRound(subkey(3), boxes, left, right, all);
    BlowfishRound(subkey(4), boxes, right, left, all);
    BlowfishRound(subkey(5), boxes, left, right, all);
    BlowfishRound(subkey(6), boxes, right, left, all);
    BlowfishRound(subkey(7), boxes, left, right, all);
    BlowfishRound(subkey(8), boxes, right, left, all);
    BlowfishRound(subkey(9), boxes, left, right, all);
    BlowfishRound(subkey(10), boxes, right, left, all);
    BlowfishRound(subkey(11), boxes, left, right, all);
    BlowfishRound(subkey(12), boxes, right, left, all);
    BlowfishRound(subkey(13), boxes, left, right, all);
    BlowfishRound(subkey(14), boxes, right, left, all);
    BlowfishRound(subkey(15), boxes, left, right, all);
    BlowfishRound(subkey(16), boxes, right, left, all);
    XorEach(right, subkey(17), all);
    std::swap(blocks.left, blocks.right);
}

}  // namespace CommonAPI::internal

#endif
