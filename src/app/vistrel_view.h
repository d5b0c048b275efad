// The view: the window half of the picture on show. It fills the two lists of its frame, has the chosen
// picture made, stretches it over its client area and fits the frame to it.
#pragma once

#include "display/display_image.h"
#include "framework/qt/wnd/view.h"

#include <string>
#include <vector>

class CChildFrame;
class CVistrelDoc;

class CVistrelView : public CView, public DisplayImage {
  public:
    void OnInitialUpdate() override;
    void OnUpdate(CView* pSender, i64 lHint, CCmdTarget* pHint) override;
    void OnDraw(CDC* pDC) override;
    std::string GetIdleMessage() const override;
    std::string GetPointerMessage(const CPoint& point) const override;
    u32 GetContextMenu() const override;
    void OnControlWheel(int nNotches, const CPoint& point) override;
    bool OnPreparePrinting(CPrintInfo* pInfo) override;

    // Refills the Channel list for the selected layer, selects the channel or, where there is none such, the
    // first one, and makes the picture choice.
    void BuildChannelList(CChildFrame* pFrame, u32 nChannel = 0);

    void OnLayerChanged(CChildFrame* pFrame);
    void OnChannelChanged(CChildFrame* pFrame);

    // Resizes the frame so that the client area takes the picture's size times the scale. The frame keeps its
    // place; one that is maximised or minimised is restored first.
    void FitFrameToImage(float fScale);

  protected:
    const MessageMap& GetMessageMap() const override;

  private:
    void OnZoom();
    void OnUpdateZoom(CCmdUI* pUi);
    void OnZoomIn();
    void OnUpdateZoomIn(CCmdUI* pUi);
    void OnZoomOut();
    void OnUpdateZoomOut(CCmdUI* pUi);
    void OnActualSize();
    void OnUpdateActualSize(CCmdUI* pUi);
    void OnUpdateInfoPane(CCmdUI* pUi);
    void OnReadTolerantly();
    void OnUpdateReadTolerantly(CCmdUI* pUi);

    const CVistrelDoc& GetDoc() const;
    CChildFrame* GetFrame() const;
    void LeaveEmpty();
    float PictureScale() const;
    void NotePassedOver();

    // The document is another one, of the same file. Only the frame of the active view may be restored, or
    // the area scrolled to it: the others stay as they stand.
    void ShowOtherReading(bool bActive);

    // Whether the picture can be shown at a scale so many steps further.
    bool CanZoomBy(int nSteps) const;

    // The frame stands for itself: it is neither maximised nor minimised.
    void SizeFrameToImage(float fScale);

    Selection m_selection;        // that is on show
    std::string m_strPassedOver;  // in the document, by the tolerant rules
};
