#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QRandomGenerator>
#include <QString>

#include <functional>
#include <vector>

// Quaranta modi di danneggiare un archivio, perché due riparazioni si possano confrontare su
// ciascuno.
namespace danni
{

// Dove stanno le cose in un archivio sano.
struct Mappa {
    QHash<QString, QList<quint32>>
        alberi; // le pagine di ogni tabella e indice, la radice per prima
    QList<quint32> schema;
    qsizetype password = -1; // dove comincia l'impronta della password
};

Mappa mappaDi(const QString &sano);

struct Danno {
    QString nome;
    std::function<void(QByteArray &file, const Mappa &mappa, QRandomGenerator &caso)> guasta;
};

const std::vector<Danno> &tutti();

} // namespace danni
