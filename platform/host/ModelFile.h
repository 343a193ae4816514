#pragma once
// The model file: every object of every persistent type of a document, then the
// stored-combinations section, then a CRC-32 of everything before it. docs/model-file.md
// gives the layout.
//
// Loading reads into a fresh object base; the open model is replaced only when the whole file
// read without error. Saving writes a temporary file beside the target, flushes it and renames
// it over the target, so an interrupted save never loses the previous file.
#include "framework/String.h"
#include "objbase/ObjBase.h"

#include <filesystem>
#include <memory>
#include <vector>

class CModelFile {
public:
    static constexpr char Magic[4] = {'V', 'L', 'D', 'M'};
    static constexpr int32_t FormatVersion = 1;

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
