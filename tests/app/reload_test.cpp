// Documents that are read again: by the key, and by themselves when their file changes.

#include "app/choice_list.h"
#include "framework/qt/kit/file_watch.h"
#include "framework/qt/wnd/menu_bar.h"
#include "support/memory_limit.h"
#include "support/psd_builder.h"
#include "window_case.h"

#include <QMdiSubWindow>
#include <QMessageBox>
#include <QTimer>

#include <filesystem>
#include <optional>

namespace {

class ReloadTest : public WindowTest {
  protected:
    ReloadTest() { KeepReload(""); }
    ~ReloadTest() override { KeepReload(""); }

    static void KeepReload(const std::string& strReload) { theApp.WriteProfileString("Reading", "Reload", strReload); }

    // What stands in the folder takes another's name, as programs do that save.
    void Replace(const Bytes& bytes, const std::string& strName = "picture.iff") {
        std::filesystem::rename(m_folder.Write(bytes, "new"), m_folder.Path(strName));
    }
    static bool WaitForMainPane(const std::string& strText) {
        return WaitFor([&] { return MainPane() == strText; });
    }
    u32 Shown(u32 x, u32 y) {
        const CRect place = {
            static_cast<int>(x), static_cast<int>(y), static_cast<int>(x) + 1, static_cast<int>(y) + 1};
        return PixelsOf(*View().GetWidget(), place)[0];
    }
};

// The one channel of a layer is its red.
constexpr u32 Red(u32 nShade) { return 0xFF000000 | nShade << 16; }

PsdLayerFields Layer(const std::string& strName, u8 nShade) {
    return {.channels = {{.id = 0, .data = RawData({nShade})}, {.id = -1, .data = RawData({100})}}, .name = strName};
}

Bytes Layers(const std::vector<std::pair<std::string, u8>>& layers) {
    PsdFields fields;
    for (const auto& [name, shade] : layers) fields.layers.push_back(Layer(name, shade));
    return Psd(fields);
}

}  // namespace

TEST(ListEntries, AreFoundByAUniqueNameElseByTheirPlace) {
    constexpr u32 GONE = 99;
    for (const auto& [before, place, after, found] :
        Table<Texts, u32, Texts, u32>{{{"a", "b"}, 1, {"b", "a"}, 0}, {{"a", "b"}, 1, {"a", "c"}, GONE},
            {{"a", "b", "b"}, 2, {"b", "a", "c"}, 2}, {{"a", "b", "b"}, 2, {"b", "a"}, GONE},
            {{"a", "b"}, 1, {"b", "c", "b"}, 1}, {{"a"}, 0, {}, GONE}, {{"", "a"}, 0, {"a", ""}, 1}})
        EXPECT_EQ(FindAgain(EntryAt(before, place), after).value_or(GONE), found) << before[place] << place;
}

TEST_F(ReloadTest, TheKeyReadsTheFileAgainAndKeepsWhatIsStillThere) {
    EXPECT_FALSE(AfxIsCommandEnabled(Main(), ID_RELOAD));
    ASSERT_TRUE(OpenFile(Layers({{"one", 1}, {"two", 2}, {"three", 3}}), "picture.psd"));
    Press(Frame().m_wndLayerCombo, Qt::Key_Down);
    Press(Frame().m_wndLayerCombo, Qt::Key_Down);
    Press(Frame().m_wndChannelCombo, Qt::Key_Down);
    View().FitFrameToImage(4);
    Command(ID_WINDOW_NEW);
    Press(Frame().m_wndLayerCombo, Qt::Key_Down);
    View().FitFrameToImage(8);
    auto& first = static_cast<CChildFrame&>(*Main().GetChildren().front());
    auto& firstView = static_cast<CVistrelView&>(*first.GetActiveView());
    ASSERT_EQ(Shown(0, 0), Red(1));

    Replace(Layers({{"two", 20}, {"three", 30}, {"new", 40}, {"one", 10}}), "picture.psd");
    Command(ID_RELOAD);
    EXPECT_EQ(View().GetDocument(), firstView.GetDocument());
    EXPECT_EQ(Frame().GetSelection().nLayer, 4u) << "by its name";
    EXPECT_EQ(Shown(0, 0), Red(10));
    EXPECT_EQ(first.GetSelection().nLayer, 1u);
    EXPECT_EQ(first.GetSelection().nChannel, 1u);
    EXPECT_EQ(firstView.m_fScale, 4);
    EXPECT_EQ(ClientSize(), (CSize{8, 8}));
    EXPECT_EQ(MainPane(), "Ready");

    // One of the layers is gone, the other has grown.
    PsdFields fields;
    fields.layers = {Layer("one", 50)};
    fields.layers[0].right = 3;
    for (PsdChannelFields& channel : fields.layers[0].channels) channel.data = RawData(Bytes(3, 50));
    Replace(Psd(fields), "picture.psd");
    first.GetSubWindow()->showMinimized();
    Frame().ActivateFrame();
    Command(ID_RELOAD);
    EXPECT_EQ(ClientSize(), (CSize{24, 8})) << "at its scale";
    EXPECT_EQ(Shown(23, 7), Red(50));
    EXPECT_EQ(first.GetSelection().nLayer + first.GetSelection().nChannel, 0u);
    EXPECT_TRUE(first.IsIconic());
    EXPECT_TRUE(m_answers.m_messages.empty());
}

TEST_F(ReloadTest, AFrameThatWasStretchedByHandStaysWhereThePictureHasItsSize) {
    ASSERT_TRUE(OpenFile(Picture(20, 10)));
    Frame().MoveWindow({10, 20, 310, 320});
    const CRect place = Frame().GetWindowRect();
    Replace(Picture(20, 10));
    Command(ID_RELOAD);
    EXPECT_EQ(Frame().GetWindowRect(), place);
    View().FitFrameToImage(2);
    int width = 20;
    for (const auto state : {&QWidget::showMaximized, &QWidget::showMinimized}) {
        (Frame().GetSubWindow()->*state)();
        width += 10;
        Replace(Picture(static_cast<u32>(width), 10));
        Command(ID_RELOAD);
        EXPECT_EQ(Frame().IsZoomed(), state == &QWidget::showMaximized);
        EXPECT_EQ(Frame().IsIconic(), state == &QWidget::showMinimized);
        EXPECT_TRUE(WaitForPane(std::to_string(width) + "x10x32"));
        Frame().MDIRestore();
        EXPECT_EQ(ClientSize(), (CSize{2 * width, 20})) << "once it has a size of its own again";
        Frame().MoveWindow({10, 20, 310, 320});
        (Frame().GetSubWindow()->*state)();
        Frame().MDIRestore();
        EXPECT_EQ(Frame().GetWindowRect().Width(), 300) << "only once";
    }
}

TEST_F(ReloadTest, WhatIsRefusedLeavesTheDocumentAndSaysWhy) {
    ASSERT_TRUE(OpenFile(Picture(20, 10)));
    const CDocument* const document = View().GetDocument();
    const u32 shown = Shown(5, 5);
    Replace(Bytes(10));
    Command(ID_RELOAD);
    std::filesystem::remove(m_folder.Path("picture.iff"));
    Command(ID_RELOAD);
    ASSERT_EQ(m_answers.m_messages.size(), 2u);
    EXPECT_NE(m_answers.m_messages[1].find("picture.iff\" was not opened. No such file"), std::string::npos);
    EXPECT_EQ(View().GetDocument(), document);
    EXPECT_EQ(Shown(5, 5), shown);

    // Nor is there memory for two.
    Replace(Psd({.rows = 300, .columns = 300}));
    {
        const MemoryLimit limit(50'000);
        Command(ID_RELOAD);
    }
    EXPECT_NE(m_answers.m_messages.back().find("not enough memory"), std::string::npos) << m_answers.m_messages.back();
    EXPECT_EQ(View().GetDocument(), document);
    EXPECT_EQ(Shown(5, 5), shown);

    // Nor does the user want what breaks rules.
    Replace(Psd({.layers = {{.channels = {{.data = RawData({7})}}}}, .layerPad = Bytes(4)}));
    Command(ID_RELOAD);
    EXPECT_EQ(View().GetDocument(), document);
    ASSERT_EQ(m_answers.m_questions.size(), 1u);
    EXPECT_TRUE(m_answers.m_questions[0].starts_with("\"" + m_folder.Path("picture.iff") + "\" breaks rules"));
}

TEST_F(ReloadTest, WhatTheUserAgreedToIsNotAskedAboutAgain) {
    ASSERT_TRUE(OpenFile(Picture(20, 10)));
    m_answers.m_nextAnswer.nButton = IDYES;
    Replace(Psd({.layers = {{.channels = {{.data = RawData({7})}}}}, .layerPad = Bytes(4)}));
    for (int i = 0; i < 2; ++i) {
        Command(ID_RELOAD);
        EXPECT_EQ(m_answers.m_questions.size(), 1u);
        EXPECT_EQ(View().GetDoc().m_nDocType, DOC_PSD);
    }
}

// There may be no memory for both documents and a picture.
TEST_F(ReloadTest, TheOldDocumentIsGoneBeforeTheNewOneIsShown) {
    ASSERT_TRUE(OpenFile(Picture(20, 10)));
    const std::weak_ptr<CDocument> before = View().ShareDocument();
    const QAbstractItemModel* const layers = ListOf(Frame().m_wndLayerCombo).model();
    Command(ID_WINDOW_NEW);
    bool gone = false;
    const auto filled = QObject::connect(layers, &QAbstractItemModel::rowsInserted,
        [&] { gone = before.expired() && !View().m_pBody && !View().m_hBitmap; });
    Command(ID_RELOAD);
    QObject::disconnect(filled);
    EXPECT_TRUE(gone) << "in the other window, too";
    EXPECT_EQ(Shown(5, 5), ShownColour(5, 5));
}

TEST_F(ReloadTest, WhatBreaksRulesOnlyNowIsTreatedAsTheSettingSaysNow) {
    const auto keep = [](const char* pszKept) { theApp.WriteProfileString("Reading", "Tolerant", pszKept); };
    const Bytes twoReadings = Form("ILBM", {Bmhd({.width = 8, .height = 2}), GreyCmap(2), Chunk("BODY", Bytes(4))});
    const Bytes padded = Psd({.layers = {{.channels = {{.data = RawData({7})}}}}, .layerPad = Bytes(4)});
    for (const auto& [commands, kept, questions, messages] :
        Table<std::vector<u32>, const char*, size_t, size_t>{{{}, "ask", 1, 0}, {{ID_READ_TOLERANTLY}, "ask", 1, 0},
            {{ID_READ_TOLERANTLY, ID_READ_TOLERANTLY}, "ask", 1, 0}, {{ID_NEXT_FILE}, "ask", 1, 0},
            {{}, "always", 0, 0}, {{ID_READ_TOLERANTLY, ID_READ_TOLERANTLY}, "always", 0, 0}, {{}, "never", 0, 1},
            {{ID_READ_TOLERANTLY}, "never", 0, 1}}) {
        keep("ask");
        m_answers.m_questions.clear();
        m_answers.m_messages.clear();
        m_answers.m_nextAnswer.nButton = IDYES;
        m_folder.Write(twoReadings, "b.iff");
        ASSERT_TRUE(OpenFile(twoReadings, "a.iff"));
        for (const u32 command : commands) Command(command);
        keep(kept);
        Replace(padded, View().GetDoc().GetTitle());
        Command(ID_RELOAD);
        EXPECT_EQ(m_answers.m_questions.size(), questions) << commands.size() << kept;
        EXPECT_EQ(m_answers.m_messages.size(), messages) << commands.size() << kept;
        EXPECT_EQ(View().GetDoc().m_nDocType, messages == 0 ? DOC_PSD : DOC_IFF);
        Main().DestroyChildren();
    }
    keep("ask");
}

TEST_F(ReloadTest, WhatALinkLeadsToIsWatchedInItsOwnFolder) {
    std::filesystem::create_directory(m_folder.Path("own"));
    const std::string file = m_folder.Write(Bytes(1), "own/file");
    const std::string link = m_folder.Path("link");
    std::filesystem::create_symlink("own/file", link);
    int changes = 0;
    const FileWatch watch(link, *GetFileStamp(link), [&] { ++changes; });
    const QTimer* const timer = qApp->findChildren<QTimer*>(Qt::FindDirectChildrenOnly).last();
    ASSERT_TRUE(WaitFor([&] { return !timer->isActive(); })) << "it watches";
    std::filesystem::remove(file);
    ASSERT_TRUE(WaitFor([&] { return timer->isActive(); }));
    ASSERT_TRUE(WaitFor([&] { return !timer->isActive(); })) << "and there is no file to watch";
    m_folder.Write(Bytes(2), "own/file");
    EXPECT_TRUE(WaitFor([&] { return changes == 1; }));
}

TEST_F(ReloadTest, AChangeOnTheDiskIsToldOnceItIsOver) {
    ASSERT_TRUE(OpenFile(Picture(20, 10)));
    ASSERT_TRUE(OpenFile(Picture(20, 10), "other.iff"));
    const std::string text = "picture.iff has changed; F5 reads it again";
    Replace(Picture(30, 10));
    auto& first = *Main().GetChildren().front();
    first.ActivateFrame();
    EXPECT_TRUE(WaitForMainPane(text)) << "another file took its name";
    Main().GetChildren().back()->ActivateFrame();
    EXPECT_EQ(MainPane(), "Ready") << "of the other document";
    first.ActivateFrame();
    for (int i = 0; i < 2; ++i) {
        Command(ID_RELOAD);
        EXPECT_EQ(MainPane(), "Ready");
        EXPECT_EQ(first.GetActiveView()->GetClientRect().Width(), 30 + 10 * i);
        m_folder.Write(Picture(40, 10), "picture.iff");
        EXPECT_TRUE(WaitForMainPane(text)) << "it was written";
    }
    Command(ID_RELOAD);
    std::filesystem::remove(m_folder.Path("picture.iff"));
    m_folder.Write(Picture(40, 10), "other.iff");
    Frame().ActivateFrame();
    EXPECT_TRUE(WaitForMainPane("other.iff has changed; F5 reads it again"));
    first.ActivateFrame();
    EXPECT_EQ(MainPane(), "Ready") << "there is nothing to read";
    m_folder.Write(Picture(20, 10), "picture.iff");
    EXPECT_TRUE(WaitForMainPane(text)) << "it came back";
}

TEST_F(ReloadTest, ANameThatIsNotUtf8IsNotWatched) {
    ASSERT_TRUE(OpenFile(Picture(20, 10), "\xFF.iff"));
    ASSERT_TRUE(OpenFile(Picture(20, 10), "\xC3\xA4.iff"));
    Replace(Picture(30, 10), "\xFF.iff");
    Replace(Picture(30, 10), "\xC3\xA4.iff");
    EXPECT_TRUE(WaitForMainPane("\xC3\xA4.iff has changed; F5 reads it again"));
    Main().GetChildren().front()->ActivateFrame();
    EXPECT_EQ(MainPane(), "Ready");
    Command(ID_RELOAD);
    EXPECT_EQ(Main().GetChildren().front()->GetActiveView()->GetClientRect().Width(), 30);
}

// The toolkit deletes later what is to go, and not while a dialog that comes up meanwhile is open.
TEST_F(ReloadTest, AWatchThatIsGoneLooksNoMore) {
    const std::string gonePath = m_folder.Write(Bytes(1), "gone");
    const std::string otherPath = m_folder.Write(Bytes(1), "other");
    const auto latestTimer = [] {
        return QPointer<QTimer>(qApp->findChildren<QTimer*>(Qt::FindDirectChildrenOnly).last());
    };
    std::optional<FileWatch> gone;
    gone.emplace(gonePath, *GetFileStamp(gonePath), [] {});
    const QPointer<QTimer> goneTimer = latestTimer();
    const FileWatch other(otherPath, *GetFileStamp(otherPath), [] {});
    const QPointer<QTimer> otherTimer = latestTimer();
    ASSERT_TRUE(WaitFor([&] { return !goneTimer->isActive() && !otherTimer->isActive(); })) << "both watch";
    gone.reset();
    ASSERT_TRUE(goneTimer);
    Replace(Bytes(2), "gone");
    Replace(Bytes(2), "other");
    while (!otherTimer->isActive()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_FALSE(goneTimer->isActive());
}

TEST_F(ReloadTest, TheSettingMakesItHappenByItselfUnderNoDialog) {
    KeepReload("always");
    ASSERT_TRUE(OpenFile(Picture(20, 10)));
    const auto width = [&] { return Main().GetChildren().front()->GetActiveView()->GetClientRect().Width(); };
    ASSERT_TRUE(OpenFile(Picture(20, 10), "other.iff"));
    Replace(Picture(30, 10));
    EXPECT_TRUE(WaitFor([&] { return width() == 30; })) << "of a window that is not active";
    EXPECT_EQ(Main().MDIGetActive(), &Frame());
    EXPECT_EQ(MainPane(), "Ready");

    Replace(Bytes(10));
    EXPECT_TRUE(WaitFor([&] { return !m_answers.m_messages.empty(); }));
    m_folder.Write(Picture(60, 10), "other.iff");
    EXPECT_TRUE(WaitFor([&] { return ClientSize().cx == 60; }));
    EXPECT_EQ(m_answers.m_messages.size(), 1u) << "once for each change";
    EXPECT_EQ(width(), 30);

    Replace(Bytes(11));
    EXPECT_TRUE(WaitFor([&] { return m_answers.m_messages.size() == 2; }));
    m_folder.Write(Picture(45, 10), "picture.iff");
    EXPECT_TRUE(WaitFor([&] { return width() == 45; })) << "written, after another file had taken the name";

    int rests = 0;
    QMessageBox box;
    const auto timers = qApp->findChildren<QTimer*>(Qt::FindDirectChildrenOnly);
    for (const QTimer* const timer : timers) QObject::connect(timer, &QTimer::timeout, &box, [&] { ++rests; });
    box.open();
    Replace(Picture(50, 10));
    EXPECT_TRUE(WaitFor([&] { return rests >= 2; }));
    EXPECT_EQ(width(), 45);
    box.close();
    EXPECT_TRUE(WaitFor([&] { return width() == 50; }));
}
