#include "screens/InputFeld.h"

#include "platform/ui/MsgBox.h"

#include <QPalette>
#include <QRegularExpression>
#include <QRegularExpressionValidator>

namespace screens {

InputFeld::InputFeld(QWidget *parent)
    : QLineEdit(parent)
{
    connect(this, &QLineEdit::inputRejected, this, [this] {
        if (m_fehlermeldungen)
            platform::MsgBox(regelText(), platform::vbExclamation, QStringLiteral("Eingabefehler"));
    });
}

QString InputFeld::regelText() const
{
    QStringList regeln;
    regeln
        << (m_anzdezimalen > 0
                ? QStringLiteral("eine Zahl mit höchstens %1 Nachkommastellen").arg(m_anzdezimalen)
                : QStringLiteral("eine ganze Zahl"));
    if (m_maxwert > 0)
        regeln << QStringLiteral("höchstens %1 Stellen vor dem Komma").arg(m_maxwert);
    if (m_keinminus)
        regeln << QStringLiteral("ohne Minuszeichen");
    if (m_keintausendpkt)
        regeln << QStringLiteral("ohne Tausenderpunkte");
    return QStringLiteral("Diese Eingabe ist hier nicht möglich.\r\nErlaubt ist %1.")
        .arg(regeln.join(QStringLiteral(", ")));
}

void InputFeld::setAnzdezimalen(int n)
{
    m_anzdezimalen = n;
    validatorErneuern();
}

void InputFeld::setKeinminus(bool an)
{
    m_keinminus = an;
    validatorErneuern();
}

void InputFeld::setKeintausendpkt(bool an)
{
    m_keintausendpkt = an;
    validatorErneuern();
}

void InputFeld::setMaxwert(int n)
{
    m_maxwert = n;
    validatorErneuern();
}

QColor InputFeld::backcolor() const
{
    return palette().color(QPalette::Base);
}

void InputFeld::setBackcolor(const QColor &farbe)
{
    QPalette p = palette();
    p.setColor(QPalette::Base, farbe);
    setPalette(p);
}

bool InputFeld::zulaessig(const QString &text) const
{
    if (!validator())
        return true;
    QString t = text;
    int pos = 0;
    return validator()->validate(t, pos) != QValidator::Invalid;
}

void InputFeld::validatorErneuern()
{
    if (m_anzdezimalen < 0) {
        setValidator(nullptr);
        return;
    }
    const QString ganz
        = m_maxwert > 0 ? QStringLiteral("\\d{0,%1}").arg(m_maxwert) : QStringLiteral("\\d*");
    const QString tausend = m_keintausendpkt ? QString() : QStringLiteral("|[\\d.]*");
    const QString vorzeichen = m_keinminus ? QString() : QStringLiteral("-?");
    const QString dezimal
        = m_anzdezimalen > 0 ? QStringLiteral("(,\\d{0,%1})?").arg(m_anzdezimalen) : QString();
    const QRegularExpression muster(
        QStringLiteral("%1(%2%3)%4").arg(vorzeichen, ganz, tausend, dezimal));
    setValidator(new QRegularExpressionValidator(muster, this));
}

} // namespace screens
