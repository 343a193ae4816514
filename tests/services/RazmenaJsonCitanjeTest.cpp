// The JSON description read by the fast reader gives what the reference reader gives, for a
// description and for thousands of texts broken from it at random: the same description, or
// the same refusal at the same place.
#include "services/JsonStablo.h"
#include "services/RazmenaTekst.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using opterecenje::razmena::COpis;
using opterecenje::razmena::ECitanjeJson;

// Every part of a description, combinations in each order of their members.
const char* const kOpis = R"({"format": "vorta-loads", "version": 1,
  "load_cases": [
    {"name": "G", "g": true, "coefficient": 1.35, "permanent": true, "never_with": ["Q\u0032"]},
    {"name": "Q1", "alternating": true, "always_with": [1], "modes": 3},
    {"name": "Q2", "coefficient": 0.1e1, "influence_line": null},
    {"name": "E", "seismic": true, "seismic_analysis": true, "nda": false},
    {"name": "L", "influence_line": "moment"},
    {"name": "S", "srss": [["G", 1.5], [2, 2]]}],
  "combinations": [
    {"name": "K1", "generated": false, "coefficients": [[1, 1.35], ["Q1", 1.5]]},
    {"coefficients": [[2, -1E-2], [3, 0]], "generated": true},
    {"generated": false, "coefficients": [["G", 1], ["E", 0.3]], "name": "K\"3"},
    {"coefficients": [[1, 12345678901234567890]]}],
  "envelopes": [{"name": "A", "selection": "1-3,7", "mode": 1}],
  "stored_set": {"load_cases": [{"name": "G", "g": true}, {"name": "X", "influence_line": true}],
    "combinations": [{"name": "P", "coefficients": [[2, 2.5], ["G", 1]]}, {"coefficients": []}]},
  "stability": {"search_range": 100, "accuracy": 0.01, "fixed": [["G", 1.35]],
    "combinations": [1, 2]}}
)";

struct CCitanje {
    bool ok = false;
    std::string rezultat; // the description written again, or the reason of the refusal
};

CCitanje Procitaj(const std::string& tekst, ECitanjeJson nacin) {
    COpis opis;
    CString greska;
    CCitanje c;
    c.ok = opterecenje::razmena::ProcitajJson(tekst, opis, greska, nacin);
    if (c.ok)
        opterecenje::razmena::NapisiJson(opis, c.rezultat);
    else
        c.rezultat = greska.ToUtf8();
    return c;
}

} // namespace

TEST(RazmenaJsonCitanje, TheFastReaderReadsAnyTextAsTheReferenceReaderDoes) {
    const CCitanje uzor = Procitaj(kOpis, ECitanjeJson::Referentno);
    ASSERT_TRUE(uzor.ok) << uzor.rezultat;
    const CCitanje brzo = Procitaj(kOpis, ECitanjeJson::Brzo);
    EXPECT_TRUE(brzo.ok);
    EXPECT_EQ(brzo.rezultat, uzor.rezultat);
    // The fast reader took it: the combinations, the description's and the stored set's, went
    // into the list of combinations rather than into objects of values.
    std::vector<opterecenje::razmena::CClan> parovi;
    opterecenje::razmena::CStabloJson stablo(parovi);
    ASSERT_TRUE(stablo.Procitaj(kOpis));
    EXPECT_EQ(stablo.Kombinacije().size(), 6u);

    // Bytes that matter to JSON, to numbers and to UTF-8, and a few tokens at their edges, put
    // in, taken out and changed.
    std::vector<std::string> znaci = {"\\ud800",      "\\udc00",          "\\ud83d\\ude00",
                                      "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xEF\xBB\xBF",
                                      "1e400",        "1e-400",           "18446744073709551616",
                                      "-0",           "2.5e+3",           "true",
                                      "null"};
    for (const char c : std::string("{}[],:\"\\ 0123456789.-+eEtrufalsnu\n\xC3\xA9\x80\0", 38))
        znaci.emplace_back(1, c);
    std::mt19937 slucajan(20261122);
    int prihvaceno = 0;
    for (int i = 0; i < 8000; ++i) {
        std::string tekst = kOpis;
        const int izmena = static_cast<int>(slucajan() % 3) + 1;
        for (int k = 0; k < izmena; ++k) {
            const size_t mesto = slucajan() % tekst.size();
            const std::string& znak = znaci[slucajan() % znaci.size()];
            switch (slucajan() % 4) {
            case 0:
                tekst.replace(mesto, 1, znak);
                break;
            case 1:
                tekst.erase(mesto, 1 + slucajan() % 3);
                break;
            case 2:
                tekst.insert(mesto, znak);
                break;
            default:
                tekst.insert(mesto, tekst.substr(slucajan() % tekst.size(), slucajan() % 40));
                break;
            }
        }
        const CCitanje ocekivano = Procitaj(tekst, ECitanjeJson::Referentno);
        const CCitanje dobijeno = Procitaj(tekst, ECitanjeJson::Brzo);
        ASSERT_EQ(dobijeno.ok, ocekivano.ok) << tekst;
        ASSERT_EQ(dobijeno.rezultat, ocekivano.rezultat) << tekst;
        prihvaceno += ocekivano.ok ? 1 : 0;
    }
    // Both ways are walked: some broken texts are still descriptions.
    EXPECT_GT(prihvaceno, 80);
}
