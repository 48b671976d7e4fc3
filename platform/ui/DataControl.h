#pragma once

#include "platform/storage/Recordset.h"

#include <QPointer>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QWidget>
#include <memory>
#include <vector>

class QLabel;
class QToolButton;

namespace platform {

class DataControl;

// What a move of the data control is about to do; handed to Validate as Action. A handler
// that sets Action to 0 cancels it.
enum DataAction : int {
    vbDataActionCancel = 0,
    vbDataActionMoveFirst = 1,
    vbDataActionMovePrevious = 2,
    vbDataActionMoveNext = 3,
    vbDataActionMoveLast = 4,
    vbDataActionAddNew = 5,
    vbDataActionUpdate = 6,
    vbDataActionDelete = 7,
    vbDataActionFind = 8,
    vbDataActionBookmark = 9,
    vbDataActionClose = 10,
    vbDataActionUnload = 11,
};

// The record set as screen code sees it through `KKData.Recordset`: every move goes through the
// data control (Validate, save of the bound edits, move, Reposition). Everything else is passed
// straight to the record set. With no record set (before the first Refresh or after a failed
// one) every call raises RuntimeError 91.
//
// A move returns false when it did not take place: Validate cancelled it or the save failed
// (the Error event has then been raised). Invalid moves (MoveNext at eof(), MoveFirst on an
// empty set) raise 3021 before Validate runs, as the record set itself does.
class DataControlRecordset
{
public:
    explicit DataControlRecordset(DataControl &dc)
        : m_dc(dc)
    { }

    int RecordCount() const;
    bool eof() const;
    bool bof() const;
    int AbsolutePosition() const;

    bool MoveFirst();
    bool MoveLast();
    bool MoveNext();
    bool MovePrevious();

    // Searches first without moving; only a match raises Validate and moves.
    bool FindFirst(const std::vector<storage::Kriterium> &kriterien);
    bool FindNext(const std::vector<storage::Kriterium> &kriterien);
    bool NoMatch() const { return m_noMatch; }

    storage::Recordset::Bookmark bookmark() const;
    bool setBookmark(storage::Recordset::Bookmark b);

    // Runs the query again after Validate and the save; then the first row and Reposition.
    bool Requery();

    // Moves silently, as a clone of the original did.
    std::unique_ptr<storage::Recordset> Clone() const;

    // Passed through unchanged: code that edits the record set itself. The bound widgets are
    // not touched; a pending Edit/AddNew makes the next move save (Validate gets Save = true).
    void AddNew();
    void Edit();
    void Update();
    void CancelUpdate();
    storage::EditMode editMode() const;
    // Deletes the current row; edits of the bound widgets for it are dropped.
    void Delete();

    QStringList feldnamen() const;
    QVariant feld(const QString &name) const;
    void setFeld(const QString &name, const QVariant &wert);

private:
    storage::Recordset &rs() const;
    bool finden(const std::vector<storage::Kriterium> &kriterien, bool vomAnfang);

    DataControl &m_dc;
    bool m_noMatch = false;
};

// A data control: a small navigation bar (first, previous, caption, next, last) that holds one
// record set of the shared database and the widgets bound to its fields.
//
// Refresh opens Database::open(DatabaseName) with the password of Connect ("pwd=...;", else
// the suite's password) and runs RecordSource with its bound parameters. Engine errors there
// raise Error(DataErr, Response) instead of throwing; with Response left at 1 the control then
// shows its own standard message box.
//
// The one save path: every move (Recordset() moves, FindFirst that finds, setBookmark,
// Requery, Refresh, schliessen(), UpdateRecord()) first raises Validate(Action, Save), Save
// being true when a bound widget was edited or the record set is in Edit/AddNew mode. Action = 0
// cancels: nothing moves, nothing is written, the edits stay in the widgets. Otherwise, when
// Save is still true, the edited bound values are written with Edit/setFeld/Update (one Update),
// then the move happens and Reposition is raised. A failed write (3197, 3022, 13 for a text that
// does not fit the column) cancels the move, keeps the typed values and raises Error.
// Validate handlers that move the record set do so without a nested Validate.
class DataControl : public QWidget
{
    Q_OBJECT
    // The type name by which screens find their data controls among all controls.
    Q_CLASSINFO("TypeName", "Data")
    Q_PROPERTY(QString DatabaseName READ DatabaseName WRITE setDatabaseName)
    Q_PROPERTY(QString Connect READ Connect WRITE setConnect)
    Q_PROPERTY(QString RecordSource READ RecordSource WRITE setRecordSource)
    Q_PROPERTY(QString Caption READ Caption WRITE setCaption)

public:
    explicit DataControl(QWidget *parent = nullptr);
    ~DataControl() override;

    QString DatabaseName() const { return m_databaseName; }
    void setDatabaseName(const QString &name) { m_databaseName = name; }
    QString Connect() const { return m_connect; }
    void setConnect(const QString &connect) { m_connect = connect; }
    QString RecordSource() const { return m_recordSource; }
    // Takes effect with the next Refresh. Values typed by users belong into `params`.
    void setRecordSource(const QString &sql) { setRecordSource(sql, {}); }
    void setRecordSource(const QString &sql, const QVariantList &params);
    const QVariantList &recordSourceParams() const { return m_params; }
    QString Caption() const;
    void setCaption(const QString &caption);
    bool Visible() const { return !isHidden(); }

    // Validate and save on the old record set, then a new one from RecordSource on its first
    // row, then Reposition. False when cancelled or failed (Error raised; after an engine
    // error the control holds no record set).
    bool Refresh();
    // Refresh run by a procedure that traps its own errors (a look-up): an engine error is
    // raised to the caller as RuntimeError, so the procedure's trap reports it once with its own
    // place; no Error event and no message of the control. The control then holds no record
    // set. False only when Validate cancelled.
    bool RefreshOderFehler();

    DataControlRecordset &Recordset() { return m_zugang; }
    DataControlRecordset &rs() { return m_zugang; }
    // The record set itself, for code that must bypass Validate; nullptr before Refresh.
    storage::Recordset *recordsetDirekt() const { return m_rs.get(); }

    // Saves the bound edits without moving (through Validate). True when nothing failed.
    bool UpdateRecord();
    // Shows the current row again in every bound widget; edits are dropped.
    void UpdateControls();
    // Closing the screen: Validate and save. False keeps the screen open.
    bool schliessen();

    // Binds `w` to `feld`: QLineEdit text, QLabel text (display only, never written back),
    // QCheckBox checked (-1/0), QComboBox current index, or else the widget's user property.
    // Binding the same widget again replaces its field.
    void bind(QWidget *w, const QString &feld);
    void unbind(QWidget *w);

    // True while the control writes field values into the widgets; widget change signals
    // seen meanwhile are not edits of the user.
    bool fuellt() const { return m_fuellt; }
    // A bound widget holds a value other than the one the control put there.
    bool bearbeitet() const;

    // Raises Error(nummer, Response); Response left at 1 shows the control's standard message.
    void fehlerAusloesen(int nummer, const QString &beschreibung);

signals:
    void Reposition();
    void Validate(int &Action, bool &Save);
    void Error(int DataErr, int &Response);

private:
    friend class DataControlRecordset;

    struct Bindung
    {
        QPointer<QWidget> widget;
        QString feld;
        QVariant gezeigt; // the widget's value right after the control filled it
    };

    // Validate + save; false when the action must not happen.
    bool vorBewegung(int action, bool speichernErzwingen = false);
    // Opens the database and runs RecordSource; raises RuntimeError (the control then holds no
    // record set).
    void neuLaden();
    bool speichern();
    // A save refused because another user changed (or deleted, `gespeichert` empty) the row:
    // names the differing fields with the stored and the typed values and offers to reload.
    void konfliktMelden(const QVariantList &gespeichert,
                        const std::vector<std::pair<QString, QVariant>> &eingaben);
    void nachBewegung();
    void widgetsFuellen();
    bool bindungFuellen(Bindung &b, QString *fehler);
    void bearbeitungVerwerfen();
    bool aktuelleZeile() const;
    QString passwort() const;
    void navigieren(int action);
    void standardMeldung(int nummer, const QString &beschreibung);

    QString m_databaseName;
    QString m_connect;
    QString m_recordSource;
    QVariantList m_params;
    std::unique_ptr<storage::Recordset> m_rs;
    DataControlRecordset m_zugang {*this};
    std::vector<Bindung> m_bindungen;
    bool m_fuellt = false;
    bool m_inValidate = false;
    QLabel *m_caption = nullptr;
};

// Reading and writing the value of a bound widget (exposed for tests and InputFeld).
namespace bindung {
// The value the widget holds, in the form compared to detect edits.
QVariant widgetWert(QWidget *w);
// Shows a field value; null shows as empty.
void widgetSetzen(QWidget *w, const QVariant &feldwert);
// Field value -> text as a bound text box shows it (null -> "", 2.5 -> "2,5", dates dd.MM.yyyy).
QString anzeigeText(const QVariant &feldwert);
// Kinds of columns text is converted to.
enum class Art { Unbekannt, Ganzzahl, Kommazahl, Text, Datum };
// Converts a widget value to the column kind; raises RuntimeError 13 when it does not fit.
// Empty text gives null for every kind but Text.
QVariant inFeldwert(const QVariant &widgetWert, Art art);
} // namespace bindung

} // namespace platform
