// The file-system boundary of the program.
//
// Paths in the program's state are the system's own texts, with "\" as the
// separator and a trailing "\" on directories ("L:\bin.orka\spectrum\configs\").
// Only the functions here turn them into native paths, so nothing else in the
// code knows about the platform's path rules.
//
// Drive letters: "X:\rest" maps to the directory named by the environment
// variable LUMISCOPE_DRIVE_X (for example LUMISCOPE_DRIVE_L=/srv/orka), joined
// with "rest". A drive without such a variable stays unmapped, so the file is
// simply not found. Paths without a drive pass through with "\" turned into "/".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace catalogue {

std::string NativePath(std::string_view systemPath);

// A file search on a path: for a directory path ending in "\" or "/", the
// name of its first entry (in name order); for a file path, the file's name
// when it exists; "" when nothing is found.
std::string FileSearch(std::string_view systemPath);

// The lines of a text file, read as bytes. Lines end at LF, CR LF or a lone CR;
// a line end at the very end of the file does not start another line. Throws
// RuntimeError(FileNotFound) for a missing file and RuntimeError(FileRead) for
// one that cannot be read or is larger than kMaxTableBytes.
std::vector<std::string> ReadTextLines(std::string_view systemPath);

// No configuration table comes near this; a larger file is a mistake (a log or
// an image in the wrong place), not something to load into memory.
inline constexpr std::size_t kMaxTableBytes = 64u * 1024u * 1024u;

// Splits file contents into lines by the rules of ReadTextLines.
std::vector<std::string> SplitLines(std::string_view contents);

}  // namespace catalogue
