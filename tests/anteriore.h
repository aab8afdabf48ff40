#pragma once

#include "comune.h"

#include <QJsonDocument>
#include <QJsonObject>

// Gli archivi di prova del formato anteriore: ciascuno ha accanto il suo contenuto, in JSON.
namespace anteriore
{

constexpr qsizetype pagina = 4096;

inline QString dato(const QString &nome)
{
    return QStringLiteral(TARVOLA_DATI "/anteriore/") + nome;
}

inline QJsonObject atteso(const QString &nome)
{
    return QJsonDocument::fromJson(byteDi(dato(nome + QStringLiteral(".json")))).object();
}

inline void cambia(QByteArray &file, qsizetype posto, const QByteArray &byte)
{
    file.replace(posto, byte.size(), byte);
}

inline int numero(const QByteArray &file, qsizetype posto)
{
    return static_cast<quint8>(file[posto]) | static_cast<quint8>(file[posto + 1]) << 8;
}

} // namespace anteriore
