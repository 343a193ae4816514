// The model's load tables in the central area, and their printing.
#include "LoadTables.h"

#include "ui/QtText.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QPrinter>
#include <QTableView>
#include <QTextDocument>
#include <QTimer>

/// One table of the report as a Qt table model: cells are converted when a view shows them.
class CLoadTableModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void Set(const CLoadsReport::Table* table) {
        beginResetModel();
        m_table = table;
        endResetModel();
    }
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() || m_table == nullptr ? 0 : static_cast<int>(m_table->rows.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() || m_table == nullptr ? 0
                                                      : static_cast<int>(m_table->header.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole || m_table == nullptr || !index.isValid())
            return {};
        const std::vector<CString>& row = m_table->rows[static_cast<size_t>(index.row())];
        const auto col = static_cast<size_t>(index.column());
        return col < row.size() ? ToQ(row[col]) : QString();
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal || m_table == nullptr ||
            section < 0 || section >= static_cast<int>(m_table->header.size()))
            return QAbstractTableModel::headerData(section, orientation, role);
        return ToQ(m_table->header[static_cast<size_t>(section)]);
    }

private:
    const CLoadsReport::Table* m_table = nullptr;
};

CLoadTables::CLoadTables(QWidget* parent) : QTabWidget(parent) {
    setDocumentMode(true);
    m_later = new QTimer(this);
    m_later->setSingleShot(true);
    m_later->setInterval(0);
    connect(m_later, &QTimer::timeout, this, &CLoadTables::Refresh);
}

CLoadTables::~CLoadTables() = default;

QTableView* CLoadTables::Table(int index) const {
    return qobject_cast<QTableView*>(widget(index));
}

void CLoadTables::RefreshLater() {
    if (!m_later->isActive())
        m_later->start();
}

void CLoadTables::Refresh() {
    m_later->stop();
    // The views let go of the old report before it is replaced.
    for (CLoadTableModel* model : m_models)
        model->Set(nullptr);
    CLoadsReport report;
    if (CLoadsServices::Izvestaj != nullptr)
        CLoadsServices::Izvestaj(report);
    m_report = std::move(report);
    const int current = currentIndex();
    for (size_t t = 0; t < m_report.tables.size(); ++t) {
        if (t == m_models.size()) {
            auto* view = new QTableView(this);
            auto* model = new CLoadTableModel(view);
            view->setModel(model);
            view->setEditTriggers(QAbstractItemView::NoEditTriggers);
            view->setSelectionBehavior(QAbstractItemView::SelectRows);
            view->setAlternatingRowColors(true);
            view->setWordWrap(false);
            view->verticalHeader()->setVisible(false);
            view->verticalHeader()->setDefaultSectionSize(22);
            view->horizontalHeader()->setHighlightSections(false);
            // Column widths from the first rows, not from every row of a large model.
            view->horizontalHeader()->setResizeContentsPrecision(200);
            addTab(view, QString());
            m_models.push_back(model);
        }
        const CLoadsReport::Table& table = m_report.tables[t];
        setTabText(static_cast<int>(t), ToQ(table.title));
        m_models[t]->Set(&table);
        Table(static_cast<int>(t))->resizeColumnsToContents();
    }
    while (m_models.size() > m_report.tables.size()) {
        QWidget* extra = widget(count() - 1);
        removeTab(count() - 1);
        m_models.pop_back();
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
