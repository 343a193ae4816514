#pragma once
// A fresh document with the host's and the loads module's classes registered, the error log
// and TMP pointed at a temporary directory, and helpers that put load cases, combinations and
// envelopes into the store.
#include "diag/Assert.h"
#include "host/Model.h"
#include "host/ModelFile.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/ModelRegistration.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

class ModelTest : public ::testing::Test {
protected:
    void SetUp() override {
        RegisterHostClasses();
        RegisterLoadClasses();
        m_tmp = std::filesystem::temp_directory_path() /
                ("vorta-test-" + std::to_string(::getpid()) + "-" +
                 ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(m_tmp);
        vdiag::SetLogRoot(m_tmp.string() + "/");
        if (const char* old = std::getenv("TMP"))
            m_oldTmp = old;
        ::setenv("TMP", m_tmp.c_str(), 1);
        m_base = std::make_unique<CObjBase>();
        CObjBase::SetCurrent(m_base.get());
    }
    void TearDown() override {
        if (m_oldTmp)
            ::setenv("TMP", m_oldTmp->c_str(), 1);
        else
            ::unsetenv("TMP");
        CObjBase::SetCurrent(nullptr);
        m_base.reset();
        std::error_code ec;
        std::filesystem::remove_all(m_tmp, ec);
    }

    /// The model file bytes of the document, by which a test sees what undo brings back.
    std::vector<uint8_t> Bajtovi() const { return CModelFile::Write(*m_base); }
    /// The text of the error log that a death test left in the temporary directory.
    std::string ErrorLog() const {
        std::ifstream log(m_tmp / "vmerror.log");
        return std::string(std::istreambuf_iterator<char>(log), std::istreambuf_iterator<char>());
    }

    /// Stores a load case with the given name and ordinal; returns its id.
    CId AddLoadCase(const CString& naziv, int ordinal) {
        auto* p = new CSlucajOpterecenja;
        p->SetNaziv(naziv);
        p->PostaviRedniBroj(ordinal);
        return Insert(p);
    }
    /// Stores a combination with the given ordinal and (load case id, coefficient) entries.
    CId AddCombination(int ordinal, std::initializer_list<std::pair<CId, double>> entries,
                       const CString& naziv = CString()) {
        auto* p = new CKombinacijaOpterecenja;
        p->Item().SetRedniBroj(ordinal);
        for (const auto& [id, koef] : entries)
            p->Item().DodajOsnOpt(koef, id);
        if (!naziv.empty())
            p->Item().SetNaziv(naziv);
        return Insert(p);
    }
    /// A combination whose name is generated from its entries.
    CId AddGenerated(int ordinal, std::initializer_list<std::pair<CId, double>> entries) {
        const CId id = AddCombination(ordinal, entries);
        Change<CKombinacijaOpterecenja>(
            id, [](CKombinacijaOpterecenja& k) { k.Item().SetGenericName(nullptr, 0); });
        return id;
    }
    /// The stored combinations' names by ordinal.
    std::vector<CString> CombinationNames() const {
        std::vector<CString> names(
            static_cast<size_t>(m_base->Count(CBaseManager::KombinacijaOpterecenjaType)));
        for (const CId& id : m_base->Ids(CBaseManager::KombinacijaOpterecenjaType)) {
            const CKombOptItem& item = Get<CKombinacijaOpterecenja>(id)->Item();
            names.at(static_cast<size_t>(item.GetRedniBroj()) - 1) = item.GetNaziv();
        }
        return names;
    }
    CId AddEnvelope(int broj, const CString& izbor, const CString& naziv = CString(), int mod = 0) {
        auto* p = new CAnvelopaOpterecenja;
        p->SetBroj(broj);
        p->SetIzbor(izbor);
        p->SetNaziv(naziv);
        p->SetMod(mod);
        return Insert(p);
    }
    CId Insert(CObj* obj) {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        CId id = bm.Insert(obj);
        bm.Close();
        return id;
    }
    template <class T> const T* Get(const CId& id) const {
        return dynamic_cast<const T*>(m_base->Find(id));
    }
    /// Changes a stored object in one opening of the store for writing.
    template <class T, class F> void Change(const CId& id, F change) {
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        change(*dynamic_cast<T*>(bm.GetW(id)));
        bm.Close();
    }

    std::filesystem::path m_tmp;
    std::unique_ptr<CObjBase> m_base;
    std::optional<std::string> m_oldTmp;
};
