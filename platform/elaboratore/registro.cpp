#include "platform/elaboratore/registro.h"

#include <QHash>

namespace registro
{

namespace
{

QHash<QString, QString> &classi()
{
    static QHash<QString, QString> sole;
    return sole;
}

} // namespace

long RegOpenKeyEx(Radice /*radice*/, const QString &nome, unsigned /*accesso*/, Chiave &chiave)
{
    if (!classi().contains(nome.toCaseFolded()))
        return ERROR_FILE_NOT_FOUND;
    chiave.nome = nome.toCaseFolded();
    return ERROR_SUCCESS;
}

long RegQueryValueEx(const Chiave &chiave, QString &zona)
{
    const auto valore = classi().constFind(chiave.nome);
    if (valore == classi().constEnd())
        return ERROR_FILE_NOT_FOUND;
    if (valore->size() >= zona.size())
        return ERROR_MORE_DATA;
    zona.replace(0, valore->size() + 1, *valore + QChar(u'\0'));
    return ERROR_SUCCESS;
}

void RegCloseKey(Chiave &chiave)
{
    chiave.nome.clear();
}

void scrivi(Radice /*radice*/, const QString &nome, const QString &valore)
{
    classi().insert(nome.toCaseFolded(), valore);
}

void togli(Radice /*radice*/, const QString &nome)
{
    classi().remove(nome.toCaseFolded());
}

} // namespace registro
