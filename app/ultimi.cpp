#include "app/ultimi.h"

#include "platform/finestre/memoria_finestre.h"

#include <QDir>

#include <algorithm>

namespace ultimi
{

namespace
{

const QString chiaveFile = QStringLiteral("ultimi/file");
const QString chiavePercorso = QStringLiteral("ultimi/percorso");
const QString chiaveRegistro = QStringLiteral("ultimi/registro");
const QString chiaveOperatore = QStringLiteral("ultimi/operatore");
constexpr qsizetype lunghezzaMassima = 60;

// Gli ultimi tratti di un percorso: con 0 il nome solo, con 1 anche la sua cartella.
QString coda(const QString &percorso, int cartelle)
{
    const QStringList tratti = percorso.split(u'/', Qt::SkipEmptyParts);
    return tratti.mid(std::max<qsizetype>(0, tratti.size() - 1 - cartelle)).join(u'/');
}

QString accorciato(const QString &testo)
{
    if (testo.size() <= lunghezzaMassima)
        return testo;
    const qsizetype meta = lunghezzaMassima / 2;
    return testo.left(meta) + u'…' + testo.right(meta - 1);
}

} // namespace

QStringList file()
{
    QStringList letti = memoria::valore(chiaveFile).toStringList();
    letti.removeIf([](const QString &uno) { return uno.isEmpty(); });
    return letti.first(std::min<qsizetype>(quanti, letti.size()));
}

void aggiunge(const QString &percorso)
{
    QStringList tutti = file();
    const QString pulito = QDir::cleanPath(percorso);
    tutti.removeAll(pulito);
    tutti.prepend(pulito);
    memoria::ricorda(chiaveFile, tutti.first(std::min<qsizetype>(quanti, tutti.size())));
}

void toglie(const QString &percorso)
{
    QStringList tutti = file();
    tutti.removeAll(percorso);
    memoria::ricorda(chiaveFile, tutti);
    if (posto().percorso == percorso)
        ricorda({});
}

QStringList nomi(const QStringList &percorsi)
{
    QStringList letti;
    for (const QString &uno : percorsi) {
        const QString nome = coda(uno, 0);
        const auto omonimo = [&](const QString &altro) {
            return altro != uno && coda(altro, 0).compare(nome, Qt::CaseInsensitive) == 0;
        };
        int cartelle = 0;
        const auto confuso = [&](const QString &altro) {
            return omonimo(altro) && coda(altro, cartelle) == coda(uno, cartelle);
        };
        if (std::any_of(percorsi.begin(), percorsi.end(), omonimo)) {
            do
                ++cartelle;
            while (cartelle < uno.count(u'/') &&
                   std::any_of(percorsi.begin(), percorsi.end(), confuso));
        }
        const QString cartella = coda(uno, cartelle).chopped(nome.size());
        letti.append(accorciato(
            cartella.isEmpty() ? nome : nome + QStringLiteral(" – ") + cartella.chopped(1)));
    }
    return letti;
}

Posto posto()
{
    return {memoria::valore(chiavePercorso).toString(), memoria::valore(chiaveRegistro).toString(),
            memoria::valore(chiaveOperatore).toString()};
}

void ricorda(const Posto &qui)
{
    if (qui == posto())
        return;
    memoria::ricorda(chiavePercorso, qui.percorso);
    memoria::ricorda(chiaveRegistro, qui.registro);
    memoria::ricorda(chiaveOperatore, qui.operatore);
}

} // namespace ultimi
