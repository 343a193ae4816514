// The rows of the combinations and of the global scale made when asked for are, byte for byte,
// the rows of the literal walk: on a random model of many load cases, combinations of any
// number of entries in any order, load cases named twice, coefficients that cancel, many
// distinct coefficients, an entry of no load case, and names of mixed letters and lengths.
#include "RecordingHost.h"

#include "services/ModuleServices.h"

#include <random>
#include <string>

namespace {

using Redovi = std::vector<std::vector<std::string>>;

Redovi Prosetani(const CLoadsReport::Table& t) {
    Redovi redovi;
    for (const CLoadsReport::Row& red : t.rows) {
        auto& celije = redovi.emplace_back();
        for (const CString& c : red)
            celije.push_back(c.ToUtf8());
    }
    return redovi;
}

Redovi Trazeni(const CReportTable& t) {
    CReportRows rows;
    t.Rows(0, t.RowCount(), rows);
    Redovi redovi(rows.Count());
    for (size_t r = 0; r < rows.Count(); ++r)
        for (size_t c = 0; c < rows.Cells(r); ++c)
            redovi[r].emplace_back(rows.Get(r, c));
    return redovi;
}

class ReportRowsTest : public ServicesTest {};

} // namespace

TEST_F(ReportRowsTest, CombinationAndScaleRowsAreTheWalkedRowsOnARandomModel) {
    std::mt19937 rng(5);
    const auto naziv = [&rng]() {
        // ASCII runs of any length with, now and then, a letter beyond it anywhere.
        const wchar_t drugi[] = {L'ž', L'Ж', L'😀', 0x7F, 0x80};
        CString s(rng() % 120, L'x');
        for (wchar_t& c : s)
            c = rng() % 40 == 0 ? drugi[rng() % std::size(drugi)]
                                : static_cast<wchar_t>(L'0' + rng() % 70);
        return s;
    };
    // Enough load cases that a combination of a few entries has them sorted rather than
    // marked, and enough distinct coefficients that they share the slots of the quick table.
    const int nSlucajeva = 700;
    std::vector<CId> slucajevi;
    for (int i = 1; i <= nSlucajeva; ++i)
        slucajevi.push_back(Slucaj(naziv(), i));
    std::vector<double> koeficijenti{0.0, 1.0, -1.0, 1.35, 1.5, 0.3};
    for (int i = 1; i <= 150; ++i)
        koeficijenti.push_back(0.01 * i + (i % 3 == 0 ? 1e-9 : 0.0));
    for (int rb = 1; rb <= 400; ++rb) {
        auto* p = new CKombinacijaOpterecenja;
        p->Item().SetRedniBroj(rb);
        const int n = rb % 5 == 0 ? static_cast<int>(rng() % 200) : static_cast<int>(rng() % 6);
        for (int i = 0; i < n; ++i) {
            const CId id = slucajevi[rb % 7 == 0 ? rng() % 70 : rng() % slucajevi.size()];
            const double k = koeficijenti[rng() % koeficijenti.size()];
            p->Item().DodajOsnOpt(k, id);
            if (rng() % 10 == 0)
                p->Item().DodajOsnOpt(-k, id); // named twice, cancelling
        }
        if (rb % 11 == 0)
            p->Item().DodajOsnOpt(1.0, CId(999999)); // no load case
        p->Item().SetNaziv(naziv());
        Insert(p);
    }

    CLoadsReport r;
    opterecenje::Izvestaj(r);
    const CReportTables tabele = opterecenje::IzvestajNaZahtev();
    ASSERT_EQ(tabele.size(), r.tables.size());
    for (const size_t t : {size_t{1}, size_t{3}}) {
        const Redovi ocekivani = Prosetani(r.tables[t]);
        const Redovi dobijeni = Trazeni(*tabele[t]);
        ASSERT_EQ(dobijeni.size(), ocekivani.size()) << t;
        for (size_t i = 0; i < ocekivani.size(); ++i)
            ASSERT_EQ(dobijeni[i], ocekivani[i]) << "table " << t << " row " << i;
    }
}
