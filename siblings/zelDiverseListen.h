#pragma once

#include <QObject>
#include <QVariant>

namespace siblings {

// The selection lists of the suite (program id "zelDiverseListen"). Late-bound protocol:
//   KontenListe(aufrufInfo)      the general-ledger accounts of a booking year (slot 0 the
//                                database, slot 11 the booking year)
//   KreditorenListe(aufrufInfo)  the creditor accounts (slot 0 the database)
//   AuswahlNr()                  the chosen account number, trailing blanks removed; null when
//                                the list was cancelled or could not be shown
// Each list is a modal dialog filtered as the user types (see Auswahlliste).
class zelDiverseListen : public QObject
{
    Q_OBJECT

public:
    explicit zelDiverseListen(QObject *parent = nullptr);

    Q_INVOKABLE void KontenListe(const QVariant &aufrufInfo);
    Q_INVOKABLE void KreditorenListe(const QVariant &aufrufInfo);
    Q_INVOKABLE QVariant AuswahlNr() const { return m_auswahl; }

private:
    void zeigen(const QVariant &aufrufInfo, bool kreditoren);

    QVariant m_auswahl;
};

} // namespace siblings
