// The program's windows with one picture open, without a screen, and what can be asked of them.
#pragma once

#include "app/child_frame.h"
#include "app/resource_ids.h"
#include "app/vistrel_app.h"
#include "app/vistrel_view.h"
#include "framework/core/resource.h"
#include "support/iff_builder.h"
#include "support/recorded_answers.h"
#include "support/table.h"
#include "support/temp_folder.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

extern CVistrelApp theApp;

// Lets the program run until nothing is left to be done.
inline void Settle() {
    QApplication::processEvents();
    theApp.OnIdle();
}

// Lets the program run until the condition holds. The deadline only ends a test that would never end.
inline bool WaitFor(const std::function<bool()>& condition) {
    constexpr int DEADLINE = 60'000;  // milliseconds
    const auto holds = [&] {
        Settle();
        return condition();
    };
    return QTest::qWaitFor(holds, DEADLINE);
}

// Value of a pixel of Picture; no two neighbours are the same.
inline u32 ValueAt(u32 x, u32 y) { return (x * 7 + y * 11) % 32; }

// 32 shades of grey, all neighbours different.
inline Bytes Picture(u32 nWidth, u32 nHeight) {
    std::vector<u32> values;
    for (u32 y = 0; y < nHeight; ++y)
        for (u32 x = 0; x < nWidth; ++x) values.push_back(ValueAt(x, y));
    return Form("ILBM", {Bmhd({.width = nWidth, .height = nHeight, .planes = 5}), GreyCmap(32, 8),
                            Chunk("BODY", PlanesOf(values, nWidth, 5))});
}

inline CMDIFrameWnd& Main() { return *theApp.m_pMainWnd; }

// False where nobody carries it out.
inline bool Command(u32 nID) { return Main().OnCmdMsg(nID, CN_COMMAND, nullptr); }

inline u32 ShownColour(u32 x, u32 y) {
    const u32 shade = ValueAt(x, y) * 8;
    return 0xFF000000 | shade << 16 | shade << 8 | shade;
}

using Texts = std::vector<std::string>;

inline QComboBox& ListOf(const CComboBox& list) { return dynamic_cast<QComboBox&>(*list.GetWidget()); }

inline Texts Entries(const CComboBox& list) {
    Texts entries;
    for (int i = 0; i < ListOf(list).count(); ++i) entries.push_back(ListOf(list).itemText(i).toStdString());
    return entries;
}

// As the user's key in the list.
inline void Press(const CComboBox& list, Qt::Key key) { QTest::keyClick(&ListOf(list), key); }

// Of a bar's first pane, as it shows.
inline std::string PaneText(const CWnd& bar) { return bar.GetWidget()->findChild<QLabel*>()->text().toStdString(); }

// What the main window's message pane says.
inline std::string MainPane() {
    Settle();
    return PaneText(*Main().GetControlBar(ID_VIEW_STATUS_BAR));
}

// The item of a command as its menu shows it now; none where no menu has it.
inline QAction* MenuItem(u32 nID) {
    for (const QAction* const title : Main().GetBarHost()->menuBar()->actions()) {
        emit title->menu()->aboutToShow();
        for (QAction* const item : title->menu()->actions())
            if (!item->isSeparator() && item->data().toUInt() == nID) return item;
    }
    return nullptr;
}

// Row by row, one 0xFFRRGGBB word for each pixel that the widget shows in a part of it.
inline std::vector<u32> PixelsOf(QWidget& widget, const CRect& rect) {
    const QRect part(rect.left, rect.top, rect.Width(), rect.Height());
    const QImage image = widget.grab(part).toImage().convertToFormat(QImage::Format_RGB32);
    std::vector<u32> pixels;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) pixels.push_back(image.pixel(x, y));
    return pixels;
}

// Reads a file as one of those documents, and shows it.
inline bool OpenAs(const CMultiDocTemplate& documents, const std::string& strPath) {
    const auto document = documents.ReadDocumentFile(strPath, [](CDocument&) {});
    return document && documents.ShowDocument(Main(), document);
}

class WindowTest : public testing::Test {
  protected:
    WindowTest() { Main().MoveWindow({0, 0, 1000, 700}); }
    ~WindowTest() override { Main().DestroyChildren(); }

    CDocument* OpenFile(const Bytes& bytes, const std::string& strName = "picture.iff") {
        return theApp.OpenDocumentFile(m_folder.Write(bytes, strName));
    }

    // After the program's name in the main window's title.
    bool WaitForTitle(const std::string& strRest) {
        return WaitFor([&] { return Main().GetWindowText() == "Talvorine Graphics File Viewer" + strRest; });
    }
    bool WaitForPane(const std::string& strText) {
        return WaitFor([&] { return PaneText(Frame().m_wndInfoBar) == strText; });
    }

    CChildFrame& Frame() { return static_cast<CChildFrame&>(*Main().GetChildren().back()); }
    CVistrelView& View() { return static_cast<CVistrelView&>(*Frame().GetActiveView()); }

    CSize ClientSize() {
        const CRect client = View().GetClientRect();
        return {client.Width(), client.Height()};
    }

    RecordedAnswers m_answers;
    TempFolder m_folder;
};

inline void PrintTo(const CSize& size, std::ostream* pOut) { *pOut << size.cx << " x " << size.cy; }
