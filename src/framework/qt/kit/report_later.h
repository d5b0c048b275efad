// Faults found where no box may be opened: inside a paint event, in the toolkit's own calls, and in those of
// a control that can go while the box is up.
#pragma once

#include <exception>

// Reports the exception, as AfxReportException does, once the present event is over.
void AfxReportLater(std::exception_ptr exception);
