// The questions about printing, with the toolkit's own dialogs behind them.

#include "framework/qt/wnd/printing.h"

#include "framework/core/guarded_call.h"
#include "window_case.h"

#include <QPageSetupDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QToolBar>

#include <csignal>
#include <sys/resource.h>

namespace {

constexpr u32 RED = 0xFFFF0000;

Bytes RedPicture() {
    const Bytes rows(64 * 8, 0xFF);
    return Form("ILBM", {Bmhd({.width = 64, .height = 64}), Cmap({{0, 0, 255}, {255, 0, 0}}), Body(rows)});
}

// The question that is up, as the toolkit's dialog that it is.
template <typename Dialog>
Dialog& OpenQuestion() {
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<Dialog*>(window)) return *dialog;
    throw std::runtime_error("no such dialog is up");
}

// As long as it lives, no file can be made larger.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t nMost) : m_ignored(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit less = {nMost, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &less);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_ignored);
    }

  private:
    void (*const m_ignored)(int);
    rlimit m_before = {};
};

bool ShowsRed(const QImage& image) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) == RED) return true;
    return false;
}

class PrintingTest : public WindowTest {
  protected:
    PrintingTest() {
        m_answers.m_nextDialog = [&](ModalDialog& dialog) {
            if (m_answers.m_dialogs.back() != ID_FILE_PRINT) {
                m_onOtherDialog();
                return IDOK;
            }
            m_strProposed = dialog.GetItemText(AFX_IDC_PRINT_FILE);
            dialog.SetItemText(AFX_IDC_PRINT_FILE, m_strFile);
            return m_nAnswer;
        };
    }

    // The preview with its page in it.
    static QPrintPreviewDialog& ShownPreview() {
        auto& preview = OpenQuestion<QPrintPreviewDialog>();
        preview.show();
        EXPECT_TRUE(WaitFor([&] { return ShowsRed(preview.grab().toImage()); })) << "the page is empty";
        return preview;
    }

    // How the question which file to print to is answered, and what it proposed.
    std::string m_strFile = m_folder.Path("page.pdf");
    int m_nAnswer = IDOK;
    std::string m_strProposed;

    // While the preview or the set-up of a page is up.
    std::function<void()> m_onOtherDialog;
};

}  // namespace

TEST_F(PrintingTest, ThePathProposedIsTheDocumentsNameInTheFolderChosenLast) {
    fs::create_directory(m_folder.Path("pages"));
    m_strFile = m_folder.Path("pages/printed.pdf");
    Open(Picture(16, 16), "first.iff");
    EXPECT_TRUE(Command(ID_FILE_PRINT));
    EXPECT_TRUE(m_strProposed.ends_with("/first.pdf")) << m_strProposed;
    EXPECT_TRUE(fs::exists(m_strFile));

    m_strFile = m_folder.Path("cancelled.pdf");
    m_nAnswer = IDCANCEL;
    for (const auto& [name, proposed] :
        Table<const char*, const char*>{{"second.b.iff", "pages/second.b.pdf"}, {"third", "pages/third.pdf"}}) {
        Open(Picture(16, 16), name);
        EXPECT_TRUE(Command(ID_FILE_PRINT));
        EXPECT_EQ(m_strProposed, m_folder.Path(proposed));
        EXPECT_FALSE(fs::exists(m_strProposed) || fs::exists(m_strFile));
    }
}

TEST_F(PrintingTest, ThePreviewShowsThePictureAndPrintsByTheSameQuestion) {
    Open(RedPicture());
    m_onOtherDialog = [&] {
        QPrintPreviewDialog& dialog = ShownPreview();
        EXPECT_TRUE(dialog.windowTitle().endsWith(QStringLiteral("picture.iff")));
        const QList<QAction*> actions = dialog.findChildren<QAction*>();
        const auto button = std::ranges::find(actions, QPrintPreviewDialog::tr("Print"), &QAction::text);
        if (button == actions.end()) throw std::runtime_error("the preview has no button to print");
        EXPECT_TRUE(dialog.findChild<QToolBar*>()->widgetForAction(*button)->isVisible());
        for (const int answer : {IDCANCEL, IDOK}) {
            m_nAnswer = answer;
            (*button)->trigger();
            EXPECT_TRUE(m_strProposed.ends_with("/picture.pdf")) << m_strProposed;
            EXPECT_EQ(fs::exists(m_strFile), answer == IDOK);
            EXPECT_EQ(dialog.isVisible(), answer == IDCANCEL);
        }
    };
    EXPECT_TRUE(Command(ID_FILE_PRINT_PREVIEW));
    EXPECT_EQ(m_answers.m_dialogs, std::vector<u32>({ID_FILE_PRINT_PREVIEW, ID_FILE_PRINT, ID_FILE_PRINT}));
}

TEST_F(PrintingTest, AFileThatFindsNoRoomIsNotPrinted) {
    Open(RedPicture());
    Command(ID_FILE_PRINT);
    const auto size = fs::file_size(m_strFile);
    // What is written last is a line's end, without which a reader does.
    for (const auto room : {size_t{0}, size_t{100}, size - 2, size}) {
        {
            const FileSizeLimit limit(room);
            AfxGuardedCall([] { Command(ID_FILE_PRINT); });
        }
        const Texts told = Told();
        EXPECT_EQ(told.size(), room < size) << room << " of " << size;
        for (const std::string& message : told) EXPECT_TRUE(Has(message, "/page.pdf\" cannot be written"));
    }
}

TEST_F(PrintingTest, ThePreviewNeedsNoFolderOfTheFilePrintedBefore) {
    Open(RedPicture());
    fs::create_directory(m_folder.Path("gone"));
    m_strFile = m_folder.Path("gone/page.pdf");
    m_onOtherDialog = [] { ShownPreview(); };
    Command(ID_FILE_PRINT);
    fs::remove_all(m_folder.Path("gone"));
    Command(ID_FILE_PRINT_PREVIEW);
    m_nAnswer = IDCANCEL;
    Command(ID_FILE_PRINT);
    EXPECT_FALSE(Has(m_strProposed, "/gone/"));
}

TEST_F(PrintingTest, APageIsSetUpForThePrintingsAfterIt) {
    Open(Picture(16, 16));
    for (const auto& [orientation, box] : Table<QPageLayout::Orientation, const char*>{
             {QPageLayout::Landscape, "/MediaBox [0 0 842"}, {QPageLayout::Portrait, "/MediaBox [0 0 595"}}) {
        m_onOtherDialog = [turned = orientation] {
            QPrinter& printer = *OpenQuestion<QPageSetupDialog>().printer();
            printer.setPageSize(QPageSize(QPageSize::A4));
            printer.setPageOrientation(turned);
        };
        EXPECT_TRUE(Command(ID_FILE_PRINT_SETUP));
        EXPECT_TRUE(Command(ID_FILE_PRINT));
        std::ifstream page(m_strFile, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(page), {});
        EXPECT_NE(bytes.find(box), std::string::npos) << box;
    }
}
