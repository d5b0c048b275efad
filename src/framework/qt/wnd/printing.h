// Printing: the printer that the program prints on, the questions about it, and the page that a view is put
// on. Without any printer, pages go to PDF files.
#pragma once

#include "framework/core/answers.h"

#include <string>

class CDC;
class QPrinter;

// One printing of one view.
struct CPrintInfo {
    QPrinter* m_pPrinter;     // borrowed
    bool m_bDirect = false;   // without asking
    bool m_bPreview = false;  // on the screen
};

// What is put on a page.
class CPrintable {
  public:
    virtual ~CPrintable() = default;

    virtual std::string GetPrintTitle() const = 0;

    virtual void OnBeginPrinting(CDC*, CPrintInfo*) {}
    virtual void OnPrint(CDC* pDC, CPrintInfo* pInfo) = 0;
    virtual void OnEndPrinting(CDC*, CPrintInfo*) {}
};

// Of the Print dialog: the PDF file to make, empty to print on paper.
constexpr u32 AFX_IDC_PRINT_FILE = 1154;

// The program's printer, with the settings that the user gave it. Made when it is first asked for.
QPrinter& AfxGetPrinter();

// Makes it the one of this name, or the PDF file where the name ends in .pdf. False when there is none.
bool AfxSelectPrinter(const std::string& strName);

// To be called before the toolkit goes.
void AfxReleasePrinter();

// The Print dialog, which proposes a file of the page's own title in the folder chosen last; or, without
// asking, whether there is a printer. The user is told when there is none.
bool AfxPreparePrinting(const CPrintable& printable, CPrintInfo& info);

// Makes one page. Throws when that cannot be.
void AfxPrintPage(CPrintable& printable, CPrintInfo& info);

// Shows how the page would look.
void AfxPreviewPage(CPrintable& printable, CPrintInfo& info);
void AfxSetUpPrinter();
