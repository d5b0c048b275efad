// The application object.
#pragma once

#include "document/vistrel_doc.h"
#include "framework/qt/program/win_app.h"

#include <functional>
#include <memory>
#include <vector>

class CVistrelApp : public CWinApp {
  public:
    CVistrelApp();

    bool InitInstance() override;

  protected:
    const MessageMap& GetMessageMap() const override;

    std::function<void(CDocument&)> PrepareDocuments() override;
    bool AskForConsent(const std::vector<std::shared_ptr<CDocument>>& documents) override;

  private:
    Tolerance GetTolerance() const;
    void OnAppAbout();
};
