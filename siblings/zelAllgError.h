#pragma once

#include <QDialog>
#include <QObject>
#include <QString>

class QLabel;
class QPushButton;

namespace siblings {

// The nine values the error report hands over, in their order.
struct AllgFehler
{
    int nummer = 0;
    QString beschreibung;
    QString hilfedatei;
    QString hilfekontext;
    QString programm;
    QString fehlerOrt;
    QString zusatz1;
    QString zusatz2;
    bool flag = false; // kept for the suite's protocol; the dialog does not act on it
};

// The modal dialog: every value as selectable text, "OK", and "Hilfe" when a help file is given
// (opens the HTML help file at the anchor named by the help context).
class AllgErrorDialog : public QDialog
{
    Q_OBJECT
public:
    explicit AllgErrorDialog(const AllgFehler &fehler, QWidget *parent = nullptr);

    // The whole report as plain text (also what "Kopieren" puts on the clipboard).
    QString berichtText() const;

private:
    void hilfeZeigen();

    AllgFehler m_fehler;
};

// The suite's common error dialog as a component (program id "zelAllgError"). Late-bound
// protocol: Uebergeben(nine values), Anzeigen(), then Ergebnis(); or Melden(nine values), which
// does all three and returns the answer.
class zelAllgError : public QObject
{
    Q_OBJECT
public:
    explicit zelAllgError(QObject *parent = nullptr);

    Q_INVOKABLE void Uebergeben(int fehlerNr, const QString &beschreibung,
                                const QString &hilfedatei, const QString &hilfekontext,
                                const QString &programm, const QString &fehlerOrt,
                                const QString &zusatz1, const QString &zusatz2, bool flag);
    // Shows the dialog modally; the answer is 1 (OK), also when it is closed otherwise.
    Q_INVOKABLE void Anzeigen();
    Q_INVOKABLE qint16 Ergebnis() const { return m_ergebnis; }
    Q_INVOKABLE qint16 Melden(int fehlerNr, const QString &beschreibung, const QString &hilfedatei,
                              const QString &hilfekontext, const QString &programm,
                              const QString &fehlerOrt, const QString &zusatz1,
                              const QString &zusatz2, bool flag);

    const AllgFehler &fehler() const { return m_fehler; }

private:
    AllgFehler m_fehler;
    qint16 m_ergebnis = 0;
};

} // namespace siblings

// Registers the bundled siblings with CreateObject.
void siblingsRegistrieren();
