#!/usr/bin/env python3
"""Writes screens/frmKontenStamm.ui from the table below (positions in pixels at 96 dpi).

The account screen's grouping is fixed (form, tab strip, the seven page frames, the shared
operating-cost VAT frame, the data frame, the PVA frame); positions are ours. Edit the table and
run the script again rather than editing the .ui by hand.

It also writes accounts/regeln/Feldbeschriftungen.inc: the caption the screen shows for each
entry field, combo and check box, so that lists of faulty fields name them as the user reads
them.
"""
import os
from xml.sax.saxutils import escape

# (name, kind, parent, text, x, y, w, h, source, field, tooltip)
# kinds: L label, B button, I InputFeld, C combo, K check box, T text box, F frame,
#        D data control, S tab strip
C = []


# The label that names a control (control -> label), or the caption of a control the screen
# shows without a label (control -> text, marked with a leading "=").
BESCHRIFTUNG = {}


def add(name, kind, parent, text, x, y, w, h, source="", field="", tip="", label=None):
    C.append((name, kind, parent, text, x, y, w, h, source, field, tip))
    if label:
        BESCHRIFTUNG[name] = label


FORM = "frmKontenStamm"
TIP_VERDICHT = "Definition unterschiedliche Darstellungsmöglichkeiten des Kontos in BK-Objektabrechnung"

# --- form: number, buttons, year ---
add("lblBankltz", "L", FORM, "KontoNummer", 12, 10, 96, 16)
add("inpKontoNr", "I", FORM, "", 12, 28, 96, 26, label="lblBankltz")
add("cmdKontoEinlesen", "B", FORM, "Kontenstammsatz  lesen / speichern", 118, 12, 124, 42,
    tip="Das Konto mit der eingetippten Nummer einlesen; Änderungen am angezeigten Konto "
        "werden dabei gespeichert (Strg+S)")
add("cmdKontoNeueröff", "B", FORM, "Kontenstammsatz neu", 248, 12, 110, 42,
    tip="Ein neues Konto in diesem Buchungsjahr eröffnen (Strg+N)")
add("cmdKontoLöschen", "B", FORM, "Kontenstammsatz löschen    ", 364, 12, 110, 42,
    tip="Das angezeigte Konto löschen; vorher wird nachgefragt (Strg+L)")
add("cmdKontoListe", "B", FORM, "Konten Auswahlhilfe", 480, 12, 110, 42,
    tip="Ein Konto aus der Liste der Konten des Buchungsjahres auswählen (Strg+F, im Feld "
        "KontoNummer auch F2)")
# Beyond the suite's screen: the faulty definitions of the whole year.
add("cmdPruefliste", "B", FORM, "Prüfliste", 596, 12, 110, 42,
    tip="Alle Konten des Buchungsjahres prüfen und die fehlerhaften Definitionen auflisten "
        "(Strg+P)")
add("lblBuchjahrText", "L", FORM, "Buchungsjahr:", 730, 12, 84, 16)
add("lblBuchjahr", "L", FORM, "#", 816, 12, 60, 16)
add("cmdHilfe", "B", FORM, "?", 846, 32, 42, 24,
    tip="Hilfe zum Feld, in dem Sie stehen (F1)")
add("TabStrip1", "S", FORM, "", 12, 64, 876, 26)
for i, cap in enumerate(["Frame1(0)", "Frame1(1, Bk-Abr)", "Frame1(2, Önorm)", "Frame1(3, He-Abr)",
                         "Frame1(4,Beibl)", "Frame1(5,HMZ)", "Frame1(6) Abschlussdaten"]):
    add(f"frame1_{i}", "F", FORM, cap, 12, 90, 876, 424)
add("fraBkUstSchl", "F", FORM, "gemeinsame Daten für BK- und Önorm-Abrechnung ", 24, 400, 852, 100)
add("KKData", "D", FORM, " vorwärts / rückwärts", 12, 522, 380, 32)
add("cmdAbrPosStammAufruf", "B", FORM, "BK-Abr Positionenstamm", 404, 522, 150, 32,
    tip="Den Stamm der Positionen der BK-Abrechnung bearbeiten")
add("cmdÖNORMPosStammAufruf", "B", FORM, "ÖNORM Positionenstamm", 560, 522, 150, 32,
    tip="Den Stamm der Positionen der ÖNORM-A4000-Abrechnung bearbeiten")
# Beyond the suite's screen: the account's changes from the change log.
add("cmdVerlauf", "B", FORM, "Verlauf", 716, 522, 66, 32,
    tip="Die Änderungen des angezeigten Kontos aus dem Änderungsprotokoll zeigen; ein alter Wert "
        "lässt sich wieder übernehmen (Strg+H)")
add("cmdExit", "B", FORM, "Beenden", 788, 522, 100, 32,
    tip="Den Kontenstamm schließen; das angezeigte Konto wird vorher geprüft und gespeichert "
        "(Strg+Q, Esc)")
add("fraData", "F", FORM, "DataFrame", 12, 300, 876, 84)
for i, n in enumerate(["KKChkData", "SSData", "ASLData", "BkBlockData", "BkPosData",
                       "BkPosChkData", "BilPosData", "Zl7BilPosData"]):
    add(n, "D", "fraData", n, 8 + (i % 4) * 216, 22 + (i // 4) * 28, 208, 24)

# Rows of a page: label at the left, code field, combo.
LX, LW, IX, IW, CX, CW, H = 12, 300, 320, 44, 370, 300, 24


def row(page, r):
    return 30 + r * 32


def zeile(parent, r, label, text, inp=None, field=None, combo=None, tip_inp="", tip_combo="",
          source="KKData", caption=None):
    y = row(parent, r)
    if label:
        add(label, "L", parent, text, LX, y + 4, LW, 16)
    if inp:
        add(inp, "I", parent, "", IX, y, IW, H, source, field, tip_inp, label=label or caption)
    if combo:
        add(combo, "C", parent, "", CX, y, CW, H, tip=tip_combo, label=label or caption)


# --- page 0: general ---
P = "frame1_0"
zeile(P, 0, "lblKtobez", "Konto-Bezeichnung:")
add("inpKontoBezeichnung", "I", P, "", IX, row(P, 0), 350, H, "KKData", "KontoBezeichnung",
    label="lblKtobez")
# Two lines: a long account name is not cut off.
add("lblKontoBezeichnung", "L", P, "", 680, row(P, 0) + 1, 180, 30)
zeile(P, 1, "Label2", "Konto-Typus:", "inpKontoTypus", "KontoTypus", "cmbKontoTypus")
zeile(P, 2, "Label3", "Konto-UstProzentsatz (Vorsteuer-Vorschlag):", "inpKontoUstProz",
      "KontoUstProz", "cmbKontoUstProz")
zeile(P, 3, "Label4", "Konto-UstKontoNummer:")
add("inpKontoUstKtoNr", "I", P, "", IX, row(P, 3), 80, H, "KKData", "KontoUstKtoNr",
    label="Label4")
add("Label1", "L", P, "=", 406, row(P, 3) + 4, 12, 16)
add("lblUstKontoBezeich", "L", P, "#", 422, row(P, 3) + 4, 440, 16)
zeile(P, 4, "lblZusatzdatenJn", "ZusatzDaten J/N:", "inpKontoZusatzDatenJN", "KontoZusatzdatenJn",
      "cmbKontoZusatzdatenJN", source="kkdata")
zeile(P, 5, "lblVoranmPos", "Voranmeldungs-Position:", "inpKontoVoranmPos", "KontoVoranmPos",
      "cmbKontoVoranmPos")
add("lblCode75", "L", P, "Code 088 war bis zum Jahr 2008 Code 075!!!", 680, row(P, 5) + 4, 186, 32)
zeile(P, 6, "Label33", "Vorsteuerkürzungsschlüssel Zeile", "inpKontoVSTKuerz", "KontoVSTKuerz")
add("chckPVAZusatz", "K", P, "Steuerkonto Zusatzliste", CX, row(P, 6), 240, H,
    label="chckPVAZusatz")
zeile(P, 7, "Label8", "Anmerkungen zur Kontoverwendung:")
add("inpKontoAnmerkung1", "I", P, "", IX, row(P, 7), 540, H, "KKData", "KontoAnmerkung1",
    label="Label8")
add("inpKontoAnmerkung2", "I", P, "", IX, row(P, 8), 540, H, "KKData", "KontoAnmerkung2",
    label="Label8")
add("frm_pva", "F", P, "", 12, row(P, 9) + 4, 852, 90)
add("Label32", "L", "frm_pva", "SAP Kontonr:", 12, 24, 96, 16)
add("inpKtonummer", "I", "frm_pva", "", 112, 20, 84, H, "KKData", "KontoSAPKtNr2",
    label="Label32")
add("inpKtonummer_alt", "T", "frm_pva", "", 202, 20, 84, H, label="Label32")
add("inpSAPKontoNr", "I", "frm_pva", "", 292, 20, 84, H, "KKData", "KontoSAPKtNr",
    label="Label32")
add("inpSachkontoNr", "I", "frm_pva", "", 382, 20, 84, H, "KKData", "KontoSachKTNr",
    label="Label32")
add("Label34", "L", "frm_pva", "Buchungsart:", 12, 58, 96, 16)
add("inpBuchungsArt", "I", "frm_pva", "", 112, 54, 44, H, "KKData", "KontoBuchArt",
    label="Label34")
add("Label35", "L", "frm_pva", "ZL-Sperre:", 202, 58, 84, 16)
add("inpZLSperre", "I", "frm_pva", "", 292, 54, 44, H, "KKData", "KontoZLSperre",
    label="Label35")
add("Label36", "L", "frm_pva", "Verdicht-KZ:", 382, 58, 84, 16)
add("inpVerdichtKZ", "I", "frm_pva", "", 472, 54, 44, H, "KKData", "KontoVerdichtKZ",
    label="Label36")

# --- page 1: operating-cost statement ---
P = "frame1_1"
zeile(P, 0, "Label5", "BK-Mieter-/Eigentümer-Abr:", "inpBKENAbrDef", "KontoBkENAbrDef",
      "cmbBkENAbrDef",
      tip_combo="Für welche Abrechnungsart (Mieter oder Eigentümer-Abrechnung) gilt das Konto")
zeile(P, 1, "Label7", "Bk-Einn-/Ausg-/SV-Def:", "inpBkEinnAusgPos", "KontoBkEinnAusgPos",
      "cmbBkEinnAusgPos", tip_combo="Definition ob Konto ein Einnahmen- oder Ausgabenkonto ist")
zeile(P, 2, "Label10", "Bk-Konto-Darstellung-Def in Abrechnung:", "inpBkAbrVerdichtKz",
      "KontoBkAbrVerdichtKz", "cmbBkAbrVerdichtKz", tip_combo=TIP_VERDICHT)
zeile(P, 3, "Label6", "Bk-Abr-Aufteilungsschlüssel (Obj-Stamm/Obj-Schlüssel):", "inpAbrSchlPos",
      "KontoAbrSchlPos",
      tip_inp="NOTWENDIG für die Aufteilung dieses Kontos in der BK-Abrechnung")
add("Label31", "L", P, "[NOTWENDIG für die Aufteilung dieses Kontos in der BK-Abrechnung]", CX,
    row(P, 3) + 4, 460, 16)
zeile(P, 4, None, None, "inpEstgPflichtig", "KontoEstgpflichtig", "cmbEstgPflichtig",
      caption="=EstG pflichtig")

# --- page 2: statement after the Austrian standard ---
P = "frame1_2"
zeile(P, 0, "lblKostenArt", "KontenArt:", "inpKostenArt", "KontoÖNORMAbrKontenArt", "cmbKostenArt")
zeile(P, 1, "lblAbrPos2", "ÖNORM A4000-Abrechnung Konto-Abrech.Position:")
add("inpAbrechPosition", "I", P, "", IX, row(P, 1), IW, H, "KKData", "KontoÖNORMAbrPos_I_II_III",
    label="lblAbrPos2")
add("inpAbrechPosition2", "I", P, "", CX, row(P, 1), IW, H, "KKData", "KontoÖNORMAbrPos_ABC",
    label="lblAbrPos2")
add("cmbAbrPos2", "C", P, "", CX + 50, row(P, 1), CW, H, label="lblAbrPos2")

# --- page 3: owners' statement ---
P = "frame1_3"
zeile(P, 0, "Label13", "He-Einn-/Ausg-Def:", "inpHeEinnAusgPos", "KontoHeEinnAusgPos",
      "cmbHeEinnAusgPos")
zeile(P, 1, "Label11", "He-Konto-Darstellung-Def in Hauseigentümer-Abrechnung:",
      "inpHeAbrVerdichtKz", "KontoHeAbrVerdichtKz", "cmbHeAbrVerdichtKz")
add("Label12", "L", P, "Label12", LX, row(P, 2) + 8, 840, 1)

# --- page 4: supplementary sheet ---
P = "frame1_4"
zeile(P, 0, "Label14", "Konto-Beiblattposition:", "inpBeiblPos", "KontoBeiblPos", "cmbBeiblPos")
zeile(P, 1, "Label15", "Definition der Konto-Darstellung in Beiblatt-Objektteil:",
      "inpBeiblVerdichtKz", "KontoBeiblVerdichtKz", "cmbBeiblVerdichtKz")

# --- page 5: main-rent reserve ---
P = "frame1_5"
zeile(P, 0, "Label26", "Hauptmietzinsreserve- Position:", "inpKontoHmzResPos", "KontoHmzResPos",
      "cmbKontoHmzResPos")
zeile(P, 1, "Label27", "Hmz-Konto-Darstellung in Hauptmietzinsreserve:",
      "inpKontoHmzResVerdichtKz", "KontoHmzResVerdichtKz", "cmbKontoHmzResVerdichtKz",
      tip_combo=TIP_VERDICHT)

# --- shared frame of pages 2 and 3 ---
P = "fraBkUstSchl"
add("Label16", "L", P, "BK-Block-Auswahl:", LX, 30, 290, 16)
add("inpBkBlockPos", "I", P, "", 308, 26, IW, H, "KKData", "KontoBkBlockPos", label="Label16")
add("cmbBkBlockPos", "C", P, "", 358, 26, 320, H,
    tip="In welchen BK-Block mündet das Konto [BK-Block: Blockbez. (Önorm-Schlüssel)]",
    label="Label16")
add("Label29", "L", P, "[BK-Block: Blockbez. (Önorm-Schlüssel)]", 686, 24, 160, 30)
add("Label18", "L", P, "Abr.-UstProzentsatz:", LX, 62, 290, 16)
add("inpAbrUstProz", "I", P, "", 308, 58, IW, H, "KKData", "KontoAbrUstProz", label="Label18")
add("cmbBkAbrUstProz", "C", P, "", 358, 58, 320, H, tip="Ust-Satz des Kontos in BK-Abrechnung",
    label="Label18")
add("Label30", "L", P, "[Ust-Satz des Kontos in BK-Abrechnung]", 686, 56, 160, 30)

# --- page 6: closing data ---
P = "frame1_6"
zeile(P, 0, "Label9", "Konto-Abschluß-Art:", "inpKontoAbschlArt", "KontoAbschlArt",
      "cmbKontoAbschlArt")
zeile(P, 1, "Label17", "SBK- / GUV-Konto:")
add("inpKontoSbkGuvKontoNr", "I", P, "", IX, row(P, 1), 80, H, "KKData", "KontoSbkGuvKontoNr",
    label="Label17")
add("lblSbkGuvKontoNrBezeich", "L", P, "#", 410, row(P, 1) + 4, 450, 16)
zeile(P, 2, "Label19", "EBK-Konto:")
add("inpKontoEbkKontoNr", "I", P, "", IX, row(P, 2), 80, H, "KKData", "KontoEbkKontoNr",
    label="Label19")
add("lblEbkKontoNrBezeich", "L", P, "#", 410, row(P, 2) + 4, 450, 16)
# balance-sheet position: headings, then the values
y = row(P, 3)
add("lblAktPass", "L", P, "Akt/Pass", IX, y, 56, 16)
add("Label21", "L", P, "A,B,C", 380, y, 44, 16)
add("Label22", "L", P, "I,II,III", 428, y, 44, 16)
add("Label23", "L", P, "1,2,3", 476, y, 44, 16)
add("Label24", "L", P, "a,b,c", 524, y, 44, 16)
y += 18
add("Label20", "L", P, "Bilanz-Position:", LX, y + 4, LW, 16)
add("inpBilPosAktPass", "I", P, "", IX, y, 56, H, "KKData", "KontoBilPosAktPass", label="Label20")
add("lblBilPosABC", "L", P, "", 380, y + 4, 44, 16, "KKData", "KontoBilPosABC")
add("lblBilPosRöm", "L", P, "", 428, y + 4, 44, 16, "KKData", "KontoBilPosRöm")
add("lblBilPosArab", "L", P, "", 476, y + 4, 44, 16, "KKData", "KontoBilPosArab")
add("lblBilPosABCklein", "L", P, "", 524, y + 4, 44, 16, "KKData", "KontoBilPosABCklein")
# The position's text is written here at run time, beside the parts of the position.
add("lblBilPosText", "L", P, "Text", 572, y + 4, 290, 16)
add("Label25", "L", P, "Akt,Pass,Guv", IX, y + 26, 90, 16)
y += 46
add("cmdBilPosAuswahl", "B", P, "Bilanzposition auswählen", IX, y, 170, 30,
    tip="Die Bilanzposition des Kontos aus dem Bilanzpositionenstamm wählen")
add("cmdBilPosStamm", "B", P, "Bilanzposition Stamm", IX + 176, y, 170, 30,
    tip="Den Bilanzpositionenstamm bearbeiten")
add("cmdBilPosloeschen", "B", P, "Bilanzposition leer setzen", IX + 352, y, 170, 30,
    tip="Die Bilanzposition des Kontos entfernen")
y += 44
add("Label28", "L", P, "Bilanz-Position: (analog ZL7)", LX, y + 4, LW, 16)
add("inpBilZl7Pos1", "I", P, "", IX, y, 50, H, "KKData", "KontoPos1", label="Label28")
add("inpBilZl7Pos2", "I", P, "", IX + 56, y, 50, H, "KKData", "KontoPos2", label="Label28")
add("inpBilZl7Pos3", "I", P, "", IX + 112, y, 50, H, "KKData", "KontoPos3", label="Label28")
add("lblBilZl7PosText", "L", P, "#", IX + 170, y + 4, 370, 16)
y += 32
add("cmdZl7BilPosAuswahl", "B", P, "ZL7 Bilanzposition auswählen", IX, y, 200, 30,
    tip="Die Bilanzposition nach ZL7 aus ihrem Stamm wählen")
add("cmdZl7BilPosStamm", "B", P, "ZL7 Bilanzposition Stamm", IX + 206, y, 200, 30,
    tip="Den Stamm der Bilanzpositionen nach ZL7 bearbeiten")
y += 44
add("inpKontoPVAKz", "I", P, "", IX, y, IW, H, "KKData", "KontoPVAKz", label="=PVA-Kennzeichen")
add("cmbKontoPVAKz", "C", P, "", CX, y, CW, H, label="=PVA-Kennzeichen")

TABS = ["Allgemein", "BkAbr-Definitionen", "ÖN-A4000-Definitionen", "HeAbr-Definitionen",
        "Beibl-Definitionen", "HMZ-Definitionen", "Abschl-Definitionen"]

KLASSE = {"L": "QLabel", "B": "QPushButton", "I": "screens::InputFeld", "C": "QComboBox",
          "K": "QCheckBox", "T": "QLineEdit", "F": "QGroupBox", "D": "platform::DataControl",
          "S": "QTabBar"}


def prop(name, inner, dyn=False):
    tag = "property"
    attr = ' stdset="0"' if dyn else ""
    return f'<{tag} name="{name}"{attr}>{inner}</{tag}>'


def s(text):
    return f"<string>{escape(text)}</string>"


def beschriftung(name):
    """The caption the user reads for control `name`."""
    label = BESCHRIFTUNG[name]
    text = label[1:] if label.startswith("=") else {c[0]: c[3] for c in C}[label]
    return text.strip().rstrip(":").strip()


# Controls whose values are account numbers, not codes of a list.
KONTONUMMERN = {"inpKontoUstKtoNr", "inpKontoSbkGuvKontoNr", "inpKontoEbkKontoNr"}


def standard_tip(name, kind):
    """A German tool tip for a code field or combo the table gives none."""
    if name == "inpKontoNr":
        return ("Kontonummer: eintippen und mit Enter einlesen; F2 öffnet die Auswahl, "
                "Bild↑/Bild↓ blättern")
    if name == "inpKontoBezeichnung":
        return "Bezeichnung des Kontos"
    text = beschriftung(name)
    if kind == "C":
        return f"{text}: Auswahl; setzt den Code im Feld links"
    if name in KONTONUMMERN:
        return f"{text}: Kontonummer eines Kontos dieses Buchungsjahres"
    return f"{text}: Code eingeben oder rechts aus der Liste wählen"


def widget(c, kinder):
    name, kind, parent, text, x, y, w, h, source, field, tip = c
    if not tip and kind in "IC":
        tip = standard_tip(name, kind)
    out = [f'<widget class="{KLASSE[kind]}" name="{name}">',
           prop("geometry", f"<rect><x>{x}</x><y>{y}</y><width>{w}</width><height>{h}</height></rect>")]
    if kind in "LBK" and text is not None:
        out.append(prop("text", s(text)))
    if kind == "L":
        out.append(prop("wordWrap", "<bool>true</bool>") if h > 20 else "")
        if h <= 1:
            # A one-pixel label is a separator line: its caption must not show as dots.
            out.append(prop("styleSheet", '<string notr="true">color: transparent; '
                                          'background-color: palette(mid);</string>'))
    if kind == "F":
        if name.startswith("frame1_"):
            out.append(prop("title", s("")))
            out.append(prop("Caption", s(text), dyn=True))
            out.append(prop("HelpContextID", s("seite%d" % (int(name[-1]) + 1)), dyn=True))
        else:
            out.append(prop("title", s(text)))
        if name in ("fraBkUstSchl", "fraData") or (name.startswith("frame1_") and name != "frame1_0"):
            out.append(prop("visible", "<bool>false</bool>"))
    if kind == "D":
        out.append(prop("Caption", s(text)))
        out.append(prop("Connect", s("Access")))
        out.append(prop("DatabaseName", s("")))
    if kind == "S":
        out.append(prop("Tabs", "<stringlist>" + "".join(s(t) for t in TABS) + "</stringlist>",
                        dyn=True))
    if tip:
        out.append(prop("toolTip", s(tip)))
    if source:
        out.append(prop("DataSource", s(source), dyn=True))
        out.append(prop("DataField", s(field), dyn=True))
    for k in kinder.get(name, []):
        out.append(widget(k, kinder))
    out.append("</widget>")
    return "\n".join(x for x in out if x)


def main():
    kinder = {}
    for c in C:
        kinder.setdefault(c[2], []).append(c)
    tabfolge = tabreihenfolge()
    form = [f'<widget class="QDialog" name="{FORM}">',
            prop("geometry", "<rect><x>0</x><y>0</y><width>900</width><height>566</height></rect>"),
            prop("windowTitle", s("KontenStamm (Sachkonten, Objekt-,Kanzleikonten)"))]
    for k in kinder[FORM]:
        form.append(widget(k, kinder))
    form.append("</widget>")
    custom = """<customwidgets>
<customwidget><class>screens::InputFeld</class><extends>QLineEdit</extends><header>screens/InputFeld.h</header></customwidget>
<customwidget><class>platform::DataControl</class><extends>QWidget</extends><header>platform/ui/DataControl.h</header></customwidget>
<customwidget><class>QTabBar</class><extends>QWidget</extends><header>QTabBar</header></customwidget>
</customwidgets>"""
    tabs = "<tabstops>" + "".join(f"<tabstop>{t}</tabstop>" for t in tabfolge) + "</tabstops>"
    text = ('<?xml version="1.0" encoding="UTF-8"?>\n<ui version="4.0">\n'
            f"<class>{FORM}</class>\n" + "\n".join(form) + "\n" + custom + "\n" + tabs +
            "\n<resources/>\n<connections/>\n</ui>\n")
    ziel = os.path.join(os.path.dirname(__file__), "..", "screens", "frmKontenStamm.ui")
    with open(ziel, "w", encoding="utf-8") as f:
        f.write(text)
    print(f"{ziel}: {len(C)} Steuerelemente")
    beschriftungen_schreiben()


def tabreihenfolge():
    """Tab goes from the number to the name, through the fields of the page shown in reading
    order, and only then to the buttons of the screen and the tab strip. The shared frame of
    pages 2 and 3 follows their own fields."""
    lage = {c[0]: c for c in C}

    def absolut(name):
        c = lage[name]
        if c[2] == FORM:
            return c[4], c[5]
        px, py = absolut(c[2])
        return px + c[4], py + c[5]

    def seite(name):
        while lage[name][2] != FORM:
            name = lage[name][2]
        return name

    fokus = [c[0] for c in C if c[1] in "IBCKT"]
    folge = ["inpKontoNr"]
    for s in ["frame1_0", "frame1_1", "frame1_2", "fraBkUstSchl", "frame1_3", "frame1_4",
              "frame1_5", "frame1_6"]:
        felder = [n for n in fokus if lage[n][2] != FORM and seite(n) == s]
        folge += sorted(felder, key=lambda n: (absolut(n)[1], absolut(n)[0]))
    knoepfe = [n for n in fokus if lage[n][2] == FORM and n not in folge]
    folge += sorted(knoepfe, key=lambda n: (absolut(n)[1], absolut(n)[0]))
    return folge + ["TabStrip1"]


def beschriftungen_schreiben():
    texte = {c[0]: c[3] for c in C}
    zeilen = []
    for c in C:
        name, kind = c[0], c[1]
        if kind not in "ICKT":
            continue
        label = BESCHRIFTUNG.get(name)
        if label is None:
            raise SystemExit(f"{name}: keine Beschriftung (label= oder caption= angeben)")
        text = label[1:] if label.startswith("=") else texte[label]
        text = text.strip().rstrip(":").strip()
        zeilen.append(f'{{u"{name}", u"{text}"}},')
    ziel = os.path.join(os.path.dirname(__file__), "..", "accounts", "regeln",
                        "Feldbeschriftungen.inc")
    with open(ziel, "w", encoding="utf-8") as f:
        f.write("// Written by scripts/ui-kontenstamm.py from its control table; edit the table "
                "there.\n")
        f.write("\n".join(zeilen) + "\n")
    print(f"{ziel}: {len(zeilen)} Beschriftungen")


main()
