#pragma once

#include <QObject>
#include <QString>

class QWidget;

// F1: the session's help file (see HilfeAufrufChk) opened in the help window at the help
// context of the focused control.
namespace frame {

// The help context of a control. Walking from the control up to its window, the first widget
// whose "HelpContextID" property names an anchor of the session's help file, or whose
// objectName does, first with the window's name in front ("frmKrNeu.cmdOK": names that several
// screens use), then alone; "" (the beginning of the file) when none does. Without a readable help
// file: the first HelpContextID on the way, else the window's objectName.
QString hilfekontext(const QWidget *steuerelement);

// Shows the session's help at the context of `steuerelement`. Nothing happens when the session
// has no help (HilfeVorhanden is false); a file that cannot be shown gets a message. Returns
// whether the help window shows the file.
bool hilfeZeigen(const QWidget *steuerelement);

// Opens help file `datei` at anchor `kontext` in the help window; what the error dialog's help
// button calls (platform::hilfeOeffnen). False, with a message, when the file cannot be shown.
bool hilfeOeffnen(const QString &datei, const QString &kontext);

// Event filter for a window: F1 anywhere in it shows the help of the focused control.
class F1Hilfe : public QObject
{
    Q_OBJECT

public:
    explicit F1Hilfe(QWidget *fenster);

protected:
    bool eventFilter(QObject *objekt, QEvent *ereignis) override;

private:
    QWidget *m_fenster;
};

} // namespace frame
