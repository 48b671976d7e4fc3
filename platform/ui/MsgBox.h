#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <deque>
#include <functional>
#include <initializer_list>

namespace platform {

// Button, icon and default-button flags of the original's message box; they add up.
enum : int {
    vbOKOnly = 0,
    vbOKCancel = 1,
    vbAbortRetryIgnore = 2,
    vbYesNoCancel = 3,
    vbYesNo = 4,
    vbRetryCancel = 5,
    vbCritical = 16,
    vbQuestion = 32,
    vbExclamation = 48,
    vbInformation = 64,
    vbDefaultButton1 = 0,
    vbDefaultButton2 = 256,
    vbDefaultButton3 = 512,
};

// Answers.
enum : int {
    vbOK = 1,
    vbCancel = 2,
    vbAbort = 3,
    vbRetry = 4,
    vbIgnore = 5,
    vbYes = 6,
    vbNo = 7,
};

// The application title, the default title of every box.
QString anwendungsTitel();

// Shows a modal QMessageBox with exactly `text` (plain text; "\r\n" breaks lines) and `title`
// (the application title when empty), the buttons and icon of `buttons`, and returns the answer.
// The first button is the default unless vbDefaultButton2/3 says otherwise. Raises RuntimeError
// 5 for a button group the original does not know.
int MsgBox(const QString &text, int buttons = vbOKOnly, const QString &title = {});

// The same with the button argument as a variant, converted as the original converts it: a
// number or numeric text is taken, empty counts as 0, other text raises RuntimeError 13 before
// any box is shown.
int MsgBox(const QString &text, const QVariant &buttons, const QString &title = {});

// Shows `text` in a box that does not wait for an answer (OK only, information icon) and returns
// at once: a notice the user may read while going on with the work.
void Hinweis(const QString &text, const QString &title = {});

// The answers the buttons of a button group give, in the order shown.
QList<int> MsgBoxAntworten(int buttons);

struct MsgBoxEintrag
{
    QString text;
    int buttons = 0;
    QString titel; // as shown, the default title filled in
    int antwort = 0;
    bool nichtModal = false; // a notice of Hinweis()
};

// Test handler: while it lives, MsgBox shows nothing; it records every box and answers from a
// scripted queue (or a function). With an empty queue, or a scripted answer that no button of
// the box gives, it records a warning, logs it and answers with the box's default button, so a
// test that checks warnungen() fails instead of hanging. Nests: the previous handler returns
// when it is destroyed.
class MsgBoxProtokoll
{
public:
    MsgBoxProtokoll();
    ~MsgBoxProtokoll();
    MsgBoxProtokoll(const MsgBoxProtokoll &) = delete;
    MsgBoxProtokoll &operator=(const MsgBoxProtokoll &) = delete;

    void antworte(int antwort) { m_antworten.push_back(antwort); }
    void antworte(std::initializer_list<int> antworten);
    // Answers every box for which no scripted answer is queued.
    void setAntwortFunktion(std::function<int(const MsgBoxEintrag &)> f);

    const QList<MsgBoxEintrag> &eintraege() const { return m_eintraege; }
    qsizetype anzahl() const { return m_eintraege.size(); }
    const MsgBoxEintrag &letzter() const { return m_eintraege.back(); }
    QStringList texte() const;
    const QStringList &warnungen() const { return m_warnungen; }
    qsizetype offeneAntworten() const { return qsizetype(m_antworten.size()); }
    void leeren();

    // Used by MsgBox and Hinweis (a notice takes no scripted answer).
    int beantworten(MsgBoxEintrag eintrag);
    void vermerken(MsgBoxEintrag eintrag) { m_eintraege.append(std::move(eintrag)); }

private:
    std::deque<int> m_antworten;
    std::function<int(const MsgBoxEintrag &)> m_funktion;
    QList<MsgBoxEintrag> m_eintraege;
    QStringList m_warnungen;
    MsgBoxProtokoll *m_vorher = nullptr;
};

} // namespace platform
