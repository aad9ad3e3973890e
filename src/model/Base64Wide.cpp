// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/Base64Wide.h"

#if defined(__x86_64__)

#include <immintrin.h>

#define QUILLABRAE_AVX2 __attribute__((target("avx2")))

namespace quillabrae::model::base64 {
namespace {

// Three bytes a, b, c of a 32-bit lane arrive as b a c b; their four sextets leave in text order.
QUILLABRAE_AVX2 inline __m256i sextetsOf(__m256i bytes) {
    const __m256i order = _mm256_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10, 1, 0,
                                           2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10);
    const __m256i lanes = _mm256_shuffle_epi8(bytes, order);
    const __m256i odd = _mm256_mulhi_epu16(_mm256_and_si256(lanes, _mm256_set1_epi32(0x0fc0fc00)),
                                           _mm256_set1_epi32(0x04000040));
    const __m256i even = _mm256_mullo_epi16(_mm256_and_si256(lanes, _mm256_set1_epi32(0x003f03f0)),
                                            _mm256_set1_epi32(0x01000010));
    return _mm256_or_si256(odd, even);
}

// Each of the alphabet's five ranges is a constant distance from its sextets: reduce a sextet to
// the number of its range, look the distance up, add it.
QUILLABRAE_AVX2 inline __m256i lettersOf(__m256i sextets) {
    const __m256i distances =
        _mm256_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                         '0' - 52, '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0,
                         'a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                         '0' - 52, '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0);
    const __m256i upperCase = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), sextets);
    const __m256i range = _mm256_or_si256(_mm256_subs_epu8(sextets, _mm256_set1_epi8(51)),
                                          _mm256_and_si256(upperCase, _mm256_set1_epi8(13)));
    return _mm256_add_epi8(sextets, _mm256_shuffle_epi8(distances, range));
}

struct Sextets {
    __m256i values;
    bool valid;
};

// A letter is valid when the rows of its high and its low nibble share no fault bit. '/' alone
// shares its high nibble with letters at another distance.
QUILLABRAE_AVX2 inline Sextets sextetsOfLetters(__m256i letters) {
    const __m256i lowFaults =
        _mm256_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1a,
                         0x1b, 0x1b, 0x1b, 0x1a, 0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11,
                         0x11, 0x11, 0x13, 0x1a, 0x1b, 0x1b, 0x1b, 0x1a);
    const __m256i highFaults =
        _mm256_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10,
                         0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08,
                         0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10);
    const __m256i distances =
        _mm256_setr_epi8(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16, 19, 4,
                         -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);
    const __m256i slash = _mm256_set1_epi8(0x2f);
    const __m256i high = _mm256_and_si256(_mm256_srli_epi32(letters, 4), slash);
    const __m256i low = _mm256_and_si256(letters, slash);
    const __m256i isSlash = _mm256_cmpeq_epi8(letters, slash);
    const __m256i distance = _mm256_shuffle_epi8(distances, _mm256_add_epi8(isSlash, high));
    const bool valid = _mm256_testz_si256(_mm256_shuffle_epi8(lowFaults, low),
                                          _mm256_shuffle_epi8(highFaults, high)) != 0;
    return {_mm256_add_epi8(letters, distance), valid};
}

// 32 sextets to 24 bytes at the front of the register.
QUILLABRAE_AVX2 inline __m256i bytesOf(__m256i sextets) {
    const __m256i pairs = _mm256_maddubs_epi16(sextets, _mm256_set1_epi32(0x01400140));
    const __m256i triples = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
    const __m256i order = _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1,
                                           2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    const __m256i packed = _mm256_shuffle_epi8(triples, order);
    return _mm256_permutevar8x32_epi32(packed, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
}

QUILLABRAE_AVX2 std::size_t encodeAvx2(const std::uint8_t* in, std::size_t size, char* out) {
    std::size_t done = 0;
    // Two loads of 16 bytes, 12 apart, read four bytes past the 24 that they serve.
    for (; size - done >= 28; done += 24, out += 32) {
        const auto* from = reinterpret_cast<const __m128i*>(in + done);
        const auto* next = reinterpret_cast<const __m128i*>(in + done + 12);
        const __m256i bytes = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(from)),
                                                      _mm_loadu_si128(next), 1);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), lettersOf(sextetsOf(bytes)));
    }
    return done;
}

QUILLABRAE_AVX2 std::size_t decodeAvx2(const char* in, std::size_t size, std::uint8_t* out) {
    std::size_t done = 0;
    // A store of 32 bytes writes eight past the 24 that it means: 12 more characters cover them,
    // and padding never comes this far.
    for (; size - done >= 32 + 16; done += 32, out += 24) {
        const Sextets sextets =
            sextetsOfLetters(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + done)));
        if (!sextets.valid) break;
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), bytesOf(sextets.values));
    }
    return done;
}

} // namespace

bool hasWideLoops() {
    static const bool has = __builtin_cpu_supports("avx2") != 0;
    return has;
}

std::size_t encodeWide(std::span<const std::uint8_t> bytes, char* out) {
    return bytes.size() < 28 ? 0 : encodeAvx2(bytes.data(), bytes.size(), out);
}

std::size_t decodeWide(std::string_view text, std::uint8_t* out) {
    return text.size() < 48 ? 0 : decodeAvx2(text.data(), text.size(), out);
}

} // namespace quillabrae::model::base64

#else

namespace quillabrae::model::base64 {

bool hasWideLoops() {
    return false;
}

std::size_t encodeWide(std::span<const std::uint8_t>, char*) {
    return 0;
}

std::size_t decodeWide(std::string_view, std::uint8_t*) {
    return 0;
}

} // namespace quillabrae::model::base64

#endif
