#include "framework/core/document.h"

#include "framework/core/answers.h"
#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/regular_file.h"

#include <exception>
#include <new>

bool CDocument::OnNewDocument() {
    DeleteContents();
    m_strPathName.clear();
    SetModifiedFlag(false);
    return true;
}

bool CDocument::OnOpenDocument(const std::string& strPathName) {
    const auto refuse = [&](const char* pszReason) {
        DeleteContents();
        AfxMessageBox("\"" + strPathName + "\" was not opened. " + pszReason + ".");
        return false;
    };
    try {
        CRegularFile file(strPathName);
        CArchive archive(&file, CArchive::load);
        archive.m_strFileName = strPathName;
        DeleteContents();
        Serialize(archive);
        SetModifiedFlag(false);
        return true;
    } catch (const std::bad_alloc&) {
        return refuse(CMemoryException().what());
    } catch (const CArchiveException& exception) {
        return refuse((std::string(exception.what()) + "; vistrel-describe tells what it is").c_str());
    } catch (const std::exception& exception) {
        return refuse(exception.what());
    }
}

void CDocument::Serialize(CArchive&) {}

void CDocument::SetPathName(const std::string& strPathName) {
    m_strPathName = strPathName;
    m_strTitle = strPathName.substr(strPathName.rfind('/') + 1);
}

void CDocument::RemoveView(CView* pView) {
    std::erase(m_views, pView);
    if (m_views.empty() && m_bAutoDelete) delete this;
}
