#include "tools/export/choice.h"

#include "tools/common/messages.h"
#include "tools/common/number.h"

#include <algorithm>

namespace {

// One list's words, and which of them meant something.
class Words {
  public:
    Words(const std::vector<std::string>& words, bool bAll)
        : m_words(words), m_bAll(bAll), m_met(words.size()) {}

    bool Take(u32 nPlace, const std::string& strName) {
        if (m_words.empty()) return m_bAll || nPlace == 0;
        bool taken = false;
        for (size_t i = 0; i < m_words.size(); ++i) {
            const std::optional<u32> number = ToNumber<u32>(m_words[i]);
            if (number ? *number != nPlace : m_words[i] != strName) continue;
            m_met[i] = true;
            taken = true;
        }
        return taken;
    }

    bool MeantAny() const { return m_words.empty() || std::ranges::find(m_met, true) != m_met.end(); }

    void TellLacking(const std::string& strKind, std::vector<std::string>& lacking) const {
        for (size_t i = 0; i < m_words.size(); ++i)
            if (!m_met[i]) lacking.push_back("it has no " + strKind + " \"" + PlainText(m_words[i]) + "\"");
    }

  private:
    const std::vector<std::string>& m_words;
    const bool m_bAll;
    std::vector<bool> m_met;
};

}  // namespace

Chosen Choose(const std::vector<ListedPicture>& list, const Choice& choice) {
    Chosen chosen;
    Words layers(choice.layers, choice.bAll);
    Words channels(choice.channels, choice.bAll);
    for (const ListedPicture& picture : list)
        if (layers.Take(picture.selection.nLayer, picture.layer) &&
            channels.Take(picture.selection.nChannel, picture.channel))
            chosen.pictures.push_back(picture);
    layers.TellLacking("layer", chosen.lacking);
    // Without a layer nobody knows which channels there would be.
    if (layers.MeantAny()) channels.TellLacking("channel", chosen.lacking);
    return chosen;
}
