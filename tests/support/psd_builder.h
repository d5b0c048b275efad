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
    i64 excess = 0;
};

struct PsdLayerFields {
    i32 top = 0, left = 0, bottom = 1, right = 1;
    std::vector<PsdChannelFields> channels = {};
    std::string signature = "8BIM", key = "norm";
    u32 opacity = 255, clipping = 0, flags = 0;
    Bytes mask = {}, ranges = {};
    std::string name = {};
    Bytes extra = {};  // after the name
    i64 rangesExcess = 0, extraExcess = 0;
};

struct PsdResourceFields {
    std::string signature = "8BIM";
    u32 id = 1000;
    std::string name = {};
    Bytes data = {};
    i64 excess = 0;
};

struct PsdFields {
    u32 version = 1, channels = 1, rows = 1, columns = 1, depth = 8, mode = PSD_GREYSCALE;
    Bytes colourData = {};
    std::vector<PsdResourceFields> resources = {};
    std::vector<PsdLayerFields> layers = {};
    std::optional<i32> layerCount = {};
    Bytes layerPad = {}, globalMasks = {};
    Bytes tagged = {};           // blocks after the global masks
    bool hasGlobalMasks = true;  // or at least their length
    i64 colourExcess = 0, resourcesExcess = 0, layersExcess = 0, globalMasksExcess = 0;
    i64 sectionExcess = 0;  // of the layers and masks together
    u32 compression = 0;
    std::optional<Bytes> samples = {};  // if not given, as many zero bytes as raw data takes
};

Bytes Psd(const PsdFields& fields);

// With one layer, and four bytes of padding after it, which not all rules read.
Bytes PaddedPsd();

// Of version 2 where lengths are large: those have eight bytes, and counts of packed bytes four.
Bytes LayerRecord(const PsdLayerFields& fields, bool large = false);
Bytes LayerInfo(const PsdFields& fields);

// Image data of a channel, its compression first. Zipped samples are packed not at all unless a level says so.
Bytes RawData(const Bytes& samples);
Bytes PackedData(const std::vector<Bytes>& rows, bool large = false);
Bytes ZipData(const Bytes& samples, u32 compression = 2, int level = 0);

Bytes TaggedBlock(const std::string& key, const Bytes& data, i64 excess = 0, bool large = false,
    const std::string& signature = "8BIM");

// Something of everything: palette, resources, layers with raw and packed channels, masks, ranges and names.
PsdFields LayeredPsd();

// The same of what the tolerant rules alone read: large lengths, layers in a tagged block, zipped and loose rows, and
// names that need memory of their own.
PsdFields LargePsd();

struct LoadedPsd {
    explicit LoadedPsd(Bytes bytes) : source(std::move(bytes)), bLoaded(image.LoadPsd(&source.stream)) {}
    explicit LoadedPsd(const PsdFields& fields) : LoadedPsd(Psd(fields)) {}

    MemoryStream source;
    PsdImage image;
    bool bLoaded;
};

// What the rules make of a document: what was passed over, and behind a bar resources, layers with their channels'
// samples by id, global masks and, behind "=", the composite's samples. A minus stands for a missing plane. Or why
// it is refused.
std::string Outcome(const Bytes& bytes, const ReadingRules& rules = TOLERANT);
std::string Outcome(const PsdImage& image);  // of one that was loaded
