#include "accounts/Kontentexte.h"

namespace kontentexte {

namespace {
const QString Zeile = QStringLiteral("\r\n");
} // namespace

QString leererDatenbestand(int jahr)
{
    return QStringLiteral("Die SachkontenDatei für Buchungsjahr: ") + QString::number(jahr)
        + QStringLiteral(" ist komplett leer.") + Zeile
        + QStringLiteral("Es wird anschließend automatisch ein \"internes Verrechnungskonto "
                         "Nr: 999998\" eröffnet.");
}

QString fehlerOhneText(int nummer)
{
    return QStringLiteral("Anwendungs- oder objektdefinierter Fehler ") + QString::number(nummer);
}

QString nichtExistentNurAnzeige(const QString &nr)
{
    return QStringLiteral("Das SachKonto mit der Nummer: ") + nr
        + QStringLiteral(" ist nicht existent") + Zeile + Zeile
        + QStringLiteral("Bitte treffen Sie eine andere Auswahl.");
}

QString nichtExistentFrage(const QString &nr)
{
    return QStringLiteral("das SachKonto mit der Nummer: ") + nr
        + QStringLiteral(" ist nicht existent") + Zeile + Zeile
        + QStringLiteral("Klicken Sie \"JA\" oder Enter wenn Sie eine andere ")
        + QStringLiteral("Auswahl treffen möchten ") + Zeile
        + QStringLiteral("oder \"Nein\" wenn Sie einen neuen KontenStammsatz eröffnen wollen:");
}

QString neueroeffnenFrage(const QString &nr)
{
    return QStringLiteral("Kontenstammsatz Konto ") + nr + QStringLiteral(" neueröffnen ?");
}

QString neuZuKurz()
{
    return QStringLiteral("Kontonummer wurde zu kurz eingegeben.") + Zeile
        + QStringLiteral("Kontonummern müssen 4-, 5- oder 6-stellig eingegeben ")
        + QStringLiteral("werden.") + Zeile + Zeile
        + QStringLiteral("Z.B. Kontonummer 1 muss als 0001 eingegeben werden.");
}

QString addNewFehlgeschlagen(const QString &nr)
{
    return QStringLiteral("Konto-Nr: ") + nr + Zeile + Zeile
        + QStringLiteral("KontoNeueröffnung fehlgeschlagen (direkt nach \".AddNew\")");
}

QString nachNeueroeffnungNichtGefunden(const QString &nr)
{
    return QStringLiteral("Konto-Nr: ") + nr + Zeile + Zeile
        + QStringLiteral("Neueröffnetes Konto nach Neueröffnung nicht gefunden.") + Zeile + Zeile
        + QStringLiteral("KontoNeueröffnung war nicht erfolgreich.");
}

QString provisorischHinweis(const QString &abschlussNotiz)
{
    return abschlussNotiz + QStringLiteral("Kontrollieren, verändern oder ergänzen Sie ")
        + QStringLiteral("anschließend die provisorischen Objekt-Feldinhalte gemäß Ihren "
                         "Erfordernissen !");
}

QString rtrim(const QString &text)
{
    qsizetype n = text.size();
    while (n > 0 && text.at(n - 1) == u' ')
        --n;
    return text.left(n);
}

QString uebernahmeInfo()
{
    return QStringLiteral("Ein neuer, leerer Konten-Stammsatz wurde angelegt.") + Zeile + Zeile
        + QStringLiteral("Sie können jetzt die Kontendaten von einem bereits vorhandenen ")
        + QStringLiteral("Kontoenstamm automatisch übernehmen (Arbeitsersparnis).") + Zeile
        + QStringLiteral("Um Kontendaten von einem bereits vorhandenen ")
        + QStringLiteral("Kontenstamm zu übernehmen geben Sie die Konto-Nr des abgebenden Kontos "
                         "ein und ")
        + QStringLiteral("klicken Sie auf OK.") + Zeile + Zeile
        + QStringLiteral("Sie können auch mit Konten-Auswahlhilfe eine Kontonummer aussuchen.");
}

QString uebernahmeNichtExistent(const QString &nr)
{
    return QStringLiteral("Ausgewählte Kontonummer ") + nr + QStringLiteral(" ist nicht existent.");
}

QString uebernahmeBeendet()
{
    return QStringLiteral("Übernahme der Kontendaten beendet.") + Zeile + Zeile;
}

QString nichtLoeschbar(const QString &nr, int jahr, int saldensaetze)
{
    return QStringLiteral("Kontenstammsatz mit der Konto-Nr: ") + nr
        + QStringLiteral(" ist nicht löschbar, da im Buchungsjahr: ") + QString::number(jahr)
        + QStringLiteral(" Saldensätze und Buchungen zu diesem Konto existieren.") + Zeile
        + QStringLiteral("Zu dieser Konto-Nr wurden insgesamt ") + QString::number(saldensaetze)
        + QStringLiteral(" SaldenSätze gefunden");
}

QString nichtGeloeschtOhneSalden(const QString &nr)
{
    return QStringLiteral("Kontenstammsatz mit der Konto-Nr: ") + nr
        + QStringLiteral(" wurde nicht gelöscht, da die Saldensätze zu diesem Konto nicht "
                         "gelesen werden konnten.");
}

} // namespace kontentexte
