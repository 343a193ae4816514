// Rendering of tables as aligned columns of UTF-8 text.
#include "TablePrinter.h"

#include "BlockWriter.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>

namespace {

/// A number as the report writes it: optional sign, digits, optional decimal part.
bool IsDigit(char ch) {
    return ch >= '0' && ch <= '9';
}

bool IsNumber(std::string_view text) {
    size_t i = 0;
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        ++i;
    const size_t digitsStart = i;
    while (i < text.size() && IsDigit(text[i]))
        ++i;
    if (i == digitsStart)
        return false;
    if (i < text.size() && text[i] == '.') {
        ++i;
        const size_t fractionStart = i;
        while (i < text.size() && IsDigit(text[i]))
            ++i;
        if (i == fractionStart)
            return false;
    }
    return i == text.size();
}

size_t Width(std::string_view text) {
    // Every byte that does not continue a multi-byte sequence starts one character.
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char ch) {
        return (static_cast<unsigned char>(ch) & 0xC0) != 0x80;
    }));
}

bool Ascii(std::string_view text) {
    // Eight bytes at a time: rows of long names are checked twice, measured and written.
    uint64_t any = 0;
    size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        uint64_t word = 0;
        std::memcpy(&word, text.data() + i, sizeof word);
        any |= word;
    }
    for (; i < text.size(); ++i)
        any |= static_cast<unsigned char>(text[i]);
    return (any & 0x8080808080808080ULL) == 0;
}

/// The columns of a table: their widths and alignment, measured row by row.
class CLayout {
public:
    explicit CLayout(const std::vector<std::string>& header) : m_header(header) {
        Grow(m_header.size());
    }

    /// Measures the rows; their columns are then fixed by Measured.
    void Measure(const CReportRows& rows) {
        for (size_t r = 0; r < rows.Count(); ++r) {
            const bool ascii = Ascii(rows.RowText(r));
            Grow(rows.Cells(r));
            // Empty cells widen no column and align none.
            for (size_t i = rows.FirstKept(r); i < rows.FirstKept(r + 1); ++i) {
                const std::string_view text = rows.Kept(i);
                MeasureCell(rows.KeptColumn(i), text, ascii ? text.size() : Width(text));
            }
        }
    }

    /// A cell of a column there is (Grow); the order of the cells does not matter.
    void MeasureCell(size_t c, std::string_view text, size_t width) {
        m_widths[c] = std::max(m_widths[c], width);
        // A column with a cell that is no number is aligned left whatever follows.
        if (text.empty() || m_allNumbers[c] == 0)
            return;
        const bool number = IsNumber(text);
        m_anyNumber[c] = m_anyNumber[c] != 0 || number;
        m_allNumbers[c] = number;
    }

    void Grow(size_t columns) {
        while (m_widths.size() < columns) {
            const size_t c = m_widths.size();
            m_widths.push_back(c < m_header.size() ? Width(m_header[c]) : 0);
            m_anyNumber.push_back(0);
            m_allNumbers.push_back(1);
        }
    }

    /// Ends the measuring: the places of the columns are known from here on.
    void Measured() {
        m_starts.clear();
        m_right.clear();
        m_lineWidth = 0;
        for (size_t c = 0; c < m_widths.size(); ++c) {
            m_starts.push_back(m_lineWidth);
            m_right.push_back(m_anyNumber[c] != 0 && m_allNumbers[c] != 0);
            m_lineWidth += m_widths[c] + 2;
        }
    }

    size_t LineWidth() const { return m_lineWidth; }
    size_t Columns() const { return m_widths.size(); }
    size_t ColumnWidth(size_t c) const { return m_widths[c]; }
    size_t Start(size_t c) const { return m_starts[c]; }
    bool Right(size_t c) const { return m_right[c] != 0; }

    /// Puts an ASCII text into its column of a line of blanks; gives where it ends.
    size_t Place(char* line, size_t c, std::string_view text) const {
        const size_t at = m_right[c] ? m_starts[c] + m_widths[c] - text.size() : m_starts[c];
        // Most cells are a few characters: copied without a call.
        if (text.size() <= 8) {
            for (size_t i = 0; i < text.size(); ++i)
                line[at + i] = text[i];
        } else {
            std::memcpy(line + at, text.data(), text.size());
        }
        return at + text.size();
    }

    /// Ends a line whose last text ends at `end`; gives the bytes of the line.
    static size_t EndLine(char* line, size_t end) {
        while (end > 0 && line[end - 1] == ' ')
            --end;
        line[end] = '\n';
        return end + 1;
    }

    /// The headings and the rule under them, as rows.
    CReportRows HeaderRows() const {
        CReportRows rows;
        for (const std::string& heading : m_header)
            rows.Cell(heading);
        rows.EndRow();
        for (const size_t width : m_widths) {
            rows.Text().append(width, '-');
            rows.EndCell();
        }
        rows.EndRow();
        return rows;
    }

    /// The most bytes a row can take: its columns with their gaps, the bytes by which its
    /// texts are longer than their widths, and the end of the line.
    size_t Room(const CReportRows& rows, size_t r) const {
        return m_lineWidth + rows.RowText(r).size() + 1;
    }

    /// Writes the row at `line` (with room for it), padded to the columns, without trailing
    /// blanks; gives the bytes written.
    size_t Write(char* line, const CReportRows& rows, size_t r) const {
        if (!Ascii(rows.RowText(r)))
            return WriteWide(line, rows, r);
        // A character per byte: each text goes to its place in a line of blanks.
        std::memset(line, ' ', m_lineWidth);
        size_t end = 0;
        for (size_t i = rows.FirstKept(r); i < rows.FirstKept(r + 1); ++i)
            end = Place(line, rows.KeptColumn(i), rows.Kept(i));
        return EndLine(line, end);
    }

private:
    size_t WriteWide(char* const line, const CReportRows& rows, size_t r) const {
        size_t next = rows.FirstKept(r);
        const size_t last = rows.FirstKept(r + 1);
        char* p = line;
        for (size_t c = 0; c < m_widths.size(); ++c) {
            std::string_view text;
            if (next < last && rows.KeptColumn(next) == c)
                text = rows.Kept(next++);
            const size_t fill = m_widths[c] - Width(text);
            if (c != 0) {
                p[0] = ' ';
                p[1] = ' ';
                p += 2;
            }
            if (m_right[c]) {
                std::memset(p, ' ', fill);
                p += fill;
            }
            if (!text.empty()) // an empty cell may have no bytes at all to copy from
                std::memcpy(p, text.data(), text.size());
            p += text.size();
            if (!m_right[c]) {
                std::memset(p, ' ', fill);
                p += fill;
            }
        }
        while (p > line && p[-1] == ' ')
            --p;
        *p++ = '\n';
        return static_cast<size_t>(p - line);
    }

    const std::vector<std::string>& m_header;
    std::vector<size_t> m_widths;
    std::vector<uint8_t> m_anyNumber;
    std::vector<uint8_t> m_allNumbers;
    std::vector<size_t> m_starts;
    std::vector<uint8_t> m_right;
    size_t m_lineWidth = 0;
};

/// Text collected for the stream and handed over in large pieces: whole blocks where the
/// stream writes them on a thread of its own.
class COutput {
public:
    explicit COutput(std::ostream& out)
        : m_out(out), m_blocks(dynamic_cast<CBlockWriter*>(out.rdbuf())) {
        m_buffer = New(kPiece);
    }
    ~COutput() { Flush(); }
    COutput(const COutput&) = delete;
    COutput& operator=(const COutput&) = delete;

    /// Room for at least `bytes` more bytes; those used are then kept by Used.
    char* Room(size_t bytes) {
        if (m_used + bytes > m_size) {
            Flush();
            if (bytes > m_size) {
                m_size = std::max(bytes, kPiece);
                m_buffer = New(m_size);
            }
        }
        return m_buffer.get() + m_used;
    }
    void Used(size_t bytes) { m_used += bytes; }
    void Append(std::string_view text) {
        std::memcpy(Room(text.size()), text.data(), text.size());
        Used(text.size());
    }
    void Flush() {
        if (m_used == 0)
            return;
        if (m_blocks != nullptr) {
            m_blocks->Give(std::move(m_buffer), m_size, m_used);
            m_buffer = New(m_size);
        } else {
            m_out.write(m_buffer.get(), static_cast<std::streamsize>(m_used));
        }
        m_used = 0;
    }

private:
    static constexpr size_t kPiece = size_t{1} << 20;
    std::unique_ptr<char[]> New(size_t size) {
        return m_blocks != nullptr ? m_blocks->Take(size)
                                   : std::make_unique_for_overwrite<char[]>(size);
    }
    std::ostream& m_out;
    CBlockWriter* m_blocks;
    std::unique_ptr<char[]> m_buffer;
    size_t m_size = kPiece;
    size_t m_used = 0;
};

/// The title underlined, then the headings and the rule under them.
void WriteHead(COutput& output, const CLayout& layout, const std::string& title,
               const std::vector<std::string>& header) {
    output.Append(title);
    output.Append("\n");
    output.Append(std::string(Width(title), '='));
    output.Append("\n");
    if (header.empty())
        return;
    const CReportRows lines = layout.HeaderRows();
    for (size_t r = 0; r < lines.Count(); ++r)
        output.Used(layout.Write(output.Room(layout.Room(lines, r)), lines, r));
}

void WriteEnd(COutput& output, size_t rows) {
    if (rows == 0)
        output.Append("(none)\n");
    output.Append("\n");
}

void PrintRows(std::ostream& out, const std::string& title, const std::vector<std::string>& header,
               const CReportRows& rows) {
    CLayout layout(header);
    layout.Measure(rows);
    layout.Measured();
    COutput output(out);
    WriteHead(output, layout, title, header);
    for (size_t r = 0; r < rows.Count(); ++r)
        output.Used(layout.Write(output.Room(layout.Room(rows, r)), rows, r));
    WriteEnd(output, rows.Count());
}

} // namespace

size_t DisplayWidth(const std::string& text) {
    return Width(text);
}

CTextTable ToTextTable(const CLoadsReport::Table& table) {
    CTextTable text;
    text.title = table.title.ToUtf8();
    for (const CString& heading : table.header)
        text.header.push_back(heading.ToUtf8());
    for (const auto& row : table.rows) {
        std::vector<std::string>& cells = text.rows.emplace_back();
        for (const CString& cell : row)
            cells.push_back(cell.ToUtf8());
    }
    return text;
}

CTextTable SelectorTable(const std::string& title, const CSelectorList& selector) {
    // The mark column keeps its width of one even when nothing is selected.
    CTextTable table{title, {" ", "Pos", "Text"}, {}};
    for (int pos = 0; pos < selector.GetCount(); ++pos)
        table.rows.push_back({pos == selector.GetCurSel() ? ">" : "", std::to_string(pos),
                              selector.GetText(pos).ToUtf8()});
    return table;
}

CRowsTable SelectorRowsTable(const std::string& title, const CSelectorList& selector) {
    CRowsTable table{title, {" ", "Pos", "Text"}, {}};
    CReportRows& rows = table.rows;
    const std::vector<CString>& texts = selector.Texts();
    // Room for every row at once: a selector of many loads holds their long names.
    size_t bytes = 0;
    for (const CString& text : texts)
        bytes += text.size() + 8;
    rows.Reserve(texts.size(), 3 * texts.size(), bytes);
    for (size_t pos = 0; pos < texts.size(); ++pos) {
        rows.Cell(static_cast<int>(pos) == selector.GetCurSel() ? ">" : "");
        char digits[24];
        rows.Cell(std::string_view(digits, std::to_chars(digits, digits + sizeof digits, pos).ptr));
        rows.CellOf(texts[pos]);
        rows.EndRow();
    }
    return table;
}

namespace {

/// The UTF-8 texts of one row of the report, kept from one row to the next so that their room
/// is reused.
class CUtf8Row {
public:
    const CRowSource::Row& Of(const CLoadsReport::Row& cells) {
        if (m_texts.size() < cells.size())
            m_texts.resize(cells.size());
        m_row.clear();
        for (size_t c = 0; c < cells.size(); ++c) {
            Convert(cells[c], m_texts[c]);
            m_row.emplace_back(m_texts[c]);
        }
        return m_row;
    }

private:
    static void Convert(const CString& cell, std::string& text) {
        // Most cells are numbers and plain names: their characters are copied as they are.
        text.resize(cell.size());
        for (size_t i = 0; i < cell.size(); ++i) {
            const wchar_t ch = cell[i];
            if (ch < 0 || ch >= 0x80) {
                text = cell.ToUtf8();
                return;
            }
            text[i] = static_cast<char>(ch);
        }
    }

    std::vector<std::string> m_texts;
    CRowSource::Row m_row;
};

CRowSource Heading(const CString& title, const std::vector<CString>& header) {
    CRowSource source;
    source.title = title.ToUtf8();
    for (const CString& heading : header)
        source.header.push_back(heading.ToUtf8());
    return source;
}

} // namespace

CRowSource ToRowSource(const CLoadsReport::Table& table) {
    CRowSource source = Heading(table.title, table.header);
    source.rows = [&table](const CRowSource::Visitor& visit) {
        CUtf8Row row;
        for (const auto& cells : table.rows)
            visit(row.Of(cells));
    };
    return source;
}

CRowSource ToRowSource(const CLoadsReport::TableSource& table) {
    CRowSource source = Heading(table.title, table.header);
    source.rows = [&table](const CRowSource::Visitor& visit) {
        CUtf8Row row;
        table.rows([&](const CLoadsReport::Row& cells) { visit(row.Of(cells)); });
    };
    return source;
}

void PrintTable(std::ostream& out, const CTextTable& table) {
    CReportRows rows;
    for (const auto& cells : table.rows) {
        for (const std::string& cell : cells)
            rows.Cell(cell);
        rows.EndRow();
    }
    PrintRows(out, table.title, table.header, rows);
}

CRowsTable RowsOf(const CRowSource& table) {
    CRowsTable rows{table.title, table.header, {}};
    table.rows([&rows](const CRowSource::Row& cells) {
        for (const std::string_view cell : cells)
            rows.rows.Cell(cell);
        rows.rows.EndRow();
    });
    return rows;
}

CRowsTable RowsOf(const CReportTable& table) {
    CRowsTable rows{table.title.ToUtf8(), {}, {}};
    for (const CString& heading : table.header)
        rows.header.push_back(heading.ToUtf8());
    table.Rows(0, table.RowCount(), rows.rows);
    return rows;
}

void PrintTable(std::ostream& out, const CRowSource& table) {
    PrintTable(out, RowsOf(table));
}

void PrintTable(std::ostream& out, const CRowsTable& table) {
    PrintRows(out, table.title, table.header, table.rows);
}

void PrintTable(std::ostream& out, const CReportTable& table) {
    PrintTable(out, RowsOf(table));
}

void PrintTable(std::ostream& out, const CCodedTable& table) {
    const CReportRows& lead = table.lead;
    const auto codedCells = [&table](size_t r) {
        return table.rowEnds[r] - (r == 0 ? 0 : table.rowEnds[r - 1]);
    };
    // Each distinct text is measured once in each column it appears in.
    std::vector<size_t> widths;
    bool ascii = true;
    for (const std::string& text : table.texts) {
        widths.push_back(Width(text));
        ascii = ascii && Ascii(text);
    }
    CLayout layout(table.header);
    layout.Measure(lead);
    // Which texts each column holds: a row of marks per column, one mark per text.
    constexpr size_t kTexts = CCodedTable::kMaxTexts;
    std::vector<uint8_t> marks;
    size_t columns = 0;
    for (size_t r = 0; r < lead.Count(); ++r) {
        ascii = ascii && Ascii(lead.RowText(r));
        const size_t from = lead.Cells(r);
        const CCodedTable::Code* code = table.codes.data() + (r == 0 ? 0 : table.rowEnds[r - 1]);
        const size_t n = codedCells(r);
        if (n == 0)
            continue;
        if (marks.size() < (from + n) * kTexts)
            marks.resize((from + n) * kTexts, 0);
        columns = std::max(columns, from + n);
        uint8_t* column = marks.data() + from * kTexts;
        for (size_t k = 0; k < n; ++k, column += kTexts)
            column[code[k]] = 1;
    }
    // A column is coded when a row has a coded cell in it.
    std::vector<uint8_t> coded(columns, 0);
    for (size_t c = 0; c < columns; ++c)
        for (size_t t = 0; t < table.texts.size(); ++t)
            if (marks[c * kTexts + t] != 0) {
                coded[c] = 1;
                break;
            }
    layout.Grow(columns);
    for (size_t c = 0; c < columns; ++c)
        for (size_t t = 0; t < table.texts.size(); ++t)
            if (marks[c * kTexts + t] != 0)
                layout.MeasureCell(c, table.texts[t], widths[t]);
    layout.Measured();

    // Coded cells are written as ready slots when the texts are ASCII, the columns narrow and
    // every row has cells of its own first (the gap before a slot is part of it).
    constexpr size_t kSlot = 8;
    bool fast = ascii;
    for (size_t r = 0; fast && r < lead.Count(); ++r)
        fast = lead.Cells(r) > 0;
    for (size_t c = 0; fast && c < columns; ++c)
        fast = coded[c] == 0 || layout.ColumnWidth(c) + 2 <= kSlot;
    // The slots of each width and alignment: the gap, then the text aligned in the column.
    std::map<std::pair<size_t, bool>, std::string> slotTables;
    std::vector<const char*> slots(columns, nullptr);
    // From the start of a column's slot to the next one's.
    std::vector<size_t> steps(columns, 0);
    for (size_t c = 0; fast && c < columns; ++c) {
        if (coded[c] == 0)
            continue;
        const size_t w = layout.ColumnWidth(c);
        const bool right = layout.Right(c);
        std::string& ready = slotTables[{w, right}];
        if (ready.empty()) {
            ready.assign(kSlot * table.texts.size(), ' ');
            for (size_t t = 0; t < table.texts.size(); ++t) {
                const std::string& text = table.texts[t];
                if (text.size() <= w)
                    ready.replace(kSlot * t + 2 + (right ? w - text.size() : 0), text.size(), text);
            }
        }
        slots[c] = ready.data();
        steps[c] = w + 2;
    }

    COutput output(out);
    WriteHead(output, layout, table.title, table.header);
    CReportRows row;
    for (size_t r = 0; r < lead.Count(); ++r) {
        const size_t from = lead.Cells(r);
        const CCodedTable::Code* code = table.codes.data() + (r == 0 ? 0 : table.rowEnds[r - 1]);
        const size_t n = codedCells(r);
        if (!fast) {
            // Texts of several bytes a character, or wide columns: written as any other row.
            row.Clear();
            for (size_t c = 0; c < from; ++c)
                row.Cell(lead.Get(r, c));
            for (size_t k = 0; k < n; ++k)
                row.Cell(table.texts[code[k]]);
            row.EndRow();
            output.Used(layout.Write(output.Room(layout.Room(row, 0)), row, 0));
            continue;
        }
        char* const line = output.Room(layout.LineWidth() + 1 + kSlot);
        // The row's own cells in their places, then each coded cell as its ready slot, one
        // after the other (a slot may spill blanks past its place: the next one covers them).
        const size_t codedStart =
            from < layout.Columns() ? layout.Start(from) - 2 : layout.LineWidth();
        std::memset(line, ' ', codedStart);
        size_t end = 0;
        for (size_t i = lead.FirstKept(r); i < lead.FirstKept(r + 1); ++i)
            end = layout.Place(line, lead.KeptColumn(i), lead.Kept(i));
        char* p = line + codedStart;
        const char* const* slot = slots.data() + from;
        const size_t* step = steps.data() + from;
        for (size_t k = 0; k < n; ++k) {
            std::memcpy(p, slot[k] + kSlot * code[k], kSlot);
            p += step[k];
        }
        if (n > 0)
            end = static_cast<size_t>(p - line);
        output.Used(CLayout::EndLine(line, end));
    }
    WriteEnd(output, lead.Count());
}
