// Files that the desktop, another copy of the program or a drop on its window asks it to open. They wait
// until no dialog and no menu is up.
#pragma once

#include "framework/qt/kit/shell_open.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class CShellRequests {
  public:
    CShellRequests();
    ~CShellRequests();

    // Takes part in what the desktop opens, until Close. comeToFront is called for what has to wait.
    void Listen(const std::function<void(const StartupToken&)>& comeToFront);
    void Close();

    // Passes the paths on to the copy of the program that runs already, with what the desktop started this
    // one by. False when there is none. Needs no Listen before it, and no display.
    bool HandOver(const std::vector<std::string>& paths);

    void Add(const ShellRequest& request) { m_waiting.push_back(request); }
    bool IsEmpty() const { return m_waiting.empty(); }

    // Whether one waits and can be carried out now.
    bool CanOpen() const;

    // Carries them out in their order: comeToFront for each, then open for all of its paths.
    void Open(const std::function<void(const StartupToken&)>& comeToFront,
              const std::function<void(const std::vector<std::string>&)>& open);

  private:
    std::unique_ptr<ShellOpen> m_pShellOpen;
    std::deque<ShellRequest> m_waiting;
    const StartupToken m_startup;  // read before the toolkit starts
    bool m_bOpening = false;
};
