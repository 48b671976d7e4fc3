#pragma once

#include <QLineEdit>

namespace screens {

// The suite's entry field: a line edit that enforces its number format while the user types.
// With anzdezimalen < 0 (the default) the field takes any text; otherwise it takes a number with
// at most that many decimals, without minus sign when keinminus, without thousands separators
// when keintausendpkt, and at most maxwert characters before the decimal comma when maxwert > 0.
// fehlermeldungen: the field tells the user itself (a short box) why a key was refused.
class InputFeld : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(int anzdezimalen READ anzdezimalen WRITE setAnzdezimalen)
    Q_PROPERTY(bool keinminus READ keinminus WRITE setKeinminus)
    Q_PROPERTY(bool keintausendpkt READ keintausendpkt WRITE setKeintausendpkt)
    Q_PROPERTY(int maxwert READ maxwert WRITE setMaxwert)
    Q_PROPERTY(bool fehlermeldungen READ fehlermeldungen WRITE setFehlermeldungen)
    Q_PROPERTY(QColor backcolor READ backcolor WRITE setBackcolor)

public:
    explicit InputFeld(QWidget *parent = nullptr);

    int anzdezimalen() const { return m_anzdezimalen; }
    void setAnzdezimalen(int n);
    bool keinminus() const { return m_keinminus; }
    void setKeinminus(bool an);
    bool keintausendpkt() const { return m_keintausendpkt; }
    void setKeintausendpkt(bool an);
    int maxwert() const { return m_maxwert; }
    void setMaxwert(int n);
    bool fehlermeldungen() const { return m_fehlermeldungen; }
    void setFehlermeldungen(bool an) { m_fehlermeldungen = an; }
    QColor backcolor() const;
    void setBackcolor(const QColor &farbe);

    // True when text would be accepted as the field's content.
    bool zulaessig(const QString &text) const;
    // What the field takes, in words, for its own error message.
    QString regelText() const;

private:
    void validatorErneuern();

    int m_anzdezimalen = -1;
    bool m_keinminus = false;
    bool m_keintausendpkt = false;
    int m_maxwert = 0;
    bool m_fehlermeldungen = false;
};

} // namespace screens
