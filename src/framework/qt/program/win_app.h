// The application: templates, main window, message loop. One global object of a class derived from it is the
// program.
#pragma once

#include "framework/core/cmd_target.h"
#include "framework/core/command_line.h"
#include "framework/qt/program/recent_files_menu.h"
#include "framework/qt/program/shell_requests.h"
#include "framework/qt/wnd/mdi_frame_wnd.h"
#include "framework/qt/wnd/multi_doc_template.h"

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class CDocument;

class CWinApp : public CCmdTarget {
  public:
    CWinApp();
    ~CWinApp() override;

    // Reads the command line and starts the toolkit. A status says that the program has to end with it: it
    // has answered on the terminal, the program that runs already has the files, or there is no display.
    std::optional<int> Start(int argc, char** argv);

    // Makes the main window and opens what the command line names. False ends the program.
    virtual bool InitInstance();

    // Runs until the main window is closed; the program's status.
    int Run();

    // A signal asks the program to end. It does so as if its main window were closed, with the status that
    // shells give to what a signal ended.
    void EndBySignal(int nSignal);

    // The program is to end, whatever is going on: no file opens any more and no box, so that what goes
    // through a list of files comes to its end too.
    void End();

    // Writes the settings; takes down windows, templates and the toolkit.
    void ExitInstance();

    // Where InitInstance ends the program.
    int GetExitStatus() const { return m_nExitStatus; }

    // From here on the program keeps settings: the user's own, under the company's key, whose parts are
    // divided by backslashes, and the program's title.
    void SetRegistryKey(const std::string& strRegistryKey);

    // A text that is kept in a section of the settings, or what stands for it where there is none.
    std::string GetProfileString(const std::string& strSection, const std::string& strEntry,
                                 const std::string& strDefault) const;

    // False where it cannot be kept. It counts until the program ends then.
    bool WriteProfileString(const std::string& strSection, const std::string& strEntry,
                            const std::string& strValue);

    // Reads the list of recent files, which takes this many.
    void LoadStdProfileSettings(u32 nMaxMRU) { m_recentFiles.Load(*m_pProfile, nMaxMRU); }

    // Takes part in what the desktop opens. A copy that prints and ends is none to open files in.
    void EnableShellOpen();

    void RegisterShellFileTypes(u32 nIDIcon) const;

    void AddDocTemplate(std::unique_ptr<CMultiDocTemplate> docTemplate);

    // Commands reach the application through it, and so does what is dropped on it and its end.
    void SetMainWnd(std::unique_ptr<CMDIFrameWnd> mainWnd);

    void ParseCommandLine(CCommandLineInfo& info) const { info = m_commandLine; }

    // Opens the files in their order, in the program that runs already where the command line asks for that,
    // or prints them. False when the program is to end: it has handed them over, the page is done, or all of
    // them failed.
    bool ProcessShellCommand(const CCommandLineInfo& info);

    // Each file goes to the template of its extension, to the first one where it has none. One that is open
    // already comes to the front. Documents that need consent are shown after all others, once the user has
    // been asked about them together. The documents that are on show; what could not be read has been
    // reported.
    std::vector<CDocument*> OpenDocumentFiles(const std::vector<std::string>& paths);

    // Null when it failed, or the program is ending.
    CDocument* OpenDocumentFile(const std::string& strPathName);

    // Opens what the URIs name, in their order, and comes to the front, as soon as no dialog is up and
    // nothing that came before is waiting.
    void OpenLater(const std::vector<std::string>& uris) { m_requests.Add({uris, {}}); }

    // Runs the update handlers of everything that shows a state.
    void OnIdle();

    std::unique_ptr<CMDIFrameWnd> m_pMainWnd;

  protected:
    const MessageMap& GetMessageMap() const override;

    // Opens what the user chooses; the dialog offers one filter for each template, and then all files.
    void OnFileOpen();
    void OnFilePrintSetup();
    void OnAppExit();

    // Called once for files that are opened together: what is done with each of their documents before its
    // file is read.
    virtual std::function<void(CDocument&)> PrepareDocuments() {
        return [](CDocument&) {};
    }

    // Whether documents that were read, and need consent, are shown.
    virtual bool AskForConsent(const std::vector<std::shared_ptr<CDocument>>&) { return true; }

    // Of the file's extension, or the first one where it has none; and whether there is one for it.
    const CMultiDocTemplate& TemplateFor(const std::string& strPath) const;
    bool HasTemplateFor(const std::string& strPath) const;

    // The first child that shows the file; null for none.
    CMDIChildWnd* FindOpen(const std::string& strPathName) const;

    CCommandLineInfo m_commandLine;

  private:
    struct ReadDocument {
        std::shared_ptr<CDocument> pDocument;
        const CMultiDocTemplate* pTemplate;
    };

    std::vector<CDocument*> Show(const std::vector<ReadDocument>& documents);
    void OnUpdateRecentFile(CCmdUI* pUi);
    void OnOpenRecentFile(u32 nID);
    void WriteRecentFilesWhenSeen();
    bool HandOver();
    bool CanOpenRequests() const;
    void BringToFront(const StartupToken& token);
    void OpenRequests();
    bool Print(const CCommandLineInfo& info);

    std::vector<std::unique_ptr<CMultiDocTemplate>> m_templates;
    std::unique_ptr<Profile> m_pProfile;
    std::map<std::pair<std::string, std::string>, std::string> m_notKept;  // texts by section and entry
    CRecentFilesMenu m_recentFiles;
    CShellRequests m_requests;
    int m_nExitStatus = EXIT_FAILURE;
    int m_nEndStatus = EXIT_SUCCESS;  // that of a program whose main window is closed
    bool m_bEnding = false;
    bool m_bSeen = false;  // the main window has been on the screen
    bool m_bInIdle = false;
    bool m_bIdleFailed = false;  // reported once, until the handlers run through again
};

// The whole life of a program; its status.
int AfxWinMain(CWinApp& app, int argc, char** argv);
