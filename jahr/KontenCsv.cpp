#include "jahr/KontenCsv.h"

#include "accounts/regeln/Codelisten.h"
#include "accounts/regeln/Jahrespruefung.h"
#include "accounts/regeln/Kontonummern.h"
#include "jahr/Einfuegen.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Aenderungsprotokoll.h"
#include "platform/storage/Schema.h"

#include <QDate>
#include <QFile>
#include <QHash>
#include <QSaveFile>
#include <QStringDecoder>
#include <optional>

namespace jahr {

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

ExportErgebnis exportieren(Database &db, int jahr, const QString &datei,
                           const Fortschritt &fortschritt)
{
    ExportErgebnis ergebnis;
    const auto spalten = dateiSpalten(db);
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
    // Each account is written as it arrives: a year of any size needs little memory.
    std::vector<int> index;
    QString zeile;
    kontenregeln::kontenDurchgehen(
        db, jahr,
        [&](const Kontozeile &z) {
            if (index.empty()) {
                for (const Spalte *s : spalten)
                    index.push_back(z.spalten->index(s->name));
            }
            zeile.clear();
            for (size_t k = 0; k < spalten.size(); ++k) {
                if (k)
                    zeile += u';';
                const int i = index[k];
                zeile += csvFeld(alsText(i >= 0 ? z.werte.at(i) : QVariant(), spalten[k]->typ));
            }
            zeile += QStringLiteral("\r\n");
            f.write(zeile.toUtf8());
            ++ergebnis.konten;
        },
        fortschritt);
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
    // Read record by record: a file of any size needs little memory.
    CsvDatei leser(f);
    CsvSatz kopfSatz;
    if (!leser.naechster(kopfSatz)) {
        fehler(1, {}, QStringLiteral("Die Datei ist leer: die Kopfzeile mit den Feldnamen fehlt."));
        return ergebnis;
    }
    if (!kopfSatz.fehler.isEmpty()) {
        fehler(kopfSatz.zeile, {}, kopfSatz.fehler);
        return ergebnis;
    }

    // The header: known columns, each once, KontoNr among them.
    const auto spalten = dateiSpalten(db);
    QHash<QString, const Spalte *> bekannt;
    for (const Spalte *s : spalten)
        bekannt.insert(s->name.toLower(), s);
    std::vector<const Spalte *> kopf;
    QSet<QString> gesehen;
    const int kopfZeile = kopfSatz.zeile;
    for (const QString &name : kopfSatz.felder) {
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
    // The good lines packed as record sets keep rows: a fraction of the memory of values.
    platform::storage::Zeilenspeicher konten;
    konten.spaltenFestlegen(spaltenIndex->namen());
    std::vector<int> kontoZeilen;
    QHash<QString, int> nummern; // number -> line
    // Each field of the file with its place in a line, and a line of the initial values.
    std::vector<int> feldIndex;
    for (const Spalte *s : kopf)
        feldIndex.push_back(spaltenIndex->index(s->name));
    QVariantList anfangswerte {jahr};
    for (const Spalte *s : spalten)
        anfangswerte.append(s->typ == Spaltentyp::Text && !s->anfangswert.isValid()
                                ? QVariant(QString())
                                : s->anfangswert);
    CsvSatz csvSatz;
    while (leser.naechster(csvSatz)) {
        const QStringList &satz = csvSatz.felder;
        const int zeile = csvSatz.zeile;
        if (++ergebnis.konten % 1000 == 0 && fortschritt)
            fortschritt(ergebnis.konten, 0);
        if (!csvSatz.fehler.isEmpty()) {
            fehler(zeile, {}, csvSatz.fehler);
            continue;
        }
        if (satz.size() != qsizetype(kopf.size())) {
            fehler(zeile, {},
                   QStringLiteral("%1 Felder statt %2").arg(satz.size()).arg(kopf.size()));
            continue;
        }
        Kontozeile z {spaltenIndex, anfangswerte};
        bool zeileOk = true;
        for (size_t k = 0; k < kopf.size(); ++k) {
            QString f;
            const QVariant v = wertLesen(satz.at(qsizetype(k)), *kopf[k], f);
            if (!f.isEmpty()) {
                fehler(zeile, kopf[k]->name, f);
                zeileOk = false;
            }
            z.werte[feldIndex[k]] = v;
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
        konten.anhaengen(z.werte);
        kontoZeilen.push_back(zeile);
    }

    // The definitions, once every account of the file is known (references among them).
    const int n = konten.anzahl();
    for (int i = 0; i < n; ++i) {
        const Kontozeile z {spaltenIndex, konten.zeile(i)};
        for (const Kontobefund &b : kontoPruefen(z, stamm, jahr))
            fehler(kontoZeilen[size_t(i)], spalteVonFeld(b.feld), b.meldung);
        if (fortschritt && (i + 1) % 1000 == 0)
            fortschritt(i + 1, n);
    }
    if (fortschritt)
        fortschritt(n, n);
    std::sort(ergebnis.fehler.begin(), ergebnis.fehler.end(),
              [](const ImportFehler &a, const ImportFehler &b) { return a.zeile < b.zeile; });
    if (!ergebnis.fehler.empty() || probelauf)
        return ergebnis;

    // Inside a caller's transaction (the demo database is made in one) the accounts join it.
    std::optional<platform::storage::Transaktion> t;
    if (!db.inTransaction())
        t.emplace(db);
    kontenEinfuegen(
        db, spaltenIndex->namen(), n, [&](qint64 i) { return konten.zeile(int(i)); },
        [&](qint64 erledigt) {
            if (fortschritt)
                fortschritt(erledigt, n);
        });
    if (t)
        t->commit();
    ergebnis.geschrieben = true;
    return ergebnis;
}

} // namespace jahr
