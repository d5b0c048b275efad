// Does whatever comes to its mind with the program, in an order that its seed fixes: files open and close, layers,
// bars and windows change, and whenever a message or a dialog is up, more files ask to be opened. usage:
//   driver_test [STEPS [SEED]]  1,000 steps, or 20,000 where VISTREL_LONG is set

#include "framework/qt/wnd/menu_bar.h"
#include "support/random.h"
#include "window_case.h"

#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>

#include <cstdlib>

CVistrelApp theApp;

namespace {

u32 g_nSteps = std::getenv("VISTREL_LONG") ? 20'000 : 1'000;
u32 g_nSeed = 14;

constexpr u64 MOST_WINDOWS = 12;

// Files that open; files that open once the user has been asked; and those that no reader takes.
struct Files {
    Files() {
        good = {folder.Write(Picture(64, 24), "picture.iff"), folder.Write(Picture(700, 500), "large.iff"),
            folder.Write(MipMaps(), "levels.iff"), folder.Write(NoPicture(), "no picture.iff"),
            folder.Write(Psd(LayeredPsd()), "layers.psd"), readEitherWay};
        asking = {folder.Write(PaddedPsd(), "padded.psd")};
        bad = {folder.Write(Bytes(100), "noise.iff"), folder.Write({}, "empty.psd"), folder.Path("missing.tmg"),
            folder.m_strPath};
    }

    TempFolder folder;
    std::string readEitherWay = folder.Write(PaddedRows(), "rows.iff");
    Texts good;
    Texts asking;
    Texts bad;
};

class Driver final : public Answers {
  public:
    Driver() : m_pBoxes(InstallAnswers(this)) {}
    ~Driver() override { InstallAnswers(m_pBoxes); }

    void Step() {
        using Way = void (Driver::*)();
        static constexpr std::pair<const char*, Way> WAYS[] = {
            {"open", &Driver::Open},
            {"request", &Driver::Request},
            {"choose a layer", &Driver::ChooseLayer},
            {"choose a channel", &Driver::ChooseChannel},
            {"close", &Driver::Close},
            {"zoom", &Driver::Zoom},
            {"command", &Driver::SomeCommand},
            {"another command", &Driver::SomeCommand},
            {"read otherwise", &Driver::ReadOtherwise},
            {"view command", &Driver::ViewCommand},
            {"float or dock", &Driver::FloatOrDock},
            {"another state", &Driver::ChangeState},
            {"activate", &Driver::Activate},
            {"settle", &Driver::SettleOften},
        };
        const auto& [name, way] = WAYS[m_random.Below(std::size(WAYS))];
        std::printf("%s\n", name);
        (this->*way)();
        if (m_random.Below(2) == 0) Settle();
        if (OpenWindows() > MOST_WINDOWS) Main().DestroyChildren();
    }

    void SettleOften() {
        for (int i = 0; i < 3; ++i) Settle();
    }

    u32 m_nRefusals = 0;  // messages that have to come
    u32 m_nMessages = 0;

  private:
    // Answers: the program's own boxes, which something happens under before they close.

    int Message(const std::string& strText, const std::string& strCaption, u32 nStyle) override {
        ++m_nMessages;
        DisturbLater();
        return m_pBoxes->Message(strText, strCaption, nStyle);
    }

    YesNoAnswer AskYesNo(const YesNoQuestion& question) override {
        DisturbLater();
        return m_pBoxes->AskYesNo(question);
    }

    Texts OpenFiles(const std::vector<FileFilter>& filters, const std::string& strFolder) override {
        DisturbLater();
        m_pBoxes->OpenFiles(filters, strFolder);
        return m_random.Below(2) == 0 ? Texts() : Texts{SomeFile(), SomeFile()};
    }

    int Dialog(u32 nID, ModalDialog& dialog) override {
        if (nID == IDD_ZOOM) {
            constexpr const char* SCALES[] = {"0.5", "1", "2.25", "0"};
            const char* const scale = SCALES[m_random.Below(std::size(SCALES))];
            dialog.SetItemText(IDC_SCALE, scale);
            m_nRefusals += *scale == '0' && scale[1] == 0;
            dialog.Press(IDOK);
        }
        DisturbLater();
        return m_pBoxes->Dialog(nID, dialog);
    }

    void DisturbLater() {
        Later([this] { Disturb(); });
    }

    void Disturb() {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_TRUE(dialog) << "nothing is up";
        const u64 windows = OpenWindows();
        const u32 messages = m_nMessages;
        for (u32 i = m_random.Below(3); i > 0; --i) Request();
        for (u32 i = m_random.Below(3); i > 0; --i) Settle();
        EXPECT_LE(OpenWindows(), windows) << "a file was opened under a dialog";
        EXPECT_EQ(m_nMessages, messages) << "a file was refused under a dialog";
        auto* const box = qobject_cast<QMessageBox*>(dialog);
        const bool isQuestion = box && box->standardButtons() & QMessageBox::Yes;
        if (isQuestion && m_random.Below(2) == 0)
            dialog->done(QMessageBox::Yes);
        else
            dialog->reject();
    }

    // Steps

    std::string SomeFile() {
        const u32 kind = m_random.Below(8);
        if (kind == 0) ++m_nRefusals;
        const Texts& files = kind == 0 ? m_files.bad : kind == 1 ? m_files.asking : m_files.good;
        return files[m_random.Below(static_cast<u32>(files.size()))];
    }

    CChildFrame* SomeFrame() {
        const auto windows = static_cast<u32>(OpenWindows());
        return windows == 0 ? nullptr : &FrameAt(m_random.Below(windows));
    }

    void Open() { theApp.OpenDocumentFile(SomeFile()); }

    void Request() {
        Texts uris;
        for (u32 i = m_random.Below(3); i > 0; --i) uris.push_back("file://" + SomeFile());
        theApp.OpenLater(uris);
    }

    void ChooseIn(CComboBox CChildFrame::*pList) {
        CChildFrame* const frame = SomeFrame();
        if (frame) Press(ListOf(frame->*pList), m_random.Below(2) == 0 ? Qt::Key_Up : Qt::Key_Down);
    }
    void ChooseLayer() { ChooseIn(&CChildFrame::m_wndLayerCombo); }
    void ChooseChannel() { ChooseIn(&CChildFrame::m_wndChannelCombo); }

    // It is gone once its event is over, so that the next step can still meet it.
    void Close() {
        if (CChildFrame* const frame = SomeFrame()) frame->GetSubWindow()->close();
    }

    void Zoom() {
        CChildFrame* const frame = SomeFrame();
        if (!frame) return;
        constexpr float SCALES[] = {0.03125f, 0.7f, 1.0f, 3.0f};
        ViewOf(*frame).FitFrameToImage(SCALES[m_random.Below(4)]);
    }

    void SomeCommand() {
        constexpr u32 IDS[] = {ID_WINDOW_NEW, ID_WINDOW_NEW, ID_WINDOW_ARRANGE, ID_WINDOW_CASCADE, ID_WINDOW_TILE_HORZ,
            ID_ZOOM, ID_TOGGLE_INFO_BAR, ID_TOGGLE_LAYER_BAR, ID_VIEW_TOOLBAR, ID_VIEW_STATUS_BAR, ID_FILE_CLOSE,
            ID_FILE_OPEN, ID_FILE_PRINT, ID_FILE_PRINT_PREVIEW, ID_FILE_PRINT_SETUP, ID_APP_ABOUT, ID_FILE_MRU_FILE1,
            ID_NEXT_PANE, ID_WINDOW_MORE, AFX_IDM_FIRST_MDICHILD};
        Settle();
        const u32 id = IDS[m_random.Below(std::size(IDS))];
        std::printf("%u\n", id);
        if (QAction* const item = MenuItem(id)) item->trigger();
    }

    // Under the other rules, in all windows of the document.
    void ReadOtherwise() {
        CChildFrame* const frame = SomeFrame();
        if (frame && frame->GetActiveView()->GetDocument()->GetPathName() == m_files.readEitherWay)
            frame->OnCmdMsg(ID_READ_TOLERANTLY, CN_COMMAND, nullptr);
    }

    void ViewCommand() {
        constexpr u32 IDS[] = {ID_ZOOM_IN, ID_ZOOM_OUT, ID_ACTUAL_SIZE, ID_RELOAD, ID_NEXT_FILE, ID_PREVIOUS_FILE};
        const u32 id = IDS[m_random.Below(std::size(IDS))];
        std::printf("%u\n", id);
        if (AfxIsCommandEnabled(Main(), id)) Command(id);
    }

    void FloatOrDock() {
        if (CChildFrame* const frame = SomeFrame()) frame->GetSubWindow()->systemMenu()->actions().last()->trigger();
    }

    void ChangeState() {
        CChildFrame* const frame = SomeFrame();
        if (!frame) return;
        const u32 state = m_random.Below(3);
        if (state == 0) frame->GetSubWindow()->showMaximized();
        if (state == 1) frame->GetSubWindow()->showMinimized();
        if (state == 2) frame->MDIRestore();
    }

    void Activate() {
        if (CChildFrame* const frame = SomeFrame()) frame->ActivateFrame();
    }

    Random m_random{g_nSeed};
    Files m_files;
    Answers* const m_pBoxes;
};

void CheckWindows() {
    EXPECT_FALSE(QApplication::activeModalWidget());
    EXPECT_FALSE(QApplication::overrideCursor());
    for (const auto& child : Main().GetChildren()) {
        const CVistrelView& view = ViewOf(*child);
        const auto isOfIt = [&](const auto& one) { return one->GetActiveView()->GetDocument() == view.GetDocument(); };
        const auto windows = std::ranges::count_if(Main().GetChildren(), isOfIt);
        EXPECT_EQ(std::ranges::count(view.GetDocument()->GetViews(), &view), 1);
        EXPECT_EQ(view.GetDocument()->GetViews().size(), static_cast<u64>(windows));
        EXPECT_FALSE(Entries(ListOf(static_cast<CChildFrame&>(*child).m_wndChannelCombo)).empty());
        EXPECT_TRUE(view.m_hBitmap || !view.m_bValid);
    }
}

TEST(Driver, EveryOrderOfThingsEndsInOrder) {
    Driver driver;
    for (u32 step = 0; step < g_nSteps && !testing::Test::HasFailure(); ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        driver.Step();
        CheckWindows();
    }
    driver.SettleOften();
    EXPECT_EQ(driver.m_nMessages, driver.m_nRefusals);
    Main().DestroyChildren();
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (argc > 1) g_nSteps = static_cast<u32>(std::strtoul(argv[1], nullptr, 10));
    if (argc > 2) g_nSeed = static_cast<u32>(std::strtoul(argv[2], nullptr, 10));
    std::printf("%u steps from seed %u\n", g_nSteps, g_nSeed);
    return RunWindowTests(argv);
}
