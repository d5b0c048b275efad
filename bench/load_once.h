// One load of the product, from asking for the file to holding its bitmap, and the processor's time that a
// piece of work takes.
#pragma once

#include "chunks/register_chunks.h"
#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "framework/core/archive.h"
#include "framework/core/regular_file.h"

#include <cstdlib>
#include <ctime>
#include <string>

inline void LoadDocument(CVistrelDoc& document, const std::string& strPath) {
    CRegularFile file(strPath);
    CArchive archive(&file, CArchive::load);
    document.Serialize(archive);
}

inline void LoadAndBuild(const std::string& strPath) {
    CVistrelDoc document;
    LoadDocument(document, strPath);
    DisplayImage image;
    image.ChooseLayer(document, 0);
    image.BuildBitmap(document, {0, 0});
    if (!image.m_hBitmap) std::abort();
}

// Of the whole process, in milliseconds.
inline double CpuMilliseconds() {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

template <typename Work>
double CpuMillisecondsOf(const Work& work) {
    const double start = CpuMilliseconds();
    work();
    return CpuMilliseconds() - start;
}
