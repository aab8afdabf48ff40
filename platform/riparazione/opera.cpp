#include "platform/riparazione/opera.h"

#include <algorithm>

namespace salvataggio
{

using namespace pagine;

namespace
{

const Valore nulla;

QHash<QString, Albero> previsti(const std::vector<Tabella> &tabelle)
{
    QHash<QString, Albero> tutti;
    for (const Tabella &tabella : tabelle) {
        const Genere genere = tabella.conRowid ? Genere::Tabella : Genere::Indice;
        tutti.insert(tabella.nome, {tabella.nome, tabella.nome, genere, {}, true});
        for (const QString &indice : tabella.indici)
            tutti.insert(indice, {indice, tabella.nome, Genere::Indice, {}, true});
    }
    return tutti;
}

} // namespace

Opera::Opera(const QString &danneggiato, bool badaAllaTestata, ado::Connection &nuovo,
             const Regole &leRegole, const provvisorio::Passo &ilPasso)
    : file(danneggiato, badaAllaTestata),
      regole(leRegole),
      passo(ilPasso),
      salvate(nuovo),
      alberi(file, previsti(salvate.tabelle())),
      libereIntere(alberi.uso().count(Uso::Libera) == file.libere())
{
}

bool Opera::unoIntero(const QStringList &nomi) const
{
    return std::any_of(nomi.cbegin(), nomi.cend(),
                       [this](const QString &nome) { return alberi[nome].intero; });
}

bool Opera::adatta(const Tabella &tabella, const QList<Valore> &riga) const
{
    return regole.adatta(tabella.nome, riga.value(0, nulla), riga.value(1, nulla));
}

} // namespace salvataggio
