// What a file of many small parts costs, accepted and refused: to load it, to fill the lists and to make the
// first picture. Each grows to the most that its format allows; the benchmark library fits the growth.
//
// peak_per_byte: the most memory that was had meanwhile, for each byte of the file.

#include "chunks/register_chunks.h"
#include "display/catalogue.h"
#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "support/iff_builder.h"
#include "support/memory_file.h"
#include "support/psd_builder.h"

#include <benchmark/benchmark.h>

#include <fstream>
#include <functional>
#include <malloc.h>
#include <string>
#include <vector>

namespace {

constexpr u32 LEAST = 1 << 12;
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
    const Bytes form = Form("ILBM", {Chunk("BODY", {1})});
    return List("ILBM", {Times(nCount / 2, prop), Times(nCount / 2, form)});
}

Bytes LevelsAmongSiblings(u32 nCount) {
    const Bytes levels = Form("MIPM", {Chunk("CONT", {255, 0})});
    return List("ILBM", {levels, Times(nCount, Chunk("JUNK", {})), Times(255, List("ILBM", {}))});
}

Bytes Resources(u32 nCount) {
    return Psd({.resources = std::vector<PsdResourceFields>(nCount)});
}

Bytes Names(u32 nCount) {
    return Psd({.channels = 2, .resources = {{.id = PSD_RESOURCE_ALPHA_NAMES, .data = Bytes(nCount)}}});
}

Bytes Layers(u32 nCount) {
    return Psd({.layers = std::vector<PsdLayerFields>(nCount)});
}

Bytes Channels(u32 nCount) {
    return Psd({.layers = {{.channels = std::vector<PsdChannelFields>(nCount, {.data = RawData({7})})}}});
}

struct Kind {
    const char* pszName;
    std::function<Bytes(u32)> make;
    u32 nMost;
};

const std::vector<Kind>& Kinds() {
    static const std::vector<Kind> kinds = {
        {"chunks",
         [](u32 n) {
             return Picture({Times(n, Chunk("JUNK", {})), Chunk("BODY", {1})});
         },
         MANY},
        {"bodies", [](u32 n) { return Picture({Times(n, Chunk("BODY", {}))}); }, MANY},
        {"properties", Properties, MANY},
        {"siblings-of-levels", LevelsAmongSiblings, MANY},
        {"resources", Resources, MANY},
        {"names", Names, MANY},
        {"layers", Layers, 32767},
        {"channels-of-a-layer", Channels, 65535},
    };
    return kinds;
}

void RestartPeakMemory() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
}

// Bytes, in one of the process's lines of memory.
double MemoryLine(const std::string& strName) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kibibytes = 0;
        if (word == strName && status >> kibibytes) return kibibytes * 1024;
    }
    return 0;
}

void Open(const Bytes& bytes) {
    MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    CVistrelDoc document;
    try {
        document.Serialize(archive);
    } catch (const CArchiveException&) {
        return;
    }
    benchmark::DoNotOptimize(LayerNames(document).size());
    DisplayImage image;
    image.ChooseLayer(document, 0);
    image.BuildBitmap(document, {0, 0});
}

void Run(benchmark::State& state, const Kind& kind, bool bCut) {
    const u32 count = static_cast<u32>(state.range(0));
    const Bytes bytes = Truncated(kind.make(count), bCut ? 1 : 0);
    RestartPeakMemory();
    const double before = MemoryLine("VmRSS:");
    for (auto _ : state) Open(bytes);
    const double size = static_cast<double>(bytes.size());
    state.counters["peak_per_byte"] = (MemoryLine("VmHWM:") - before) / size;
    state.counters["file_MB"] = size / 1e6;
    state.SetComplexityN(count);
}

}  // namespace

int main(int argc, char** argv) {
    RegisterChunks();
    for (const Kind& kind : Kinds())
        for (const bool cut : {false, true})
            benchmark::RegisterBenchmark(
                (std::string(kind.pszName) + (cut ? "/refused" : "/accepted")).c_str(),
                [&kind, cut](benchmark::State& state) { Run(state, kind, cut); })
                ->RangeMultiplier(4)
                ->Range(LEAST, kind.nMost)
                ->Complexity()
                ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
