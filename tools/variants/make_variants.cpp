// Writes files like those that the readers meet, most of them damaged. The same seed gives the same files on
// every machine.

#include "tools/variants/variants.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

Size::Size(Dice& dice) {
    const u32 most = dice.OneIn(150) ? 150 : dice.OneIn(8) ? 50 : 18;
    width = dice.Between(1, most);
    height = dice.Between(1, most);
}

std::vector<u32> DrawValues(Dice& dice, const Size& size) {
    const u32 kind = dice.Below(4), a = dice.Between(1, 40), b = dice();
    std::vector<u32> values;
    for (u32 i = 0; i < size.width * size.height; ++i) {
        const u32 x = i % size.width, y = i / size.width;
        const u32 disc = x * x + y * y < a * a ? b : b / 3;
        values.push_back(kind == 0   ? x * a + y
                         : kind == 1 ? (x / a + y / a) % 2 * b
                         : kind == 2 ? disc
                                     : dice());
    }
    return values;
}

namespace {

void Damage(Dice& dice, Bytes& file) {
    const u32 size = static_cast<u32>(file.size());
    if (size == 0) return;
    // Most fields stand ahead of most samples.
    const u32 at = dice.Below(std::min(size, dice.OneOf<u32>({32, 128, 512, size})));
    const u32 few = std::min(size - at, dice.Between(1, dice.OneOf<u32>({1, 4, 16})));
    const u32 kind = dice.Below(8);
    if (kind == 0) {
        file.erase(file.begin() + at, file.begin() + at + few);
    } else if (kind == 1) {
        file.insert(file.begin() + at, few, static_cast<u8>(dice()));
    } else if (kind == 2) {
        file.resize(dice.OneOf({at, size - few, dice.Below(size)}));
    } else {
        // The bits of a field of one, two or four bytes.
        const u32 end = at + std::min(size - at, dice.OneOf<u32>({1, 2, 4}));
        u32 value = 0;
        for (u32 i = at; i < end; ++i) value = value << 8 | file[i];
        const u32 near = dice.OneOf({value + 1, value - 1, value ^ 1u << dice.Below(8), dice()});
        const u32 far = dice.OneOf({0u, 1u, 2u, 0x7Fu, 0x80u, 0xFEu, 0xFFu, 0x7FFFu, 0x8000u, 0xFFFFu,
                                    0x01000000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu});
        value = dice.OneOf({near, far});
        for (u32 i = end; i > at; value >>= 8) file[--i] = static_cast<u8>(value);
    }
}

bool WriteVariant(const std::filesystem::path& folder, u32 nSeed, u32 nNumber) {
    Dice dice(nSeed * 1000003 + nNumber);
    const bool isPsd = dice.OneIn(2);
    Bytes bytes = isPsd ? PsdVariant(dice) : IffVariant(dice);
    for (u32 hits = dice.OneOf({0, 0, 1, 1, 2, 3}); hits > 0; --hits) Damage(dice, bytes);

    char name[40];
    std::snprintf(name, sizeof(name), "%u/%06u.%s", nNumber / 1000, nNumber, isPsd ? "psd" : "iff");
    std::filesystem::create_directories((folder / name).parent_path());
    std::ofstream file(folder / name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) std::fprintf(stderr, "%s cannot be written\n", name);
    return file.good();
}

}  // namespace

int main(int argc, char** argv) {
    const auto number = [&](int nPlace) { return static_cast<u32>(std::strtoul(argv[nPlace], nullptr, 10)); };
    if (argc < 3 || argc > 4) {
        std::fprintf(stderr,
                     "usage: make_variants FOLDER COUNT [SEED]\n\n"
                     "Writes FOLDER/0/000000.iff or .psd and so on, a thousand files a folder.\n");
        return 2;
    }
    const u32 count = number(2), seed = argc == 4 ? number(3) : 1;
    for (u32 i = 0; i < count; ++i)
        if (!WriteVariant(argv[1], seed, i)) return 1;
    return 0;
}
