#pragma once

#include "db/atto/atto.h"
#include "db/atto/lessico.h"
#include "db/atto/lettura_lenta.h"

#include <span>

// Ciò che un archivio ha già scritto nelle sue caselle, per proporlo a chi scrive.
namespace modTarvola
{

// I lessici delle caselle che si propongono: di un archivio, di un registro o dei suoi ultimi atti.
class Vocabolario
{
public:
    // Quanto può crescere: di un archivio intero, in byte per casella, o meno.
    enum class Ampiezza { Archivio, Registro };
    explicit Vocabolario(Ampiezza ampiezza = Ampiezza::Registro);

    // Il lessico in cui stanno i valori di un campo; nullo per quelli che non se ne propongono.
    const Lessico *lessico(const QString &campo) const;
    // Aggiunge un atto, il più vicino di tutti; di un atto che si conosceva già, e che è stato
    // corretto, solo ciò che non vi era: contato due volte falserebbe il resto.
    void impara(const Atto &atto, bool corretto = false);
    // Quanti byte tiene.
    size_t byte() const;

private:
    friend class LetturaVocabolario;
    friend QStringList proposte(std::span<const Vocabolario *const> strati, const QString &campo,
                                const QString &scritto, int quante);
    void conta(size_t campo, QByteArrayView testo, quint32 recente, char sesso);

    std::vector<Lessico> m_lessici; // nell'ordine dei campi; in fondo le parole dei nomi
    quint32 m_recente = 0;
};

// Le proposte per ciò che è scritto in un campo, da ciò che è più vicino a ciò che è più lontano:
// testi interi, poi, nei nomi di più parole, ciò che è scritto con l'ultima parola completata. Mai
// ciò che è già scritto. Uno strato può essere nullo.
QStringList proposte(std::span<const Vocabolario *const> strati, const QString &campo,
                     const QString &scritto, int quante);
// Il sesso che le persone con quel primo nome hanno quasi sempre; vuoto se non si sa.
QString sessoDi(std::span<const Vocabolario *const> strati, const QString &nome);

// Leggono tutto un registro, o tutto l'archivio, a pezzi brevi fra i quali chi scrive può scrivere;
// sono per un filo a parte. Lanciano ado::Errore se non si legge.
Vocabolario leggeRegistro(ado::Connection &connessione, const QString &registro,
                          const Prosegue &prosegue);
Vocabolario leggeArchivio(ado::Connection &connessione, const Prosegue &prosegue);

} // namespace modTarvola
