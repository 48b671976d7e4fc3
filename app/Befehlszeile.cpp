#include "Befehlszeile.h"

#include "frame/mdlKontenStamm.h"

namespace {

std::optional<int> jahrLesen(const QString &text)
{
    bool ok = false;
    const int jahr = text.toInt(&ok);
    if (!ok || jahr < 1900 || jahr > 2999)
        return std::nullopt;
    return jahr;
}

} // namespace

QString befehlszeilenHilfe()
{
    return QStringLiteral(
        "Aufruf: kontenstamm [Optionen]\n"
        "\n"
        "Öffnet den Sachkonten-Kontenstamm eines Buchungsjahres.\n"
        "\n"
        "  --datenbank ORT          Datenbankdatei oder postgresql://-Adresse\n"
        "                           (ohne Angabe: die Demo-Datenbank im Benutzerverzeichnis)\n"
        "  --jahr JJJJ              Buchungsjahr (ohne Angabe: das letzte der Datenbank)\n"
        "  --verarbeitungsjahr JJJJ Verarbeitungs-Buchungsjahr (ohne Angabe: das Buchungsjahr)\n"
        "  --nur-anzeige            nur anzeigen, nichts ändern\n"
        "  --hilfedatei DATEI       Hilfedatei (HTML)\n"
        "  --kreditoren             den Kreditoren-Kontenstamm öffnen\n"
        "  --init ORT               eine neue, leere Buchhaltungsdatenbank anlegen\n"
        "  --demo ORT               eine neue Demo-Datenbank anlegen\n"
        "  --help                   diese Hilfe\n");
}

std::optional<Aufruf> befehlszeileLesen(const QStringList &argumente, QString &fehler)
{
    Aufruf aufruf;
    for (int i = 0; i < argumente.size(); ++i) {
        const QString &arg = argumente.at(i);
        auto wert = [&](QString &ziel) {
            if (i + 1 >= argumente.size() || argumente.at(i + 1).startsWith(QLatin1String("--"))) {
                fehler = QStringLiteral("Die Option %1 braucht einen Wert.").arg(arg);
                return false;
            }
            ziel = argumente.at(++i);
            return true;
        };
        QString text;
        if (arg == QLatin1String("--help") || arg == QLatin1String("-h")) {
            aufruf.art = Aufruf::Art::Hilfe;
            return aufruf;
        } else if (arg == QLatin1String("--datenbank")) {
            if (!wert(aufruf.datenbank))
                return std::nullopt;
        } else if (arg == QLatin1String("--jahr") || arg == QLatin1String("--verarbeitungsjahr")) {
            if (!wert(text))
                return std::nullopt;
            const auto jahr = jahrLesen(text);
            if (!jahr) {
                fehler = QStringLiteral("Ungültiges Jahr bei %1: \"%2\" (erwartet: JJJJ).")
                             .arg(arg, text);
                return std::nullopt;
            }
            (arg == QLatin1String("--jahr") ? aufruf.jahr : aufruf.verarbeitungsjahr) = jahr;
        } else if (arg == QLatin1String("--nur-anzeige")) {
            aufruf.nurAnzeige = true;
        } else if (arg == QLatin1String("--hilfedatei")) {
            if (!wert(aufruf.hilfedatei))
                return std::nullopt;
        } else if (arg == QLatin1String("--kreditoren")) {
            aufruf.art = Aufruf::Art::Kreditoren;
        } else if (arg == QLatin1String("--init") || arg == QLatin1String("--demo")) {
            aufruf.art = arg == QLatin1String("--init") ? Aufruf::Art::Init : Aufruf::Art::Demo;
            if (!wert(aufruf.datenbank))
                return std::nullopt;
        } else {
            fehler = QStringLiteral("Unbekannte Option: \"%1\". Mit --help werden die Optionen "
                                    "angezeigt.")
                         .arg(arg);
            return std::nullopt;
        }
    }
    return aufruf;
}

QVariantList aufrufInfo(const Aufruf &aufruf, int jahr)
{
    namespace slot = mdlKontenStamm::slot;
    QVariantList info(mdlKontenStamm::AufrufInfoGroesse);
    info[slot::Datenbank] = aufruf.datenbank;
    info[slot::Zahl2] = 0;
    info[slot::VerbindungsArt] = QStringLiteral("Access 2000;");
    info[slot::Hilfedatei] = aufruf.hilfedatei;
    if (aufruf.art == Aufruf::Art::Kreditoren)
        info[slot::Aufrufart]
            = aufruf.nurAnzeige ? mdlKontenStamm::AufrufartKreditorenNurAnzeige : 0;
    else
        info[slot::Aufrufart] = aufruf.nurAnzeige ? mdlKontenStamm::AufrufartNurAnzeige : 0;
    info[slot::Buchungsjahr] = jahr;
    info[slot::VerarbeitungsBuchungsjahr] = aufruf.verarbeitungsjahr.value_or(jahr);
    info[slot::HostVariante] = 0;
    return info;
}
