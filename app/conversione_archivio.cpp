#include "app/conversione_archivio.h"

#include "db/conversione.h"
#include "platform/ado.h"
#include "platform/avanzamento.h"
#include "platform/messaggi.h"
#include "platform/shell.h"

#include <QFileInfo>
#include <QTemporaryDir>

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

// Il vecchio file va nel Cestino solo quando il nuovo è pronto, e ne torna se il nuovo non arriva.
bool sostituisce(QWidget *finestra, const QString &percorso, const QString &nuovo,
                 const std::function<QString(const QString &)> &nelCestino)
{
    const QString vecchio = nelCestino(percorso);
    if (vecchio.isEmpty())
        return false;
    const shell::Esito arrivo =
        shell::OperazioneFile(QStringLiteral("Rinomina"), nuovo, percorso, false);
    if (arrivo.stato == 0)
        return true;
    QString motivo = arrivo.motivo;
    const shell::Esito ritorno =
        shell::OperazioneFile(QStringLiteral("Muovi"), vecchio, percorso, false);
    if (ritorno.stato != 0)
        motivo += QStringLiteral("\nIl vecchio file è\n") + vecchio;
    messaggi::riferisceErrore(finestra, percorso + u'\n' + motivo);
    return false;
}

bool converteESostituisce(QWidget *finestra, const QString &percorso,
                          const std::function<QString(const QString &)> &nelCestino)
{
    // Nella cartella del file, perché prenderne il posto sia un cambio di nome soltanto.
    const QTemporaryDir cartella(QFileInfo(percorso).absolutePath() +
                                 QStringLiteral("/.conversione-XXXXXX"));
    if (!cartella.isValid())
        throw ado::Errore(ado::Causa::Altro, cartella.errorString());
    const QString nuovo = cartella.filePath(shell::NomeFileDaPercorso(percorso));
    std::optional<Resoconto> resoconto;
    avanzamento::compie(
        finestra, QStringLiteral("Conversione del file"),
        [&](const avanzamento::Passo &passo) { resoconto = converte(percorso, nuovo, passo); });
    if (!resoconto || !sostituisce(finestra, percorso, nuovo, nelCestino))
        return false;
    if (!resoconto->intero())
        messaggi::avvisa(finestra, testoDi(*resoconto));
    return true;
}

} // namespace

bool converteArchivio(QWidget *finestra, const QString &percorso,
                      const std::function<QString(const QString &)> &nelCestino)
{
    try {
        verificaFormatoAnteriore(percorso);
        return messaggi::chiede(finestra,
                                QStringLiteral("Il file\n") + percorso +
                                    QStringLiteral("\nè nel formato anteriore: per aprirlo va "
                                                   "convertito.\nIl vecchio file sarà spostato "
                                                   "nella cartella 'Cestino'.\nConvertire il "
                                                   "file?"),
                                true) &&
               converteESostituisce(finestra, percorso, nelCestino);
    } catch (const ado::Errore &errore) {
        messaggi::riferisceErrore(finestra, percorso + u'\n' + errore.testo());
        return false;
    }
}
