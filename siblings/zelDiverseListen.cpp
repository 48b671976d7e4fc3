#include "siblings/zelDiverseListen.h"

#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"
#include "platform/ui/MsgBox.h"
#include "siblings/Auswahlliste.h"

#include <QApplication>

namespace siblings {

namespace {

constexpr int SlotDatenbank = 0;
constexpr int SlotKreditorenJahr = 10;
constexpr int SlotBuchungsjahr = 11;

QString rtrim(const QString &s)
{
    qsizetype n = s.size();
    while (n > 0 && s.at(n - 1) == u' ')
        --n;
    return s.left(n);
}

} // namespace

zelDiverseListen::zelDiverseListen(QObject *parent)
    : QObject(parent)
{ }

void zelDiverseListen::KontenListe(const QVariant &aufrufInfo)
{
    zeigen(aufrufInfo, false);
}

void zelDiverseListen::KreditorenListe(const QVariant &aufrufInfo)
{
    zeigen(aufrufInfo, true);
}

void zelDiverseListen::zeigen(const QVariant &aufrufInfo, bool kreditoren)
{
    m_auswahl = QVariant();
    const QVariantList info = aufrufInfo.toList();
    const QString ort = info.value(SlotDatenbank).toString();
    bool jahrOk = false;
    const int jahr = info.value(kreditoren ? SlotKreditorenJahr : SlotBuchungsjahr).toInt(&jahrOk);
    if (ort.isEmpty() || (!kreditoren && !jahrOk)) {
        platform::MsgBox(QStringLiteral("Die Auswahlliste wurde ohne Datenbank oder "
                                        "Buchungsjahr aufgerufen."),
                         platform::vbOKOnly | platform::vbExclamation);
        return;
    }
    std::vector<QStringList> zeilen;
    try {
        auto db = platform::storage::Database::open(ort);
        auto c = kreditoren
            ? db->query(QStringLiteral("SELECT KrKontoNr, KrKontoBezeichnung FROM "
                                       "KreditorenKontenstamm ORDER BY KrKontoNr"))
            : db->query(QStringLiteral("SELECT KontoNr, KontoBezeichnung FROM "
                                       "ObjKanzleiKontenstamm WHERE KontoJJ = ? ORDER BY KontoNr"),
                        {jahr});
        while (c->next())
            zeilen.push_back({rtrim(c->wert(0).toString()), c->wert(1).toString()});
    } catch (const platform::RuntimeError &e) {
        platform::MsgBox(QStringLiteral("Die Auswahlliste kann nicht geladen werden:\r\nFehler %1: "
                                        "%2")
                             .arg(e.nummer())
                             .arg(e.beschreibung()),
                         platform::vbOKOnly | platform::vbExclamation);
        return;
    }
    const QString titel = kreditoren
        ? QStringLiteral("Kreditorenkonten auswählen")
        : QStringLiteral("Sachkonten des Buchungsjahres %1 auswählen").arg(jahr);
    const QStringList spalten {QStringLiteral("Kontonummer"), QStringLiteral("Bezeichnung")};
    Auswahlliste liste(titel, spalten, zeilen, QApplication::activeWindow());
    if (liste.exec() == QDialog::Accepted && liste.gewaehlt() >= 0)
        m_auswahl = zeilen[size_t(liste.gewaehlt())].value(0);
}

} // namespace siblings
