#include "framework/qt/wnd/dialog.h"

#include "framework/core/exception.h"
#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/dialog_owner.h"
#include "framework/qt/kit/dialog_template.h"
#include "framework/qt/kit/float_text.h"

#include <QDialog>
#include <QLineEdit>

// Data exchange

void CDataExchange::Fail(const std::string& strMessage) {
    AfxMessageBox(strMessage);
    m_pDlg->GotoDlgCtrl(m_nIDLastControl);
    throw CUserException();
}

void DDX_Text(CDataExchange* pDX, u32 nIDC, float& fValue) {
    pDX->m_nIDLastControl = nIDC;
    if (!pDX->m_bSaveAndValidate) {
        pDX->m_pDlg->SetItemText(nIDC, FloatToText(fValue));
        return;
    }
    const std::optional<float> value = TextToFloat(pDX->m_pDlg->GetItemText(nIDC));
    if (!value) pDX->Fail(AfxLoadString(AFX_IDP_PARSE_REAL));
    fValue = *value;
}

void DDV_MinMaxFloat(CDataExchange* pDX, float fValue, float fMin, float fMax) {
    if (!pDX->m_bSaveAndValidate || (fValue >= fMin && fValue <= fMax)) return;
    const auto text = [](float fBound) { return ToDisplayText(FloatToText(fBound)); };
    pDX->Fail(
        ToDisplayText(AfxLoadString(AFX_IDP_PARSE_REAL_RANGE)).arg(text(fMin), text(fMax)).toStdString());
}

// Dialogs

namespace {

class DialogWindow final : public QDialog {
  public:
    DialogWindow(QWidget* pParent, CDialog& dialog) : QDialog(pParent), m_dialog(dialog) {}

    // The Escape key and the caption's button.
    void reject() override {
        AfxGuardedCall([&] { m_dialog.Press(IDCANCEL); });
    }

  private:
    CDialog& m_dialog;
};

}  // namespace

int CDialog::DoModal() {
    const DialogResource& resource = *AfxFindDialog(m_nIDTemplate);
    auto* const window = new DialogWindow(AfxGetDialogOwner(), *this);
    Attach(window, AfxGetMainWnd());
    SetWindowText(resource.pszCaption);
    window->setFixedSize(AfxCreateControls(*window, resource, *this));
    UpdateData(false);
    for (const ControlResource& control : resource.controls)
        if (control.kind == ControlKind::Edit) GotoDlgCtrl(control.nID);
    return CurrentAnswers().Dialog(m_nIDTemplate, *this);
}

void CDialog::GotoDlgCtrl(u32 nID) {
    QWidget* const control = AfxFindControl(*GetWidget(), nID);
    control->setFocus();
    auto* const edit = qobject_cast<QLineEdit*>(control);
    if (!edit) return;
    // From its end to its beginning, which shows then where the text is too long.
    const int length = static_cast<int>(edit->text().size());
    edit->setSelection(length, -length);
}

std::string CDialog::GetItemText(u32 nID) const {
    return static_cast<QLineEdit*>(AfxFindControl(*GetWidget(), nID))->text().toStdString();
}

void CDialog::SetItemText(u32 nID, const std::string& strText) {
    static_cast<QLineEdit*>(AfxFindControl(*GetWidget(), nID))->setText(ToDisplayText(strText));
}

bool CDialog::Press(u32 nIDButton) {
    OnCmdMsg(nIDButton, CN_COMMAND, nullptr);
    return m_nResult != 0;
}

int CDialog::Wait() {
    static_cast<QDialog*>(GetWidget())->exec();
    return m_nResult;
}

const MessageMap& CDialog::GetMessageMap() const {
    static constexpr MessageEntry entries[] = {
        OnCommand<&CDialog::OnOK>(IDOK),
        OnCommand<&CDialog::OnCancel>(IDCANCEL),
    };
    static const MessageMap map = {&CWnd::GetMessageMap(), entries};
    return map;
}

void CDialog::OnOK() {
    if (UpdateData(true)) EndDialog(IDOK);
}

void CDialog::OnCancel() {
    EndDialog(IDCANCEL);
}

bool CDialog::UpdateData(bool bSaveAndValidate) {
    CDataExchange exchange = {this, bSaveAndValidate};
    try {
        DoDataExchange(&exchange);
        return true;
    } catch (const CUserException&) {
        return false;
    }
}

void CDialog::EndDialog(int nResult) {
    m_nResult = nResult;
    static_cast<QDialog*>(GetWidget())->done(nResult);
}
