#include "tools/export/options.h"

#include "tools/common/number.h"

#include <map>

namespace {

constexpr u32 LARGEST_THUMBNAIL = 4096;  // pixels a side
constexpr size_t THUMBNAIL_WORDS = 3;

class Parser {
  public:
    explicit Parser(const std::vector<std::string_view>& words) : m_words(words) {}

    std::optional<Options> Parse() {
        bool dashes = false;
        while (m_nNext < m_words.size()) {
            const std::string_view word = m_words[m_nNext++];
            if (dashes || !word.starts_with('-'))
                m_files.push_back(word);
            else if (word == "--")
                dashes = true;
            else if (!TakeSwitch(word) && !TakeSwitchWithValue(word))
                return std::nullopt;
        }
        const bool fits = m_bThumbnail ? TakeThumbnail() : TakeFiles();
        return fits ? std::optional(m_options) : std::nullopt;
    }

  private:
    bool TakeSwitch(std::string_view word) {
        const std::map<std::string_view, bool*> switches = {
            {"--all", &m_options.choice.bAll}, {"--force", &m_options.bForce},
            {"--list", &m_options.bList},      {"--merge-alpha", &m_options.bMergeAlpha},
            {"--strict", &m_options.bStrict},  {"--thumbnail", &m_bThumbnail},
        };
        const auto found = switches.find(word);
        if (found == switches.end()) return false;
        *found->second = true;
        m_bExports |= word != "--strict" && word != "--thumbnail";
        return true;
    }

    bool TakeSwitchWithValue(std::string_view word) {
        if (m_nNext >= m_words.size()) return false;
        const std::string value(m_words[m_nNext++]);
        m_bExports = true;
        if (word == "--layer") {
            m_options.choice.layers.push_back(value);
        } else if (word == "--channel") {
            m_options.choice.channels.push_back(value);
        } else if (word == "--out") {
            m_options.folder = value;
        } else if (word == "--format" && (value == "png" || value == "ppm")) {
            m_options.format = value == "png" ? PictureFormat::Png : PictureFormat::Ppm;
        } else {
            return false;
        }
        return true;
    }

    bool TakeThumbnail() {
        if (m_bExports || m_files.size() != THUMBNAIL_WORDS) return false;
        const std::optional<u32> side = ToNumber<u32>(m_files[0]);
        if (!side || *side == 0 || *side > LARGEST_THUMBNAIL) return false;
        m_options.thumbnail = {*side, std::string(m_files[1]), std::string(m_files[2])};
        return true;
    }

    bool TakeFiles() {
        // A composite with its alpha is no channel that could be chosen, and PPM has no place for an alpha.
        const bool takesChannels =
            m_options.format == PictureFormat::Png && m_options.choice.channels.empty();
        if (m_options.bMergeAlpha && !takesChannels) return false;
        m_options.files.assign(m_files.begin(), m_files.end());
        return !m_options.files.empty() && !m_options.folder.empty();
    }

    const std::vector<std::string_view>& m_words;
    size_t m_nNext = 0;
    std::vector<std::string_view> m_files;
    Options m_options;
    bool m_bThumbnail = false;
    bool m_bExports = false;  // a switch was there that thumbnails have no use for
};

}  // namespace

std::optional<Options> ParseOptions(const std::vector<std::string_view>& words) {
    return Parser(words).Parse();
}
