// Photoshop documents filled by hand, for tests that do not read a file.
#pragma once

#include "psd/psd_image.h"

#include <cstdlib>
#include <string>
#include <vector>

void AddAlphaNames(PsdImage& psd, const std::vector<std::string>& names);
PsdLayer& AddLayer(PsdImage& psd, const std::string& name);
PsdLayerChannel& AddChannel(PsdLayer& layer, i32 nId);

// Gives the document its header and planes; sample i of the block, counted over all channels, is sample(i).
template <typename Sample>
void FillPlanes(PsdImage& psd, Sample (*sample)(u32 i)) {
    if (!psd.AllocatePlanes()) std::abort();
    auto* const block = reinterpret_cast<Sample*>(psd.m_pppPlanes[0][0]);
    for (u32 i = 0; i < psd.m_nChannels * psd.m_nHeight * psd.m_nWidth; ++i) block[i] = sample(i);
}
