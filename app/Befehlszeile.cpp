#include "Befehlszeile.h"

#include "frame/mdlKontenStamm.h"

#include <QDate>
#include <QHash>
#include <algorithm>

namespace {

// Exactly four digits: "+2026", " 2026" and "02026" are no year a user means.
std::optional<int> jahrLesen(const QString &text)
{
    if (text.size() != 4
        || !std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return std::nullopt;
    const int jahr = text.toInt();
    if (jahr < 1900 || jahr > 2999)
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
        "  --help                   diese Hilfe\n"
        "\n"
        "Jahreswerkzeuge (ohne Bildschirm, mit --datenbank wie oben):\n"
        "  kontenstamm jahreswechsel VON NACH [--vorschau]\n"
        "      übernimmt alle Konten des Buchungsjahres VON, die im Jahr NACH fehlen, mit allen\n"
        "      Definitionen und nennt die Konten beider Jahre mit abweichenden Definitionen;\n"
        "      --vorschau zeigt nur, was geschehen würde\n"
        "  kontenstamm pruefen JAHR\n"
        "      prüft die Definitionen aller Konten des Jahres (Rückgabewert 1 bei Fehlern)\n"
        "  kontenstamm export JAHR DATEI.csv\n"
        "      schreibt die Konten des Jahres als CSV (UTF-8 mit Byte-Order-Mark, wie Excel es\n"
        "      erkennt; Strichpunkt, Kopfzeile)\n"
        "  kontenstamm import JAHR DATEI.csv [--probelauf]\n"
        "      prüft jede Zeile und fügt die Konten in das Jahr ein, nur wenn keine fehlerhaft\n"
        "      ist; --probelauf prüft nur. Liest UTF-8 und Windows-1252 (\"CSV (Trennzeichen-\n"
        "      getrennt)\" aus Excel)\n"
        "\n"
        "Änderungsprotokoll (mit --datenbank wie oben):\n"
        "  kontenstamm protokoll pruefen [--bis HASH]\n"
        "      prüft die Hash-Kette des Änderungsprotokolls und nennt den ersten Eintrag, der\n"
        "      nicht passt, sowie den letzten Hash (zum Notieren beim Jahresabschluss); --bis\n"
        "      prüft, ob ein notierter Hash noch Teil der intakten Kette ist\n"
        "  kontenstamm protokoll JAHR [--konto NR] [--seit DATUM] [--csv]\n"
        "      listet die Änderungen an den Konten des Jahres, die neuesten zuerst; --csv\n"
        "      schreibt sie als CSV (Strichpunkt, Kopfzeile)\n"
        "\n"
        "Für die Verwaltung:\n"
        "  kontenstamm sql ORT [ANWEISUNG]\n"
        "      führt SQL-Abfragen auf der Datenbank ORT aus, ohne etwas zu ändern; ohne\n"
        "      ANWEISUNG werden sie von der Standardeingabe gelesen, je eine bis zum \";\"\n"
        "\n"
        "Rückgabewert der Jahreswerkzeuge: 0 alles in Ordnung, 1 fehlerhafte Konten oder Zeilen\n"
        "oder ein Buchungsjahr ohne Konten, 2 die Arbeit konnte nicht getan werden.\n"
        "\n"
        "PostgreSQL-Adressen und Kennwörter:\n"
        "  postgresql://benutzer@server:5432/kanzlei\n"
        "  postgresql://benutzer@server/kanzlei?sslmode=verify-full&sslrootcert=/pfad/ca.crt\n"
        "  postgresql:///?service=kanzlei   (Dienst aus ~/.pg_service.conf oder PGSERVICEFILE)\n"
        "  Das Kennwort gehört nicht in die Adresse: andere Benutzer des Rechners sehen die\n"
        "  Befehlszeile. Es wird der Reihe nach genommen aus der Umgebungsvariablen PGPASSWORD,\n"
        "  der Kennwortdatei ~/.pgpass (oder PGPASSFILE; Zeilen server:port:datenbank:benutzer:\n"
        "  kennwort, Rechte 0600) oder dem Dienst; fehlt es, fragt der Bildschirm danach.\n"
        "  Ein Kennwort in einer Adresse auf der Befehlszeile wird beim Start aus der\n"
        "  Prozessliste gelöscht (mit einer Warnung).\n");
}

namespace {

// The positional arguments of a year tool: the year(s), then the file where one is needed.
bool werkzeugLesen(Aufruf &aufruf, const QStringList &positionen, QString &fehler)
{
    const QString befehl = positionen.front();
    if (aufruf.art == Aufruf::Art::Protokoll) {
        if (positionen.size() != 2) {
            fehler = QStringLiteral("\"protokoll\" erwartet \"pruefen\" oder ein Buchungsjahr; "
                                    "mit --help werden die Aufrufe angezeigt.");
            return false;
        }
        aufruf.protokollPruefen = positionen.at(1) == QLatin1String("pruefen");
        if (!aufruf.protokollPruefen) {
            aufruf.jahr = jahrLesen(positionen.at(1));
            if (!aufruf.jahr) {
                fehler = QStringLiteral("Ungültiges Buchungsjahr: \"%1\" (erwartet: JJJJ).")
                             .arg(positionen.at(1));
                return false;
            }
        }
        if (!aufruf.protokollPruefen && !aufruf.bisHash.isEmpty()) {
            fehler = QStringLiteral("Die Option --bis gehört zu \"protokoll pruefen\".");
            return false;
        }
        if (aufruf.protokollPruefen
            && (aufruf.csv || !aufruf.konto.isEmpty() || !aufruf.seit.isEmpty())) {
            fehler = QStringLiteral("Die Optionen --konto, --seit und --csv gehören zu "
                                    "\"protokoll JAHR\".");
            return false;
        }
        return true;
    }
    if (aufruf.art == Aufruf::Art::Sql) {
        if (positionen.size() < 2 || positionen.size() > 3) {
            fehler = QStringLiteral("\"sql\" erwartet den Ort der Datenbank und höchstens eine "
                                    "Anweisung; mit --help werden die Aufrufe angezeigt.");
            return false;
        }
        aufruf.datenbank = positionen.at(1);
        aufruf.anweisung = positionen.value(2);
        return true;
    }
    const int erwartet = aufruf.art == Aufruf::Art::Pruefen ? 2 : 3;
    if (positionen.size() != erwartet) {
        fehler = QStringLiteral("\"%1\" erwartet %2 Angabe(n); mit --help werden die Aufrufe "
                                "angezeigt.")
                     .arg(befehl)
                     .arg(erwartet - 1);
        return false;
    }
    const auto jahr = jahrLesen(positionen.at(1));
    if (!jahr) {
        fehler = QStringLiteral("Ungültiges Buchungsjahr: \"%1\" (erwartet: JJJJ).")
                     .arg(positionen.at(1));
        return false;
    }
    aufruf.jahr = jahr;
    if (aufruf.art == Aufruf::Art::Jahreswechsel) {
        aufruf.nachJahr = jahrLesen(positionen.at(2));
        if (!aufruf.nachJahr) {
            fehler = QStringLiteral("Ungültiges Buchungsjahr: \"%1\" (erwartet: JJJJ).")
                         .arg(positionen.at(2));
            return false;
        }
        if (*aufruf.nachJahr == *aufruf.jahr) {
            fehler = QStringLiteral("Die beiden Buchungsjahre müssen verschieden sein.");
            return false;
        }
    } else if (erwartet == 3) {
        aufruf.datei = positionen.at(2);
    }
    return true;
}

} // namespace

std::optional<Aufruf> befehlszeileLesen(const QStringList &argumente, QString &fehler)
{
    Aufruf aufruf;
    static const QHash<QString, Aufruf::Art> werkzeuge = {
        {QStringLiteral("jahreswechsel"), Aufruf::Art::Jahreswechsel},
        {QStringLiteral("pruefen"), Aufruf::Art::Pruefen},
        {QStringLiteral("export"), Aufruf::Art::Export},
        {QStringLiteral("import"), Aufruf::Art::Import},
        {QStringLiteral("sql"), Aufruf::Art::Sql},
        {QStringLiteral("protokoll"), Aufruf::Art::Protokoll},
    };
    QStringList positionen;
    // The tool named first decides which of the following options belong to it.
    for (const QString &arg : argumente) {
        if (werkzeuge.contains(arg)) {
            aufruf.art = werkzeuge.value(arg);
            break;
        }
    }
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
        } else if (arg == QLatin1String("--bis") || arg == QLatin1String("--konto")
                   || arg == QLatin1String("--seit") || arg == QLatin1String("--csv")) {
            if (aufruf.art != Aufruf::Art::Protokoll) {
                fehler = QStringLiteral("Die Option %1 gehört zu \"protokoll\".").arg(arg);
                return std::nullopt;
            }
            if (arg == QLatin1String("--csv")) {
                aufruf.csv = true;
            } else if (!wert(arg == QLatin1String("--bis")         ? aufruf.bisHash
                                 : arg == QLatin1String("--konto") ? aufruf.konto
                                                                   : text)) {
                return std::nullopt;
            }
            if (arg == QLatin1String("--seit")) {
                QDate datum = QDate::fromString(text, QStringLiteral("d.M.yyyy"));
                if (!datum.isValid())
                    datum = QDate::fromString(text, Qt::ISODate);
                if (!datum.isValid()) {
                    fehler = QStringLiteral("Ungültiges Datum bei --seit: \"%1\" (erwartet: "
                                            "TT.MM.JJJJ).")
                                 .arg(text);
                    return std::nullopt;
                }
                aufruf.seit = datum.toString(Qt::ISODate);
            }
        } else if (arg == QLatin1String("--kreditoren")) {
            aufruf.art = Aufruf::Art::Kreditoren;
        } else if (arg == QLatin1String("--vorschau") || arg == QLatin1String("--probelauf")) {
            const bool passt = (arg == QLatin1String("--vorschau"))
                ? aufruf.art == Aufruf::Art::Jahreswechsel
                : aufruf.art == Aufruf::Art::Import;
            if (!passt) {
                fehler
                    = QStringLiteral("Die Option %1 gehört zu \"%2\".")
                          .arg(arg,
                               arg == QLatin1String("--vorschau") ? QStringLiteral("jahreswechsel")
                                                                  : QStringLiteral("import"));
                return std::nullopt;
            }
            aufruf.ohneSchreiben = true;
        } else if (!arg.startsWith(QLatin1String("--"))
                   && (!positionen.isEmpty() || werkzeuge.contains(arg))) {
            positionen << arg;
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
    if (!positionen.isEmpty() && !werkzeugLesen(aufruf, positionen, fehler))
        return std::nullopt;
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
