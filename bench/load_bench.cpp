// From asking for a file to holding its bitmap, for each kind of picture, 4096 x 4096 unless it says
// otherwise. The files are made in the temporary folder, stand in the system's cache and are removed at the
// end.
//
// usage: load_bench [GOOGLE_BENCHMARK_FLAGS]    warm: the memory is there already
//        load_bench --fresh                     the first load of a process, for each kind: median of 7, CPU
//        time

#include "base/large_block.h"
#include "chunks/register_chunks.h"
#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "framework/core/archive.h"
#include "framework/core/regular_file.h"
#include "photograph.h"
#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "support/random.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr u32 SIDE = 4096;

Bytes PackedPhotograph() {
    Photograph photograph(SIDE);
    PacketCounts packets;
    std::vector<Bytes> rows;
    for (u32 y = 0; y < 3 * SIDE; ++y)
        rows.push_back(PackRow(photograph.NextRow(y / SIDE, y % SIDE), packets));
    return PackedData(rows);
}

// Long runs, as a drawing has.
Bytes PackedDrawing() {
    PacketCounts packets;
    std::vector<Bytes> rows;
    for (u32 y = 0; y < 3 * SIDE; ++y) {
        Row row(SIDE);
        for (u32 x = 0; x < SIDE; ++x) row[x] = static_cast<u8>(x / 48 + y / 32);
        rows.push_back(PackRow(row, packets));
    }
    return PackedData(rows);
}

// The bit-planes of a photograph's first channel.
Bytes PlanesOfPhotograph() {
    Photograph photograph(SIDE);
    std::vector<u32> values;
    for (u32 y = 0; y < SIDE; ++y) {
        const Row row = photograph.NextRow(0, y);
        values.insert(values.end(), row.begin(), row.end());
    }
    return PlanesOf(values, SIDE, 8);
}

Bytes Raw(u32 nChannels, u32 nDepth, u32 nMode, u32 nSide = SIDE) {
    const u64 size = u64{nChannels} * nSide * nSide * nDepth / 8;
    return Psd({.channels = nChannels,
                .rows = nSide,
                .columns = nSide,
                .depth = nDepth,
                .mode = nMode,
                .samples = Random(2).SomeBytes(static_cast<u32>(size))});
}

Bytes Packed(const Bytes& data) {
    return Psd({.channels = 3,
                .rows = SIDE,
                .columns = SIDE,
                .mode = PSD_RGB,
                .compression = 1,
                .samples = Bytes(data.begin() + 2, data.end())});
}

Bytes Ilbm(bool bPacked) {
    const Bytes rows = bPacked ? PlanesOfPhotograph() : Random(3).SomeBytes(SIDE * SIDE);
    return Form("ILBM", {Bmhd({.width = SIDE, .height = SIDE, .planes = 8, .compression = bPacked}),
                         GreyCmap(256), Chunk("BODY", bPacked ? ByteRun(rows, SIDE / 8) : rows)});
}

Bytes Blocks() {
    return Form("ILBM", {S3tc({.code = "DXT1",
                               .width = SIDE,
                               .height = SIDE,
                               .data = Random(4).SomeBytes(SIDE / 4 * (SIDE / 4) * 8)})});
}

struct Workload {
    const char* pszName;
    std::function<Bytes()> make;
};

const std::vector<Workload>& Workloads() {
    static const std::vector<Workload> workloads = {
        {"psd-rgb8-raw", [] { return Raw(3, 8, PSD_RGB); }},
        {"psd-rgb8-packbits-photo", [] { return Packed(PackedPhotograph()); }},
        {"psd-rgb8-packbits-drawing", [] { return Packed(PackedDrawing()); }},
        {"psd-rgb16-raw", [] { return Raw(3, 16, PSD_RGB); }},
        {"psd-cmyk8-raw", [] { return Raw(4, 8, PSD_CMYK); }},
        {"psd-bitmap-8192", [] { return Raw(1, 1, PSD_BITMAP, 8192); }},
        {"ilbm8-raw", [] { return Ilbm(false); }},
        {"ilbm8-byterun1", [] { return Ilbm(true); }},
        {"dxt1", Blocks},
    };
    return workloads;
}

class File {
  public:
    explicit File(const Workload& workload)
        : m_path(std::filesystem::temp_directory_path() / (workload.pszName + std::to_string(getpid()))) {
        const Bytes bytes = workload.make();
        std::ofstream(m_path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { std::filesystem::remove(m_path); }

    std::string Path() const { return m_path.string(); }

  private:
    std::filesystem::path m_path;
};

void LoadAndBuild(const std::string& strPath) {
    CRegularFile file(strPath);
    CArchive archive(&file, CArchive::load);
    CVistrelDoc document;
    document.Serialize(archive);
    DisplayImage image;
    image.ChooseLayer(document, 0);
    image.BuildBitmap(document, {0, 0});
    if (!image.m_hBitmap) std::abort();
    benchmark::DoNotOptimize(image.m_hBitmap);
}

void Warm(benchmark::State& state, const Workload& workload) {
    const CVistrelDoc open;  // as long as one is, freed memory is kept
    const File file(workload);
    for (auto _ : state) LoadAndBuild(file.Path());
}

double CpuMilliseconds() {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// In a process of its own, which has had no memory before.
double Fresh(const std::string& strPath) {
    int ends[2] = {};
    if (pipe(ends) != 0) std::abort();
    if (fork() == 0) {
        const double start = CpuMilliseconds();
        LoadAndBuild(strPath);
        const double taken = CpuMilliseconds() - start;
        _exit(write(ends[1], &taken, sizeof(taken)) == sizeof(taken) ? 0 : 1);
    }
    double taken = 0;
    if (read(ends[0], &taken, sizeof(taken)) != sizeof(taken)) std::abort();
    wait(nullptr);
    close(ends[0]);
    close(ends[1]);
    return taken;
}

void PrintFresh() {
    constexpr size_t RUNS = 7;
    for (const Workload& workload : Workloads()) {
        const File file(workload);
        LargeBlock::ReleaseKept();
        std::vector<double> times;
        while (times.size() < RUNS) times.push_back(Fresh(file.Path()));
        std::nth_element(times.begin(), times.begin() + RUNS / 2, times.end());
        std::printf("%-26s %7.1f ms\n", workload.pszName, times[RUNS / 2]);
        std::fflush(stdout);
    }
}

}  // namespace

int main(int argc, char** argv) {
    RegisterChunks();
    if (argc == 2 && std::string_view(argv[1]) == "--fresh") {
        PrintFresh();
        return 0;
    }
    for (const Workload& workload : Workloads())
        benchmark::RegisterBenchmark(workload.pszName, [&workload](benchmark::State& state) {
            Warm(state, workload);
        })->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
