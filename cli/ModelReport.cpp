// The text report of the current document that `show` prints.
#include "ModelReport.h"

#include "BlockWriter.h"
#include "PrintQueue.h"
#include "host/LoadsServices.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <unordered_map>

namespace {

std::string Range(int first, int count) {
    if (count <= 0)
        return "-";
    if (count == 1)
        return std::to_string(first);
    return std::to_string(first) + ".." + std::to_string(first + count - 1);
}

/// The kind of a load and its own number, from its zero-based number on the scale.
std::string LoadName(const CLoadCounts& counts, int zerobased) {
    if (zerobased < counts.nSlOpt)
        return "case " + std::to_string(zerobased + 1);
    if (zerobased < counts.nSlOpt + counts.nKomb)
        return "combination " + std::to_string(zerobased - counts.nSlOpt + 1);
    return "envelope " + std::to_string(zerobased - counts.nSlOpt - counts.nKomb + 1);
}

/// The numbers of the distinct factors of a table by their bits: an open-addressed table four
/// times the size of the most numbers a table holds, so that a factor is found with one probe
/// and no branch that the mix of factors in a row could make the processor guess wrong.
class CFactorCodes {
public:
    /// The number of the factor with these bits, or -1 when it has none yet.
    int Find(uint64_t bits) const {
        // Nearly every factor is found in its own slot.
        const Entry& e = m_entries[Slot(bits)];
        if (e.bits == bits && e.code >= 0)
            return e.code;
        for (size_t i = Slot(bits);; i = (i + 1) % kSlots) {
            const Entry& next = m_entries[i];
            if (next.code < 0 || next.bits == bits)
                return next.code;
        }
    }
    void Add(uint64_t bits, CCodedTable::Code code) {
        size_t i = Slot(bits);
        while (m_entries[i].code >= 0)
            i = (i + 1) % kSlots;
        m_entries[i] = {bits, code};
    }

private:
    static constexpr size_t kSlots = 4 * CCodedTable::kMaxTexts;
    static size_t Slot(uint64_t bits) {
        // Fibonacci hashing: the high bits of the product mix every bit of the factor.
        return static_cast<size_t>((bits * 0x9E3779B97F4A7C15ULL) >> 54) % kSlots;
    }
    struct Entry {
        uint64_t bits = 0;
        int code = -1;
    };
    std::array<Entry, kSlots> m_entries{};
};

void AppendNumber(std::string& text, int n) {
    char digits[16];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, n).ptr);
}

/// The same name appended to `text`.
void AppendLoadName(std::string& text, const CLoadCounts& counts, int zerobased) {
    if (zerobased < counts.nSlOpt) {
        text += "case ";
        AppendNumber(text, zerobased + 1);
    } else if (zerobased < counts.nSlOpt + counts.nKomb) {
        text += "combination ";
        AppendNumber(text, zerobased - counts.nSlOpt + 1);
    } else {
        text += "envelope ";
        AppendNumber(text, zerobased - counts.nSlOpt - counts.nKomb + 1);
    }
}

} // namespace

CLoadCounts CountLoads() {
    CLoadCounts counts;
    CLoadsServices::Brojevi(counts.nSlOpt, counts.nKomb, counts.nAnv);
    return counts;
}

CTextTable ScaleTable(const CLoadCounts& counts) {
    CTextTable table{
        "Ranges of the global scale", {"Loads", "Count", "Ordinals", "Zero-based"}, {}};
    const auto addRow = [&table](const std::string& name, int first, int count) {
        table.rows.push_back(
            {name, std::to_string(count), Range(first, count), Range(first - 1, count)});
    };
    addRow("load cases", 1, counts.nSlOpt);
    addRow("combinations", counts.nSlOpt + 1, counts.nKomb);
    addRow("envelopes", counts.nSlOpt + counts.nKomb + 1, counts.nAnv);
    table.rows.push_back({"cases and combinations",
                          std::to_string(CLoadsServices::UkupanBrojSloptOKombinacija()), "", ""});
    return table;
}

namespace {

/// Hands the factor vector of every load to `row`, in order: in one walk of the model where the
/// module offers it, otherwise load by load.
void WalkFactors(const CLoadCounts& counts, FactorService service, AllFactorsService all,
                 const CLoadsServices::FactorRowVisitor& row) {
    if (all != nullptr) {
        all(row);
        return;
    }
    CArray<double> factors;
    for (int i = 0; i < counts.Total(); ++i) {
        service(i, factors);
        row(i, factors);
    }
}

} // namespace

std::string FormatFactor(double value) {
    if (value == 0.0)
        return "0";
    char text[64];
    std::snprintf(text, sizeof text, "%.6f", value);
    std::string result = text;
    // Trailing zeros go, but two decimals stay.
    const size_t point = result.find('.');
    while (result.size() > point + 3 && result.back() == '0')
        result.pop_back();
    return result;
}

CTextTable FactorTable(const std::string& title, const CLoadCounts& counts, FactorService service) {
    CTextTable table{title, {"No.", "Load"}, {}};
    size_t longest = 0;
    for (int i = 0; i < counts.Total(); ++i) {
        CArray<double> factors;
        service(i, factors);
        std::vector<std::string> row{std::to_string(i + 1), LoadName(counts, i)};
        for (double factor : factors)
            row.push_back(FormatFactor(factor));
        longest = std::max(longest, static_cast<size_t>(factors.GetSize()));
        table.rows.push_back(std::move(row));
    }
    // The columns are the entries of the vectors: entry m is the factor of load m + 1.
    for (size_t m = 0; m < longest; ++m)
        table.header.push_back(std::to_string(m + 1));
    return table;
}

CRowsTable FactorRows(const std::string& title, const CLoadCounts& counts, FactorService service,
                      AllFactorsService all) {
    CRowsTable table{title, {"No.", "Load"}, {}};
    CReportRows& rows = table.rows;
    // A model has few distinct factors: each is formatted once.
    std::unordered_map<uint64_t, std::string> texts;
    size_t longest = 0;
    const auto row = [&](int i, const CArray<double>& f) {
        if (i >= counts.Total())
            return;
        if (i == 0) // the vectors of a model are mostly of one length
            rows.Reserve(
                static_cast<size_t>(counts.Total()),
                static_cast<size_t>(counts.Total()) * (static_cast<size_t>(f.GetSize()) + 2),
                static_cast<size_t>(counts.Total()) * (static_cast<size_t>(f.GetSize()) + 24));
        std::string& text = rows.Text();
        AppendNumber(text, i + 1);
        rows.EndCell();
        AppendLoadName(text, counts, i);
        rows.EndCell();
        // Neighbouring factors are mostly the same (zeros): the last text is tried first.
        uint64_t lastBits = 0;
        const std::string* last = nullptr;
        for (const double factor : f) {
            const auto bits = std::bit_cast<uint64_t>(factor);
            if (last == nullptr || bits != lastBits) {
                auto it = texts.find(bits);
                if (it == texts.end())
                    it = texts.emplace(bits, FormatFactor(factor)).first;
                last = &it->second;
                lastBits = bits;
            }
            rows.Cell(*last);
        }
        rows.EndRow();
        longest = std::max(longest, static_cast<size_t>(f.GetSize()));
    };
    WalkFactors(counts, service, all, row);
    // The columns are the entries of the vectors: entry m is the factor of load m + 1.
    for (size_t m = 0; m < longest; ++m)
        table.header.push_back(std::to_string(m + 1));
    return table;
}

std::optional<CCodedTable> CodedFactorRows(const std::string& title, const CLoadCounts& counts,
                                           FactorService service, AllFactorsService all) {
    CCodedTable table{title, {"No.", "Load"}, {}, {}, {}, {}};
    // The numbers of the distinct factors by their bits; a model has few of them.
    CFactorCodes codes;
    bool tooMany = false;
    size_t longest = 0;
    const auto row = [&](int i, const CArray<double>& f) {
        if (i >= counts.Total() || tooMany)
            return;
        if (i == 0) {
            const auto loads = static_cast<size_t>(counts.Total());
            table.codes.reserve(loads * static_cast<size_t>(f.GetSize()));
            table.rowEnds.reserve(loads);
            table.lead.Reserve(loads, 2 * loads, 24 * loads);
        }
        std::string& text = table.lead.Text();
        AppendNumber(text, i + 1);
        table.lead.EndCell();
        AppendLoadName(text, counts, i);
        table.lead.EndCell();
        table.lead.EndRow();
        const size_t at = table.codes.size();
        table.codes.resize(at + static_cast<size_t>(f.GetSize()));
        CCodedTable::Code* code = table.codes.data() + at;
        for (const double factor : f) {
            const auto bits = std::bit_cast<uint64_t>(factor);
            int found = codes.Find(bits);
            if (found < 0) {
                if (table.texts.size() == CCodedTable::kMaxTexts) {
                    tooMany = true;
                    return;
                }
                found = static_cast<int>(table.texts.size());
                codes.Add(bits, static_cast<CCodedTable::Code>(found));
                table.texts.push_back(FormatFactor(factor));
            }
            *code++ = static_cast<CCodedTable::Code>(found);
        }
        table.rowEnds.push_back(table.codes.size());
        longest = std::max(longest, static_cast<size_t>(f.GetSize()));
    };
    WalkFactors(counts, service, all, row);
    if (tooMany)
        return std::nullopt;
    for (size_t m = 0; m < longest; ++m)
        table.header.push_back(std::to_string(m + 1));
    return table;
}

namespace {

/// The table of factors as the printing thread is to print it: kept as numbers of distinct
/// factors where it can be.
void PostFactors(CPrintQueue& printer, const std::string& title, const CLoadCounts& counts,
                 FactorService service, AllFactorsService all) {
    if (auto coded = CodedFactorRows(title, counts, service, all))
        printer.PostTable(std::move(*coded));
    else
        printer.PostTable(FactorRows(title, counts, service, all));
}

/// Fills the selector in the given mode and hands its table over with what was announced.
void PostSelector(CPrintQueue& printer, CHeadlessFrame& frame, bool resultsMode) {
    frame.SetResultsMode(resultsMode);
    frame.ClearAnnouncements();
    CMainFrame::UpdateCombo(-1);
    printer.PostTable(SelectorRowsTable(
        resultsMode ? "Load selector, results mode" : "Load selector, input mode", frame.Combo()));
    std::string status;
    if (frame.Announcements().empty())
        status += "Status pane: (nothing announced)\n\n";
    for (const CHeadlessFrame::Announcement& announced : frame.Announcements())
        status += "Status pane: " + announced.text.ToUtf8() +
                  (announced.envelope != 0 ? " (envelope)" : "") + "\n\n";
    printer.Post([status = std::move(status)](std::ostream& out) { out << status; });
}

} // namespace

void PrintFactors(std::ostream& out, const std::string& title, const CLoadCounts& counts,
                  FactorService service, AllFactorsService all) {
    CPrintQueue printer(out);
    PostFactors(printer, title, counts, service, all);
    printer.Finish();
}

void PrintSelector(std::ostream& out, CHeadlessFrame& frame, bool resultsMode) {
    CPrintQueue printer(out);
    PostSelector(printer, frame, resultsMode);
    printer.Finish();
}

namespace {

/// Hands every table of the report to the printing thread, in order.
void PostModel(CPrintQueue& printer, CHeadlessFrame& frame) {
    if (CLoadsServices::IzvestajNaZahtev != nullptr) {
        for (const auto& table : CLoadsServices::IzvestajNaZahtev())
            printer.PostTable(RowsOf(*table));
    } else {
        CLoadsServices::IzvestajPoTabelama([&printer](const CLoadsReport::TableSource& table) {
            printer.PostTable(RowsOf(ToRowSource(table)));
        });
    }

    const CLoadCounts counts = CountLoads();
    printer.Post([theory = CLoadsServices::GetTeorija()](std::ostream& out) {
        out << "Theory: " << theory << "\n\n";
    });
    printer.PostTable(ScaleTable(counts));
    PostFactors(printer, "Factors for analysis", counts, CLoadsServices::FaktoriZaProracun,
                CLoadsServices::SviFaktoriZaProracun);
    PostFactors(printer, "Factors for printing", counts, CLoadsServices::FaktoriZaIspis,
                CLoadsServices::SviFaktoriZaIspis);
    PostSelector(printer, frame, false);
    PostSelector(printer, frame, true);
}

} // namespace

void PrintModel(std::ostream& out, CHeadlessFrame& frame) {
    // Everything the module is asked for is asked for here, in order; the printing thread
    // formats each table meanwhile (a few tables may wait, so that the module is not kept
    // waiting behind a large one), and a third thread writes what it formatted.
    CBlockWriter writer(*out.rdbuf());
    std::ostream blocks(&writer);
    {
        CPrintQueue printer(blocks, 4);
        PostModel(printer, frame);
        printer.Finish();
    }
    if (!blocks.flush())
        out.setstate(std::ios::badbit);
}
