// Answers the program's questions in a test's place and keeps what was asked.
#pragma once

#include "framework/core/answers.h"

#include <functional>
#include <string>
#include <vector>

struct RecordedAnswers final : public Answers {
    RecordedAnswers() : m_pBefore(InstallAnswers(this)) {}
    ~RecordedAnswers() override { InstallAnswers(m_pBefore); }

    int Message(const std::string& strText, const std::string&, u32) override {
        m_messages.push_back(strText);
        return IDOK;
    }

    YesNoAnswer AskYesNo(const YesNoQuestion& question) override {
        std::string text;
        for (const std::string& paragraph : question.paragraphs) text += paragraph + '\n';
        m_questions.push_back(text);
        return m_nextAnswer;
    }

    std::vector<std::string> OpenFiles(const std::vector<FileFilter>& filters, const std::string& strFolder) override {
        m_filters = filters;
        m_strFolder = strFolder;
        return m_nextFiles;
    }

    int Dialog(u32 nID, ModalDialog& dialog) override {
        m_dialogs.push_back(nID);
        return m_nextDialog(dialog);
    }

    std::vector<std::string> m_messages;
    std::vector<std::string> m_questions;
    YesNoAnswer m_nextAnswer;
    std::vector<u32> m_dialogs;
    std::function<int(ModalDialog&)> m_nextDialog = [](ModalDialog&) { return IDCANCEL; };
    std::vector<FileFilter> m_filters;     // what the last Open dialog offered
    std::string m_strFolder;               // where it opened
    std::vector<std::string> m_nextFiles;  // what the next one is answered with
    Answers* const m_pBefore;
};
