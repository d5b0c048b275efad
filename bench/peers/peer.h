// What every peer does: it loads a file so often and prints each load's processor time in milliseconds.
// Whatever the library needs to be told once is told before.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

inline double CpuMilliseconds() {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// load(path) is false where the library cannot read the file: status 1, and nothing is printed.
template <typename Load>
int RunPeer(int argc, char** argv, const Load& load) {
    if (argc != 3) return 2;
    for (int run = 0; run < std::atoi(argv[2]); ++run) {
        const double start = CpuMilliseconds();
        if (!load(argv[1])) return 1;
        std::printf("%.3f\n", CpuMilliseconds() - start);
    }
    return 0;
}
