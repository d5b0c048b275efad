// The signals by which a terminal, a session or a person asks the program to end. One that was ignored when
// the program was started stays so, and a second one of the same kind ends it at once.
#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

class CEndSignals {
  public:
    // Says in the message loop, whichever runs, which one came. Where no pipe can be had they end the program
    // as they always do.
    explicit CEndSignals(std::function<void(int)> onSignal);
    ~CEndSignals();
    CEndSignals(const CEndSignals&) = delete;
    CEndSignals& operator=(const CEndSignals&) = delete;

  private:
    void Read();

    std::function<void(int)> m_onSignal;
    int m_nReadEnd = -1;
    std::unique_ptr<QSocketNotifier> m_pNotifier;
};
