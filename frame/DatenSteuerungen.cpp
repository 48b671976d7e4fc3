#include "frame/DatenSteuerungen.h"

#include "frame/Datenbanksitzung.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"
#include "platform/storage/Recordset.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"

#include "frame/Skalierung.h"

#include <QGuiApplication>
#include <QMetaClassInfo>
#include <QScreen>
#include <QWidget>

namespace frame {

std::shared_ptr<platform::storage::Database> sitzungOeffnen(const QStringList &lesen,
                                                            const QString &schreiben)
{
    namespace mks = mdlKontenStamm;
    mks::SchreibrechtFehlt = false;
    Zugangspruefung z;
    std::shared_ptr<platform::storage::Database> db;
    try {
        db = platform::storage::Database::open(mks::DatenbankPfad);
        z = zugangPruefen(*db, lesen, schreiben);
    } catch (const platform::RuntimeError &e) {
        platform::MsgBox(e.beschreibung(), platform::vbOKOnly | platform::vbCritical,
                         QStringLiteral("Keine Verbindung zur Datenbank"));
        return nullptr;
    }
    if (z.zugang == Zugang::Keiner) {
        platform::MsgBox(z.meldung, platform::vbOKOnly | platform::vbCritical,
                         QStringLiteral("Keine Berechtigung"));
        return nullptr;
    }
    if (z.zugang == Zugang::NurLesen) {
        mks::NurAnzeige = true;
        mks::SchreibrechtFehlt = true;
    }
    return db;
}

void schreibrechtImTitel(QWidget *bildschirm)
{
    QString titel = bildschirm->windowTitle();
    if (titel.endsWith(NurLesenTitel))
        titel.chop(NurLesenTitel.size());
    if (mdlKontenStamm::SchreibrechtFehlt)
        titel += NurLesenTitel;
    bildschirm->setWindowTitle(titel);
}

QString titelMitStand(const QString &caption, const platform::DataControl *daten, bool aufZeile)
{
    // A caption ending in a blank keeps it when nothing follows.
    QString titel = caption;
    while (titel.endsWith(u' '))
        titel.chop(1);
    const auto *rs = daten->recordsetDirekt();
    if (rs && rs->RecordCount() > 0 && aufZeile) {
        titel += QStringLiteral(" – Konto %1 von %2")
                     .arg(rs->AbsolutePosition() + 1)
                     .arg(rs->RecordCount());
    }
    if (mdlKontenStamm::NurAnzeige && mdlKontenStamm::SchreibrechtFehlt)
        titel += NurLesenTitel;
    else if (mdlKontenStamm::NurAnzeige)
        titel += QStringLiteral(" – nur Anzeige");
    else if (daten->bearbeitet())
        titel += QStringLiteral(" *");
    return titel.size() == caption.trimmed().size() ? caption : titel;
}

QString typName(const QWidget *steuerelement)
{
    const QMetaObject *mo = steuerelement->metaObject();
    const int i = mo->indexOfClassInfo("TypeName");
    if (i >= 0)
        return QString::fromLatin1(mo->classInfo(i).value());
    const QString name = QString::fromLatin1(mo->className());
    return name.mid(name.lastIndexOf(QLatin1Char(':')) + 1);
}

void DBPasswortSetzen(const QString &pfad)
{
    if (platform::storage::Database::istPostgresUri(pfad))
        return;
    try {
        platform::storage::Database::verschluesseln(pfad, platform::storage::DBPasswort);
    } catch (const platform::RuntimeError &e) {
        platform::MsgBox(passwortFehlerText(e.nummer(), e.beschreibung()), platform::vbOKOnly,
                         passwortFehlerTitel);
    }
}

void DatenSteuerungenVerbinden(QWidget *formular, bool passwortSetzen)
{
    using namespace mdlKontenStamm;
    // Late-bound property access that passes over a refusal, as the original resumed with the
    // next statement.
    const auto still = [](auto &&schritt) {
        try {
            schritt();
        } catch (const platform::RuntimeError &) { }
    };

    for (QWidget *w : formular->findChildren<QWidget *>()) {
        if (typName(w) != QLatin1String("Data"))
            continue;
        if (passwortSetzen) {
            still([&] { DBPasswortSetzen(platform::eigenschaft(w, "DatabaseName").toString()); });
        }
        still([&] {
            platform::eigenschaftSetzen(
                w, "Connect", verbindungsPraefix(AufrufInfo, VerbindungsArt, AktuellesProgramm));
        });
        still([&] {
            const QString vorhanden = platform::eigenschaft(w, "Connect").toString();
            platform::eigenschaftSetzen(w, "Connect",
                                        vorhanden + QLatin1String("pwd=")
                                            + platform::storage::DBPasswort + QLatin1Char(';'));
        });
        still([&] {
            const QVariant name = platform::eigenschaft(w, "DatabaseName");
            platform::eigenschaftSetzen(w, "DatabaseName", name);
        });
    }
}

QString Bildschirmaufloesung()
{
    const QScreen *schirm = QGuiApplication::primaryScreen();
    const QSize groesse = schirm ? schirm->size() : QSize();
    mdlKontenStamm::BildschirmBreite = qint16(groesse.width());
    mdlKontenStamm::BildschirmHoehe = qint16(groesse.height());
    return Bildschirmaufloesung(mdlKontenStamm::BildschirmBreite,
                                mdlKontenStamm::BildschirmHoehe);
}

} // namespace frame
