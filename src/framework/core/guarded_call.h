// The border between the window system, through whose calls no exception may pass, and the program that it
// calls: every command, notification and event enters through here.
#pragma once

#include <string>

// Tells the user about the exception being handled, to be called while one is; strLead comes before the
// reason. Throws nothing itself: where even the message cannot be had, none is shown.
void AfxReportException(const std::string& strLead = {}) noexcept;

// False when the call ended with an exception. It is reported, and the program runs on.
template <typename Call>
bool AfxGuardedCall(Call&& call, const std::string& strLead = {}) noexcept {
    try {
        call();
        return true;
    } catch (...) {
        AfxReportException(strLead);
        return false;
    }
}
