#include "support/iff_builder.h"
#include "tools/variants/variants.h"

#include <algorithm>

namespace {

// Plane rows, raw or packed.
Bytes Rows(Dice& dice, const Size& size, u32 nPlanes, u32 nColours, bool bPacked) {
    const u32 rowSize = (size.width + 7) / 8;
    std::vector<u32> values = DrawValues(dice, size);
    for (u32& value : values) value %= nColours;
    // Of more planes than a value has bits only the size matters.
    Bytes rows = PlanesOf(values, size.width, std::min(nPlanes, 32u));
    rows.resize(u64{rowSize} * nPlanes * size.height);
    if (!bPacked) return rows;
    // Some writers let their runs pass the ends of the rows.
    return ByteRun(rows, dice.OneIn(4) ? rowSize * std::max(nPlanes, 1u) * size.height : rowSize);
}

class Drawing {
  public:
    explicit Drawing(Dice& dice) : m_dice(dice), m_size(dice) {}

    // A chunk of the picture by its letter; any other letter gives one that needs no picture.
    Bytes Part(char letter) {
        if (letter == 'H') return Header();
        if (letter == 'M') return Chunk("CMAP", Noise({m_nColours * 3, m_nColours * 3 + 2}));
        if (letter == 'G') return GreyCmap(m_nColours, 3);
        if (letter == 'A') return Alpha();
        if (letter == 'B') return Chunk("BODY", Rows(m_dice, m_size, m_nPlanes, m_nColours, m_bPacked));
        if (letter == 'S') return Blocks();
        // After the four zero bytes of a null id stands another id.
        return m_dice.OneOf<Bytes>({Chunk("GRAB", Noise({3, 4, 4, 5})), Chunk("TRAN", Noise({7, 8, 8, 9})),
                                    Chunk("CONT", Noise({2})), Chunk("ANNO", Noise({0, 1, 12})),
                                    ByteBuilder().U32(0).Append(Header()), ByteBuilder().U32(0, 0, 4, 7)});
    }

    Parts Chunks(std::string_view letters) {
        Parts parts;
        for (const char letter : letters) parts.push_back(Part(letter));
        return parts;
    }

    Bytes Picture() {
        const auto letters = m_dice.OneOf<std::string_view>(
            {"HMB", "HGB", "HGB", "H-GB", "HGAB", "HMA-B-", "-HAGB", "HS", "-S", "HGS", "HSB", "HGSB", "HB",
             "MHB", "HBM", "BHGA", "HGBHAB", "HAAGMB", "H---G----A-MB---GB"});
        return Form("ILBM", Chunks(letters));
    }

  private:
    Bytes Noise(std::initializer_list<u32> sizes) { return m_dice.SomeBytes(m_dice.OneOf(sizes)); }

    Bytes Header() {
        // A compression that nobody has heard of is unpacked like the known one.
        return Bmhd(
            {m_size.width, m_size.height, m_nPlanes, m_dice.Below(4), m_bPacked ? m_dice.Between(1, 2) : 0});
    }

    Bytes Alpha() {
        const Size size = m_dice.OneIn(4) ? Size(m_dice) : m_size;
        const u32 planes = m_dice.OneOf<u32>({0, 1, 4, 8, 8, 16});
        return Alph({size.width, size.height, planes, m_bPacked, Rows(m_dice, size, planes, 256, m_bPacked)});
    }

    Bytes Blocks() {
        const char* const code = m_dice.OneOf({"DXT1", "DXT1", "DXT2", "DXT3", "DXT4", "DXT5", "DXT6"});
        const u32 size = (m_size.width + 3) / 4 * ((m_size.height + 3) / 4) * (code[3] == '1' ? 8 : 16);
        const u32 claimed = size + m_dice.OneOf({0, 0, 0, 0, 0, 1, -1});
        return S3tc(
            {code, m_size.width, m_size.height, Noise({size, size, size, size + 1, size - 1}), claimed});
    }

    Dice& m_dice;
    const Size m_size;
    const u32 m_nPlanes = m_dice.OneIn(4) ? m_dice.OneOf<u32>({0, 9, 16, 24, 32, 33}) : m_dice.Between(1, 8);
    const u32 m_nColours = m_dice.OneIn(8) ? m_dice.Between(1, 300) : 1u << std::min(m_nPlanes, 8u);
    const bool m_bPacked = m_dice.OneIn(2);
};

// Pictures that have their colours, and most of them their header, from a PROP.
Bytes Sharing(Dice& dice) {
    using namespace std::literals;
    Drawing drawing(dice);
    Parts parts = {Prop("ILBM", drawing.Chunks("-HG"))};
    for (u32 count = dice.OneIn(6) ? 12 : dice.Between(1, 3); count > 0; --count) {
        const Parts chunks =
            drawing.Chunks(dice.OneOf({"B"sv, "B"sv, "AB"sv, "HB"sv, "-B"sv, "MB"sv, "S"sv}));
        const auto type = dice.OneOf({"ILBM"sv, "ILBM"sv, "ILBM"sv, "ANIM"sv, "\0\0\0\0"sv});
        const u32 kind = dice.Below(6);
        parts.push_back(kind < 3   ? Form(type, chunks)
                        : kind < 5 ? List(type, {Form("ILBM", chunks)})
                                   : Prop(type, drawing.Chunks("HM")));
    }
    return List("ILBM", parts);
}

Bytes MipMaps(Dice& dice) {
    const u32 levels = dice.Below(4);
    Parts parts = {Drawing(dice).Picture(), Form("MIPM", {Chunk("CONT", ByteBuilder().U8(levels, 7))})};
    for (u32 level = 0; level < levels; ++level) parts.push_back(List("ILBM", {Drawing(dice).Picture()}));
    return dice.OneIn(4) ? Cat("ILBM", parts) : List("ILBM", parts);
}

Bytes Tree(Dice& dice, u32 nDepth) {
    Parts parts;
    for (u32 count = dice.Below(4); count > 0; --count) {
        if (nDepth > 0 && dice.OneIn(2)) parts.push_back(Tree(dice, nDepth - 1));
        parts.push_back(dice.OneIn(2) ? Sharing(dice) : Drawing(dice).Part(dice.OneOf({'-', 'H', 'G', 'B'})));
    }
    const char* const id = dice.OneOf({"FORM", "LIST", "CAT ", "PROP"});
    return Container(id, dice.OneOf({"ILBM", "ILBM", "MIPM", "ANIM"}), parts);
}

}  // namespace

Bytes IffVariant(Dice& dice) {
    if (dice.OneIn(300)) return Nested(dice.Between(4090, 4100), "LIST");
    const u32 kind = dice.Below(8);
    if (kind < 4) return Drawing(dice).Picture();
    return kind < 6 ? Sharing(dice) : kind == 6 ? MipMaps(dice) : Tree(dice, 3);
}
