#pragma once

#include <QString>

#include <functional>

// File scritti accanto alla loro destinazione e messi al suo posto solo quando sono interi.
// Ogni funzione che non riesce lancia ado::Errore e lascia le cose come stavano.
namespace provvisorio
{

// Quanto è fatto di quanto, in byte o altra misura; falso se si deve smettere.
using Passo = std::function<bool(qint64 fatto, qint64 totale)>;

// Un file che scompare da sé finché non prende il posto della destinazione, di cui prende anche i
// permessi.
class File
{
public:
    // Toglie anche i provvisori che un programma interrotto ha lasciato per la stessa destinazione.
    // Fallisce se nella sua cartella non si può scrivere.
    explicit File(const QString &destinazione);
    ~File();
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    const QString &percorso() const { return m_percorso; }
    // Sostituisce la destinazione in un passo solo, o ne prende il nome se non c'è. Allora i
    // permessi sono quelli di un documento nuovo e, se si dice un'origine, non più larghi dei suoi;
    // chi lo possiede può scriverlo. Con `soloSeLibera` fallisce se nel frattempo la destinazione è
    // comparsa.
    void prendeIlPosto(const QString &origine, bool soloSeLibera = false);
    // Scambia i due file: la destinazione è questo, e `vecchio` rende dove sta quello di prima,
    // che resta finché non lo si sposta. Dove il disco non sa scambiare e non conosce i
    // collegamenti la destinazione manca per un istante. `ripristina` disfa lo scambio.
    QString scambia();
    void ripristina();

private:
    int scambiaInPiuPassi();

    QString m_destinazione;
    QString m_percorso;
    QString m_vecchio;
    unsigned m_diDocumento = 0; // i permessi che avrebbe un documento nuovo in quella cartella
    bool m_suo = true;
};

// I vecchi file rimasti da uno scambio interrotto prima di trovare posto, i più recenti prima.
QStringList scambiInterrotti(const QString &destinazione);
// Ridà il nome ai file che uno scambio interrotto ha lasciato senza, in tutta la cartella.
void ritrovaIn(const QString &cartella);

// I file che il motore tiene, o ha lasciato, accanto a uno suo e che ne sono parte: il giornale e
// ciò che resta del modo WAL. Il primo è il giornale.
QStringList accanto(const QString &percorso);

// Crea un file vuoto che solo chi lo possiede può leggere; fallisce se c'è già.
void crea(const QString &percorso);
// Copia a blocchi in un file nuovo, che solo chi lo possiede può leggere, e lo porta sul disco.
void copia(const QString &origine, const QString &nuovo, const Passo &passo);
// Porta sul disco ciò che il file ha ancora in memoria.
void sincronizza(const QString &percorso);
// Porta sul disco il nome del file, cioè la sua cartella; falso se il disco non ci riesce. Quelli
// che non lo sanno fare non contano.
bool sincronizzaNome(const QString &percorso);
// Fallisce con la causa Interrotto quando il passo dice di smettere.
void avanza(const Passo &passo, qint64 fatto, qint64 totale);

} // namespace provvisorio
