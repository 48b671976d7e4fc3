#include "zelAllgError.h"

#include "platform/core/CreateObject.h"
#include "platform/ui/Hilfeaufruf.h"
#include "platform/ui/MsgBox.h"
#include "siblings/zelAbrPosStamm.h"
#include "siblings/zelDiverseListen.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace siblings {

namespace {

QLabel *wertLabel(const QString &text, const char *name)
{
    auto *l = new QLabel(text);
    l->setObjectName(QLatin1String(name));
    l->setTextFormat(Qt::PlainText);
    l->setWordWrap(true);
    l->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return l;
}

} // namespace

AllgErrorDialog::AllgErrorDialog(const AllgFehler &fehler, QWidget *parent)
    : QDialog(parent)
    , m_fehler(fehler)
{
    setObjectName(QStringLiteral("frmAllgError"));
    setWindowTitle(QStringLiteral("Fehlermeldung - ") + platform::anwendungsTitel());
    setModal(true);

    auto *kopf = new QHBoxLayout;
    auto *icon = new QLabel;
    const int groesse = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical).pixmap(groesse));
    kopf->addWidget(icon, 0, Qt::AlignTop);
    auto *ueberschrift = new QLabel(QStringLiteral("Bei der Verarbeitung ist ein Fehler "
                                                   "aufgetreten."));
    ueberschrift->setWordWrap(true);
    kopf->addWidget(ueberschrift, 1);

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Fehler-Nr:"),
                 wertLabel(QString::number(fehler.nummer), "lblFehlerNr"));
    form->addRow(QStringLiteral("Beschreibung:"),
                 wertLabel(fehler.beschreibung, "lblBeschreibung"));
    form->addRow(QStringLiteral("Programm:"), wertLabel(fehler.programm, "lblProgramm"));
    form->addRow(QStringLiteral("Fehlerort:"), wertLabel(fehler.fehlerOrt, "lblFehlerOrt"));
    if (!fehler.zusatz1.isEmpty())
        form->addRow(QStringLiteral("Zusatz 1:"), wertLabel(fehler.zusatz1, "lblZusatz1"));
    if (!fehler.zusatz2.isEmpty())
        form->addRow(QStringLiteral("Zusatz 2:"), wertLabel(fehler.zusatz2, "lblZusatz2"));
    if (!fehler.hilfedatei.isEmpty()) {
        form->addRow(QStringLiteral("Hilfedatei:"), wertLabel(fehler.hilfedatei, "lblHilfedatei"));
        form->addRow(QStringLiteral("Hilfe-Kontext:"),
                     wertLabel(fehler.hilfekontext, "lblHilfekontext"));
    }

    auto *knoepfe = new QDialogButtonBox;
    QPushButton *ok = knoepfe->addButton(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    QPushButton *kopieren
        = knoepfe->addButton(QStringLiteral("Kopieren"), QDialogButtonBox::ActionRole);
    kopieren->setObjectName(QStringLiteral("cmdKopieren"));
    connect(kopieren, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(berichtText()); });
    if (!fehler.hilfedatei.isEmpty()) {
        QPushButton *hilfe
            = knoepfe->addButton(QStringLiteral("Hilfe"), QDialogButtonBox::HelpRole);
        hilfe->setObjectName(QStringLiteral("cmdHilfe"));
        connect(hilfe, &QPushButton::clicked, this, &AllgErrorDialog::hilfeZeigen);
    }
    connect(knoepfe, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(kopf);
    layout->addLayout(form);
    layout->addWidget(knoepfe);
    setMinimumWidth(420);
}

QString AllgErrorDialog::berichtText() const
{
    QStringList zeilen {QStringLiteral("Fehler-Nr: %1").arg(m_fehler.nummer),
                        QStringLiteral("Beschreibung: ") + m_fehler.beschreibung,
                        QStringLiteral("Programm: ") + m_fehler.programm,
                        QStringLiteral("Fehlerort: ") + m_fehler.fehlerOrt};
    if (!m_fehler.zusatz1.isEmpty())
        zeilen << QStringLiteral("Zusatz 1: ") + m_fehler.zusatz1;
    if (!m_fehler.zusatz2.isEmpty())
        zeilen << QStringLiteral("Zusatz 2: ") + m_fehler.zusatz2;
    if (!m_fehler.hilfedatei.isEmpty())
        zeilen << QStringLiteral("Hilfedatei: %1 (%2)")
                      .arg(m_fehler.hilfedatei, m_fehler.hilfekontext);
    return zeilen.join(u'\n');
}

void AllgErrorDialog::hilfeZeigen()
{
    platform::hilfeOeffnen(m_fehler.hilfedatei, m_fehler.hilfekontext);
}

zelAllgError::zelAllgError(QObject *parent)
    : QObject(parent)
{ }

void zelAllgError::Uebergeben(int fehlerNr, const QString &beschreibung, const QString &hilfedatei,
                              const QString &hilfekontext, const QString &programm,
                              const QString &fehlerOrt, const QString &zusatz1,
                              const QString &zusatz2, bool flag)
{
    m_fehler = {fehlerNr,  beschreibung, hilfedatei, hilfekontext, programm,
                fehlerOrt, zusatz1,      zusatz2,    flag};
}

void zelAllgError::Anzeigen()
{
    AllgErrorDialog dialog(m_fehler, QApplication::activeWindow());
    dialog.exec();
    m_ergebnis = platform::vbOK;
}

qint16 zelAllgError::Melden(int fehlerNr, const QString &beschreibung, const QString &hilfedatei,
                            const QString &hilfekontext, const QString &programm,
                            const QString &fehlerOrt, const QString &zusatz1,
                            const QString &zusatz2, bool flag)
{
    Uebergeben(fehlerNr, beschreibung, hilfedatei, hilfekontext, programm, fehlerOrt, zusatz1,
               zusatz2, flag);
    Anzeigen();
    return m_ergebnis;
}

} // namespace siblings

void siblingsRegistrieren()
{
    platform::registriereKomponente(QStringLiteral("zelAllgError"),
                                    [] { return std::make_unique<siblings::zelAllgError>(); });
    platform::registriereKomponente(QStringLiteral("zelDiverseListen"),
                                    [] { return std::make_unique<siblings::zelDiverseListen>(); });
    platform::registriereKomponente(QStringLiteral("zelAbrPosStamm"),
                                    [] { return std::make_unique<siblings::zelAbrPosStamm>(); });
}
