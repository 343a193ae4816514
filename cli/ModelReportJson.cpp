// The report of `show --format json`.
#include "ModelReportJson.h"

#include "ModelReport.h"
#include "host/LoadsServices.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace {

/// The document collected in a buffer and handed to the stream in large pieces: a large model
/// is tens of megabytes of JSON, most of it numbers.
class CJson {
public:
    explicit CJson(std::ostream& out) : m_out(out) { m_text.reserve(kPiece + kPiece / 4); }
    ~CJson() { Flush(); }
    CJson(const CJson&) = delete;
    CJson& operator=(const CJson&) = delete;

    CJson& operator<<(std::string_view text) {
        m_text += text;
        if (m_text.size() >= kPiece)
            Flush();
        return *this;
    }
    CJson& operator<<(char c) { return *this << std::string_view(&c, 1); }
    CJson& operator<<(int n) {
        char digits[16];
        return *this << std::string_view(digits,
                                         std::to_chars(digits, digits + sizeof digits, n).ptr);
    }

    /// A JSON string of UTF-8 text.
    void String(std::string_view text) {
        static constexpr char kHex[] = "0123456789abcdef";
        m_text += '"';
        // Runs of characters that need no escape are copied at once.
        size_t run = 0;
        for (size_t i = 0; i < text.size(); ++i) {
            const auto u = static_cast<unsigned char>(text[i]);
            if (u >= 0x20 && u != '"' && u != '\\')
                continue;
            m_text.append(text.substr(run, i - run));
            if (u < 0x20) {
                const char escaped[] = {'\\', 'u', '0', '0', kHex[u >> 4], kHex[u & 0xF]};
                m_text.append(escaped, sizeof escaped);
            } else {
                m_text += '\\';
                m_text += static_cast<char>(u);
            }
            run = i + 1;
        }
        m_text.append(text.substr(run));
        *this << '"';
    }

    /// A number as the shortest text that reads back as the same double; each distinct
    /// number of a model (its factors are few) is formatted once.
    void Number(double value) {
        if (!std::isfinite(value)) {
            *this << "null";
            return;
        }
        const auto bits = std::bit_cast<uint64_t>(value);
        auto it = m_numbers.find(bits);
        if (it == m_numbers.end()) {
            char buffer[32];
            const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
            it = m_numbers.emplace(bits, std::string(buffer, result.ptr)).first;
        }
        *this << std::string_view(it->second);
    }

    void Flush() {
        m_out.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
        m_text.clear();
    }

private:
    static constexpr size_t kPiece = size_t{1} << 20;
    std::ostream& m_out;
    std::string m_text;
    std::unordered_map<uint64_t, std::string> m_numbers;
};

void Strings(CJson& out, const std::vector<CString>& texts) {
    out << '[';
    for (size_t i = 0; i < texts.size(); ++i) {
        if (i > 0)
            out << ", ";
        out.String(texts[i].ToUtf8());
    }
    out << ']';
}

void Strings(CJson& out, const std::vector<std::string>& texts) {
    out << '[';
    for (size_t i = 0; i < texts.size(); ++i) {
        if (i > 0)
            out << ", ";
        out.String(texts[i]);
    }
    out << ']';
}

/// A table of the module's report: its rows as arrays of every cell, the empty ones included.
void Table(CJson& out, const CRowsTable& table) {
    out << "    {\"title\": ";
    out.String(table.title);
    out << ", \"columns\": ";
    Strings(out, table.header);
    out << ", \"rows\": [";
    const CReportRows& rows = table.rows;
    for (size_t r = 0; r < rows.Count(); ++r) {
        out << (r == 0 ? "\n      [" : ",\n      [");
        // The cells with text come in the order of their columns; the others are empty.
        size_t kept = rows.FirstKept(r);
        const size_t end = rows.FirstKept(r + 1);
        for (size_t c = 0; c < rows.Cells(r); ++c) {
            if (c > 0)
                out << ", ";
            if (kept < end && rows.KeptColumn(kept) == c)
                out.String(rows.Kept(kept++));
            else
                out << "\"\"";
        }
        out << ']';
    }
    out << (rows.Count() == 0 ? "]}" : "\n    ]}");
}

void Factors(CJson& out, const CLoadCounts& counts, FactorService one, AllFactorsService all) {
    out << '[';
    const auto row = [&out](int i, const CArray<double>& factors) {
        out << (i > 0 ? ",\n    [" : "\n    [");
        for (int m = 0; m < factors.GetSize(); ++m) {
            if (m > 0)
                out << ", ";
            out.Number(factors[m]);
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

void Selector(CJson& out, CHeadlessFrame& frame, bool resultsMode) {
    frame.SetResultsMode(resultsMode);
    frame.ClearAnnouncements();
    CMainFrame::UpdateCombo(-1);
    out << "{\"items\": ";
    Strings(out, frame.Combo().Texts());
    out << ", \"selected\": " << frame.Combo().GetCurSel() << ", \"status\": [";
    const auto& announced = frame.Announcements();
    for (size_t i = 0; i < announced.size(); ++i) {
        out << (i > 0 ? ", " : "") << "{\"text\": ";
        out.String(announced[i].text.ToUtf8());
        out << ", \"envelope\": " << (announced[i].envelope != 0 ? "true" : "false") << '}';
    }
    out << "]}";
}

} // namespace

void PrintModelJson(std::ostream& stream, const std::string& file, CHeadlessFrame& frame) {
    CJson out(stream);
    out << "{\n  \"file\": ";
    out.String(file);
    out << ",\n  \"tables\": [";
    // Each table is written as the module makes it, its rows in UTF-8.
    bool first = true;
    const auto table = [&](const CRowsTable& rows) {
        out << (first ? "\n" : ",\n");
        Table(out, rows);
        first = false;
    };
    if (CLoadsServices::IzvestajNaZahtev != nullptr) {
        for (const auto& source : CLoadsServices::IzvestajNaZahtev())
            table(RowsOf(*source));
    } else {
        CLoadsServices::IzvestajPoTabelama(
            [&](const CLoadsReport::TableSource& source) { table(RowsOf(ToRowSource(source))); });
    }
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
