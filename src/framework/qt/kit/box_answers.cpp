#include "framework/qt/kit/box_answers.h"

#include "framework/core/answers.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/dialog_owner.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMessageBox>
#include <QRegularExpression>
#include <QScreen>
#include <QTreeView>

#include <algorithm>

namespace {

// Room for a name of some thirty letters beside its size, its type and its date.
constexpr int OPEN_DIALOG_LETTERS = 125;

// While a question is up the pointer is the plain one again: it is the program that waits.
class PlainCursor {
  public:
    PlainCursor() {
        if (m_bWaiting) QApplication::changeOverrideCursor(Qt::ArrowCursor);
    }
    ~PlainCursor() {
        if (m_bWaiting) QApplication::changeOverrideCursor(Qt::WaitCursor);
    }
    PlainCursor(const PlainCursor&) = delete;
    PlainCursor& operator=(const PlainCursor&) = delete;

  private:
    const bool m_bWaiting = QApplication::overrideCursor() != nullptr;
};

// A name may be longer than any line and have no blank in it, so that it may be broken every 60 characters.
// The mark for that shows as nothing.
QString Breakable(QString text) {
    return text.replace(QRegularExpression(QStringLiteral("(\\S{60}\\pM*)")), QStringLiteral("\\1\u200B"));
}

// The toolkit's columns begin narrower than what stands in them. The name has what the others leave, and the
// desktop's own dialog has no list of ours.
void ShowWholeColumns(QFileDialog& dialog) {
    auto* const list = dialog.findChild<QTreeView*>();
    if (!list) return;
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    const int wanted = dialog.fontMetrics().averageCharWidth() * OPEN_DIALOG_LETTERS;
    const int most = dialog.screen()->availableSize().width() * 9 / 10;
    dialog.resize(std::max(dialog.width(), std::min(wanted, most)), dialog.height());
}

// The toolkit takes the key that leaves a box for a click on its escape button.
class QuestionBox final : public QMessageBox {
  public:
    using QMessageBox::QMessageBox;

  protected:
    void keyPressEvent(QKeyEvent* pEvent) override {
        if (pEvent->matches(QKeySequence::Cancel))
            reject();
        else
            QMessageBox::keyPressEvent(pEvent);
    }
};

class BoxAnswers final : public Answers {
  public:
    int Message(const std::string& strText, const std::string& strCaption, u32 nStyle) override {
        QMessageBox box(nStyle & MB_ICONEXCLAMATION ? QMessageBox::Warning : QMessageBox::NoIcon,
                        ToDisplayText(strCaption), QString(), QMessageBox::Ok, AfxGetDialogOwner());
        box.setTextFormat(Qt::PlainText);
        box.setText(Breakable(ToDisplayText(strText)));
        if (nStyle & MB_SETFOREGROUND) box.raise();
        const PlainCursor plain;
        return box.exec() == QMessageBox::Ok ? IDOK : IDCANCEL;
    }

    YesNoAnswer AskYesNo(const YesNoQuestion& question) override {
        QuestionBox box(QMessageBox::Question, ToDisplayText(AfxLoadString(AFX_IDS_APP_TITLE)), QString(),
                        QMessageBox::Yes | QMessageBox::No, AfxGetDialogOwner());
        box.setTextFormat(Qt::PlainText);
        QStringList paragraphs;
        for (const std::string& paragraph : question.paragraphs)
            paragraphs.append(Breakable(ToDisplayText(paragraph)));
        box.setText(paragraphs.join(QStringLiteral("\n\n")));
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
        auto* const again = new QCheckBox(ToDisplayText(question.strCheckBox));
        box.setCheckBox(again);
        bool pressed = false;
        QObject::connect(&box, &QMessageBox::buttonClicked, [&] { pressed = true; });
        const PlainCursor plain;
        const bool yes = box.exec() == QMessageBox::Yes;
        return {yes ? IDYES : IDNO, pressed && again->isChecked()};
    }

    std::vector<std::string> OpenFiles(const std::vector<FileFilter>& filters,
                                       const std::string& strFolder) override {
        QFileDialog dialog(AfxGetDialogOwner());
        // The toolkit's dialog is called so anyway; one of the desktop's own would have no caption.
        dialog.setWindowTitle(QFileDialog::tr("Open"));
        dialog.setFileMode(QFileDialog::ExistingFiles);
        if (!strFolder.empty()) dialog.setDirectory(QFile::decodeName(strFolder.c_str()));
        // Only the last brackets of a filter count, and they do not show.
        dialog.setOption(QFileDialog::HideNameFilterDetails);
        QStringList names;
        for (const FileFilter& filter : filters) names.append(NameFilter(filter));
        dialog.setNameFilters(names);
        ShowWholeColumns(dialog);
        std::vector<std::string> paths;
        if (dialog.exec() != QDialog::Accepted) return paths;
        for (const QString& file : dialog.selectedFiles())
            paths.push_back(QFile::encodeName(file).toStdString());
        return paths;
    }

    int Dialog(u32, ModalDialog& dialog) override { return dialog.Wait(); }

  private:
    static QString NameFilter(const FileFilter& filter) {
        QStringList patterns;
        for (const std::string& bytes : filter.patterns) {
            const QString pattern = ToDisplayText(bytes);
            patterns.append(pattern);
            if (pattern.toLower() != pattern) patterns.append(pattern.toLower());
        }
        return QStringLiteral("%1 (%2)").arg(ToDisplayText(filter.strName), patterns.join(u' '));
    }
};

}  // namespace

Answers& AfxGetBoxAnswers() {
    static BoxAnswers answers;
    return answers;
}
