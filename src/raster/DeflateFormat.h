// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// What deflate (RFC 1951) has defined: symbols, their codes' lengths, and the classes of lengths
/// and distances.
namespace quillabrae::raster {

/// Symbols below are bytes; those above are classes of lengths of references.
constexpr std::size_t endOfBlockSymbol = 256;
constexpr std::size_t firstLengthSymbol = endOfBlockSymbol + 1;
constexpr std::size_t literalSymbolCount = 286;
constexpr std::size_t distanceSymbolCount = 30;

/// The fixed codes have two symbols more of each kind than mean anything.
constexpr std::size_t fixedLiteralSymbolCount = literalSymbolCount + 2;
constexpr std::size_t fixedDistanceSymbolCount = distanceSymbolCount + 2;

constexpr unsigned greatestPrefixLength = 15;

/// A block's header states the codes' lengths in a row, runs of them shortened, by symbols of a
/// third code, whose own lengths come in this order.
constexpr std::size_t lengthSymbolCount = 19;
constexpr std::array<std::uint8_t, lengthSymbolCount> lengthSymbolOrder = {
    16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};

constexpr std::size_t leastReference = 3;
constexpr std::size_t greatestReference = 258;
constexpr std::size_t greatestDistance = 32'768;

/// What a symbol for lengths or distances begins with, and how many bits say the rest.
struct ValueClass {
    std::uint16_t base;
    std::uint8_t extraBits;
};

/// Classes double in width after each `1 << fineBits` of them.
template <std::size_t count>
constexpr std::array<ValueClass, count> valueClasses(unsigned least, unsigned fineBits) {
    std::array<ValueClass, count> classes{};
    unsigned base = least;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned step = static_cast<unsigned>(i) >> fineBits;
        const unsigned extraBits = step > 1 ? step - 1 : 0;
        classes[i] = {static_cast<std::uint16_t>(base), static_cast<std::uint8_t>(extraBits)};
        base += 1U << extraBits;
    }
    return classes;
}

/// By symbol from `firstLengthSymbol` on.
constexpr auto lengthClasses = [] {
    auto classes = valueClasses<literalSymbolCount - firstLengthSymbol>(leastReference, 2);
    // The greatest has a class of its own.
    classes.back() = {greatestReference, 0};
    return classes;
}();
constexpr auto distanceClasses = valueClasses<distanceSymbolCount>(1, 1);

} // namespace quillabrae::raster
