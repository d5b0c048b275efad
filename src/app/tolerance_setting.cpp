#include "app/tolerance_setting.h"

#include "display/passed_over_in.h"
#include "document/passed_text.h"

#include <algorithm>

namespace {

constexpr size_t MOST_NAMED = 12;  // files, so that the question fits the screen

std::string PassedOverTextOf(const CDocument& document) {
    return PassedText(PassedOverIn(dynamic_cast<const CVistrelDoc&>(document)));
}

// Its title or, where another one of them has the same, its path.
std::string NameAmong(const std::vector<std::shared_ptr<CDocument>>& documents, const CDocument& document) {
    const auto hasTitle = [&](const auto& one) { return one->GetTitle() == document.GetTitle(); };
    const bool repeats = std::ranges::count_if(documents, hasTitle) > 1;
    return repeats ? document.GetPathName() : document.GetTitle();
}

}  // namespace

Tolerance ToTolerance(const std::string& strKept) {
    if (strKept == ALWAYS) return Tolerance::Always;
    if (strKept == NEVER) return Tolerance::Never;
    return Tolerance::Ask;
}

YesNoQuestion ConsentQuestion(const std::vector<std::shared_ptr<CDocument>>& documents) {
    YesNoQuestion question;
    question.strCheckBox = "Do not ask again";
    if (documents.size() == 1) {
        const CDocument& document = *documents.front();
        question.paragraphs = {"\"" + document.GetPathName() +
                                   "\" breaks rules of its format. It was read by passing over: " +
                                   PassedOverTextOf(document) + ".",
                               "Open it anyway?"};
        return question;
    }
    question.paragraphs = {
        "These files break rules of their formats. They were read by passing over what stands after each."};
    for (size_t i = 0; i < documents.size() && i < MOST_NAMED; ++i)
        question.paragraphs.push_back("\"" + NameAmong(documents, *documents[i]) +
                                      "\": " + PassedOverTextOf(*documents[i]));
    if (documents.size() > MOST_NAMED)
        question.paragraphs.push_back("And " + std::to_string(documents.size() - MOST_NAMED) + " more.");
    question.paragraphs.push_back("Open them anyway?");
    return question;
}
