// The application: templates, main window, message loop. One global object of a class derived from it is the
// program.
#pragma once

#include "framework/core/cmd_target.h"
#include "framework/core/command_line.h"
#include "framework/qt/doc_template.h"
#include "framework/qt/mdi.h"

#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CWinApp : public CCmdTarget {
  public:
    CWinApp();
    ~CWinApp() override;

    // Makes the main window and opens what the command line names. False ends the program.
    virtual bool InitInstance();

    // Runs until the main window is closed; the program's status.
    int Run();

    // Takes down windows and templates.
    void ExitInstance();

    void AddDocTemplate(std::unique_ptr<CMultiDocTemplate> pTemplate);

    void ParseCommandLine(CCommandLineInfo& info) const;

    // Opens the files in their order, or prints one. False when the program is to end: all of them failed, or
    // the page is done.
    bool ProcessShellCommand(const CCommandLineInfo& info);

    // The file goes to the template of its extension, to the first one where it has none. Null when it
    // failed, which has been reported then.
    CDocument* OpenDocumentFile(const std::string& strPathName);

    // Runs the update handlers of everything that shows a state.
    void OnIdle();

    // Handles what has happened, without waiting for more.
    void PumpMessages();

    CMDIFrameWnd* GetMainWnd() const { return m_pMainWnd.get(); }

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

    bool Print(const CCommandLineInfo& info);

    std::vector<std::unique_ptr<CMultiDocTemplate>> m_templates;
    int m_nArgc = 0;
    char** m_pArgv = nullptr;
    int m_nExitStatus = EXIT_FAILURE;  // where InitInstance ends the program
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
