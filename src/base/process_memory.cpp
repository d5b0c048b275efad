#include "base/process_memory.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr u64 UNLIMITED = ~u64{0};

// Fixed, so that finding out how much there is takes none.
using Path = std::array<char, 4096>;

struct CloseFile {
    void operator()(std::FILE* pFile) const { std::fclose(pFile); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// The number that a file of the control groups holds; what is no number, "max" for instance, limits nothing.
u64 NumberIn(const Path& path) {
    const File file(std::fopen(path.data(), "r"));
    unsigned long long number = 0;
    return file && std::fscanf(file.get(), "%llu", &number) == 1 ? number : UNLIMITED;
}

// Of the group of that path, and of those that it belongs to.
u64 LimitOfGroups(const char* pszRoot, char* pszGroup, const char* pszFile) {
    u64 limit = UNLIMITED;
    while (true) {
        Path path = {};
        std::snprintf(path.data(), path.size(), "%s%s/%s", pszRoot, pszGroup, pszFile);
        limit = std::min(limit, NumberIn(path));
        char* const end = std::strrchr(pszGroup, '/');
        if (!end) return limit;
        *end = '\0';
    }
}

// Each line names a hierarchy: its number, what it controls, and the process's group in it.
u64 LimitOfControlGroups() {
    u64 limit = UNLIMITED;
    const File groups(std::fopen("/proc/self/cgroup", "r"));
    Path line = {};
    while (groups && std::fgets(line.data(), line.size(), groups.get())) {
        line[std::strcspn(line.data(), "\n")] = '\0';
        char* const controls = std::strchr(line.data(), ':');
        char* const group = controls ? std::strchr(controls + 1, ':') : nullptr;
        if (!group) continue;
        *group = '\0';
        if (controls[1] == '\0')
            limit = std::min(limit, LimitOfGroups("/sys/fs/cgroup", group + 1, "memory.max"));
        else if (std::strstr(controls, "memory"))
            limit =
                std::min(limit, LimitOfGroups("/sys/fs/cgroup/memory", group + 1, "memory.limit_in_bytes"));
    }
    return limit;
}

u64 LimitOfAddresses() {
    rlimit limit = {};
    if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return UNLIMITED;
    return limit.rlim_cur;
}

SizeText InBytes(u64 nBytes) {
    SizeText text = {};
    std::snprintf(text.data(), text.size(), "%llu bytes", static_cast<unsigned long long>(nBytes));
    return text;
}

}  // namespace

u64 MemoryOfProcess() {
    const u64 physical = static_cast<u64>(sysconf(_SC_PHYS_PAGES)) * static_cast<u64>(sysconf(_SC_PAGESIZE));
    return std::min({physical, LimitOfControlGroups(), LimitOfAddresses()});
}

SizeText ToSizeText(u64 nBytes) {
    constexpr std::array<const char*, 5> UNITS = {"bytes", "KiB", "MiB", "GiB", "TiB"};
    size_t unit = 0;
    double size = static_cast<double>(nBytes);
    // What would be rounded up to 1024 is one of the next unit.
    for (; size >= (unit == 0 ? 1024 : 1023.95) && unit + 1 < UNITS.size(); ++unit) size /= 1024;
    SizeText text = {};
    // With a point in any locale, as all texts are in one language.
    const int digits = unit == 0 ? 0 : 1;
    char* const end = std::to_chars(text.begin(), text.end(), size, std::chars_format::fixed, digits).ptr;
    std::snprintf(end, static_cast<std::size_t>(text.end() - end), " %s", UNITS[unit]);
    return text;
}

ShortageText ToShortageText(u64 nWanted, u64 nLeft) {
    SizeText wanted = ToSizeText(nWanted);
    SizeText left = ToSizeText(nLeft);
    if (wanted == left) {
        wanted = InBytes(nWanted);
        left = InBytes(nLeft);
    }
    ShortageText text;
    std::snprintf(text.data(), text.size(), "It takes %s; %s is left of the limit", wanted.data(),
                  left.data());
    return text;
}
