#pragma once
// Plain-text tables for a terminal: the tables of the loads report and the load selectors,
// rendered as aligned columns of UTF-8 text.
#include "host/LoadsServices.h"
#include "host/MainFrame.h"

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

/// A table of UTF-8 texts: a title, column headings and rows (rows may be shorter or longer
/// than the heading; missing cells are empty).
struct CTextTable {
    std::string title;
    std::vector<std::string> header;
    std::vector<std::vector<std::string>> rows;
};

/// The width of a UTF-8 text on a terminal, counted in characters.
size_t DisplayWidth(const std::string& text);

/// A table of the loads report in UTF-8.
CTextTable ToTextTable(const CLoadsReport::Table& table);

/// The selector as the host shows it: one row per position with its text, the selected
/// position marked with ">".
CTextTable SelectorTable(const std::string& title, const CSelectorList& selector);

/// A table whose rows are made as they are printed, for tables too large to hold as strings:
/// `rows` hands every row, in order, to the visitor it is given. The printer walks the rows
/// once; the cells need to live only until the visitor returns.
struct CRowSource {
    using Row = std::vector<std::string_view>;
    using Visitor = std::function<void(const Row& row)>;
    std::string title;
    std::vector<std::string> header;
    std::function<void(const Visitor& visit)> rows;
};

/// A table with its rows in one buffer of UTF-8 texts.
struct CRowsTable {
    std::string title;
    std::vector<std::string> header;
    CReportRows rows;
};

/// A table whose rows begin with cells of their own and go on with cells chosen from a few
/// distinct texts (the factors of the loads of a model), kept as the numbers of those texts.
struct CCodedTable {
    /// The number of a text; a table holds at most kMaxTexts texts.
    using Code = uint8_t;
    static constexpr size_t kMaxTexts = size_t{1} << (8 * sizeof(Code));
    std::string title;
    std::vector<std::string> header;
    /// The cells of each row's own.
    CReportRows lead;
    std::vector<std::string> texts;
    /// The numbers of the texts of the further cells of every row, row after row; the cells of
    /// row r end at rowEnds[r].
    std::vector<Code> codes;
    std::vector<size_t> rowEnds;
};

/// The selector's table with its rows in one buffer, for a selector of many loads.
CRowsTable SelectorRowsTable(const std::string& title, const CSelectorList& selector);

/// The table of the loads report as rows made one at a time (UTF-8 from the report's texts).
CRowSource ToRowSource(const CLoadsReport::Table& table);
/// A table of the report whose rows are made as they are walked, in UTF-8; it is walked while
/// the table lives.
CRowSource ToRowSource(const CLoadsReport::TableSource& table);

/// The rows of a table made at once, in one buffer: what the printer needs of a table whose
/// rows are made as they are walked or read from the document.
CRowsTable RowsOf(const CRowSource& table);
CRowsTable RowsOf(const CReportTable& table);

/// Writes the table: the title underlined, the headings, a rule, the rows, then an empty
/// line. Columns whose cells are all numbers are aligned to the right, others to the left.
void PrintTable(std::ostream& out, const CTextTable& table);
void PrintTable(std::ostream& out, const CRowSource& table);
void PrintTable(std::ostream& out, const CRowsTable& table);
void PrintTable(std::ostream& out, const CCodedTable& table);
/// A table of the report, all its rows asked for at once.
void PrintTable(std::ostream& out, const CReportTable& table);
