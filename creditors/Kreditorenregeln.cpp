#include "creditors/Kreditorenregeln.h"

#include "platform/core/RuntimeError.h"
#include "platform/core/VbWerte.h"

namespace creditors::regeln {

qint32 kontoNr(const QString &feldtext)
{
    // An empty number field holds 0, as the entry field reports it.
    if (feldtext.trimmed().isEmpty())
        return 0;
    return platform::vb::CLng(feldtext);
}

bool istNull(const QString &feldtext)
{
    try {
        return kontoNr(feldtext) == 0;
    } catch (const platform::RuntimeError &) {
        return true;
    }
}

std::optional<qint64> typusCode(const QString &feldtext)
{
    bool ok = false;
    const qint64 code = feldtext.trimmed().toLongLong(&ok);
    if (!ok)
        return std::nullopt;
    return code;
}

bool typusGueltig(const std::optional<qint64> &code, int eintraege)
{
    return code && *code >= 0 && *code <= eintraege - 1;
}

std::optional<int> typusKorrektur(qint64 typus, bool buchungenVorhanden, int buchungMitObjekt)
{
    if (!buchungenVorhanden)
        return std::nullopt;
    if (typus == Kanzleikonto)
        return buchungMitObjekt == 0 ? std::nullopt : std::optional<int>(Objektkonto);
    return buchungMitObjekt == 1 ? std::nullopt : std::optional<int>(Kanzleikonto);
}

int buchungMitObjekt(const QVariant &kbObjNr)
{
    // An empty object number is never equal to 0.
    if (!kbObjNr.isValid() || kbObjNr.isNull())
        return 1;
    try {
        return platform::vb::gleich(kbObjNr, 0) ? 0 : 1;
    } catch (const platform::RuntimeError &) {
        return 1; // text that is no number is an object number other than 0
    }
}

QString nichtExistentNurAnzeige(qint32 nr)
{
    return QStringLiteral("Das KreditorenKonto mit der Nummer: ") + QString::number(nr)
        + QStringLiteral(" ist nicht existent.") + CrLf + CrLf
        + QStringLiteral("Bitte treffen Sie eine andere Auswahl.");
}

QString nichtExistentFrage(qint32 nr)
{
    return QStringLiteral("das KreditorenKonto mit der Nummer: ") + QString::number(nr)
        + QStringLiteral(" ist nicht existent") + CrLf + CrLf
        + QStringLiteral("Klicken Sie \"JA\" oder Enter wenn Sie eine andere ")
        + QStringLiteral("Auswahl treffen möchten ") + CrLf
        + QStringLiteral("oder \"Nein\" wenn Sie einen neuen KreditorenKontenStammsatz "
                         "eröffnen wollen:");
}

QString neueroeffnenFrage(const QString &nrText6)
{
    return QStringLiteral("Kontenstammsatz Konto ") + nrText6 + QStringLiteral(" neueröffnen ?");
}

QString neuAngelegt()
{
    return QStringLiteral("Sie haben Soeben einen neuen KreditorenKontenStammsatz eröffnet.") + CrLf
        + CrLf
        + QStringLiteral("Die Feldinhalte des neuen KreditorenKontos sind vom System angenommene "
                         "Werte, die von Ihnen verifiziert werden müssen.")
        + CrLf
        + QStringLiteral("Klicken Sie auf Ok und kontrollieren und ergänzen Sie anschließend die "
                         "Feldinhalte gemäß Ihren Erfordernissen !");
}

QString typusKorrigiert(int neuerTypus)
{
    if (neuerTypus == Objektkonto) {
        return QStringLiteral("Der KontoTypus \"Kanzleikonto\" ist ungültig, da bereits Buchungen "
                              "mit Objektnummer gespeichert sind.")
            + CrLf + QStringLiteral("Der KontoTypus wird auf \"ObjektKonto\" berichtigt.");
    }
    return QStringLiteral("Der KontoTypus \"Objektkonto\" ist ungültig, da bereits Buchungen mit "
                          "Objektnummer NULL gespeichert sind.")
        + CrLf + QStringLiteral("Der KontoTypus wird auf \"Kanzleikonto\" berichtigt.");
}

QString nichtLoeschbar(const QString &nrFeldtext)
{
    return QStringLiteral("KreditorenKonto mit der Konto-Nr: ") + nrFeldtext
        + QStringLiteral(" ist nicht löschbar, da ")
        + QStringLiteral("Buchungen zu diesem Konto existieren.");
}

QString nichtGeloeschtOhneBuchungen(const QString &nrFeldtext)
{
    return QStringLiteral("KreditorenKonto mit der Konto-Nr: ") + nrFeldtext
        + QStringLiteral(" wurde nicht gelöscht, da die Buchungen zu diesem Konto nicht "
                         "gelesen werden konnten.");
}

QString buchungenGeloescht(qint32 anzahl)
{
    return QStringLiteral("Löschung beendet.") + CrLf + QStringLiteral("Es wurden ")
        + QString::number(anzahl) + QStringLiteral(" Buchungssätze gelöscht.");
}

} // namespace creditors::regeln
