// Paths as URIs: in the settings, on the bus, and where files are dropped.
#pragma once

#include <optional>
#include <string>

// The absolute path as a URI, which is plain ASCII whatever the path's bytes are.
std::string ToFileUri(const std::string& strPath);

// The path's bytes. None for what names no file of this computer.
std::optional<std::string> FromFileUri(const std::string& strUri);
