#pragma once

#include "platform/storage/Aenderungsprotokoll.h"

#include <QDialog>
#include <QFrame>
#include <functional>
#include <vector>

class QLabel;
class QPushButton;
class QTableWidget;

namespace frame {

// The history of one account from the change log, newest first: when (local time), who, the
// field by its caption on the screen, the old and the new value. "Wert übernehmen" hands the
// old value of the chosen row back to the screen, which puts it into its field as an edit of the
// user, so that every check runs and the save is logged like any other.
class Verlaufsfenster : public QDialog
{
    Q_OBJECT

public:
    using Beschriftung = std::function<QString(const QString &feld)>;
    // Puts the value into the field's widget; false when the screen does not show the field.
    using Uebernehmen = std::function<bool(const QString &feld, const QString &wert)>;

    Verlaufsfenster(const QString &titel,
                    std::vector<platform::storage::Protokolleintrag> eintraege,
                    Beschriftung beschriftung, Uebernehmen uebernehmen, QWidget *parent = nullptr);

    QTableWidget *tabelle() const { return m_tabelle; }
    QPushButton *uebernehmenKnopf() const { return m_uebernehmen; }

private:
    void auswahlGeaendert();
    void wertUebernehmen();

    std::vector<platform::storage::Protokolleintrag> m_eintraege;
    Uebernehmen m_uebernehmenFn;
    QTableWidget *m_tabelle = nullptr;
    QPushButton *m_uebernehmen = nullptr;
};

// The notice of another user's save or delete of the account a screen shows: a bar at the foot
// of the window, below its controls (the window grows by the bar's height while it shows), so it
// covers nothing and asks nothing; the user goes on working. "Neu laden" is offered only when the
// user has no pending edits: with them, the save's own conflict question decides.
class FremdeAenderungLeiste : public QFrame
{
    Q_OBJECT

public:
    FremdeAenderungLeiste(QWidget *fenster, std::function<void()> neuLaden);

    // `felder`: the captions of the changed fields; `offen`: the user has pending edits.
    void zeigen(const QString &konto, const QString &wer, const QStringList &felder, bool geloescht,
                bool offen);
    void ausblenden();
    // The account the notice speaks of ("" when hidden).
    QString konto() const { return m_zuwachs > 0 ? m_konto : QString(); }

protected:
    bool eventFilter(QObject *obj, QEvent *ev) override;

private:
    void anpassen();

    QWidget *m_fenster;
    QLabel *m_text;
    QPushButton *m_neuLaden;
    QString m_konto;
    int m_zuwachs = 0; // what the window grew by for the bar
};

// The caption of the widget on `form` bound to `feld` (DataField, case ignored), looked up with
// `beschriftung` by the widget's name; the field name itself where no widget shows it.
QString feldBeschriftungAufForm(QWidget *form, const QString &feld,
                                const std::function<QString(QStringView)> &beschriftung);

// Puts `wert` into the widget on `form` bound to `feld` as the user would type or choose it and
// gives it the focus. False when no enabled, shown widget holds the field.
bool wertEinsetzen(QWidget *form, const QString &feld, const QString &wert);

} // namespace frame
