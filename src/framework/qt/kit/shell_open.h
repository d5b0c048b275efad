// The program as the desktop sees it: one name on the session bus, which the first of its running copies owns
// and the next one takes over when that ends, and the requests that come in under it.
#pragma once

#include "framework/qt/kit/activation.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

class QObject;

// To open these URIs, or only to come to the front where there are none.
struct ShellRequest {
    std::vector<std::string> uris;
    StartupToken token;
};

class ShellOpen {
  public:
    using OnRequest = std::function<void(const ShellRequest&)>;

    // Asks for the name, or waits in line for it. The program goes on meanwhile, as long as the toolkit
    // itself waits for no bus. Without one nothing comes in.
    ShellOpen(const std::string& strName, OnRequest onRequest);
    ~ShellOpen();
    ShellOpen(const ShellOpen&) = delete;
    ShellOpen& operator=(const ShellOpen&) = delete;

    // Passes the request on to the copy that owns the name. False when no other one does.
    bool HandOver(const ShellRequest& request);

  private:
    void AskForName();
    void WaitForBus();

    std::string m_strName;
    std::unique_ptr<QObject> m_pObject;  // stands for the program on the bus
    std::thread m_asking;
};

// Passes the request on to the copy of the program that owns the name, from one that owns nothing on the bus
// itself. Where there is none and files are to be opened, the bus starts the one that is installed. False
// when it knows none either, or that one does not start.
bool AfxHandOver(const std::string& strName, const ShellRequest& request);
