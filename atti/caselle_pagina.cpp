#include "atti/caselle_pagina.h"

#include "platform/lingua/giorni.h"
#include "platform/lingua/italiano.h"

#include <QLineEdit>
#include <QTime>

std::optional<QVariant> CasellaGiorno::legge(const QString &testo) const
{
    return italiano::leggiGiorno(testo, m_riferimento ? m_riferimento() : QString());
}

void CasellaGiorno::riordina()
{
    CasellaData::riordina();
    if (!vuota() && rifiuto().isEmpty())
        riscrive(scritto(valore()));
}

QString CasellaOraBreve::scritto(const QVariant &valore) const
{
    const QString iso = valore.toString();
    const QTime ora = QTime::fromString(iso.mid(11), QStringLiteral("HH:mm:ss"));
    if (!ora.isValid())
        return iso;
    if (ora.second() != 0)
        return ora.toString(QStringLiteral("H:mm:ss"));
    return ora.toString(ora.minute() == 0 ? QStringLiteral("H") : QStringLiteral("H:mm"));
}

std::optional<QVariant> CasellaOraBreve::legge(const QString &testo) const
{
    return italiano::leggiOra(testo, m_giorno ? m_giorno() : QString());
}

QString CasellaOraBreve::motivo() const
{
    return tr("Non è stata inserita un'ora valida");
}

CasellaLettera::CasellaLettera(const DescrizioneCampo &descrizione, QWidget *sopra)
    : CasellaTesto(descrizione, sopra)
{
    auto *riga = qobject_cast<QLineEdit *>(parte());
    QStringList lettere;
    for (const QChar lettera : descrizione.lettere)
        lettere.append(lettera);
    riga->setPlaceholderText(lettere.join(u' '));
    riga->setToolTip(tr("%1, o niente").arg(lettere.join(u", ")));
}

std::optional<QVariant> CasellaLettera::legge(const QString &testo) const
{
    const QString lettera = testo.trimmed().toUpper();
    if (lettera.size() != 1 || !descrizione().lettere.contains(lettera))
        return {};
    return lettera;
}

QString CasellaLettera::motivo() const
{
    return tr("Qui sta una di queste lettere, o niente: %1").arg(descrizione().lettere);
}

void CasellaLettera::riordina()
{
    if (!vuota() && rifiuto().isEmpty())
        riscrive(scritto(valore()));
}
