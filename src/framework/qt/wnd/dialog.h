// Dialogs that wait for their user, and the exchange between their controls and the members of their class.
#pragma once

#include "framework/core/answers.h"
#include "framework/qt/wnd/wnd.h"

class CDialog;

// One passage of values: from the controls, which are checked on the way, or to them.
class CDataExchange {
  public:
    // Tells the user what is wrong, puts the keyboard into the control exchanged last and ends the passage.
    [[noreturn]] void Fail(const std::string& strMessage);

    CDialog* m_pDlg;
    bool m_bSaveAndValidate;  // from the controls
    u32 m_nIDLastControl = 0;
};

// Throws CUserException, once the user was told, for a text that is no number.
void DDX_Text(CDataExchange* pDX, u32 nIDC, float& fValue);

// The same for a number that is neither a bound nor between them. To be called after the value's DDX_Text.
void DDV_MinMaxFloat(CDataExchange* pDX, float fValue, float fMin, float fMax);

class CDialog : public CWnd, public ModalDialog {
  public:
    explicit CDialog(u32 nIDTemplate) : m_nIDTemplate(nIDTemplate) {}

    // Shows the dialog in front of the main window until it is ended; the button that did.
    int DoModal();

    // Puts the keyboard into the control; a text in it is selected.
    void GotoDlgCtrl(u32 nID);

    std::string GetItemText(u32 nID) const override;
    void SetItemText(u32 nID, const std::string& strText) override;
    bool Press(u32 nIDButton) override;
    int Wait() override;

  protected:
    const MessageMap& GetMessageMap() const override;

    // Names the class's members and their controls.
    virtual void DoDataExchange(CDataExchange*) {}

  private:
    void OnOK();  // ends the dialog once every value passes
    void OnCancel();
    bool UpdateData(bool bSaveAndValidate);
    void EndDialog(int nResult);

    u32 m_nIDTemplate;
    int m_nResult = 0;  // 0 while it is open
};
