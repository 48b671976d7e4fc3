#include "accounts/frmPruefliste.h"

#include "accounts/Kontentexte.h"
#include "accounts/regeln/Feldbeschriftungen.h"
#include "frame/Onlinehilfe.h"
#include "screens/Bildschirmstil.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

// Enter on a line chooses it (the tree would only expand it).
class EnterWaehlt : public QObject
{
public:
    EnterWaehlt(frmPruefliste *liste)
        : QObject(liste)
        , m_liste(liste)
    { }

protected:
    bool eventFilter(QObject *obj, QEvent *ev) override
    {
        if (ev->type() == QEvent::KeyPress) {
            const int taste = static_cast<QKeyEvent *>(ev)->key();
            if (taste == Qt::Key_Return || taste == Qt::Key_Enter) {
                m_liste->waehlen();
                return true;
            }
        }
        return QObject::eventFilter(obj, ev);
    }

private:
    frmPruefliste *m_liste;
};

} // namespace

frmPruefliste::frmPruefliste(std::vector<kontenregeln::Kontobefund> befunde, int jahr,
                             QWidget *parent)
    : QDialog(parent)
    , m_befunde(std::move(befunde))
{
    setWindowTitle(QStringLiteral("Prüfliste Buchungsjahr %1").arg(jahr));
    auto *layout = new QVBoxLayout(this);
    QSet<QString> konten;
    for (const auto &b : m_befunde)
        konten.insert(b.kontoNr);
    auto *kopf = new QLabel(
        m_befunde.empty()
            ? QStringLiteral("Alle Konten des Buchungsjahres %1 sind richtig definiert.").arg(jahr)
            : QStringLiteral("%1 mit %2. Eingabetaste oder Doppelklick zeigt das Konto auf "
                             "seiner Registerseite.")
                  .arg(kontenregeln::anzahl(konten.size(), QStringLiteral("Konto"),
                                            QStringLiteral("Konten")),
                       kontenregeln::anzahl(qint64(m_befunde.size()),
                                            QStringLiteral("fehlerhaften Definition"),
                                            QStringLiteral("fehlerhaften Definitionen"))),
        this);
    kopf->setWordWrap(true);
    layout->addWidget(kopf);

    m_liste = new QTreeWidget(this);
    m_liste->setObjectName(QStringLiteral("lstBefunde"));
    m_liste->setRootIsDecorated(false);
    m_liste->setUniformRowHeights(true);
    m_liste->setHeaderLabels({QStringLiteral("Konto"), QStringLiteral("Registerseite"),
                              QStringLiteral("Feld"), QStringLiteral("Meldung")});
    for (const auto &b : m_befunde) {
        QString meldung = b.meldung;
        meldung.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
        auto *zeile = new QTreeWidgetItem({b.kontoNr, kontentexte::Registerseiten[b.seite - 1],
                                           kontenregeln::feldBeschriftung(b.feld), meldung});
        zeile->setToolTip(3, b.meldung);
        m_liste->addTopLevelItem(zeile);
    }
    m_liste->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_liste->header()->setStretchLastSection(true);
    if (m_liste->topLevelItemCount() > 0)
        m_liste->setCurrentItem(m_liste->topLevelItem(0));
    m_liste->installEventFilter(new EnterWaehlt(this));
    connect(m_liste, &QTreeWidget::itemDoubleClicked, this, [this] { waehlen(); });
    layout->addWidget(m_liste);

    auto *knoepfe = new QDialogButtonBox(QDialogButtonBox::Close, this);
    knoepfe->button(QDialogButtonBox::Close)->setText(QStringLiteral("Schließen"));
    connect(knoepfe, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(knoepfe);
    resize(820, 420);
    screens::bildschirmEinrichten(this);
    hilfeEinrichten();
}

void frmPruefliste::hilfeEinrichten()
{
    // F1 on a line explains the field that line names.
    setObjectName(QStringLiteral("frmPruefliste"));
    const auto feldDerZeile = [this] {
        const int zeile = m_liste->indexOfTopLevelItem(m_liste->currentItem());
        m_liste->setProperty("HelpContextID", zeile < 0 ? QString() : befund(zeile).feld);
    };
    connect(m_liste, &QTreeWidget::currentItemChanged, this, feldDerZeile);
    feldDerZeile();
    new frame::F1Hilfe(this);
}

void frmPruefliste::waehlen()
{
    const int zeile = m_liste->indexOfTopLevelItem(m_liste->currentItem());
    if (zeile < 0)
        return;
    m_gewaehlt = zeile;
    accept();
}
