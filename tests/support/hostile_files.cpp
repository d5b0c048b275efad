#include "support/hostile_files.h"

#include "support/iff_builder.h"
#include "support/psd_builder.h"

namespace {

constexpr u32 MANY = 1 << 20;

Bytes Times(u32 nCount, const Bytes& part) {
    ByteBuilder parts;
    parts.reserve(nCount * part.size());
    for (u32 i = 0; i < nCount; ++i) parts.Append(part);
    return parts;
}

Bytes Picture(const Parts& parts) {
    Parts all = {Bmhd({.width = 8, .height = 1}), GreyCmap(2)};
    all.insert(all.end(), parts.begin(), parts.end());
    return Form("ILBM", all);
}

Bytes Properties(u32 nCount) {
    const Bytes prop = Prop("ILBM", {Bmhd({.width = 8, .height = 1})});
    const Bytes form = Form("ILBM", {Body({1})});
    return List("ILBM", {Times(nCount / 2, prop), Times(nCount / 2, form)});
}

Bytes LevelsAmongSiblings(u32 nCount) {
    const Bytes levels = Form("MIPM", {Chunk("CONT", {255, 0})});
    return List("ILBM", {levels, Times(nCount, Chunk("JUNK", {})), Times(255, List("ILBM", {}))});
}

Bytes Resources(u32 nCount) { return Psd({.resources = std::vector<PsdResourceFields>(nCount)}); }

Bytes Names(u32 nCount) {
    return Psd({.channels = 2, .resources = {{.id = PSD_RESOURCE_ALPHA_NAMES, .data = Bytes(nCount)}}});
}

Bytes Layers(u32 nCount) { return Psd({.layers = std::vector<PsdLayerFields>(nCount)}); }

Bytes Channels(u32 nCount) {
    return Psd({.layers = {{.channels = std::vector<PsdChannelFields>(nCount, {.data = RawData({7})})}}});
}

Bytes Chunks(u32 nCount) { return Picture({Times(nCount, Chunk("JUNK", {})), Body({1})}); }

Bytes Bodies(u32 nCount) { return Picture({Times(nCount, Body({}))}); }

}  // namespace

const std::vector<HostileFile>& HostileFiles() {
    static const std::vector<HostileFile> files = {
        {"chunks", Chunks, MANY, true},
        {"bodies", Bodies, MANY, false},
        {"properties", Properties, MANY, false},
        {"siblings-of-levels", LevelsAmongSiblings, MANY, false},
        {"resources", Resources, MANY, true},
        {"names", Names, MANY, true},
        {"layers", Layers, 32767, true},
        {"channels-of-a-layer", Channels, 65535, true},
    };
    return files;
}
