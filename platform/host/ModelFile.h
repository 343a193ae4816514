#pragma once
// The model file: every object of every persistent type of a document, then the
// stored-combinations section, then a CRC-32 of everything before it. docs/model-file.md
// gives the layout.
//
// Loading reads into a fresh object base; the open model is replaced only when the whole file
// read without error and the loads module accepted the model. Only a regular file of at most
// MaxFileSize bytes is read, and only once its magic and version are those of a model file. A
// check of the program that fails while a file is read refuses the file instead of ending the
// program. Saving writes a new temporary file beside the target, created exclusively under a
// unique name, flushes it and renames it over the target, so an interrupted save never loses
// the previous file; the target keeps its permissions.
#include "framework/String.h"
#include "objbase/ObjBase.h"

#include <filesystem>
#include <memory>
#include <vector>

class CModelFile {
public:
    static constexpr char Magic[4] = {'V', 'L', 'D', 'M'};
    static constexpr int32_t FormatVersion = 1;
    /// The largest model file that is read or written.
    static constexpr uint64_t MaxFileSize = uint64_t{1} << 30;

    /// The bytes of a model file for the object base.
    static std::vector<uint8_t> Write(const CObjBase& base);
    /// A new object base read from the bytes of a model file, or null with the reason.
    static std::unique_ptr<CObjBase> Read(const std::vector<uint8_t>& bytes, CString& error);

    /// Saves atomically; false with the reason when the file cannot be written.
    static bool Save(const CObjBase& base, const std::filesystem::path& file, CString& error);
    /// Loads into a fresh base; null with the reason when the file cannot be read or is damaged.
    static std::unique_ptr<CObjBase> Load(const std::filesystem::path& file, CString& error);
    /// Loads and, only on success, replaces `open` by the new base (and makes it current when
    /// the old one was). On failure `open` is untouched and false is returned with the reason.
    static bool Open(const std::filesystem::path& file, std::unique_ptr<CObjBase>& open,
                     CString& error);
};
