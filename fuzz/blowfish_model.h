#pragma once

#include <cstring>
#include <string>
#include <utility>

#include "crypto/blowfish_tables.h"

/// The cipher as it was published, with the library's tables of constants.
struct BlowfishModel {
    using Word = std::uint32_t;

    CommonAPI::internal::BlowfishSubkeys subkeys;
    CommonAPI::internal::BlowfishBoxes boxes;

    /// An empty key leaves the tables as they were published.
    explicit BlowfishModel(std::string const& key) {
        std::memcpy(subkeys, CommonAPI::internal::initialBlowfishSubkeys, sizeof subkeys);
        std::memcpy(boxes, CommonAPI::internal::initialBlowfishBoxes, sizeof boxes);
        if (!key.empty())
            schedule(key);
    }

    Word f(Word x) const {
        Word const sum = boxes[0][x >> 24] + boxes[1][x >> 16 & 0xFF];
        return (sum ^ boxes[2][x >> 8 & 0xFF]) + boxes[3][x & 0xFF];
    }

    void transform(Word& left, Word& right, bool encrypt) const {
        for (int round = 0; round < 16; ++round) {
            left ^= subkeys[encrypt ? round : 17 - round];
            right ^= f(left);
            std::swap(left, right);
        }
        std::swap(left, right);
        right ^= subkeys[encrypt ? 16 : 1];
        left ^= subkeys[encrypt ? 17 : 0];
    }

    void schedule(std::string const& key) {
        for (std::size_t i = 0; i < 4 * 18; ++i) {
            Word const byte = static_cast<unsigned char>(key[i % key.size()]);
            subkeys[i / 4] ^= byte << (24 - 8 * (i % 4));
        }
        Word left = 0;
        Word right = 0;
        auto const fill = [&](Word* words, int count) {
            for (int i = 0; i < count; i += 2) {
                transform(left, right, true);
                words[i] = left;
                words[i + 1] = right;
            }
        };
        fill(subkeys, 18);
        fill(boxes[0], 4 * 256);
    }

    /// All whole blocks from a position on.
    std::string transformed(std::string data, bool encrypt, std::size_t from = 0) const {
        for (; from + 8 <= data.size(); from += 8) {
            Word words[2] = {};
            for (int i = 0; i < 8; ++i)
                words[i / 4] = words[i / 4] << 8 | static_cast<unsigned char>(data[from + i]);
            transform(words[0], words[1], encrypt);
            for (int i = 0; i < 8; ++i)
                data[from + i] = static_cast<char>(words[i / 4] >> (24 - 8 * (i % 4)));
        }
        return data;
    }
};
