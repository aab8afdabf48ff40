#pragma once

#include "db/atto/abitudini.h"
#include "db/atto/coppie.h"
#include "db/atto/proposte_tolte.h"
#include "db/atto/vocabolario.h"

#include <QObject>
#include <QSet>

#include <array>
#include <atomic>
#include <map>
#include <memory>
#include <vector>

class QThread;
class QTimer;

namespace modTarvola
{
struct Annuncio;
}

// Ciò che le pagine aperte su un archivio ne sanno per proporlo. È di tutte insieme: nasce con la
// prima e finisce con l'ultima, e chi chiude la pagina, il file o il programma non aspetta che una
// lettura sia compiuta.
//
//   pagina ──┐                       filo: gli ultimi atti e il registro intero
//   pagina ──┼── Repertorio ── legge <
//   pagina ──┘        ^              filo: l'archivio intero
//                     └── annunci di ciò che si registra
//
// I fili hanno una connessione loro, che legge poco per volta; ciò che hanno letto lo consegnano al
// filo delle finestre, il solo che lo usa.
class Repertorio : public QObject
{
    Q_OBJECT

public:
    // Quello dell'archivio, fatto nascere se nessuna pagina lo tiene. La connessione è quella con
    // cui la pagina lavora, e dura quanto lei.
    static std::shared_ptr<Repertorio> di(ado::Connection &connessione, const QString &percorso);
    ~Repertorio() override;

    // Ciò che si sa di un registro.
    struct DiRegistro {
        modTarvola::Vocabolario recenti;
        modTarvola::Coppie coppie;
        modTarvola::Abitudini abitudini;
        modTarvola::Vocabolario intero;
        QSet<QString> imparati; // i codici degli atti che sono già fra i recenti
    };
    // La prima volta ne legge gli ultimi atti, pochi, e fa leggere il resto. Lancia ado::Errore.
    const DiRegistro &registro(const QString &codice);
    // I vocabolari, dal più vicino: gli ultimi atti, il registro, ciò che si è scritto altrove da
    // quando il repertorio è nato, l'archivio.
    using Strati = std::array<const modTarvola::Vocabolario *, 4>;
    Strati strati(const QString &codice);
    const modTarvola::Coppie &coppie() const { return m_coppie; }

    bool tolta(const QString &dove, const QString &testo) const
    {
        return m_tolte.contains({dove, testo});
    }
    const QSet<modTarvola::PropostaTolta> &tolte() const { return m_tolte; }
    // Le scrivono anche nell'archivio. Lanciano ado::Errore; la proposta resta com'era.
    void toglie(const modTarvola::PropostaTolta &una);
    void rimette(const modTarvola::PropostaTolta &una);

    // Vero quando tutto ciò che si è chiesto è letto.
    bool compiuto() const { return m_letture == 0; }
    // Perché una lettura non è arrivata in fondo; vuoto se nessuna è fallita.
    const QString &motivo() const { return m_motivo; }
    // Quanti byte tiene in tutto.
    size_t byte() const;

private:
    using Consegna = std::function<void()>;
    using Lettura = std::function<Consegna(ado::Connection &, const modTarvola::Prosegue &)>;

    Repertorio(ado::Connection &connessione, QString percorso);
    void avvia(const Lettura &lettura);
    void leggeIlRegistro(const QString &codice);
    void leggeIntero(const QString &codice);
    void leggeLArchivio();
    void ferma();
    void rilegge();
    void riceve(const modTarvola::Annuncio &annuncio);
    void impara(const QString &codice, bool nuovo);

    ado::Connection &m_connessione;
    QString m_percorso;
    std::map<QString, DiRegistro> m_registri;
    modTarvola::Vocabolario m_archivio;
    modTarvola::Vocabolario m_altrove;
    modTarvola::Coppie m_coppie;
    QSet<modTarvola::PropostaTolta> m_tolte;
    QString m_motivo;
    std::vector<std::unique_ptr<QThread>> m_fili;
    std::shared_ptr<std::atomic<bool>> m_prosegue;
    int m_letture = 0;
    QTimer *m_piuTardi;
};
