#pragma once

#include <QObject>
#include <QUrl>
#include <functional>

class QWidget;

// F1: the help file of the session (see HilfeAufrufChk) opened at the help context of the
// focused control.
namespace frame {

// The context of a control: its "HelpContextID" property, else that of the nearest parent that
// has one, else the objectName of the control when the help file has an anchor of that name,
// else the window's objectName.
QString hilfekontext(const QWidget *steuerelement);

// file URL of `hilfedatei` with the context as fragment; empty when there is no help file.
QUrl hilfeAdresse(const QString &hilfedatei, const QWidget *steuerelement);

// Opens the help for the control through the help opener (by default the desktop's browser).
// Returns false when there is no help file or it could not be opened.
bool hilfeZeigen(const QWidget *steuerelement);

// Tests replace the opener; an empty function restores the default.
void setHilfeOeffner(std::function<bool(const QUrl &)> oeffner);

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
