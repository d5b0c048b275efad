// The view: the window half of the picture on show. It fills the two lists of its frame, has the chosen
// picture made, stretches it over its client area and fits the frame to it.
#pragma once

#include "app/choice_list.h"
#include "display/display_image.h"
#include "framework/qt/wnd/view.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class CChildFrame;
class CVistrelDoc;
class FileWatch;

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
    void BuildChannelList(CChildFrame* pFrame, const ListEntry& channel = {});

    void OnLayerChanged(CChildFrame* pFrame);
    void OnChannelChanged(CChildFrame* pFrame);

    // Resizes the frame so that the client area takes the picture's size times the scale. The frame keeps its
    // place; one that is maximised or minimised is restored first.
    void FitFrameToImage(float fScale);

    const CVistrelDoc& GetDoc() const;

    // Takes what was read from the same file once more in place of the document, in all of its windows. Each
    // keeps its layer, its channel and its scale where they still exist.
    void Reload(const std::shared_ptr<CVistrelDoc>& document);

    // The document is another one, and is shown as one that was just opened. A frame that is maximised stays
    // so.
    void ShowFromTheStart();

    // Which file of its folder the document is; empty where nobody has gone through the folder.
    void SetFolderPlace(const std::string& strPlace) { m_strFolderPlace = strPlace; }

    void OnFrameRestored();

    // Whether the file is no longer the one that was read.
    bool HasFileChanged() const;

    // The same, but once for each change.
    bool TakeFileNews();

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

    CChildFrame* GetFrame() const;
    void FillLayerList(const std::vector<std::string>& names, u32 nSelected);
    void LeaveEmpty();
    float PictureScale() const;
    void NotePassedOver();

    void WatchFile();

    // Puts another reading of the file in place of the document and has each of its windows show it. A window
    // that cannot keeps none of the others from it.
    void ReplaceDocument(const std::shared_ptr<CVistrelDoc>& document,
                         const std::function<void(CVistrelView&)>& show);

    // The document is another one: fills the lists, selects the entries that are still there and makes the
    // picture. Whether it has another size than the one before.
    bool ShowOtherDocument(const ListEntry& layer, const ListEntry& channel);
    void ShowOtherReading(bool bActive);
    void ShowReload();

    // Whether the picture can be shown at a scale so many steps further.
    bool CanZoomBy(int nSteps) const;

    // The frame stands for itself: it is neither maximised nor minimised.
    void SizeFrameToImage(float fScale);

    // The same, for one that is either of the two only once it is restored.
    void SizeFreeFrame(float fScale);

    // Of a frame without a picture, however small the one before was.
    void SizeWithoutPicture();

    void SetScale(float fScale);

    Selection m_selection;                    // that is on show
    std::vector<std::string> m_layerNames;    // of the entries of the two lists
    std::vector<std::string> m_channelNames;  // likewise
    std::string m_strPassedOver;              // in the document, by the tolerant rules
    std::string m_strFolderPlace;
    std::shared_ptr<FileWatch> m_pWatch;  // of the document's file
    bool m_bSizeWhenRestored = false;     // the frame is to take the size of the picture, or of none
};
