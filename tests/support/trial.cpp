#include "support/trial.h"

#include "base/wrapping.h"
#include "display/catalogue.h"
#include "display/passed_over_in.h"
#include "display/thumbnail.h"
#include "document/passed_text.h"
#include "framework/core/exception.h"
#include "support/failing_new.h"
#include "support/memory_file.h"
#include "support/memory_limit.h"

#include <algorithm>
#include <new>

namespace {

// A file can offer thousands of choices; a few of each list reach all the code there is.
constexpr u32 FIRST_CHOICES = 6;

constexpr u32 MOST_HASHED_ROWS = 256;

// Less than the sides of some samples, and no divisor of them.
constexpr u32 THUMBNAIL_SIDE = 3;

// Requests for memory, of which the plan's fault strikes one or all from there on, whoever makes them in between.
struct Requests {
    // Makes a call of the program's. What came of it; empty where it ended well.
    template <typename Call>
    std::string During(const Call& call) {
        u64 used = 0;
        std::string failure;
        try {
            const FailingNew failing(left);
            struct Counting {
                ~Counting() {
                    used = FailingNew::Requests();
                    bStruck = bStruck || FailingNew::HasFailed();
                }
                u64& used;
                bool& bStruck;
            } const counting{used, bStruck};
            call();
        } catch (const std::bad_alloc&) {
            failure = MEMORY;
        } catch (const CArchiveException&) {
            failure = "refused";
        } catch (const CException& exception) {
            failure = std::string("refused: ") + exception.what();
        }
        if (left.nAt != Fault::NEVER && used > left.nAt && left.bOnce) left.nAt = Fault::NEVER;
        if (left.nAt != Fault::NEVER) left.nAt -= std::min(left.nAt, used);
        return failure;
    }

    Fault left;
    bool bStruck = false;
};

// Of a picture. Under the sanitizers millions of rows take seconds, and show no more than these.
constexpr u32 MOST_THUMBNAIL_ROWS = 1 << 16;

// FNV-1a, of whole words.
constexpr u64 HASH_START = 0xCBF29CE484222325;
VISTREL_WRAPS constexpr u64 Hashed(u64 nHash, u32 nWord) { return (nHash ^ nWord) * 0x100000001B3; }

// Of a picture of many rows some do: hashing must not take longer than building.
u64 HashOf(const GdiBitmap& bitmap) {
    std::vector<u32> row(bitmap.nWidth);
    u64 hash = HASH_START;
    for (u32 y = 0; y < bitmap.nHeight; y += 1 + bitmap.nHeight / MOST_HASHED_ROWS) {
        bitmap.ReadPixels(y, 0, bitmap.nWidth, row.data());
        for (const u32 pixel : row) hash = Hashed(hash, pixel);
    }
    return hash;
}

std::string PictureText(const DisplayImage& image) {
    const std::string text = image.InfoText() + (image.m_bValid ? " valid" : " not valid");
    return image.m_hBitmap ? text + " " + std::to_string(HashOf(*image.m_hBitmap)) : text;
}

std::vector<u32> FirstPlaces(size_t nCount) {
    std::vector<u32> places;
    for (u32 i = 0; i < std::min<size_t>(nCount, FIRST_CHOICES); ++i) places.push_back(i);
    if (nCount > FIRST_CHOICES) places.push_back(static_cast<u32>(nCount) - 1);
    return places;
}

class Pictures {
  public:
    Pictures(const CVistrelDoc& document, DisplayImage& image, Requests& requests)
        : m_document(document), m_image(image), m_requests(requests) {}

    void BuildAll(size_t nLayers) {
        for (const u32 layer : FirstPlaces(nLayers))
            if (Choose(layer))
                for (const u32 channel : FirstPlaces(m_channels.size())) Build({layer, channel});
    }

    void Build(const Selection& selection, size_t nLayers) {
        const u32 layer = static_cast<u32>(selection.nLayer % nLayers);
        if (Choose(layer)) Build({layer, static_cast<u32>(selection.nChannel % m_channels.size())});
    }

    void BuildThumbnail() {
        Thumbnail thumbnail;
        const std::string failure = m_requests.During([&] { thumbnail = ThumbnailOf(m_document, THUMBNAIL_SIDE); });
        const u8* const pixels = thumbnail.pixels.Data();
        u64 hash = HASH_START;
        for (u64 i = 0; i < thumbnail.pixels.Size(); ++i) hash = Hashed(hash, pixels[i]);
        texts.push_back(failure.empty() ? "Thumbnail: " + std::to_string(hash) : failure);
    }

    std::vector<std::string> texts;

  private:
    bool Choose(u32 nLayer) {
        const std::string failure = m_requests.During([&] { m_channels = m_image.ChooseLayer(m_document, nLayer); });
        if (!failure.empty()) texts.push_back(failure);
        return failure.empty();
    }

    void Build(const Selection& selection) {
        const std::string failure = m_requests.During([&] { m_image.BuildBitmap(m_document, selection); });
        const bool empty = !m_image.m_hBitmap && m_image.m_bValid == 0;
        if (failure.empty())
            texts.push_back(m_channels[selection.nChannel] + ": " + PictureText(m_image));
        else
            texts.push_back(empty ? failure : failure + ", but a picture stands");
    }

    const CVistrelDoc& m_document;
    DisplayImage& m_image;
    Requests& m_requests;
    std::vector<std::string> m_channels;  // of the layer chosen
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
    out << answer.strLoad;
    for (const std::string& picture : answer.pictures) out << "\n  " << picture;
    return out;
}

Answer Trial::Run(const Bytes& bytes, const Plan& plan) {
    const MemoryLimit limit(plan.nMemory);
    MemoryFile file(bytes);
    file.m_reads.fault = plan.reads;
    file.m_seeks.fault = plan.seeks;
    file.m_lengths.fault = plan.lengths;
    CArchive archive(&file, CArchive::load);
    Requests requests = {plan.requests};
    m_document.m_tolerance = plan.tolerance;

    Answer answer;
    answer.strLoad = requests.During([&] { m_document.Serialize(archive); });
    if (answer.strLoad == "refused")
        answer.strLoad +=
            m_document.m_nDocType == DOC_NONE ? ": " + m_document.GetRefusalReason() : ", but a document stands";
    if (answer.strLoad.empty()) {
        std::vector<std::string> layers;
        PassedOver passedOver;
        std::string failure = requests.During([&] { layers = LayerNames(m_document); });
        if (failure.empty()) failure = requests.During([&] { passedOver = PassedOverIn(m_document); });
        answer.strLoad = failure.empty() ? "opened, passing over: " + PassedText(passedOver) : failure;
        for (const std::string& layer : layers) answer.strLoad += "; " + layer;
        Pictures pictures(m_document, m_image, requests);
        if (failure.empty() && m_document.m_Psd.m_nHeight <= MOST_THUMBNAIL_ROWS) pictures.BuildThumbnail();
        if (failure.empty() && plan.selections.empty()) pictures.BuildAll(layers.size());
        if (failure.empty())
            for (const Selection& selection : plan.selections) pictures.Build(selection, layers.size());
        answer.pictures = std::move(pictures.texts);
    }
    answer.bStruck = file.IsStruck() || requests.bStruck;
    return answer;
}
