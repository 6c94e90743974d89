// The few things that are done to files and their names. Any thread. Failures are told by the
// result; none is reported in any other way.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

namespace bonkora::platform {

// Whether anything at all stands at `path`; links are followed, nothing else is asked.
bool fileExists(const std::string& path);

// Writes `text` to a fresh side file in the same folder that then takes the name `path`.
bool writeAtomically(const std::string& path, std::string_view text);

// Sets the permission bits of the file at `path`, which must not be a symbolic link.
bool setPermissions(const std::string& path, mode_t permissions);

// Makes a named pipe with `permissions` as the process's file-creation mask allows.
bool makeNamedPipe(const std::string& path, mode_t permissions);

// Removes one name; a folder is left alone.
bool removeItem(const std::string& path);

// The part of `path` before its last slash; empty where it has none.
std::string_view parentFolder(std::string_view path);

// The part of `path` after its last slash.
std::string_view lastComponent(std::string_view path);

}  // namespace bonkora::platform
