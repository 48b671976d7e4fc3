#include "accounts/regeln/Jahrespruefung.h"

#include "accounts/regeln/Codelisten.h"
#include "accounts/regeln/Kontonummern.h"
#include "accounts/regeln/Positionen.h"

namespace kontenregeln {

namespace {

QSet<qint64> zahlen(Database &db, const QString &sql)
{
    QSet<qint64> menge;
    auto c = db.query(sql);
    while (c->next())
        menge.insert(c->ganzzahl(0));
    return menge;
}

QString rtrimText(const QVariant &v)
{
    return v.isNull() ? QString() : rtrim(v.toString());
}

} // namespace

QString Stammdaten::bilanzSchluessel(int seite, const QString &abc, const QString &roem,
                                     const QString &arab, const QString &klein)
{
    return QString::number(seite) + u'|' + rtrim(abc) + u'|' + rtrim(roem) + u'|' + rtrim(arab)
        + u'|' + rtrim(klein);
}

qint64 Stammdaten::zl7Schluessel(int p1, int p2, int p3)
{
    return qint64(p1) * 100000000 + qint64(p2) * 10000 + p3;
}

Stammdaten Stammdaten::laden(Database &db)
{
    Stammdaten s;
    if (db.hasTable(QStringLiteral("AbrPosBkAbr"))) {
        s.abrPositionen = zahlen(db,
                                 QStringLiteral("SELECT AbrPosBkPos1 * 100000 + AbrPosBkPos2 "
                                                "FROM AbrPosBkAbr WHERE AbrPosBkPos2 > 0"));
    }
    for (qint64 b : zahlen(db, QStringLiteral("SELECT BkBlockPos FROM AbrPosBkBlöcke")))
        s.bkBloecke.insert(int(b));
    s.zl7Positionen = zahlen(db,
                             QStringLiteral("SELECT BilZl7Pos1 * 100000000 + BilZl7Pos2 * "
                                            "10000 + BilZl7Pos3 FROM BilanzPosZL7"));
    s.schluessel = zahlen(db, QStringLiteral("SELECT SchlNummer FROM AllgSchluesselDaten"));
    auto c = db.query(QStringLiteral("SELECT BilPosAktPass, BilPosABC, BilPosRöm, BilPosArab, "
                                     "BilPosABCklein FROM BilanzPos"));
    while (c->next()) {
        s.bilanzPositionen.insert(bilanzSchluessel(int(c->ganzzahl(0)), rtrimText(c->wert(1)),
                                                   rtrimText(c->wert(2)), rtrimText(c->wert(3)),
                                                   rtrimText(c->wert(4))));
    }
    return s;
}

std::vector<Kontobefund> kontoPruefen(const Kontozeile &z, const Stammdaten &s, int jahr)
{
    std::vector<Kontobefund> befunde;
    const QString nr = z.kontoNr();
    auto befund = [&](QString meldung, int seite, QString feld) {
        befunde.push_back({nr, std::move(meldung), seite, std::move(feld)});
    };

    const auto form = nummernform(nr);
    if (form != NummernFehler::Keiner)
        befund(nummernformMeldung(form), 1, QStringLiteral("inpKontoNr"));

    // The record checks in the screen's order; the first failing one, as the screen shows it.
    const KontoDefinition d = definition(z);
    const Nachschlagen nachschlagen {
        [&](const QString &ref) { return s.konten.contains(ref); },
        [&](int a, int b, int c) {
            return s.zl7Positionen.contains(Stammdaten::zl7Schluessel(a, b, c));
        },
    };
    if (const auto b = ersterBefundAllerSeiten(d, nachschlagen))
        befund(b->meldung, b->seite, b->feld);
    if (zusatzDatenJNFalsch(d))
        befund(pruefungstexte::ZusatzDatenJNFalsch, 1, QStringLiteral("cmbKontoZusatzdatenJN"));

    // Codes the combos cannot show.
    for (const Codeliste &l : codelisten()) {
        const QVariant v = z.wert(l.spalte);
        int wert = 0;
        const bool zahl = ganzzahlVon(v, wert);
        if (zahl && wertZulaessig(l, wert, jahr))
            continue;
        befund(l.ungueltigText.isEmpty() || !zahl || !anzeige(l, wert, jahr).ungueltig
                   ? QStringLiteral("ungültiger Wert %1 in %2").arg(v.toString(), l.kombi)
                   : l.ungueltigText,
               l.seite, l.kombi);
    }

    // Keys of the position masters and the allocation keys.
    if (d.abrPos1 != 0 || d.abrPos2 != 0) {
        if (!s.abrPositionen.contains(abrPosCode(d.abrPos1, d.abrPos2)))
            befund(abrPosFehlt(d.abrPos1, d.abrPos2), 3, QStringLiteral("cmbAbrPos2"));
    }
    const int block = z.zahl(QStringLiteral("KontoBkBlockPos"));
    if (block != 0 && !s.bkBloecke.contains(block))
        befund(bkBlockFehlt(nr, QString::number(block)), 2, QStringLiteral("cmbBkBlockPos"));
    const int seite = z.zahl(QStringLiteral("KontoBilPosAktPass"));
    if (seite != 0) {
        const QString schluessel = Stammdaten::bilanzSchluessel(
            seite, z.text(QStringLiteral("KontoBilPosABC")),
            z.text(QStringLiteral("KontoBilPosRöm")), z.text(QStringLiteral("KontoBilPosArab")),
            z.text(QStringLiteral("KontoBilPosABCklein")));
        if (!s.bilanzPositionen.contains(schluessel)) {
            befund(QStringLiteral("Bilanzposition %1 ist nicht im Bilanzpositionsstamm enthalten.")
                       .arg(QString(schluessel).replace(u'|', u' ').simplified()),
                   7, QStringLiteral("inpBilPosAktPass"));
        }
    }
    const int asl = z.zahl(QStringLiteral("KontoAbrSchlPos"));
    if (asl != 0 && !s.schluessel.contains(asl)) {
        befund(QStringLiteral("Aufteilungsschlüssel %1 ist nicht im Schlüsselstamm enthalten.")
                   .arg(asl),
               2, QStringLiteral("inpAbrSchlPos"));
    }
    return befunde;
}

std::vector<Kontobefund> jahrPruefen(Database &db, int jahr, const Fortschritt &fortschritt)
{
    Stammdaten s = Stammdaten::laden(db);
    // References may point to accounts further on: the numbers first, then every account as
    // it arrives, so that a year of any size needs little memory.
    {
        auto c = db.query(
            QStringLiteral("SELECT KontoNr FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?"), {jahr});
        while (c->next())
            s.konten.insert(rtrimText(c->wert(0)));
    }
    std::vector<Kontobefund> alle;
    kontenDurchgehen(
        db, jahr,
        [&](const Kontozeile &z) {
            auto befunde = kontoPruefen(z, s, jahr);
            alle.insert(alle.end(), std::make_move_iterator(befunde.begin()),
                        std::make_move_iterator(befunde.end()));
        },
        fortschritt);
    return alle;
}

} // namespace kontenregeln
