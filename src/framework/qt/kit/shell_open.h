// The program as the desktop sees it: one name on the session bus, which the first of its running copies owns
// and the next one takes over when that ends, and the requests that come in under it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

class QObject;

class ShellOpen {
  public:
    // What to do about a request: open these URIs, or only come to the front where there are none.
    using Request = std::function<void(const std::vector<std::string>&)>;

    // Asks for the name, or waits in line for it. The program goes on meanwhile, as long as the toolkit
    // itself waits for no bus. Without one nothing comes in.
    ShellOpen(const std::string& strName, Request request);
    ~ShellOpen();
    ShellOpen(const ShellOpen&) = delete;
    ShellOpen& operator=(const ShellOpen&) = delete;

    // Passes the request on to the copy that owns the name. False when no other one does.
    bool HandOver(const std::vector<std::string>& uris);

  private:
    void AskForName();
    void WaitForBus();

    std::string m_strName;
    std::unique_ptr<QObject> m_pObject;  // stands for the program on the bus
    std::thread m_asking;
};
