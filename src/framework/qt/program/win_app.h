// The application: templates, main window, message loop. One global object of a class derived from it is the
// program.
#pragma once

#include "framework/core/cmd_target.h"
#include "framework/core/command_line.h"
#include "framework/core/recent_files.h"
#include "framework/qt/wnd/doc_template.h"
#include "framework/qt/wnd/mdi_frame_wnd.h"

#include <cstdlib>
#include <deque>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CDocument;
class ShellOpen;

class CWinApp : public CCmdTarget {
  public:
    CWinApp();
    ~CWinApp() override;

    // Makes the main window and opens what the command line names. False ends the program.
    virtual bool InitInstance();

    // Runs until the main window is closed; the program's status.
    int Run();

    // The program is to end, whatever is going on: no file opens any more and no box, so that what goes
    // through a list of files comes to its end too.
    void End();

    // Writes the settings; takes down windows and templates.
    void ExitInstance();

    // From here on the program keeps settings: the user's own, under the company's key, whose parts are
    // divided by backslashes, and the program's title.
    void SetRegistryKey(const std::string& strRegistryKey);

    // Reads the list of recent files, which takes this many.
    void LoadStdProfileSettings(u32 nMaxMRU);

    // Takes part in what the desktop opens.
    void EnableShellOpen();

    // Tells the user's desktop of the program, of the kinds of files that are its own and of its icon, where
    // it does not know yet. The program runs on when it cannot be told.
    void RegisterShellFileTypes(u32 nIDIcon) const;

    ShellRegistration GetShellRegistration() const;

    void AddDocTemplate(std::unique_ptr<CMultiDocTemplate> pTemplate);

    void ParseCommandLine(CCommandLineInfo& info) const;

    // Opens the files in their order, in the program that runs already where the command line asks for that,
    // or prints them. False when the program is to end: it has handed them over, the page is done, or all of
    // them failed.
    bool ProcessShellCommand(const CCommandLineInfo& info);

    // The file goes to the template of its extension, to the first one where it has none. One that is open
    // already comes to the front. Null when it failed, which has been reported then, or the program is
    // ending.
    CDocument* OpenDocumentFile(const std::string& strPathName);

    // Opens what the URIs name, in their order, and comes to the front, as soon as no dialog is up and
    // nothing that came before is waiting.
    void OpenLater(const std::vector<std::string>& uris);

    // Runs the update handlers of everything that shows a state.
    void OnIdle();

    // Handles what has happened, without waiting for more.
    void PumpMessages();

    // Recent files have ids of their own, one for each place in the list.
    bool OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) override;
    bool HasHandler(u32 nID, u32 nCode) const override;

    std::unique_ptr<CMDIFrameWnd> m_pMainWnd;

  protected:
    const MessageMap& GetMessageMap() const override;

    // Opens what the user chooses; the dialog offers one filter for each template, and then all files.
    void OnFileOpen();
    void OnFilePrintSetup();
    void OnAppExit();

  private:
    friend std::optional<int> AfxWinInit(int argc, char** argv);
    friend int AfxWinMain(int argc, char** argv);

    CMDIChildWnd* FindOpen(const std::string& strPathName) const;
    void AddToRecentFileList(const std::string& strPathName);
    void WriteRecentFileList();
    void WriteRecentFilesWhenSeen();
    void OnUpdateRecentFile(u32 nIndex, CCmdUI& ui) const;
    void OnOpenRecentFile(u32 nIndex);
    bool HandOver(const std::vector<std::string>& paths) const;
    bool CanOpenRequests() const;
    void OpenRequests();
    bool Print(const CCommandLineInfo& info);

    std::vector<std::unique_ptr<CMultiDocTemplate>> m_templates;
    int m_nArgc = 0;
    char** m_pArgv = nullptr;
    int m_nExitStatus = EXIT_FAILURE;  // where InitInstance ends the program
    std::unique_ptr<Profile> m_pProfile;
    CRecentFileList m_recentFiles{0};
    std::unique_ptr<ShellOpen> m_pShellOpen;
    std::deque<std::vector<std::string>> m_requests;  // lists of URIs that wait to be opened
    bool m_bEnding = false;
    bool m_bInRequest = false;
    bool m_bRecentFilesChanged = false;  // since they were last written, or could not be
    bool m_bSeen = false;                // the main window has been on the screen
    bool m_bInIdle = false;
    bool m_bIdleFailed = false;  // reported once, until the handlers run through again
};

CWinApp* AfxGetApp();

// Reports the exception, as AfxReportException does, once the present event is over.
void AfxReportLater(std::exception_ptr pException);

// Starts the toolkit. A status says that the program has to end with it: it has answered on the terminal, or
// there is no display.
std::optional<int> AfxWinInit(int argc, char** argv);
void AfxWinTerm();

// The whole life of the program; its status.
int AfxWinMain(int argc, char** argv);
