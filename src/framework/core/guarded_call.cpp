#include "framework/core/guarded_call.h"

#include "framework/core/answers.h"
#include "framework/core/exception.h"

#include <exception>

void AfxReportException(const std::string& strLead) noexcept {
    try {
        try {
            throw;
        } catch (const CMemoryException& exception) {
            AfxMessageBox(strLead + AfxMemoryText(exception).data() + ".");
        } catch (const std::exception& exception) {
            AfxMessageBox(strLead + exception.what() + ".");
        } catch (...) {
            AfxMessageBox(strLead + "The command failed.");
        }
    } catch (...) {
        // Nothing is left to say it with.
    }
}
