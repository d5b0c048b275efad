// The application object.
#pragma once

#include "document/vistrel_doc.h"
#include "framework/qt/program/win_app.h"

#include <functional>
#include <memory>
#include <vector>

class CVistrelView;
class Neighbours;

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
    CVistrelView* GetActiveView() const;  // null without any

    // Where the file cannot be read, or is not to be shown, the document stays, and the user has been told.
    void Reload(CVistrelView& view);

    Neighbours NeighboursOf(const CVistrelView& view) const;

    // Whether there is another file after or before the active one in its folder.
    bool CanGo(bool bAfter) const;

    // Shows that file in the active window.
    void Go(bool bAfter);

    void OnAppAbout();
    void OnNextFile();
    void OnUpdateNextFile(CCmdUI* pUi);
    void OnPreviousFile();
    void OnUpdatePreviousFile(CCmdUI* pUi);
    void OnReload();
    void OnUpdateReload(CCmdUI* pUi);
    void OnFileChanged();
};
