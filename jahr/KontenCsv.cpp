#include "jahr/KontenCsv.h"

#include "accounts/regeln/Codelisten.h"
#include "accounts/regeln/Jahrespruefung.h"
#include "accounts/regeln/Kontonummern.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Aenderungsprotokoll.h"
#include "platform/storage/Schema.h"

#include <QDate>
#include <QFile>
#include <QHash>
#include <QSaveFile>
#include <QStringDecoder>

namespace jahr {

using kontenregeln::kontenLaden;
using kontenregeln::Kontobefund;
using kontenregeln::kontoPruefen;
using kontenregeln::Spalten;
using kontenregeln::Stammdaten;
using platform::storage::Spalte;
using platform::storage::Spaltentyp;

namespace {

const QString Tabelle = QStringLiteral("ObjKanzleiKontenstamm");

// The columns of the file: the catalogue's, as far as the database has them, without the year.
std::vector<const Spalte *> dateiSpalten(Database &db)
{
    const auto *t = platform::storage::tabelle(Tabelle);
    QSet<QString> vorhanden;
    for (const QString &s : db.columns(Tabelle))
        vorhanden.insert(s.toLower());
    std::vector<const Spalte *> spalten;
    for (const Spalte &s : t->spalten) {
        if (vorhanden.contains(s.name.toLower())
            && s.name.compare(QLatin1String("KontoJJ"), Qt::CaseInsensitive) != 0)
            spalten.push_back(&s);
    }
    return spalten;
}

QString alsText(const QVariant &v, Spaltentyp typ)
{
    if (v.isNull())
        return {};
    if (typ == Spaltentyp::Kommazahl)
        return QString::number(v.toDouble(), 'g', 17);
    if (typ == Spaltentyp::Datum && v.userType() == QMetaType::QDate)
        return v.toDate().toString(Qt::ISODate);
    return v.toString();
}

// The value of a file field for column `s`, or an error text.
QVariant wertLesen(const QString &text, const Spalte &s, QString &fehler)
{
    if (text.isEmpty())
        return s.typ == Spaltentyp::Text ? QVariant(QString()) : s.anfangswert;
    bool ok = false;
    switch (s.typ) {
    case Spaltentyp::Text:
        if (text.size() > s.laenge)
            fehler = QStringLiteral("Text ist länger als %1 Zeichen").arg(s.laenge);
        return text;
    case Spaltentyp::Ganzzahl16:
    case Spaltentyp::Ganzzahl32:
    case Spaltentyp::JaNein: {
        const qlonglong z = text.trimmed().toLongLong(&ok);
        const qlonglong grenze = s.typ == Spaltentyp::Ganzzahl32 ? 2147483647LL : 32767;
        if (!ok)
            fehler = QStringLiteral("\"%1\" ist keine ganze Zahl").arg(text);
        else if (z > grenze || z < -grenze - 1)
            fehler = QStringLiteral("%1 liegt außerhalb des zulässigen Bereichs").arg(text);
        else if (s.typ == Spaltentyp::JaNein && z != 0 && z != -1)
            fehler = QStringLiteral("Ja/Nein-Feld muss -1 oder 0 sein, nicht %1").arg(text);
        return z;
    }
    case Spaltentyp::Kommazahl: {
        const double d = QString(text).replace(u',', u'.').trimmed().toDouble(&ok);
        if (!ok)
            fehler = QStringLiteral("\"%1\" ist keine Zahl").arg(text);
        return d;
    }
    case Spaltentyp::Datum: {
        const QDate d = QDate::fromString(text.trimmed(), Qt::ISODate);
        if (!d.isValid())
            fehler = QStringLiteral("\"%1\" ist kein Datum (JJJJ-MM-TT)").arg(text);
        return text.trimmed();
    }
    }
    return text;
}

// The column of the account record that a control of the screen shows.
QString spalteVonFeld(const QString &feld)
{
    static const QHash<QString, QString> felder = {
        {QStringLiteral("inpKontoNr"), QStringLiteral("KontoNr")},
        {QStringLiteral("inpKontoBezeichnung"), QStringLiteral("KontoBezeichnung")},
        {QStringLiteral("inpKontoUstKtoNr"), QStringLiteral("KontoUstKtoNr")},
        {QStringLiteral("inpKontoSbkGuvKontoNr"), QStringLiteral("KontoSbkGuvKontoNr")},
        {QStringLiteral("inpKontoEbkKontoNr"), QStringLiteral("KontoEbkKontoNr")},
        {QStringLiteral("inpBilZl7Pos1"), QStringLiteral("KontoPos1")},
        {QStringLiteral("inpBilPosAktPass"), QStringLiteral("KontoBilPosAktPass")},
        {QStringLiteral("inpAbrSchlPos"), QStringLiteral("KontoAbrSchlPos")},
        {QStringLiteral("cmbAbrPos2"), QStringLiteral("KontoÖNORMAbrPos_ABC")},
        {QStringLiteral("cmbBkBlockPos"), QStringLiteral("KontoBkBlockPos")},
    };
    if (const auto *l = kontenregeln::codeliste(feld))
        return l->spalte;
    return felder.value(feld, feld);
}

} // namespace

QString csvFeld(const QString &wert)
{
    if (!wert.contains(u';') && !wert.contains(u'"') && !wert.contains(u'\n')
        && !wert.contains(u'\r'))
        return wert;
    return u'"' + QString(wert).replace(QStringLiteral("\""), QStringLiteral("\"\"")) + u'"';
}

namespace {

const QString OffeneAnfuehrung = QStringLiteral("Anführungszeichen wird nicht geschlossen");

// Windows-1252 in 0x80 to 0x9F; the five unassigned bytes keep their value, as Windows does.
constexpr char16_t Cp1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

bool zeilenende(QChar c)
{
    return c == u'\r' || c == u'\n';
}

// Past the line break at `i` (CRLF counts as one).
qsizetype nachZeilenende(QStringView text, qsizetype i)
{
    if (i < text.size() && text.at(i) == u'\r')
        ++i;
    if (i < text.size() && text.at(i) == u'\n')
        ++i;
    return i;
}

} // namespace

std::vector<CsvSatz> csvLesen(QStringView text)
{
    std::vector<CsvSatz> saetze;
    const qsizetype n = text.size();
    qsizetype i = 0;
    int zeile = 1;
    while (i < n) {
        CsvSatz satz;
        satz.zeile = zeile;
        QString feld;
        bool inAnfuehrung = false;
        bool hatteAnfuehrung = false;
        qsizetype anfuehrung = -1; // where the last quote opened, and its line
        int anfuehrungZeile = 0;
        QString fehler;
        for (; i < n; ++i) {
            const QChar c = text.at(i);
            if (inAnfuehrung) {
                if (c != u'"') {
                    if (c == u'\n' || (c == u'\r' && (i + 1 >= n || text.at(i + 1) != u'\n')))
                        ++zeile;
                    feld += c;
                } else if (i + 1 < n && text.at(i + 1) == u'"') {
                    feld += u'"';
                    ++i;
                } else if (i + 1 < n && text.at(i + 1) != u';' && !zeilenende(text.at(i + 1))) {
                    // Text after the closing quote: most often the quote of a later field that
                    // ended a quote left open earlier.
                    fehler = zeile == anfuehrungZeile
                        ? QStringLiteral("Text nach dem schließenden Anführungszeichen")
                        : OffeneAnfuehrung;
                    break;
                } else {
                    inAnfuehrung = false;
                }
                continue;
            }
            if (c == u'"' && feld.isEmpty()) {
                inAnfuehrung = hatteAnfuehrung = true;
                anfuehrung = i;
                anfuehrungZeile = zeile;
            } else if (c == u';') {
                satz.felder << feld;
                feld.clear();
            } else if (zeilenende(c)) {
                break;
            } else {
                feld += c;
            }
        }
        if (inAnfuehrung && fehler.isEmpty())
            fehler = OffeneAnfuehrung;
        if (!fehler.isEmpty()) {
            // The record ends with the line of its open quote; the next line is read afresh.
            satz.felder.clear();
            satz.fehler = fehler;
            i = anfuehrung;
            while (i < n && !zeilenende(text.at(i)))
                ++i;
            i = nachZeilenende(text, i);
            zeile = anfuehrungZeile + 1;
            saetze.push_back(std::move(satz));
            continue;
        }
        i = nachZeilenende(text, i);
        ++zeile;
        // An empty line carries no account.
        if (satz.felder.isEmpty() && feld.isEmpty() && !hatteAnfuehrung)
            continue;
        satz.felder << feld;
        saetze.push_back(std::move(satz));
    }
    return saetze;
}

QString csvText(const QByteArray &daten)
{
    QByteArrayView rest(daten);
    if (rest.startsWith("\xEF\xBB\xBF"))
        rest = rest.sliced(3);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8.decode(rest);
    if (!utf8.hasError())
        return text;
    QString cp1252(daten.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < daten.size(); ++i) {
        const auto b = static_cast<unsigned char>(daten.at(i));
        cp1252[i] = b >= 0x80 && b < 0xA0 ? QChar(Cp1252[b - 0x80]) : QChar(b);
    }
    return cp1252;
}

ExportErgebnis exportieren(Database &db, int jahr, const QString &datei,
                           const Fortschritt &fortschritt)
{
    ExportErgebnis ergebnis;
    const auto spalten = dateiSpalten(db);
    const std::vector<Kontozeile> konten = kontenLaden(db, jahr);
    QSaveFile f(datei);
    if (!f.open(QIODevice::WriteOnly)) {
        ergebnis.fehler = QStringLiteral("Die Datei %1 kann nicht geschrieben werden: %2")
                              .arg(datei, f.errorString());
        return ergebnis;
    }
    QStringList kopf;
    for (const Spalte *s : spalten)
        kopf << s->name;
    f.write("\xEF\xBB\xBF" + kopf.join(u';').toUtf8() + "\r\n");
    for (const Kontozeile &z : konten) {
        QStringList felder;
        for (const Spalte *s : spalten)
            felder << csvFeld(alsText(z.wert(s->name), s->typ));
        f.write(felder.join(u';').toUtf8() + "\r\n");
        if (fortschritt && ++ergebnis.konten % 1000 == 0)
            fortschritt(ergebnis.konten, qint64(konten.size()));
    }
    ergebnis.konten = qint64(konten.size());
    // Written completely or not at all: the old file stays until the new one is whole.
    if (!f.commit()) {
        ergebnis.fehler = QStringLiteral("Die Datei %1 kann nicht geschrieben werden: %2")
                              .arg(datei, f.errorString());
    }
    return ergebnis;
}

ImportErgebnis importieren(Database &db, int jahr, const QString &datei, bool probelauf,
                           const Fortschritt &fortschritt)
{
    const platform::storage::Protokollquelle protokoll(db,
                                                       platform::storage::protokollquelle::Import);
    ImportErgebnis ergebnis;
    auto fehler = [&](int zeile, const QString &feld, const QString &meldung) {
        ergebnis.fehler.push_back({zeile, feld, meldung});
    };
    QFile f(datei);
    if (!f.open(QIODevice::ReadOnly)) {
        fehler(0, {},
               QStringLiteral("Die Datei %1 kann nicht gelesen werden: %2")
                   .arg(datei, f.errorString()));
        return ergebnis;
    }
    const std::vector<CsvSatz> saetze = csvLesen(csvText(f.readAll()));
    if (saetze.empty()) {
        fehler(1, {}, QStringLiteral("Die Datei ist leer: die Kopfzeile mit den Feldnamen fehlt."));
        return ergebnis;
    }
    if (!saetze.front().fehler.isEmpty()) {
        fehler(saetze.front().zeile, {}, saetze.front().fehler);
        return ergebnis;
    }

    // The header: known columns, each once, KontoNr among them.
    const auto spalten = dateiSpalten(db);
    QHash<QString, const Spalte *> bekannt;
    for (const Spalte *s : spalten)
        bekannt.insert(s->name.toLower(), s);
    std::vector<const Spalte *> kopf;
    QSet<QString> gesehen;
    const int kopfZeile = saetze.front().zeile;
    for (const QString &name : saetze.front().felder) {
        const Spalte *s = bekannt.value(name.trimmed().toLower());
        if (!s) {
            fehler(kopfZeile, name, QStringLiteral("Unbekanntes Feld \"%1\"").arg(name));
        } else if (gesehen.contains(s->name)) {
            fehler(kopfZeile, name,
                   QStringLiteral("Feld \"%1\" steht zweimal in der Kopfzeile").arg(name));
        }
        if (s)
            gesehen.insert(s->name);
        kopf.push_back(s);
    }
    if (!gesehen.contains(QStringLiteral("KontoNr")))
        fehler(kopfZeile, QStringLiteral("KontoNr"),
               QStringLiteral("Die Kopfzeile nennt kein Feld KontoNr"));
    if (!ergebnis.fehler.empty())
        return ergebnis;

    // Each line: values by column (the initial values where the file has none).
    const auto spaltenIndex = [&] {
        QStringList namen {QStringLiteral("KontoJJ")};
        for (const Spalte *s : spalten)
            namen << s->name;
        return std::make_shared<const Spalten>(namen);
    }();
    Stammdaten stamm = Stammdaten::laden(db);
    QSet<QString> imJahr;
    {
        auto c = db.query(
            QStringLiteral("SELECT KontoNr FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?"), {jahr});
        while (c->next())
            imJahr.insert(kontenregeln::rtrim(c->wert(0).toString()));
    }
    stamm.konten = imJahr;
    std::vector<Kontozeile> konten;
    std::vector<int> kontoZeilen;
    QHash<QString, int> nummern; // number -> line
    for (size_t i = 1; i < saetze.size(); ++i) {
        const QStringList &satz = saetze[i].felder;
        const int zeile = saetze[i].zeile;
        ++ergebnis.konten;
        if (!saetze[i].fehler.isEmpty()) {
            fehler(zeile, {}, saetze[i].fehler);
            continue;
        }
        if (satz.size() != qsizetype(kopf.size())) {
            fehler(zeile, {},
                   QStringLiteral("%1 Felder statt %2").arg(satz.size()).arg(kopf.size()));
            continue;
        }
        Kontozeile z {spaltenIndex, {}};
        z.werte.append(jahr);
        for (const Spalte *s : spalten)
            z.werte.append(s->typ == Spaltentyp::Text && !s->anfangswert.isValid()
                               ? QVariant(QString())
                               : s->anfangswert);
        bool zeileOk = true;
        for (size_t k = 0; k < kopf.size(); ++k) {
            QString f;
            const QVariant v = wertLesen(satz.at(qsizetype(k)), *kopf[k], f);
            if (!f.isEmpty()) {
                fehler(zeile, kopf[k]->name, f);
                zeileOk = false;
            }
            z.werte[spaltenIndex->index(kopf[k]->name)] = v;
        }
        const QString nr = z.kontoNr();
        const auto form = kontenregeln::nummernform(nr);
        if (form != kontenregeln::NummernFehler::Keiner) {
            fehler(zeile, QStringLiteral("KontoNr"), kontenregeln::nummernformMeldung(form));
            zeileOk = false;
        } else if (nr.size() > 6
                   || !std::all_of(nr.begin(), nr.end(), [](QChar c) { return c.isDigit(); })) {
            fehler(zeile, QStringLiteral("KontoNr"),
                   QStringLiteral("Kontonummer \"%1\" darf nur aus höchstens 6 Ziffern bestehen")
                       .arg(nr));
            zeileOk = false;
        } else if (imJahr.contains(nr)) {
            fehler(zeile, QStringLiteral("KontoNr"),
                   QStringLiteral("Konto %1 ist im Buchungsjahr %2 bereits vorhanden")
                       .arg(nr)
                       .arg(jahr));
            zeileOk = false;
        } else if (nummern.contains(nr)) {
            fehler(
                zeile, QStringLiteral("KontoNr"),
                QStringLiteral("Konto %1 steht schon in Zeile %2").arg(nr).arg(nummern.value(nr)));
            zeileOk = false;
        }
        nummern.insert(nr, zeile);
        if (!zeileOk)
            continue;
        stamm.konten.insert(nr);
        konten.push_back(std::move(z));
        kontoZeilen.push_back(zeile);
    }

    // The definitions, once every account of the file is known (references among them).
    for (size_t i = 0; i < konten.size(); ++i) {
        for (const Kontobefund &b : kontoPruefen(konten[i], stamm, jahr))
            fehler(kontoZeilen[i], spalteVonFeld(b.feld), b.meldung);
        if (fortschritt && (i + 1) % 1000 == 0)
            fortschritt(qint64(i + 1), qint64(konten.size()));
    }
    std::sort(ergebnis.fehler.begin(), ergebnis.fehler.end(),
              [](const ImportFehler &a, const ImportFehler &b) { return a.zeile < b.zeile; });
    if (!ergebnis.fehler.empty() || probelauf)
        return ergebnis;

    QStringList platzhalter;
    for (qsizetype i = 0; i < spaltenIndex->namen().size(); ++i)
        platzhalter << QStringLiteral("?");
    const QString sql = QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (%1) VALUES (%2)")
                            .arg(spaltenIndex->namen().join(QStringLiteral(", ")),
                                 platzhalter.join(QStringLiteral(", ")));
    platform::storage::Transaktion t(db);
    for (const Kontozeile &z : konten)
        db.execute(sql, z.werte);
    t.commit();
    ergebnis.geschrieben = true;
    return ergebnis;
}

} // namespace jahr
