// Faults found where no box may be opened: inside a paint event, or in the toolkit's own calls.
#pragma once

#include <exception>

// Reports the exception, as AfxReportException does, once the present event is over.
void AfxReportLater(std::exception_ptr exception);
