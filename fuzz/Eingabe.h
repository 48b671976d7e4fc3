#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <cstdint>
#include <cstring>

// Turns the fuzzer's bytes into the values a target needs, deterministically.
class Eingabe
{
public:
    Eingabe(const uint8_t *daten, size_t laenge)
        : m_daten(daten)
        , m_laenge(laenge)
    { }

    bool leer() const { return m_pos >= m_laenge; }
    uint8_t byte() { return leer() ? 0 : m_daten[m_pos++]; }
    int zahl()
    {
        int32_t z = 0;
        for (int i = 0; i < 4; ++i)
            z = int32_t(uint32_t(z) << 8 | byte());
        return z;
    }
    // Text up to the next 0 byte (or the end), read as UTF-8.
    QString text()
    {
        const size_t anfang = m_pos;
        while (m_pos < m_laenge && m_daten[m_pos] != 0)
            ++m_pos;
        const QString t = QString::fromUtf8(reinterpret_cast<const char *>(m_daten + anfang),
                                            qsizetype(m_pos - anfang));
        if (m_pos < m_laenge)
            ++m_pos;
        return t;
    }
    // A value of any kind a row may hold: null, number, fraction, text (also over-long).
    QVariant wert()
    {
        switch (byte() % 6) {
        case 0:
            return QVariant();
        case 1:
            return qlonglong(zahl());
        case 2:
            return double(zahl()) / 7.0;
        case 3:
            return QString(int(byte()) * 40, QChar(u'x'));
        default:
            return text();
        }
    }

private:
    const uint8_t *m_daten;
    size_t m_laenge;
    size_t m_pos = 0;
};
