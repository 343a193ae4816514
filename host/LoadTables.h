#pragma once
// CLoadTables: the central area of the desktop host: the model's load cases, combinations,
// envelopes, the global scale and the checksums as read-only tables, one tab each, as the
// loads module reports them. Printing and PDF export write the same tables.
//
// The views ask the report only for the rows they show, a page at a time, so that a model with
// tens of thousands of combinations is refreshed after every change in the time the module
// takes to list its objects, not in the time it would take to make every row.
#include "host/LoadsServices.h"

#include <QTabWidget>

#include <memory>
#include <vector>

class CLoadTableModel;
class QPrinter;
class QTableView;
class QTimer;

class CLoadTables : public QTabWidget {
    Q_OBJECT
public:
    explicit CLoadTables(QWidget* parent = nullptr);
    ~CLoadTables() override;

    /// Asks the module for the tables of the current model and shows them.
    void Refresh();
    /// Refreshes once the event loop runs, once however often it is asked before.
    void RefreshLater();
    const CReportTables& ReportTables() const { return m_report; }
    QTableView* Table(int index) const;

    /// Writes every table to the printer (or a PDF file the printer is set to), page by page.
    void Print(QPrinter& printer, const QString& title) const;
    /// The tables as one HTML document.
    QString Html(const QString& title) const;

private:
    /// Fits the columns of the table at the index to its first rows, once after a refresh.
    void FitColumns(int index);

    CReportTables m_report;
    QTimer* m_later = nullptr;
    std::vector<CLoadTableModel*> m_models; // owned by their views
    std::vector<bool> m_sized;
};
