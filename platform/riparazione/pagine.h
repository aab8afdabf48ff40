#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>

#include <optional>

// Le pagine di un file SQLite lette una per una, senza il motore, che davanti a un danno si ferma.
// Il formato è quello pubblicato (https://www.sqlite.org/fileformat2.html).
namespace pagine
{

// La misura delle pagine degli archivi, in byte.
constexpr quint32 paginaPredefinita = 4096;

enum class Genere { Nessuno, Tabella, Indice };
enum class Lettura { Esatta, Comunque };
enum class Uso : quint8 { Ignoto, Albero, Seguito, Libera };

struct Valore {
    enum Tipo { Nullo, Intero, Reale, Testo, Byte, Lungo };
    Tipo tipo = Nullo;
    qint64 intero = 0; // per Lungo la lunghezza dei byte, che restano da leggere dal carico
    double reale = 0;
    QByteArray byte;
};

struct Cella {
    quint32 figlio = 0;
    qint64 chiave = 0;
    qint64 lunghezza = -1; // del carico; negativa se la cella non ne ha
    QByteArray locale;
    quint32 seguito = 0;
};

struct Pagina {
    Genere genere = Genere::Nessuno;
    bool foglia = false;
    QList<Cella> celle;
    quint32 ultimoFiglio = 0;
    int guasti = 0; // celle che non si leggono
};

class File
{
public:
    // Lancia ado::Errore se il file non si apre. Una testata illeggibile vale come quella degli
    // archivi, `paginaPredefinita` byte per pagina.
    explicit File(const QString &percorso, bool badaAllaTestata = true);

    quint32 quante() const { return m_quante; }
    quint32 attese() const { return m_attese; }
    quint32 dimensione() const { return m_dimensione; } // di una pagina, in byte
    int byteUtili() const { return m_utili; }
    // La versione dello schema e la prima pagina dell'elenco di quelle libere, dalla testata.
    quint32 versione() const { return m_versione; }
    quint32 primaLibera() const { return m_primaLibera; }
    // Quante la testata ne dà per libere; negativo se non si sa.
    qint64 libere() const { return m_libere; }

    // Vuota se il disco non la rende.
    QByteArray leggi(quint32 numero) const;
    Pagina pagina(quint32 numero) const;
    // Il numero scritto all'inizio di una pagina; 0 se non si legge.
    quint32 seguente(quint32 numero) const;

private:
    bool cella(const QByteArray &byte, int posto, Genere genere, bool foglia, Cella &letta) const;

    mutable QFile m_file;
    quint32 m_dimensione = 0;
    int m_utili = 0;
    quint32 m_quante = 0;
    quint32 m_attese = 0;
    quint32 m_versione = 0;
    quint32 m_primaLibera = 0;
    qint64 m_libere = -1;
};

// Il carico di una cella, letto in ordine di pagina in pagina.
class Carico
{
public:
    Carico(const File &file, const Cella &cella);
    // Vero se i byte richiesti ci sono tutti.
    bool leggi(char *dove, qint64 quanti);
    // Le colonne; niente se non sono una riga. L'ultima, se sono molti byte, resta da leggere ed è
    // di tipo Lungo. Esatta: niente anche se le colonne non fanno la lunghezza del carico;
    // Comunque: quelle che ne escono sono nulle.
    std::optional<QList<Valore>> colonne(Lettura lettura = Lettura::Esatta);
    // Vero se le colonne lette fanno la lunghezza del carico.
    bool esatta() const { return m_esatta; }

private:
    bool riempi();
    std::optional<QList<qint64>> serie(qint64 &intestazione) const;
    std::optional<QList<Valore>> valori(const QList<qint64> &tipi, const QList<qint64> &lunghezze);

    const File &m_file;
    QByteArray m_pezzo;
    qint64 m_posto = 0;
    qint64 m_restano;
    quint32 m_seguito;
    bool m_esatta = false;
};

// Le pagine che seguono una cella, nell'ordine; niente se la catena è rotta o passa per una pagina
// che `uso` dà ad altri.
std::optional<QList<quint32>> catena(const File &file, const Cella &cella, const QList<Uso> &uso);

} // namespace pagine
