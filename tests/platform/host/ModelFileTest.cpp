// The model file: layout, round trip, refusal of damaged files and the atomic save.
#include "host/ModelFile.h"
#include "host/Model.h"
#include "host/ModelFileInput.h"
#include "platform/TempDir.h"
#include "platform/objbase/TestRecords.h"

#include <algorithm>
#include <climits>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;

/// What the stored-combinations reader saw: per call the version, then the values.
std::vector<std::vector<int32_t>> g_sections;

void SnimiSekciju(CFiller& f) {
    for (const int32_t v : {2, 1, 0, 1, 0})
        f.WriteInt32(v);
}

void UcitajSekciju(CFiller& f, int version) {
    g_sections.push_back({version});
    int32_t v = 0;
    for (int i = 0; i < 5 && f.ReadInt32(v); ++i)
        g_sections.back().push_back(v);
}

Bytes ReadBytes(const fs::path& file) {
    const std::string text = ReadText(file);
    return {text.begin(), text.end()};
}

void WriteBytes(const fs::path& file, const Bytes& bytes) {
    std::ofstream(file, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size()));
}

/// The bytes with a little-endian word put at pos.
Bytes Put(Bytes bytes, size_t pos, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        bytes[pos + i] = static_cast<uint8_t>(v >> (8 * i));
    return bytes;
}

/// The bytes with the checksum at their end written anew, so that a change passes it.
Bytes Sealed(Bytes bytes) {
    const size_t body = bytes.size() - 4;
    const auto crc = static_cast<uint32_t>(crc32(0L, bytes.data(), static_cast<uInt>(body)));
    return Put(std::move(bytes), body, crc);
}

class ModelFile : public ::testing::Test {
protected:
    void SetUp() override {
        RegisterHostClasses();
        RegisterTestRecords();
        g_sections.clear();
        CModel::SnimiUskladisteneKombinacije = &SnimiSekciju;
        CModel::UcitajUskladisteneKombinacije = &UcitajSekciju;
        Build(m_base);
    }
    void TearDown() override {
        CModel::SnimiUskladisteneKombinacije = nullptr;
        CModel::UcitajUskladisteneKombinacije = nullptr;
    }

    /// A model, loads of three kinds and test records, with a deleted object leaving a gap
    /// in the ids and records loaded out of id order.
    static void Build(CObjBase& base) {
        {
            CBaseManager bm(0, &base);
            bm.Open(CBaseManager::Write);
            auto* model = new CModel;
            model->SetAnaliza(3);
            bm.Insert(model);
            for (int i = 0; i < 3; ++i) {
                auto* load = new CLinijskoOpterecenje;
                load->SetSlOptId(CId(100 + i));
                load->SetIntenzitet(1.5 * i);
                load->SetAtribut(i);
                bm.Insert(load);
            }
            auto* point = new CTackastoOpterecenje;
            point->SetIntenzitet(-4.25);
            bm.Insert(point);
            bm.Insert(new CPrednaprezanje);
            bm.Delete(CId(3));
        }
        for (const int id : {40, 20, 30}) {
            auto* z = new CTestZapis(id, id / 8.0);
            z->SetId(CId(id));
            base.InsertLoaded(z);
        }
    }

    CTempDir m_dir;
    const fs::path m_file = m_dir.Path() / "model.vldm";
    CString m_error;
    CObjBase m_base;
};

} // namespace

TEST_F(ModelFile, LayoutIsMagicVersionTypeSectionsStoredCombinationsAndCrc) {
    CObjBase base;
    {
        CBaseManager bm(0, &base);
        bm.Open(CBaseManager::Write);
        bm.Insert(new CModel);
    }
    const Bytes expected = Sealed(
        {'V', 'L', 'D', 'M', 1, 0, 0, 0, 1,  0, 0, 0, // magic, version, one section
         1,   0,   0,   0,   1, 0, 0, 0, 20, 0, 0, 0, // model type, one object, record size
         1,   0,   0,   0,   1, 0, 0, 0, 0,  0, 0, 0, // base record
         1,   0,   0,   0,   1, 0, 0, 0,              // model record
         20,  0,   0,   0,   2, 0, 0, 0, 1,  0, 0, 0, 0, 0, 0,
         0,   1,   0,   0,   0, 0, 0, 0, 0,  0, 0, 0, 0}); // stored combinations, then the checksum
    EXPECT_EQ(CModelFile::Write(base), expected);

    // Without the loads module the section is empty.
    CModel::SnimiUskladisteneKombinacije = nullptr;
    const Bytes bare = CModelFile::Write(base);
    EXPECT_EQ(bare.size(), expected.size() - 20);
    EXPECT_EQ(Bytes(bare.end() - 8, bare.end() - 4), (Bytes{0, 0, 0, 0}));
}

TEST_F(ModelFile, RoundTripKeepsObjectsIdsOrderAndTheStoredCombinations) {
    // Every record of the host can be created by its type when a file is read.
    for (int type = CBaseManager::ModelType; type <= CBaseManager::UticajnaLinijaTackastaType;
         ++type) {
        EXPECT_TRUE(CObjBase::IsPersistent(type)) << type;
        CObj* obj = CObjBase::CreateObject(type);
        ASSERT_NE(obj, nullptr);
        EXPECT_EQ(obj->GetType(), type);
        obj->Destroy(1);
    }
    ASSERT_TRUE(CModelFile::Save(m_base, m_file, m_error)) << m_error.ToUtf8();
    std::unique_ptr<CObjBase> loaded = CModelFile::Load(m_file, m_error);
    ASSERT_TRUE(loaded) << m_error.ToUtf8();
    EXPECT_EQ(Contents(*loaded), Contents(m_base));
    EXPECT_EQ(loaded->Ids(CTestZapis::Type), (std::vector<CId>{CId(40), CId(20), CId(30)}));
    EXPECT_EQ(loaded->GetNextId(), 41);
    EXPECT_FALSE(loaded->CanUndo());
    const std::vector<std::vector<int32_t>> section = {{CModelFile::FormatVersion, 2, 1, 0, 1, 0}};
    EXPECT_EQ(g_sections, section);
    // The same file written again is the same bytes.
    EXPECT_EQ(CModelFile::Write(*loaded), ReadBytes(m_file));

    // Without a reader the section is skipped; an empty section is not handed over.
    CModel::UcitajUskladisteneKombinacije = nullptr;
    EXPECT_TRUE(CModelFile::Read(ReadBytes(m_file), m_error));
    CModel::UcitajUskladisteneKombinacije = &UcitajSekciju;
    CModel::SnimiUskladisteneKombinacije = nullptr;
    EXPECT_TRUE(CModelFile::Read(CModelFile::Write(m_base), m_error));
    EXPECT_EQ(g_sections, section);
}

TEST_F(ModelFile, DamagedFilesAreRefusedWithTheReason) {
    const Bytes good = CModelFile::Write(m_base);
    auto refuse = [&](const Bytes& bytes) {
        m_error.Empty();
        EXPECT_FALSE(CModelFile::Read(bytes, m_error));
        EXPECT_FALSE(m_error.IsEmpty());
        return m_error.ToUtf8();
    };
    // Every shorter file and any one changed byte are refused.
    for (size_t n = 0; n < good.size(); ++n) {
        refuse(Bytes(good.begin(), good.begin() + static_cast<long>(n)));
        Bytes bytes = good;
        bytes[n] ^= 0x5A;
        refuse(bytes);
    }
    EXPECT_EQ(refuse({good.begin(), good.end() - 1}), "model file is truncated");
    EXPECT_EQ(refuse({good.begin(), good.begin() + 40}), "model file is truncated");
    Bytes flipped = good;
    flipped[40] ^= 0x01;
    EXPECT_EQ(refuse(flipped), "model file is damaged (checksum mismatch)");
    EXPECT_EQ(refuse(Put(good, 0, 0x584D4C56)), "not a model file"); // "VLMX"
    EXPECT_EQ(refuse({}), "not a model file");
    EXPECT_EQ(refuse(Put(good, 4, 7)), "unsupported model file version 7");

    // Files with a valid checksum whose content cannot be taken.
    EXPECT_EQ(refuse(Sealed(Put(good, 12, 99))), "unknown object type 99");
    EXPECT_EQ(refuse(Sealed(Put(good, 36, 7))), // the model record's own version
              "object record of type 1 is damaged: Object version error! Version: 7");
    // The point load (type 2, after the model) takes the model's id.
    EXPECT_EQ(refuse(Sealed(Put(good, 60, 1))),
              "object id 1 of type 2 is invalid or repeated in the model file");
    CModel::UcitajUskladisteneKombinacije = [](CFiller& f, int) {
        int32_t v = 0;
        for (int i = 0; i < 6; ++i)
            f.ReadInt32(v);
    };
    EXPECT_EQ(refuse(good).rfind("stored combinations section is damaged", 0), 0u);
}

TEST_F(ModelFile, OpenReplacesTheModelOnlyOnSuccess) {
    ASSERT_TRUE(CModelFile::Save(m_base, m_file, m_error));
    const Bytes good = ReadBytes(m_file);
    auto open = std::make_unique<CObjBase>();
    {
        CBaseManager bm(0, open.get());
        bm.Open(CBaseManager::Write);
        bm.Insert(new CModel);
    }
    CObjBase* const original = open.get();
    CObjBase::SetCurrent(original);
    const auto before = Contents(*open);

    Bytes flipped = good;
    flipped[good.size() / 2] ^= 0x10;
    for (const Bytes& bad : {Bytes(good.begin(), good.end() - 3), flipped, Put(good, 0, 0x4D444C76),
                             Sealed(Put(good, 12, 99))}) {
        WriteBytes(m_file, bad);
        EXPECT_FALSE(CModelFile::Open(m_file, open, m_error));
        EXPECT_EQ(open.get(), original);
        EXPECT_EQ(Contents(*open), before);
        EXPECT_EQ(CObjBase::GetCurrent(), original);
    }
    EXPECT_FALSE(CModelFile::Open(m_dir.Path() / "missing.vldm", open, m_error));
    EXPECT_EQ(m_error.ToUtf8().rfind("cannot open model file", 0), 0u);

    WriteBytes(m_file, good);
    ASSERT_TRUE(CModelFile::Open(m_file, open, m_error));
    EXPECT_NE(open.get(), original);
    EXPECT_EQ(CObjBase::GetCurrent(), open.get());
    EXPECT_EQ(Contents(*open), Contents(m_base));
    CObjBase::SetCurrent(nullptr);
}

TEST_F(ModelFile, FailedSaveKeepsTheOldFileAndLeavesNoTemporary) {
    ASSERT_TRUE(CModelFile::Save(m_base, m_file, m_error));
    const Bytes old = ReadBytes(m_file);
    CObjBase other;
    Build(other);
    auto refused = [&](const fs::path& file) {
        m_error.Empty();
        EXPECT_FALSE(CModelFile::Save(other, file, m_error)) << file;
        return m_error.ToUtf8();
    };

    // What is not a regular file is never replaced, and the reason names the user's file.
    const fs::path busy = m_dir.Path() / "busy";
    fs::create_directories(busy / "inside");
    EXPECT_EQ(refused(busy), "cannot write model file \"" + busy.string() + "\": Is a directory");
    EXPECT_TRUE(fs::is_directory(busy / "inside"));
    EXPECT_EQ(refused("/dev/null"), "cannot write model file \"/dev/null\": not a regular file");
    const fs::path missing = m_dir.Path() / "none" / "model.vldm";
    EXPECT_EQ(refused(missing),
              "cannot write model file \"" + missing.string() + "\": No such file or directory");
    EXPECT_EQ(ReadBytes(m_file), old);

    // A successful save replaces the old file and leaves nothing else behind.
    ASSERT_TRUE(CModelFile::Save(other, m_file, m_error));
    EXPECT_EQ(ReadBytes(m_file), CModelFile::Write(other));
    std::vector<fs::path> left;
    for (const auto& entry : fs::directory_iterator(m_dir.Path()))
        left.push_back(entry.path().filename());
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (std::vector<fs::path>{"busy", "model.vldm"}));
}

TEST_F(ModelFile, SaveNeverFollowsALinkToItsTemporaryAndKeepsPermissionsAndLinks) {
    // A link where a temporary of a fixed name would be: the file it points to stays as it is.
    const fs::path victim = m_dir.Path() / "victim";
    WriteBytes(victim, {1, 2, 3});
    fs::create_symlink(victim, m_dir.Path() / "model.vldm.tmp");
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(CModelFile::Save(m_base, m_file, m_error)) << m_error.ToUtf8();
    EXPECT_EQ(ReadBytes(victim), (Bytes{1, 2, 3}));
    EXPECT_TRUE(fs::is_symlink(m_dir.Path() / "model.vldm.tmp"));

    // The model file keeps its permissions, a read-only one included; a new one gets what
    // the file mode mask leaves of 0666.
    for (const fs::perms perms : {fs::perms(0444), fs::perms(0640)}) {
        fs::permissions(m_file, perms);
        ASSERT_TRUE(CModelFile::Save(m_base, m_file, m_error)) << m_error.ToUtf8();
        EXPECT_EQ(fs::status(m_file).permissions(), perms);
    }
    const mode_t mask = ::umask(022);
    const fs::path fresh = m_dir.Path() / "fresh.vldm";
    ASSERT_TRUE(CModelFile::Save(m_base, fresh, m_error));
    EXPECT_EQ(fs::status(fresh).permissions(), fs::perms(0644));
    ::umask(mask);

    // Saving through a link replaces the file it names; the link stays a link.
    const fs::path link = m_dir.Path() / "link.vldm";
    fs::create_symlink(fresh, link);
    CObjBase other;
    ASSERT_TRUE(CModelFile::Save(other, link, m_error)) << m_error.ToUtf8();
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(ReadBytes(fresh), CModelFile::Write(other));

    // A name as long as the file system allows still saves (its temporary is named shorter).
    const fs::path longest = m_dir.Path() / (std::string(NAME_MAX - 5, 'm') + ".vldm");
    ASSERT_TRUE(CModelFile::Save(m_base, longest, m_error)) << m_error.ToUtf8();
    EXPECT_EQ(ReadBytes(longest), CModelFile::Write(m_base));
    size_t files = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(m_dir.Path()))
        ++files;
    EXPECT_EQ(files, 6u); // victim, its link, model.vldm, fresh.vldm, link.vldm, the long one
}

namespace {

/// A stored-combinations section longer than a piece of the file read at a time.
constexpr int32_t kLongSection = static_cast<int32_t>(CModelFileInput::PieceSize / 4 + 1000);

void SnimiDuguSekciju(CFiller& f) {
    for (int32_t v = 0; v < kLongSection; ++v)
        f.WriteInt32(v * 7);
}

void UcitajDuguSekciju(CFiller& f, int) {
    int32_t v = 0;
    for (int32_t i = 0; i < kLongSection; ++i)
        if (!f.ReadInt32(v) || v != i * 7)
            f.SetError(L"a value differs");
}

} // namespace

TEST_F(ModelFile, LargeFilesReadFromDiskInPiecesAsFromMemory) {
    // Records across the borders of the pieces, and a section longer than one.
    for (int32_t i = 0; i < 90000; ++i) {
        auto* z = new CTestZapis(i, i / 3.0);
        z->SetId(CId(1000 + i));
        m_base.InsertLoaded(z);
    }
    CModel::SnimiUskladisteneKombinacije = &SnimiDuguSekciju;
    CModel::UcitajUskladisteneKombinacije = &UcitajDuguSekciju;
    ASSERT_TRUE(CModelFile::Save(m_base, m_file, m_error)) << m_error.ToUtf8();
    const Bytes good = ReadBytes(m_file);
    ASSERT_GT(good.size(), 3 * CModelFileInput::PieceSize);
    // Saving writes what the bytes of the model file are.
    EXPECT_EQ(good, CModelFile::Write(m_base));
    std::unique_ptr<CObjBase> loaded = CModelFile::Load(m_file, m_error);
    ASSERT_TRUE(loaded) << m_error.ToUtf8();
    EXPECT_EQ(Contents(*loaded), Contents(m_base));
    EXPECT_EQ(CModelFile::Write(*loaded), good);

    // Every file is taken or refused from disk exactly as from memory, for the same reason.
    const size_t last = good.size() - 4;
    const size_t farRecord = 2 * CModelFileInput::PieceSize + 17;
    Bytes flippedFar = good;
    flippedFar[farRecord] ^= 0x20;
    const std::vector<Bytes> variants = {
        Bytes(good.begin(), good.begin() + static_cast<long>(farRecord)),
        Bytes(good.begin(), good.end() - 1),
        flippedFar,
        Sealed(flippedFar),
        Sealed(Put(good, last - 4, 5)),
        Sealed(Put(good, last - 4 * kLongSection - 4, 12)),
        Sealed(Put(good, last - 4 * kLongSection - 4, 4 * kLongSection + 4)),
    };
    for (size_t v = 0; v < variants.size(); ++v) {
        CString fromMemory;
        const std::unique_ptr<CObjBase> a = CModelFile::Read(variants[v], fromMemory);
        WriteBytes(m_file, variants[v]);
        CString fromDisk;
        const std::unique_ptr<CObjBase> b = CModelFile::Load(m_file, fromDisk);
        EXPECT_EQ(a != nullptr, b != nullptr) << v;
        EXPECT_EQ(fromDisk.ToUtf8(), fromMemory.ToUtf8()) << v;
        if (a && b) {
            EXPECT_EQ(CModelFile::Write(*a), CModelFile::Write(*b)) << v;
        }
        if (v < 4) {
            EXPECT_FALSE(b) << v;
        }
    }
}
