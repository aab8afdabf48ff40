#include "texts/allegati.h"

#include "db/archivio/connessioni.h"
#include "db/lavoro/binari.h"
#include "platform/disco/prudenza.h"
#include "platform/disco/shell.h"
#include "platform/finestre/avanzamento.h"
#include "platform/finestre/desktop.h"
#include "platform/finestre/dialoghi.h"
#include "platform/finestre/messaggi.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>

namespace modTarvola
{

namespace
{

constexpr qint64 blocco = qint64{1} << 20;
// Oltre questa lunghezza il posto nell'archivio si fa aspettare, prima che si cominci a copiare.
constexpr qint64 fileLungo = qint64{64} << 20;

ado::Errore illeggibile(const QFile &file)
{
    return {ado::Causa::Altro, QStringLiteral("il file %1 non può essere letto (%2)")
                                   .arg(file.fileName(), file.errorString())};
}

ado::Errore cambiato(const QFile &file)
{
    return {ado::Causa::Altro,
            QStringLiteral("il file %1 è cambiato mentre si leggeva").arg(file.fileName())};
}

ado::Errore nonScrivibile(const QFileDevice &file)
{
    return {ado::Causa::Altro, QStringLiteral("il file %1 non può essere scritto (%2)")
                                   .arg(file.fileName(), file.errorString())};
}

// Falso se annullato a metà.
bool riempie(ado::Stream &flusso, QFile &file, const avanzamento::Passo &passo)
{
    const qint64 totale = flusso.Size();
    for (qint64 fatto = 0; fatto < totale;) {
        const QByteArray pezzo = file.read(qMin(blocco, totale - fatto));
        if (pezzo.isEmpty())
            throw file.error() == QFileDevice::NoError ? cambiato(file) : illeggibile(file);
        flusso.Write(pezzo);
        fatto += pezzo.size();
        if (!passo(fatto, totale))
            return false;
    }
    // Anche un file che intanto è cresciuto non è quello che si voleva conservare.
    if (!file.read(1).isEmpty())
        throw cambiato(file);
    if (file.error() != QFileDevice::NoError)
        throw illeggibile(file);
    return true;
}

void registra(const NuovoFile &nuovo, QFile &file, const avanzamento::Passo &passo)
{
    Lavoro lavoro(connessione(), QStringLiteral("Aggiunta di ") + nuovo.nome);
    auto flusso = aggiungeFile(lavoro, nuovo);
    const bool pieno = riempie(*flusso, file, passo);
    // Un flusso aperto terrebbe aperto il lavoro.
    flusso.reset();
    if (pieno)
        lavoro.conferma();
}

// Scrive accanto e poi dà il nome: nella cartella non resta mai un file a metà.
void scrive(ado::Stream *flusso, const QString &percorso, const avanzamento::Passo &passo)
{
    QSaveFile file(percorso);
    if (!file.open(QIODevice::WriteOnly))
        throw nonScrivibile(file);
    // Chi sostituisce un file ne prende i permessi: mai quello di eseguirlo.
    file.setPermissions(file.permissions() &
                        ~(QFile::ExeOwner | QFile::ExeUser | QFile::ExeGroup | QFile::ExeOther));
    const qint64 totale = flusso == nullptr ? 0 : flusso->Size();
    for (qint64 fatto = 0; fatto < totale;) {
        const QByteArray pezzo = flusso->Read(blocco);
        if (file.write(pezzo) != pezzo.size())
            throw nonScrivibile(file);
        fatto += pezzo.size();
        if (!passo(fatto, totale))
            return;
    }
    if (!file.commit())
        throw nonScrivibile(file);
}

// I nomi che il programma cerca accanto a sé e quelli che il motore crede suoi, come il giornale di
// un archivio.
bool riservato(const QString &nome)
{
    static const QStringList nostri{QStringLiteral("tarvola.mod"), QStringLiteral("qt.conf"),
                                    QStringLiteral("qt6.conf"),    QStringLiteral("cestino"),
                                    QStringLiteral("file"),        QStringLiteral("guida")};
    const QString minuscolo = nome.toLower();
    return nostri.contains(minuscolo) ||
           QFileInfo(minuscolo).suffix().startsWith(QStringLiteral("tvd-")) ||
           minuscolo == QFileInfo(QCoreApplication::applicationFilePath()).fileName().toLower();
}

// Il nome che l'allegato prende sul disco: quello registrato, che può venire da un archivio altrui,
// reso innocuo; il codice se non resta un nome.
QString nomeSuDisco(const QString &registrato, const QString &codice)
{
    const QString nome = prudenza::nomeInnocuo(registrato);
    if (nome.isEmpty())
        return codice;
    return riservato(nome) ? nome + QStringLiteral(".allegato") : nome;
}

// Un archivio allegato e poi aperto dalla sua copia è di chi vi lavora.
void rifiutaSeInUso(const QString &percorso)
{
    const int posto = postoDi(percorso);
    if (posto >= 0 &&
        archivi().Connessioni.at(static_cast<size_t>(posto))->State() != ado::adStateClosed)
        throw ado::Errore(
            ado::Causa::Altro,
            QStringLiteral("il file %1 è aperto: non va sostituito con un allegato").arg(percorso));
}

bool sovrascrive(QWidget *sopra, const QString &nome, const QString &cartella)
{
    return messaggi::chiede(sopra,
                            QStringLiteral("Il file ") + nome +
                                QStringLiteral("\nè già presente nella cartella ") + cartella +
                                QStringLiteral("\nSi per sovrascriverlo No per aprire il "
                                               "file esistente"),
                            messaggi::Domanda::PropostoNo);
}

// Ciò che il desktop eseguirebbe non gli si dà da aprire: lo si mostra dove sta.
void consegna(QWidget *sopra, const QString &percorso)
{
    if (!prudenza::siEsegue(percorso))
        return desktop::apre(percorso);
    const QFileInfo file(percorso);
    messaggi::avvisa(sopra,
                     QStringLiteral("Il file ") + file.fileName() +
                         QStringLiteral("\nè un programma, o ne avvia uno: non viene aperto, "
                                        "ma mostrato nella cartella\n") +
                         file.path());
    desktop::apre(file.path());
}

} // namespace

bool NuovoAllegato(QWidget *sopra, const QString &proprietario, int genere)
{
    const QString percorso = dialoghi::apriFile(sopra, {QStringLiteral("Seleziona un file"),
                                                        shell::cartellaApplicazione(),
                                                        QStringLiteral("Tutti i file(*.*)"),
                                                        {}});
    if (percorso.isEmpty())
        return false;
    QFile file(percorso);
    if (!file.open(QIODevice::ReadOnly))
        throw illeggibile(file);
    const qint64 massimo = fileMassimo(connessione());
    if (file.size() > massimo) {
        messaggi::avvisa(
            sopra, QStringLiteral("Il file è troppo grande: si possono allegare file fino a ") +
                       QLocale().formattedDataSize(massimo, 0, QLocale::DataSizeSIFormat));
        return false;
    }
    const NuovoFile nuovo{genere, proprietario, shell::NomeFileDaPercorso(percorso), file.size()};
    return avanzamento::compie(
        sopra, QStringLiteral("Aggiunta di ") + nuovo.nome,
        [&](const avanzamento::Passo &passo) { registra(nuovo, file, passo); },
        nuovo.lunghezza > fileLungo ? avanzamento::Compare::Subito : avanzamento::Compare::SeDura);
}

QString cartellaDeiFile()
{
    return shell::cartellaApplicazione() + QStringLiteral("/File/");
}

void ApriAllegato(QWidget *sopra, const QString &codice)
{
    const auto registrato = nomeDiFile(connessione(), codice);
    if (!registrato)
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("il record %1 non esiste più").arg(codice));
    const QString cartella = cartellaDeiFile();
    const QString nome = nomeSuDisco(*registrato, codice);
    const QString percorso = QDir(cartella).filePath(nome);
    if (!QDir().mkpath(cartella))
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("la cartella %1 non si può creare").arg(cartella));
    bool pronto = true;
    if (!QFileInfo::exists(percorso) || sovrascrive(sopra, nome, cartella)) {
        rifiutaSeInUso(percorso);
        pronto = avanzamento::compie(
            sopra, QStringLiteral("Scrittura di ") + nome, [&](const avanzamento::Passo &passo) {
                scrive(contenutoDiFile(connessione(), codice).get(), percorso, passo);
            });
    }
    if (pronto)
        consegna(sopra, percorso);
}

} // namespace modTarvola
