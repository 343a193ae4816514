// The report tables with rows made when a host asks for them, already in UTF-8: a host that
// shows a few rows of a large model, or prints all of them, neither holds the tables whole nor
// converts text cell by cell. The rows of the large tables are read from the store when asked
// for, by the ids of their objects; the small tables are made at once.
#include "services/LoadsReport.h"
#include "services/ModuleServices.h"

#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <map>
#include <string_view>
#include <type_traits>
#include <unordered_map>

namespace opterecenje {

namespace {

/// The end of the rows first .. first + count - 1 among n rows.
size_t Kraj(size_t first, size_t count, size_t n) {
    return first >= n ? first : first + std::min(count, n - first);
}

/// Appends a whole number as "%d" writes it.
void DodajBroj(std::string& out, int n) {
    char tekst[16];
    const auto kraj = std::to_chars(tekst, tekst + sizeof tekst, n).ptr;
    out.append(tekst, kraj);
}

/// Makes room for the rows of a block once its first rows show their size, so that the
/// buffers of a large block grow once instead of being copied each time they double.
class CRezerva {
public:
    explicit CRezerva(CReportRows& rows)
        : m_rows(rows), m_tekst(rows.Text().size()), m_celija(rows.FirstKept(rows.Count())) {}
    /// After each row, with the number of rows still to come.
    void Posle(size_t preostalo) {
        if (++m_redova != kUzorak)
            return;
        const size_t tekst = m_rows.Text().size() - m_tekst;
        const size_t celija = m_rows.FirstKept(m_rows.Count()) - m_celija;
        m_rows.Reserve(preostalo, preostalo * celija / kUzorak * 5 / 4,
                       preostalo * tekst / kUzorak * 5 / 4);
    }

private:
    static constexpr size_t kUzorak = 16;
    CReportRows& m_rows;
    size_t m_tekst;
    size_t m_celija;
    size_t m_redova = 0;
};

/// The objects of the tables' document by id; nothing when the document is no longer the
/// current one or the object is gone.
template <class Zapis> const Zapis* Objekat(const CBaseManager& bm, const CId& id) {
    return dynamic_cast<const Zapis*>(bm.GetR(id));
}

std::vector<CId> Idovi(const auto& objekti) {
    std::vector<CId> ids;
    ids.reserve(objekti.size());
    for (const auto* p : objekti)
        ids.push_back(p->GetId());
    return ids;
}

class CTabelaNaZahtev : public CReportTable {
public:
    CTabelaNaZahtev(const CLoadsReport::TableSource& izvor, CObjBase* base) : m_base(base) {
        title = izvor.title;
        header = izvor.header;
    }

protected:
    /// A view of the tables' document, or an unopened one when another document is current.
    bool Otvori(CBaseManager& bm) const {
        return CObjBase::GetCurrent() == m_base && bm.Open(CBaseManager::Read) != 0;
    }

private:
    CObjBase* m_base;
};

/// A small table made whole when the tables are made.
class CGotovaTabela : public CTabelaNaZahtev {
public:
    CGotovaTabela(const CLoadsReport::TableSource& izvor, CObjBase* base)
        : CTabelaNaZahtev(izvor, base) {
        izvor.rows([this](const CLoadsReport::Row& red) {
            for (const CString& celija : red) {
                m_redovi.CellOf(celija);
            }
            m_redovi.EndRow();
        });
    }
    size_t RowCount() const override { return m_redovi.Count(); }
    void Rows(size_t first, size_t count, CReportRows& rows) const override {
        const size_t kraj = Kraj(first, count, m_redovi.Count());
        for (size_t r = first; r < kraj; ++r) {
            for (size_t c = 0; c < m_redovi.Cells(r); ++c)
                rows.Cell(m_redovi.Get(r, c));
            rows.EndRow();
        }
    }

private:
    CReportRows m_redovi;
};

/// The texts of the coefficients, each formatted once (a model has few distinct ones), none
/// for a coefficient equal to zero within the tolerance. What was found for a coefficient is
/// kept in a small table by its bits and tried first.
class CTekstoviKoeficijenata {
public:
    const std::string* Tekst(double k) {
        const auto bits = std::bit_cast<uint64_t>(k);
        Mesto& mesto = m_brzi[(bits * 0x9E3779B97F4A7C15u) >> (64 - kBitaMesta)];
        if (mesto.zauzeto && mesto.bits == bits)
            return mesto.tekst;
        const std::string* tekst = nullptr;
        if (!CToler::Jednaki(k, 0.0)) {
            auto it = m_svi.find(bits);
            if (it == m_svi.end())
                it = m_svi.emplace(bits, gfnFormatDouble(k, 2, 0).ToUtf8()).first;
            tekst = &it->second;
        }
        mesto = {bits, tekst, true};
        return tekst;
    }

private:
    struct Mesto {
        uint64_t bits = 0;
        const std::string* tekst = nullptr;
        bool zauzeto = false;
    };
    static constexpr int kBitaMesta = 6;
    std::array<Mesto, size_t{1} << kBitaMesta> m_brzi{};
    std::unordered_map<uint64_t, std::string> m_svi;
};

/// The column of each load case by its id (its ordinal less one) for the load cases whose
/// ordinal has a column. Store ids are small numbers: they index a table, unless they lie so
/// far apart that a hash table takes less room.
class CKolonePoId {
public:
    CKolonePoId(const std::map<int32_t, int>& rbPoId, int nKolona) {
        const int32_t najveci = rbPoId.empty() ? 0 : rbPoId.rbegin()->first;
        const bool gusti = !rbPoId.empty() && rbPoId.begin()->first >= 0 &&
                           static_cast<size_t>(najveci) <= 16 * rbPoId.size() + 4096;
        if (gusti)
            m_tabela.assign(static_cast<size_t>(najveci) + 1, kNema);
        for (const auto& [id, rb] : rbPoId) {
            if (rb < 1 || rb > nKolona)
                continue;
            if (gusti)
                m_tabela[static_cast<size_t>(id)] = static_cast<uint32_t>(rb - 1);
            else
                m_mapa.emplace(id, static_cast<uint32_t>(rb - 1));
        }
    }
    /// The column, or kNema.
    uint32_t Kolona(int32_t id) const {
        if (!m_tabela.empty())
            return id >= 0 && static_cast<size_t>(id) < m_tabela.size()
                       ? m_tabela[static_cast<size_t>(id)]
                       : kNema;
        const auto it = m_mapa.find(id);
        return it != m_mapa.end() ? it->second : kNema;
    }
    static constexpr uint32_t kNema = UINT32_MAX;

private:
    std::vector<uint32_t> m_tabela;
    std::unordered_map<int32_t, uint32_t> m_mapa;
};

class CTabelaKombinacija : public CTabelaNaZahtev {
public:
    CTabelaKombinacija(const CLoadsReport::TableSource& izvor, CObjBase* base,
                       const CUcitaniIzvestaj& u)
        : CTabelaNaZahtev(izvor, base), m_ids(Idovi(u.kombinacije)),
          m_da(ClTranslator::Translate(L"da").ToUtf8()),
          m_kolone(u.rbPoId, static_cast<int>(u.slucajevi.size())), m_koef(u.slucajevi.size(), 0.0),
          m_oznake((u.slucajevi.size() + 63) / 64, 0) {}
    size_t RowCount() const override { return m_ids.size(); }
    void Rows(size_t first, size_t count, CReportRows& rows) const override {
        CBaseManager bm;
        const bool otvoren = Otvori(bm);
        const size_t kraj = Kraj(first, count, m_ids.size());
        CRezerva rezerva(rows);
        for (size_t r = first; r < kraj; ++r) {
            const auto* p = otvoren ? Objekat<CKombinacijaOpterecenja>(bm, m_ids[r]) : nullptr;
            if (p != nullptr)
                Red(p->Item(), rows);
            rows.EndRow();
            rezerva.Posle(kraj - r - 1);
        }
    }

private:
    void Red(const CKombOptItem& item, CReportRows& rows) const {
        std::string& tekst = rows.Text();
        DodajBroj(tekst, item.GetRedniBroj());
        rows.EndCell();
        rows.CellOf(item.GetNaziv());
        rows.Cell(item.IsGenericName() != 0 ? std::string_view(m_da) : std::string_view());
        // A load case named twice has the sum of its coefficients. Only the columns of the
        // load cases the combination names can be other than empty: they are marked in a set
        // of bits, which gives them in order when the load cases are few against the entries,
        // else they are sorted.
        m_redKolona.clear();
        for (int i = 0; i < item.GetBrojOsnOpt(); ++i) {
            double k = 0.0;
            CId id;
            item.GetOsnOptByIndex(i, k, id);
            const uint32_t kolona = m_kolone.Kolona(id.GetValue());
            if (kolona == CKolonePoId::kNema)
                continue;
            uint64_t& rec = m_oznake[kolona / 64];
            const uint64_t bit = uint64_t{1} << (kolona % 64);
            if ((rec & bit) == 0) {
                rec |= bit;
                m_redKolona.push_back(kolona);
                m_koef[kolona] = 0.0;
            }
            m_koef[kolona] += k;
        }
        size_t sledeca = 0;
        const auto celija = [&](uint32_t kolona) {
            rows.EmptyCells(kolona - sledeca);
            sledeca = kolona + 1;
            if (const std::string* tekst = m_tekstovi.Tekst(m_koef[kolona]))
                rows.Cell(*tekst);
            else
                rows.EndCell();
        };
        if (m_oznake.size() <= 4 * m_redKolona.size() + 4) {
            for (size_t r = 0; r < m_oznake.size(); ++r) {
                for (uint64_t bitovi = m_oznake[r]; bitovi != 0; bitovi &= bitovi - 1)
                    celija(static_cast<uint32_t>(64 * r) +
                           static_cast<uint32_t>(std::countr_zero(bitovi)));
                m_oznake[r] = 0;
            }
        } else {
            std::sort(m_redKolona.begin(), m_redKolona.end());
            for (const uint32_t kolona : m_redKolona) {
                celija(kolona);
                m_oznake[kolona / 64] = 0;
            }
        }
        rows.EmptyCells(m_koef.size() - sledeca);
    }

    std::vector<CId> m_ids;
    std::string m_da;
    CKolonePoId m_kolone;
    mutable std::vector<double> m_koef;
    /// The columns the row names, a bit each.
    mutable std::vector<uint64_t> m_oznake;
    mutable std::vector<uint32_t> m_redKolona;
    mutable CTekstoviKoeficijenata m_tekstovi;
};

class CTabelaSkale : public CTabelaNaZahtev {
public:
    CTabelaSkale(const CLoadsReport::TableSource& izvor, CObjBase* base, const CUcitaniIzvestaj& u)
        : CTabelaNaZahtev(izvor, base), m_slucajevi(Idovi(u.slucajevi)),
          m_kombinacije(Idovi(u.kombinacije)), m_anvelope(Idovi(u.anvelope)),
          m_slucaj(ClTranslator::Translate(Tr(L"slucaj")).ToUtf8()),
          m_kombinacija(ClTranslator::Translate(Tr(L"kombinacija")).ToUtf8()),
          m_anvelopa(ClTranslator::Translate(Tr(L"anvelopa")).ToUtf8()) {}
    size_t RowCount() const override {
        return m_slucajevi.size() + m_kombinacije.size() + m_anvelope.size();
    }
    void Rows(size_t first, size_t count, CReportRows& rows) const override {
        CBaseManager bm;
        const bool otvoren = Otvori(bm);
        const size_t nS = m_slucajevi.size();
        const size_t nK = m_kombinacije.size();
        const size_t kraj = Kraj(first, count, RowCount());
        CRezerva rezerva(rows);
        for (size_t r = first; r < kraj; ++r) {
            rezerva.Posle(kraj - r);
            if (!otvoren) {
            } else if (r < nS) {
                if (const auto* p = Objekat<CSlucajOpterecenja>(bm, m_slucajevi[r]))
                    Red(rows, m_slucaj, p->DajRedniBroj(), p->GetNaziv(0), p->DajRedniBroj());
            } else if (r < nS + nK) {
                if (const auto* p = Objekat<CKombinacijaOpterecenja>(bm, m_kombinacije[r - nS]))
                    Red(rows, m_kombinacija, p->Item().GetRedniBroj(), p->Item().GetNaziv(),
                        static_cast<int>(nS) + p->Item().GetRedniBroj());
            } else if (const auto* p = Objekat<CAnvelopaOpterecenja>(bm, m_anvelope[r - nS - nK])) {
                Red(rows, m_anvelopa, p->GetBroj(), p->GetNaziv(),
                    static_cast<int>(nS + nK) + p->GetBroj());
            }
            rows.EndRow();
        }
    }

private:
    static void Red(CReportRows& rows, const std::string& vrsta, int sopstveni,
                    const CString& naziv, int redniBroj) {
        rows.Cell(vrsta);
        DodajBroj(rows.Text(), sopstveni);
        rows.EndCell();
        rows.CellOf(naziv);
        DodajBroj(rows.Text(), redniBroj - 1);
        rows.EndCell();
        DodajBroj(rows.Text(), redniBroj);
        rows.EndCell();
    }

    std::vector<CId> m_slucajevi;
    std::vector<CId> m_kombinacije;
    std::vector<CId> m_anvelope;
    std::string m_slucaj;
    std::string m_kombinacija;
    std::string m_anvelopa;
};

/// The checksums, summed when they are first asked for (reading every object takes a while).
class CTabelaSuma : public CTabelaNaZahtev {
public:
    CTabelaSuma(const CLoadsReport::TableSource& izvor, CObjBase* base, const CUcitaniIzvestaj& u)
        : CTabelaNaZahtev(izvor, base), m_slucajevi(Idovi(u.slucajevi)),
          m_kombinacije(Idovi(u.kombinacije)), m_anvelope(Idovi(u.anvelope)),
          m_bImaModel(u.bImaModel) {}
    size_t RowCount() const override { return !m_bImaModel && !m_kombinacije.empty() ? 4 : 3; }
    void Rows(size_t first, size_t count, CReportRows& rows) const override {
        if (m_sume.Count() == 0)
            Saberi();
        const size_t kraj = Kraj(first, count, RowCount());
        for (size_t r = first; r < kraj; ++r) {
            for (size_t c = 0; r < m_sume.Count() && c < m_sume.Cells(r); ++c)
                rows.Cell(m_sume.Get(r, c));
            rows.EndRow();
        }
    }

private:
    void Saberi() const {
        CBaseManager bm;
        if (!Otvori(bm))
            return;
        std::vector<const CSlucajOpterecenja*> slucajevi;
        std::vector<const CKombinacijaOpterecenja*> kombinacije;
        std::vector<const CAnvelopaOpterecenja*> anvelope;
        const auto procitaj = [&bm](const std::vector<CId>& ids, auto& objekti) {
            using Zapis = std::remove_cvref_t<decltype(*objekti.front())>;
            for (const CId& id : ids)
                if (const auto* p = Objekat<Zapis>(bm, id))
                    objekti.push_back(p);
        };
        procitaj(m_slucajevi, slucajevi);
        procitaj(m_kombinacije, kombinacije);
        procitaj(m_anvelope, anvelope);
        for (const CLoadsReport::Row& red : Sume(slucajevi, kombinacije, anvelope, m_bImaModel)) {
            for (const CString& celija : red) {
                m_sume.CellOf(celija);
            }
            m_sume.EndRow();
        }
    }

    std::vector<CId> m_slucajevi;
    std::vector<CId> m_kombinacije;
    std::vector<CId> m_anvelope;
    bool m_bImaModel;
    mutable CReportRows m_sume;
};

} // namespace

CReportTables IzvestajNaZahtev() {
    CReportTables tabele;
    CBaseManager bm;
    if (bm.Open(CBaseManager::Read) == 0)
        return tabele;
    CObjBase* const base = CObjBase::GetCurrent();
    const CUcitaniIzvestaj u = UcitajIzvestaj(bm);
    // The literal tables give the titles and headings (and the rows of the small tables).
    const std::vector<CLoadsReport::TableSource> izvori = TabeleIzvestaja(u);
    tabele.push_back(std::make_unique<CGotovaTabela>(izvori[0], base));
    tabele.push_back(std::make_unique<CTabelaKombinacija>(izvori[1], base, u));
    tabele.push_back(std::make_unique<CGotovaTabela>(izvori[2], base));
    tabele.push_back(std::make_unique<CTabelaSkale>(izvori[3], base, u));
    tabele.push_back(std::make_unique<CTabelaSuma>(izvori[4], base, u));
    return tabele;
}

} // namespace opterecenje
