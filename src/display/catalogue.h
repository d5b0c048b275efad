// What a document offers for display: names for the two lists, and which picture chunk an IFF document's
// layer stands for. Names are bytes of unknown encoding; an entry is told by its position alone.
#pragma once

#include "base/types.h"
#include "reading/passed_over.h"
#include "reading/reading_rules.h"

#include <string>
#include <vector>

class BodyChunk;
class CVistrelDoc;
class IffContainer;
class PsdImage;
class PsdLayer;
class S3tcChunk;

// The Layer list: the whole image, then Photoshop layers or mip-map levels.
std::vector<std::string> LayerNames(const CVistrelDoc& document);

// The Channel list of a Photoshop document, for the whole image or for one layer.
std::vector<std::string> ChannelNames(const PsdImage& psd);
// A layer's channels are called after the document's colours where the rules say so.
std::vector<std::string> ChannelNames(const PsdLayer& layer, u32 nMode, const ReadingRules& rules);

// The entry of the Channel list whose picture is the transparency of the layer's composite: its position, 0
// where there is none. Of the whole image of a Photoshop document it is the first channel behind the colours,
// unless there are layers and the file does not say that it is their transparency.
u32 AlphaChannel(const CVistrelDoc& document, u32 nLayer);

// The part of an IFF document that a position in the Layer list stands for; null where the file lacks it.
IffContainer* FindLayerPart(const CVistrelDoc& document, u32 nLayer, const ReadingRules& rules);

// The pictures that a part is shown by, borrowed; at most one of them is set. A body always has a header in
// scope, and a colour map where its pixels need one.
struct PictureChoice {
    BodyChunk* pBody = nullptr;
    S3tcChunk* pS3tc = nullptr;
};

// Notes what the rules pass over.
PictureChoice ChoosePicture(IffContainer& part, const ReadingRules& rules, PassedOver& passedOver);

// Whether the Channel list offers the alpha of a picture.
bool OffersAlpha(const PictureChoice& choice);
