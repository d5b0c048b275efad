#include "psd/tagged_blocks.h"

#include "psd/psd_reading.h"

#include <algorithm>
#include <array>

namespace {

constexpr u32 TAG_SIZE = 4;
constexpr u32 MOST_BETWEEN = 3;  // bytes from one block to the next

using Tag = std::array<u8, TAG_SIZE>;

std::string_view TextOf(const Tag& tag) {
    return {reinterpret_cast<const char*>(tag.data()), tag.size()};
}

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> texts) {
    return std::ranges::find(texts, text) != texts.end();
}

// In version 2 the lengths of what can be large have eight bytes.
bool IsLarge(std::string_view signature, std::string_view key) {
    return signature == "8B64" || IsOneOf(key, {"LMsk", "Lr16", "Lr32", "Layr", "Mt16", "Mt32", "Mtrn",
                                                "Alph", "FMsk", "lnk2", "FEid", "FXid", "PxSD"});
}

struct TaggedBlock {
    Tag key;
    LengthField length;
};

// The next block; the position is at its data then.
std::optional<TaggedBlock> NextBlock(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    const u32 start = stream.GetPosition();
    for (u32 between = 0; between <= MOST_BETWEEN; ++between) {
        stream.SetPosition(start + between);
        if (!reading.Holds(2 * TAG_SIZE)) return std::nullopt;
        Tag signature = {};
        stream.GetBytes(signature.data(), TAG_SIZE);
        if (!IsOneOf(TextOf(signature), {"8BIM", "8B64"})) continue;
        TaggedBlock block = {};
        stream.GetBytes(block.key.data(), TAG_SIZE);
        const bool large = IsLarge(TextOf(signature), TextOf(block.key));
        if (!reading.Holds(large ? reading.LargeLengthSize() : sizeof(u32))) return std::nullopt;
        block.length = large ? reading.ReadLargeLength() : reading.ReadLength();
        return block;
    }
    return std::nullopt;
}

constexpr char32_t REPLACEMENT = 0xFFFD;

constexpr bool IsHighHalf(char32_t nCode) {
    return nCode >= 0xD800 && nCode < 0xDC00;
}
constexpr bool IsLowHalf(char32_t nCode) {
    return nCode >= 0xDC00 && nCode < 0xE000;
}

void AppendUtf8(std::string& strText, char32_t nCode) {
    const auto put = [&](char32_t nByte) { strText += static_cast<char>(nByte); };
    const auto putTail = [&](u32 nBits) { put(0x80 | (nCode >> nBits & 0x3F)); };
    if (nCode < 0x80) {
        put(nCode);
    } else if (nCode < 0x800) {
        put(0xC0 | nCode >> 6);
        putTail(0);
    } else if (nCode < 0x10000) {
        put(0xE0 | nCode >> 12);
        putTail(6);
        putTail(0);
    } else {
        put(0xF0 | nCode >> 18);
        putTail(12);
        putTail(6);
        putTail(0);
    }
}

}  // namespace

std::optional<LengthField> FindTaggedBlock(PsdReading& reading,
                                           std::initializer_list<std::string_view> keys) {
    while (const auto block = NextBlock(reading)) {
        if (IsOneOf(TextOf(block->key), keys)) return block->length;
        if (!reading.Holds(block->length.nLength)) break;
        Skip(reading.Stream(), static_cast<u32>(block->length.nLength));
    }
    return std::nullopt;
}

std::string ReadUtf16(PsdReading& reading) {
    constexpr u64 UNIT_SIZE = 2;  // bytes
    std::string text;
    if (!reading.Holds(sizeof(u32))) return text;
    const u64 count = ReadU32(reading.Stream());
    if (!reading.Holds(count * UNIT_SIZE)) return text;
    char32_t high = 0;  // the half of a pair that waits for the other
    for (u64 i = 0; i < count; ++i) {
        const char32_t unit = ReadU16(reading.Stream());
        if (high != 0 && IsLowHalf(unit)) {
            AppendUtf8(text, 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
            high = 0;
            continue;
        }
        if (high != 0) AppendUtf8(text, REPLACEMENT);
        high = IsHighHalf(unit) ? unit : 0;
        if (unit == 0) return text;
        if (high == 0) AppendUtf8(text, IsLowHalf(unit) ? REPLACEMENT : unit);
    }
    if (high != 0) AppendUtf8(text, REPLACEMENT);
    return text;
}
