#include "Datenbanksitzung.h"

#include "mdlKontenStamm.h"
#include "platform/storage/Database.h"

namespace frame {

namespace {
const QString Access2000 = QStringLiteral("Access 2000;");
const QString Access = QStringLiteral("Access;");
} // namespace

QString normalisierteVerbindungsArt(const QVariant &wert)
{
    if (wert.typeId() == QMetaType::QString && wert.toString() == Access2000)
        return Access2000;
    return Access;
}

QString verbindungsPraefix(QVariantList &aufrufInfo, QString &verbindungsArt,
                           const QString &aktuellesProgramm)
{
    QString connect;
    if (aktuellesProgramm != QLatin1String("ZELDokImport")) {
        const int slot = mdlKontenStamm::slot::VerbindungsArt;
        if (aufrufInfo.size() <= slot)
            aufrufInfo.resize(mdlKontenStamm::AufrufInfoGroesse);
        aufrufInfo[slot] = normalisierteVerbindungsArt(aufrufInfo.at(slot));
        connect = aufrufInfo.at(slot).toString();
    } else {
        verbindungsArt = normalisierteVerbindungsArt(verbindungsArt);
        connect = verbindungsArt;
    }
    return connect;
}

QString datenSteuerungConnect(QVariantList &aufrufInfo, QString &verbindungsArt,
                              const QString &aktuellesProgramm, const QString &passwort)
{
    return verbindungsPraefix(aufrufInfo, verbindungsArt, aktuellesProgramm)
        + QStringLiteral("pwd=") + passwort + QLatin1Char(';');
}

QString passwortFehlerText(int nummer, const QString &beschreibung)
{
    return QStringLiteral("The following error has occured.\r\n\r\n"
                          "Error Number: %1\r\n"
                          "Error Source: Set_DBPassword\r\n"
                          "Error Description: %2")
        .arg(nummer)
        .arg(beschreibung);
}

Zugangspruefung zugangPruefen(platform::storage::Database &db, const QStringList &lesen,
                              const QString &schreiben)
{
    QStringList ohneLesen;
    for (const QString &t : lesen) {
        const auto r = db.rechte(t);
        if (r && !r->lesen)
            ohneLesen << t;
    }
    Zugangspruefung z;
    if (!ohneLesen.isEmpty()) {
        z.zugang = Zugang::Keiner;
        const QString tabellen = ohneLesen.size() == 1
            ? QStringLiteral("die Tabelle ") + ohneLesen.front()
            : QStringLiteral("die Tabellen ") + ohneLesen.mid(0, ohneLesen.size() - 1).join(u", ")
                + QStringLiteral(" und ") + ohneLesen.back();
        z.meldung = QStringLiteral("Der Datenbankbenutzer \u201E%1\u201C darf %2 nicht lesen: "
                                   "es fehlt das Recht SELECT. So kann der Kontenstamm nicht "
                                   "geöffnet werden; bitte lassen Sie sich von der "
                                   "Datenbankverwaltung das Leserecht erteilen.")
                        .arg(db.benutzer(), tabellen);
        return z;
    }
    const auto r = db.rechte(schreiben);
    if (r && !r->aendern)
        z.zugang = Zugang::NurLesen;
    return z;
}

} // namespace frame
