#include "tools/export/export_file.h"

#include "display/catalogue.h"
#include "display/display_image.h"
#include "display/passed_over_in.h"
#include "document/passed_text.h"
#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "framework/core/path_name.h"
#include "framework/core/regular_file.h"
#include "tools/common/open_document.h"
#include "tools/common/pictures.h"
#include "tools/export/byte_sink.h"
#include "tools/export/picture_file.h"
#include "tools/export/whole_file.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace {

// The picture that is being made, and its transparency where that is asked for.
class PictureMaker {
  public:
    PictureMaker(const CVistrelDoc& document, const FileNames& names)
        : m_document(document), m_builder(document, names) {}

    // False when memory refuses it, which is told.
    bool Make(const Selection& selection, bool bWithAlpha) {
        if (!MakeOne(m_image, selection)) return false;
        const u32 channel = bWithAlpha && m_image.m_hBitmap ? AlphaChannel(m_document, selection.nLayer) : 0;
        m_bHasAlpha = channel != 0;
        return !m_bHasAlpha || MakeOne(m_alpha, {selection.nLayer, channel});
    }

    // pBitmap is null where the viewer shows none either.
    ShownPicture Picture() const {
        const GdiBitmap* const bitmap = m_image.m_hBitmap;
        const GdiBitmap* const alpha = m_bHasAlpha ? m_alpha.m_hBitmap : nullptr;
        const bool fits =
            bitmap && alpha && alpha->nWidth == bitmap->nWidth && alpha->nHeight == bitmap->nHeight;
        return {bitmap, fits ? alpha : nullptr};
    }

    // There is an alpha, and it shows nothing or is of another size.
    bool LacksItsAlpha() const { return m_bHasAlpha && !Picture().pAlpha; }

    const PictureBuilder& Builder() const { return m_builder; }

  private:
    bool MakeOne(DisplayImage& image, const Selection& selection) {
        image.ChooseLayer(m_document, selection.nLayer);
        return m_builder.Build(image, selection);
    }

    const CVistrelDoc& m_document;
    PictureBuilder m_builder;
    DisplayImage m_image;
    DisplayImage m_alpha;
    bool m_bHasAlpha = false;
};

class Export {
  public:
    Export(const CVistrelDoc& document, const FileNames& names, const Options& options)
        : m_names(names), m_options(options), m_maker(document, names) {}

    bool WriteAll(const std::vector<ListedPicture>& pictures) {
        bool good = true;
        for (size_t i = 0; i < pictures.size(); ++i) {
            if (m_maker.Builder().HasPassedLimit()) {
                m_maker.Builder().SayTooManyPixels();
                return false;
            }
            ShowProgress(std::to_string(i + 1) + " of " + std::to_string(pictures.size()) + ": " +
                         pictures[i].file);
            good &= WriteOne(pictures[i]);
        }
        ShowProgress("");
        return good;
    }

  private:
    bool WriteOne(const ListedPicture& listed) {
        const std::string path = (std::filesystem::path(m_options.folder) / listed.file).string();
        const FileNames target = NamesOf(path);
        std::error_code unknown;  // to be met again by whoever writes
        if (!m_options.bForce && std::filesystem::exists(std::filesystem::symlink_status(path, unknown))) {
            Say(target, "It is there already; --force replaces it");
            return false;
        }
        if (!m_maker.Make(listed.selection, m_options.bMergeAlpha)) return false;
        const ShownPicture picture = m_maker.Picture();
        if (!picture.pBitmap) {
            Say(m_names, "layer %u, channel %u: there is no picture", listed.selection.nLayer,
                listed.selection.nChannel);
            return m_options.choice.bAll;
        }
        if (m_maker.LacksItsAlpha()) {
            Say(m_names, "layer %u, channel %u: its alpha cannot be merged", listed.selection.nLayer,
                listed.selection.nChannel);
            return false;
        }
        return Guarded(target, [&] { Write(picture, path); });
    }

    void Write(const ShownPicture& picture, const std::string& strPath) const {
        WholeFile file(strPath);
        ByteSink sink(file.Descriptor());
        if (!WritePicture(sink, picture, m_options.format))
            throw CFileException("It cannot be written", errno);
        file.Put(m_options.bForce);
    }

    const FileNames& m_names;
    const Options& m_options;
    PictureMaker m_maker;
};

// A line for each: file, layer, channel, the names of both, and what the picture's file is called.
void PrintList(const FileNames& names, const std::vector<ListedPicture>& pictures) {
    for (const ListedPicture& picture : pictures)
        std::printf("%s\t%u\t%u\t%s\t%s\t%s\n", names.plain.c_str(), picture.selection.nLayer,
                    picture.selection.nChannel, PlainText(picture.layer).c_str(),
                    PlainText(picture.channel).c_str(), picture.file.c_str());
}

void TellPassedOver(const CVistrelDoc& document, const FileNames& names) {
    const std::string passed = PassedText(PassedOverIn(document));
    if (!passed.empty()) Say(names, "read tolerantly, passing over: %s", passed.c_str());
}

// A list shows everything where nothing is chosen, and only composites have an alpha.
Choice ChoiceOf(const Options& options) {
    Choice choice = options.choice;
    if (options.bList && choice.layers.empty() && choice.channels.empty()) choice.bAll = true;
    if (options.bMergeAlpha) choice.channels = {"0"};
    return choice;
}

bool ExportDocument(const CVistrelDoc& document, const FileNames& names, const Options& options,
                    PictureNames& pictureNames) {
    const std::string file = FileNameOf(names.path);
    const Chosen chosen = Choose(ListPictures(document, file, pictureNames), ChoiceOf(options));
    for (const std::string& text : chosen.lacking) Say(names, "%s", text.c_str());
    bool good = chosen.lacking.empty();
    if (options.bList)
        PrintList(names, chosen.pictures);
    else
        good &= Export(document, names, options).WriteAll(chosen.pictures);
    return good;
}

}  // namespace

bool ExportFile(const std::string& strPath, const Options& options, PictureNames& pictureNames) {
    const FileNames names = NamesOf(strPath);
    bool good = false;
    const bool finished = Guarded(names, [&] {
        const std::unique_ptr<CRegularFile> file = OpenFile(names);
        if (!file) return;
        CVistrelDoc document;
        document.m_tolerance = options.bStrict ? Tolerance::None : Tolerance::Always;
        if (LoadDocument(document, *file, names) != Loading::Read) return;
        if (!options.bStrict) TellPassedOver(document, names);
        good = ExportDocument(document, names, options, pictureNames);
    });
    return finished && good;
}
