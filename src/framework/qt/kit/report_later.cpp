#include "framework/qt/kit/report_later.h"

#include "framework/core/guarded_call.h"

#include <QCoreApplication>

void AfxReportLater(std::exception_ptr pException) {
    QMetaObject::invokeMethod(
        qApp, [pException] { AfxGuardedCall([&] { std::rethrow_exception(pException); }); },
        Qt::QueuedConnection);
}
