#include "framework/core/shell_registration.h"

#include <algorithm>
#include <string_view>

namespace {

// Type ids and extensions are plain ASCII.
std::string ToLower(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

// Characters of texts that mean something else in XML.
std::string EscapeXml(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else
            escaped += c;
    }
    return escaped;
}

// In quotes, where the program that reads the line takes these characters for its own.
std::string QuoteArgument(const std::string& word) {
    std::string quoted = "\"";
    for (const char c : word) {
        if (std::string_view("\"`$\\").find(c) != std::string_view::npos) quoted += '\\';
        quoted += c;
        if (c == '%') quoted += c;
    }
    return quoted + "\"";
}

// Values of a desktop entry take one line and are escaped once more, whatever is in them.
std::string EscapeValue(const std::string& value) {
    std::string escaped;
    for (const char c : value) {
        if (c == '\n')
            escaped += "\\n";
        else
            escaped.append(c == '\\' ? 2 : 1, c);
    }
    return escaped;
}

}  // namespace

std::string ShellFileType::GetMimeType() const {
    std::string name = ToLower(strTypeId);
    std::ranges::replace(name, '.', '-');
    return "image/x-" + name;
}

// The usual weight is 50.
std::string MakeMimePackage(std::span<const ShellFileType> types) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n";
    for (const ShellFileType& type : types)
        text += "  <mime-type type=\"" + type.GetMimeType() + "\">\n    <comment>" +
                EscapeXml(type.strTypeName) + "</comment>\n    <glob pattern=\"*" +
                ToLower(type.strExtension) + "\" weight=\"40\"/>\n  </mime-type>\n";
    return text + "</mime-info>\n";
}

std::string MakeDesktopEntry(const DesktopEntry& entry, std::span<const ShellFileType> types) {
    std::string mimeTypes;
    for (const ShellFileType& type : types) mimeTypes += type.GetMimeType() + ";";
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=" +
           EscapeValue(entry.strName) + "\n" + "Comment=" + EscapeValue(entry.strComment) + "\n" +
           "TryExec=" + EscapeValue(entry.strProgram) + "\n" +
           "Exec=" + EscapeValue(QuoteArgument(entry.strProgram)) + " -dde %F\n" + "Icon=" + entry.strId +
           "\n"
           "Terminal=false\n"
           "Categories=Graphics;2DGraphics;RasterGraphics;Viewer;\n"
           "MimeType=" +
           mimeTypes + entry.strOffered + "\n";
}
