#include "app/vistrel_app.h"

#include "app/about_dialog.h"
#include "app/child_frame.h"
#include "app/main_frame.h"
#include "app/resource_ids.h"
#include "app/resources/resources.h"
#include "app/tolerance_setting.h"
#include "app/vistrel_view.h"
#include "chunks/register_chunks.h"
#include "document/vistrel_doc.h"
#include "framework/core/answers.h"
#include "iff/read_only_check.h"

namespace {

// Before main, so that no file can be read without them.
const bool g_registered = [] {
    CheckIffReadOnly();
    RegisterChunks();
    return true;
}();

constexpr u32 RECENT_FILES = 9;
constexpr u32 TEMPLATES[] = {IDR_ALL_TYPES, IDR_IFF_TYPE, IDR_TFF_TYPE, IDR_TMG_TYPE, IDR_PSD_TYPE};

}  // namespace

CVistrelApp::CVistrelApp() {
    AfxSetResources(&g_resources);
    m_commandLine.AddSwitch(TOLERANT_SWITCH);
}

const MessageMap& CVistrelApp::GetMessageMap() const {
    static constexpr MessageEntry entries[] = {
        OnCommand<&CVistrelApp::OnAppAbout>(ID_APP_ABOUT),
        OnCommand<&CVistrelApp::OnNextFile>(ID_NEXT_FILE),
        OnUpdateCommandUi<&CVistrelApp::OnUpdateNextFile>(ID_NEXT_FILE),
        OnCommand<&CVistrelApp::OnPreviousFile>(ID_PREVIOUS_FILE),
        OnUpdateCommandUi<&CVistrelApp::OnUpdatePreviousFile>(ID_PREVIOUS_FILE),
        OnCommand<&CVistrelApp::OnReload>(ID_RELOAD),
        OnUpdateCommandUi<&CVistrelApp::OnUpdateReload>(ID_RELOAD),
        OnCommand<&CVistrelApp::OnFileChanged>(ID_FILE_CHANGED),
    };
    static const MessageMap map = {&CWinApp::GetMessageMap(), entries};
    return map;
}

Tolerance CVistrelApp::GetTolerance() const {
    if (m_commandLine.HasSwitch(TOLERANT_SWITCH)) return Tolerance::Always;
    const Tolerance kept = ToTolerance(GetProfileString(READING_SECTION, TOLERANT_ENTRY, ""));
    // Nobody is there to be asked where a page is printed.
    const bool cannotAsk = m_commandLine.IsPrint() && kept == Tolerance::Ask;
    return cannotAsk ? Tolerance::Never : kept;
}

std::function<void(CDocument&)> CVistrelApp::PrepareDocuments() {
    return [tolerance = GetTolerance()](CDocument& document) {
        dynamic_cast<CVistrelDoc&>(document).m_tolerance = tolerance;
    };
}

bool CVistrelApp::AskForConsent(const std::vector<std::shared_ptr<CDocument>>& documents) {
    const YesNoAnswer answer = CurrentAnswers().AskYesNo(ConsentQuestion(documents));
    const bool yes = answer.nButton == IDYES;
    if (answer.bChecked && !WriteProfileString(READING_SECTION, TOLERANT_ENTRY, yes ? ALWAYS : NEVER))
        AfxMessageBox("The settings could not be written. The answer counts until the program ends.");
    return yes;
}

CVistrelView* CVistrelApp::GetActiveView() const {
    const CMDIChildWnd* const child = m_pMainWnd->MDIGetActive();
    return child ? dynamic_cast<CVistrelView*>(child->GetActiveView()) : nullptr;
}

void CVistrelApp::OnAppAbout() {
    CAboutDlg().DoModal();
}

bool CVistrelApp::InitInstance() {
    SetRegistryKey("Talvorine\\Internal");
    LoadStdProfileSettings(RECENT_FILES);
    for (const u32 id : TEMPLATES)
        AddDocTemplate(std::make_unique<CMultiDocTemplate>(id, RuntimeClassOf<CVistrelDoc>(),
                                                           RuntimeClassOf<CChildFrame>(),
                                                           RuntimeClassOf<CVistrelView>()));

    EnableShellOpen();
    RegisterShellFileTypes(IDR_MAINFRAME);

    auto mainFrame = std::make_unique<CMainFrame>();
    if (!mainFrame->LoadFrame(IDR_MAINFRAME)) return false;
    SetMainWnd(std::move(mainFrame));

    CCommandLineInfo info;
    ParseCommandLine(info);
    if (info.m_nShellCommand != CCommandLineInfo::FileNew && !ProcessShellCommand(info)) return false;

    m_pMainWnd->ShowWindow(true);
    return true;
}
