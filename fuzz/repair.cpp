#include "fuzz/repair.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace {

// Big-endian numbers of a file. None reaches beyond its end: those that would are 0, and not written.
struct Fields {
    bool Holds(u64 nAt, u64 nCount) const { return nAt <= file.size() && nCount <= file.size() - nAt; }
    bool Is(u64 nAt, std::string_view text) const {
        return Holds(nAt, text.size()) &&
               std::equal(text.begin(), text.end(), file.begin() + static_cast<i64>(nAt));
    }
    u64 Get(u64 nAt, u32 nBytes) const {
        u64 value = 0;
        for (u32 i = 0; i < nBytes && Holds(nAt, nBytes); ++i) value = value << 8 | file[nAt + i];
        return value;
    }
    void Set(u64 nAt, u32 nBytes, u64 nValue) {
        for (u32 i = 0; i < nBytes && Holds(nAt, nBytes); ++i)
            file[nAt + i] = static_cast<u8>(nValue >> 8 * (nBytes - 1 - i));
    }

    Bytes& file;
};

constexpr u32 ID_SIZE = 4;
constexpr u32 SIZE_SIZE = 4;
constexpr u32 CHUNK_HEADER = ID_SIZE + SIZE_SIZE;
constexpr u32 BLOCKS_HEADER = 22;  // its last field is the size of the blocks
constexpr u32 DEEPEST = 200;       // containers that are looked into

bool IsContainer(const Fields& fields, u64 nAt) {
    for (const std::string_view id : {"FORM", "LIST", "CAT ", "PROP"})
        if (fields.Is(nAt, id)) return true;
    return false;
}

// The container at a place, which ends with nEnd.
void RepairContainer(Fields& fields, u64 nAt, u64 nEnd, u32 nDepth) {
    fields.Set(nAt + ID_SIZE, SIZE_SIZE, nEnd - nAt - CHUNK_HEADER);
    u64 child = nAt + CHUNK_HEADER + ID_SIZE;
    while (child + CHUNK_HEADER <= nEnd) {
        const u64 start = child + CHUNK_HEADER;
        u64 size = std::min(fields.Get(child + ID_SIZE, SIZE_SIZE), nEnd - start);
        // What is left is too little for another chunk.
        if (nEnd - start - size < CHUNK_HEADER && size % 2 + size != nEnd - start) size = nEnd - start;
        fields.Set(child + ID_SIZE, SIZE_SIZE, size);
        if (IsContainer(fields, child) && size >= ID_SIZE && nDepth < DEEPEST)
            RepairContainer(fields, child, start + size, nDepth + 1);
        if (fields.Is(child, "S3TC") && size >= BLOCKS_HEADER)
            fields.Set(start + BLOCKS_HEADER - SIZE_SIZE, SIZE_SIZE, size - BLOCKS_HEADER);
        child = start + size + size % 2;
    }
}

constexpr u64 PSD_HEADER = 26;
constexpr u32 RECT_SIZE = 16;
constexpr u32 BLEND_SIZE = 12;  // signature, key, four bytes

// Each step takes where a section starts and returns where it ends.

u64 RepairLength(Fields& fields, u64 nAt) {
    const u64 start = nAt + SIZE_SIZE;
    const u64 room = fields.file.size() - std::min<u64>(start, fields.file.size());
    const u64 length = std::min(fields.Get(nAt, SIZE_SIZE), room);
    fields.Set(nAt, SIZE_SIZE, length);
    return start + length;
}

u64 RepairResources(Fields& fields, u64 nAt) {
    u64 end = nAt + SIZE_SIZE;
    while (fields.Is(end, "8BIM")) {
        const u64 nameAt = end + ID_SIZE + 2;
        const u64 name = fields.Get(nameAt, 1) + 1;
        const u64 next = RepairLength(fields, nameAt + name + name % 2);
        end = next + next % 2;
    }
    if (end == nAt + SIZE_SIZE) return RepairLength(fields, nAt);
    fields.Set(nAt, SIZE_SIZE, end - nAt - SIZE_SIZE);
    return end;
}

// Layer records, and the data of their channels after all of them.
u64 RepairLayers(Fields& fields, u64 nAt, u32 nLengthSize) {
    const u64 layers = static_cast<u64>(std::abs(static_cast<i16>(fields.Get(nAt, 2))));
    std::vector<u64> lengthsAt;
    u64 end = nAt + 2;
    for (u64 layer = 0; layer < layers && fields.Holds(end, RECT_SIZE); ++layer) {
        const u64 channels = fields.Get(end + RECT_SIZE, 2);
        end += RECT_SIZE + 2;
        for (u64 channel = 0; channel < channels && fields.Holds(end, 2 + nLengthSize); ++channel) {
            lengthsAt.push_back(end + 2);
            end += 2 + nLengthSize;
        }
        end = RepairLength(fields, end + BLEND_SIZE);
    }
    for (const u64 at : lengthsAt) {
        const u64 room = fields.file.size() - std::min<u64>(end, fields.file.size());
        const u64 length = std::min(fields.Get(at, nLengthSize), room);
        fields.Set(at, nLengthSize, length);
        end += length;
    }
    return end;
}

void RepairPhotoshop(Fields& fields) {
    const u32 lengthSize = fields.Get(4, 2) == 2 ? 8 : 4;
    const u64 sectionAt = RepairResources(fields, RepairLength(fields, PSD_HEADER));
    const u64 layersAt = sectionAt + lengthSize;
    if (fields.Get(sectionAt, lengthSize) == 0) return;
    const u64 countAt = layersAt + lengthSize;
    u64 end = countAt;
    if (fields.Get(layersAt, lengthSize) != 0) {
        end = RepairLayers(fields, countAt, lengthSize);
        end += end % 2 != countAt % 2;
        fields.Set(layersAt, lengthSize, end - countAt);
    }
    end = RepairLength(fields, end);
    const u64 size = fields.file.size();
    if (end > size) return;
    // Longer sections have tagged blocks after these.
    const u64 section = fields.Get(sectionAt, lengthSize);
    if (section < end - layersAt || section > size - layersAt)
        fields.Set(sectionAt, lengthSize, end - layersAt);
}

}  // namespace

void RepairSizes(Bytes& file) {
    Fields fields = {file};
    if (fields.Is(0, "8BPS")) RepairPhotoshop(fields);
    if (IsContainer(fields, 0) && file.size() >= CHUNK_HEADER) RepairContainer(fields, 0, file.size(), 0);
}
