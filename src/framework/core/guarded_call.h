// The border between the window system, through whose calls no exception may pass, and the program that it
// calls: every command, notification and event enters through here.
#pragma once

// Tells the user about the exception being handled; to be called while one is. Throws nothing itself: where
// even the message cannot be had, none is shown.
void AfxReportException() noexcept;

// False when the call ended with an exception. It is reported, and the program runs on.
template <typename Call>
bool AfxGuardedCall(Call&& call) noexcept {
    try {
        call();
        return true;
    } catch (...) {
        AfxReportException();
        return false;
    }
}
