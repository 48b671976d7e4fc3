#pragma once

#include <QString>
#include <QStringView>

namespace kontenregeln {

// The caption the account screen shows for one of its entry fields, combos or check boxes: the
// text of the field's label without the colon ("KontoNummer", "ZL-Sperre"); for the two combos
// the screen shows without a label, a short name of what they hold. Lists of faulty fields name
// them so, as the user reads them. An unknown name comes back unchanged.
QString feldBeschriftung(QStringView steuerelement);

// "1 Konto", "3 Konten": a count with the noun in the number it needs.
QString anzahl(qint64 n, const QString &einzahl, const QString &mehrzahl);

} // namespace kontenregeln
