// One look at a document, inside a frame.
#pragma once

#include "framework/qt/wnd/printing.h"
#include "framework/qt/wnd/wnd.h"

#include <memory>

class CDC;
class CDocument;
class CViewPlace;

class CView : public CWnd, public CPrintable {
  public:
    // Leaves the document, which goes with its last view.
    ~CView() override;

    void Create(CWnd& frame, CViewPlace& place, std::shared_ptr<CDocument> document);

    CDocument* GetDocument() const { return m_pDocument.get(); }

    // For another look at the same document.
    const std::shared_ptr<CDocument>& ShareDocument() const { return m_pDocument; }

    // Leaves the document for another one; what is shown follows at the next update.
    void SetDocument(std::shared_ptr<CDocument> document);

    // What the main window says of it while nothing else is to be said; empty for the program's own message.
    virtual std::string GetIdleMessage() const { return {}; }

    // The same while the pointer is over a point of the client area, in place of it; empty for nothing.
    virtual std::string GetPointerMessage(const CPoint& /*point*/) const { return {}; }

    // The id of the menu that a right click, or its key, opens; 0 for none.
    virtual u32 GetContextMenu() const { return 0; }

    // As the frame's present size lays it out, whatever has been shown yet. Right and bottom are negative
    // where the frame is too small for its bars.
    CRect GetClientRect() const override;

    // Called once, when the frame with all its bars is there.
    virtual void OnInitialUpdate();

    // The document, or what is shown of it, has changed.
    virtual void OnUpdate(CView* pSender, i64 lHint, CCmdTarget* pHint);

    virtual void OnDraw(CDC* pDC) = 0;

    // The wheel was turned with the Control key held, away from the user for a positive number, over a point
    // of the client area.
    virtual void OnControlWheel(int /*nNotches*/, const CPoint& /*point*/) {}

    // Puts the view on a page. False when the user thinks better of it, or cannot: that has been told then.
    bool Print(bool bDirect);

    // Printing goes through these: asking, which false ends, and then the page, which is drawn as the screen
    // is.
    virtual bool OnPreparePrinting(CPrintInfo* pInfo);
    void OnPrint(CDC* pDC, CPrintInfo*) override { OnDraw(pDC); }
    std::string GetPrintTitle() const override;

    // Draws the exposed part. An exception leaves the view empty until the next update.
    void Paint(CDC& dc);

    // The view comes first, then its document.
    bool VisitTargets(const Visitor& visit) override;

  protected:
    bool DoPreparePrinting(CPrintInfo* pInfo);

    // For the message map of a view that prints.
    void OnFilePrint();
    void OnFilePrintDirect();
    void OnFilePrintPreview();

  private:
    std::shared_ptr<CDocument> m_pDocument;
    CViewPlace* m_pPlace = nullptr;
    bool m_bDrawFailed = false;
};

// What the view has to say that the pointer is over; empty where it is over none, or the view says nothing.
std::string AfxGetPointerMessage();
