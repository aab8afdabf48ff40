#include "faults/righe.h"

#include "db/schema/passi.h"
#include "db/schema/tabelle.h"

#include <QTextStream>

using namespace modTarvola;

namespace righe
{

namespace
{

QStringList nomiDelleTabelle(ado::Connection &archivio)
{
    QStringList nomi;
    archivio.leggi({QStringLiteral("SELECT name FROM sqlite_schema WHERE type = 'table' AND name "
                                   "NOT LIKE 'sqlite_%'"),
                    {},
                    {}},
                   [&](const ado::Riga &riga) {
                       nomi.append(riga.testo(0));
                       return true;
                   });
    // I passi compiuti dicono quando e come, non che cosa c'è.
    for (const char *tavola : passi::tavole)
        nomi.removeAll(QString::fromUtf8(tavola));
    return nomi;
}

QString leggibile(const QString &valore)
{
    return valore.section(u' ', 0, 0) + u' ' +
           QString::fromUtf8(byteDi(valore).left(60)).simplified();
}

} // namespace

QByteArray byteDi(const QString &valore)
{
    return QByteArray::fromHex(valore.section(u' ', 1).toLatin1());
}

Copia copia(ado::Connection &archivio)
{
    Copia tutte;
    for (const QString &tabella : nomiDelleTabelle(archivio)) {
        QStringList colonne;
        archivio.leggi({QStringLiteral("SELECT name FROM pragma_table_info(?)"), {tabella}, {}},
                       [&](const ado::Riga &riga) {
                           const QString nome = catalogo::citata(riga.testo(0));
                           colonne.append(QStringLiteral("typeof(%1) || ' ' || hex(%1)").arg(nome));
                           return true;
                       });
        const catalogo::Tabella *sua = catalogo::cerca(tabella);
        const qsizetype chiavi =
            sua == nullptr ? colonne.size() : static_cast<qsizetype>(sua->chiave().size());
        archivio.leggi({QStringLiteral("SELECT %1 FROM %2")
                            .arg(colonne.join(QStringLiteral(", ")), catalogo::citata(tabella)),
                        {},
                        {}},
                       [&](const ado::Riga &riga) {
                           QStringList valori;
                           for (int i = 0; i < riga.colonne(); ++i)
                               valori.append(riga.testo(i));
                           tutte[tabella].insert(valori.mid(0, chiavi).join(u'|'), valori);
                           return true;
                       });
    }
    return tutte;
}

QList<Diversa> differenze(const Copia &prima, const Copia &dopo)
{
    QList<Diversa> diverse;
    QStringList tabelle = prima.keys();
    for (const QString &tabella : dopo.keys()) {
        if (!tabelle.contains(tabella))
            tabelle.append(tabella);
    }
    for (const QString &tabella : std::as_const(tabelle)) {
        const Tabella era = prima.value(tabella);
        const Tabella ora = dopo.value(tabella);
        for (auto riga = era.cbegin(); riga != era.cend(); ++riga) {
            if (ora.value(riga.key()) != *riga)
                diverse.append({tabella, *riga, ora.value(riga.key()), {}});
        }
        for (auto riga = ora.cbegin(); riga != ora.cend(); ++riga) {
            if (!era.contains(riga.key()))
                diverse.append({tabella, {}, *riga, {}});
        }
    }
    for (Diversa &una : diverse) {
        const catalogo::Tabella *sua = catalogo::cerca(una.tabella);
        for (qsizetype i = 0; i < una.prima.size() && i < una.dopo.size(); ++i) {
            if (una.prima.at(i) != una.dopo.at(i))
                una.colonne.insert(sua == nullptr
                                       ? QString::number(i)
                                       : sua->colonne[static_cast<size_t>(i)].nome.toString(),
                                   {una.prima.at(i), una.dopo.at(i)});
        }
    }
    return diverse;
}

void dice(const QList<Diversa> &diverse)
{
    constexpr int esempi = 12;
    QTextStream uscita(stdout);
    for (const Diversa &una : diverse.mid(0, esempi)) {
        uscita << "  " << una.tabella << ' '
               << leggibile((una.prima.isEmpty() ? una.dopo : una.prima).constFirst()) << ' ';
        if (una.prima.isEmpty() || una.dopo.isEmpty())
            uscita << (una.prima.isEmpty() ? "is new" : "is gone");
        for (qsizetype i = 0; i < una.prima.size() && i < una.dopo.size(); ++i) {
            if (una.prima.at(i) != una.dopo.at(i))
                uscita << "was [" << leggibile(una.prima.at(i)) << "] is ["
                       << leggibile(una.dopo.at(i)) << "] ";
        }
        uscita << '\n';
    }
}

} // namespace righe
