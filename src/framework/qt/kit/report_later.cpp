#include "framework/qt/kit/report_later.h"

#include "framework/core/guarded_call.h"

#include <QCoreApplication>

void AfxReportLater(std::exception_ptr exception) {
    QMetaObject::invokeMethod(
        qApp, [exception] { AfxGuardedCall([&] { std::rethrow_exception(exception); }); },
        Qt::QueuedConnection);
}
