#include "accounts/regeln/Konsistenz.h"

#include "accounts/regeln/Kontonummern.h"

namespace kontenregeln {

namespace {
const QString Zeile = QStringLiteral("\r\n");
} // namespace

bool bezeichnungFehlt(const KontoDefinition &d)
{
    return d.bezeichnung.isEmpty();
}

bool ustKontoFehlt(const KontoDefinition &d)
{
    if (d.ustProz == 0 || d.ustProz == 100)
        return false;
    return d.ustKtoNr.trimmed().isEmpty() && d.voranmPos != VoranmeldungUstBerichtigung;
}

bool bkUnvollstaendig(const KontoDefinition &d)
{
    return d.bkENAbrDef != 0
        && (d.bkBlockPos.trimmed() == u"0" || d.bkEinnAusgPos == 0 || d.abrUstProz == 100);
}

bool oenormUnvollstaendig(const KontoDefinition &d)
{
    return d.abrPos2 != 0 && (d.bkBlockPos.trimmed() == u"0" || d.abrUstProz == 100);
}

bool heFehlerhaft(const KontoDefinition &d)
{
    return d.heEinnAusgPos.trimmed() == u"0" && d.heAbrVerdichtKz != 0;
}

bool zl7Zugeordnet(const KontoDefinition &d)
{
    return d.zl7Pos1 != 0 || d.zl7Pos2 != 0 || d.zl7Pos3 != 0;
}

bool zusatzDatenJNFalsch(const KontoDefinition &d)
{
    return d.zusatzDatenJN > 1;
}

namespace {

std::optional<Befund> referenzBefund(const QString &nr, const Nachschlagen &n, Pruefung p,
                                     const QString &feldname, const QString &feld)
{
    const QString ref = referenzNummer(nr);
    if (ref.isEmpty() || !n.kontoVorhanden || n.kontoVorhanden(ref))
        return std::nullopt;
    return Befund {p, {}, referenzFehlt(feldname), p == Pruefung::UstKonto ? 1 : 7, feld};
}

std::optional<Befund> seiten1bis6(const KontoDefinition &d, const Nachschlagen &n)
{
    namespace t = pruefungstexte;
    if (bezeichnungFehlt(d))
        return Befund {Pruefung::Bezeichnung,
                       {},
                       t::BezeichnungLeer,
                       1,
                       QStringLiteral("inpKontoBezeichnung")};
    if (ustKontoFehlt(d))
        return Befund {
            Pruefung::UstQuer, {}, t::ustKontoFehlt(), 1, QStringLiteral("inpKontoUstKtoNr")};
    if (auto b = referenzBefund(d.ustKtoNr, n, Pruefung::UstKonto, feldname::UstPruefung,
                                QStringLiteral("inpKontoUstKtoNr")))
        return b;
    if (bkUnvollstaendig(d))
        return Befund {Pruefung::Bk, t::TitelUnvollstaendig, t::bkUnvollstaendig(), 2,
                       QStringLiteral("cmbBkENAbrDef")};
    if (oenormUnvollstaendig(d))
        return Befund {Pruefung::Oenorm, t::TitelUnvollstaendig, t::oenormUnvollstaendig(), 3,
                       QStringLiteral("cmbAbrPos2")};
    if (heFehlerhaft(d))
        return Befund {Pruefung::He, t::TitelHeFehler, t::heFehlerhaft(), 4,
                       QStringLiteral("cmbHeEinnAusgPos")};
    return std::nullopt;
}

std::optional<Befund> seite7(const KontoDefinition &d, const Nachschlagen &n)
{
    if (auto b = referenzBefund(d.sbkGuvKontoNr, n, Pruefung::SbkGuvKonto, feldname::SbkGuvPruefung,
                                QStringLiteral("inpKontoSbkGuvKontoNr")))
        return b;
    if (auto b = referenzBefund(d.ebkKontoNr, n, Pruefung::EbkKonto, feldname::EbkPruefung,
                                QStringLiteral("inpKontoEbkKontoNr")))
        return b;
    if (zl7Zugeordnet(d) && n.zl7Vorhanden && !n.zl7Vorhanden(d.zl7Pos1, d.zl7Pos2, d.zl7Pos3))
        return Befund {
            Pruefung::Zl7, {}, pruefungstexte::zl7Fehlt(), 7, QStringLiteral("inpBilZl7Pos1")};
    return std::nullopt;
}

} // namespace

std::optional<Befund> ersterBefund(const KontoDefinition &d, int seite, const Nachschlagen &n)
{
    if (seite >= 1 && seite <= 6)
        return seiten1bis6(d, n);
    if (seite == 7)
        return seite7(d, n);
    return std::nullopt;
}

std::optional<Befund> ersterBefundAllerSeiten(const KontoDefinition &d, const Nachschlagen &n)
{
    if (auto b = seiten1bis6(d, n))
        return b;
    return seite7(d, n);
}

namespace pruefungstexte {

QString ustKontoFehlt()
{
    return QStringLiteral("Da ein UstProzentsatz definiert wurde ")
        + QStringLiteral("muß auch eine UstKontoNummer definiert werden.") + Zeile
        + QStringLiteral("! Ausgenommen UST-Code 90 (Umsatzsteuerberichtigung) !");
}

QString bkUnvollstaendig()
{
    return QStringLiteral("Wenn \"Bk-Mieter/Eigentümer-Abr:\" definiert ist, ")
        + QStringLiteral("dann müssen auch die Felder \"BK-Block-Auswahl:\" und ")
        + QStringLiteral("\"BK-Einn-/Ausgaben-Def:\" ")
        + QStringLiteral("und \"Abr.UstProzentsatz:\" ") + QStringLiteral("definiert sein.");
}

QString oenormUnvollstaendig()
{
    return QStringLiteral("Wenn \"ÖNORM A4000-Abrechnung Konto-Abrech.Position:\" definiert ist, ")
        + QStringLiteral("dann müssen auch die Felder \"BK-Block-Auswahl:\" ")
        + QStringLiteral("und \"Abr.UstProzentsatz:\" ") + QStringLiteral("definiert sein.");
}

QString heFehlerhaft()
{
    return QStringLiteral("Wenn \"He-Einn-/Ausg-Def:\" nicht definiert ist, ")
        + QStringLiteral("dann dürfen auch die übrigen Felder ")
        + QStringLiteral("nicht definiert sein.");
}

QString zl7Fehlt()
{
    return QStringLiteral("ZL7-Bilanzposition ist nicht im Bilanzpositionsstamm enthalten.") + Zeile
        + QStringLiteral(
               "wählen Sie eine gültige Position oder geben 0 0 0 (keine Zuordnung) ein.");
}

} // namespace pruefungstexte

} // namespace kontenregeln
