#include "app/conversione_archivio.h"

#include "db/archivio/conversione.h"
#include "db/archivio/custodia.h"
#include "platform/finestre/a_parte.h"
#include "platform/finestre/messaggi.h"

using namespace modTarvola;

namespace
{

QString quante(qint64 numero, const QString &una, const QString &molte)
{
    return numero == 1 ? QStringLiteral("1 ") + una
                       : QStringLiteral("%1 %2").arg(numero).arg(molte);
}

QStringList mancanzeDi(const TabellaConvertita &tabella)
{
    QStringList parti;
    const auto conta = [&parti](qint64 numero, const char *una, const char *molte) {
        if (numero != 0)
            parti.append(quante(numero, QString::fromUtf8(una), QString::fromUtf8(molte)));
    };
    if (tabella.lette != tabella.annunciate)
        parti.append(QStringLiteral("%1 righe lette di %2 annunciate")
                         .arg(tabella.lette)
                         .arg(tabella.annunciate));
    conta(tabella.pagineGuaste, "pagina danneggiata", "pagine danneggiate");
    conta(tabella.righeGuaste, "riga illeggibile", "righe illeggibili");
    conta(tabella.rifiutate, "riga lasciata fuori, senza codice o con un codice già usato",
          "righe lasciate fuori, senza codice o con un codice già usato");
    conta(tabella.valoriGuasti, "valore illeggibile o incompleto",
          "valori illeggibili o incompleti");
    if (!tabella.colonneIgnote.isEmpty())
        parti.append(QStringLiteral("colonne sconosciute ") +
                     tabella.colonneIgnote.join(QStringLiteral(", ")));
    if (!tabella.colonneMancanti.isEmpty())
        parti.append(QStringLiteral("colonne mancanti ") +
                     tabella.colonneMancanti.join(QStringLiteral(", ")));
    return parti;
}

QString testoDi(const Resoconto &resoconto)
{
    QStringList righe{
        QStringLiteral("Il file è stato convertito. Non si è potuto riportare tutto:")};
    for (const TabellaConvertita &tabella : resoconto.tabelle) {
        if (!tabella.intera())
            righe.append(tabella.nome + QStringLiteral(": ") +
                         mancanzeDi(tabella).join(QStringLiteral("; ")));
    }
    if (!resoconto.tabelleIgnote.isEmpty())
        righe.append(QStringLiteral("Tabelle sconosciute: ") +
                     resoconto.tabelleIgnote.join(QStringLiteral(", ")));
    if (!resoconto.catalogoIntero)
        righe.append(QStringLiteral("Il catalogo delle tabelle è danneggiato"));
    return righe.join(u'\n');
}

bool converteESostituisce(QWidget *finestra, const QString &percorso, const QString &cestino)
{
    std::optional<Resoconto> resoconto;
    QString avvenuto;
    avanzamento::compieAParte(
        finestra, QStringLiteral("Conversione del file"), [&](const avanzamento::Passo &passo) {
            avvenuto = sostituisceArchivio(percorso, cestino, passo, [&](const QString &nuovo) {
                resoconto = converte(percorso, nuovo, passo);
                if (!resoconto)
                    throw ado::Errore(ado::Causa::Interrotto, QStringLiteral("interrotto"));
            });
        });
    messaggi::avvisa(finestra, QStringLiteral("Il file\n") + percorso +
                                   QStringLiteral("\nè stato rinominato\n") + avvenuto);
    if (!resoconto->intero())
        messaggi::avvisa(finestra, testoDi(*resoconto));
    return true;
}

} // namespace

void riferisceNonSostituito(QWidget *finestra, const QString &percorso, const ado::Errore &errore)
{
    if (errore.causa() == ado::Causa::Interrotto)
        return;
    // Spostato sotto un altro programma, il file e quello che ne prende il nome si rovinerebbero.
    if (dynamic_cast<const TrasferimentoFallito *>(&errore) != nullptr ||
        errore.causa() == ado::Causa::Occupato)
        messaggi::avvisa(finestra, QStringLiteral("Trasferimeto fallito del file") + percorso);
    else
        messaggi::riferisceErrore(finestra, percorso + u'\n' + errore.testo());
}

bool converteArchivio(QWidget *finestra, const QString &percorso, const QString &cestino)
{
    try {
        verificaFormatoAnteriore(percorso);
        return messaggi::chiede(finestra,
                                QStringLiteral("Il file\n") + percorso +
                                    QStringLiteral("\nè nel formato anteriore: per aprirlo va "
                                                   "convertito.\nIl vecchio file sarà spostato "
                                                   "nella cartella 'Cestino'.\nConvertire il "
                                                   "file?"),
                                messaggi::Domanda::ColSegno) &&
               converteESostituisce(finestra, percorso, cestino);
    } catch (const ado::Errore &errore) {
        riferisceNonSostituito(finestra, percorso, errore);
        return false;
    }
}
