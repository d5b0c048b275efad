// Loading large Photoshop documents: a raw one against a plain read of the same file, and the decoding of
// PackBits rows with photo-like content. The files are made in the temporary folder and removed at the end;
// after their first load they are in the system's cache.
#include "base/large_block.h"
#include "framework/core/archive.h"
#include "framework/core/regular_file.h"
#include "iff/archive_byte_stream.h"
#include "photograph.h"
#include "psd/psd_image.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr double MEBIBYTE = 1024.0 * 1024.0;

constexpr u32 CHANNELS = 3;
constexpr u32 RAW_SIDE = 8165;     // three channels of 200 MB together
constexpr u32 PACKED_SIDE = 4096;  // three channels of 50 MB together

void Put(Row& bytes, u32 nValue, u32 nCount) {
    while (nCount > 0) bytes.push_back(static_cast<u8>(nValue >> --nCount * 8));
}

// A document without palette, resources and layers, up to its composite's data.
Row FrontOf(u32 nSide, u32 nCompression) {
    Row bytes = {'8', 'B', 'P', 'S', 0, 1, 0, 0, 0, 0, 0, 0};
    Put(bytes, CHANNELS, 2);
    Put(bytes, nSide, 4);
    Put(bytes, nSide, 4);
    Put(bytes, 8, 2);
    Put(bytes, PSD_RGB, 2);
    bytes.insert(bytes.end(), 12, 0);
    Put(bytes, nCompression, 2);
    return bytes;
}

class TemporaryFile {
  public:
    explicit TemporaryFile(const char* pszName)
        : m_path(std::filesystem::temp_directory_path() / (pszName + std::to_string(getpid()))) {}
    ~TemporaryFile() { std::filesystem::remove(m_path); }

    std::string Path() const { return m_path.string(); }
    u64 Size() const { return std::filesystem::file_size(m_path); }

  private:
    std::filesystem::path m_path;
};

void Write(std::ofstream& file, const Row& bytes) {
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void MakeRawDocument(const TemporaryFile& file) {
    std::ofstream out(file.Path(), std::ios::binary);
    Write(out, FrontOf(RAW_SIDE, 0));
    Row row(RAW_SIDE);
    for (u32 y = 0; y < CHANNELS * RAW_SIDE; ++y) {
        for (u32 x = 0; x < RAW_SIDE; ++x) row[x] = static_cast<u8>(x ^ y);
        Write(out, row);
    }
}

PacketCounts MakePackedDocument(const TemporaryFile& file) {
    PacketCounts packets;
    Photograph photograph(PACKED_SIDE);
    Row counts;
    Row rows;
    for (u32 y = 0; y < CHANNELS * PACKED_SIDE; ++y) {
        const Row packed = PackRow(photograph.NextRow(y / PACKED_SIDE, y % PACKED_SIDE), packets);
        Put(counts, static_cast<u32>(packed.size()), 2);
        rows.insert(rows.end(), packed.begin(), packed.end());
    }
    std::ofstream out(file.Path(), std::ios::binary);
    Write(out, FrontOf(PACKED_SIDE, 1));
    Write(out, counts);
    Write(out, rows);
    return packets;
}

bool Load(PsdImage& image, const std::string& strPath) {
    CRegularFile file(strPath);
    CArchive archive(&file, CArchive::load);
    ArchiveByteStream stream(&archive, 1024);
    const bool loaded = image.LoadPsd(&stream);
    stream.Close();
    return loaded;
}

void RestartPeakMemory() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
}

// Bytes that the process has held at most since then.
double PeakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kibibytes = 0;
        if (word == "VmHWM:" && status >> kibibytes) return kibibytes * 1024;
    }
    return 0;
}

const TemporaryFile& RawDocument() {
    static const TemporaryFile file("vistrel-raw-");
    static const bool made = (MakeRawDocument(file), true);
    benchmark::DoNotOptimize(made);
    return file;
}

void ReadPlainly(benchmark::State& state) {
    const TemporaryFile& document = RawDocument();
    for (auto _ : state) {
        const LargeBlock block = LargeBlock::Try(document.Size());
        const int descriptor = open(document.Path().c_str(), O_RDONLY);
        u64 done = 0;
        while (done < block.Size()) {
            const ssize_t got = read(descriptor, block.Data() + done, block.Size() - done);
            if (got <= 0) break;
            done += static_cast<u64>(got);
        }
        close(descriptor);
        if (done != document.Size()) state.SkipWithError("The file could not be read");
    }
    state.SetBytesProcessed(static_cast<i64>(document.Size()) * static_cast<i64>(state.iterations()));
}

void LoadRawRgb(benchmark::State& state) {
    const TemporaryFile& document = RawDocument();
    RestartPeakMemory();
    for (auto _ : state) {
        PsdImage image;
        if (!Load(image, document.Path())) state.SkipWithError("The document was refused");
    }
    const double planes = double{CHANNELS} * RAW_SIDE * RAW_SIDE;
    state.counters["peak_MiB"] = PeakMemory() / MEBIBYTE;
    state.counters["planes_MiB"] = planes / MEBIBYTE;
    state.SetBytesProcessed(static_cast<i64>(document.Size()) * static_cast<i64>(state.iterations()));
}

void LoadPackedRgb(benchmark::State& state) {
    const TemporaryFile document("vistrel-packed-");
    const PacketCounts packets = MakePackedDocument(document);
    // Memory that one load gives back is had again by the next, so that no page is touched for the first
    // time.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    PsdImage image;
    Load(image, document.Path());
    for (auto _ : state)
        if (!Load(image, document.Path())) state.SkipWithError("The document was refused");
    const double planes = double{CHANNELS} * PACKED_SIDE * PACKED_SIDE;
    state.counters["file_MB"] = static_cast<double>(document.Size()) / 1e6;
    state.counters["planes_MB"] = planes / 1e6;
    state.counters["bytes_per_packet"] = planes / static_cast<double>(packets.m_nRuns + packets.m_nLiterals);
    state.counters["run_share"] =
        static_cast<double>(packets.m_nRuns) / static_cast<double>(packets.m_nRuns + packets.m_nLiterals);
    state.SetBytesProcessed(static_cast<i64>(planes) * static_cast<i64>(state.iterations()));
}

BENCHMARK(ReadPlainly)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(LoadRawRgb)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(LoadPackedRgb)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
