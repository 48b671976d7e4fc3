#pragma once

#include "Database.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <memory>
#include <vector>

namespace platform::storage {

class Zeilenspeicher;

// One condition of FindFirst: field = value (text compared exactly, numbers by value).
struct Kriterium
{
    QString feld;
    QVariant wert;
};

enum class EditMode { Keiner, Bearbeiten, Neu };

// The rows of one query held in memory with a current position, after the record sets of the
// original's database engine. Rows are packed compactly (tens of thousands of accounts stay
// small); the current row is decoded once per move.
//
// Update and Delete name the row by its table key and check that the stored row still holds
// the values that were read. When another connection changed the row meanwhile, Update still
// writes where the fields it changed and those the other changed are different ones: this
// user's fields go on top of the row as stored now, checked against it again in the same
// statement (fremdGeaenderteFelder() names the other's fields). Otherwise, and for a row
// deleted meanwhile, Update and Delete raise RuntimeError 3197 and write nothing. Only a query
// on one table whose key columns are all selected is updatable; otherwise AddNew/Edit/Delete
// raise 3027.
//
// Field names are matched without regard to ASCII case; an unknown name raises 3265.
// Operations that need a current record raise 3021 when there is none.
class Recordset
{
public:
    // Runs the query at once.
    Recordset(std::shared_ptr<Database> db, QString sql, QVariantList params = {});
    ~Recordset();
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    const std::shared_ptr<Database> &database() const { return m_db; }
    const QString &sql() const { return m_sql; }
    const QVariantList &params() const { return m_params; }
    // Table named by the query ("" when not updatable).
    const QString &tabelle() const { return m_tabelle; }

    int RecordCount() const;
    bool eof() const;
    bool bof() const;
    // Index of the current row (0-based), -1 before the first, RecordCount() after the last.
    int AbsolutePosition() const;
    // Makes row `index` current (3021 when there is no such row).
    void setAbsolutePosition(int index);

    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();

    // Searches from the first row; on a match it becomes current and NoMatch() is false;
    // otherwise the position stays and NoMatch() is true.
    void FindFirst(const std::vector<Kriterium> &kriterien);
    void FindNext(const std::vector<Kriterium> &kriterien);
    bool NoMatch() const { return m_noMatch; }

    // A bookmark names a row for as long as the record set lives.
    using Bookmark = qint64;
    Bookmark bookmark() const;
    void setBookmark(Bookmark b);

    // A second record set over the same rows with a position of its own; it moves without
    // raising anything. Edits made through either are seen by both.
    std::unique_ptr<Recordset> Clone() const;

    // Runs the query again; the first row becomes current.
    void Requery();

    // Editing. AddNew starts an empty row (all fields null); Update inserts it and appends it
    // to the rows, the current row stays the one before AddNew. Edit starts changing the current
    // row; Update writes the changed fields only. CancelUpdate drops pending changes.
    void AddNew();
    void Edit();
    void Update();
    void CancelUpdate();
    EditMode editMode() const { return m_editMode; }
    // Deletes the current row; afterwards there is no current row until the next move, and
    // MoveNext goes to the row after the deleted one.
    void Delete();

    // Columns of the result, as the engine names them.
    QStringList feldnamen() const;
    int feldIndex(const QString &name) const; // -1 when unknown
    QVariant feld(const QString &name) const;
    QVariant feld(int index) const;
    // Only in AddNew or Edit mode (else 3020).
    void setFeld(const QString &name, const QVariant &wert);
    void setFeld(int index, const QVariant &wert);
    // Fields changed since Edit/AddNew.
    QStringList geaenderteFelder() const;

    // For a conflict (3197) of the last Update: the stored row as it is now, or an empty list
    // when it was deleted meanwhile. Field order as feldnamen().
    QVariantList gespeicherteZeile();
    // The fields another user had changed when the last Update wrote this user's fields on top
    // of them (empty when the row was as read).
    const QStringList &fremdGeaenderteFelder() const { return m_fremdGeaendert; }
    // Reads the current row again as stored, so that what is shown and the next Edit start from
    // it; pending edits are dropped. False when the row is gone (it stays as it was read).
    bool zeileAuffrischen();
    // The current row was deleted by another user: it leaves the rows as after Delete.
    void alsGeloeschtVermerken();

    // Approximate heap bytes held by the rows (for benchmarks).
    qint64 speicherBytes() const;

private:
    struct Zustand;
    // Where a record set stands. The row is held by its id, so that deletes and appends made
    // through a clone on the shared rows do not shift it to another row.
    enum class Lage { VorErstem, AufZeile, Geloescht, NachLetztem };
    struct KlonTag
    {
    };

public:
    // For Clone() only (std::make_unique needs it public).
    Recordset(KlonTag, const Recordset &quelle);

private:
    void laden();
    void abgleichen() const;
    void positionieren(int index);
    void ansEnde();
    void bearbeitungVerwerfen();
    int aktuellerIndex() const; // 3021 when there is no current row
    const QVariantList &aktuelleWerte() const;
    int feldPruefen(const QString &name) const;
    void aktualisierbarPruefen();
    // Marks the table's columns and key in the rows' storage (one round trip the first time a
    // connection meets the table).
    void tabelleZuordnen(Zeilenspeicher &z) const;
    QString vergleichsOperator() const;
    // WHERE text naming the row by its key and its values as read; fills `params`.
    QString zeilenBedingung(const QVariantList &gelesen, QVariantList &params) const;
    // The stored row with the given key values, re-read in the columns of the result.
    QVariantList zeileLesen(const QVariantList &schluesselWerte) const;
    // The same packed into `ziel` (empty when the row is gone): values as read and as delivered.
    void zeileLesen(const QVariantList &schluesselWerte, Zeilenspeicher &ziel) const;
    // After an UPDATE that found the row changed: writes this user's `geaendert` fields on top
    // of the stored row when the other user changed none of them.
    bool zusammenfuehren(const QStringList &geaendert);
    QVariantList schluesselAus(const QVariantList &werte) const;
    void suchen(const std::vector<Kriterium> &kriterien, int ab);
    void neueZeileSpeichern();
    void geaenderteZeileSpeichern();
    QString zuweisungenDer(const QStringList &geaendert, QVariantList &params) const;

    std::shared_ptr<Database> m_db;
    QString m_sql;
    QVariantList m_params;
    QString m_tabelle;
    QString m_tabelleSql; // as the generated statements name it
    std::shared_ptr<Zeilenspeicher> m_zeilen;
    mutable Lage m_lage = Lage::NachLetztem;
    mutable int m_pos = 0;
    mutable qint64 m_id = 0;
    mutable quint64 m_stand = 0;
    bool m_noMatch = false;
    EditMode m_editMode = EditMode::Keiner;
    std::unique_ptr<Zustand> m_zustand;
    QStringList m_fremdGeaendert;
    // The decoded current row, valid while the row keeps its packing.
    mutable const Zeilenspeicher *m_cacheSpeicher = nullptr;
    mutable quint32 m_cacheOffset = 0;
    mutable QVariantList m_cache;
};

} // namespace platform::storage
