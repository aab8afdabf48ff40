#pragma once

#include "db/atto/atto.h"

#include <QHash>

#include <functional>
#include <vector>

// Ciò che un archivio ha già scritto nelle sue caselle, per proporlo a chi scrive.
namespace modTarvola
{

// I testi di una colonna, con quanto spesso e quanto di recente sono stati scritti. Un testo si
// trova dall'inizio di ogni sua parola, senza badare a maiuscole, accenti e apostrofi.
class Lessico
{
public:
    // Un'altra volta il testo: nell'archivio, nel registro, o nell'atto di posto `recente` (più
    // grande, più vicino; 0: non fra i recenti).
    void conta(const QString &testo, int volte, bool nelRegistro, int recente);
    // Da chiamare quando si è finito di contare: prima, ciò che è nuovo non si trova.
    void ordina();

    // I testi che cominciano, in una delle parole, come quello dato; i più vicini davanti: prima
    // gli atti recenti del registro, poi il registro, poi l'archivio.
    QStringList cerca(const QString &inizio, int quanti) const;
    bool contiene(const QString &testo) const { return m_posti.contains(testo); }
    qsizetype quanti() const { return static_cast<qsizetype>(m_voci.size()); }

private:
    struct Voce {
        QString testo;
        QString piegato;
        int archivio = 0;
        int registro = 0;
        int recente = 0;
    };
    struct Inizio {
        int voce;
        int posto;
    };
    QStringView da(const Inizio &inizio) const;

    std::vector<Voce> m_voci;
    QHash<QString, int> m_posti;
    std::vector<Inizio> m_inizi; // in ordine di ciò che vi comincia
    size_t m_ordinati = 0;       // quante voci sono già fra gli inizi
};

// I lessici di un archivio visti da un suo registro.
class Vocabolario
{
public:
    // Il lessico in cui stanno i valori di un campo; nullo per quelli che non se ne propongono.
    const Lessico *lessico(const QString &campo) const;
    // Le proposte per ciò che è scritto in un campo: testi interi, poi, nei nomi di più parole,
    // ciò che è scritto con l'ultima parola completata. Mai ciò che è già scritto.
    QStringList proposte(const QString &campo, const QString &scritto, int quante) const;
    // Il sesso che le persone con quel primo nome hanno quasi sempre; vuoto se non si sa.
    QString sessoDi(const QString &nome) const;

    // Aggiunge un atto del registro, il più vicino di tutti.
    void impara(const Atto &atto);
    // Legge gli ultimi atti del registro; basta per cominciare. Lancia ado::Errore.
    void leggeRecenti(ado::Connection &connessione, const QString &registro, int atti = 200);
    // Legge tutto l'archivio, a pezzi fra i quali chi scrive può scrivere; `prosegue` è chiesta fra
    // un pezzo e l'altro, e se rende falso si smette. Lancia ado::Errore.
    void leggeArchivio(ado::Connection &connessione, const QString &registro,
                       const std::function<bool()> &prosegue);

private:
    void conta(const QString &campo, const QString &testo, bool nelRegistro, int recente,
               int volte = 1);
    void contaSesso(const QString &nome, const QString &sesso, int volte = 1);
    void ordina();

    QHash<QString, Lessico> m_lessici;
    QHash<QString, std::pair<int, int>> m_sessi; // primo nome piegato: maschi, femmine
    int m_recente = 0;
};

} // namespace modTarvola
