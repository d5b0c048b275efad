// Answers the program's questions in a test's place and keeps what was asked.
#pragma once

#include "framework/core/answers.h"

#include <string>
#include <vector>

class RecordedAnswers final : public Answers {
  public:
    RecordedAnswers() : m_pBefore(InstallAnswers(this)) {}
    ~RecordedAnswers() override { InstallAnswers(m_pBefore); }

    int Message(const std::string& strText, const std::string&, u32) override {
        m_messages.push_back(strText);
        return IDOK;
    }

    std::vector<std::string> m_messages;

  private:
    Answers* m_pBefore;
};
