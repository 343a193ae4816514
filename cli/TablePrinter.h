#pragma once
// Plain-text tables for a terminal: the tables of the loads report and the load selectors,
// rendered as aligned columns of UTF-8 text.
#include "host/LoadsServices.h"
#include "host/MainFrame.h"

#include <ostream>
#include <string>
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

/// Writes the table: the title underlined, the headings, a rule, the rows, then an empty
/// line. Columns whose cells are all numbers are aligned to the right, others to the left.
void PrintTable(std::ostream& out, const CTextTable& table);
