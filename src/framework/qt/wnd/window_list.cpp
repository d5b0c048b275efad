#include "framework/qt/wnd/window_list.h"

#include "framework/core/answers.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/dialog_owner.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

class WindowListDialog final : public ModalDialog {
  public:
    WindowListDialog(const std::vector<std::string>& titles, int nCurrent) : m_dialog(AfxGetDialogOwner()) {
        m_dialog.setWindowTitle(ToDisplayText(AfxLoadTip(ID_WINDOW_MORE)));
        auto* const layout = new QVBoxLayout(&m_dialog);
        auto* const buttons = new QDialogButtonBox;
        layout->addWidget(&m_list);
        layout->addWidget(buttons);
        for (const std::string& title : titles) m_list.addItem(ToDisplayText(title));
        m_list.setTextElideMode(Qt::ElideMiddle);
        m_list.setCurrentRow(nCurrent);
        buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole)->setDefault(true);
        buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
        QObject::connect(buttons, &QDialogButtonBox::accepted, &m_dialog, &QDialog::accept);
        QObject::connect(buttons, &QDialogButtonBox::rejected, &m_dialog, &QDialog::reject);
        QObject::connect(&m_list, &QListWidget::itemDoubleClicked, &m_dialog, &QDialog::accept);
    }

    int GetChoice() const { return m_list.currentRow(); }

    std::string GetItemText(u32) const override { return m_list.currentItem()->text().toStdString(); }
    void SetItemText(u32, const std::string& strTitle) override {
        for (QListWidgetItem* const item : m_list.findItems(ToDisplayText(strTitle), Qt::MatchExactly))
            m_list.setCurrentItem(item);
    }
    bool Press(u32) override { return true; }
    int Wait() override { return m_dialog.exec() == QDialog::Accepted ? IDOK : IDCANCEL; }

  private:
    QDialog m_dialog;
    QListWidget m_list;
};

}  // namespace

std::optional<int> AfxChooseWindow(const std::vector<std::string>& titles, int nCurrent) {
    WindowListDialog dialog(titles, nCurrent);
    if (CurrentAnswers().Dialog(ID_WINDOW_MORE, dialog) != IDOK) return std::nullopt;
    return dialog.GetChoice();
}
