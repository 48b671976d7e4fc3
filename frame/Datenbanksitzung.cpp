#include "Datenbanksitzung.h"

#include "mdlKontenStamm.h"

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

} // namespace frame
