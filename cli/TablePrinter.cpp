// Rendering of tables as aligned columns of UTF-8 text.
#include "TablePrinter.h"

#include <algorithm>
#include <cctype>

namespace {

/// A number as the report writes it: optional sign, digits, optional decimal part.
bool IsNumber(const std::string& text) {
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

const std::string& Cell(const std::vector<std::string>& row, size_t column) {
    static const std::string empty;
    return column < row.size() ? row[column] : empty;
}

void PrintRow(std::ostream& out, const std::vector<std::string>& row,
              const std::vector<size_t>& widths, const std::vector<bool>& right) {
    std::string line;
    for (size_t c = 0; c < widths.size(); ++c) {
        const std::string& text = Cell(row, c);
        const size_t fill = widths[c] - DisplayWidth(text);
        std::string cell = right[c] ? std::string(fill, ' ') + text : text + std::string(fill, ' ');
        line += c == 0 ? cell : "  " + cell;
    }
    // No trailing blanks: the last column is not padded out.
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
}

} // namespace

size_t DisplayWidth(const std::string& text) {
    // Every byte that does not continue a multi-byte sequence starts one character.
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char ch) {
        return (static_cast<unsigned char>(ch) & 0xC0) != 0x80;
    }));
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

void PrintTable(std::ostream& out, const CTextTable& table) {
    out << table.title << '\n' << std::string(DisplayWidth(table.title), '=') << '\n';
    size_t columns = table.header.size();
    for (const auto& row : table.rows)
        columns = std::max(columns, row.size());

    std::vector<size_t> widths(columns, 0);
    std::vector<bool> right(columns, false);
    for (size_t c = 0; c < columns; ++c) {
        widths[c] = DisplayWidth(Cell(table.header, c));
        bool anyNumber = false;
        bool allNumbers = true;
        for (const auto& row : table.rows) {
            const std::string& text = Cell(row, c);
            widths[c] = std::max(widths[c], DisplayWidth(text));
            if (text.empty())
                continue;
            anyNumber = anyNumber || IsNumber(text);
            allNumbers = allNumbers && IsNumber(text);
        }
        right[c] = anyNumber && allNumbers;
    }

    if (!table.header.empty()) {
        PrintRow(out, table.header, widths, right);
        std::vector<std::string> rule;
        for (size_t width : widths)
            rule.emplace_back(width, '-');
        PrintRow(out, rule, widths, right);
    }
    for (const auto& row : table.rows)
        PrintRow(out, row, widths, right);
    if (table.rows.empty())
        out << "(none)\n";
    out << '\n';
}
