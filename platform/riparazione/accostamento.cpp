#include "platform/riparazione/accostamento.h"

#include <algorithm>

namespace salvataggio
{

using namespace pagine;

void accosta(Tabella &tabella, const QStringList &sue)
{
    const auto postoDi = [](const QStringList &nomi, const QString &nome) {
        const auto posto = std::find_if(nomi.begin(), nomi.end(), [&nome](const QString &uno) {
            return uno.compare(nome, Qt::CaseInsensitive) == 0;
        });
        return posto == nomi.end() ? qsizetype{-1} : posto - nomi.begin();
    };
    tabella.posti.clear();
    if (sue == tabella.colonne)
        return;
    for (qsizetype i = 0; i < sue.size(); ++i) {
        const qsizetype posto = postoDi(tabella.colonne, sue.at(i));
        const bool rovinata =
            posto < 0 && i < tabella.colonne.size() && postoDi(sue, tabella.colonne.at(i)) < 0;
        tabella.posti.append(rovinata ? i : posto);
    }
}

QList<Valore> riordinata(const Tabella &tabella, const QList<Valore> &riga)
{
    QList<Valore> nuova(tabella.colonne.size());
    for (qsizetype i = 0; i < qMin(riga.size(), tabella.posti.size()); ++i) {
        const qsizetype posto = tabella.posti.at(i);
        // Ciò che non sta nella riga si scrive a pezzi, e in coda: altrove non ha un posto.
        const bool lungoNelMezzo = riga.at(i).tipo == Valore::Lungo && posto != nuova.size() - 1;
        if (posto >= 0 && !lungoNelMezzo)
            nuova[posto] = riga.at(i);
    }
    return nuova;
}

} // namespace salvataggio
