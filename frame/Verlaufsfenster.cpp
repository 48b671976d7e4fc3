#include "frame/Verlaufsfenster.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace frame {

namespace {

const QString leer = QStringLiteral("(leer)");

QString ortszeit(const QString &utc)
{
    // The trailing "Z" makes it a UTC time.
    const QDateTime t = QDateTime::fromString(utc, Qt::ISODateWithMs);
    if (!t.isValid())
        return utc;
    return t.toLocalTime().toString(QStringLiteral("dd.MM.yyyy HH:mm:ss"));
}

QWidget *gebundenesFeld(QWidget *form, const QString &feld)
{
    const auto kinder = form->findChildren<QWidget *>();
    for (QWidget *w : kinder) {
        const QVariant f = w->property("DataField");
        if (f.isValid() && f.toString().compare(feld, Qt::CaseInsensitive) == 0)
            return w;
    }
    return nullptr;
}

} // namespace

Verlaufsfenster::Verlaufsfenster(const QString &titel,
                                 std::vector<platform::storage::Protokolleintrag> eintraege,
                                 Beschriftung beschriftung, Uebernehmen uebernehmen,
                                 QWidget *parent)
    : QDialog(parent)
    , m_eintraege(std::move(eintraege))
    , m_uebernehmenFn(std::move(uebernehmen))
{
    setObjectName(QStringLiteral("frmVerlauf"));
    setWindowTitle(titel);
    auto *layout = new QVBoxLayout(this);
    auto *hinweis
        = new QLabel(m_eintraege.empty()
                         ? QStringLiteral("Für dieses Konto sind keine Änderungen protokolliert.")
                         : QStringLiteral("Änderungen, die neuesten zuerst (Zeit in Ortszeit):"),
                     this);
    layout->addWidget(hinweis);
    m_tabelle = new QTableWidget(int(m_eintraege.size()), 5, this);
    m_tabelle->setObjectName(QStringLiteral("lstVerlauf"));
    m_tabelle->setHorizontalHeaderLabels({QStringLiteral("Wann"), QStringLiteral("Wer"),
                                          QStringLiteral("Feld"), QStringLiteral("Alter Wert"),
                                          QStringLiteral("Neuer Wert")});
    m_tabelle->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_tabelle->setSelectionMode(QAbstractItemView::SingleSelection);
    m_tabelle->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_tabelle->verticalHeader()->hide();
    for (int z = 0; z < int(m_eintraege.size()); ++z) {
        const auto &e = m_eintraege[size_t(z)];
        const QStringList spalten {ortszeit(e.zeit),
                                   e.wer + QStringLiteral(" (") + e.arbeitsplatz + u')',
                                   beschriftung ? beschriftung(e.feld) : e.feld,
                                   e.alt.value_or(leer), e.neu.value_or(leer)};
        for (int s = 0; s < spalten.size(); ++s)
            m_tabelle->setItem(z, s, new QTableWidgetItem(spalten[s]));
    }
    m_tabelle->resizeColumnsToContents();
    layout->addWidget(m_tabelle);

    auto *knoepfe = new QHBoxLayout;
    m_uebernehmen = new QPushButton(QStringLiteral("Wert &übernehmen"), this);
    m_uebernehmen->setObjectName(QStringLiteral("cmdWertUebernehmen"));
    m_uebernehmen->setToolTip(QStringLiteral(
        "Setzt den alten Wert der gewählten Zeile in sein Feld; gespeichert wird wie bei jeder "
        "Eingabe, nach allen Prüfungen."));
    auto *schliessen = new QPushButton(QStringLiteral("Schließen"), this);
    schliessen->setObjectName(QStringLiteral("cmdSchliessen"));
    knoepfe->addStretch();
    knoepfe->addWidget(m_uebernehmen);
    knoepfe->addWidget(schliessen);
    layout->addLayout(knoepfe);
    connect(schliessen, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_uebernehmen, &QPushButton::clicked, this, &Verlaufsfenster::wertUebernehmen);
    connect(m_tabelle, &QTableWidget::itemSelectionChanged, this,
            &Verlaufsfenster::auswahlGeaendert);
    connect(m_tabelle, &QTableWidget::cellDoubleClicked, this, &Verlaufsfenster::wertUebernehmen);
    resize(760, 420);
    if (!m_eintraege.empty())
        m_tabelle->selectRow(0);
    auswahlGeaendert();
    m_tabelle->setFocus();
}

void Verlaufsfenster::auswahlGeaendert()
{
    const int z = m_tabelle->currentRow();
    // A row that removed the account has nothing a field could take back.
    m_uebernehmen->setEnabled(z >= 0 && z < int(m_eintraege.size())
                              && m_eintraege[size_t(z)].neu.has_value());
}

void Verlaufsfenster::wertUebernehmen()
{
    const int z = m_tabelle->currentRow();
    if (z < 0 || z >= int(m_eintraege.size()) || !m_uebernehmen->isEnabled())
        return;
    const auto &e = m_eintraege[size_t(z)];
    if (m_uebernehmenFn && m_uebernehmenFn(e.feld, e.alt.value_or(QString())))
        accept();
}

QString feldBeschriftungAufForm(QWidget *form, const QString &feld,
                                const std::function<QString(QStringView)> &beschriftung)
{
    QWidget *w = gebundenesFeld(form, feld);
    if (!w)
        return feld;
    const QString text = beschriftung(w->objectName());
    return text == w->objectName() ? feld : text;
}

bool wertEinsetzen(QWidget *form, const QString &feld, const QString &wert)
{
    QWidget *w = gebundenesFeld(form, feld);
    if (!w || !w->isEnabled() || !w->isVisibleTo(form))
        return false;
    w->setFocus(Qt::OtherFocusReason);
    if (auto *e = qobject_cast<QLineEdit *>(w)) {
        if (e->isReadOnly())
            return false;
        e->setText(wert);
        return true;
    }
    if (auto *c = qobject_cast<QCheckBox *>(w)) {
        c->setChecked(wert.toInt() != 0);
        return true;
    }
    if (auto *c = qobject_cast<QComboBox *>(w)) {
        bool ok = false;
        const int i = wert.toInt(&ok);
        if (!ok || i < -1 || i >= c->count())
            return false;
        c->setCurrentIndex(i);
        return true;
    }
    return false;
}

FremdeAenderungLeiste::FremdeAenderungLeiste(QWidget *fenster, std::function<void()> neuLaden)
    : QFrame(fenster)
    , m_fenster(fenster)
{
    setObjectName(QStringLiteral("fraFremdeAenderung"));
    setStyleSheet(QStringLiteral("#fraFremdeAenderung { background: #fff4c2; }"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 2, 6, 2);
    m_text = new QLabel(this);
    m_text->setObjectName(QStringLiteral("lblFremdeAenderung"));
    m_text->setWordWrap(true);
    layout->addWidget(m_text, 1);
    // No focus: the notice never takes the user out of the field he is in.
    m_neuLaden = new QPushButton(QStringLiteral("Neu laden"), this);
    m_neuLaden->setObjectName(QStringLiteral("cmdNeuLaden"));
    m_neuLaden->setFocusPolicy(Qt::NoFocus);
    layout->addWidget(m_neuLaden);
    auto *zu = new QPushButton(QStringLiteral("Ausblenden"), this);
    zu->setObjectName(QStringLiteral("cmdAusblenden"));
    zu->setFocusPolicy(Qt::NoFocus);
    layout->addWidget(zu);
    connect(zu, &QPushButton::clicked, this, &FremdeAenderungLeiste::ausblenden);
    connect(m_neuLaden, &QPushButton::clicked, this, [this, neuLaden = std::move(neuLaden)] {
        ausblenden();
        neuLaden();
    });
    hide();
    m_fenster->installEventFilter(this);
}

void FremdeAenderungLeiste::zeigen(const QString &konto, const QString &wer,
                                   const QStringList &felder, bool geloescht, bool offen)
{
    m_konto = konto;
    QStringList namen = felder;
    namen.removeDuplicates();
    QString text = geloescht ? QStringLiteral("%1 hat dieses Konto soeben gelöscht.").arg(wer)
                             : QStringLiteral("%1 hat dieses Konto soeben geändert: %2.")
                                   .arg(wer, namen.join(QStringLiteral(", ")));
    if (offen)
        text += QStringLiteral(" Ihre Eingaben bleiben; beim Speichern werden Sie gefragt, "
                               "welche Fassung gilt.");
    m_text->setText(text);
    m_neuLaden->setVisible(!offen);
    show();
    // The window grows by what the bar needs now; a longer text may need more than before.
    const int hoehe = sizeHint().height();
    m_fenster->resize(m_fenster->width(), m_fenster->height() + hoehe - m_zuwachs);
    m_zuwachs = hoehe;
    anpassen();
    raise();
}

void FremdeAenderungLeiste::ausblenden()
{
    if (m_zuwachs == 0)
        return;
    hide();
    m_fenster->resize(m_fenster->width(), m_fenster->height() - m_zuwachs);
    m_zuwachs = 0;
}

bool FremdeAenderungLeiste::eventFilter(QObject *obj, QEvent *ev)
{
    if (obj == m_fenster && ev->type() == QEvent::Resize && m_zuwachs > 0)
        anpassen();
    return QFrame::eventFilter(obj, ev);
}

void FremdeAenderungLeiste::anpassen()
{
    setGeometry(0, m_fenster->height() - m_zuwachs, m_fenster->width(), m_zuwachs);
}

} // namespace frame
