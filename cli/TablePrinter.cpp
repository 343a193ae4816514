// Rendering of tables as aligned columns of UTF-8 text.
#include "TablePrinter.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>

namespace {

/// A number as the report writes it: optional sign, digits, optional decimal part.
bool IsNumber(std::string_view text) {
    size_t i = 0;
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        ++i;
    const size_t digitsStart = i;
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])))
        ++i;
    if (i == digitsStart)
        return false;
    if (i < text.size() && text[i] == '.') {
        ++i;
        const size_t fractionStart = i;
        while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])))
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

std::string_view Cell(const CRowSource::Row& row, size_t column) {
    return column < row.size() ? row[column] : std::string_view();
}

/// The columns of a table: their widths and alignment, measured row by row.
class CLayout {
public:
    explicit CLayout(const std::vector<std::string>& header) {
        for (const std::string& heading : header)
            m_header.emplace_back(heading);
        Grow(m_header.size());
    }

    void Measure(const CRowSource::Row& row) {
        Grow(row.size());
        for (size_t c = 0; c < row.size(); ++c) {
            const std::string_view text = row[c];
            m_widths[c] = std::max(m_widths[c], Width(text));
            // A column with a cell that is no number is aligned left whatever follows.
            if (text.empty() || m_allNumbers[c] == 0)
                continue;
            const bool number = IsNumber(text);
            m_anyNumber[c] = m_anyNumber[c] != 0 || number;
            m_allNumbers[c] = number;
        }
        ++m_rows;
    }

    size_t Rows() const { return m_rows; }
    /// Ends the measuring: the width of a whole line is known from here on.
    void Measured() {
        m_lineWidth = 0;
        for (const size_t width : m_widths)
            m_lineWidth += width + 2;
    }
    const CRowSource::Row& Header() const { return m_header; }
    CRowSource::Row Rule() {
        m_rule.clear();
        for (size_t width : m_widths)
            m_rule.emplace_back(width, '-');
        CRowSource::Row rule;
        for (const std::string& dashes : m_rule)
            rule.emplace_back(dashes);
        return rule;
    }

    /// Appends the row, padded to the columns, without trailing blanks.
    void Write(std::string& out, const CRowSource::Row& row) const {
        // The row is written into room made for its longest possible form at once: its columns
        // with their gaps, and the bytes by which its texts are longer than their widths.
        size_t room = m_lineWidth + 1;
        for (size_t c = 0; c < m_widths.size(); ++c)
            room += Cell(row, c).size();
        const size_t start = out.size();
        out.resize(start + room);
        char* const first = out.data() + start;
        char* p = first;
        for (size_t c = 0; c < m_widths.size(); ++c) {
            const std::string_view text = Cell(row, c);
            const size_t fill = m_widths[c] - Width(text);
            if (c != 0) {
                p[0] = ' ';
                p[1] = ' ';
                p += 2;
            }
            const bool right = m_anyNumber[c] != 0 && m_allNumbers[c] != 0;
            if (right) {
                std::memset(p, ' ', fill);
                p += fill;
            }
            if (!text.empty()) // an empty cell may have no bytes at all to copy from
                std::memcpy(p, text.data(), text.size());
            p += text.size();
            if (!right) {
                std::memset(p, ' ', fill);
                p += fill;
            }
        }
        while (p > first && p[-1] == ' ')
            --p;
        *p++ = '\n';
        out.resize(static_cast<size_t>(p - out.data()));
    }

private:
    void Grow(size_t columns) {
        while (m_widths.size() < columns) {
            m_widths.push_back(Width(Cell(m_header, m_widths.size())));
            m_anyNumber.push_back(0);
            m_allNumbers.push_back(1);
        }
    }

    CRowSource::Row m_header;
    std::vector<size_t> m_widths;
    std::vector<uint8_t> m_anyNumber;
    std::vector<uint8_t> m_allNumbers;
    std::vector<std::string> m_rule;
    size_t m_rows = 0;
    size_t m_lineWidth = 0;
};

/// Text collected for the stream and handed over in large pieces.
class COutput {
public:
    explicit COutput(std::ostream& out) : m_out(out) {}
    ~COutput() { Flush(); }
    COutput(const COutput&) = delete;
    COutput& operator=(const COutput&) = delete;
    std::string& Text() { return m_text; }
    void FlushIfLarge() {
        if (m_text.size() >= (size_t{1} << 20))
            Flush();
    }
    void Flush() {
        m_out.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
        m_text.clear();
    }

private:
    std::ostream& m_out;
    std::string m_text;
};

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

CRowSource SelectorRows(const std::string& title, const CSelectorList& selector) {
    CRowSource source{title, {" ", "Pos", "Text"}, {}};
    source.rows = [&selector](const CRowSource::Visitor& visit) {
        std::string position;
        std::string text;
        CRowSource::Row row(3);
        for (int pos = 0; pos < selector.GetCount(); ++pos) {
            position = std::to_string(pos);
            text = selector.GetText(pos).ToUtf8();
            row[0] = pos == selector.GetCurSel() ? ">" : "";
            row[1] = position;
            row[2] = text;
            visit(row);
        }
    };
    return source;
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
    CRowSource source{table.title, table.header, [&table](const CRowSource::Visitor& visit) {
                          CRowSource::Row row;
                          for (const auto& cells : table.rows) {
                              row.assign(cells.begin(), cells.end());
                              visit(row);
                          }
                      }};
    PrintTable(out, source);
}

void PrintTable(std::ostream& out, const CRowSource& table) {
    CLayout layout(table.header);
    table.rows([&layout](const CRowSource::Row& row) { layout.Measure(row); });
    layout.Measured();

    COutput output(out);
    std::string& text = output.Text();
    text += table.title;
    text += '\n';
    text.append(Width(table.title), '=');
    text += '\n';
    if (!table.header.empty()) {
        layout.Write(text, layout.Header());
        layout.Write(text, layout.Rule());
    }
    table.rows([&layout, &output](const CRowSource::Row& row) {
        layout.Write(output.Text(), row);
        output.FlushIfLarge();
    });
    if (layout.Rows() == 0)
        text += "(none)\n";
    text += '\n';
}
