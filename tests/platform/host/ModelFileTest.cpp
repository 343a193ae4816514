// The model file: layout, round trip, refusal of damaged files and the atomic save.
#include "host/ModelFile.h"
#include "host/Model.h"
#include "platform/objbase/TestRecords.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace {

namespace fs = std::filesystem;

/// What the stored-combinations handlers saw.
struct SectionLog {
    int calls = 0;
    int version = 0;
    std::vector<int32_t> values;
};
SectionLog g_section;

void SnimiSekciju(CFiller& f) {
    for (const int32_t v : {2, 1, 0, 1, 0})
        f.WriteInt32(v);
}

void UcitajSekciju(CFiller& f, int version) {
    ++g_section.calls;
    g_section.version = version;
    int32_t v = 0;
    for (int i = 0; i < 5 && f.ReadInt32(v); ++i)
        g_section.values.push_back(v);
}

void UcitajPreviseSekcije(CFiller& f, int) {
    int32_t v = 0;
    for (int i = 0; i < 6; ++i)
        f.ReadInt32(v);
}

std::vector<uint8_t> ReadBytes(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteBytes(const fs::path& file, const std::vector<uint8_t>& bytes) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
}

void PutLe32(std::vector<uint8_t>& bytes, size_t pos, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        bytes[pos + i] = static_cast<uint8_t>(v >> (8 * i));
}

/// Writes the checksum of a file whose bytes were changed on purpose.
void Reseal(std::vector<uint8_t>& bytes) {
    const size_t body = bytes.size() - 4;
    PutLe32(
        bytes, body,
        static_cast<uint32_t>(crc32(crc32(0L, Z_NULL, 0), bytes.data(), static_cast<uInt>(body))));
}

/// Every object of a base as the bytes of its record, per type in store order.
std::vector<std::pair<int, std::vector<uint8_t>>> Contents(const CObjBase& base) {
    std::vector<std::pair<int, std::vector<uint8_t>>> all;
    for (const int type : CObjBase::GetRegisteredTypes())
        for (const CId& id : base.Ids(type)) {
            CFiller f;
            f.Open(CFiller::Mode::Write);
            base.Find(id)->ToFiller(f);
            all.emplace_back(type, f.Buffer());
        }
    return all;
}

class ModelFile : public ::testing::Test {
protected:
    void SetUp() override {
        RegisterHostClasses();
        RegisterTestRecords();
        g_section = {};
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
    const std::vector<uint8_t> bytes = CModelFile::Write(base);
    std::vector<uint8_t> expected = {'V', 'L', 'D', 'M', 1, 0, 0, 0, 1,  0, 0, 0, // one section
                                     1,   0,   0,   0,   1, 0, 0, 0, 20, 0, 0, 0, // model type
                                     1,   0,   0,   0,   1, 0, 0, 0, 0,  0, 0, 0, // base record
                                     1,   0,   0,   0,   1, 0, 0, 0,              // model record
                                     20,  0,   0,   0,   2, 0, 0, 0, 1,  0, 0, 0, 0, 0,
                                     0,   0,   1,   0,   0, 0, 0, 0, 0,  0, 0, 0, 0, 0};
    Reseal(expected);
    EXPECT_EQ(bytes, expected);

    // Without the loads module the section is empty.
    CModel::SnimiUskladisteneKombinacije = nullptr;
    const std::vector<uint8_t> bare = CModelFile::Write(base);
    EXPECT_EQ(bare.size(), expected.size() - 20);
    EXPECT_EQ(std::vector<uint8_t>(bare.end() - 8, bare.end() - 4),
              (std::vector<uint8_t>{0, 0, 0, 0}));
}

TEST_F(ModelFile, RoundTripKeepsObjectsIdsOrderAndTheStoredCombinations) {
    CTempDir dir;
    const fs::path file = dir.Path() / "model.vldm";
    CString error;
    ASSERT_TRUE(CModelFile::Save(m_base, file, error)) << error.ToUtf8();
    EXPECT_FALSE(fs::exists(dir.Path() / "model.vldm.tmp"));

    std::unique_ptr<CObjBase> loaded = CModelFile::Load(file, error);
    ASSERT_TRUE(loaded) << error.ToUtf8();
    EXPECT_EQ(Contents(*loaded), Contents(m_base));
    EXPECT_EQ(loaded->Ids(CTestZapis::Type), (std::vector<CId>{CId(40), CId(20), CId(30)}));
    EXPECT_EQ(loaded->Ids(CBaseManager::LinijskoOpterecenjeType),
              (std::vector<CId>{CId(2), CId(4)}));
    EXPECT_EQ(loaded->GetNextId(), 41);
    EXPECT_FALSE(loaded->CanUndo());
    EXPECT_EQ(static_cast<const CModel*>(loaded->Find(CId(1)))->GetAnaliza(), 3);
    EXPECT_EQ(g_section.calls, 1);
    EXPECT_EQ(g_section.version, CModelFile::FormatVersion);
    EXPECT_EQ(g_section.values, (std::vector<int32_t>{2, 1, 0, 1, 0}));

    // The same file written again is the same bytes.
    EXPECT_EQ(CModelFile::Write(*loaded), ReadBytes(file));

    // Without a reader the section is skipped; an empty section is not handed over.
    CModel::UcitajUskladisteneKombinacije = nullptr;
    EXPECT_TRUE(CModelFile::Read(ReadBytes(file), error));
    CModel::UcitajUskladisteneKombinacije = &UcitajSekciju;
    CModel::SnimiUskladisteneKombinacije = nullptr;
    EXPECT_TRUE(CModelFile::Read(CModelFile::Write(m_base), error));
    EXPECT_EQ(g_section.calls, 1);
}

TEST_F(ModelFile, DamagedFilesAreRefusedWithTheReason) {
    const std::vector<uint8_t> good = CModelFile::Write(m_base);
    CString error;
    auto refuse = [&](const std::vector<uint8_t>& bytes) {
        error.Empty();
        EXPECT_FALSE(CModelFile::Read(bytes, error));
        EXPECT_FALSE(error.IsEmpty());
        return error.ToUtf8();
    };

    // Every shorter file is refused; one cut inside the body is reported as truncated.
    for (size_t n = 0; n < good.size(); ++n)
        refuse(std::vector<uint8_t>(good.begin(), good.begin() + static_cast<long>(n)));
    EXPECT_EQ(refuse({good.begin(), good.end() - 1}), "model file is truncated");
    EXPECT_EQ(refuse({good.begin(), good.begin() + 40}), "model file is truncated");
    EXPECT_EQ(refuse({good.begin(), good.begin() + 2}), "model file is truncated");

    // Any one changed byte is noticed.
    for (size_t i = 0; i < good.size(); ++i) {
        std::vector<uint8_t> bytes = good;
        bytes[i] ^= 0x5A;
        refuse(bytes);
    }
    std::vector<uint8_t> flipped = good;
    flipped[40] ^= 0x01;
    EXPECT_EQ(refuse(flipped), "model file is damaged (checksum mismatch)");

    std::vector<uint8_t> magic = good;
    magic[3] = 'X';
    EXPECT_EQ(refuse(magic), "not a model file");
    EXPECT_EQ(refuse({}), "not a model file");

    std::vector<uint8_t> version = good;
    PutLe32(version, 4, 7);
    EXPECT_EQ(refuse(version), "unsupported model file version 7");

    // Files with a valid checksum whose content cannot be taken.
    std::vector<uint8_t> unknown = good;
    PutLe32(unknown, 12, 99);
    Reseal(unknown);
    EXPECT_EQ(refuse(unknown), "unknown object type 99");

    std::vector<uint8_t> record = good;
    PutLe32(record, 36, 7); // the model record's own version
    Reseal(record);
    EXPECT_EQ(refuse(record),
              "object record of type 1 is damaged: Object version error! Version: 7");

    std::vector<uint8_t> repeated = good;
    PutLe32(repeated, 60, 1); // the point load (type 2, after the model) takes the model's id
    Reseal(repeated);
    EXPECT_EQ(refuse(repeated), "object id 1 of type 2 is invalid or repeated in the model file");

    CModel::UcitajUskladisteneKombinacije = &UcitajPreviseSekcije;
    EXPECT_EQ(refuse(good).rfind("stored combinations section is damaged", 0), 0u);
}

TEST_F(ModelFile, OpenReplacesTheModelOnlyOnSuccess) {
    CTempDir dir;
    const fs::path file = dir.Path() / "model.vldm";
    CString error;
    ASSERT_TRUE(CModelFile::Save(m_base, file, error));
    const std::vector<uint8_t> good = ReadBytes(file);

    auto open = std::make_unique<CObjBase>();
    {
        CBaseManager bm(0, open.get());
        bm.Open(CBaseManager::Write);
        bm.Insert(new CModel);
    }
    CObjBase* const original = open.get();
    CObjBase::SetCurrent(original);
    const auto before = Contents(*open);

    std::vector<uint8_t> truncated(good.begin(), good.end() - 3);
    std::vector<uint8_t> flipped = good;
    flipped[good.size() / 2] ^= 0x10;
    std::vector<uint8_t> magic = good;
    magic[0] = 'v';
    std::vector<uint8_t> unknown = good;
    PutLe32(unknown, 12, 99);
    Reseal(unknown);
    for (const auto& bad : {truncated, flipped, magic, unknown}) {
        WriteBytes(file, bad);
        EXPECT_FALSE(CModelFile::Open(file, open, error));
        EXPECT_EQ(open.get(), original);
        EXPECT_EQ(Contents(*open), before);
        EXPECT_EQ(CObjBase::GetCurrent(), original);
    }
    EXPECT_FALSE(CModelFile::Open(dir.Path() / "missing.vldm", open, error));
    EXPECT_EQ(error.ToUtf8().rfind("cannot open model file", 0), 0u);

    WriteBytes(file, good);
    ASSERT_TRUE(CModelFile::Open(file, open, error));
    EXPECT_NE(open.get(), original);
    EXPECT_EQ(CObjBase::GetCurrent(), open.get());
    EXPECT_EQ(Contents(*open), Contents(m_base));
    CObjBase::SetCurrent(nullptr);
}

TEST_F(ModelFile, FailedSaveKeepsTheOldFileAndLeavesNoTemporary) {
    CTempDir dir;
    const fs::path file = dir.Path() / "model.vldm";
    CString error;
    ASSERT_TRUE(CModelFile::Save(m_base, file, error));
    const std::vector<uint8_t> old = ReadBytes(file);
    CObjBase other;
    Build(other);
    {
        CBaseManager bm(0, &other);
        bm.Open(CBaseManager::Write);
        bm.Insert(new CModel);
    }

    // The temporary cannot be created: its name is taken by a directory.
    fs::create_directory(dir.Path() / "model.vldm.tmp");
    EXPECT_FALSE(CModelFile::Save(other, file, error));
    EXPECT_EQ(error.ToUtf8().rfind("cannot write model file", 0), 0u) << error.ToUtf8();
    EXPECT_EQ(ReadBytes(file), old);
    EXPECT_TRUE(fs::is_directory(dir.Path() / "model.vldm.tmp"));
    fs::remove(dir.Path() / "model.vldm.tmp");

    // The directory is not writable (permissions do not bind the superuser).
    if (::geteuid() != 0) {
        fs::permissions(dir.Path(), fs::perms::owner_read | fs::perms::owner_exec);
        EXPECT_FALSE(CModelFile::Save(other, file, error));
        fs::permissions(dir.Path(), fs::perms::owner_all);
        EXPECT_EQ(ReadBytes(file), old);
    }

    // The rename fails: the target is a directory that is not empty.
    const fs::path target = dir.Path() / "busy";
    fs::create_directories(target / "inside");
    EXPECT_FALSE(CModelFile::Save(other, target, error));
    EXPECT_EQ(error.ToUtf8().rfind("cannot replace model file", 0), 0u) << error.ToUtf8();
    EXPECT_TRUE(fs::is_directory(target / "inside"));
    EXPECT_FALSE(fs::exists(dir.Path() / "busy.tmp"));

    // A directory that does not exist.
    EXPECT_FALSE(CModelFile::Save(other, dir.Path() / "none" / "model.vldm", error));

    // A successful save replaces the old file.
    ASSERT_TRUE(CModelFile::Save(other, file, error));
    EXPECT_EQ(ReadBytes(file), CModelFile::Write(other));
    std::vector<fs::path> left;
    for (const auto& entry : fs::directory_iterator(dir.Path()))
        left.push_back(entry.path().filename());
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (std::vector<fs::path>{"busy", "model.vldm"}));
}
