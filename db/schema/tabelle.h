#pragma once

#include <QStringList>
#include <QStringView>

#include <span>

// Il catalogo delle quattordici tabelle di un archivio: l'unico luogo in cui stanno descritte. Da
// qui vengono le istruzioni che le creano, le regole che seguono i proprietari, la pulizia dopo
// un'eliminazione, il salvataggio, la conversione e le caselle delle finestre.
//
// Sono dati soltanto, tutti fissi; i puntatori e le viste che se ne hanno valgono per sempre.
namespace modTarvola::catalogo
{

// Che cosa una colonna contiene. I codici sono una lettera e un numero, e si confrontano senza
// badare alle maiuscole; di un giorno si tiene la sola data ISO, un istante ha sempre anche l'ora.
enum class Specie { Codice, Testo, Numero, Giorno, Istante, Lungo };

// Come una finestra mostra il valore e lo legge da chi scrive. Scelta: una delle lettere della
// colonna, o nessuna. Genere: un codice di Traduzioni, mostrato con la sua etichetta.
enum class Formato { Nessuno, Testo, Data, DataEstesa, Ora, Pagina, Password, Scelta, Genere };

// Come una riga sta al record che la colonna nomina.
enum class Legame {
    Nessuno,
    Contenuto, // va con il suo proprietario, nello stesso comando che lo elimina
    Sostenuto, // se il proprietario manca, la pulizia la toglie
    Nominato,  // lo nomina e basta
};

// Che cosa sono le righe di una tabella.
enum class Forma { Record, Coppie, Generi };

struct Colonna {
    QStringView nome;
    Specie specie = Specie::Testo;
    Formato formato = Formato::Nessuno; // Nessuno: non ha una casella sua
    int lunghezza = 0;                  // i caratteri che una casella accetta; 0: senza limite
    Legame legame = Legame::Nessuno;
    bool obbligatoria = false;
    QStringView etichetta = {};                    // quella della casella; vuota se non ne ha
    QStringView lettere = {};                      // di una Scelta, nell'ordine in cui si offrono
    std::span<const QStringView> proprietari = {}; // le tabelle che può nominare, nell'ordine
    QStringView accanto = {};     // la colonna che le sta accanto nell'indice dei proprietari
    QStringView predefinito = {}; // l'espressione che la riempie se nessuno la scrive
    bool essenziale = false;      // di un record, almeno una delle essenziali deve dire qualcosa
};

struct Tabella {
    QStringView nome;
    Forma forma = Forma::Record;
    // Nell'ordine del file. La prima è il codice di un record; le prime due sono una coppia.
    std::span<const Colonna> colonne;
    // Con che parola si annota un record che nessuna coppia sostiene più, dove per questo va tolto.
    QStringView senzaCoppie = {};

    // La colonna col nome dato, senza badare alle maiuscole; nulla se non c'è.
    const Colonna *colonna(QStringView cercata) const;
    // L'iniziale dei codici; nulla se le righe non hanno un codice loro.
    QChar lettera() const;
    // La colonna senza limite di lunghezza; nulla se non ne ha.
    const Colonna *lunga() const;
    // Le colonne che identificano una riga: il codice, o la coppia.
    std::span<const Colonna> chiave() const
    {
        return colonne.first(forma == Forma::Coppie ? 2 : 1);
    }
};

// Le quattordici, nell'ordine in cui un file nuovo le crea.
std::span<const Tabella> tutte();
// Quella col nome dato, senza badare alle maiuscole; nulla se non è delle quattordici.
const Tabella *cerca(QStringView nome);
// La stessa, per chi sa che c'è. Lancia ado::Errore se non c'è.
const Tabella &tabella(QStringView nome);
// Quella di cui è un codice ("V12" è di Voci), guardando la sola lettera; nulla se di nessuna.
const Tabella *diCodice(QStringView codice);

// Una colonna con la tabella in cui sta.
struct Posto {
    const Tabella *tabella;
    const Colonna *colonna;
};
// Le colonne con quel legame, di tutte le tabelle, nell'ordine del file.
QList<Posto> colonneCon(Legame legame);
// Le colonne che nominano i record della tabella data, con qualunque legame.
QList<Posto> dipendentiDi(QStringView tabella);
// Le stesse, con un legame solo.
QList<Posto> dipendentiDi(QStringView tabella, Legame legame);

// Le tabelle di coppie che sostengono i record della tabella data: li nominano nella prima colonna.
QList<const Tabella *> coppieDi(const Tabella &tabella);

// Il nome di una colonna come va scritto in un'istruzione: fra virgolette, se ne ha bisogno.
QString citata(QStringView nome);

} // namespace modTarvola::catalogo
