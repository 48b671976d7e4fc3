// The history of the account shown, from the change log; an old value goes back into its field
// as an edit of the user.
#include "accounts/frmKontenStamm.h"
#include "accounts/regeln/Feldbeschriftungen.h"
#include "frame/Verlaufsfenster.h"
#include "frame/mdlKontenStamm.h"
#include "platform/storage/Aenderungsmelder.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/Fehlerfalle.h"
#include "ui_frmKontenStamm.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace mks = mdlKontenStamm;
using platform::storage::Aenderungsprotokoll;

void frmKontenStamm::kontoVerlaufZeigen()
{
    platform::Falle(QStringLiteral("zelKontenStamm, in kontoVerlaufZeigen"), [this] {
        if (!aktuelleZeile())
            return;
        const QString nr = aktuelleNr();
        const auto eintraege = Aenderungsprotokoll::lesen(
            *m_ui->KKData->recordsetDirekt()->database(), QStringLiteral("ObjKanzleiKontenstamm"),
            int(mks::Buchungsjahr), nr);
        auto beschriftung = [this](const QString &feld) {
            return frame::feldBeschriftungAufForm(this, feld, kontenregeln::feldBeschriftung);
        };
        frame::Verlaufsfenster::Uebernehmen uebernehmen;
        if (!mks::NurAnzeige) {
            uebernehmen = [this](const QString &feld, const QString &wert) {
                // The field may lie on another register page.
                for (int seite = m_seite, n = 0; n < 7; ++n, seite = seite % 7 + 1) {
                    seiteZeigen(seite);
                    if (frame::wertEinsetzen(this, feld, wert))
                        return true;
                }
                return false;
            };
        }
        frame::Verlaufsfenster fenster(
            QStringLiteral("Änderungen am Konto %1 (%2)").arg(nr).arg(mks::Buchungsjahr), eintraege,
            beschriftung, uebernehmen, this);
        fenster.uebernehmenKnopf()->setVisible(bool(uebernehmen));
        fenster.exec();
    });
}

void frmKontenStamm::fremdeAenderungBeobachten()
{
    platform::Falle(QStringLiteral("zelKontenStamm, in fremdeAenderungBeobachten"), [this] {
        const auto *rs = m_ui->KKData->recordsetDirekt();
        if (!rs)
            return;
        auto *melder = new platform::storage::Aenderungsmelder(rs->database(), this);
        connect(melder, &platform::storage::Aenderungsmelder::geaendert, this,
                [this](const QString &tabelle, int jahr, const QString &konto, const QString &wer,
                       const QStringList &felder, bool geloescht) {
                    if (tabelle == QLatin1String("ObjKanzleiKontenstamm")
                        && jahr == mks::Buchungsjahr && aktuelleZeile() && konto == aktuelleNr())
                        fremdeAenderungZeigen(wer, felder, geloescht);
                });
    });
}

// A bar at the foot of the window, made on the first notice: it does not cover the fields and
// asks nothing, the user goes on working.
void frmKontenStamm::fremdeAenderungZeigen(const QString &wer, const QStringList &felder,
                                           bool geloescht)
{
    auto *leiste = findChild<QFrame *>(QStringLiteral("fraFremdeAenderung"));
    if (!leiste) {
        leiste = new QFrame(this);
        leiste->setObjectName(QStringLiteral("fraFremdeAenderung"));
        leiste->setStyleSheet(QStringLiteral("#fraFremdeAenderung { background: #fff4c2; }"));
        auto *layout = new QHBoxLayout(leiste);
        layout->setContentsMargins(6, 2, 6, 2);
        auto *text = new QLabel(leiste);
        text->setObjectName(QStringLiteral("lblFremdeAenderung"));
        text->setWordWrap(true);
        layout->addWidget(text, 1);
        auto *laden = new QPushButton(QStringLiteral("Neu laden"), leiste);
        laden->setObjectName(QStringLiteral("cmdNeuLaden"));
        laden->setFocusPolicy(Qt::NoFocus);
        layout->addWidget(laden);
        auto *zu = new QPushButton(QStringLiteral("Ausblenden"), leiste);
        zu->setFocusPolicy(Qt::NoFocus);
        layout->addWidget(zu);
        connect(zu, &QPushButton::clicked, leiste, &QWidget::hide);
        connect(laden, &QPushButton::clicked, this, [this, leiste] {
            leiste->hide();
            const QString nr = aktuelleNr();
            auto &rs = m_ui->KKData->rs();
            if (rs.Requery() && !nr.isEmpty())
                rs.FindFirst({{QStringLiteral("KontoNr"), nr}});
        });
    }
    QStringList namen;
    for (const QString &f : felder)
        namen << frame::feldBeschriftungAufForm(this, f, kontenregeln::feldBeschriftung);
    namen.removeDuplicates();
    const bool offen = m_ui->KKData->bearbeitet();
    QString text = geloescht ? QStringLiteral("%1 hat dieses Konto soeben gelöscht.").arg(wer)
                             : QStringLiteral("%1 hat dieses Konto soeben geändert: %2.")
                                   .arg(wer, namen.join(QStringLiteral(", ")));
    if (offen)
        text += QStringLiteral(" Ihre Eingaben bleiben; beim Speichern werden Sie gefragt, "
                               "welche Fassung gilt.");
    leiste->findChild<QLabel *>(QStringLiteral("lblFremdeAenderung"))->setText(text);
    leiste->findChild<QPushButton *>(QStringLiteral("cmdNeuLaden"))->setVisible(!offen);
    const int hoehe = leiste->sizeHint().height();
    leiste->setGeometry(0, height() - hoehe, width(), hoehe);
    leiste->show();
    leiste->raise();
}
