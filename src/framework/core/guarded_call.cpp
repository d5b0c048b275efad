#include "framework/core/guarded_call.h"

#include "framework/core/answers.h"
#include "framework/core/exception.h"

#include <exception>
#include <new>
#include <string>

void AfxReportException() noexcept {
    try {
        try {
            throw;
        } catch (const std::bad_alloc&) {
            AfxMessageBox(std::string(CMemoryException().what()) + ".");
        } catch (const std::exception& exception) {
            AfxMessageBox(std::string(exception.what()) + ".");
        } catch (...) {
            AfxMessageBox("The command failed.");
        }
    } catch (...) {
        // Nothing is left to say it with.
    }
}
