#include "app/archivi_file.h"

#include "app/conversione_archivio.h"
#include "app/fmLogin.h"
#include "app/ultimi.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/archivio/conversione.h"
#include "db/archivio/custodia.h"
#include "db/archivio/salvati.h"
#include "db/lavoro/operatori.h"
#include "platform/disco/provvisorio.h"
#include "platform/disco/shell.h"
#include "platform/finestre/a_parte.h"
#include "platform/finestre/dialoghi.h"
#include "platform/finestre/messaggi.h"

#include <QDir>
#include <QFileInfo>

using namespace modTarvola;

namespace
{

constexpr long nonAperto = -1;
constexpr long tenutoAperto = -2;

dialoghi::SceltaFile sceltaArchivio(const QString &titolo)
{
    return {titolo, shell::cartellaApplicazione(), QStringLiteral("File Tarvola (*.tvd)"),
            QStringLiteral("tvd"), provvisorio::ritrovaIn};
}

QString cartellaCestino()
{
    return shell::cartellaApplicazione() + QStringLiteral("/Cestino");
}

// Il file della cartella che ha quel nome, maiuscole e minuscole alla pari; vuoto se non c'è.
QString fileEsistente(const QString &percorso)
{
    const QFileInfo info(percorso);
    if (info.exists())
        return percorso;
    const QFileInfoList vicini = info.dir().entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo &vicino : vicini) {
        if (vicino.fileName().compare(info.fileName(), Qt::CaseInsensitive) == 0)
            return vicino.filePath();
    }
    return {};
}

// Perché un file non si è aperto, e il comando che lo ripara se può.
QString motivo(const QString &percorso, const ado::Errore &errore)
{
    const QString comando = QStringLiteral("«Compatta e ripristina»");
    const QString detto = errore.testo();
    return detto.contains(comando) || !siSalverebbe(percorso, errore.causa())
               ? detto
               : detto + QStringLiteral("\n%1 ne salva ciò che si legge").arg(comando);
}

} // namespace

ArchiviFile::ArchiviFile(QWidget *finestra, std::function<void()> apreArchivi,
                         std::function<bool(const ado::Connection *)> chiudeFinestre)
    : m_finestra(finestra),
      m_apreArchivi(std::move(apreArchivi)),
      m_chiudeFinestre(std::move(chiudeFinestre))
{
}

void ArchiviFile::apre()
{
    const QString percorso = sceglie(QStringLiteral("Apri un file"));
    if (!percorso.isEmpty())
        apreCorrente(percorso);
}

QString ArchiviFile::sceglie(const QString &titolo) const
{
    return dialoghi::apriFile(m_finestra, sceltaArchivio(titolo));
}

void ArchiviFile::apreCorrente(const QString &percorso)
{
    if (entra(percorso))
        m_apreArchivi();
}

bool ArchiviFile::entra(const QString &percorso, const QString &operatore)
{
    if (diFormatoAnteriore(percorso) &&
        (!libera(percorso) || !converteArchivio(m_finestra, percorso, cartellaCestino())))
        return false;
    try {
        ApriArchivio(percorso);
    } catch (const ado::Errore &errore) {
        messaggi::riferisceErrore(m_finestra, percorso + u'\n' + motivo(percorso, errore));
        return false;
    }
    contesto().PercorsoCorrente = percorso;
    ultimi::aggiunge(percorso);
    fmLogin(m_finestra, NomeOperatore(connessione(), operatore)).exec();
    return true;
}

void ArchiviFile::nuovo()
{
    const QString modello = shell::fileDelProgramma(QStringLiteral("tarvola.mod"));
    if (modello.isEmpty()) {
        messaggi::avvisa(m_finestra,
                         QStringLiteral("Il file tarvola.mod non esiste nella catella\n") +
                             shell::cartellaApplicazione());
        return;
    }
    const QString percorso = dialoghi::salvaFile(
        m_finestra, sceltaArchivio(QStringLiteral("Crea un nuovo file (nome senza estensione)")));
    if (percorso.isEmpty())
        return;
    const QString presente = fileEsistente(percorso);
    if (presente.isEmpty()) {
        try {
            creaArchivio(modello, percorso);
        } catch (const ado::Errore &errore) {
            return messaggi::riferisceErrore(m_finestra, percorso + u'\n' + errore.testo());
        }
    } else if (!messaggi::chiede(m_finestra,
                                 QStringLiteral("Il file esiste, cancellare il vecchio file?"),
                                 messaggi::Domanda::ColSegno) ||
               !consenteLoSpostamento(presente) || !libera(presente) ||
               !rinnova(modello, presente)) {
        return;
    }
    // Il vecchio poteva avere lo stesso nome con altre maiuscole.
    const bool altroNome =
        !presente.isEmpty() &&
        shell::OperazioneFile(shell::Operazione::Rinomina, presente, percorso, false).stato != 0;
    apreCorrente(altroNome ? presente : percorso);
}

bool ArchiviFile::consenteLoSpostamento(const QString &percorso) const
{
    return messaggi::avverte(m_finestra,
                             QStringLiteral("Attenzione! Il vecchio file\n") + percorso +
                                 QStringLiteral("\nsarà spostato nella cartella 'Cestino'"));
}

bool ArchiviFile::libera(const QString &percorso)
{
    if (ChiudiSeInUso(percorso) >= nonAperto)
        return true;
    messaggi::avvisa(m_finestra, QStringLiteral("Errore nella chiusura del database"));
    return false;
}

bool ArchiviFile::rinnova(const QString &modello, const QString &percorso)
{
    QString avvenuto;
    try {
        avanzamento::compieAParte(
            m_finestra, QStringLiteral("Creazione di\n") + percorso,
            [&](const avanzamento::Passo &passo) {
                avvenuto = sostituisceArchivio(
                    percorso, cartellaCestino(), passo,
                    [&](const QString &nuovo) { provvisorio::copia(modello, nuovo, passo); });
            });
    } catch (const ado::Errore &errore) {
        riferisceNonSostituito(m_finestra, percorso, errore);
        return false;
    }
    messaggi::avvisa(m_finestra, QStringLiteral("Il file\n") + percorso +
                                     QStringLiteral("\nè stato rinominato\n") + avvenuto);
    return true;
}

long ArchiviFile::ChiudiSeInUso(const QString &percorso)
{
    const int posto = postoDi(percorso);
    if (posto < 0)
        return nonAperto;
    ado::Connection &sua = *archivi().Connessioni.at(static_cast<size_t>(posto));
    if (sua.State() == ado::adStateClosed)
        return nonAperto;
    if (!messaggi::chiede(m_finestra,
                          percorso +
                              QStringLiteral("\nè attualmente in uso, se si procede sarà chiuso"
                                             "\ncon tutte le finestre ad esso collegate")))
        return tenutoAperto;
    if (!m_chiudeFinestre(&sua))
        return tenutoAperto;
    sua.Close();
    return posto;
}
