#include "accounts/regeln/Positionen.h"

namespace kontenregeln {

namespace {
const QString Zeile = QStringLiteral("\r\n");
constexpr int Ueberschriftbreite = 28;
} // namespace

qint64 abrPosCode(int stufe1, int stufe2)
{
    return static_cast<qint64>(stufe1) * 100000 + stufe2;
}

std::pair<int, int> abrPosStufen(qint64 code)
{
    const QString zehn = QStringLiteral("%1").arg(code, 10, 10, QLatin1Char('0'));
    return {zehn.left(5).toInt(), zehn.mid(5, 5).toInt()};
}

QString abrPosEintrag(const QString &ueberschrift, const QString &text)
{
    return ueberschrift + AbrPosTrenner + text;
}

QString abrPosAnzeige(const QString &ueberschrift, const QString &text)
{
    return ueberschrift.leftJustified(Ueberschriftbreite, u' ', true) + AbrPosTrenner + text;
}

QString abrPosFehlt(int stufe1, int stufe2)
{
    return QStringLiteral("ÖNORM-I-II-III-Position: ") + QString::number(stufe1) + Zeile
        + QStringLiteral("ÖNORM-ABC-Position: ") + QString::number(stufe2) + Zeile + Zeile
        + QStringLiteral("Position nicht existent - Position wird auf Null gestellt - "
                         "Überprüfung und Neuzuordnung erforderlich");
}

QString bkBlockEintrag(int pos, const QString &text, qint64 schluessel)
{
    return QString::number(pos) + QStringLiteral(": ") + text + QStringLiteral("   (Schlüssel: ")
        + QString::number(schluessel) + u')';
}

QString bkBlockFehlt(const QString &kontoNr, const QString &block)
{
    return QStringLiteral("in cmbBkBlockPos_Texteinsetzen:") + Zeile + Zeile
        + QStringLiteral("Konto-Nr: ") + kontoNr + Zeile
        + QStringLiteral("Im Kontenstamm gespeicherte BKBlockPosition: ") + block
        + QStringLiteral(" ist nicht im BkBlockPos-Stamm (Tabelle \"AbrPosBkBlöcke\") enthalten");
}

QString tabelleFehlt(int fehlerNr)
{
    return QStringLiteral("Fehler-Nr: ") + QString::number(fehlerNr) + Zeile + Zeile
        + QStringLiteral("Die Verarbeitung dieses Programmes wurde um 1 oder ")
        + QStringLiteral("mehrere Datenbank-Tabellen erweitert - die in der aufgerufenen "
                         "Datenbank noch ")
        + QStringLiteral("nicht berücksichtigt sind.") + Zeile + Zeile
        + QStringLiteral("BITTE BEENDIGEN SIE AUF JEDEN FALL DIESE VERARBEITUNG !!! ") + Zeile
        + Zeile + QStringLiteral("und führen Sie anschließend in:") + Zeile
        + QStringLiteral("\"Hilfsprogramme\",\"Diverse DatenbankHilfsfunktionen\" ") + Zeile
        + QStringLiteral("die Auswahl: \"alle neuen Felder abrufen\" durch.") + Zeile + Zeile
        + QStringLiteral("Anschließend können Sie diese Verarbeitung problemlos starten.");
}

} // namespace kontenregeln
