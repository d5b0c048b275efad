#include "framework/qt/program/shell_requests.h"

#include "framework/core/answers.h"
#include "framework/core/document.h"
#include "framework/core/path_name.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/file_uri.h"

#include <QApplication>
#include <QScopedValueRollback>

CShellRequests::CShellRequests() : m_startup(AfxGetStartupToken()) {}

CShellRequests::~CShellRequests() = default;

void CShellRequests::Listen(const std::function<void(const StartupToken&)>& comeToFront) {
    m_pShellOpen = std::make_unique<ShellOpen>(AfxLoadString(AFX_IDS_SHELL_NAME),
                                               [this, comeToFront](const ShellRequest& request) {
                                                   Add(request);
                                                   // What it waits for is to be seen.
                                                   if (!CanOpen()) comeToFront(request.token);
                                               });
}

void CShellRequests::Close() {
    m_pShellOpen.reset();
}

bool CShellRequests::HandOver(const std::vector<std::string>& paths) {
    ShellRequest request;
    for (const std::string& path : paths) request.uris.push_back(ToFileUri(GetFullPath(path)));
    request.token = m_startup;
    if (m_pShellOpen) return m_pShellOpen->HandOver(request);
    return AfxHandOver(AfxLoadString(AFX_IDS_SHELL_NAME), request);
}

// A menu stays open on the list of recent files that it shows.
bool CShellRequests::CanOpen() const {
    return !m_waiting.empty() && !m_bOpening && !QApplication::activeModalWidget() &&
           !QApplication::activePopupWidget();
}

void CShellRequests::Open(const std::function<void(const StartupToken&)>& comeToFront,
                          const std::function<void(const std::vector<std::string>&)>& open) {
    while (CanOpen()) {
        const ShellRequest request = m_waiting.front();
        m_waiting.pop_front();
        comeToFront(request.token);
        const QScopedValueRollback<bool> opening(m_bOpening, true);
        std::vector<std::string> paths;
        for (const std::string& uri : request.uris) {
            if (const std::optional<std::string> path = FromFileUri(uri))
                paths.push_back(*path);
            else
                AfxMessageBox(NotOpenedLead(uri) + "It is no file on this computer.");
        }
        open(paths);
    }
}
