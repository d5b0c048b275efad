// Photoshop documents put together by field names. Lengths and padding are computed; each length can be made
// wrong by the bytes that it claims in excess, negative for too few.
#pragma once

#include "psd/psd_image.h"
#include "support/loading.h"

#include <optional>
#include <string>
#include <vector>

struct PsdChannelFields {
    i32 id = 0;
    Bytes data = {};  // its compression first
    i32 excess = 0;
};

struct PsdLayerFields {
    i32 top = 0, left = 0, bottom = 1, right = 1;
    std::vector<PsdChannelFields> channels = {};
    std::string signature = "8BIM", key = "norm";
    u32 opacity = 255, clipping = 0, flags = 0;
    Bytes mask = {}, ranges = {};
    std::string name = {};
    Bytes extra = {};  // after the name
    i32 rangesExcess = 0, extraExcess = 0;
};

struct PsdResourceFields {
    std::string signature = "8BIM";
    u32 id = 1000;
    std::string name = {};
    Bytes data = {};
};

struct PsdFields {
    std::string signature = "8BPS";
    u32 version = 1, channels = 1, rows = 1, columns = 1, depth = 8, mode = PSD_GREYSCALE;
    Bytes colourData = {};
    std::vector<PsdResourceFields> resources = {};
    std::vector<PsdLayerFields> layers = {};
    std::optional<i32> layerCount = {};
    Bytes layerPad = {}, globalMasks = {};
    i32 colourExcess = 0, resourcesExcess = 0, layersExcess = 0, globalMasksExcess = 0;
    i32 sectionExcess = 0;  // of the layers and masks together
    u32 compression = 0;
    std::optional<Bytes> samples = {};  // if not given, as many zero bytes as raw data takes
};

Bytes Psd(const PsdFields& fields);
Bytes LayerRecord(const PsdLayerFields& fields);

// Image data of a channel, its compression first.
Bytes RawData(const Bytes& samples);
Bytes PackedData(const std::vector<Bytes>& rows);

// Something of everything: palette, resources, layers with raw and packed channels, masks, ranges and names.
PsdFields LayeredPsd();

struct LoadedPsd {
    explicit LoadedPsd(Bytes bytes) : source(std::move(bytes)), bLoaded(image.LoadPsd(&source.stream)) {}
    explicit LoadedPsd(const PsdFields& fields) : LoadedPsd(Psd(fields)) {}

    MemoryStream source;
    PsdImage image;
    bool bLoaded;
};

// What an image holds, a line for each object; bytes and samples in decimal.
std::string Description(const PsdImage& image);
