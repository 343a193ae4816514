// The model's load tables in the central area, and their printing.
#include "LoadTables.h"

#include "ui/QtText.h"

#include <QHeaderView>
#include <QPrinter>
#include <QTableWidget>
#include <QTextDocument>

CLoadTables::CLoadTables(QWidget* parent) : QTabWidget(parent) {
    setDocumentMode(true);
}

QTableWidget* CLoadTables::Table(int index) const {
    return qobject_cast<QTableWidget*>(widget(index));
}

void CLoadTables::Refresh() {
    CLoadsReport report;
    if (CLoadsServices::Izvestaj != nullptr)
        CLoadsServices::Izvestaj(report);
    m_report = std::move(report);
    const int current = currentIndex();
    for (size_t t = 0; t < m_report.tables.size(); ++t) {
        const CLoadsReport::Table& table = m_report.tables[t];
        QTableWidget* view = Table(static_cast<int>(t));
        if (view == nullptr) {
            view = new QTableWidget(this);
            view->setEditTriggers(QAbstractItemView::NoEditTriggers);
            view->setSelectionBehavior(QAbstractItemView::SelectRows);
            view->setAlternatingRowColors(true);
            view->verticalHeader()->setVisible(false);
            view->verticalHeader()->setDefaultSectionSize(22);
            view->horizontalHeader()->setHighlightSections(false);
            addTab(view, QString());
        }
        setTabText(static_cast<int>(t), ToQ(table.title));
        view->clear();
        view->setColumnCount(static_cast<int>(table.header.size()));
        view->setRowCount(static_cast<int>(table.rows.size()));
        QStringList header;
        for (const CString& h : table.header)
            header << ToQ(h);
        view->setHorizontalHeaderLabels(header);
        for (size_t r = 0; r < table.rows.size(); ++r)
            for (size_t c = 0; c < table.rows[r].size() && c < table.header.size(); ++c)
                view->setItem(static_cast<int>(r), static_cast<int>(c),
                              new QTableWidgetItem(ToQ(table.rows[r][c])));
        view->resizeColumnsToContents();
    }
    while (count() > static_cast<int>(m_report.tables.size())) {
        QWidget* extra = widget(count() - 1);
        removeTab(count() - 1);
        delete extra;
    }
    if (current >= 0 && current < count())
        setCurrentIndex(current);
}

QString CLoadTables::Html(const QString& title) const {
    QString html = QStringLiteral("<html><body style=\"font-family: sans-serif; font-size: 8pt\">"
                                  "<h2>%1</h2>")
                       .arg(title.toHtmlEscaped());
    for (const CLoadsReport::Table& table : m_report.tables) {
        html += QStringLiteral("<h3>%1</h3><table border=\"1\" cellspacing=\"0\" "
                               "cellpadding=\"2\"><tr>")
                    .arg(ToQ(table.title).toHtmlEscaped());
        for (const CString& h : table.header)
            html += QStringLiteral("<th>%1</th>").arg(ToQ(h).toHtmlEscaped());
        html += QStringLiteral("</tr>");
        for (const auto& row : table.rows) {
            html += QStringLiteral("<tr>");
            for (const CString& cell : row)
                html += QStringLiteral("<td>%1</td>").arg(ToQ(cell).toHtmlEscaped());
            html += QStringLiteral("</tr>");
        }
        html += QStringLiteral("</table><p>&nbsp;</p>");
    }
    return html + QStringLiteral("</body></html>");
}

void CLoadTables::Print(QPrinter& printer, const QString& title) const {
    QTextDocument document;
    document.setHtml(Html(title));
    document.print(&printer);
}
