#include <immintrin.h>
#include <string.h>

#include "crypto/blowfish_kernel.h"

// 64 blocks at a time, in byte planes: plane p holds byte p, the lowest first, of 64 words. A table
// of 256 bytes fills four vectors, so 64 look-ups in it are two permutes and a blend on the index's
// top bit, and no address depends on the data. Additions carry from plane to plane through masks.
//
// Nothing here may be an inline function that other files use too: the linker keeps one copy of
// such a function, and it could be one that needs this file's instruction set.

namespace CommonAPI::internal {
namespace {

using Vector = __m512i;

constexpr int wordBytes = 4;
constexpr std::size_t groupBlocks = 64;
constexpr int groupBytes = 8 * groupBlocks;

struct alignas(64) BytePlanes {
    Vector boxes[4][wordBytes][4];
    /// Each byte of a subkey four times, to fill a vector with.
    std::uint32_t subkeys[18][wordBytes];
};

/// The halves of 64 * groups blocks.
template <int groups>
struct Halves {
    Vector planes[wordBytes][groups];
};

struct alignas(64) Indices {
    unsigned char of[64];
};

constexpr Indices EverySecond(int first) {
    Indices indices = {};
    for (int i = 0; i < 64; ++i)
        indices.of[i] = static_cast<unsigned char>(first + 2 * i);
    return indices;
}

constexpr Indices Alternating(int first) {
    Indices indices = {};
    for (int i = 0; i < 64; ++i)
        indices.of[i] = static_cast<unsigned char>(first + i / 2 + i % 2 * 64);
    return indices;
}

constexpr Indices evenBytes = EverySecond(0);
constexpr Indices oddBytes = EverySecond(1);
constexpr Indices lowerZipped = Alternating(0);
constexpr Indices upperZipped = Alternating(32);

Vector Pick(Indices const& indices, Vector a, Vector b) {
    return _mm512_permutex2var_epi8(a, _mm512_load_si512(indices.of), b);
}

/// Moves the even bytes of all vectors to the first half of them and the odd ones to the second, so
/// that as many times as it takes to halve a block down to bytes turn blocks into planes.
template <int count>
[[gnu::always_inline]] inline void Unzip(Vector (&vectors)[count]) {
    Vector unzipped[count];
    for (int i = 0; i < count / 2; ++i) {
        unzipped[i] = Pick(evenBytes, vectors[2 * i], vectors[2 * i + 1]);
        unzipped[i + count / 2] = Pick(oddBytes, vectors[2 * i], vectors[2 * i + 1]);
    }
    for (int i = 0; i < count; ++i)
        vectors[i] = unzipped[i];
}

/// The inverse.
template <int count>
[[gnu::always_inline]] inline void Zip(Vector (&vectors)[count]) {
    Vector zipped[count];
    for (int i = 0; i < count / 2; ++i) {
        zipped[2 * i] = Pick(lowerZipped, vectors[i], vectors[i + count / 2]);
        zipped[2 * i + 1] = Pick(upperZipped, vectors[i], vectors[i + count / 2]);
    }
    for (int i = 0; i < count; ++i)
        vectors[i] = zipped[i];
}

void SplitBox(std::uint32_t const (&box)[256], Vector (&planes)[wordBytes][4]) {
    Vector halves[16];  // wiped, where what would not fit in the registers could not be
    for (int i = 0; i < 8; ++i) {
        Vector const first = _mm512_loadu_si512(box + 32 * i);
        Vector const second = _mm512_loadu_si512(box + 32 * i + 16);
        halves[i] = Pick(evenBytes, first, second);
        halves[i + 8] = Pick(oddBytes, first, second);
    }
    for (int i = 0; i < 8; ++i) {
        planes[i / 4][i % 4] = Pick(evenBytes, halves[2 * i], halves[2 * i + 1]);
        planes[i / 4 + 2][i % 4] = Pick(oddBytes, halves[2 * i], halves[2 * i + 1]);
    }
    explicit_bzero(halves, sizeof halves);
}

template <bool decrypt>
void SplitTables(BlowfishSubkeys const& subkeys, BlowfishBoxes const& boxes, BytePlanes& tables) {
    for (int box = 0; box < 4; ++box)
        SplitBox(boxes[box], tables.boxes[box]);
    for (int i = 0; i < 18; ++i)
        for (int plane = 0; plane < wordBytes; ++plane)
            tables.subkeys[i][plane] =
                (subkeys[decrypt ? 17 - i : i] >> 8 * plane & 0xFF) * 0x01010101;
}

Vector Xor(Vector vector, std::uint32_t subkeyByte) {
    return _mm512_xor_si512(vector, _mm512_set1_epi32(static_cast<int>(subkeyByte)));
}

/// A vector of the tables, once for all groups. Left to themselves, compilers load it again for
/// each group, or keep copies of the tables on the stack: loads then take longer than the permutes.
Vector Load(Vector const& vector) {
    Vector loaded;
    asm volatile("vmovdqa64 %1, %0" : "=v"(loaded) : "m"(vector));
    return loaded;
}

/// A plane of all groups.
template <int groups>
struct Plane {
    Vector of[groups];
};

/// Looks all words of a half up in a box, a plane of it at a time.
template <int groups>
struct BoxLookUp {
    Vector const (&box)[wordBytes][4];
    Vector const (&indices)[groups];
    __mmask64 top[groups];

    [[gnu::always_inline]] BoxLookUp(BytePlanes const& tables, int number,
                                     Halves<groups> const& from)
        : box(tables.boxes[number]), indices(from.planes[3 - number]) {
        for (int group = 0; group < groups; ++group)
            top[group] = _mm512_movepi8_mask(indices[group]);
    }

    [[gnu::always_inline]] Plane<groups> operator()(int plane) const {
        Vector vectors[4];
        for (int i = 0; i < 4; ++i)
            vectors[i] = Load(box[plane][i]);
        Plane<groups> found;
        for (int group = 0; group < groups; ++group)
            found.of[group] = _mm512_mask_blend_epi8(
                top[group], _mm512_permutex2var_epi8(vectors[0], indices[group], vectors[1]),
                _mm512_permutex2var_epi8(vectors[2], indices[group], vectors[3]));
        return found;
    }
};

/// One plane of a sum; `carry` comes from the plane below and goes to the one above. Comparisons,
/// as a ternary operation that finds the carry competes with the permutes for operands.
Vector Add(int plane, Vector a, Vector b, __mmask64& carry) {
    Vector const ones = _mm512_set1_epi8(-1);
    Vector const sum = _mm512_add_epi8(a, b);
    __mmask64 const overflow = _mm512_cmplt_epu8_mask(sum, a);
    __mmask64 const carryIn = carry;
    carry = overflow;
    if (plane == 0)
        return sum;
    carry = _kor_mask64(overflow, _mm512_mask_cmpeq_epi8_mask(carryIn, sum, ones));
    return _mm512_mask_sub_epi8(sum, carryIn, sum, ones);
}

/// sum = box 0 + box 1; with look-ups of both boxes between them, carries are there in time.
template <int groups>
[[gnu::always_inline]] inline void AddFirstBoxes(BytePlanes const& tables,
                                                 Halves<groups> const& from, Halves<groups>& sum) {
    BoxLookUp const first(tables, 0, from);
    BoxLookUp const second(tables, 1, from);
    __mmask64 carry[groups] = {};
    for (int plane = 0; plane < wordBytes; ++plane) {
        Plane const a = first(plane);
        Plane const b = second(plane);
        for (int group = 0; group < groups; ++group)
            sum.planes[plane][group] = Add(plane, a.of[group], b.of[group], carry[group]);
    }
}

/// to ^= subkey ^ ((sum ^ box 2) + box 3)
template <int groups>
[[gnu::always_inline]] inline void AddLastBoxes(BytePlanes const& tables, int round,
                                                Halves<groups> const& from,
                                                Halves<groups> const& sum, Halves<groups>& to) {
    BoxLookUp const third(tables, 2, from);
    BoxLookUp const fourth(tables, 3, from);
    __mmask64 carry[groups] = {};
    for (int plane = 0; plane < wordBytes; ++plane) {
        Plane const a = third(plane);
        Plane const b = fourth(plane);
        for (int group = 0; group < groups; ++group) {
            Vector const x = _mm512_xor_si512(sum.planes[plane][group], a.of[group]);
            Vector& t = to.planes[plane][group];
            t = _mm512_xor_si512(Xor(t, tables.subkeys[round][plane]),
                                 Add(plane, x, b.of[group], carry[group]));
        }
    }
}

/// to ^= subkey ^ F(from), plane by plane; the groups share what is loaded of the tables.
template <int groups>
[[gnu::always_inline]] inline void Round(BytePlanes const* tables, int round,
                                         Halves<groups> const& from, Halves<groups>& to) {
    // Or all addresses would be computed before the loop, and spilled.
    asm volatile("" : "+r"(tables));
    Halves<groups> sum;
    AddFirstBoxes(*tables, from, sum);
    AddLastBoxes(*tables, round, from, sum, to);
}

template <int groups>
void TransformGroups(BytePlanes const& tables, unsigned char* data) {
    Halves<groups> left;
    Halves<groups> right;
    for (int group = 0; group < groups; ++group) {
        Vector block[8];
        for (int i = 0; i < 8; ++i)
            block[i] = _mm512_loadu_si512(data + groupBytes * group + 64 * i);
        Unzip(block);
        Unzip(block);
        Unzip(block);
        for (int plane = 0; plane < wordBytes; ++plane) {
            left.planes[plane][group] = Xor(block[3 - plane], tables.subkeys[0][plane]);
            right.planes[plane][group] = block[7 - plane];
        }
    }
    for (int round = 1; round <= 16; round += 2) {
        Round(&tables, round, left, right);
        Round(&tables, round + 1, right, left);
    }
    for (int group = 0; group < groups; ++group) {
        Vector block[8];
        for (int plane = 0; plane < wordBytes; ++plane) {
            block[3 - plane] = Xor(right.planes[plane][group], tables.subkeys[17][plane]);
            block[7 - plane] = left.planes[plane][group];
        }
        Zip(block);
        Zip(block);
        Zip(block);
        for (int i = 0; i < 8; ++i)
            _mm512_storeu_si512(data + groupBytes * group + 64 * i, block[i]);
    }
}

template <int groups>
void TransformAll(BytePlanes const& tables, unsigned char*& data, std::size_t& blocks) {
    for (; blocks >= groups * groupBlocks; blocks -= groups * groupBlocks) {
        TransformGroups<groups>(tables, data);
        data += groups * groupBytes;
    }
}

template <bool decrypt>
void TransformWholeGroups(BlowfishSubkeys const& subkeys, BlowfishBoxes const& boxes,
                          unsigned char*& data, std::size_t& blocks) {
    BytePlanes tables;
    SplitTables<decrypt>(subkeys, boxes, tables);
    TransformAll<2>(tables, data, blocks);
    TransformAll<1>(tables, data, blocks);
    explicit_bzero(&tables, sizeof tables);
}

}  // namespace

void EncryptBlowfishAvx512Vbmi(BlowfishSubkeys const& subkeys, BlowfishBoxes const& boxes,
                               unsigned char* data, std::size_t blocks) {
    if (blocks >= groupBlocks)
        TransformWholeGroups<false>(subkeys, boxes, data, blocks);
    EncryptBlowfishPortable(subkeys, boxes, data, blocks);
}

void DecryptBlowfishAvx512Vbmi(BlowfishSubkeys const& subkeys, BlowfishBoxes const& boxes,
                               unsigned char* data, std::size_t blocks) {
    if (blocks >= groupBlocks)
        TransformWholeGroups<true>(subkeys, boxes, data, blocks);
    DecryptBlowfishPortable(subkeys, boxes, data, blocks);
}

}  // namespace CommonAPI::internal
