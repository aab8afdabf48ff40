#pragma once

#include <QString>

#include <functional>

// File scritti accanto alla loro destinazione e messi al suo posto solo quando sono interi.
// Ogni funzione che non riesce lancia ado::Errore e lascia le cose come stavano.
namespace provvisorio
{

// Quanto è fatto di quanto, in byte o altra misura; falso se si deve smettere.
using Passo = std::function<bool(qint64 fatto, qint64 totale)>;

// Un file che scompare da sé finché non prende il posto della destinazione.
class File
{
public:
    // Toglie anche i provvisori che un programma interrotto ha lasciato per la stessa destinazione.
    explicit File(const QString &destinazione);
    ~File();
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    const QString &percorso() const { return m_percorso; }
    // Sostituisce la destinazione in un passo solo, o ne prende il nome se non c'è.
    void prendeIlPosto();
    // Scambia i due file: la destinazione è questo, e `vecchio` rende dove sta quello di prima,
    // che resta finché non lo si sposta. Dove il disco non sa scambiare passano per un istante
    // separati. `ripristina` disfa lo scambio.
    QString scambia();
    void ripristina();

private:
    QString m_destinazione;
    QString m_percorso;
    QString m_vecchio;
    bool m_suo = true;
};

// I vecchi file rimasti da uno scambio interrotto prima di trovare posto.
QStringList scambiInterrotti(const QString &destinazione);

// Copia a blocchi in un file nuovo e lo porta sul disco.
void copia(const QString &origine, const QString &nuovo, const Passo &passo);
// Porta sul disco ciò che il file ha ancora in memoria.
void sincronizza(const QString &percorso);
// Fallisce con la causa Interrotto quando il passo dice di smettere.
void avanza(const Passo &passo, qint64 fatto, qint64 totale);

} // namespace provvisorio
