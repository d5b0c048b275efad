// The questions about printing, with the toolkit's own dialogs behind them.

#include "framework/qt/wnd/printing.h"

#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "window_case.h"

#include <QAction>
#include <QApplication>
#include <QPageSetupDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QToolBar>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <sys/resource.h>

namespace {

constexpr u32 RED = 0xFFFF0000;

Bytes RedPicture() {
    const Bytes rows(64 * 8, 0xFF);
    return Form("ILBM", {Bmhd({.width = 64, .height = 64}), Cmap({{0, 0, 255}, {255, 0, 0}}), Chunk("BODY", rows)});
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

}  // namespace

TEST_F(WindowTest, PrintProposesTheDocumentsNameInTheFolderChosenLast) {
    std::filesystem::create_directory(m_folder.Path("pages"));
    Texts proposed;
    m_answers.m_nextDialog = [&](ModalDialog& dialog) {
        proposed.push_back(dialog.GetItemText(AFX_IDC_PRINT_FILE));
        if (proposed.size() > 1) return IDCANCEL;
        dialog.SetItemText(AFX_IDC_PRINT_FILE, m_folder.Path("pages/printed.pdf"));
        return IDOK;
    };
    for (const char* name : {"first.iff", "second.b.iff", "third"}) {
        ASSERT_TRUE(OpenFile(Picture(16, 16), name));
        EXPECT_TRUE(Command(ID_FILE_PRINT));
    }
    ASSERT_EQ(proposed.size(), 3u);
    EXPECT_TRUE(proposed[0].ends_with("/first.pdf")) << proposed[0];
    EXPECT_EQ(proposed[1], m_folder.Path("pages/second.b.pdf"));
    EXPECT_EQ(proposed[2], m_folder.Path("pages/third.pdf"));
    EXPECT_TRUE(std::filesystem::exists(m_folder.Path("pages/printed.pdf")));
    EXPECT_FALSE(std::filesystem::exists(proposed[1]));
    EXPECT_TRUE(m_answers.m_messages.empty());
}

TEST_F(WindowTest, ThePreviewShowsThePictureAndPrintsByTheSameQuestion) {
    ASSERT_TRUE(OpenFile(RedPicture()));
    const std::string file = m_folder.Path("page.pdf");
    int answer = IDCANCEL;
    const auto print = [&](ModalDialog& dialog) {
        EXPECT_TRUE(dialog.GetItemText(AFX_IDC_PRINT_FILE).ends_with("/picture.pdf"));
        dialog.SetItemText(AFX_IDC_PRINT_FILE, file);
        return answer;
    };
    const auto preview = [&](ModalDialog&) {
        auto& dialog = OpenQuestion<QPrintPreviewDialog>();
        EXPECT_TRUE(dialog.windowTitle().endsWith(QStringLiteral("picture.iff")));
        dialog.show();
        EXPECT_TRUE(WaitFor([&] { return ShowsRed(dialog.grab().toImage()); })) << "the page is empty";
        const QList<QAction*> actions = dialog.findChildren<QAction*>();
        const auto button = std::ranges::find(actions, QPrintPreviewDialog::tr("Print"), &QAction::text);
        if (button == actions.end()) throw std::runtime_error("the preview has no button to print");
        EXPECT_TRUE(dialog.findChild<QToolBar*>()->widgetForAction(*button)->isVisible());
        for (const int next : {IDCANCEL, IDOK}) {
            answer = next;
            (*button)->trigger();
            EXPECT_EQ(std::filesystem::exists(file), next == IDOK);
            EXPECT_EQ(dialog.isVisible(), next == IDCANCEL);
        }
        return IDOK;
    };
    m_answers.m_nextDialog = [&](ModalDialog& dialog) {
        return m_answers.m_dialogs.back() == ID_FILE_PRINT ? print(dialog) : preview(dialog);
    };
    EXPECT_TRUE(Command(ID_FILE_PRINT_PREVIEW));
    EXPECT_EQ(m_answers.m_dialogs, std::vector<u32>({ID_FILE_PRINT_PREVIEW, ID_FILE_PRINT, ID_FILE_PRINT}));
    EXPECT_TRUE(m_answers.m_messages.empty());
}

TEST_F(WindowTest, AFileThatFindsNoRoomIsNotPrinted) {
    ASSERT_TRUE(OpenFile(RedPicture()));
    m_answers.m_nextDialog = [&](ModalDialog& dialog) {
        dialog.SetItemText(AFX_IDC_PRINT_FILE, m_folder.Path("page.pdf"));
        return IDOK;
    };
    Command(ID_FILE_PRINT);
    EXPECT_TRUE(m_answers.m_messages.empty());
    const auto size = std::filesystem::file_size(m_folder.Path("page.pdf"));
    // What is written last is a line's end, without which a reader does.
    for (const auto room : {size_t{0}, size_t{100}, size - 2, size}) {
        m_answers.m_messages.clear();
        {
            const FileSizeLimit limit(room);
            AfxGuardedCall([] { Command(ID_FILE_PRINT); });
        }
        EXPECT_EQ(m_answers.m_messages.size(), room < size) << room << " of " << size;
        for (const std::string& message : m_answers.m_messages)
            EXPECT_NE(message.find("/page.pdf\" cannot be written"), std::string::npos) << message;
    }
}

TEST_F(WindowTest, ThePreviewNeedsNoFolderOfTheFilePrintedBefore) {
    ASSERT_TRUE(OpenFile(RedPicture()));
    std::filesystem::create_directory(m_folder.Path("gone"));
    m_answers.m_nextDialog = [&](ModalDialog& dialog) {
        if (m_answers.m_dialogs.back() == ID_FILE_PRINT) {
            dialog.SetItemText(AFX_IDC_PRINT_FILE, m_folder.Path("gone/page.pdf"));
        } else {
            auto& preview = OpenQuestion<QPrintPreviewDialog>();
            preview.show();
            EXPECT_TRUE(WaitFor([&] { return ShowsRed(preview.grab().toImage()); })) << "the page is empty";
        }
        return IDOK;
    };
    Command(ID_FILE_PRINT);
    std::filesystem::remove_all(m_folder.Path("gone"));
    Command(ID_FILE_PRINT_PREVIEW);
    EXPECT_TRUE(m_answers.m_messages.empty());
    m_answers.m_nextDialog = [&](ModalDialog& dialog) {
        EXPECT_EQ(dialog.GetItemText(AFX_IDC_PRINT_FILE).find("/gone/"), std::string::npos);
        return IDCANCEL;
    };
    Command(ID_FILE_PRINT);
}

TEST_F(WindowTest, APageIsSetUpForThePrintingsAfterIt) {
    ASSERT_TRUE(OpenFile(Picture(16, 16)));
    for (const auto& [orientation, box] : Table<QPageLayout::Orientation, const char*>{
             {QPageLayout::Landscape, "/MediaBox [0 0 842"}, {QPageLayout::Portrait, "/MediaBox [0 0 595"}}) {
        const std::string file = m_folder.Path("page.pdf");
        m_answers.m_nextDialog = [&, turned = orientation](ModalDialog& dialog) {
            if (m_answers.m_dialogs.back() == ID_FILE_PRINT) {
                dialog.SetItemText(AFX_IDC_PRINT_FILE, file);
            } else {
                QPrinter& printer = *OpenQuestion<QPageSetupDialog>().printer();
                printer.setPageSize(QPageSize(QPageSize::A4));
                printer.setPageOrientation(turned);
            }
            return IDOK;
        };
        for (const u32 id : {ID_FILE_PRINT_SETUP, ID_FILE_PRINT}) EXPECT_TRUE(Command(id));
        std::ifstream page(file, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(page), {});
        EXPECT_NE(bytes.find(box), std::string::npos) << box;
    }
}
