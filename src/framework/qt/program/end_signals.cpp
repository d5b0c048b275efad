#include "framework/qt/program/end_signals.h"

#include "base/types.h"
#include "framework/core/guarded_call.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t g_nWriteEnd = -1;

// It comes in the middle of anything, and only passes the number on.
void OnSignal(int nSignal) {
    const int before = errno;
    const u8 number = static_cast<u8>(nSignal);
    [[maybe_unused]] const ssize_t written = write(g_nWriteEnd, &number, 1);
    errno = before;
}

void Catch(int nSignal) {
    struct sigaction action = {};
    if (sigaction(nSignal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
    action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART | SA_RESETHAND;
    sigaction(nSignal, &action, nullptr);
}

// What is sent to a program that is ending already is no matter any more.
void Release(int nSignal) {
    struct sigaction action = {};
    if (sigaction(nSignal, nullptr, &action) == 0 && action.sa_handler == OnSignal)
        std::signal(nSignal, SIG_DFL);
}

}  // namespace

CEndSignals::CEndSignals(std::function<void(int)> onSignal) : m_onSignal(std::move(onSignal)) {
    std::array<int, 2> ends;
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    m_nReadEnd = ends[0];
    g_nWriteEnd = ends[1];
    m_pNotifier = std::make_unique<QSocketNotifier>(m_nReadEnd, QSocketNotifier::Read);
    QObject::connect(m_pNotifier.get(), &QSocketNotifier::activated, [this] { Read(); });
    for (const int number : SIGNALS) Catch(number);
}

CEndSignals::~CEndSignals() {
    if (!m_pNotifier) return;
    for (const int number : SIGNALS) Release(number);
    m_pNotifier.reset();
    close(m_nReadEnd);
    close(g_nWriteEnd);
}

void CEndSignals::Read() {
    u8 number = 0;
    if (read(m_nReadEnd, &number, 1) == 1) AfxGuardedCall([&] { m_onSignal(number); });
}
