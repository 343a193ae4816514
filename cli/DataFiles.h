#pragma once
// The JSON and CSV files that vorta-cli reads and writes beside model files: read whole (or
// from standard input), written through a temporary file renamed over the target (or to
// standard output), so that a failed write never leaves half a file. A target that exists keeps
// its permissions, a link keeps naming it, and a device or a pipe is written as it is.
#include <filesystem>
#include <ostream>
#include <string>

/// True for "-" and the empty path, which stand for the standard streams.
bool IsStandardStream(const std::filesystem::path& file);

/// The whole file (standard input for "-"), at most 1 GiB; false with the reason.
bool ReadDataFile(const std::filesystem::path& file, std::string& text, std::string& error);

/// Writes the text to the file (replacing it), or to `out` for "-" and the empty path; false
/// with the reason, and then the file is as it was.
bool WriteDataFile(const std::filesystem::path& file, const std::string& text, std::ostream& out,
                   std::string& error);
