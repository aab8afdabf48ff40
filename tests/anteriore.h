#pragma once

#include <QFile>
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

inline QByteArray letto(const QString &percorso)
{
    QFile file(percorso);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool scritto(const QString &percorso, const QByteArray &byte)
{
    QFile file(percorso);
    return file.open(QIODevice::WriteOnly) && file.write(byte) == byte.size();
}

inline QJsonObject atteso(const QString &nome)
{
    return QJsonDocument::fromJson(letto(dato(nome + QStringLiteral(".json")))).object();
}

inline bool sempre(qint64 /*fatto*/, qint64 /*totale*/)
{
    return true;
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
