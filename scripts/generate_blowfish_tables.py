#!/usr/bin/env python3
"""Writes Blowfish's initial tables, the first digits of pi's fraction, as C++ source.

    generate_blowfish_tables.py            prints the source
    generate_blowfish_tables.py --check F  exits with 1 unless F holds exactly that
"""
import sys

SUBKEYS, BOXES, BOX_SIZE = 18, 4, 256
WORDS = SUBKEYS + BOXES * BOX_SIZE
WORDS_PER_LINE = 8


def inverse_tangent_of_inverse(denominator, one):
    """arctan(1 / denominator) in units of 1 / one, by its Taylor series."""
    power = one // denominator
    total, n, sign = power, 1, 1
    while power:
        power //= denominator * denominator
        n, sign = n + 2, -sign
        total += sign * (power // n)
    return total


def pi_words(count):
    """The fraction of pi as big-endian 32-bit words, by Machin's formula."""
    guard_bits = 64  # each of the series' 7,200 terms is cut off by less than one unit
    bits = 32 * count
    one = 1 << (bits + guard_bits)
    pi = 4 * (4 * inverse_tangent_of_inverse(5, one) - inverse_tangent_of_inverse(239, one))
    fraction = (pi - 3 * one) >> guard_bits
    return [fraction >> (bits - 32 * (i + 1)) & 0xFFFFFFFF for i in range(count)]


def rows(words, indent):
    for i in range(0, len(words), WORDS_PER_LINE):
        yield indent + ", ".join(f"0x{word:08X}" for word in words[i:i + WORDS_PER_LINE]) + ","


def source():
    words = pi_words(WORDS)
    boxes = [words[i:i + BOX_SIZE] for i in range(SUBKEYS, WORDS, BOX_SIZE)]
    yield "// Generated: scripts/generate_blowfish_tables.py > src/crypto/blowfish_tables.cpp"
    yield '#include "crypto/blowfish_tables.h"'
    yield ""
    yield "namespace CommonAPI::internal {"
    yield ""
    yield "// clang-format off"
    yield "BlowfishSubkeys const initialBlowfishSubkeys = {"
    yield from rows(words[:SUBKEYS], "    ")
    yield "};"
    yield ""
    yield "BlowfishBoxes const initialBlowfishBoxes = {"
    for box in boxes:
        yield "    {"
        yield from rows(box, "    ")
        yield "    },"
    yield "};"
    yield "// clang-format on"
    yield ""
    yield "}  // namespace CommonAPI::internal"


def main(arguments):
    text = "\n".join(source()) + "\n"
    if not arguments:
        sys.stdout.write(text)
        return 0
    if len(arguments) != 2 or arguments[0] != "--check":
        sys.exit(__doc__)
    with open(arguments[1], encoding="ascii") as file:
        return int(file.read() != text)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
