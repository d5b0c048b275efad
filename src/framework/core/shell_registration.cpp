#include "framework/core/shell_registration.h"

#include "framework/core/ascii.h"

#include <algorithm>
#include <string_view>

namespace {

// Type ids and extensions are plain ASCII.
std::string ToLower(std::string text) {
    std::ranges::transform(text, text.begin(), AsciiLower);
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

bool IsPlain(char c) {
    return IsAsciiAlphanumeric(c) || std::string_view("/._-").find(c) != std::string_view::npos;
}

// In quotes, and with a backslash before what means something there all the same.
std::string QuoteArgument(const std::string& word) {
    if (std::ranges::all_of(word, IsPlain)) return word;
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

// Whoever claims a type comes before those who claim one that it is a kind of, in whatever order the desktop
// looks at their entries. So the offered type becomes a kind of one that only this program claims.
std::string ShellRegistration::GetOfferType() const {
    return "image/x-" + ToLower(strId.substr(strId.rfind('.') + 1)) + "-offer";
}

// The usual weight of a pattern is 50. A comment counts for more than that of the system, even where it is
// missing, so the offered type gets one too.
std::string ShellRegistration::MakeMimePackage() const {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n";
    const auto add = [&](const std::string& name, const std::string& comment, const std::string& rest) {
        text += "  <mime-type type=\"" + name + "\">\n    <comment>" + EscapeXml(comment) + "</comment>\n" +
                rest + "  </mime-type>\n";
    };
    const auto subClassOf = [](const std::string& name) {
        return "    <sub-class-of type=\"" + name + "\"/>\n";
    };
    for (const ShellFileType& type : types)
        add(type.GetMimeType(), type.strTypeName,
            subClassOf(strClaimed) + "    <glob pattern=\"*" + ToLower(type.strExtension) +
                "\" weight=\"40\"/>\n");
    add(GetOfferType(), strName, "");
    add(strOffered, strOfferedName, subClassOf(GetOfferType()));
    return text + "</mime-info>\n";
}

std::string ShellRegistration::MakeDesktopEntry(const std::string& strProgram) const {
    std::string mimeTypes;
    for (const ShellFileType& type : types) mimeTypes += type.GetMimeType() + ";";
    mimeTypes += strClaimed + ";" + GetOfferType() + ";";
    return "[Desktop Entry]\nType=Application\nName=" + EscapeValue(strName) +
           "\nComment=" + EscapeValue(strComment) + "\nTryExec=" + EscapeValue(strProgram) +
           "\nExec=" + EscapeValue(QuoteArgument(strProgram)) + " -dde %F\nIcon=" + strId +
           "\nTerminal=false\nCategories=Graphics;2DGraphics;RasterGraphics;Viewer;\nMimeType=" + mimeTypes +
           "\n";
}
