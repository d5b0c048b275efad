// The application object.
#pragma once

#include "framework/qt/program/win_app.h"

class CVistrelApp : public CWinApp {
  public:
    CVistrelApp();

    bool InitInstance() override;

  protected:
    const MessageMap& GetMessageMap() const override;

    void PrepareDocument(CDocument& document) override;
    bool AskForConsent(const std::vector<std::shared_ptr<CDocument>>& documents) override;

  private:
    void OnAppAbout();
};
