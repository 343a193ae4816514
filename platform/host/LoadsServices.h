#pragma once
// What a host asks of the loads module beyond the commands it registers. A host links only the
// platform and loads the module at run time; the module's set-up fills these function
// pointers, and they stay null until then.
#include "framework/Array.h"
#include "framework/String.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class CObjBase;
/// The loads module's value of a load to evaluate (its load cases with their factors and the
/// construction phase); hosts that evaluate loads include the module's header for it.
class CGeneralizedLoadCase;
using ChangeLoadCaseHandler = int (*)(const CGeneralizedLoadCase& load, int flag);

/// Tables of the loads of a model, neutral of how a host shows them.
struct CLoadsReport {
    using Row = std::vector<CString>;
    struct Table {
        CString title;
        std::vector<CString> header;
        std::vector<Row> rows;
    };
    /// A table whose rows are made as they are walked: `rows` hands every row, in order, to the
    /// visitor, as often as it is called, the same rows each time. A row lives only until the
    /// visitor returns.
    using RowVisitor = std::function<void(const Row& row)>;
    struct TableSource {
        CString title;
        std::vector<CString> header;
        std::function<void(const RowVisitor& visit)> rows;
    };
    /// Is handed each table in turn; the table can be walked only until the visitor returns.
    using TableVisitor = std::function<void(const TableSource& table)>;
    std::vector<Table> tables;
};

/// Rows of a table of the report as UTF-8 texts laid end to end in one buffer, so that a
/// block of rows is made and read without a string per cell. Only the cells with text are
/// kept, each with its column: the many empty cells of a wide table cost nothing.
class CReportRows {
public:
    void Clear() {
        m_text.clear();
        m_ends.clear();
        m_columns.clear();
        m_rows.clear();
        m_column = 0;
    }
    /// The bytes of the cell being made are appended here, then the cell is ended.
    std::string& Text() { return m_text; }
    void EndCell() {
        if (m_text.size() != (m_ends.empty() ? 0 : m_ends.back())) {
            m_ends.push_back(static_cast<uint32_t>(m_text.size()));
            m_columns.push_back(static_cast<uint32_t>(m_column));
        }
        ++m_column;
    }
    void Cell(std::string_view text) {
        m_text.append(text);
        EndCell();
    }
    /// A cell of the UTF-8 of a wide text.
    void CellOf(const CString& text) {
        AppendUtf8(m_text, text);
        EndCell();
    }
    /// Appends the UTF-8 of a wide text. Names are mostly ASCII: room for one byte a character
    /// is made at once, and the text is checked and narrowed into it a group of characters at
    /// a time, in loops of a fixed length that the compiler makes vector code of; from the
    /// first group with any other character on, the rest is converted character by character
    /// as the platform converts texts (so the pieces give the same bytes as the whole).
    static void AppendUtf8(std::string& out, std::wstring_view s) {
        constexpr size_t kGroup = 32;
        const size_t start = out.size();
        out.resize(start + s.size());
        char* const to = out.data() + start;
        char group[kGroup];
        size_t i = 0;
        for (; i + kGroup <= s.size(); i += kGroup) {
            uint32_t all = 0;
            for (size_t j = 0; j < kGroup; ++j) {
                all |= static_cast<uint32_t>(s[i + j]);
                group[j] = static_cast<char>(s[i + j]);
            }
            if (all >= 0x80)
                break;
            std::copy(group, group + kGroup, to + i);
        }
        if (s.size() - i < kGroup) {
            uint32_t all = 0;
            for (size_t j = i; j < s.size(); ++j) {
                all |= static_cast<uint32_t>(s[j]);
                to[j] = static_cast<char>(s[j]);
            }
            if (all < 0x80)
                return;
        }
        out.resize(start + i);
        out += WideToUtf8(s.substr(i));
    }
    /// `count` empty cells at once.
    void EmptyCells(size_t count) { m_column += count; }
    void EndRow() {
        m_rows.push_back({m_ends.size(), m_column});
        m_column = 0;
    }
    /// Makes room for so many more rows, cells with text and bytes of text.
    void Reserve(size_t rows, size_t cells, size_t bytes) {
        m_rows.reserve(m_rows.size() + rows);
        m_ends.reserve(m_ends.size() + cells);
        m_columns.reserve(m_columns.size() + cells);
        m_text.reserve(m_text.size() + bytes);
    }

    size_t Count() const { return m_rows.size(); }
    /// The number of cells of the row, the empty ones included.
    size_t Cells(size_t row) const { return m_rows[row].columns; }
    std::string_view Get(size_t row, size_t cell) const {
        const auto first = m_columns.begin() + static_cast<std::ptrdiff_t>(FirstKept(row));
        const auto last = m_columns.begin() + static_cast<std::ptrdiff_t>(m_rows[row].kept);
        const auto it = std::lower_bound(first, last, cell);
        if (it == last || *it != cell)
            return {};
        return Kept(static_cast<size_t>(it - m_columns.begin()));
    }

    /// The cells with text of all rows are numbered in one sequence: those of a row run from
    /// FirstKept(row) up to FirstKept(row + 1).
    size_t FirstKept(size_t row) const { return row == 0 ? 0 : m_rows[row - 1].kept; }
    std::string_view Kept(size_t i) const {
        const uint32_t begin = i == 0 ? 0 : m_ends[i - 1];
        return {m_text.data() + begin, m_ends[i] - begin};
    }
    size_t KeptColumn(size_t i) const { return m_columns[i]; }
    /// The bytes of all cells of the row, end to end.
    std::string_view RowText(size_t row) const {
        const size_t first = FirstKept(row);
        const size_t last = m_rows[row].kept;
        const uint32_t begin = first == 0 ? 0 : m_ends[first - 1];
        const uint32_t end = last == 0 ? 0 : m_ends[last - 1];
        return {m_text.data() + begin, end - begin};
    }

private:
    struct Row {
        size_t kept;    // the end of its cells with text
        size_t columns; // its cells, the empty ones included
    };
    std::string m_text;
    std::vector<uint32_t> m_ends;
    std::vector<uint32_t> m_columns;
    std::vector<Row> m_rows;
    size_t m_column = 0;
};

/// A table of the report whose rows are made when they are asked for, for a host that shows
/// only some of them at a time. It holds what identifies the rows, not the rows: a row of an
/// object removed since is made empty; a host asks for the tables afresh after a change.
class CReportTable {
public:
    virtual ~CReportTable() = default;
    virtual size_t RowCount() const = 0;
    /// Appends the rows first .. first + count - 1 (those of them there are) to `rows`.
    virtual void Rows(size_t first, size_t count, CReportRows& rows) const = 0;

    CString title;
    std::vector<CString> header;
};
using CReportTables = std::vector<std::unique_ptr<CReportTable>>;

class CLoadsServices {
public:
    /// Numbers of load cases, combinations and envelopes of the current document.
    static inline void (*Brojevi)(int& nSlOpt, int& nKomb, int& nAnv) = nullptr;
    /// Number of load cases and combinations.
    static inline int (*UkupanBrojSloptOKombinacija)() = nullptr;
    /// Factor vectors of a zero-based load number, for analysis and for printing.
    static inline void (*FaktoriZaProracun)(int zerobased, CArray<double>& f) = nullptr;
    static inline void (*FaktoriZaIspis)(int zerobased, CArray<double>& f) = nullptr;
    /// The vectors of every load in order (as the two above give them one at a time), each
    /// handed to the visitor, in time that grows with the model's size.
    using FactorRowVisitor = std::function<void(int zerobased, const CArray<double>& f)>;
    static inline void (*SviFaktoriZaProracun)(const FactorRowVisitor& visit) = nullptr;
    static inline void (*SviFaktoriZaIspis)(const FactorRowVisitor& visit) = nullptr;
    /// The analysis theory switch.
    static inline int (*GetTeorija)() = nullptr;
    static inline void (*SetTeorija)(int teorija) = nullptr;
    /// The loads of the current document as tables (load cases, combinations, envelopes,
    /// checksums).
    static inline void (*Izvestaj)(CLoadsReport& report) = nullptr;
    /// The same tables, each handed to the visitor as it is made, with its rows made as they
    /// are walked: the tables of a large model are never held whole.
    static inline void (*IzvestajPoTabelama)(const CLoadsReport::TableVisitor& visit) = nullptr;
    /// The same tables, each able to make any of its rows when asked (in UTF-8).
    static inline CReportTables (*IzvestajNaZahtev)() = nullptr;
    /// Fills the current (empty) document with an example model of a few storeys.
    static inline void (*NapraviPrimer)() = nullptr;
    /// Checks a model just read from a file (not yet open) against the invariants of the loads
    /// module. What the module knows how to repair it repairs, with a warning in the host's
    /// message box; for anything else it gives false and what is wrong. The model file calls it
    /// for every model it reads.
    static inline bool (*ProveriUcitaniModel)(CObjBase& base, CString& error) = nullptr;
    /// Forgets what the module remembers of the document that was open (selector items, loads
    /// marked unstable, the active envelope, the multimodal tone map, the theory), before
    /// another document is made current.
    static inline void (*ZaboraviDokument)() = nullptr;
    /// Runs the stability dialog over the stability parameters given as the module's record
    /// (empty: parameters built afresh from the current document); `parent` is the host's
    /// window. True when the user confirmed: the record then holds the new parameters.
    static inline bool (*UrediStabilnost)(std::vector<uint8_t>& record, void* parent) = nullptr;
    /// Installs the host's handler of a change of the current load, which the module calls
    /// whenever the user picks a load in the results selector.
    static inline void (*PostaviChangeLoadCaseTo)(ChangeLoadCaseHandler handler) = nullptr;

    /// The interchange of loads (docs/json-format.md): the loads of the current document as
    /// the JSON description, or its combinations as a CSV table, appended to `text`.
    static inline void (*IzveziJson)(std::string& text) = nullptr;
    static inline void (*IzveziCsv)(std::string& text) = nullptr;
    /// Makes the current document's loads those the JSON text describes, or replaces (or
    /// extends) its combinations by those of the CSV table (`count` gets their number), in one
    /// undo step. False with the reason, which names the line and column of the bad input, when
    /// the text is refused; nothing is changed then.
    static inline bool (*UveziJson)(std::string_view text, CString& error) = nullptr;
    static inline bool (*UveziCsv)(std::string_view text, bool replace, int& count,
                                   CString& error) = nullptr;

    /// Empties every pointer (when the module is unloaded).
    static void Reset();
};
