#include "framework/core/document.h"

#include "framework/core/answers.h"
#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/regular_file.h"

#include <exception>

bool CDocument::OnNewDocument() {
    DeleteContents();
    m_strPathName.clear();
    SetModifiedFlag(false);
    return true;
}

bool CDocument::OnOpenDocument(const std::string& strPathName) {
    const auto refuse = [&](const std::string& strReason) {
        DeleteContents();
        AfxMessageBox("\"" + strPathName + "\" was not opened. " + strReason + ".");
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
    } catch (const CMemoryException& exception) {
        return refuse(AfxMemoryText(exception).data());
    } catch (const CArchiveException& exception) {
        const std::string reason = GetRefusalReason();
        return refuse(reason.empty() ? exception.what() : reason);
    } catch (const std::exception& exception) {
        return refuse(exception.what());
    }
}

void CDocument::Serialize(CArchive&) {}

void CDocument::SetPathName(const std::string& strPathName) {
    m_strPathName = strPathName;
    m_strTitle = strPathName.substr(strPathName.rfind('/') + 1);
}
