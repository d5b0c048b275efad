#include "framework/qt/wnd/printing.h"

#include "framework/core/disk_write.h"
#include "framework/core/exception.h"
#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/dialog_owner.h"
#include "framework/qt/wnd/dc.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QScreen>
#include <QToolBar>

#include <algorithm>
#include <memory>

namespace {

// Units of a page to the inch: it shows a picture in the size that it has on the screen.
constexpr int PAGE_UNITS = 96;

std::unique_ptr<QPrinter> g_pPrinter;
QString g_folder;  // of the PDF file that was made last; empty before the first one

void ToFile(QPrinter& printer, const QString& file) {
    printer.setOutputFormat(file.isEmpty() ? QPrinter::NativeFormat : QPrinter::PdfFormat);
    printer.setOutputFileName(file);
}

// One of the toolkit's dialogs, as it is put to the user.
class PrinterQuestion : public ModalDialog {
  public:
    PrinterQuestion(QPrinter& printer, QDialog& dialog) : m_printer(printer), m_dialog(dialog) {}

    std::string GetItemText(u32) const override {
        return QFile::encodeName(m_printer.outputFileName()).toStdString();
    }
    void SetItemText(u32, const std::string& strFile) override {
        ToFile(m_printer, QFile::decodeName(strFile.c_str()));
    }
    bool Press(u32) override { return true; }
    int Wait() override { return m_dialog.exec() == QDialog::Accepted ? IDOK : IDCANCEL; }

  private:
    QPrinter& m_printer;
    QDialog& m_dialog;
};

template <typename Dialog>
bool Ask(u32 nID, QPrinter& printer, Dialog& dialog) {
    PrinterQuestion question(printer, dialog);
    return CurrentAnswers().Dialog(nID, question) == IDOK;
}

// Where the program was started, unless that is a place of the system's.
QString FirstFolder() {
    return QFileInfo(QDir::currentPath()).isWritable() ? QDir::currentPath() : QDir::homePath();
}

// The file is called what the document is called, so that no page takes the place of another document's.
void ProposeFile(QPrinter& printer, const QString& title) {
    const QString name = QFileInfo(title).completeBaseName();
    const bool isThere = !g_folder.isEmpty() && QFileInfo(g_folder).isDir();
    const QDir folder(isThere ? g_folder : FirstFolder());
    printer.setOutputFileName(folder.filePath((name.isEmpty() ? title : name) + QStringLiteral(".pdf")));
}

bool AskToPrint(QPrinter& printer, const QString& title) {
    // A printer of paper that is asked to make a file calls it what its document is called.
    printer.setDocName(title);
    if (printer.outputFormat() == QPrinter::PdfFormat) ProposeFile(printer, title);
    QPrintDialog dialog(&printer, AfxGetDialogOwner());
    dialog.setOptions(QAbstractPrintDialog::PrintToFile);
    if (!Ask(ID_FILE_PRINT, printer, dialog)) return false;
    if (!printer.outputFileName().isEmpty()) g_folder = QFileInfo(printer.outputFileName()).absolutePath();
    return true;
}

// What could not be done is said by whoever prints.
std::string RefusalReason(const QPrinter& printer) {
    if (printer.outputFormat() != QPrinter::PdfFormat) return "The printer does not take it";
    return "\"" + QFile::encodeName(printer.outputFileName()).toStdString() + "\" cannot be written";
}

// Asked first, since the toolkit has words of its own for a file that cannot be made.
bool HasFolder(const QPrinter& printer) {
    return printer.outputFormat() != QPrinter::PdfFormat ||
           QFileInfo(printer.outputFileName()).dir().exists();
}

// The toolkit does not say how the writing went, but whether what stands last is there tells whether all
// before it found room.
bool IsWhole(const QPrinter& printer) {
    constexpr qint64 TAIL = 64;  // bytes
    const QString name = printer.outputFileName();
    if (printer.outputFormat() != QPrinter::PdfFormat || !QFileInfo(name).isFile()) return true;
    QFile file(name);
    if (!file.open(QIODevice::ReadWrite)) return false;
    file.seek(std::max(file.size() - TAIL, qint64{0}));
    return file.read(TAIL).trimmed().endsWith("%%EOF") && SyncToDisk(file.handle());
}

bool CanPrint(const QPrinter& printer) {
    return printer.outputFormat() == QPrinter::PdfFormat ? !printer.outputFileName().isEmpty()
                                                         : printer.isValid();
}

}  // namespace

QPrinter& AfxGetPrinter() {
    if (!g_pPrinter) g_pPrinter = std::make_unique<QPrinter>(QPrinter::HighResolution);
    return *g_pPrinter;
}

bool AfxSelectPrinter(const std::string& strName) {
    const QString name = QFile::decodeName(strName.c_str());
    QPrinter& printer = AfxGetPrinter();
    if (name.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive))
        ToFile(printer, name);
    else if (!QPrinterInfo::printerInfo(name).isNull())
        printer.setPrinterName(name);
    else
        return false;
    return true;
}

void AfxReleasePrinter() {
    g_pPrinter.reset();
}

bool AfxPreparePrinting(const CPrintable& printable, CPrintInfo& info) {
    if (info.m_bPreview) return true;
    QPrinter& printer = *info.m_pPrinter;
    if (info.m_bDirect) {
        if (!CanPrint(printer)) AfxMessageBox(AfxLoadString(AFX_IDP_NO_PRINTER));
        return CanPrint(printer);
    }
    return AskToPrint(printer, ToDisplayText(printable.GetPrintTitle()));
}

void AfxPrintPage(CPrintable& printable, CPrintInfo& info) {
    QPrinter& printer = *info.m_pPrinter;
    printer.setDocName(ToDisplayText(printable.GetPrintTitle()));
    QPainter painter;
    const bool hasPlace = info.m_bPreview || HasFolder(printer);
    if (!hasPlace || !painter.begin(&printer)) throw CException(RefusalReason(printer));
    // A picture of few colours does not bear the losses of photographs.
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.scale(printer.logicalDpiX() / double{PAGE_UNITS}, printer.logicalDpiY() / double{PAGE_UNITS});
    const QSize page = printer.pageLayout().paintRectPixels(PAGE_UNITS).size();
    CDC dc(&painter, {0, 0, page.width(), page.height()});
    printable.OnBeginPrinting(&dc, &info);
    printable.OnPrint(&dc, &info);
    printable.OnEndPrinting(&dc, &info);
    const bool ended = painter.end() && printer.printerState() != QPrinter::Error;
    if (!ended || (!info.m_bPreview && !IsWhole(printer))) throw CException(RefusalReason(printer));
}

namespace {

// The toolkit's own button would write to the file printed before when its user thinks better of it. So it
// puts the question that every other printing does.
void PrintFromPreview(QPrintPreviewDialog& dialog, CPrintable& printable, const CPrintInfo& info) {
    const auto print = [&dialog, &printable, direct = info] {
        CPrintInfo paper = direct;
        paper.m_bPreview = false;
        if (!AfxPreparePrinting(printable, paper)) return;
        AfxPrintPage(printable, paper);
        dialog.accept();
    };
    for (QAction* const action : dialog.findChildren<QAction*>()) {
        if (action->text() != QPrintPreviewDialog::tr("Print")) continue;
        action->disconnect(&dialog);
        QObject::connect(action, &QAction::triggered, &dialog, [print] { AfxGuardedCall(print); });
    }
}

// The button that prints is the last one, and in a narrow dialog is not to be seen.
void ShowWholeToolBar(QPrintPreviewDialog& dialog) {
    const auto* const toolBar = dialog.findChild<QToolBar*>();
    if (!toolBar) return;
    const int room = dialog.screen()->availableGeometry().width();
    dialog.setMinimumWidth(std::min(toolBar->sizeHint().width(), room));
}

}  // namespace

void AfxPreviewPage(CPrintable& printable, CPrintInfo& info) {
    QPrinter& printer = *info.m_pPrinter;
    // In the dialog's caption, where the document that was printed last would stand otherwise.
    printer.setDocName(ToDisplayText(printable.GetPrintTitle()));
    QPrintPreviewDialog dialog(&printer, AfxGetDialogOwner());
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested,
                     [&printable, info](QPrinter* pPrinter) mutable {
                         info.m_pPrinter = pPrinter;
                         AfxGuardedCall([&] { AfxPrintPage(printable, info); });
                     });
    PrintFromPreview(dialog, printable, info);
    ShowWholeToolBar(dialog);
    Ask(ID_FILE_PRINT_PREVIEW, printer, dialog);
}

void AfxSetUpPrinter() {
    QPrinter& printer = AfxGetPrinter();
    // The pages of a file are set up as those of a printer are, but the toolkit grumbles about it when it
    // makes the dialog.
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QPageSetupDialog dialog(&printer, AfxGetDialogOwner());
    qInstallMessageHandler(before);
    Ask(ID_FILE_PRINT_SETUP, printer, dialog);
}
