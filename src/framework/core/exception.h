// The framework's exceptions. They are thrown by value and caught by reference; what() of those below
// CException is one sentence without its full stop, fit to be shown to the user.
#pragma once

#include <array>
#include <exception>
#include <new>
#include <string>

class CException : public std::exception {
  public:
    explicit CException(std::string strText) : m_strText(std::move(strText)) {}
    const char* what() const noexcept override { return m_strText.c_str(); }

  private:
    std::string m_strText;
};

// Memory that could not be had: the allocator's own exception, whoever asked.
using CMemoryException = std::bad_alloc;

// What the user is told about it, a sentence or two without the last full stop: where the limit has no room,
// what it takes and what is left. Takes no memory.
using MemoryText = std::array<char, 128>;
MemoryText AfxMemoryText(const CMemoryException& exception);

// The system's text for an errno value, in the language of the program's own texts.
std::string AfxErrorText(int nError);

// A file that cannot be opened, read or positioned.
class CFileException : public CException {
  public:
    explicit CFileException(std::string strText) : CException(std::move(strText)) {}
    // nError: an errno value, whose text is the whole reason. What could not be done, whoever shows it says.
    explicit CFileException(int nError);
    // The same where the operation needs a name, which comes before the reason.
    CFileException(const std::string& strOperation, int nError);

    int m_nError = 0;  // the errno value, 0 where there is none
};

// A document that its reader refuses.
class CArchiveException : public CException {
  public:
    enum Cause { none = 0, generic = 1 };

    CArchiveException(Cause cause, std::string strFileName);

    Cause m_cause;
    std::string m_strFileName;
};

// Ends an operation whose failure the user has been told of.
class CUserException : public CException {
  public:
    CUserException() : CException("The command was cancelled") {}
};

[[noreturn]] void AfxThrowArchiveException(CArchiveException::Cause cause, const std::string& strFileName);
[[noreturn]] void AfxThrowMemoryException();
