#pragma once
// CLoadTables: the central area of the desktop host: the model's load cases, combinations,
// envelopes, the global scale and the checksums as read-only tables, one tab each, as the
// loads module reports them. Printing and PDF export write the same tables.
#include "host/LoadsServices.h"

#include <QTabWidget>

class QPrinter;
class QTableWidget;

class CLoadTables : public QTabWidget {
    Q_OBJECT
public:
    explicit CLoadTables(QWidget* parent = nullptr);

    /// Asks the module for the tables of the current model and shows them.
    void Refresh();
    const CLoadsReport& Report() const { return m_report; }
    QTableWidget* Table(int index) const;

    /// Writes every table to the printer (or a PDF file the printer is set to), page by page.
    void Print(QPrinter& printer, const QString& title) const;
    /// The tables as one HTML document.
    QString Html(const QString& title) const;

private:
    CLoadsReport m_report;
};
