#include "mdlFehlerZL.h"

#include "Fehlerbericht.h"
#include "Onlinehilfe.h"
#include "mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/Hilfeaufruf.h"
#include "platform/ui/MsgBox.h"

#include <QApplication>
#include <QFileInfo>
#include <QWidget>

using namespace mdlKontenStamm;
using platform::RuntimeError;

namespace mdlFehlerZL {

namespace {

// The operations of the suite's error dialog.
constexpr const char *DialogWerteSetzen = "Uebergeben";
constexpr const char *DialogZeigen = "Anzeigen";
constexpr const char *DialogErgebnis = "Ergebnis";

constexpr int DruckerFehler = 482;

// The help context handed to the error dialog: that of the control the user was in, else the
// page of the screen that runs; "0" without help.
QString fehlerHilfekontext()
{
    if (!HilfeVorhanden)
        return QString::number(0);
    const QWidget *w = QApplication::focusWidget();
    if (!w)
        w = QApplication::activeModalWidget();
    QString kontext = frame::hilfekontext(w);
    if (kontext.isEmpty())
        kontext = AktuellesProgramm;
    return kontext.isEmpty() ? QString::number(0) : kontext;
}

} // namespace

void FehlerMelden(const RuntimeError &fehler)
{
    const int nummer = fehler.nummer();
    const QString beschreibung = fehler.beschreibung();
    const QString hilfedateiText = HilfeVorhanden ? Hilfedatei : QString();
    const QString hilfekontext = fehlerHilfekontext();
    try {
        auto dialog = platform::CreateObject(QStringLiteral("zelAllgError"));
        platform::aufrufen(dialog.get(), DialogWerteSetzen,
                           {nummer, beschreibung, hilfedateiText, hilfekontext, AktuellesProgramm,
                            FehlerOrt, FehlerZusatz1, FehlerZusatz2, false});
        platform::aufrufen(dialog.get(), DialogZeigen);
        FehlerAntwort = qint16(platform::aufrufen(dialog.get(), DialogErgebnis).toInt());
    } catch (const RuntimeError &e) {
        if (e.nummer() == platform::fehlernummer::ObjektNichtErstellbar) {
            platform::MsgBox(QStringLiteral("das allgem. Fehlermeldungsprogramm zelAllgError "
                                            "konnte nicht aufgerufen werden"));
        } else if (e.nummer() != DruckerFehler) {
            platform::MsgBox(QStringLiteral("Problem beim Aufruf des allg. "
                                            "Fehlermeldungsprogrammes zelAllgError: \r\n\r\n"
                                            "FehlerNr: %1 %2")
                                 .arg(e.nummer())
                                 .arg(e.beschreibung()));
        }
    }
    FehlerOrt.clear();
}

void FehlerMelden(const QString &fehlerOrt, const RuntimeError &fehler)
{
    FehlerOrt = fehlerOrt;
    FehlerMelden(fehler);
}

QString datenbankStrukturText(int fehlernummer)
{
    return QStringLiteral("Fehler-Nr: %1\r\n\r\n"
                          "Die Datenbank-Struktur wurde für die Verarbeitung in diesem Programm "
                          "wurde um 1 oder mehrere Daten-Felder erweitert - die in der "
                          "aufgerufenen Datenbank noch nicht berücksichtigt sind.\r\n\r\n"
                          "BITTE BEENDIGEN SIE AUF JEDEN FALL DIESE VERARBEITUNG !!! \r\n\r\n"
                          "und führen Sie anschließend in:\r\n"
                          "\"Hilfsprogramme\",\"Diverse DatenbankHilfsfunktionen\" \r\n"
                          "die Auswahl: \"alle neuen Felder abrufen\" durch.\r\n\r\n"
                          "Anschließend können Sie diese Verarbeitung problemlos starten.")
        .arg(fehlernummer);
}

void DatenbankStrukturMelden(int fehlernummer)
{
    platform::MsgBox(datenbankStrukturText(fehlernummer), platform::vbOKOnly,
                     QStringLiteral("unkomplette Datenbanktabelle:"));
}

void HilfeAufrufChk()
{
    platform::Falle(QStringLiteral("zelKontenStamm, in mdlFehlerZL, HilfeAufrufChk"), [] {
        HilfeVorhanden = true;
        const QVariant slot7 = AufrufInfo.size() > slot::Hilfedatei ? AufrufInfo.at(slot::Hilfedatei)
                                                                    : QVariant();
        Hilfedatei = slot7.toString();
        if (Hilfedatei.isEmpty()) {
            platform::MsgBox(QStringLiteral("Die Definition für den App.Helpfile = leer\r\n"
                                            "Es kann keine Onlinehilfe angezeigt werden !"));
            HilfeVorhanden = false;
            return;
        }
        if (!QFileInfo(Hilfedatei).isFile()) {
            platform::MsgBox(QStringLiteral("Die Hilfedatei (App.HelpFile) %1 ist nicht "
                                            "auffindbar.\r\nEs kann keine Onlinehilfe angezeigt "
                                            "werden !")
                                 .arg(Hilfedatei));
            HilfeVorhanden = false;
        }
    });
}

QString hilfedatei()
{
    return Hilfedatei;
}

void alsFehlerberichtEinrichten()
{
    auto melder = [](const QString &ort, const RuntimeError &fehler) {
        FehlerMelden(ort, fehler);
    };
    platform::setFehlerReporter(melder);
    frame::setFehlerMelder(melder);
    // The error dialog's help button shows the help in the product's own window.
    platform::setHilfeOeffner(frame::hilfeOeffnen);
}

} // namespace mdlFehlerZL
