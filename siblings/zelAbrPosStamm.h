#pragma once

#include "platform/storage/Database.h"

#include <QDialog>
#include <QObject>
#include <QVariant>
#include <memory>
#include <vector>

class QTableWidget;
class QLineEdit;

namespace siblings {

// One column of a position master as the maintenance dialog edits it.
struct Stammfeld
{
    QString spalte;
    QString titel;
    bool zahl = false; // else text
    int laenge = 0; // texts: maximum length
    int minimum = 0; // numbers
    int maximum = 32767;
    bool schluessel = false;
};

// A position master: its table, its columns, and the accounts that use a row.
struct Stamm
{
    QString tabelle;
    QString titel;
    std::vector<Stammfeld> felder;
    // Accounts of a booking year that use a row: the first parameter is the year, then the key
    // values in the order of the key fields.
    QString verwendung;

    static const Stamm &bilanzPos();
    static const Stamm &zl7();
    static const Stamm &abrPos();
    static const Stamm &bkBloecke();
};

// Maintains one position master: the rows in a table, "Neu" (Insert), "Ändern" (Enter),
// "Löschen" (Delete), "Schließen" (Escape). Keys stay unique; a row still used by an account of
// the booking year can be neither deleted nor given another key.
class Stammpflege : public QDialog
{
    Q_OBJECT

public:
    Stammpflege(const Stamm &stamm, std::shared_ptr<platform::storage::Database> db, int jahr,
                QWidget *parent = nullptr);

    QTableWidget *tabelle() const { return m_tabelle; }

    // The actions of the buttons; `werte` in the order of the fields. False (with a message
    // shown) when refused.
    bool neu(const QStringList &werte);
    bool aendern(int zeile, const QStringList &werte);
    bool loeschen(int zeile);

    void neuKlick();
    void aendernKlick();
    void loeschenKlick();

protected:
    bool eventFilter(QObject *obj, QEvent *ev) override;

private:
    void laden();
    QVariantList schluessel(const QVariantList &werte) const;
    // The values typed, checked; empty with a message shown when one is not acceptable.
    std::optional<QVariantList> pruefen(const QStringList &werte) const;
    // The accounts of the year using the row with `schluesselWerte` (at most one named).
    std::pair<qint64, QString> verwendet(const QVariantList &schluesselWerte) const;
    bool vorhanden(const QVariantList &schluesselWerte) const;

    const Stamm &m_stamm;
    std::shared_ptr<platform::storage::Database> m_db;
    int m_jahr;
    QTableWidget *m_tabelle = nullptr;
    std::vector<QVariantList> m_zeilen;
};

// The position masters (program id "zelAbrPosStamm"). Late-bound protocol, each taking the
// parameter array (slot 0 the database, slot 11 the booking year, slot 39 the caller):
//   BilanzPosAuswahl / Zl7PosAuswahl   choose a balance-sheet / ZL7 position
//   BilanzPosStamm / Zl7PosStamm / AbrPosStamm / BkBlockStamm   maintain a master
//   Auswahl()   after a choice: {side, ABC, Roman, Arabic, small letter} or {level 1, 2, 3};
//               null when cancelled
class zelAbrPosStamm : public QObject
{
    Q_OBJECT

public:
    explicit zelAbrPosStamm(QObject *parent = nullptr);

    Q_INVOKABLE void BilanzPosAuswahl(const QVariant &aufrufInfo);
    Q_INVOKABLE void Zl7PosAuswahl(const QVariant &aufrufInfo);
    Q_INVOKABLE void BilanzPosStamm(const QVariant &aufrufInfo);
    Q_INVOKABLE void Zl7PosStamm(const QVariant &aufrufInfo);
    Q_INVOKABLE void AbrPosStamm(const QVariant &aufrufInfo);
    Q_INVOKABLE void BkBlockStamm(const QVariant &aufrufInfo);
    Q_INVOKABLE QVariant Auswahl() const { return m_auswahl; }

private:
    void auswaehlen(const QVariant &aufrufInfo, const Stamm &stamm);
    void pflegen(const QVariant &aufrufInfo, const Stamm &stamm);

    QVariant m_auswahl;
};

} // namespace siblings
