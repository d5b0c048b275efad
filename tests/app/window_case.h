// The program's windows with one picture open, without a screen, and what can be asked of them.
#pragma once

#include "app/child_frame.h"
#include "app/resource_ids.h"
#include "app/vistrel_app.h"
#include "app/vistrel_view.h"
#include "support/iff_builder.h"
#include "support/recorded_answers.h"
#include "support/table.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>

extern CVistrelApp theApp;

// Lets the program run until the condition holds. The deadline only ends a test that would never end.
inline bool WaitFor(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        theApp.PumpMessages();
    }
    return true;
}

// Value of a pixel of Picture; no two neighbours are the same.
inline u32 ValueAt(u32 x, u32 y) { return (x * 7 + y * 11) % 32; }

// 32 shades of grey, all neighbours different.
inline Bytes Picture(u32 width, u32 height) {
    std::vector<u32> values;
    for (u32 y = 0; y < height; ++y)
        for (u32 x = 0; x < width; ++x) values.push_back(ValueAt(x, y));
    return Form("ILBM", {Bmhd({.width = width, .height = height, .planes = 5}), GreyCmap(32, 8),
                            Chunk("BODY", PlanesOf(values, width, 5))});
}

inline u32 ShownColour(u32 x, u32 y) {
    const u32 shade = ValueAt(x, y) * 8;
    return 0xFF000000 | shade << 16 | shade << 8 | shade;
}

class WindowTest : public testing::Test {
  protected:
    WindowTest() { theApp.m_pMainWnd->MoveWindow({0, 0, 1000, 700}); }
    ~WindowTest() override { theApp.m_pMainWnd->DestroyChildren(); }

    CDocument* OpenFile(const Bytes& bytes, const std::string& strName = "picture.iff") {
        return theApp.OpenDocumentFile(m_folder.Write(bytes, strName));
    }

    // Behind the program's name in the main window's title.
    bool WaitForTitle(const std::string& strRest) {
        return WaitFor(
            [&] { return theApp.m_pMainWnd->GetWindowText() == "Talvorine Graphics File Viewer" + strRest; });
    }
    bool WaitForPane(const std::string& strText) {
        return WaitFor([&] { return Frame().m_wndInfoBar.GetPaneText(0) == strText; });
    }

    CChildFrame& Frame() { return static_cast<CChildFrame&>(*theApp.m_pMainWnd->GetChildren().back()); }
    CVistrelView& View() { return static_cast<CVistrelView&>(*Frame().GetActiveView()); }

    CSize ClientSize() {
        const CRect client = View().GetClientRect();
        return {client.Width(), client.Height()};
    }

    RecordedAnswers m_answers;
    TempFolder m_folder;
};

using Texts = std::vector<std::string>;

inline Texts Entries(CComboBox& list) {
    Texts entries;
    for (i64 i = 0; i < SendMessageA(&list, CB_GETCOUNT, 0, 0); ++i) {
        std::string text(static_cast<std::size_t>(SendMessageA(&list, CB_GETLBTEXTLEN, i, 0)), '\0');
        SendMessageA(&list, CB_GETLBTEXT, i, reinterpret_cast<i64>(text.data()));
        entries.push_back(text);
    }
    return entries;
}

inline void PrintTo(const CSize& size, std::ostream* pOut) { *pOut << size.cx << " x " << size.cy; }
