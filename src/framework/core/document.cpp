#include "framework/core/document.h"

#include "framework/core/answers.h"
#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/path_name.h"
#include "framework/core/regular_file.h"

#include <exception>

std::string NotOpenedLead(const std::string& strName) {
    return "\"" + strName + "\" was not opened. ";
}

bool CDocument::OnNewDocument() {
    DeleteContents();
    m_strPathName.clear();
    SetModifiedFlag(false);
    return true;
}

std::optional<std::string> CDocument::ReadFile(const std::string& strPathName) {
    const auto refuse = [&](const std::string& strReason) {
        DeleteContents();
        return strReason;
    };
    try {
        CRegularFile file(strPathName);
        CArchive archive(&file, CArchive::load);
        archive.m_strFileName = strPathName;
        DeleteContents();
        m_stamp = file.GetStamp();
        Serialize(archive);
        SetModifiedFlag(false);
        return std::nullopt;
    } catch (const CMemoryException& exception) {
        return refuse(AfxMemoryText(exception).data());
    } catch (const CArchiveException& exception) {
        const std::string reason = GetRefusalReason();
        return refuse(reason.empty() ? exception.what() : reason);
    } catch (const std::exception& exception) {
        return refuse(exception.what());
    }
}

bool CDocument::OnOpenDocument(const std::string& strPathName) {
    const std::optional<std::string> refusal = ReadFile(strPathName);
    if (refusal) AfxMessageBox(NotOpenedLead(strPathName) + *refusal + ".");
    return !refusal;
}

void CDocument::Serialize(CArchive&) {}

void CDocument::SetPathName(const std::string& strPathName) {
    m_strPathName = strPathName;
    m_strTitle = FileNameOf(strPathName);
}
