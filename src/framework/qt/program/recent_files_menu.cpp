#include "framework/qt/program/recent_files_menu.h"

#include "framework/core/cmd_target.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"

#include <QApplication>
#include <QFontMetrics>

namespace {

constexpr int MENU_LETTERS = 50;  // of average width, of a path

// A path as its item shows it: with its mnemonic and, where it is long, without its middle.
QString ItemText(u32 nIndex, const std::string& strPath) {
    const QFontMetrics metrics(QApplication::font("QMenu"));
    QString path = metrics.elidedText(ToDisplayText(strPath), Qt::ElideMiddle,
                                      MENU_LETTERS * metrics.averageCharWidth());
    return QStringLiteral("&%1 ").arg(nIndex + 1) + path.replace(u'&', QStringLiteral("&&"));
}

}  // namespace

void CRecentFilesMenu::Load(Profile& profile, u32 nMaxMRU) {
    m_pProfile = &profile;
    m_list = CRecentFileList(nMaxMRU);
    m_list.ReadList(*m_pProfile);
}

void CRecentFilesMenu::Add(const std::string& strPath) {
    m_list.Add(strPath);
    m_bChanged = true;
}

void CRecentFilesMenu::Remove(const std::string& strPath) {
    m_list.Remove(strPath);
    m_bChanged = true;
}

void CRecentFilesMenu::Write() {
    m_bChanged = false;
    if (m_pProfile) m_list.WriteList(*m_pProfile);
}

void CRecentFilesMenu::UpdateItem(u32 nIndex, CCmdUI& ui) const {
    const bool there = nIndex < m_list.GetSize();
    ui.SetText(there ? ItemText(nIndex, m_list[nIndex]).toStdString() : nIndex == 0 ? "Recent File" : "");
    ui.SetPrompt(there ? m_list[nIndex] : AfxLoadPrompt(ID_FILE_MRU_FILE1));
    ui.Enable(there);
}
