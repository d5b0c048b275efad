#include "framework/core/answers.h"

#include "framework/core/resource.h"

#include <cstdio>

namespace {

class StandardErrorAnswers final : public Answers {
  public:
    int Message(const std::string& strText, const std::string& strCaption, u32) override {
        std::fprintf(stderr, "%s: %s\n", strCaption.c_str(), strText.c_str());
        return IDOK;
    }

    YesNoAnswer AskYesNo(const YesNoQuestion& question) override {
        for (const std::string& paragraph : question.paragraphs)
            std::fprintf(stderr, "%s\n", paragraph.c_str());
        return {};
    }

    std::vector<std::string> OpenFiles(const std::vector<FileFilter>&, const std::string&) override {
        return {};
    }
    int Dialog(u32, ModalDialog&) override { return IDCANCEL; }
};

StandardErrorAnswers g_default;
Answers* g_pInstalled = nullptr;

}  // namespace

Answers* InstallAnswers(Answers* pAnswers) {
    Answers* const before = g_pInstalled;
    g_pInstalled = pAnswers;
    return before;
}

Answers& CurrentAnswers() {
    return g_pInstalled ? *g_pInstalled : g_default;
}

int MessageBoxA(void*, const char* pszText, const char* pszCaption, u32 nStyle) {
    return CurrentAnswers().Message(pszText ? pszText : "", pszCaption ? pszCaption : "", nStyle);
}

int AfxMessageBox(const std::string& strText, u32 nStyle) {
    return MessageBoxA(nullptr, strText.c_str(), AfxLoadString(AFX_IDS_APP_TITLE).c_str(), nStyle);
}
