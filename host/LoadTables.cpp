// The model's load tables in the central area, and their printing.
#include "LoadTables.h"

#include "ui/QtText.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QPrinter>
#include <QTableView>
#include <QTextDocument>
#include <QTimer>

#include <algorithm>

/// One table of the report as a Qt table model: rows are asked of the report a page at a time
/// when a view shows them, and the last few pages are kept.
class CLoadTableModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void Set(const CReportTable* table) {
        beginResetModel();
        m_table = table;
        m_pages.clear();
        endResetModel();
    }
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() || m_table == nullptr ? 0 : static_cast<int>(m_table->RowCount());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() || m_table == nullptr ? 0
                                                      : static_cast<int>(m_table->header.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole || m_table == nullptr || !index.isValid())
            return {};
        const auto row = static_cast<size_t>(index.row());
        const CPage& page = Page(row / kPageRows);
        const size_t r = row - page.first;
        const auto col = static_cast<size_t>(index.column());
        if (r >= page.rows.Count() || col >= page.rows.Cells(r))
            return QString();
        const std::string_view text = page.rows.Get(r, col);
        return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal || m_table == nullptr ||
            section < 0 || section >= static_cast<int>(m_table->header.size()))
            return QAbstractTableModel::headerData(section, orientation, role);
        return ToQ(m_table->header[static_cast<size_t>(section)]);
    }

private:
    static constexpr size_t kPageRows = 64;
    static constexpr size_t kPagesKept = 8;
    struct CPage {
        size_t first = 0;
        CReportRows rows;
    };

    /// The page of the given number, asked of the report unless it is kept; the page used last
    /// is kept first.
    const CPage& Page(size_t number) const {
        const size_t first = number * kPageRows;
        auto it = std::find_if(m_pages.begin(), m_pages.end(),
                               [first](const CPage& page) { return page.first == first; });
        if (it == m_pages.end()) {
            if (m_pages.size() == kPagesKept)
                m_pages.pop_back();
            CPage page;
            page.first = first;
            m_table->Rows(first, kPageRows, page.rows);
            m_pages.insert(m_pages.begin(), std::move(page));
        } else if (it != m_pages.begin()) {
            std::rotate(m_pages.begin(), it, it + 1);
        }
        return m_pages.front();
    }

    const CReportTable* m_table = nullptr;
    mutable std::vector<CPage> m_pages;
};

CLoadTables::CLoadTables(QWidget* parent) : QTabWidget(parent) {
    setDocumentMode(true);
    m_later = new QTimer(this);
    m_later->setSingleShot(true);
    m_later->setInterval(0);
    connect(m_later, &QTimer::timeout, this, &CLoadTables::Refresh);
    connect(this, &QTabWidget::currentChanged, this, &CLoadTables::FitColumns);
}

CLoadTables::~CLoadTables() {
    // The views outlive the tables (they go with the tab widget): they let go of them first.
    for (CLoadTableModel* model : m_models)
        model->Set(nullptr);
}

QTableView* CLoadTables::Table(int index) const {
    return qobject_cast<QTableView*>(widget(index));
}

void CLoadTables::RefreshLater() {
    if (!m_later->isActive())
        m_later->start();
}

void CLoadTables::Refresh() {
    m_later->stop();
    // The views let go of the old tables before they are replaced.
    for (CLoadTableModel* model : m_models)
        model->Set(nullptr);
    m_report.clear();
    if (CLoadsServices::IzvestajNaZahtev != nullptr)
        m_report = CLoadsServices::IzvestajNaZahtev();
    const int current = currentIndex();
    for (size_t t = 0; t < m_report.size(); ++t) {
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
            // Column widths from the rows in view, not from every row of a large model.
            view->horizontalHeader()->setResizeContentsPrecision(0);
            addTab(view, QString());
            m_models.push_back(model);
        }
        const CReportTable& table = *m_report[t];
        setTabText(static_cast<int>(t), ToQ(table.title));
        m_models[t]->Set(&table);
    }
    // Columns are fitted to the rows of a table when it is shown.
    m_sized.assign(m_models.size(), false);
    while (m_models.size() > m_report.size()) {
        QWidget* extra = widget(count() - 1);
        removeTab(count() - 1);
        m_models.pop_back();
        delete extra;
    }
    if (current >= 0 && current < count())
        setCurrentIndex(current);
    FitColumns(currentIndex());
}

void CLoadTables::FitColumns(int index) {
    if (index < 0 || static_cast<size_t>(index) >= m_sized.size() ||
        m_sized[static_cast<size_t>(index)])
        return;
    m_sized[static_cast<size_t>(index)] = true;
    Table(index)->resizeColumnsToContents();
}

QString CLoadTables::Html(const QString& title) const {
    QString html = QStringLiteral("<html><body style=\"font-family: sans-serif; font-size: 8pt\">"
                                  "<h2>%1</h2>")
                       .arg(title.toHtmlEscaped());
    for (const auto& table : m_report) {
        html += QStringLiteral("<h3>%1</h3><table border=\"1\" cellspacing=\"0\" "
                               "cellpadding=\"2\"><tr>")
                    .arg(ToQ(table->title).toHtmlEscaped());
        for (const CString& h : table->header)
            html += QStringLiteral("<th>%1</th>").arg(ToQ(h).toHtmlEscaped());
        html += QStringLiteral("</tr>");
        CReportRows rows;
        table->Rows(0, table->RowCount(), rows);
        for (size_t r = 0; r < rows.Count(); ++r) {
            html += QStringLiteral("<tr>");
            for (size_t c = 0; c < rows.Cells(r); ++c) {
                const std::string_view cell = rows.Get(r, c);
                html += QStringLiteral("<td>%1</td>")
                            .arg(QString::fromUtf8(cell.data(), static_cast<qsizetype>(cell.size()))
                                     .toHtmlEscaped());
            }
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
