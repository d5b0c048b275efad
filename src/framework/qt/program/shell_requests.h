// Files that the desktop, another copy of the program or a drop on its window asks it to open. They wait
// until no dialog and no menu is up.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class ShellOpen;

class CShellRequests {
  public:
    CShellRequests();
    ~CShellRequests();

    // Takes part in what the desktop opens, until Close.
    void Listen();
    void Close();

    // Passes the paths on to the copy of the program that runs already. False when there is none.
    bool HandOver(const std::vector<std::string>& paths);

    void Add(const std::vector<std::string>& uris) { m_waiting.push_back(uris); }
    bool IsEmpty() const { return m_waiting.empty(); }

    // Whether one waits and can be carried out now.
    bool CanOpen() const;

    // Carries them out in their order: comeToFront for each, then open for all of its paths.
    void Open(const std::function<void()>& comeToFront,
              const std::function<void(const std::vector<std::string>&)>& open);

  private:
    std::unique_ptr<ShellOpen> m_pShellOpen;
    std::deque<std::vector<std::string>> m_waiting;  // lists of URIs
    bool m_bOpening = false;
};
