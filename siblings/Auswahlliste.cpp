#include "siblings/Auswahlliste.h"

#include <QAbstractTableModel>
#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

namespace siblings {

namespace {

class Zeilenmodell : public QAbstractTableModel
{
public:
    Zeilenmodell(QStringList spalten, std::vector<QStringList> zeilen, QObject *parent)
        : QAbstractTableModel(parent)
        , m_spalten(std::move(spalten))
        , m_zeilen(std::move(zeilen))
    { }

    int rowCount(const QModelIndex &p = {}) const override
    {
        return p.isValid() ? 0 : int(m_zeilen.size());
    }
    int columnCount(const QModelIndex &p = {}) const override
    {
        return p.isValid() ? 0 : int(m_spalten.size());
    }
    QVariant data(const QModelIndex &i, int rolle) const override
    {
        if (!i.isValid() || (rolle != Qt::DisplayRole && rolle != Qt::ToolTipRole))
            return {};
        return m_zeilen[size_t(i.row())].value(i.column());
    }
    QVariant headerData(int abschnitt, Qt::Orientation o, int rolle) const override
    {
        if (o == Qt::Horizontal && rolle == Qt::DisplayRole)
            return m_spalten.value(abschnitt);
        return {};
    }
    const QStringList &zeile(int i) const { return m_zeilen[size_t(i)]; }

private:
    QStringList m_spalten;
    std::vector<QStringList> m_zeilen;
};

class Filter : public QSortFilterProxyModel
{
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setText(const QString &text)
    {
        m_text = text.trimmed();
        invalidateFilter();
    }

protected:
    bool filterAcceptsRow(int zeile, const QModelIndex &) const override
    {
        if (m_text.isEmpty())
            return true;
        const auto &z = static_cast<const Zeilenmodell *>(sourceModel())->zeile(zeile);
        if (z.value(0).startsWith(m_text, Qt::CaseInsensitive))
            return true;
        for (qsizetype i = 1; i < z.size(); ++i) {
            if (z.at(i).contains(m_text, Qt::CaseInsensitive))
                return true;
        }
        return false;
    }

private:
    QString m_text;
};

} // namespace

Auswahlliste::Auswahlliste(const QString &titel, const QStringList &spalten,
                           std::vector<QStringList> zeilen, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(titel);
    auto *layout = new QVBoxLayout(this);
    auto *hinweis = new QLabel(QStringLiteral("Suchen (Nummer oder Text), Eingabetaste wählt, "
                                              "Esc bricht ab:"),
                               this);
    layout->addWidget(hinweis);
    m_filter = new QLineEdit(this);
    m_filter->setObjectName(QStringLiteral("inpFilter"));
    m_filter->setClearButtonEnabled(true);
    hinweis->setBuddy(m_filter);
    layout->addWidget(m_filter);

    auto *modell = new Zeilenmodell(spalten, std::move(zeilen), this);
    m_proxy = new Filter(this);
    m_proxy->setSourceModel(modell);
    m_tabelle = new QTableView(this);
    m_tabelle->setObjectName(QStringLiteral("lstAuswahl"));
    m_tabelle->setModel(m_proxy);
    m_tabelle->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_tabelle->setSelectionMode(QAbstractItemView::SingleSelection);
    m_tabelle->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_tabelle->verticalHeader()->hide();
    m_tabelle->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_tabelle->horizontalHeader()->setStretchLastSection(true);
    m_tabelle->setColumnWidth(0, 110);
    layout->addWidget(m_tabelle);
    m_anzahl = new QLabel(this);
    layout->addWidget(m_anzahl);

    connect(m_filter, &QLineEdit::textChanged, this, &Auswahlliste::filterSetzen);
    connect(m_tabelle, &QTableView::doubleClicked, this, [this] { waehlen(); });
    m_filter->installEventFilter(this);
    m_tabelle->installEventFilter(this);
    filterSetzen(QString());
    resize(560, 480);
    m_filter->setFocus();
}

Auswahlliste::~Auswahlliste() = default;

int Auswahlliste::sichtbareZeilen() const
{
    return m_proxy->rowCount();
}

void Auswahlliste::filterSetzen(const QString &text)
{
    static_cast<Filter *>(m_proxy)->setText(text);
    if (m_proxy->rowCount() > 0)
        m_tabelle->setCurrentIndex(m_proxy->index(0, 0));
    m_anzahl->setText(QStringLiteral("%1 von %2 Einträgen")
                          .arg(m_proxy->rowCount())
                          .arg(m_proxy->sourceModel()->rowCount()));
}

void Auswahlliste::waehlen()
{
    QModelIndex i = m_tabelle->currentIndex();
    if (!i.isValid() && m_proxy->rowCount() > 0)
        i = m_proxy->index(0, 0);
    if (!i.isValid())
        return;
    m_gewaehlt = m_proxy->mapToSource(i).row();
    accept();
}

bool Auswahlliste::eventFilter(QObject *obj, QEvent *ev)
{
    if (ev->type() != QEvent::KeyPress)
        return QDialog::eventFilter(obj, ev);
    auto *taste = static_cast<QKeyEvent *>(ev);
    switch (taste->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        waehlen();
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (obj == m_filter) {
            QKeyEvent kopie(QEvent::KeyPress, taste->key(), taste->modifiers());
            QCoreApplication::sendEvent(m_tabelle, &kopie);
            return true;
        }
        break;
    default:
        break;
    }
    return QDialog::eventFilter(obj, ev);
}

} // namespace siblings
