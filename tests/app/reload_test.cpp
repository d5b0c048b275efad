// Documents that are read again: by the key, and by themselves when their file changes.

#include "app/choice_list.h"
#include "framework/qt/kit/file_watch.h"
#include "framework/qt/wnd/menu_bar.h"
#include "support/memory_limit.h"
#include "window_case.h"

#include <QMessageBox>
#include <QPointer>
#include <QTimer>

#include <optional>

namespace {

class ReloadTest : public WindowTest {
  protected:
    ReloadTest() { KeepReload(""); }
    ~ReloadTest() override { KeepReload(""); }

    static void KeepReload(const char* pszKept) { theApp.WriteProfileString("Reading", "Reload", pszKept); }
    static void KeepTolerant(const char* pszKept) { theApp.WriteProfileString("Reading", "Tolerant", pszKept); }

    // What stands in the folder takes another's name, as programs do that save.
    void Replace(const Bytes& bytes, const std::string& strName = "picture.iff") {
        fs::rename(m_folder.Write(bytes, "new"), m_folder.Path(strName));
    }
    static bool WaitForMainPane(const std::string& strText) {
        return WaitFor([&] { return MainPane() == strText; });
    }
    // Of the one that was opened first.
    static int FirstWidth() { return ViewOf(FrameAt(0)).GetClientRect().Width(); }
};

// The one channel of a layer is its red.
constexpr u32 Red(u32 nShade) { return 0xFF000000 | nShade << 16; }

PsdLayerFields Layer(const std::string& strName, u8 nShade) {
    return {.channels = {{.id = 0, .data = RawData({nShade})}, {.id = -1, .data = RawData({100})}}, .name = strName};
}

Bytes Document(const std::vector<std::pair<std::string, u8>>& layers) {
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
    Open(Document({{"one", 1}, {"two", 2}, {"three", 3}}), "picture.psd");
    Press(Layers(), Qt::Key_Down);
    Press(Layers(), Qt::Key_Down);
    Press(Channels(), Qt::Key_Down);
    Fit(4);
    Command(ID_WINDOW_NEW);
    Press(Layers(), Qt::Key_Down);
    Fit(8);
    CChildFrame& first = FrameAt(0);
    const CVistrelView& firstView = ViewOf(first);
    ASSERT_EQ(ShownPixel(0, 0), Red(1));

    Replace(Document({{"two", 20}, {"three", 30}, {"new", 40}, {"one", 10}}), "picture.psd");
    Command(ID_RELOAD);
    EXPECT_EQ(View().GetDocument(), firstView.GetDocument());
    EXPECT_EQ(Frame().GetSelection().nLayer, 4u) << "by its name";
    EXPECT_EQ(ShownPixel(0, 0), Red(10));
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
    EXPECT_EQ(ShownPixel(23, 7), Red(50));
    EXPECT_EQ(first.GetSelection().nLayer + first.GetSelection().nChannel, 0u);
    EXPECT_TRUE(first.IsIconic());
}

TEST_F(ReloadTest, AFrameThatWasStretchedByHandStaysWhereThePictureHasItsSize) {
    Open(Picture(20, 10));
    Frame().MoveWindow({10, 20, 310, 320});
    const CRect place = Frame().GetWindowRect();
    Replace(Picture(20, 10));
    Command(ID_RELOAD);
    EXPECT_EQ(Frame().GetWindowRect(), place);
    Fit(2);
    int width = 20;
    for (const auto state : {&QWidget::showMaximized, &QWidget::showMinimized}) {
        (SubWindow().*state)();
        width += 10;
        Replace(Picture(static_cast<u32>(width), 10));
        Command(ID_RELOAD);
        EXPECT_EQ(Frame().IsZoomed(), state == &QWidget::showMaximized);
        EXPECT_EQ(Frame().IsIconic(), state == &QWidget::showMinimized);
        EXPECT_TRUE(WaitForPane(std::to_string(width) + "x10x32"));
        Frame().MDIRestore();
        EXPECT_EQ(ClientSize(), (CSize{2 * width, 20})) << "once it has a size of its own again";
        Frame().MoveWindow({10, 20, 310, 320});
        (SubWindow().*state)();
        Frame().MDIRestore();
        EXPECT_EQ(Frame().GetWindowRect().Width(), 300) << "only once";
    }
}

TEST_F(ReloadTest, WhatIsRefusedLeavesTheDocumentAndSaysWhy) {
    Open(Picture(20, 10));
    const CDocument* const document = View().GetDocument();
    const u32 shown = ShownPixel(5, 5);
    Replace(Bytes(10));
    Command(ID_RELOAD);
    EXPECT_TRUE(Has(ToldOnce(), "picture.iff\" was not opened. "));
    fs::remove(m_folder.Path("picture.iff"));
    Command(ID_RELOAD);
    EXPECT_TRUE(Has(ToldOnce(), "picture.iff\" was not opened. No such file"));
    EXPECT_EQ(View().GetDocument(), document);
    EXPECT_EQ(ShownPixel(5, 5), shown);

    // Nor is there memory for two.
    Replace(Psd({.rows = 300, .columns = 300}));
    {
        const MemoryLimit limit(50'000);
        Command(ID_RELOAD);
    }
    EXPECT_TRUE(Has(ToldOnce(), "not enough memory"));
    EXPECT_EQ(View().GetDocument(), document);
    EXPECT_EQ(ShownPixel(5, 5), shown);

    // Nor does the user want what breaks rules.
    Replace(PaddedPsd());
    Command(ID_RELOAD);
    EXPECT_EQ(View().GetDocument(), document);
    const Texts asked = Asked();
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_TRUE(asked[0].starts_with("\"" + m_folder.Path("picture.iff") + "\" breaks rules"));
}

TEST_F(ReloadTest, WhatTheUserAgreedToIsNotAskedAboutAgain) {
    Open(Picture(20, 10));
    m_answers.m_nextAnswer.nButton = IDYES;
    Replace(PaddedPsd());
    for (const size_t questions : {1, 0}) {
        Command(ID_RELOAD);
        EXPECT_EQ(Asked().size(), questions);
        EXPECT_EQ(View().GetDoc().m_nDocType, DOC_PSD);
    }
}

// There may be no memory for both documents and a picture.
TEST_F(ReloadTest, TheOldDocumentIsGoneBeforeTheNewOneIsShown) {
    Open(Picture(20, 10));
    const std::weak_ptr<CDocument> before = View().ShareDocument();
    const QAbstractItemModel* const layers = Layers().model();
    Command(ID_WINDOW_NEW);
    bool gone = false;
    const auto filled = QObject::connect(layers, &QAbstractItemModel::rowsInserted,
        [&] { gone = before.expired() && !View().m_pBody && !View().m_hBitmap; });
    Command(ID_RELOAD);
    QObject::disconnect(filled);
    EXPECT_TRUE(gone) << "in the other window, too";
    EXPECT_EQ(ShownPixel(5, 5), ShownColour(5, 5));
}

TEST_F(ReloadTest, WhatBreaksRulesOnlyNowIsTreatedAsTheSettingSaysNow) {
    m_answers.m_nextAnswer.nButton = IDYES;
    for (const auto& [commands, kept, questions, messages] :
        Table<std::vector<u32>, const char*, size_t, size_t>{{{}, "ask", 1, 0}, {{ID_READ_TOLERANTLY}, "ask", 1, 0},
            {{ID_READ_TOLERANTLY, ID_READ_TOLERANTLY}, "ask", 1, 0}, {{ID_NEXT_FILE}, "ask", 1, 0},
            {{}, "always", 0, 0}, {{ID_READ_TOLERANTLY, ID_READ_TOLERANTLY}, "always", 0, 0}, {{}, "never", 0, 1},
            {{ID_READ_TOLERANTLY}, "never", 0, 1}}) {
        KeepTolerant("ask");
        m_folder.Write(PaddedRows(), "b.iff");
        Open(PaddedRows(), "a.iff");
        for (const u32 command : commands) Command(command);
        KeepTolerant(kept);
        Replace(PaddedPsd(), View().GetDoc().GetTitle());
        Command(ID_RELOAD);
        EXPECT_EQ(Asked().size(), questions) << commands.size() << kept;
        EXPECT_EQ(Told().size(), messages) << commands.size() << kept;
        EXPECT_EQ(View().GetDoc().m_nDocType, messages == 0 ? DOC_PSD : DOC_IFF);
        Main().DestroyChildren();
    }
    KeepTolerant("ask");
}

TEST_F(ReloadTest, WhatALinkLeadsToIsWatchedInItsOwnFolder) {
    fs::create_directory(m_folder.Path("own"));
    const std::string file = m_folder.Write(Bytes(1), "own/file");
    const std::string link = m_folder.Path("link");
    fs::create_symlink("own/file", link);
    int changes = 0;
    const FileWatch watch(link, *GetFileStamp(link), [&] { ++changes; });
    const QTimer* const timer = qApp->findChildren<QTimer*>(Qt::FindDirectChildrenOnly).last();
    ASSERT_TRUE(WaitFor([&] { return !timer->isActive(); })) << "it watches";
    fs::remove(file);
    ASSERT_TRUE(WaitFor([&] { return timer->isActive(); }));
    ASSERT_TRUE(WaitFor([&] { return !timer->isActive(); })) << "and there is no file to watch";
    m_folder.Write(Bytes(2), "own/file");
    EXPECT_TRUE(WaitFor([&] { return changes == 1; }));
}

TEST_F(ReloadTest, AChangeOnTheDiskIsToldOnceItIsOver) {
    Open(Picture(20, 10));
    Open(Picture(20, 10), "other.iff");
    const std::string text = "picture.iff has changed; F5 reads it again";
    Replace(Picture(30, 10));
    CChildFrame& first = FrameAt(0);
    first.ActivateFrame();
    EXPECT_TRUE(WaitForMainPane(text)) << "another file took its name";
    Frame().ActivateFrame();
    EXPECT_EQ(MainPane(), "Ready") << "of the other document";
    first.ActivateFrame();
    for (int i = 0; i < 2; ++i) {
        Command(ID_RELOAD);
        EXPECT_EQ(MainPane(), "Ready");
        EXPECT_EQ(FirstWidth(), 30 + 10 * i);
        m_folder.Write(Picture(40, 10), "picture.iff");
        EXPECT_TRUE(WaitForMainPane(text)) << "it was written";
    }
    Command(ID_RELOAD);
    fs::remove(m_folder.Path("picture.iff"));
    m_folder.Write(Picture(40, 10), "other.iff");
    Frame().ActivateFrame();
    EXPECT_TRUE(WaitForMainPane("other.iff has changed; F5 reads it again"));
    first.ActivateFrame();
    EXPECT_EQ(MainPane(), "Ready") << "there is nothing to read";
    m_folder.Write(Picture(20, 10), "picture.iff");
    EXPECT_TRUE(WaitForMainPane(text)) << "it came back";
}

TEST_F(ReloadTest, ANameThatIsNotUtf8IsNotWatched) {
    Open(Picture(20, 10), "\xFF.iff");
    Open(Picture(20, 10), "\xC3\xA4.iff");
    Replace(Picture(30, 10), "\xFF.iff");
    Replace(Picture(30, 10), "\xC3\xA4.iff");
    EXPECT_TRUE(WaitForMainPane("\xC3\xA4.iff has changed; F5 reads it again"));
    FrameAt(0).ActivateFrame();
    EXPECT_EQ(MainPane(), "Ready");
    Command(ID_RELOAD);
    EXPECT_EQ(FirstWidth(), 30);
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
    Open(Picture(20, 10));
    Open(Picture(20, 10), "other.iff");
    Replace(Picture(30, 10));
    EXPECT_TRUE(WaitFor([&] { return FirstWidth() == 30; })) << "of a window that is not active";
    EXPECT_EQ(Main().MDIGetActive(), &Frame());
    EXPECT_EQ(MainPane(), "Ready");

    Replace(Bytes(10));
    EXPECT_TRUE(WaitUntilTold());
    m_folder.Write(Picture(60, 10), "other.iff");
    EXPECT_TRUE(WaitFor([&] { return ClientSize().cx == 60; }));
    EXPECT_EQ(Told().size(), 1u) << "once for each change";
    EXPECT_EQ(FirstWidth(), 30);

    Replace(Bytes(11));
    EXPECT_TRUE(WaitUntilTold());
    m_folder.Write(Picture(45, 10), "picture.iff");
    EXPECT_TRUE(WaitFor([&] { return FirstWidth() == 45; })) << "written, after another file had taken the name";
    EXPECT_EQ(Told().size(), 1u);

    int rests = 0;
    QMessageBox box;
    const auto timers = qApp->findChildren<QTimer*>(Qt::FindDirectChildrenOnly);
    for (const QTimer* const timer : timers) QObject::connect(timer, &QTimer::timeout, &box, [&] { ++rests; });
    box.open();
    Replace(Picture(50, 10));
    EXPECT_TRUE(WaitFor([&] { return rests >= 2; }));
    EXPECT_EQ(FirstWidth(), 45);
    box.close();
    EXPECT_TRUE(WaitFor([&] { return FirstWidth() == 50; }));
}
