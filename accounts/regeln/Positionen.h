#pragma once

#include <QString>
#include <utility>

// Texts and keys of the position masters as the account screen shows them.
namespace kontenregeln {

// A settlement position as one item code: each level written with five digits and joined
// (level 1 = 3, level 2 = 12 gives 0000300012, that is 300012).
qint64 abrPosCode(int stufe1, int stufe2);
// The two levels of an item code, read from its ten-digit form (characters 1-5 and 6-10).
std::pair<int, int> abrPosStufen(qint64 code);

inline const QString KeineDefinition = QStringLiteral("Keine Definition");
inline const QString PosNichtGefunden = QStringLiteral("PosNichtgefunden");
inline const QString Unbekannt = QStringLiteral("???");
inline const QString AbrPosTrenner = QStringLiteral("  /  ");

// The list item of a settlement position under its heading.
QString abrPosEintrag(const QString &ueberschrift, const QString &text);
// A stored position shown in the combo: the heading cut or padded to 28 characters.
QString abrPosAnzeige(const QString &ueberschrift, const QString &text);
// The notice for a stored settlement position the master no longer holds.
QString abrPosFehlt(int stufe1, int stufe2);

// The list item of an operating-cost block.
QString bkBlockEintrag(int pos, const QString &text, qint64 schluessel);
// The notice for a stored block the master does not hold.
QString bkBlockFehlt(const QString &kontoNr, const QString &block);

// The message when the settlement positions' table is missing in an older database.
inline const QString TitelTabelleFehlt = QStringLiteral("nicht existente Datenbanktabelle:");
QString tabelleFehlt(int fehlerNr);

} // namespace kontenregeln
