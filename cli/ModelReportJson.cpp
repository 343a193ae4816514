// The report of `show --format json`.
#include "ModelReportJson.h"

#include "ModelReport.h"
#include "host/LoadsServices.h"

#include <charconv>
#include <cmath>

namespace {

/// A JSON string of UTF-8 text.
void String(std::ostream& out, const std::string& text) {
    static constexpr char kHex[] = "0123456789abcdef";
    out << '"';
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            out << '\\' << c;
        else if (u < 0x20)
            out << "\\u00" << kHex[u >> 4] << kHex[u & 0xF];
        else
            out << c;
    }
    out << '"';
}

void Number(std::ostream& out, double value) {
    if (!std::isfinite(value)) {
        out << "null";
        return;
    }
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.write(buffer, result.ptr - buffer);
}

void Strings(std::ostream& out, const std::vector<CString>& texts) {
    out << '[';
    for (size_t i = 0; i < texts.size(); ++i) {
        if (i > 0)
            out << ", ";
        String(out, texts[i].ToUtf8());
    }
    out << ']';
}

void Table(std::ostream& out, const CLoadsReport::TableSource& table) {
    out << "    {\"title\": ";
    String(out, table.title.ToUtf8());
    out << ", \"columns\": ";
    Strings(out, table.header);
    out << ", \"rows\": [";
    bool first = true;
    table.rows([&](const CLoadsReport::Row& row) {
        out << (first ? "\n      " : ",\n      ");
        Strings(out, row);
        first = false;
    });
    out << (first ? "]}" : "\n    ]}");
}

void Factors(std::ostream& out, const CLoadCounts& counts, FactorService one,
             AllFactorsService all) {
    out << '[';
    const auto row = [&out](int i, const CArray<double>& factors) {
        out << (i > 0 ? ",\n    [" : "\n    [");
        for (int m = 0; m < factors.GetSize(); ++m) {
            if (m > 0)
                out << ", ";
            Number(out, factors[m]);
        }
        out << ']';
    };
    if (all != nullptr) {
        all(row);
    } else {
        CArray<double> factors;
        for (int i = 0; i < counts.Total(); ++i) {
            one(i, factors);
            row(i, factors);
        }
    }
    out << (counts.Total() > 0 ? "\n  ]" : "]");
}

void Selector(std::ostream& out, CHeadlessFrame& frame, bool resultsMode) {
    frame.SetResultsMode(resultsMode);
    frame.ClearAnnouncements();
    CMainFrame::UpdateCombo(-1);
    out << "{\"items\": ";
    Strings(out, frame.Combo().Texts());
    out << ", \"selected\": " << frame.Combo().GetCurSel() << ", \"status\": [";
    const auto& announced = frame.Announcements();
    for (size_t i = 0; i < announced.size(); ++i) {
        out << (i > 0 ? ", " : "") << "{\"text\": ";
        String(out, announced[i].text.ToUtf8());
        out << ", \"envelope\": " << (announced[i].envelope != 0 ? "true" : "false") << '}';
    }
    out << "]}";
}

} // namespace

void PrintModelJson(std::ostream& out, const std::string& file, CHeadlessFrame& frame) {
    out << "{\n  \"file\": ";
    String(out, file);
    out << ",\n  \"tables\": [";
    // Each table is written as the module makes it, its rows as they are made.
    bool first = true;
    CLoadsServices::IzvestajPoTabelama([&](const CLoadsReport::TableSource& table) {
        out << (first ? "\n" : ",\n");
        Table(out, table);
        first = false;
    });
    out << (first ? "]" : "\n  ]");
    const CLoadCounts counts = CountLoads();
    out << ",\n  \"theory\": " << CLoadsServices::GetTeorija();
    out << ",\n  \"scale\": {\"load_cases\": " << counts.nSlOpt
        << ", \"combinations\": " << counts.nKomb << ", \"envelopes\": " << counts.nAnv
        << ", \"cases_and_combinations\": " << CLoadsServices::UkupanBrojSloptOKombinacija() << "}";
    out << ",\n  \"factors_for_analysis\": ";
    Factors(out, counts, CLoadsServices::FaktoriZaProracun, CLoadsServices::SviFaktoriZaProracun);
    out << ",\n  \"factors_for_printing\": ";
    Factors(out, counts, CLoadsServices::FaktoriZaIspis, CLoadsServices::SviFaktoriZaIspis);
    out << ",\n  \"selector\": {\n    \"input\": ";
    Selector(out, frame, false);
    out << ",\n    \"results\": ";
    Selector(out, frame, true);
    out << "\n  }\n}\n";
}
