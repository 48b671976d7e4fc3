#include "RuntimeError.h"

namespace platform {

RuntimeError::RuntimeError(int nummer, QString beschreibung)
    : m_nummer(nummer)
    , m_beschreibung(std::move(beschreibung))
    , m_what(QStringLiteral("%1: %2").arg(m_nummer).arg(m_beschreibung).toUtf8())
{}

QString RuntimeError::standardText(int nummer)
{
    using namespace fehlernummer;
    switch (nummer) {
    case IndexAusserhalb:
        return QStringLiteral("Index außerhalb des gültigen Bereichs");
    case Typenkonflikt:
        return QStringLiteral("Typen unverträglich");
    case ObjektvariableNichtFestgelegt:
        return QStringLiteral("Objektvariable oder With-Blockvariable nicht festgelegt");
    case ObjektNichtErstellbar:
        return QStringLiteral("Objekterstellung durch ActiveX-Komponente nicht möglich");
    case KeinAktuellerDatensatz:
        return QStringLiteral("Kein aktueller Datensatz.");
    case DoppelterSchluessel:
        return QStringLiteral("Die Änderungen wurden nicht durchgeführt, da sie zu doppelten "
                              "Werten im Primärschlüssel führen würden.");
    case DateiNichtGefunden:
        return QStringLiteral("Die Datenbankdatei wurde nicht gefunden.");
    case UngueltigesKennwort:
        // A user never types the file's key: what fails is the program's own.
        return QStringLiteral("Die Datenbank lässt sich mit dem Kennwort dieses Programms nicht "
                              "entschlüsseln: sie ist mit einem anderen Kennwort verschlüsselt "
                              "oder keine Datenbank dieses Programms.");
    case DatenbankBeschaedigt:
        return QStringLiteral("Die Datenbankdatei ist beschädigt oder unvollständig "
                              "(abgeschnitten). Bitte spielen Sie eine Sicherung zurück.");
    case KeinZugriff:
        return QStringLiteral("Auf die Datenbankdatei oder ihren Ordner besteht kein Zugriff.");
    case KeineDatenbank:
        return QStringLiteral("Die Datei ist keine Datenbank dieses Programms.");
    case NichtVerschluesselt:
        return QStringLiteral("Die Datei ist eine SQLite-Datenbank, aber nicht verschlüsselt; "
                              "dieses Programm öffnet nur seine verschlüsselten Datenbanken.");
    case TabelleNichtGefunden:
        return QStringLiteral("Die Eingabetabelle oder -abfrage wurde nicht gefunden.");
    case DatensatzGeaendert:
        return QStringLiteral("Der Datensatz wurde inzwischen von einem anderen Benutzer "
                              "geändert oder gelöscht. Ihre Änderung wurde nicht gespeichert.");
    case DatenbankNichtErreichbar:
        return QStringLiteral("Die Verbindung zur Datenbank ist unterbrochen.");
    case FeldNichtGefunden:
        return QStringLiteral("Element in dieser Auflistung nicht gefunden.");
    case NichtAktualisierbar:
        return QStringLiteral("Die Datensatzgruppe ist nicht aktualisierbar.");
    case KeinEditModus:
        return QStringLiteral("Aktualisieren oder Abbrechen ohne AddNew oder Edit.");
    case DatentraegerVoll:
        return QStringLiteral("Der Datenträger ist voll: die Datenbank kann nichts mehr "
                              "speichern. Bitte schaffen Sie Platz auf dem Laufwerk der Datenbank "
                              "oder verständigen Sie Ihre Systembetreuung; danach lässt sich noch "
                              "einmal speichern.");
    case DatentraegerFehler:
        return QStringLiteral("Datenträger- oder Netzwerkfehler: die Datenbank ließ sich nicht "
                              "lesen oder beschreiben. Bitte prüfen Sie das Laufwerk und die "
                              "Netzwerkverbindung der Datenbank und versuchen Sie es noch einmal; "
                              "bleibt der Fehler, verständigen Sie Ihre Systembetreuung.");
    case AndererSchreibt:
        return QStringLiteral("Ein anderer Arbeitsplatz schreibt gerade in die Datenbank; es "
                              "konnte nicht gespeichert werden. Bitte versuchen Sie es in einigen "
                              "Augenblicken noch einmal.");
    case KeineBerechtigung:
        return QStringLiteral("Keine Berechtigung: der Datenbankbenutzer darf das nicht.");
    case AnmeldungAbgelehnt:
        return QStringLiteral("Der Datenbankserver hat die Anmeldung abgelehnt.");
    case ServerUnbekannt:
        return QStringLiteral("Der Datenbankserver ist nicht bekannt.");
    case ServerAntwortetNicht:
        return QStringLiteral("Der Datenbankserver antwortet nicht.");
    case ZertifikatAbgelehnt:
        return QStringLiteral("Die verschlüsselte Verbindung zum Datenbankserver wurde "
                              "abgelehnt.");
    case AdresseUngueltig:
        return QStringLiteral("Die Datenbankadresse ist ungültig.");
    default:
        return {};
    }
}

void RuntimeError::ausloesen(int nummer)
{
    throw RuntimeError(nummer, standardText(nummer));
}

} // namespace platform
