// One opened file. Its views own it together: it goes with the last one.
#pragma once

#include "framework/core/cmd_target.h"
#include "framework/core/file_stamp.h"

#include <optional>
#include <string>
#include <vector>

class CArchive;
class CView;

// What a message begins with that says why a file was not opened; a sentence follows.
std::string NotOpenedLead(const std::string& strName);

class CDocument : public CCmdTarget {
  public:
    ~CDocument() override = default;

    virtual bool OnNewDocument();

    // Reads the file through Serialize. Where that throws, the contents are deleted, and what comes back is
    // why the file was not opened, a sentence without its full stop; nothing where it was read.
    std::optional<std::string> ReadFile(const std::string& strPathName);

    // The same, but reports to the user why a file was not opened; false then.
    virtual bool OnOpenDocument(const std::string& strPathName);

    virtual void Serialize(CArchive& archive);
    virtual void DeleteContents() {}

    // Why Serialize refused the file, in a sentence without its full stop; empty where there is no more to
    // tell than that it did.
    virtual std::string GetRefusalReason() const { return {}; }

    // Whether the user is asked before the document, which was read, is shown.
    virtual bool NeedsConsent() const { return false; }

    bool IsModified() const { return m_bModified; }
    void SetModifiedFlag(bool bModified = true) { m_bModified = bModified; }

    // The path as bytes; its last part is the title.
    const std::string& GetPathName() const { return m_strPathName; }
    const std::string& GetTitle() const { return m_strTitle; }
    void SetPathName(const std::string& strPathName);

    // Of the file, as it was read last.
    const FileStamp& GetStamp() const { return m_stamp; }

    // Views are borrowed; each adds itself when it is made and takes itself out before it goes.
    void AddView(CView* pView) { m_views.push_back(pView); }
    void RemoveView(CView* pView) { std::erase(m_views, pView); }
    const std::vector<CView*>& GetViews() const { return m_views; }

  private:
    std::string m_strPathName;
    std::string m_strTitle;
    FileStamp m_stamp;
    std::vector<CView*> m_views;
    bool m_bModified = false;
};
