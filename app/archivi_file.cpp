#include "app/archivi_file.h"

#include "app/contesto.h"
#include "app/conversione_archivio.h"
#include "app/fmLogin.h"
#include "db/connessioni.h"
#include "db/conversione.h"
#include "db/custodia.h"
#include "platform/dialoghi.h"
#include "platform/messaggi.h"
#include "platform/shell.h"

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
            QStringLiteral("tvd")};
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

} // namespace

ArchiviFile::ArchiviFile(QWidget *finestra, std::function<void()> apreArchivi,
                         std::function<void(const ado::Connection *)> chiudeFinestre)
    : m_finestra(finestra),
      m_apreArchivi(std::move(apreArchivi)),
      m_chiudeFinestre(std::move(chiudeFinestre))
{
}

void ArchiviFile::apri()
{
    const QString percorso = scegli(QStringLiteral("Apri un file"));
    if (!percorso.isEmpty())
        apreCorrente(percorso);
}

QString ArchiviFile::scegli(const QString &titolo) const
{
    return dialoghi::apriFile(m_finestra, sceltaArchivio(titolo));
}

void ArchiviFile::apreCorrente(const QString &percorso)
{
    if (diFormatoAnteriore(percorso) &&
        !converteArchivio(m_finestra, percorso,
                          [this](const QString &vecchio) { return nelCestino(vecchio); }))
        return;
    try {
        ApriArchivio(percorso);
    } catch (const ado::Errore &errore) {
        messaggi::riferisceErrore(m_finestra, percorso + u'\n' + errore.testo());
        return;
    }
    contesto().PercorsoCorrente = percorso;
    fmLogin(m_finestra).exec();
    m_apreArchivi();
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
    QString vecchio;
    const QString presente = fileEsistente(percorso);
    if (!presente.isEmpty()) {
        if (!messaggi::chiede(
                m_finestra, QStringLiteral("Il file esiste, cancellare il vecchio file?"), true) ||
            !consenteLoSpostamento(presente))
            return;
        vecchio = nelCestino(presente);
        if (vecchio.isEmpty())
            return;
    } else {
        // Il giornale di un file che non c'è più si applicherebbe a quello che ne prende il nome.
        seguitaIlGiornale(percorso, percorso + QStringLiteral(" (vecchio)"));
    }
    const shell::Esito copia =
        shell::OperazioneFile(QStringLiteral("Copia"), modello, percorso, false);
    if (copia.stato != 0) {
        // Il vecchio archivio torna al suo posto: senza il nuovo, non era da sostituire.
        if (!vecchio.isEmpty()) {
            shell::OperazioneFile(QStringLiteral("Muovi"), vecchio, presente, false);
            seguitaIlGiornale(vecchio, presente);
        }
        messaggi::riferisceErrore(m_finestra, percorso + u'\n' + copia.motivo);
        return;
    }
    apreCorrente(percorso);
}

bool ArchiviFile::consenteLoSpostamento(const QString &percorso) const
{
    return messaggi::avverte(m_finestra,
                             QStringLiteral("Attenzione! Il vecchio file\n") + percorso +
                                 QStringLiteral("\nsarà spostato nella cartella 'Cestino'"));
}

QString ArchiviFile::nelCestino(const QString &percorso)
{
    const QString cestino = shell::cartellaApplicazione() + QStringLiteral("/Cestino/");
    QDir().mkpath(cestino);
    if (ChiudiSeInUso(percorso) < nonAperto) {
        messaggi::avvisa(m_finestra, QStringLiteral("Errore nella chiusura del database"));
        return {};
    }
    const QString arrivo = cestino + shell::NomeFileDaPercorso(percorso);
    // Spostato sotto un altro programma, il file e quello che ne prende il nome si rovinerebbero.
    const shell::Esito esito =
        usatoDaAltri(percorso)
            ? shell::Esito{1, {}, {}}
            : shell::OperazioneFile(QStringLiteral("Muovi"), percorso, arrivo, true);
    if (esito.stato != 0) {
        messaggi::avvisa(m_finestra, QStringLiteral("Trasferimeto fallito del file") + percorso);
        return {};
    }
    const QString avvenuto = esito.nuovoNome.isEmpty() ? arrivo : esito.nuovoNome;
    seguitaIlGiornale(percorso, avvenuto);
    messaggi::avvisa(m_finestra, QStringLiteral("Il file\n") + percorso +
                                     QStringLiteral("\nè stato rinominato\n") + avvenuto);
    return avvenuto;
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
    m_chiudeFinestre(&sua);
    sua.Close();
    return posto;
}
