// Written here: none of the libraries that the program may use header-only has it.
#include <mrl/Sha256.h>

#include <array>
#include <bit>
#include <cstdint>

namespace mrl {

namespace {

using Word = std::uint32_t;

constexpr std::size_t BLOCK = 64;
constexpr std::size_t ROUNDS = 64;

// FIPS 180-4, 4.2.2: the fractions of the cube roots of the first 64 primes.
constexpr std::array<Word, ROUNDS> CONSTANTS = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

// 5.3.3: the fractions of the square roots of the first eight.
using State = std::array<Word, 8>;
constexpr State BEGINNING = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                             0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

// 6.2.2, step 1.
std::array<Word, ROUNDS> scheduleOf(std::string_view block) {
    std::array<Word, ROUNDS> words{};
    for (std::size_t i = 0; i < BLOCK; ++i) {
        words[i / 4] = words[i / 4] << 8U | static_cast<unsigned char>(block[i]);
    }
    for (std::size_t t = BLOCK / 4; t < ROUNDS; ++t) {
        const Word a = words[t - 15];
        const Word b = words[t - 2];
        words[t] = words[t - 16] + words[t - 7] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ a >> 3U) +
                   (std::rotr(b, 17) ^ std::rotr(b, 19) ^ b >> 10U);
    }
    return words;
}

// 6.2.2, steps 2 to 4.
void add(std::string_view block, State& state) {
    const std::array<Word, ROUNDS> words = scheduleOf(block);
    auto [a, b, c, d, e, f, g, h] = state;
    for (std::size_t t = 0; t < ROUNDS; ++t) {
        const Word first = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) +
                           ((e & f) ^ (~e & g)) + CONSTANTS[t] + words[t];
        const Word second =
            (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const State added = {a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < state.size(); ++i) {
        state[i] += added[i];
    }
}

// 5.1.1: what follows the last whole block, a one bit, zeros, and the length in bits.
std::string padded(std::string_view rest, std::uint64_t length) {
    std::string text(rest);
    text += '\x80';
    text.resize((text.size() + sizeof length + BLOCK - 1) / BLOCK * BLOCK - sizeof length);
    for (std::size_t i = sizeof length; i-- > 0;) {
        text += static_cast<char>(length * 8 >> 8 * i & 0xFFU);
    }
    return text;
}

} // namespace

std::string sha256Of(std::string_view bytes) {
    State state = BEGINNING;
    const std::uint64_t length = bytes.size();
    for (; bytes.size() >= BLOCK; bytes.remove_prefix(BLOCK)) {
        add(bytes.substr(0, BLOCK), state);
    }
    const std::string end = padded(bytes, length);
    for (std::string_view rest = end; !rest.empty(); rest.remove_prefix(BLOCK)) {
        add(rest.substr(0, BLOCK), state);
    }
    constexpr std::string_view DIGITS = "0123456789abcdef";
    std::string text;
    for (const Word word : state) {
        for (int shift = 28; shift >= 0; shift -= 4) {
            text += DIGITS[word >> static_cast<unsigned>(shift) & 0x0FU];
        }
    }
    return text;
}

} // namespace mrl
